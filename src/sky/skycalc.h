#pragma once

#include <QString>

class AppState;

// A position as the tables hold it: hours, minutes, sign text, degrees, minutes. Numbers may
// arrive as text and minutes may have a fraction; the sign "-" means south.
struct SkyPosition {
  QString raHours, raMinutes, decSign, decDegrees, decMinutes;

  static SkyPosition of(double raHours, double raMinutes, const QString& decSign,
                        double decDegrees, double decMinutes);
};

// Hours from UTC, east positive: the system's present offset (daylight saving included) or
// the site's own, by UseWindowsTimeZone.
double GetTimeZoneHours(const AppState& state);

// Altitude and azimuth in degrees, rounded to a tenth. Azimuth counts from the south through
// the west, -90 to 270. "Now" uses the present moment, "AtUserDate" the observing date.
double AltitudeNow(const AppState& state, const SkyPosition& p);
double AzimuthNow(const AppState& state, const SkyPosition& p);
double AltitudeAtUserDate(const AppState& state, const SkyPosition& p);
double AzimuthAtUserDate(const AppState& state, const SkyPosition& p);

// Local sidereal time in degrees, not normalised.
double SiderealDegreesNow(const AppState& state);
double SiderealDegreesAtUserDate(const AppState& state);

// One moment's sky, read once for a whole chart of stars: the clock and the time zone are
// read when it is taken, not for every star. Altitude and azimuth in it are those the routines
// above give at that moment; a position that cannot be computed gives 0, as at the observing
// date.
struct SkyMoment {
  double siderealDegrees = 0;
  double latitudeDegrees = 0;
};
SkyMoment SkyMomentAtUserDate(const AppState& state);

// A position read into degrees once, for a chart that draws the same stars at every tick.
// ok is false for a position whose texts are not numbers.
struct SkyPoint {
  double raDegrees = 0;
  double decDegrees = 0;
  bool ok = false;
};
SkyPoint SkyPointOf(const SkyPosition& p);
double AltitudeIn(const SkyMoment& moment, const SkyPoint& p);
double AzimuthIn(const SkyMoment& moment, const SkyPoint& p);

// Angle between two positions in degrees, not rounded.
double AngularSeparation(const AppState& state, const SkyPosition& a, const SkyPosition& b);
