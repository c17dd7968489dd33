#include "lists/editlist.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "catalog/catalogbrowser.h"
#include "catalog/catalogdialogs.h"
#include "catalog/catalogpages.h"
#include "catalog/database.h"
#include "catalog/datagrid.h"
#include "catalog/recordset.h"
#include "charts/skywidget.h"
#include "core/apperror.h"
#include "core/appstate.h"
#include "core/handler.h"
#include "core/mainwindow.h"
#include "core/twips.h"
#include "core/windowplacement.h"
#include "lists/editlistlogic.h"
#include "lists/listview.h"
#include "sky/altitudefilter.h"
#include "sky/skycalc.h"
#include "sky/userdatedialog.h"

namespace {

constexpr int kPointerDefault = 0;
constexpr int kPointerHourglass = 11;
constexpr int kPointerCustom = 99;

// Design size of the client area, in twips.
constexpr int kDesignWidth = 14400;
constexpr int kDesignHeight = 8400;

// The list grid follows every move of its recordset; during a batch of thousands of moves it
// is taken off the recordset and put back at the end, which also announces the final row.
class DetachedGrid {
 public:
  DetachedGrid(DataGrid* grid, bool& quiet) : grid_(grid), quiet_(quiet), rs_(grid->recordset()) {
    quiet_ = true;
    grid_->setRecordset(nullptr);
  }
  ~DetachedGrid() {
    quiet_ = false;
    grid_->setRecordset(rs_);
  }

 private:
  DataGrid* grid_;
  bool& quiet_;
  Recordset* rs_;
};

}  // namespace

EditList::EditList(AppState& state, TavorineListMain& main, const QString& documentPath,
                   const QString& listWindowCaption, QWidget* parent)
    : QDialog(parent), state_(state), main_(main) {
  setObjectName(QStringLiteral("EditList"));
  KeepWindowPlacement(this, state);
  setModal(true);
  setPointer(kPointerHourglass);
  // The controls are laid out in twips for the small dialog font.
  QFont small = font();
  small.setPointSizeF(8);
  setFont(small);
  showUserDateDialog = [this](QWidget* p) { ShowUserDateDialog(state_, p); };
  showFilterDialog = [this](QWidget* p) { ShowFilterDialog(state_, p); };
  buildControls();
  resize(TwipsToPixels(kDesignWidth, this), TwipsToPixels(kDesignHeight, this));
  qApp->installEventFilter(this);
  load(documentPath, listWindowCaption);
}

EditList::~EditList() {
  qApp->removeEventFilter(this);
  if (!closed_) setEditUserListEnabled(true);
  if (grdDataGrid) grdDataGrid->setRecordset(nullptr);
  setPointer(kPointerDefault);
}

void EditList::buildControls() {
  auto button = [this](const char* name, const QString& caption) {
    auto* b = new QPushButton(caption, this);
    b->setObjectName(QString::fromLatin1(name));
    b->setAutoDefault(false);
    return b;
  };

  Sky = new SkyWidget(
      ChartWindow::EditList,
      [this](const SkyCoordinates& p) { return AltitudeAtUserDate(state_, p); },
      [this](const SkyCoordinates& p) { return AzimuthAtUserDate(state_, p); }, this);

  lblUserDate = new QLabel(this);
  lblUserDate->setObjectName(QStringLiteral("lblUserDate"));
  lblUserDate->setAttribute(Qt::WA_TranslucentBackground);
  {
    QPalette pal = lblUserDate->palette();
    pal.setColor(QPalette::WindowText, QColor(0xE0, 0xE0, 0xE0));
    lblUserDate->setPalette(pal);
  }
  cmdUserDate = button("cmdUserDate", QStringLiteral("<- Change"));

  Label2 = new QLabel(QStringLiteral("Your Object List:"), this);
  Label2->setObjectName(QStringLiteral("Label2"));

  grdDataGrid = new DataGrid(this);
  grdDataGrid->setObjectName(QStringLiteral("grdDataGrid"));
  grdDataGrid->setPrompter(&state_.prompter());
  grdDataGrid->setAllowUpdate(false);

  cmdMoveUp = button("cmdMoveUp", QStringLiteral("Move &Up"));
  cmdMoveDown = button("cmdMoveDown", QStringLiteral("Move &Down"));
  txtRecordCounter = new QLineEdit(this);
  txtRecordCounter->setObjectName(QStringLiteral("txtRecordCounter"));
  txtRecordCounter->setReadOnly(true);
  txtRecordCounter->setFocusPolicy(Qt::NoFocus);
  cmdDelete = button("cmdDelete", QStringLiteral("Delete"));
  cmdAutoSort = button("cmdAutoSort", QStringLiteral("Auto&Sort"));
  cmdClose = button("cmdClose", QStringLiteral("&Close"));
  cmdFilterAlt = button("cmdFilterAlt", QStringLiteral("&Filter"));
  lblFilter = new QLabel(QStringLiteral("Filter On!!!"), this);
  lblFilter->setObjectName(QStringLiteral("lblFilter"));
  {
    QFont f = lblFilter->font();
    f.setBold(true);
    lblFilter->setFont(f);
    QPalette pal = lblFilter->palette();
    pal.setColor(QPalette::WindowText, Qt::red);
    lblFilter->setPalette(pal);
  }
  lblFilter->hide();

  SSTab1 = new CatalogBrowser(state_, BrowserHost::EditList, this);
  for (int tab = 0; tab < 8; ++tab) {
    auto* add = new QPushButton(AddButtonCaption(tab == 0), this);
    add->setObjectName(PageByTab(tab).addButton);
    add->setAutoDefault(false);
    SSTab1->addPageButton(tab, add);
    connect(add, &QPushButton::clicked, this, [this, tab] { AddSelectedObjects(tab); });
    addButtons_[size_t(tab)] = add;
  }
  lblUserDate->raise();
  cmdUserDate->raise();

  connect(grdDataGrid, &DataGrid::rowColChange, this, [this] { grdDataGrid_RowColChange(); });
  connect(grdDataGrid, &DataGrid::gridClicked, this, [this] { listSelected(); });
  grdDataGrid->installEventFilter(this);
  connect(SSTab1, &CatalogBrowser::pageRowChanged, this, [this] { catalogSelected(); });
  connect(SSTab1, &CatalogBrowser::pageClicked, this, [this] { catalogSelected(); });
  connect(SSTab1, &CatalogBrowser::pageEntered, this, [this] { catalogSelected(); });
  connect(SSTab1, &CatalogBrowser::pageDoubleClicked, this,
          [this](int tab) { AddSelectedObjects(tab); });
  connect(SSTab1, &QTabWidget::currentChanged, this, [this] { SSTab1_Click(); });

  connect(cmdDelete, &QPushButton::clicked, this, [this] { cmdDelete_Click(); });
  connect(cmdMoveUp, &QPushButton::clicked, this, [this] { cmdMove_Click(false); });
  connect(cmdMoveDown, &QPushButton::clicked, this, [this] { cmdMove_Click(true); });
  connect(cmdAutoSort, &QPushButton::clicked, this, [this] { cmdAutoSort_Click(); });
  connect(cmdUserDate, &QPushButton::clicked, this, [this] { cmdUserDate_Click(); });
  connect(cmdFilterAlt, &QPushButton::clicked, this, [this] { cmdFilterAlt_Click(); });
  connect(cmdClose, &QPushButton::clicked, this, [this] { cmdClose_Click(); });
}

void EditList::load(const QString& documentPath, const QString& listWindowCaption) {
  Prompter& prompter = state_.prompter();
  RunGuarded(prompter, [&] {
    SSTab1->resetSearchOptions();
    if (state_.FilterOn) {
      setPointer(kPointerCustom);
      BuildAltitudeWhere(state_, SiderealDegreesAtUserDate(state_));
    }
  });
  // The user objects must not be edited behind the open pages.
  setEditUserListEnabled(false);
  setWindowTitle(EditListCaption(listWindowCaption));
  RunGuarded(prompter, [&] {
    document_ = Database::open(documentPath, Database::Mode::ReadWrite);
    datPrimaryRS = std::make_unique<Recordset>(document_, QStringLiteral("Objects"));
    grdDataGrid->setRecordset(datPrimaryRS.get());
  });
  RunGuarded(prompter, [&] { SSTab1->bindPages(); });
  RunGuarded(prompter, [&] {
    // The star field is read once; every redraw (first activation, a new date) reuses it.
    catalog_ = Database::open(state_.catalogPath(), Database::Mode::ReadOnly);
    mapStars_ = LoadMapStars(*catalog_);
  });
  lblUserDate->setText(UserDateLabel(state_.UserDate));
}

void EditList::setEditUserListEnabled(bool enabled) {
  if (QAction* a = main_.findChild<QAction*>(QStringLiteral("mnuEditUserList")))
    a->setEnabled(enabled);
}

// The screen's pointer while the editor works: 0 default, 11 hourglass, 99 the busy pointer of
// the long filter queries.
void EditList::setPointer(int pointer) {
  for (; pointerDepth_ > 0; --pointerDepth_) QApplication::restoreOverrideCursor();
  if (pointer == kPointerHourglass || pointer == kPointerCustom) {
    QApplication::setOverrideCursor(pointer == kPointerHourglass
                                        ? QCursor(Qt::WaitCursor)
                                        : CatalogBrowser::filterBusyCursor());
    pointerDepth_ = 1;
  }
}

// ---- activation -----------------------------------------------------------------------------

void EditList::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  // The window cannot be made smaller than its controls need, frame included.
  const QSize frame = frameGeometry().size() - geometry().size();
  setMinimumSize(TwipsToPixels(EditListMinWidth, this) - frame.width(),
                 TwipsToPixels(EditListMinHeight, this) - frame.height());
  if (FirstActivate) Form_Activate();
}

void EditList::Form_Activate() {
  RunGuarded(state_.prompter(), [&] {
    ApplyEditorColumns();
    SSTab1->applyLayouts();
    if (FirstActivate) {
      DrawSkyChart();
      FirstActivate = false;
    }
    if (datPrimaryRS) {
      if (datPrimaryRS->RecordCount() == 0) {
        txtRecordCounter->clear();
      } else if (FirstCount) {
        datPrimaryRS->MoveLast();
        datPrimaryRS->MoveFirst();
        writeCounter();
        FirstCount = false;
      }
    }
    const int tab = SSTab1->currentIndex();
    for (int i = 0; i < 8; ++i) addButtons_[size_t(i)]->setText(AddButtonCaption(i == tab));
    if (QLineEdit* search = SSTab1->searchBox(tab)) search->setFocus();
    lblFilter->setVisible(state_.FilterOn);
    setPointer(kPointerDefault);
  });
}

void EditList::ApplyEditorColumns() {
  if (grdDataGrid->recordset()) grdDataGrid->applyLayout(EditorColumnLayouts());
}

void EditList::writeCounter() {
  txtRecordCounter->setText(datPrimaryRS ? ListCounterText(*datPrimaryRS) : QString());
}

// ---- the chart ------------------------------------------------------------------------------

void EditList::DrawSkyChart() { Sky->DrawSkyChart(mapStars_); }

void EditList::PlotSelected() {
  const quint32 colour = EditListMarkerColour(MarkerSource, state_.settings.ObjectColor);
  if (MarkerSource != 2) {
    if (datPrimaryRS && datPrimaryRS->RecordCount() >= 1 &&
        (datPrimaryRS->hasCurrentRow() || datPrimaryRS->editMode() != Recordset::EditMode::None))
      Sky->PlotObject(RowPosition(*datPrimaryRS), colour);
    return;
  }
  // A page filtered empty (or not open) has nothing to mark; the old marker stays.
  const int tab = SSTab1->currentIndex();
  if (tab < 0 || tab > 7) return;
  Recordset* page = SSTab1->pageRecordset(tab);
  if (page && page->hasCurrentRow()) Sky->PlotObject(RowPosition(*page), colour);
}

void EditList::grdDataGrid_RowColChange() {
  if (quiet_) return;
  RunGuarded(state_.prompter(), [&] {
    MarkerSource = 1;
    PlotSelected();
    if (datPrimaryRS && datPrimaryRS->RecordCount() > 0) writeCounter();
    else txtRecordCounter->clear();
  });
}

void EditList::listSelected() {
  if (quiet_) return;
  RunGuarded(state_.prompter(), [&] {
    MarkerSource = 1;
    PlotSelected();
  });
}

void EditList::catalogSelected() {
  if (quiet_) return;
  RunGuarded(state_.prompter(), [&] {
    MarkerSource = 2;
    PlotSelected();
  });
}

void EditList::SSTab1_Click() {
  RunGuarded(state_.prompter(), [&] {
    MarkerSource = 2;
    PlotSelected();
    const int tab = SSTab1->currentIndex();
    for (int i = 0; i < 8; ++i) addButtons_[size_t(i)]->setText(AddButtonCaption(i == tab));
    if (QLineEdit* search = SSTab1->searchBox(tab)) search->setFocus();
  });
}

// ---- list commands --------------------------------------------------------------------------

void EditList::AddSelectedObjects(int tab) {
  RunGuarded(state_.prompter(), [&] {
    Recordset* page = SSTab1->pageRecordset(tab);
    if (!page || page->isBOF() || page->isEOF()) return;
    if (!datPrimaryRS) throw AppError::of(ErrNo::NoCurrentRecord);
    DataGrid* pageGrid = SSTab1->pageGrid(tab);
    // A copy: the page grid's own row handling must not change the list being walked.
    const QList<qint64> selection = pageGrid->selectedBookmarks();
    setPointer(kPointerHourglass);
    grdDataGrid->setAllowAddNew(true);
    {
      DetachedGrid detached(grdDataGrid, quiet_);
      AddSelectedRows(*page, *datPrimaryRS, selection);
    }
    ApplyEditorColumns();
    grdDataGrid->setAllowAddNew(false);
    while (pageGrid->selectedBookmarkCount() > 0) pageGrid->removeSelectedBookmark(0);
    setPointer(kPointerDefault);
    if (QLineEdit* search = SSTab1->searchBox(tab)) search->setFocus();
  });
}

void EditList::cmdDelete_Click() {
  RunGuarded(state_.prompter(), [&] {
    if (state_.prompter().ask(QStringLiteral("Confirm"), QStringLiteral("Delete this object?"),
                              Prompter::Buttons::YesNo,
                              Prompter::Answer::Yes) != Prompter::Answer::Yes)
      return;
    if (!datPrimaryRS) return;
    DeleteListRow(*datPrimaryRS);
    if (datPrimaryRS->RecordCount() == 0) txtRecordCounter->clear();
  });
}

void EditList::cmdMove_Click(bool down) {
  RunGuarded(state_.prompter(), [&] {
    if (!datPrimaryRS) return;
    if (MoveListRow(*datPrimaryRS, down ? MoveDirection::Down : MoveDirection::Up)) {
      ApplyEditorColumns();
      // The same row stays current, so the grid announces no change: show its new place.
      writeCounter();
    }
  });
}

void EditList::cmdAutoSort_Click() {
  RunGuarded(
      [&] {
        if (state_.prompter().ask(
                QStringLiteral("Confirm"), QStringLiteral("Permanently re-sort the list?"),
                Prompter::Buttons::YesNo, Prompter::Answer::Yes) != Prompter::Answer::Yes) {
          setPointer(kPointerDefault);
          return;
        }
        setPointer(kPointerHourglass);
        if (datPrimaryRS) {
          DetachedGrid detached(grdDataGrid, quiet_);
          AutoSortList(state_, *datPrimaryRS);
        }
        ApplyEditorColumns();
        setPointer(kPointerDefault);
      },
      [&](const AppError& e) {
        state_.prompter().message(AppTitle(), e.text());
        setPointer(kPointerDefault);
      });
}

void EditList::cmdUserDate_Click() {
  RunGuarded(state_.prompter(), [&] {
    const QDateTime before = state_.UserDate;
    showUserDateDialog(this);
    if (state_.UserDate == before) return;
    if (state_.FilterOn) refreshPages();
    lblUserDate->setText(UserDateLabel(state_.UserDate));
    DrawSkyChart();
    PlotSelected();
  });
}

void EditList::cmdFilterAlt_Click() {
  RunGuarded(state_.prompter(), [&] {
    if (state_.FilterOn) {
      state_.FilterOn = false;
      refreshPages();
      return;
    }
    state_.FilterCancelled = true;
    state_.FilterFormTop = FilterFormTopFor(PixelsToTwips(frameGeometry().top(), this),
                                            PixelsToTwips(frameGeometry().height(), this));
    showFilterDialog(this);
    if (state_.FilterCancelled) return;
    repaint();
    state_.FilterOn = true;
    refreshPages();
  });
}

// The pages rebuilt for the filter in force (for the observing date) and rebound, then the
// activation lays them out again.
void EditList::refreshPages() {
  SSTab1->refreshFilter(SiderealDegreesAtUserDate(state_));
  Form_Activate();
}

void EditList::cmdClose_Click() { close(); }

void EditList::done(int result) {
  // However the window goes (the button, the close box, Escape), the menu entry comes back.
  setEditUserListEnabled(true);
  closed_ = true;
  QDialog::done(result);
}

// ---- layout and keys ------------------------------------------------------------------------

void EditList::resizeEvent(QResizeEvent* event) {
  QDialog::resizeEvent(event);
  RunIgnoringErrors([&] { layoutControls(); });
}

void EditList::layoutControls() {
  const int w = PixelsToTwips(width(), this);
  const int h = PixelsToTwips(height(), this);
  const EditListLayout l = EditListLayoutFor(w, h);
  auto place = [this](QWidget* c, int left, int top, int width, int height) {
    c->setGeometry(TwipsToPixels(left, this), TwipsToPixels(top, this),
                   TwipsToPixels(qMax(0, width), this), TwipsToPixels(qMax(0, height), this));
  };
  Sky->placeAt(0, 0);
  place(lblUserDate, 0, 2925, 2100, 195);
  place(cmdUserDate, 2100, 2895, 1050, 255);
  place(Label2, 0, 3180, 3150, 220);
  place(grdDataGrid, 0, 3400, 3150, l.gridHeight);
  place(cmdMoveUp, 0, l.moveTop, 850, 375);
  place(cmdMoveDown, 880, l.moveTop, 1100, 375);
  place(txtRecordCounter, 2000, l.moveTop, 1150, 375);
  place(cmdDelete, 0, l.buttonTop, 1000, 375);
  place(cmdAutoSort, 1050, l.buttonTop, 1000, 375);
  place(cmdClose, 2100, l.buttonTop, 1050, 375);
  place(cmdFilterAlt, 3240, l.buttonTop, 1000, 375);
  place(lblFilter, 4340, l.filterLabelTop, 1500, 255);
  place(SSTab1, 3240, 0, l.tabWidth, l.tabHeight);
  for (int tab = 0; tab < 8; ++tab) {
    if (DataGrid* g = SSTab1->pageGrid(tab))
      g->setFixedSize(TwipsToPixels(qMax(0, l.pageGridWidth), this),
                      TwipsToPixels(qMax(0, l.pageGridHeight), this));
  }
}

bool EditList::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn && watched == grdDataGrid) {
    listSelected();
    return false;
  }
  if (event->type() != QEvent::KeyPress || !isVisible()) return false;
  auto* w = qobject_cast<QWidget*>(watched);
  if (!w || w->window() != this) return false;
  auto* key = static_cast<QKeyEvent*>(event);
  if (!(key->modifiers() & Qt::ControlModifier)) return false;
  const bool backwards = key->key() == Qt::Key_Backtab ||
                         (key->key() == Qt::Key_Tab && (key->modifiers() & Qt::ShiftModifier));
  if (key->key() != Qt::Key_Tab && key->key() != Qt::Key_Backtab) return false;
  RunIgnoringErrors(
      [&] { SSTab1->setCurrentIndex(NeighbourTab(SSTab1->currentIndex(), backwards)); });
  return true;
}

void ShowEditList(AppState& state, TavorineListMain& main, const QString& documentPath,
                  const QString& listWindowCaption, QWidget* parent) {
  EditList editor(state, main, documentPath, listWindowCaption, parent);
  editor.exec();
}
