#pragma once

#include <QFont>
#include <QImage>
#include <QPointF>

#include "charts/chartsurface.h"

// A chart surface on a persistent image: black when cleared, twips scaled to pixels, what is
// drawn stays until the next clear. Points are one pixel (more with a wider line).
class QImageChartSurface : public ChartSurface {
 public:
  QImageChartSurface(int widthTwips, int heightTwips, double twipsPerPixel = 15);

  void clear() override;
  void point(float x, float y, quint32 colour) override;
  void circle(float x, float y, float radius, quint32 colour, float aspect = 1) override;
  void line(float x1, float y1, float x2, float y2, quint32 colour) override;
  void setLineWidth(int width) override;
  void setLineStyle(int style) override;
  void setTextPosition(float x, float y) override;
  void text(const QString& text, quint32 colour) override;

  void setRedScreen(bool on) { redScreen_ = on; }
  void setFont(const QFont& font) { font_ = font; }

  const QImage& image() const { return image_; }
  double twipsPerPixel() const { return twipsPerPixel_; }
  QPointF toPixels(float x, float y) const;

 private:
  QColor colourOf(quint32 value) const;
  QPen pen(quint32 colour) const;

  QImage image_;
  double twipsPerPixel_;
  int lineWidth_ = 1;
  int lineStyle_ = 0;
  QPointF textPos_;
  QFont font_;
  bool redScreen_ = false;
};
