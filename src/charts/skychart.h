#pragma once

#include <QPointF>
#include <QString>
#include <QtGlobal>
#include <functional>
#include <vector>

#include "charts/chartsurface.h"
#include "sky/skycalc.h"

// The windows that carry a whole-sky chart.
enum class ChartWindow { HHC, CurrentList, CurrentListFixed, EditList, AlignStars };

// A compass letter label lying on the chart, in twips relative to the chart.
struct CompassLetter {
  QString letter;
  int left, top, width, height;
  Qt::Alignment alignment;
};

// Geometry and colours of one window's chart. left/top place the chart in its window
// (CurrentListFixed keeps it at form width - 4140; left is its value at design size).
struct ChartConstants {
  int left, top, width, height;
  double cx, cy, radius;
  quint32 ringColour;
  quint32 letterColour;
  std::vector<CompassLetter> letters;
};

const ChartConstants& ChartConstantsFor(ChartWindow window);

constexpr quint32 SystemColour3DHighlight = 0x80000014u;
constexpr quint32 SystemColour3DFace = 0x8000000Fu;
constexpr quint32 ChartWhite = 0x00FFFFFFu;
constexpr quint32 ChartBlack = 0x00000000u;
constexpr quint32 ChartYellow = 0x0000FFFFu;
constexpr double ChartPi = 3.14159265358979;
constexpr double MarkerRadius = 60;
constexpr double MarkerAspect = 0.8;
constexpr double MarkerStart = 3000;  // MarkerX and MarkerY when a window loads

// The zenith-centred projection: distance from the centre linear in zenith distance, azimuth
// from the south through the west, so south is at the bottom and west to the right.
QPointF ProjectSky(double cx, double cy, double radius, double altitude, double azimuth);
QPointF ProjectSky(const ChartConstants& c, double altitude, double azimuth);

// One window's chart on its surface. Altitude and azimuth come from the functions given, so
// the window chooses the sky of now or of the observing date.
class SkyChart {
 public:
  using AltAzFunction = std::function<double(const SkyCoordinates&)>;

  SkyChart(ChartWindow window, ChartSurface& surface, AltAzFunction altitude,
           AltAzFunction azimuth);

  // Clears the surface (the marker with it), draws the horizon ring and a white point for each
  // star strictly above the horizon. MarkerX/MarkerY are left as they are.
  void DrawSkyChart(const std::vector<SkyCoordinates>& stars);

  // Erases the old marker in black at MarkerX/MarkerY, then, when the object is strictly
  // above the horizon, draws it in markerColour and stores its place. Returns whether it drew.
  bool PlotObject(const SkyCoordinates& position, quint32 markerColour);

  const ChartConstants& constants() const { return *constants_; }

  double MarkerX = MarkerStart;
  double MarkerY = MarkerStart;

 private:
  const ChartConstants* constants_;
  ChartSurface& surface_;
  AltAzFunction altitude_;
  AltAzFunction azimuth_;
};
