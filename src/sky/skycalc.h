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

// Angle between two positions in degrees, not rounded.
double AngularSeparation(const AppState& state, const SkyPosition& a, const SkyPosition& b);
