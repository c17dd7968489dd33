#include "printing/painterprintsurface.h"

#include <QFontMetricsF>
#include <QPagedPaintDevice>
#include <QPen>

#include "charts/chartsurface.h"
#include "core/twips.h"

PainterPrintSurface::PainterPrintSurface(QPagedPaintDevice& device, Documents documents,
                                         AppError openError)
    : device_(device),
      documents_(documents),
      openError_(std::move(openError)),
      dpiX_(device.logicalDpiX()),
      dpiY_(device.logicalDpiY()) {
  fontChanged();
}

PainterPrintSurface::~PainterPrintSurface() { close(); }

void PainterPrintSurface::close() {
  if (painter_.isActive()) painter_.end();
  pageBreakDue_ = false;
}

QPainter& PainterPrintSurface::painter() {
  if (!painter_.isActive()) {
    if (!painter_.begin(&device_)) throw openError_;
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setFont(font_);
    painter_.setPen(currentPen());
  }
  if (pageBreakDue_) {
    device_.newPage();
    pageBreakDue_ = false;
  }
  return painter_;
}

int PainterPrintSurface::printableWidth() const {
  return int(DeviceUnitsToTwips(device_.width(), dpiX_));
}

QPointF PainterPrintSurface::toDevice(double x, double y) const {
  return QPointF(TwipsToDeviceUnits(x, dpiX_), TwipsToDeviceUnits(y, dpiY_));
}

double PainterPrintSurface::deviceLength(double twips) const {
  return TwipsToDeviceUnits(twips, dpiX_);
}

QPen PainterPrintSurface::currentPen() const {
  QPen pen(Qt::black);
  pen.setWidthF(deviceLength(lineWidth() * TwipsPerPrintPixel));
  pen.setStyle(ClassicPenStyle(lineStyle()));
  return pen;
}

void PainterPrintSurface::fontChanged() {
  font_ = QFont(fontName());
  font_.setPointSizeF(fontSize());
  font_.setBold(fontBold());
  if (painter_.isActive()) painter_.setFont(font_);
}

void PainterPrintSurface::penChanged() {
  if (painter_.isActive()) painter_.setPen(currentPen());
}

double PainterPrintSurface::textWidth(const QString& text) const {
  return DeviceUnitsToTwips(QFontMetricsF(font_, &device_).horizontalAdvance(text), dpiX_);
}

double PainterPrintSurface::lineHeight() const {
  return DeviceUnitsToTwips(QFontMetricsF(font_, &device_).height(), dpiY_);
}

void PainterPrintSurface::drawText(double x, double y, const QString& text) {
  QPainter& p = painter();
  const QPointF at = toDevice(x, y);
  p.drawText(QPointF(at.x(), at.y() + QFontMetricsF(font_, &device_).ascent()), text);
}

void PainterPrintSurface::circle(double x, double y, double radius, double aspect) {
  QPainter& p = painter();
  const auto [rx, ry] = CircleHalfAxes(radius, aspect);
  p.setBrush(Qt::NoBrush);
  p.drawEllipse(toDevice(x, y), deviceLength(rx), TwipsToDeviceUnits(ry, dpiY_));
}

void PainterPrintSurface::line(double x1, double y1, double x2, double y2) {
  painter().drawLine(toDevice(x1, y1), toDevice(x2, y2));
}

void PainterPrintSurface::point(double x, double y) {
  QPainter& p = painter();
  const double r = deviceLength(lineWidth() * TwipsPerPrintPixel) / 2;
  p.save();
  p.setPen(Qt::NoPen);
  p.setBrush(Qt::black);
  p.drawEllipse(toDevice(x, y), r, r);
  p.restore();
}

void PainterPrintSurface::startNewPage() {
  painter();
  device_.newPage();
}

void PainterPrintSurface::finishDocument() {
  if (!painter_.isActive()) return;
  if (documents_ == Documents::Separate) painter_.end();
  else pageBreakDue_ = true;
}
