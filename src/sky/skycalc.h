#pragma once

#include <QString>
#include <QVariant>

class AppState;

// A position as the tables hold it: hours, minutes, sign text, degrees, minutes. Numbers may
// arrive as text and minutes may have a fraction; the sign "-" means south.
struct SkyPosition {
  QString raHours, raMinutes, decSign, decDegrees, decMinutes;

  static SkyPosition of(double raHours, double raMinutes, const QString& decSign, double decDegrees,
                        double decMinutes);
};

// A position read as numbers, the form the routines compute from. Texts are read by the
// classic rules (a text that is no number leaves the position unreadable, and a routine given
// it fails as for any bad value); numbers are taken as they are, never through text. Every
// routine below also takes a SkyPosition, read on the way in.
struct SkyCoordinates {
  double raHours = 0, raMinutes = 0, decDegrees = 0, decMinutes = 0;
  bool south = false;     // the sign is "-"
  bool readable = false;  // all four numbers could be read

  SkyCoordinates() = default;
  SkyCoordinates(const SkyPosition& p);  // implicit on purpose: texts are read here
  static SkyCoordinates of(double raHours, double raMinutes, bool south, double decDegrees,
                           double decMinutes);
  // The five fields as a table gives them: numbers, texts, or Null (unreadable).
  static SkyCoordinates of(const QVariant& raHours, const QVariant& raMinutes,
                           const QVariant& decSign, const QVariant& decDegrees,
                           const QVariant& decMinutes);
};

// Hours from UTC, east positive: the system's present offset (daylight saving included) or
// the site's own, by UseWindowsTimeZone.
double GetTimeZoneHours(const AppState& state);

// Altitude and azimuth in degrees, rounded to a tenth. Azimuth counts from the south through
// the west, -90 to 270. "Now" uses the present moment, "AtUserDate" the observing date.
double AltitudeNow(const AppState& state, const SkyCoordinates& p);
double AzimuthNow(const AppState& state, const SkyCoordinates& p);
double AltitudeAtUserDate(const AppState& state, const SkyCoordinates& p);
double AzimuthAtUserDate(const AppState& state, const SkyCoordinates& p);

// Local sidereal time in degrees, not normalised.
double SiderealDegreesNow(const AppState& state);
double SiderealDegreesAtUserDate(const AppState& state);

// Angle between two positions in degrees, not rounded.
double AngularSeparation(const AppState& state, const SkyCoordinates& a, const SkyCoordinates& b);
