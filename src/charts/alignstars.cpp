#include "charts/alignstars.h"

#include <QCheckBox>
#include <QEvent>
#include <QFontDatabase>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPainter>
#include <QPushButton>
#include <QTimer>

#include "catalog/database.h"
#include "charts/skywidget.h"
#include "core/appstate.h"
#include "core/handler.h"
#include "core/twips.h"
#include "lists/editlistlogic.h"
#include "sky/skycalc.h"
#include "sky/userdatedialog.h"

AlignStars::AlignStars(AppState& state, QWidget* parent) : QWidget(parent), state_(state) {
  setObjectName(QStringLiteral("AlignStars"));
  setWindowTitle(QStringLiteral("Alignment Stars"));
  setAttribute(Qt::WA_DeleteOnClose);
  // The tables beside the chart are laid out for a small sans-serif font.
  QFont small = font();
  small.setPointSizeF(8);
  setFont(small);
  showUserDateDialog = [this](QWidget* p) { ShowUserDateDialog(state_, p); };
  buildControls();
  RunGuarded(state_.prompter(), [&] {
    const auto catalog = Database::open(state_.catalogPath(), Database::Mode::ReadOnly);
    stars_ = LoadAlignmentStars(*catalog);
  });
  lblUserDate->setText(UserDateLabel(state_.UserDate));
  resize(TwipsToPixels(AlignStarsWidth - 120, this), TwipsToPixels(AlignStarsHeight - 475, this));
  timerAltitude->start();
}

AlignStars::~AlignStars() = default;

void AlignStars::buildControls() {
  auto place = [this](QWidget* w, int left, int top, int width, int height) {
    w->setGeometry(TwipsToPixels(left, this), TwipsToPixels(top, this), TwipsToPixels(width, this),
                   TwipsToPixels(height, this));
  };
  auto button = [&](QWidget* parent, const char* name, const QString& caption) {
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(QString::fromLatin1(name));
    return b;
  };

  Sky = new SkyWidget(
      ChartWindow::AlignStars,
      [this](const SkyCoordinates& p) { return AltitudeAtUserDate(state_, p); },
      [this](const SkyCoordinates& p) { return AzimuthAtUserDate(state_, p); }, this);
  Sky->placeAt(Sky->constants().left, Sky->constants().top);
  Sky->followRedScreen([this] { return state_.RedScreenOn; });
  QFont names(QStringLiteral("Arial"));
  names.setStyleHint(QFont::SansSerif);
  names.setPointSizeF(8.25);
  Sky->surface().setFont(names);

  // The date lies on the chart where the "S" would be, in the letters' colour and font.
  lblUserDate = new QLabel(Sky);
  lblUserDate->setObjectName(QStringLiteral("lblUserDate"));
  lblUserDate->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  lblUserDate->setAttribute(Qt::WA_TranslucentBackground);
  if (auto* letter = Sky->findChild<QLabel*>(QStringLiteral("lblCompassN")))
    lblUserDate->setFont(letter->font());
  place(lblUserDate, 2160, 6120, 3120, 240);
  cmdUserDate = button(Sky, "cmdUserDate", QStringLiteral("<- Change"));
  place(cmdUserDate, 5400, 6120, 960, 240);

  chkAutoAlignment = new QCheckBox(QStringLiteral("Auto Align/GPS Align Stars Only"), this);
  chkAutoAlignment->setObjectName(QStringLiteral("chkAutoAlignment"));
  place(chkAutoAlignment, 120, 6480, 3375, 255);
  cmdToggleNames = button(this, "cmdToggleNames", QStringLiteral("&Toggle Names"));
  place(cmdToggleNames, 5040, 6435, 1300, 375);
  cmdPrint = button(this, "cmdPrint", QStringLiteral("&Print"));
  place(cmdPrint, 7080, 6435, 975, 375);
  cmdClose = button(this, "cmdClose", QStringLiteral("Close"));
  place(cmdClose, 8160, 6435, 975, 375);

  timerAltitude = new QTimer(this);
  timerAltitude->setObjectName(QStringLiteral("timerAltitude"));
  timerAltitude->setInterval(60000);

  connect(timerAltitude, &QTimer::timeout, this, [this] { Form_Activate(); });
  connect(chkAutoAlignment, &QCheckBox::clicked, this, [this] { Form_Activate(); });
  connect(cmdToggleNames, &QPushButton::clicked, this, [this] { cmdToggleNames_Click(); });
  connect(cmdUserDate, &QPushButton::clicked, this, [this] { cmdUserDate_Click(); });
  connect(cmdPrint, &QPushButton::clicked, this, [this] {
    RunGuarded(state_.prompter(), [&] {
      if (printRequested) printRequested();
    });
  });
  connect(cmdClose, &QPushButton::clicked, this, [this] {
    if (QMdiSubWindow* f = frame()) f->close();
    else close();
  });
}

void AlignStars::Form_Activate() {
  repaint();
  DrawAlignmentChart();
  ShowBestPairs();
}

void AlignStars::DrawAlignmentChart() {
  candidates_.clear();
  RunGuarded(state_.prompter(), [&] {
    const quint32 letters = ChartColourToRgb(SystemColour3DHighlight, state_.RedScreenOn);
    QPalette pal = lblUserDate->palette();
    pal.setColor(QPalette::WindowText,
                 QColor(int(letters & 0xFF), int((letters >> 8) & 0xFF), int(letters >> 16)));
    lblUserDate->setPalette(pal);
    AlignChartOptions options;
    options.autoOnly = chkAutoAlignment->isChecked();
    options.showNames = ShowNames;
    options.objectColour = quint32(state_.settings.ObjectColor);
    Sky->draw([&](ChartSurface& surface) {
      candidates_ = ::DrawAlignmentChart(
          surface, stars_,
          [this](const MapStar& s) { return AltitudeAtUserDate(state_, s.position); },
          [this](const MapStar& s) { return AzimuthAtUserDate(state_, s.position); }, options);
    });
  });
}

void AlignStars::ShowBestPairs() {
  pairsText_.clear();
  RunGuarded(state_.prompter(), [&] {
    const BestPairs pairs = MakeBestPairs(state_, candidates_, !chkAutoAlignment->isChecked());
    pairsText_ = BestPairsScreenText(pairs, twipsOf(fontMetrics().height()));
  });
  update();
}

void AlignStars::paintEvent(QPaintEvent* event) {
  QWidget::paintEvent(event);
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::WindowText));
  QFont plain = font();
  QFont bold = font();
  bold.setBold(true);
  for (const PlacedText& t : pairsText_) {
    painter.setFont(t.bold ? bold : plain);
    const int x = TwipsToPixels(t.x, this), y = TwipsToPixels(t.y, this);
    painter.drawText(x, y + painter.fontMetrics().ascent(), t.text);
  }
}

// Red Screen recolours the application: the chart's own system colours follow at once.
void AlignStars::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && isVisible()) DrawAlignmentChart();
}

void AlignStars::cmdUserDate_Click() {
  RunGuarded(state_.prompter(), [&] {
    const QDateTime before = state_.UserDate;
    showUserDateDialog(this);
    if (state_.UserDate == before) return;
    lblUserDate->setText(UserDateLabel(state_.UserDate));
    DrawAlignmentChart();
    ShowBestPairs();
  });
}

void AlignStars::cmdToggleNames_Click() {
  ShowNames = !ShowNames;
  Form_Activate();
}

QMdiSubWindow* AlignStars::frame() const { return qobject_cast<QMdiSubWindow*>(parentWidget()); }

int AlignStars::twipsOf(int pixels) const { return PixelsToTwips(pixels, this); }

void AlignStars::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  QMdiSubWindow* f = frame();
  if (!f || resizing_) return;
  resizing_ = true;
  RunIgnoringErrors([&] {
    const QWidget* area = f->mdiArea() ? f->mdiArea()->viewport() : nullptr;
    const AlignStarsSize s = AlignStarsResize(
        f->isMaximized(), area ? twipsOf(area->width()) : 1 << 30,
        area ? twipsOf(area->height()) : 1 << 30, twipsOf(f->width()), twipsOf(f->height()));
    const bool smaller = s.width != twipsOf(f->width()) || s.height != twipsOf(f->height());
    if (s.restoreNormal) f->showNormal();
    else if (!f->isMaximized() && smaller)
      f->resize(TwipsToPixels(s.width, this), TwipsToPixels(s.height, this));
  });
  resizing_ = false;
}
