#pragma once

// The floors' arithmetic: altitude and azimuth of a position done plainly, with the local
// sidereal time and the latitude worked out once for the whole loop.
#include <cmath>

#include "core/appstate.h"

namespace bench {

// The site's latitude in degrees, north positive.
inline double latitudeDegrees(const ProgramSettings& s) {
  return (s.LatDeg + s.LatMin / 60.0) * (s.LatHemi == QLatin1String("N") ? 1 : -1);
}

struct PlainSky {
  double lstDegrees, latDegrees;

  void altAz(double raHours, double raMinutes, bool south, double decDegrees, double decMinutes,
             double* altitude, double* azimuth) const {
    const double k = 3.14159265358979 / 180;
    const double h = (lstDegrees - (raHours + raMinutes / 60) * 15) * k;
    const double d = (south ? -1 : 1) * (std::fabs(decDegrees) + decMinutes / 60) * k;
    const double lat = latDegrees * k;
    const double s = std::sin(lat) * std::sin(d) + std::cos(lat) * std::cos(d) * std::cos(h);
    *altitude = std::round(std::asin(s) / k * 10) / 10;
    if (!azimuth) return;
    const double den = std::cos(h) * std::cos(d) * std::sin(lat) - std::sin(d) * std::cos(lat);
    *azimuth =
        std::round(std::atan(std::sin(h) * std::cos(d) / den) / k * 10) / 10 + (den < 0 ? 180 : 0);
  }
};

}  // namespace bench
