#include "catalog/catalogbrowser.h"

#include <QEvent>
#include <QGroupBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QSet>
#include <QVBoxLayout>
#include <cmath>

#include "catalog/catalogdialogs.h"
#include "catalog/catalogpages.h"
#include "catalog/catalogwindowlogic.h"
#include "catalog/database.h"
#include "catalog/datagrid.h"
#include "catalog/pagesort.h"
#include "catalog/recordset.h"
#include "catalog/searchcriteria.h"
#include "core/appstate.h"
#include "core/handler.h"
#include "core/hourglass.h"
#include "core/selectall.h"
#include "core/widgetkit.h"

namespace {

enum Which { FindFirst, FindNext, FindPrev };

}  // namespace

struct CatalogBrowser::Page {
  QWidget* widget = nullptr;
  DataGrid* grid = nullptr;
  QLineEdit* search = nullptr;
  QRadioButton* optNum = nullptr;
  QRadioButton* optName = nullptr;
  QPushButton* cmdFind = nullptr;
  QPushButton* cmdNext = nullptr;
  QPushButton* cmdPrev = nullptr;
  QPushButton* cmdEditUser = nullptr;
  QVBoxLayout* extras = nullptr;
  QPushButton* defaultFind = nullptr;
  std::unique_ptr<Recordset> recordset;
};

CatalogBrowser::CatalogBrowser(AppState& state, BrowserHost host, QWidget* parent)
    : QTabWidget(parent), state_(state), host_(host) {
  setObjectName(QStringLiteral("SSTab1"));
  for (int tab = 0; tab < 8; ++tab) buildPage(tab);
}

CatalogBrowser::~CatalogBrowser() {
  // The grids go with their pages; let them drop the recordsets first.
  for (auto& page : pages_) page->grid->setRecordset(nullptr);
}

void CatalogBrowser::buildPage(int tab) {
  const CatalogPage& def = PageByTab(tab);
  auto page = std::make_unique<Page>();
  Page* p = page.get();
  p->widget = named(new QWidget(this), QStringLiteral("page") + def.dataControl);
  auto* layout = new QVBoxLayout(p->widget);
  layout->setContentsMargins(4, 4, 4, 4);

  p->grid = named(new DataGrid(p->widget), def.grid);
  p->grid->setPrompter(&state_.prompter());
  layout->addWidget(p->grid, 1);

  auto* bottom = new QHBoxLayout;
  auto* searchColumn = new QVBoxLayout;
  searchColumn->addWidget(
      named(new QLabel(QStringLiteral("Search for:"), p->widget), QStringLiteral("lblSearch")));
  p->search = named(new QLineEdit(p->widget), def.searchBox);
  // The hand control window's pages are narrow: their find buttons stand one above another.
  const bool narrow = host_ == BrowserHost::HHC;
  p->search->setMinimumWidth(narrow ? 90 : 140);
  SelectAllOnFocus(p->search);
  searchColumn->addWidget(p->search);
  searchColumn->addStretch(1);
  bottom->addLayout(searchColumn);

  auto* column =
      named(new QGroupBox(def.searchFrameCaption, p->widget), QStringLiteral("fraColumn"));
  auto* columnLayout = new QVBoxLayout(column);
  p->optNum = named(new QRadioButton(def.numberOptionCaption, column), def.numberOption);
  p->optName = named(new QRadioButton(def.nameOptionCaption, column), def.nameOption);
  p->optNum->setChecked(true);
  columnLayout->addWidget(p->optNum);
  columnLayout->addWidget(p->optName);
  bottom->addWidget(column);

  auto* search =
      named(new QGroupBox(QStringLiteral("Search"), p->widget), QStringLiteral("fraSearch"));
  auto* searchLayout =
      new QBoxLayout(narrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight, search);
  if (narrow) {
    searchLayout->setSpacing(2);
    searchLayout->setContentsMargins(4, 2, 4, 2);
    columnLayout->setContentsMargins(4, 2, 4, 2);
  }
  p->cmdFind = named(new QPushButton(QStringLiteral("Find First"), search), def.findFirst);
  p->cmdNext = named(new QPushButton(QStringLiteral("Find Next"), search), def.findNext);
  p->cmdPrev = named(new QPushButton(QStringLiteral("Find Prev"), search), def.findPrev);
  searchLayout->addWidget(p->cmdFind);
  searchLayout->addWidget(p->cmdNext);
  searchLayout->addWidget(p->cmdPrev);
  bottom->addWidget(search);

  p->extras = new QVBoxLayout;
  if (def.querySet == 7) {
    p->cmdEditUser =
        named(new QPushButton(QStringLiteral("Edit"), p->widget), QStringLiteral("cmdEditUser"));
    p->extras->addWidget(p->cmdEditUser);
    connect(p->cmdEditUser, &QPushButton::clicked, this, [this] { editUserObjects(); });
  }
  bottom->addLayout(p->extras);
  bottom->addStretch(1);
  layout->addLayout(bottom);
  addTab(p->widget, def.caption);

  // Enter presses the page's default find button, whatever the host window is.
  p->widget->installEventFilter(this);
  p->grid->installEventFilter(this);
  p->grid->viewport()->installEventFilter(this);

  connect(p->search, &QLineEdit::textChanged, this,
          [this, tab] { setDefaultFind(tab, pages_[tab]->cmdFind); });
  for (QRadioButton* o : {p->optNum, p->optName})
    connect(o, &QRadioButton::clicked, this,
            [this, tab] { setDefaultFind(tab, pages_[tab]->cmdFind); });
  connect(p->cmdFind, &QPushButton::clicked, this, [this, tab] { find(tab, FindFirst); });
  connect(p->cmdNext, &QPushButton::clicked, this, [this, tab] { find(tab, FindNext); });
  connect(p->cmdPrev, &QPushButton::clicked, this, [this, tab] { find(tab, FindPrev); });

  connect(p->grid, &DataGrid::headClicked, this, [this, tab](int c) { headerClick(tab, c); });
  connect(p->grid, &DataGrid::rowColChange, this,
          [this, tab](const QVariant& last) { rowChanged(tab, last); });
  connect(p->grid, &DataGrid::gridClicked, this, [this, tab] { emit pageClicked(tab); });
  connect(p->grid, &DataGrid::gridDoubleClicked, this,
          [this, tab] { emit pageDoubleClicked(tab); });
  if (host_ == BrowserHost::EditList) {
    connect(p->grid, &DataGrid::gridMousePressed, this,
            [this](Qt::MouseButton, Qt::KeyboardModifiers modifiers) {
              const Qt::KeyboardModifiers shiftState =
                  modifiers & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
              ShiftHeld = shiftState == Qt::ShiftModifier;
              CtrlHeld = shiftState == Qt::ControlModifier;
            });
  }
  pages_[tab] = std::move(page);
  setDefaultFind(tab, p->cmdFind);
}

bool CatalogBrowser::eventFilter(QObject* watched, QEvent* event) {
  for (int tab = 0; tab < 8; ++tab) {
    Page* p = pages_[tab].get();
    if (!p) continue;
    if (watched == p->widget && event->type() == QEvent::KeyPress) {
      auto* key = static_cast<QKeyEvent*>(event);
      if ((key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) &&
          (key->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier && p->defaultFind &&
          p->defaultFind->isEnabled()) {
        p->defaultFind->click();
        return true;
      }
    } else if (watched == p->grid && event->type() == QEvent::FocusIn) {
      emit pageEntered(tab);
    } else if (watched == p->grid->viewport() && event->type() == QEvent::MouseButtonRelease) {
      ShiftHeld = false;
      CtrlHeld = false;
    }
  }
  return QTabWidget::eventFilter(watched, event);
}

void CatalogBrowser::setDefaultFind(int tab, QPushButton* button) {
  Page* p = pages_[tab].get();
  p->defaultFind = button;
  for (QPushButton* b : {p->cmdFind, p->cmdNext, p->cmdPrev}) b->setDefault(b == button);
}

// ---- binding -----------------------------------------------------------------------------

std::shared_ptr<Database> CatalogBrowser::databaseFor(int tab) {
  const CatalogPage& def = PageByTab(tab);
  if (def.source == CatalogPage::Source::UserList) {
    if (!userDb_) {
      EnsureUserList(state_);
      userDb_ = Database::open(PageDatabasePath(state_, def), Database::Mode::ReadWrite);
    }
    return userDb_;
  }
  if (!catalogDb_)
    catalogDb_ = Database::open(PageDatabasePath(state_, def), Database::Mode::ReadOnly);
  return catalogDb_;
}

void CatalogBrowser::openPage(int tab, const QString& recordSource) {
  Page* p = pages_[tab].get();
  // The page keeps what it showed until the new source has opened.
  auto rs = std::make_unique<Recordset>(databaseFor(tab), recordSource);
  p->grid->setRecordset(rs.get());
  p->recordset = std::move(rs);
}

void CatalogBrowser::bindPage(int tab) {
  openPage(tab, PageRecordSource(state_, PageByTab(tab).querySet));
}

void CatalogBrowser::bindPages() {
  // A database that fails fails for every page on it: one box for each different error.
  QSet<QString> shown;
  for (int tab : PageBindOrder()) {
    RunGuarded([&] { bindPage(tab); },
               [&](const AppError& e) {
                 if (shown.contains(e.text())) return;
                 shown.insert(e.text());
                 state_.prompter().message(AppTitle(), e.text());
               });
  }
}

void CatalogBrowser::requeryPage(int tab) {
  Page* p = pages_[tab].get();
  RunGuarded(state_.prompter(), [&] {
    if (p->recordset) p->recordset->Requery();
    else bindPage(tab);
  });
}

void CatalogBrowser::applyLayout(int tab) {
  const CatalogPage& def = PageByTab(tab);
  RunIgnoringErrors([&] {
    pages_[tab]->grid->applyLayout(host_ == BrowserHost::EditList ? def.editListColumns
                                                                  : def.hhcColumns);
  });
}

void CatalogBrowser::applyLayouts() {
  for (int tab = 0; tab < 8; ++tab) applyLayout(tab);
}

void CatalogBrowser::resetSearchOptions() {
  for (int tab = 0; tab < 8; ++tab) pages_[tab]->optNum->setChecked(true);
}

void CatalogBrowser::refreshFilter(double siderealDegrees) {
  Hourglass pointer(state_.FilterOn ? filterBusyCursor() : QCursor(Qt::WaitCursor));
  SetPageWheres(state_, siderealDegrees);
  bindPages();
  applyLayouts();
}

Recordset* CatalogBrowser::pageRecordset(int tab) const { return pages_[tab]->recordset.get(); }
DataGrid* CatalogBrowser::pageGrid(int tab) const { return pages_[tab]->grid; }
QLineEdit* CatalogBrowser::searchBox(int tab) const {
  return tab >= 0 && tab < 8 ? pages_[tab]->search : nullptr;
}

void CatalogBrowser::addPageButton(int tab, QPushButton* button) {
  button->setParent(pages_[tab]->widget);
  pages_[tab]->extras->insertWidget(0, button);
}

// ---- search --------------------------------------------------------------------------------

void CatalogBrowser::find(int tab, int which) {
  Page* p = pages_[tab].get();
  const CatalogPage& def = PageByTab(tab);
  const SearchOption option = p->optNum->isChecked() ? SearchOption::Number : SearchOption::Name;
  RunGuarded(state_.prompter(), [&] {
    if (host_ == BrowserHost::EditList) {
      while (p->grid->selectedBookmarkCount() > 0) p->grid->removeSelectedBookmark(0);
    }
    Recordset* rs = p->recordset.get();
    bool matched = false;
    if (rs) {
      const QString criteria = SearchCriteria(def.querySet, option, p->search->text());
      if (which == FindFirst) rs->FindFirst(criteria);
      else if (which == FindNext) rs->FindNext(criteria);
      else rs->FindPrevious(criteria);
      matched = !rs->NoMatch();
    }
    p->grid->setFocus();
    p->grid->setCurrentColumn(ColumnAfterFind(def.querySet, option));
    if (!matched) {
      state_.prompter().beep();
      state_.prompter().message(QString(), NotFoundMessage());
    }
  });
  // Enter goes on with Find Next, whether the search matched or not.
  if (which == FindFirst) setDefaultFind(tab, p->cmdNext);
}

// ---- sorting -------------------------------------------------------------------------------

void CatalogBrowser::headerClick(int tab, int column) {
  Page* p = pages_[tab].get();
  const CatalogPage& def = PageByTab(tab);
  auto rebuild = [&] {
    PageHeaderClick(state_.Pages[def.querySet], def.querySet, column);
    p->grid->clearSelection();
    repaint();
    bindPage(tab);
  };
  if (host_ == BrowserHost::EditList && def.source == CatalogPage::Source::UserList) {
    // An older user table lacks columns of the page's query: say so, and show the table as it is.
    RunGuarded(rebuild, [&](const AppError&) {
      state_.prompter().message(UserListOutdatedTitle(), UserListOutdatedMessage());
      RunGuarded(state_.prompter(), [&] { openPage(tab, UserObjectsTable()); });
    });
  } else if (!RunGuarded(state_.prompter(), rebuild)) {
    return;
  }
  applyLayout(tab);
}

// ---- selection -------------------------------------------------------------------------------

void CatalogBrowser::rowChanged(int tab, const QVariant& lastBookmark) {
  Page* p = pages_[tab].get();
  if (host_ == BrowserHost::EditList && p->recordset && (ShiftHeld || CtrlHeld)) {
    RunGuarded(state_.prompter(), [&] {
      Recordset& rs = *p->recordset;
      if (!rs.hasCurrentRow()) return;
      const qint64 current = rs.Bookmark();
      auto add = [&](qint64 b) {
        if (!p->grid->selectedBookmarks().contains(b)) p->grid->addSelectedBookmark(b);
      };
      if (ShiftHeld) {
        ShiftHeld = false;
        const qint64 last = lastBookmark.isValid() ? lastBookmark.toLongLong() : current;
        for (qint64 b : ShiftSelection(rs, last, current)) add(b);
      } else {
        CtrlHeld = false;
        add(current);
      }
    });
  }
  emit pageRowChanged(tab);
}

// ---- user objects ----------------------------------------------------------------------------

void CatalogBrowser::editUserObjects() {
  state_.EditUserListCaller = QStringLiteral("Form");
  ShowEditUserList(state_, window());
  repaint();
  requeryPage(5);
}

// ---- pointer 99 ------------------------------------------------------------------------------

QCursor CatalogBrowser::filterBusyCursor() {
  return [] {
    QPixmap pix(32, 32);
    pix.fill(Qt::transparent);
    QPainter painter(&pix);
    painter.setRenderHint(QPainter::Antialiasing);
    // A red five-pointed star...
    QPainterPath star;
    const QPointF centre(11, 11);
    for (int i = 0; i < 10; ++i) {
      const double r = (i % 2 == 0) ? 10.5 : 4.2;
      const double a = -M_PI / 2 + i * M_PI / 5;
      const QPointF pt(centre.x() + r * std::cos(a), centre.y() + r * std::sin(a));
      if (i == 0) star.moveTo(pt);
      else star.lineTo(pt);
    }
    star.closeSubpath();
    painter.setPen(QPen(Qt::black, 1));
    painter.setBrush(QColor(220, 0, 0));
    painter.drawPath(star);
    // ...with a small hourglass below it on the right.
    painter.setBrush(QColor(255, 230, 150));
    QPolygonF top, bottom;
    top << QPointF(18, 16) << QPointF(29, 16) << QPointF(23.5, 23);
    bottom << QPointF(23.5, 23) << QPointF(29, 30) << QPointF(18, 30);
    painter.drawPolygon(top);
    painter.drawPolygon(bottom);
    painter.setPen(QPen(Qt::black, 2));
    painter.drawLine(QPointF(17, 16), QPointF(30, 16));
    painter.drawLine(QPointF(17, 30), QPointF(30, 30));
    painter.end();
    return QCursor(pix, 11, 11);
  }();
}
