#include "charts/qimagechartsurface.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPen>
#include <cmath>

QImageChartSurface::QImageChartSurface(int widthTwips, int heightTwips, double twipsPerPixel)
    : image_(std::max(1, int(std::ceil(widthTwips / twipsPerPixel))),
             std::max(1, int(std::ceil(heightTwips / twipsPerPixel))), QImage::Format_RGB32),
      twipsPerPixel_(twipsPerPixel) {
  image_.fill(Qt::black);
}

QPointF QImageChartSurface::toPixels(float x, float y) const {
  return QPointF(x / twipsPerPixel_, y / twipsPerPixel_);
}

QColor QImageChartSurface::colourOf(quint32 value) const {
  const quint32 rgb = ChartColourToRgb(value, redScreen_);
  return QColor(int(rgb & 0xFF), int((rgb >> 8) & 0xFF), int((rgb >> 16) & 0xFF));
}

QPen QImageChartSurface::pen(quint32 colour) const {
  QPen p(colourOf(colour));
  p.setWidth(lineWidth_);
  p.setStyle(ClassicPenStyle(lineStyle_));
  return p;
}

void QImageChartSurface::clear() { image_.fill(Qt::black); }

void QImageChartSurface::point(float x, float y, quint32 colour) {
  const QPointF p = toPixels(x, y);
  if (lineWidth_ <= 1) {
    const int px = int(std::floor(p.x())), py = int(std::floor(p.y()));
    if (image_.rect().contains(px, py)) image_.setPixelColor(px, py, colourOf(colour));
    return;
  }
  QPainter painter(&image_);
  painter.setPen(Qt::NoPen);
  painter.setBrush(colourOf(colour));
  const double r = lineWidth_ / 2.0;
  painter.drawEllipse(p, r, r);
}

void QImageChartSurface::circle(float x, float y, float radius, quint32 colour, float aspect) {
  const auto [rx, ry] = CircleHalfAxes(radius, aspect);
  QPainter painter(&image_);
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setPen(pen(colour));
  painter.setBrush(Qt::NoBrush);
  painter.drawEllipse(toPixels(x, y), rx / twipsPerPixel_, ry / twipsPerPixel_);
}

void QImageChartSurface::line(float x1, float y1, float x2, float y2, quint32 colour) {
  QPainter painter(&image_);
  painter.setPen(pen(colour));
  painter.drawLine(toPixels(x1, y1), toPixels(x2, y2));
}

void QImageChartSurface::setLineWidth(int width) { lineWidth_ = std::max(1, width); }
void QImageChartSurface::setLineStyle(int style) { lineStyle_ = style; }

void QImageChartSurface::setTextPosition(float x, float y) { textPos_ = toPixels(x, y); }

void QImageChartSurface::text(const QString& text, quint32 colour) {
  QPainter painter(&image_);
  painter.setFont(font_);
  painter.setPen(colourOf(colour));
  const QFontMetricsF metrics(font_);
  painter.drawText(QPointF(textPos_.x(), textPos_.y() + metrics.ascent()), text);
  textPos_.ry() += metrics.height();  // the next text goes below, as a printed line
}
