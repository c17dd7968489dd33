#pragma once

#include <QLabel>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "charts/qimagechartsurface.h"
#include "charts/skychart.h"

// The chart control "Sky" of a window: paints the persistent chart image and carries the
// compass letters of its window. The window hands it the altitude and azimuth functions of
// the sky it shows (now, or the observing date).
class SkyWidget : public QWidget {
  Q_OBJECT
 public:
  SkyWidget(ChartWindow window, SkyChart::AltAzFunction altitude, SkyChart::AltAzFunction azimuth,
            QWidget* parent = nullptr);

  // Draw under the hourglass pointer, then repaint.
  void DrawSkyChart(const std::vector<SkyCoordinates>& stars);
  bool PlotObject(const SkyCoordinates& position, quint32 markerColour);
  // Any other drawing on the surface, under the hourglass pointer, then a repaint.
  void draw(const std::function<void(ChartSurface&)>& paint);

  SkyChart& chart() { return *chart_; }
  QImageChartSurface& surface() { return surface_; }
  const ChartConstants& constants() const { return chart_->constants(); }
  // Where the chart learns whether Red Screen is on. The system colours (ring, compass
  // letters) are resolved at each draw, and the chart draws again when the mode changes.
  void followRedScreen(std::function<bool()> isOn);
  // A fixed mode, for a chart that is made again on each toggle.
  void setRedScreen(bool on) {
    followRedScreen([on] { return on; });
  }

  // Place and size the control in its window from the window's twips.
  void placeAt(int leftTwips, int topTwips);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void layoutLetters();
  void changeEvent(QEvent* event) override;
  // Takes the mode of the moment; true when it changed.
  bool resolveSystemColours();

  QImageChartSurface surface_;
  std::unique_ptr<SkyChart> chart_;
  std::vector<QLabel*> letters_;
  bool redScreen_ = false;
  std::function<bool()> redScreenOn_;
  // What is on the surface, to draw it again in the other colours.
  std::vector<SkyCoordinates> stars_;
  std::optional<std::pair<SkyCoordinates, quint32>> marker_;
};
