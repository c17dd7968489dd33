#pragma once

#include <QLabel>
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "charts/qimagechartsurface.h"
#include "charts/skychart.h"

// The chart control "Sky" of a window: paints the persistent chart image and carries the
// compass letters of its window. The window hands it the altitude and azimuth functions of
// the sky it shows (now, or the observing date).
class SkyWidget : public QWidget {
  Q_OBJECT
 public:
  SkyWidget(ChartWindow window, SkyChart::AltAzFunction altitude,
            SkyChart::AltAzFunction azimuth, QWidget* parent = nullptr);

  // Draw under the hourglass pointer, then repaint.
  void DrawSkyChart(const std::vector<SkyPosition>& stars);
  bool PlotObject(const SkyPosition& position, quint32 markerColour);
  // Any other drawing on the surface, under the hourglass pointer, then a repaint.
  void draw(const std::function<void(ChartSurface&)>& paint);

  SkyChart& chart() { return *chart_; }
  QImageChartSurface& surface() { return surface_; }
  const ChartConstants& constants() const { return chart_->constants(); }
  void setRedScreen(bool on);

  // Place and size the control in its window from the window's twips.
  void placeAt(int leftTwips, int topTwips);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void layoutLetters();

  QImageChartSurface surface_;
  std::unique_ptr<SkyChart> chart_;
  std::vector<QLabel*> letters_;
  bool redScreen_ = false;
};
