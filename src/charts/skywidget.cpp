#include "charts/skywidget.h"

#include <QApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QPainter>

#include "core/hourglass.h"
#include "core/twips.h"

SkyWidget::SkyWidget(ChartWindow window, SkyChart::AltAzFunction altitude,
                     SkyChart::AltAzFunction azimuth, QWidget* parent)
    : QWidget(parent),
      surface_(ChartConstantsFor(window).width, ChartConstantsFor(window).height,
               DeviceUnitsToTwips(1, ScreenDotsPerInch())) {
  setObjectName(QStringLiteral("Sky"));
  chart_ = std::make_unique<SkyChart>(window, surface_, std::move(altitude), std::move(azimuth));
  setAttribute(Qt::WA_OpaquePaintEvent);
  setFixedSize(surface_.image().size());

  // The compass letters have always been in a bold fixed-pitch screen font.
  QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  fixed.setStyleHint(QFont::TypeWriter);
  fixed.setFixedPitch(true);
  fixed.setBold(true);
  for (const CompassLetter& l : constants().letters) {
    auto* label = new QLabel(l.letter, this);
    label->setObjectName(QStringLiteral("lblCompass") + l.letter);
    label->setFont(fixed);
    label->setAttribute(Qt::WA_TranslucentBackground);
    label->setAutoFillBackground(false);
    label->setAlignment(l.alignment | Qt::AlignTop);
    letters_.push_back(label);
  }
  layoutLetters();
}

void SkyWidget::layoutLetters() {
  const double tpp = surface_.twipsPerPixel();
  const quint32 rgb = ChartColourToRgb(constants().letterColour, redScreen_);
  const QColor colour(int(rgb & 0xFF), int((rgb >> 8) & 0xFF), int((rgb >> 16) & 0xFF));
  const auto& table = constants().letters;
  for (size_t i = 0; i < letters_.size(); ++i) {
    const CompassLetter& l = table[i];
    QLabel* label = letters_[i];
    QPalette pal = label->palette();
    pal.setColor(QPalette::WindowText, colour);
    label->setPalette(pal);
    // A letter box in twips can be lower than the font; let it grow downward, not clip.
    const int h = std::max(int(std::lround(l.height / tpp)), label->sizeHint().height());
    int top = int(std::lround(l.top / tpp));
    if (top + h > height()) top = std::max(0, height() - h);
    label->setGeometry(int(std::lround(l.left / tpp)), top, int(std::lround(l.width / tpp)), h);
  }
}

void SkyWidget::followRedScreen(std::function<bool()> isOn) {
  redScreenOn_ = std::move(isOn);
  resolveSystemColours();
}

bool SkyWidget::resolveSystemColours() {
  const bool on = redScreenOn_ && redScreenOn_();
  if (on == redScreen_) return false;
  redScreen_ = on;
  surface_.setRedScreen(on);
  layoutLetters();
  update();
  return true;
}

// Red Screen recolours the application's palette and style sheet: the chart follows at once.
void SkyWidget::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  const bool recoloured =
      event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange;
  if (!recoloured) return;
  if (!resolveSystemColours()) {
    // Taking an application style sheet off puts back the letters' colours of the moment it
    // came: they are set again.
    layoutLetters();
    return;
  }
  if (stars_.empty()) return;
  chart_->DrawSkyChart(stars_);
  if (marker_) chart_->PlotObject(marker_->first, marker_->second);
  update();
}

void SkyWidget::placeAt(int leftTwips, int topTwips) {
  const double tpp = surface_.twipsPerPixel();
  move(int(std::lround(leftTwips / tpp)), int(std::lround(topTwips / tpp)));
}

QSize SkyWidget::sizeHint() const { return surface_.image().size(); }

void SkyWidget::DrawSkyChart(const std::vector<SkyCoordinates>& stars) {
  resolveSystemColours();
  stars_ = stars;
  marker_.reset();
  {
    Hourglass hourglass;
    chart_->DrawSkyChart(stars);
  }
  update();
}

void SkyWidget::draw(const std::function<void(ChartSurface&)>& paint) {
  resolveSystemColours();
  {
    Hourglass hourglass;
    paint(surface_);
  }
  update();
}

bool SkyWidget::PlotObject(const SkyCoordinates& position, quint32 markerColour) {
  resolveSystemColours();
  marker_.emplace(position, markerColour);
  const bool drawn = chart_->PlotObject(position, markerColour);
  update();
  return drawn;
}

void SkyWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::black);
  painter.drawImage(QPoint(0, 0), surface_.image());
}
