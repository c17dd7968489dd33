#include "charts/hhc.h"

#include <QApplication>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QTabBar>
#include <QTimer>

#include "catalog/catalogbrowser.h"
#include "catalog/catalogdialogs.h"
#include "catalog/database.h"
#include "catalog/datagrid.h"
#include "catalog/recordset.h"
#include "charts/hhclogic.h"
#include "charts/skywidget.h"
#include "core/appstate.h"
#include "core/handler.h"
#include "core/hourglass.h"
#include "core/numtext.h"
#include "core/selectall.h"
#include "core/twips.h"
#include "core/windowplacement.h"
#include "lists/editlistlogic.h"
#include "lists/listview.h"
#include "lists/objectdetails.h"
#include "scope/chartlink.h"
#include "scope/gotoflow.h"
#include "scope/positionpanel.h"
#include "sky/altitudefilter.h"

namespace {

// The inner area at the smallest size, in twips: the window less its frame and caption.
constexpr int kInnerWidth = HHCMinWidth - 120;
constexpr int kInnerHeight = HHCMinHeight - 435;
constexpr int kOpenWidth = 14400;
constexpr int kOpenHeight = 8400;

// The telescope panel under the pages: which row a control follows, its left and width.
enum class Row {
  ReadBack,
  ReadBackLabel,
  GetRA,
  Manual,
  ManualLabel,
  DecSignBox,
  DecSignButton,
  Close,
  FilterLabel
};
struct PanelPlace {
  const char* name;
  Row row;
  int left, width, height;
};
const PanelPlace kPanel[] = {
    {"lblReadBackRA", Row::ReadBackLabel, 4100, 300, 255},
    {"txtRAHour", Row::ReadBack, 4420, 400, 285},
    {"txtRAMin", Row::ReadBack, 4840, 600, 285},
    {"lblReadBackDec", Row::ReadBackLabel, 5500, 400, 255},
    {"txtDecSign", Row::ReadBack, 5920, 300, 285},
    {"txtDecDeg", Row::ReadBack, 6240, 450, 285},
    {"txtDecMin", Row::ReadBack, 6710, 450, 285},
    {"cmdGetRA", Row::GetRA, 7340, 1900, 375},
    {"lblGotoRA", Row::ManualLabel, 4100, 300, 255},
    {"txtGotoRAHour", Row::Manual, 4420, 400, 285},
    {"txtGotoRAMin", Row::Manual, 4840, 450, 285},
    {"txtGoToRASec", Row::Manual, 5310, 450, 285},
    {"lblGotoDec", Row::ManualLabel, 5800, 400, 255},
    {"cmdDecSign", Row::DecSignButton, 6220, 300, 315},
    {"txtGotoDecSign", Row::DecSignBox, 6220, 300, 285},
    {"txtGotoDecDeg", Row::Manual, 6540, 450, 285},
    {"txtGotoDecMin", Row::Manual, 7010, 450, 285},
    {"txtGotoDecSec", Row::Manual, 7480, 450, 285},
    {"cmdQuickGoto", Row::Manual, 7990, 1250, 375},
    {"cmdFilterAlt", Row::Close, 4100, 1000, 375},
    {"lblFilter", Row::FilterLabel, 5200, 1500, 255},
    {"cmdClose", Row::Close, 8240, 1000, 375},
};

int topOf(Row row, const HHCLayout& l) {
  switch (row) {
    case Row::ReadBack: return l.readBackTop;
    case Row::ReadBackLabel: return l.readBackLabelTop;
    case Row::GetRA: return l.getRATop;
    case Row::Manual: return l.manualTop;
    case Row::ManualLabel: return l.manualLabelTop;
    case Row::DecSignBox: return l.decSignBoxTop;
    case Row::DecSignButton: return l.decSignButtonTop;
    case Row::Close: return l.closeTop;
    case Row::FilterLabel: return l.filterLabelTop;
  }
  return 0;
}

}  // namespace

HHC::HHC(AppState& state, ScopeLink& link, QWidget* parent)
    : QWidget(parent, Qt::Window), state_(state), link_(link) {
  setObjectName(QStringLiteral("HHC"));
  setWindowTitle(QStringLiteral("Hyper Hand Control"));
  setAttribute(Qt::WA_DeleteOnClose);
  QFont small = font();
  small.setPointSizeF(8);
  setFont(small);
  showFilterDialog = [this](QWidget* p) { ShowFilterDialog(state_, p); };
  buildControls();

  // Load: the pages open on their number option, in the sort and filter the program holds.
  SSTab1->resetSearchOptions();
  RunGuarded(state_.prompter(), [&] {
    if (state_.FilterOn) {
      const Hourglass pointer(CatalogBrowser::filterBusyCursor());
      BuildAltitudeWhere(state_, SiderealDegreesNow(state_));
    }
  });
  SSTab1->bindPages();
  RunGuarded(state_.prompter(), [&] {
    const auto catalog = Database::open(state_.catalogPath(), Database::Mode::ReadOnly);
    stars_ = LoadMapStars(*catalog);
  });
  setMinimumSize(TwipsToPixels(kInnerWidth, this), TwipsToPixels(kInnerHeight, this));
  // It opens wide enough to show a page's columns, as far as the screen has the room.
  resize(TwipsToPixels(kOpenWidth, this), TwipsToPixels(kOpenHeight, this));
  KeepWindowPlacement(this, state_);
  timerAltitude->start();
  qApp->installEventFilter(this);
}

HHC::~HHC() { qApp->removeEventFilter(this); }

void HHC::buildControls() {
  auto button = [this](const char* name, const QString& caption) {
    auto* b = new QPushButton(caption, this);
    b->setObjectName(QString::fromLatin1(name));
    b->setAutoDefault(false);
    return b;
  };
  auto field = [this](const char* name, bool readOnly) {
    auto* e = new QLineEdit(this);
    e->setObjectName(QString::fromLatin1(name));
    e->setReadOnly(readOnly);
    e->setAlignment(Qt::AlignRight);
    if (!readOnly) SelectAllOnFocus(e);
    return e;
  };
  auto label = [this](const char* name, const QString& caption) {
    auto* l = new QLabel(caption, this);
    l->setObjectName(QString::fromLatin1(name));
    l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return l;
  };

  Sky = new SkyWidget(
      ChartWindow::HHC, [this](const SkyCoordinates& p) { return AltitudeNow(state_, p); },
      [this](const SkyCoordinates& p) { return AzimuthNow(state_, p); }, this);
  Sky->placeAt(Sky->constants().left, Sky->constants().top);
  Sky->followRedScreen([this] { return state_.RedScreenOn; });
  details_ = BuildObjectDetails(this, false, texts_);

  SSTab1 = new CatalogBrowser(state_, BrowserHost::HHC, this);
  SSTab1->tabBar()->installEventFilter(this);

  label("lblReadBackRA", QStringLiteral("RA"));
  label("lblReadBackDec", QStringLiteral("Dec"));
  for (const char* name : {"txtRAHour", "txtRAMin", "txtDecSign", "txtDecDeg", "txtDecMin"})
    field(name, true);
  button("cmdGetRA", QStringLiteral("Get Scope &Position"));
  line_ = new QFrame(this);
  static_cast<QFrame*>(line_)->setFrameShape(QFrame::HLine);
  static_cast<QFrame*>(line_)->setFrameShadow(QFrame::Sunken);
  label("lblGotoRA", QStringLiteral("RA"));
  label("lblGotoDec", QStringLiteral("Dec"));
  for (const char* name : {"txtGotoRAHour", "txtGotoRAMin", "txtGoToRASec", "txtGotoDecDeg",
                           "txtGotoDecMin", "txtGotoDecSec"})
    field(name, false);
  button("cmdDecSign", QStringLiteral("+"));
  // The button shows the sign its companion box holds.
  field("txtGotoDecSign", false)->setText(QStringLiteral("+"));
  findChild<QLineEdit*>(QStringLiteral("txtGotoDecSign"))->hide();
  button("cmdQuickGoto", QStringLiteral("&Quick GoTo"));
  button("cmdGoto", QStringLiteral("&GoTo"));
  button("cmdCDC", QStringLiteral("&CDC"));
  button("cmdFilterAlt", QStringLiteral("&Filter"));
  button("cmdClose", QStringLiteral("Close"));
  lblFilter = new QLabel(QStringLiteral("Filter On!!!"), this);
  lblFilter->setObjectName(QStringLiteral("lblFilter"));
  QFont bold = lblFilter->font();
  bold.setBold(true);
  lblFilter->setFont(bold);
  lblFilter->hide();

  timerAltitude = new QTimer(this);
  timerAltitude->setObjectName(QStringLiteral("timerAltitude"));
  timerAltitude->setInterval(60000);

  const std::pair<const char*, void (HHC::*)()> handlers[] = {
      {"cmdGetRA", &HHC::cmdGetRA_Click},     {"cmdQuickGoto", &HHC::cmdQuickGoto_Click},
      {"cmdDecSign", &HHC::cmdDecSign_Click}, {"cmdGoto", &HHC::cmdGoto_Click},
      {"cmdCDC", &HHC::cmdCDC_Click},         {"cmdFilterAlt", &HHC::cmdFilterAlt_Click}};
  for (const auto& [name, slot] : handlers) {
    auto* b = findChild<QPushButton*>(QString::fromLatin1(name));
    connect(b, &QPushButton::clicked, this, [this, slot = slot] { (this->*slot)(); });
  }
  connect(findChild<QPushButton*>(QStringLiteral("cmdClose")), &QPushButton::clicked, this,
          &QWidget::close);
  connect(timerAltitude, &QTimer::timeout, this, [this] { timerAltitude_Timer(); });
  connect(SSTab1, &CatalogBrowser::pageRowChanged, this, [this] { ShowDetails(); });
  connect(SSTab1, &CatalogBrowser::pageDoubleClicked, this, [this] { cmdGoto_Click(); });
  connect(SSTab1, &QTabWidget::currentChanged, this, [this] { tabChanged(); });
}

// ---- activation and the timer ---------------------------------------------------------------

void HHC::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) Form_Activate();
}

void HHC::Form_Activate() {
  RunGuarded(state_.prompter(), [&] {
    repaint();
    if (FirstActivate) {
      DrawSkyChart();
      FirstActivate = false;
      SSTab1->repaint();
      LayoutGrids();
      if (QLineEdit* search = SSTab1->currentSearchBox()) search->setFocus();
    } else if (lblFilter->isVisibleTo(this) != state_.FilterOn) {
      // The filter was switched in another window (or by the Filter dialog just closed).
      AltitudeTicks = 20;
      timerAltitude_Timer();
    }
    ShowDetails();
  });
}

void HHC::timerAltitude_Timer() {
  RunGuarded(state_.prompter(), [&] {
    if (AltitudeTickRequery(AltitudeTicks)) {
      SSTab1->refreshFilter(state_.FilterOn ? SiderealDegreesNow(state_) : 0);
      LayoutGrids();
    }
    DrawSkyChart();
    ShowDetails();
  });
}

void HHC::DrawSkyChart() { Sky->DrawSkyChart(stars_); }

void HHC::LayoutGrids() {
  SSTab1->applyLayouts();
  lblFilter->setVisible(state_.FilterOn);
}

// ---- the object in view ---------------------------------------------------------------------

void HHC::ShowDetails() {
  RunGuarded(state_.prompter(), [&] {
    for (QLineEdit* t : texts_) t->clear();
    const int tab = SSTab1->currentIndex();
    if (tab < 0 || tab > 7) return;
    const Recordset* page = SSTab1->pageRecordset(tab);
    // A page filtered empty shows nothing, and the marker stays where it was.
    if (!page || page->RecordCount() < 1 || !page->hasCurrentRow()) return;
    const QStringList texts = HHCDetailTexts(*page, tab);
    for (int n = 1; n <= 12; ++n) {
      detail(n)->setText(texts[n - 1]);
      detail(n)->setCursorPosition(0);
    }
    const SkyPosition p{detail(7)->text(), detail(8)->text(), detail(9)->text(), detail(10)->text(),
                        detail(11)->text()};
    detail(13)->setText(PlainNumber(AltitudeNow(state_, p)));
    Sky->PlotObject(p, quint32(state_.settings.ObjectColor));
  });
}

void HHC::tabChanged() {
  ShowDetails();
  if (QLineEdit* search = SSTab1->currentSearchBox()) search->setFocus();
}

// ---- telescope ------------------------------------------------------------------------------

std::optional<SkyPosition> HHC::objectInView() const {
  const Recordset* page = SSTab1->pageRecordset(SSTab1->currentIndex());
  if (!page || !page->hasCurrentRow()) return std::nullopt;
  return SkyPosition{detail(7)->text(), detail(8)->text(), detail(9)->text(), detail(10)->text(),
                     detail(11)->text()};
}

void HHC::cmdGoto_Click() {
  // On a page filtered empty nothing is in view, and there is nothing to slew to.
  if (const std::optional<SkyPosition> target = objectInView())
    HandControlGoto(state_, link_, [&] { return *target; });
  if (QLineEdit* search = SSTab1->currentSearchBox()) search->setFocus();
}

void HHC::cmdQuickGoto_Click() {
  QuickGoto(state_, link_, QuickGotoFieldsOf(this), GotoPanel::HandControl);
}

void HHC::cmdGetRA_Click() { ShowScopePosition(state_, link_, this); }

void HHC::cmdDecSign_Click() { FlipDecSignOf(this); }

void HHC::cmdCDC_Click() {
  const bool moved = CentreChartOnObject(state_, link_, [this] { return objectInView(); });
  // Stepping back lets the planetarium come forward, whatever its title reads now.
  if (moved) lower();
}

// ---- the filter -----------------------------------------------------------------------------

void HHC::cmdFilterAlt_Click() {
  RunGuarded(state_.prompter(), [&] {
    if (state_.FilterOn) {
      state_.FilterOn = false;
      AltitudeTicks = 20;
      timerAltitude_Timer();
      return;
    }
    timerAltitude->stop();
    AltitudeTicks = 20;
    state_.FilterFormTop = FilterFormTopFor(PixelsToTwips(frameGeometry().top(), this),
                                            PixelsToTwips(frameGeometry().height(), this));
    // Closing the dialog by its close box counts as Cancel here, as in the list editor.
    state_.FilterCancelled = true;
    showFilterDialog(this);
    if (!state_.FilterCancelled) state_.FilterOn = true;
    timerAltitude->start();
  });
  // The pages are queried again by the activation that follows the dialog; it is run here
  // too, in case the window system told of the activation while the dialog was still up.
  Form_Activate();
}

// ---- layout and keys ------------------------------------------------------------------------

void HHC::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  RunIgnoringErrors([&] { layoutControls(); });
}

void HHC::layoutControls() {
  const double twipsPerPixel = 1440.0 / (logicalDpiY() > 0 ? logicalDpiY() : 96);
  const int w = int(std::lround(width() * twipsPerPixel));
  const int h = int(std::lround(height() * twipsPerPixel));
  const HHCLayout l = HHCLayoutFor(w, h);
  auto px = [this](int twips) { return TwipsToPixels(qMax(0, twips), this); };
  auto place = [&](QWidget* c, int left, int top, int width, int height) {
    c->setGeometry(px(left), px(top), px(width), px(height));
  };
  Sky->placeAt(Sky->constants().left, Sky->constants().top);
  place(details_, 45, 4030, 4020, kInnerHeight - 390 - 4060);
  place(findChild<QWidget*>(QStringLiteral("cmdGoto")), 45, kInnerHeight - 390, 1500, 375);
  place(findChild<QWidget*>(QStringLiteral("cmdCDC")), 1620, kInnerHeight - 390, 900, 375);
  place(SSTab1, 4100, 0, l.tabWidth, l.tabHeight);
  for (int tab = 0; tab < 8; ++tab) {
    if (DataGrid* g = SSTab1->pageGrid(tab))
      g->setFixedSize(px(l.gridWidth), px(tab == 5 ? l.userGridHeight : l.gridHeight));
  }
  for (const PanelPlace& p : kPanel) {
    if (auto* c = findChild<QWidget*>(QString::fromLatin1(p.name)))
      place(c, p.left, topOf(p.row, l), p.width, p.height);
  }
  place(line_, 4100, l.lineY - 15, w - 4120, 30);
}

bool HHC::eventFilter(QObject* watched, QEvent* event) {
  if (watched == SSTab1->tabBar() && event->type() == QEvent::FocusIn) {
    // The tab control passes the focus on to the search box of the page showing.
    if (QLineEdit* search = SSTab1->currentSearchBox())
      QTimer::singleShot(0, search, [search] { search->setFocus(); });
    return false;
  }
  if (event->type() != QEvent::KeyPress || !isVisible()) return false;
  auto* w = qobject_cast<QWidget*>(watched);
  if (!w || w->window() != this) return false;
  auto* key = static_cast<QKeyEvent*>(event);
  if (key->key() == Qt::Key_F1 && key->modifiers() == Qt::NoModifier) {
    RunIgnoringErrors([&] {
      if (showHelp) showHelp();
    });
    return true;
  }
  if (!(key->modifiers() & Qt::ControlModifier)) return false;
  if (key->key() != Qt::Key_Tab && key->key() != Qt::Key_Backtab) return false;
  const bool backwards = key->key() == Qt::Key_Backtab || (key->modifiers() & Qt::ShiftModifier);
  RunIgnoringErrors(
      [&] { SSTab1->setCurrentIndex(NeighbourTab(SSTab1->currentIndex(), backwards)); });
  return true;
}
