#include "charts/skychart.h"

#include <cmath>

quint32 ChartColourToRgb(quint32 colour, bool redScreen) {
  if (!(colour & 0x80000000u)) return colour & 0x00FFFFFFu;
  switch (colour & 0xFFu) {
    case 0x14: return redScreen ? 0x000000FFu : 0x00F0F0F0u;  // 3D highlight
    case 0x0F: return redScreen ? 0x00000080u : 0x00A0A0A0u;  // 3D face
    default: return redScreen ? 0x00000080u : 0x00C0C0C0u;
  }
}

namespace {

// clang-format off
ChartConstants windowChart(int left) {
  return ChartConstants{
      left, 0, 4020, 4000, 2000, 2000, 1800, SystemColour3DHighlight, SystemColour3DHighlight,
      {{QStringLiteral("N"), 0, 0, 4020, 190, Qt::AlignHCenter},
       {QStringLiteral("S"), 0, 3795, 4020, 190, Qt::AlignHCenter},
       {QStringLiteral("E"), 0, 1920, 255, 195, Qt::AlignLeft},
       {QStringLiteral("W"), 3730, 1920, 255, 195, Qt::AlignRight}}};
}
// clang-format on

}  // namespace

const ChartConstants& ChartConstantsFor(ChartWindow window) {
  static const ChartConstants hhc = windowChart(45);
  static const ChartConstants currentList = windowChart(45);
  static const ChartConstants currentListFixed = windowChart(7680);
  // clang-format off
  // The list editor's date label takes the place of the "S".
  static const ChartConstants editList{
      0, 0, 3150, 3150, 1550, 1550, 1350, ChartWhite, 0x00E0E0E0u,
      {{QStringLiteral("N"), 0, 0, 3150, 195, Qt::AlignHCenter},
       {QStringLiteral("E"), 0, 1440, 255, 195, Qt::AlignLeft},
       {QStringLiteral("W"), 2835, 1440, 255, 195, Qt::AlignRight}}};
  static const ChartConstants alignStars{
      30, 0, 6400, 6400, 3200, 3200, 2800, SystemColour3DHighlight, SystemColour3DHighlight,
      {{QStringLiteral("N"), 0, 0, 6465, 195, Qt::AlignHCenter},
       {QStringLiteral("E"), 0, 3060, 255, 195, Qt::AlignLeft},
       {QStringLiteral("W"), 6120, 3060, 255, 195, Qt::AlignRight}}};
  // clang-format on
  switch (window) {
    case ChartWindow::HHC: return hhc;
    case ChartWindow::CurrentList: return currentList;
    case ChartWindow::CurrentListFixed: return currentListFixed;
    case ChartWindow::EditList: return editList;
    case ChartWindow::AlignStars: return alignStars;
  }
  return hhc;
}

QPointF ProjectSky(double cx, double cy, double radius, double altitude, double azimuth) {
  const double r = radius * ((90 - altitude) / 90);
  const double az = azimuth * ChartPi / 180;
  return QPointF(cx + r * std::sin(az), cy + r * std::cos(az));
}

QPointF ProjectSky(const ChartConstants& c, double altitude, double azimuth) {
  return ProjectSky(c.cx, c.cy, c.radius, altitude, azimuth);
}

SkyChart::SkyChart(ChartWindow window, ChartSurface& surface, AltAzFunction altitude,
                   AltAzFunction azimuth)
    : constants_(&ChartConstantsFor(window)),
      surface_(surface),
      altitude_(std::move(altitude)),
      azimuth_(std::move(azimuth)) {}

void SkyChart::DrawSkyChart(const std::vector<SkyCoordinates>& stars) {
  const ChartConstants& c = *constants_;
  surface_.clear();
  surface_.circle(float(c.cx), float(c.cy), float(c.radius), c.ringColour, 1);
  for (const SkyCoordinates& star : stars) {
    const double alt = altitude_(star);
    if (!(alt > 0)) continue;
    const QPointF p = ProjectSky(c, alt, azimuth_(star));
    surface_.point(float(p.x()), float(p.y()), ChartWhite);
  }
}

bool SkyChart::PlotObject(const SkyCoordinates& position, quint32 markerColour) {
  // The old marker is blanked on every call, whatever lay under it.
  surface_.circle(float(MarkerX), float(MarkerY), float(MarkerRadius), ChartBlack,
                  float(MarkerAspect));
  const double alt = altitude_(position);
  if (!(alt > 0)) return false;
  const QPointF p = ProjectSky(*constants_, alt, azimuth_(position));
  surface_.circle(float(p.x()), float(p.y()), float(MarkerRadius), markerColour,
                  float(MarkerAspect));
  MarkerX = p.x();
  MarkerY = p.y();
  return true;
}
