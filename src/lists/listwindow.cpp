#include "lists/listwindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QScopeGuard>
#include <QTimer>
#include <QVBoxLayout>

#include "catalog/database.h"
#include "catalog/datagrid.h"
#include "catalog/recordset.h"
#include "charts/skywidget.h"
#include "core/appstate.h"
#include "core/handler.h"
#include "core/hourglass.h"
#include "core/mainwindow.h"
#include "core/numtext.h"
#include "core/opendocuments.h"
#include "core/settings.h"
#include "core/twips.h"
#include "lists/objectdetails.h"
#include "scope/chartlink.h"
#include "scope/gotoflow.h"

namespace {

// Design-time place of a control the resize rule moves up and down: left and width, twips.
struct Place {
  const char* name;
  int left, width;
};

const std::vector<Place>& bottomPlaces(ListVariant v) {
  // The large form keeps its buttons under the grid, so the detail panel has the whole height
  // under the chart.
  static const std::vector<Place> large{
      {"txtRecordCounter", 4100, 1700}, {"cmdPrevious", 5850, 1000}, {"cmdNext", 6900, 900},
      {"cmdGoto", 7850, 900},           {"cmdObserved", 8800, 1000}, {"cmdCDC", 9850, 850},
      {"cmdClearGoto", 4100, 1700},     {"cmdEdit", 5850, 1350}};
  static const std::vector<Place> compact{
      {"txtRecordCounter", 45, 1900}, {"cmdPrevious", 2045, 1050}, {"cmdNext", 3145, 1050},
      {"cmdGoto", 4245, 1050},        {"cmdObserved", 5345, 1050}, {"cmdCDC", 6445, 900},
      {"cmdClearGoto", 7445, 1500},   {"cmdEdit", 9045, 1200},     {"cmdClose", 10345, 1000}};
  return v == ListVariant::CurrentListFixed ? compact : large;
}

constexpr int kButtonHeight = 375;

}  // namespace

// ---------------------------------------------------------------------------------------------

ClearGoto::ClearGoto(AppState& state, QWidget* parent) : QDialog(parent), state_(state) {
  setObjectName(QStringLiteral("ClearGoto"));
  setWindowTitle(QStringLiteral("Confirm"));
  setModal(true);
  state_.ClearGotoChoice = ClearGotoNone();
  auto* layout = new QVBoxLayout(this);
  auto* question = new QLabel(QStringLiteral("Clear which GoTo marks?"), this);
  question->setObjectName(QStringLiteral("Label1"));
  layout->addWidget(question);
  auto* row = new QHBoxLayout;
  auto add = [&](const char* name, const QString& text, const QString& word) {
    auto* b = new QPushButton(text, this);
    b->setObjectName(QString::fromLatin1(name));
    connect(b, &QPushButton::clicked, this, [this, word] { choose(word); });
    row->addWidget(b);
    return b;
  };
  add("cmdThis", QStringLiteral("&This Object"), ClearGotoThis())->setDefault(true);
  add("Command1", QStringLiteral("&ALL Objects"), ClearGotoAll());
  add("cmdCancel", QStringLiteral("Cancel"), ClearGotoNone());
  layout->addLayout(row);
}

void ClearGoto::choose(const QString& word) {
  state_.ClearGotoChoice = word;
  accept();
}

// ---------------------------------------------------------------------------------------------

CurrentList::CurrentList(ListVariant variant, AppState& state, TavorineListMain& main,
                         QWidget* parent)
    : QWidget(parent), variant_(variant), state_(state), main_(main) {
  setObjectName(ListVariantName(variant));
  buildControls();

  // Load: the document comes through the main window's hand-over fields.
  sort_ = ListSortState{};
  const QString path = main_.findChild<QLineEdit*>(QStringLiteral("txtFileName"))->text();
  const QString title = main_.findChild<QLineEdit*>(QStringLiteral("txtFileTitle"))->text();
  txtDataSource->setText(path);
  txtObserverTitle->setText(title);
  txtShortFileName->setText(QFileInfo(path).fileName());
  document_ = Database::open(path, Database::Mode::ReadWrite);
  bindPrimary();
  const auto catalog = Database::open(state_.catalogPath(), Database::Mode::ReadOnly);
  stars_ = LoadMapStars(*catalog);
  setWindowTitle(QStringLiteral("Objects - ") + title);
  FirstActivate_ = true;
  FirstCount_ = true;
  sky_->chart().MarkerX = MarkerStart;
  sky_->chart().MarkerY = MarkerStart;
  ApplyListColumns();
  refreshDetails();
  timer_->start();
  connect(main_.mdiArea(), &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow* w) {
    if (w && w == frame()) Form_Activate();
  });
}

CurrentList::~CurrentList() {
  // The grid lets go of the recordset before it goes.
  if (grid_) grid_->setRecordset(nullptr);
}

QString CurrentList::documentPath() const { return txtDataSource->text(); }
QString CurrentList::documentTitle() const { return txtObserverTitle->text(); }

void CurrentList::buildControls() {
  const bool compact = variant_ == ListVariant::CurrentListFixed;
  auto hiddenField = [&](const char* name) {
    auto* e = new QLineEdit(this);
    e->setObjectName(QString::fromLatin1(name));
    e->hide();
    return e;
  };
  txtDataSource = hiddenField("txtDataSource");
  txtObserverTitle = hiddenField("txtObserverTitle");
  txtShortFileName = hiddenField("txtShortFileName");

  sky_ = new SkyWidget(
      compact ? ChartWindow::CurrentListFixed : ChartWindow::CurrentList,
      [this](const SkyCoordinates& p) { return AltitudeNow(state_, p); },
      [this](const SkyCoordinates& p) { return AzimuthNow(state_, p); }, this);
  sky_->placeAt(sky_->constants().left, sky_->constants().top);
  sky_->followRedScreen([this] { return state_.RedScreenOn; });

  grid_ = new DataGrid(this);
  grid_->setObjectName(QStringLiteral("grdDataGrid"));
  grid_->setPrompter(&state_.prompter());
  grid_->setAllowUpdate(false);
  grid_->setAlternatingRowColors(true);
  connect(grid_, &DataGrid::rowColChange, this, [this] { rowChanged(); });
  connect(grid_, &DataGrid::headClicked, this, [this](int c) { grdDataGrid_HeadClick(c); });
  connect(grid_, &DataGrid::gridDoubleClicked, this, [this] { cmdGoto_Click(); });

  details_ = buildDetails();

  txtRecordCounter = new QLineEdit(this);
  txtRecordCounter->setObjectName(QStringLiteral("txtRecordCounter"));
  txtRecordCounter->setReadOnly(true);
  txtRecordCounter->setFocusPolicy(Qt::NoFocus);

  struct Button {
    const char* name;
    QString text;
    void (CurrentList::*slot)();
  };
  std::vector<Button> buttons{
      {"cmdGoto", QStringLiteral("&GoTo"), &CurrentList::cmdGoto_Click},
      {"cmdNext", QStringLiteral("&Next"), &CurrentList::cmdNext_Click},
      {"cmdPrevious", QStringLiteral("Pre&vious"), &CurrentList::cmdPrevious_Click},
      {"cmdObserved", QStringLiteral("&Observed"), &CurrentList::cmdObserved_Click},
      {"cmdClearGoto", QStringLiteral("Clear Go Marks"), &CurrentList::cmdClearGoto_Click},
      {"cmdEdit", QStringLiteral("Edit List"), &CurrentList::cmdEdit_Click},
      {"cmdCDC", QStringLiteral("&CDC"), &CurrentList::cmdCDC_Click}};
  for (const Button& b : buttons) {
    auto* button = new QPushButton(b.text, this);
    button->setObjectName(QString::fromLatin1(b.name));
    auto slot = b.slot;
    connect(button, &QPushButton::clicked, this, [this, slot] { (this->*slot)(); });
  }
  if (compact) {
    auto* close = new QPushButton(QStringLiteral("Close"), this);
    close->setObjectName(QStringLiteral("cmdClose"));
    connect(close, &QPushButton::clicked, this, [this] {
      if (QMdiSubWindow* f = frame()) f->close();
      else this->close();
    });
  }

  timer_ = new QTimer(this);
  timer_->setObjectName(QStringLiteral("timerAltitude"));
  timer_->setInterval(60000);
  connect(timer_, &QTimer::timeout, this, [this] { timerAltitude_Timer(); });

  // The window sees the keys before its controls.
  for (QWidget* w : findChildren<QWidget*>()) w->installEventFilter(this);
  installEventFilter(this);

  const int w = TwipsToPixels(ListFormLayoutFor(variant_).openWidth, this);
  const int h = TwipsToPixels(ListFormLayoutFor(variant_).openHeight, this);
  resize(w, h);
}

QWidget* CurrentList::buildDetails() {
  return BuildObjectDetails(this, variant_ == ListVariant::CurrentListFixed, texts_);
}

void CurrentList::bindPrimary() {
  auto rs = std::make_unique<Recordset>(document_, ListRecordSource(sort_.ListSortKey));
  Recordset* raw = rs.get();
  // The detail panel follows the row before the grid announces it.
  connect(raw, &Recordset::currentChanged, this, [this] { refreshDetails(); });
  connect(raw, &Recordset::reset, this, [this] { refreshDetails(); });
  connect(raw, &Recordset::rowsChanged, this, [this] { refreshDetails(); });
  // The old recordset stays alive until the grid has let go of it.
  std::unique_ptr<Recordset> old = std::move(datPrimary_);
  datPrimary_ = std::move(rs);
  grid_->setRecordset(raw);
  refreshDetails();
}

void CurrentList::refreshDetails() {
  const QStringList& fields = ObjectDetailFields();
  Recordset* rs = datPrimary_.get();
  const bool row = rs && rs->hasCurrentRow();
  for (int n = 1; n <= 12; ++n) {
    text(n)->setText(row ? rs->text(fields[n - 1]) : QString());
    // A long name shows from its beginning, not from where the caret was left.
    text(n)->setCursorPosition(0);
  }
  if (!row) text(13)->clear();
}

QMdiSubWindow* CurrentList::frame() const { return qobject_cast<QMdiSubWindow*>(parentWidget()); }

int CurrentList::twipsOf(int pixels) const { return PixelsToTwips(pixels, this); }

// ---- routines -------------------------------------------------------------------------------

void CurrentList::ApplyListColumns() { grid_->applyLayout(ListColumnLayouts()); }

void CurrentList::RefreshAltitude() {
  const SkyPosition p{text(7)->text(), text(8)->text(), text(9)->text(), text(10)->text(),
                      text(11)->text()};
  text(13)->setText(PlainNumber(AltitudeNow(state_, p)));
}

void CurrentList::PlotObject() {
  sky_->PlotObject(RowPosition(*datPrimary_), quint32(state_.settings.ObjectColor));
}

void CurrentList::writeCounter() {
  txtRecordCounter->setText(
      RecordCounterText(datPrimary_->AbsolutePosition(), datPrimary_->RecordCount()));
}

void CurrentList::Form_Activate() {
  RunGuarded(state_.prompter(), [&] {
    update();
    ApplyListColumns();
    if (FirstActivate_) {
      sky_->DrawSkyChart(stars_);
      FirstActivate_ = false;
    }
    if (datPrimary_->RecordCount() >= 1) {
      if (!datPrimary_->hasCurrentRow()) datPrimary_->MoveFirst();
      RefreshAltitude();
      PlotObject();
      if (FirstCount_) {
        datPrimary_->MoveLast();
        datPrimary_->MoveFirst();
        writeCounter();
        FirstCount_ = false;
      }
    } else {
      txtRecordCounter->clear();
    }
  });
}

void CurrentList::rowChanged() {
  RunGuarded(state_.prompter(), [&] {
    if (datPrimary_->RecordCount() >= 1 && !datPrimary_->hasCurrentRow())
      return;  // off either end, on the way back
    showCurrentRow();
  });
}

void CurrentList::showCurrentRow() {
  if (datPrimary_->RecordCount() >= 1) {
    refreshDetails();
    RefreshAltitude();
    writeCounter();
    PlotObject();
  } else {
    txtRecordCounter->clear();
  }
}

void CurrentList::GoToFirstRow() {
  RunGuarded(state_.prompter(), [&] {
    if (datPrimary_->RecordCount() >= 1) datPrimary_->MoveFirst();
  });
}

void CurrentList::GoToLastRow() {
  RunGuarded(state_.prompter(), [&] {
    if (datPrimary_->RecordCount() >= 1) datPrimary_->MoveLast();
  });
}

void CurrentList::cmdNext_Click() {
  RunGuarded(state_.prompter(), [&] {
    Recordset& rs = *datPrimary_;
    if (!rs.isEOF()) rs.MoveNext();
    if (rs.isEOF() && rs.RecordCount() >= 1) {
      state_.prompter().beep();
      rs.MoveLast();
    }
  });
}

void CurrentList::cmdPrevious_Click() {
  RunGuarded(state_.prompter(), [&] {
    Recordset& rs = *datPrimary_;
    if (!rs.isBOF()) rs.MovePrevious();
    if (rs.isBOF() && rs.RecordCount() >= 1) {
      state_.prompter().beep();
      rs.MoveFirst();
    }
  });
}

void CurrentList::cmdObserved_Click() {
  RunGuarded(state_.prompter(), [&] {
    if (!datPrimary_->hasCurrentRow()) return;
    const QString mark = ToggledObservedMark(grid_->columnText(QStringLiteral("Observed")));
    grid_->setAllowUpdate(true);
    const auto readOnly = qScopeGuard([this] { grid_->setAllowUpdate(false); });
    grid_->setColumnText(QStringLiteral("Observed"), mark);
    datPrimary_->Update();
  });
}

void CurrentList::cmdClearGoto_Click() {
  RunGuarded(state_.prompter(), [&] {
    {
      ClearGoto dialog(state_, this);
      dialog.exec();
    }
    if (!datPrimary_->hasCurrentRow() && state_.ClearGotoChoice == ClearGotoThis()) return;
    if (datPrimary_->RecordCount() < 1) return;
    ClearGotoMarks(*datPrimary_, state_.ClearGotoChoice);
  });
}

void CurrentList::cmdEdit_Click() {
  RunGuarded(state_.prompter(), [&] {
    {
      // The editor shows its own hourglass while it loads and clears it when it is up; one
      // held here would stay over the editor for as long as it is open.
      timer_->stop();
      const auto restart = qScopeGuard([this] { timer_->start(); });
      if (openEditor) openEditor(*this);
    }
    RequeryList();
  });
}

void CurrentList::RequeryList() {
  datPrimary_->Requery();
  update();
  ApplyListColumns();
  if (datPrimary_->RecordCount() >= 1) datPrimary_->MoveLast();
  showFirstRow();
}

void CurrentList::showFirstRow() {
  if (datPrimary_->RecordCount() >= 1) datPrimary_->MoveFirst();
  showCurrentRow();
}

void CurrentList::cmdGoto_Click() {
  ListGoto(
      state_, main_.scopeLink(),
      [this]() -> std::optional<SkyPosition> {
        if (datPrimary_->RecordCount() < 1 || !datPrimary_->hasCurrentRow()) return std::nullopt;
        return SkyPosition{text(7)->text(), text(8)->text(), text(9)->text(), text(10)->text(),
                           text(11)->text()};
      },
      [this] {
        grid_->setAllowUpdate(true);
        const auto readOnly = qScopeGuard([this] { grid_->setAllowUpdate(false); });
        grid_->setColumnText(QStringLiteral("Goto"), QStringLiteral("Y"));
        datPrimary_->Update();
      },
      [this] { main_.switchPositionTimers(); });
}

void CurrentList::cmdCDC_Click() {
  const bool moved =
      CentreChartOnObject(state_, main_.scopeLink(), [this]() -> std::optional<SkyPosition> {
        if (datPrimary_->RecordCount() < 1 || !datPrimary_->hasCurrentRow()) return std::nullopt;
        return SkyPosition{text(7)->text(), text(8)->text(), text(9)->text(), text(10)->text(),
                           text(11)->text()};
      });
  // The planetarium's window cannot be raised from here everywhere; stepping the main window
  // back brings it forward instead.
  if (moved) main_.lower();
}

void CurrentList::grdDataGrid_HeadClick(int column) {
  RunGuarded(state_.prompter(), [&] {
    if (!ListHeaderClick(sort_, column)) return;
    grid_->clearSelection();
    update();
    bindPrimary();
    ApplyListColumns();
    showFirstRow();
  });
}

void CurrentList::timerAltitude_Timer() {
  RunGuarded(state_.prompter(), [&] {
    sky_->DrawSkyChart(stars_);
    if (datPrimary_->RecordCount() >= 1 && datPrimary_->hasCurrentRow()) {
      RefreshAltitude();
      PlotObject();
    }
  });
}

// ---- events ---------------------------------------------------------------------------------

bool CurrentList::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  auto* key = static_cast<QKeyEvent*>(event);
  const bool ctrl = key->modifiers() & Qt::ControlModifier;
  switch (key->key()) {
    case Qt::Key_End: GoToLastRow(); return true;
    case Qt::Key_Home: GoToFirstRow(); return true;
    case Qt::Key_Up:
    case Qt::Key_PageUp: ctrl ? GoToFirstRow() : cmdPrevious_Click(); return true;
    case Qt::Key_Down:
    case Qt::Key_PageDown: ctrl ? GoToLastRow() : cmdNext_Click(); return true;
    default: return QWidget::eventFilter(watched, event);
  }
}

void CurrentList::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  RunIgnoringErrors([&] { placeControls(); });
}

void CurrentList::placeControls() {
  if (resizing_) return;
  resizing_ = true;
  QMdiSubWindow* f = frame();
  const int outer = twipsOf(f ? f->width() : width());
  int areaW = 1 << 30, areaH = 1 << 30;
  if (f && f->mdiArea()) {
    areaW = twipsOf(f->mdiArea()->viewport()->width());
    areaH = twipsOf(f->mdiArea()->viewport()->height());
  }
  const ListResize r =
      ListResizeRule(variant_, f && f->isMaximized(), areaW, areaH, outer, twipsOf(height()));
  if (r.restoreNormal) {
    f->showNormal();
    resizing_ = false;
    return;
  }
  if (f && (r.setWidth || r.setHeight)) {
    const int w = r.setWidth ? TwipsToPixels(r.width, this) : f->width();
    const int h =
        r.setHeight ? f->height() - height() + TwipsToPixels(r.height, this) : f->height();
    f->resize(w, h);
  }
  const auto px = [this](int twips) { return TwipsToPixels(twips, this); };
  const bool compact = variant_ == ListVariant::CurrentListFixed;
  for (const auto& [name, top] : r.tops) {
    for (const Place& p : bottomPlaces(variant_)) {
      if (name != QLatin1String(p.name)) continue;
      if (auto* w = findChild<QWidget*>(name))
        w->setGeometry(px(p.left), px(top), px(p.width), px(kButtonHeight));
    }
  }
  const int gridLeft = compact ? 45 : 4100;
  grid_->setGeometry(px(gridLeft), 0, std::max(0, px(r.gridWidth)), std::max(0, px(r.gridHeight)));
  if (r.skyLeft >= 0) sky_->placeAt(r.skyLeft, sky_->constants().top);
  if (compact)  // between the grid and the chart, however wide the grid has grown
    details_->setGeometry(px(std::max(3720, gridLeft + r.gridWidth + 60)), 0, px(3900),
                          std::max(0, px(r.height - 480)));
  else details_->setGeometry(px(45), px(4030), px(4000), std::max(0, px(r.height - 30 - 4030)));
  resizing_ = false;
}

void CurrentList::closeEvent(QCloseEvent* event) {
  if (closed_) {
    event->accept();
    return;
  }
  closed_ = true;
  timer_->stop();
  Hourglass hourglass;
  const QString path = documentPath();
  if (state_.OpenFileCount == 1) main_.setListCommandsEnabled(false);
  RunGuarded(state_.prompter(), [&] {
    RecordRecentFile(state_, documentTitle(), path);
    main_.refreshRecentMenu();
  });
  // The document leaves the open tables even when the recent-file table could not be written.
  RegisterClose(state_, path, slot_);
  event->accept();
}
