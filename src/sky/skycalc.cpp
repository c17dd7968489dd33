#include "sky/skycalc.h"

#include <QDateTime>
#include <cmath>

#include "core/appstate.h"
#include "core/apperror.h"
#include "core/numtext.h"
#include "core/prompter.h"

namespace {

constexpr double kPi = 3.14159265358979;

double rad(double degrees) { return (degrees * kPi) / 180; }

// A number as the routines take it: text that is not a number is a type mismatch.
double num(const QString& text) {
  if (!IsNumeric(text)) throw AppError::of(ErrNo::TypeMismatch);
  return Val(text);
}

double raDegrees(const SkyPosition& p) { return (num(p.raHours) + num(p.raMinutes) / 60) * 15; }

// Signed declination; the altitude and azimuth take the degrees' absolute value for the south.
double decDegreesAbs(const SkyPosition& p) {
  if (p.decSign == QLatin1String("-"))
    return -1 * (std::fabs(num(p.decDegrees)) + num(p.decMinutes) / 60);
  return num(p.decDegrees) + num(p.decMinutes) / 60;
}

double westLongitude(const ProgramSettings& s) {
  const double v = s.LongDeg + s.LongMin / 60.0;
  return s.LongHemi == QLatin1String("W") ? v : 360 - v;
}

double latitude(const ProgramSettings& s) {
  const double v = s.LatDeg + s.LatMin / 60.0;
  return s.LatHemi == QLatin1String("N") ? v : -1 * v;
}

// Local sidereal time in degrees for a clock reading, from the polynomial at 0h of today.
// Other days are reached through the hours alone: the day count never moves.
double sidereal(const AppState& state, const QDateTime& clock, const QDate& today) {
  const double tz = GetTimeZoneHours(state);
  const double Y = today.year(), M = today.month(), D = today.day();
  const double jd = 367 * Y - Int(1.75 * (Y + Int((M + 9) / 12))) -
                    Int(0.75 * (Int(0.01 * (Y + Int((M - 9) / 7))) + 1)) + Int(275 * M / 9) +
                    D + 1721028.5;
  const double t = (jd - 2451545) / 36525;
  const double gst0 = 100.46061837 + 36000.770053608 * t + 0.000387933 * t * t;
  const double ut = ((DateSerial(clock) - DateSerial(QDateTime(today, QTime(0, 0)))) * 24) - tz;
  const double deg = (ut / 24) * 360;
  const double x = deg * 1.0027379 + gst0 - westLongitude(state.settings);
  // Remainder by the rounded value integer-divided by 360, as the program always reduced it.
  const double whole = std::trunc(RoundHalfEven(x) / 360);
  return (x / 360 - whole) * 360;
}

SkyPoint pointOf(const SkyPosition& p) { return {raDegrees(p), decDegreesAbs(p), true}; }

double altitudeIn(const SkyMoment& m, const SkyPoint& p) {
  const double h = rad(m.siderealDegrees - p.raDegrees);
  const double dec = rad(p.decDegrees);
  const double lat = rad(m.latitudeDegrees);
  const double s = std::sin(lat) * std::sin(dec) + std::cos(lat) * std::cos(dec) * std::cos(h);
  const double root = std::sqrt(1 - s * s);
  if (root == 0 || std::isnan(root)) throw AppError(11, QStringLiteral("Division by zero"));
  return RoundHalfEven(std::atan(s / root) * 180 / kPi, 1);
}

double azimuthIn(const SkyMoment& m, const SkyPoint& p) {
  const double h = rad(m.siderealDegrees - p.raDegrees);
  const double dec = rad(p.decDegrees);
  const double lat = rad(m.latitudeDegrees);
  const double num_ = std::sin(h) * std::cos(dec);
  const double den = std::cos(h) * std::cos(dec) * std::sin(lat) - std::sin(dec) * std::cos(lat);
  if (den == 0) throw AppError(11, QStringLiteral("Division by zero"));
  double az = RoundHalfEven(std::atan(num_ / den) * 180 / kPi, 1);
  if (den < 0) az += 180;
  return az;
}

SkyMoment momentAt(const AppState& state, const QDateTime& clock, const QDate& today) {
  return {sidereal(state, clock, today), latitude(state.settings)};
}

double altitudeAt(const AppState& state, const QDateTime& clock, const QDate& today,
                  const SkyPosition& p) {
  return altitudeIn(momentAt(state, clock, today), pointOf(p));
}

double azimuthAt(const AppState& state, const QDateTime& clock, const QDate& today,
                 const SkyPosition& p) {
  return azimuthIn(momentAt(state, clock, today), pointOf(p));
}

double invalidCoordinates(const AppState& state) {
  state.prompter().message(QStringLiteral("Error"), QStringLiteral("Invalid Coordinates"));
  return 0;
}

}  // namespace

SkyPosition SkyPosition::of(double raHours, double raMinutes, const QString& decSign,
                            double decDegrees, double decMinutes) {
  return {PlainNumber(raHours), PlainNumber(raMinutes), decSign, PlainNumber(decDegrees),
          PlainNumber(decMinutes)};
}

double GetTimeZoneHours(const AppState& state) {
  if (!state.settings.UseWindowsTimeZone) return state.settings.MyTimeZone;
  const std::optional<double> offset = state.systemUtcOffsetHours();
  if (!offset) {
    state.prompter().message(
        QStringLiteral("Error"),
        QStringLiteral("Unable to determine time zone information from Windows.\n"
                       "Please manually enter the offset from UTC in Tools, Setup."));
    return 0;
  }
  return *offset;
}

double AltitudeNow(const AppState& state, const SkyPosition& p) {
  try {
    const QDateTime now = state.now();
    return altitudeAt(state, now, now.date(), p);
  } catch (const AppError&) {
    return invalidCoordinates(state);
  }
}

double AzimuthNow(const AppState& state, const SkyPosition& p) {
  try {
    const QDateTime now = state.now();
    return azimuthAt(state, now, now.date(), p);
  } catch (const AppError&) {
    return invalidCoordinates(state);
  }
}

// The observing-date routines must not stop a list for one bad row: a failure gives 0.
double AltitudeAtUserDate(const AppState& state, const SkyPosition& p) {
  try {
    return altitudeAt(state, state.UserDate, state.now().date(), p);
  } catch (const AppError&) {
    return 0;
  }
}

double AzimuthAtUserDate(const AppState& state, const SkyPosition& p) {
  try {
    return azimuthAt(state, state.UserDate, state.now().date(), p);
  } catch (const AppError&) {
    return 0;
  }
}

SkyMoment SkyMomentAtUserDate(const AppState& state) {
  try {
    return momentAt(state, state.UserDate, state.now().date());
  } catch (const AppError& e) {
    state.prompter().message(AppTitle(), e.text());
    return {0, latitude(state.settings)};
  }
}

SkyPoint SkyPointOf(const SkyPosition& p) {
  try {
    return pointOf(p);
  } catch (const AppError&) {
    return {};
  }
}

double AltitudeIn(const SkyMoment& moment, const SkyPoint& p) {
  if (!p.ok) return 0;
  try {
    return altitudeIn(moment, p);
  } catch (const AppError&) {
    return 0;
  }
}

double AzimuthIn(const SkyMoment& moment, const SkyPoint& p) {
  if (!p.ok) return 0;
  try {
    return azimuthIn(moment, p);
  } catch (const AppError&) {
    return 0;
  }
}

double SiderealDegreesNow(const AppState& state) {
  try {
    const QDateTime now = state.now();
    return sidereal(state, now, now.date());
  } catch (const AppError& e) {
    state.prompter().message(AppTitle(), e.text());
    return 0;
  }
}

double SiderealDegreesAtUserDate(const AppState& state) {
  try {
    return sidereal(state, state.UserDate, state.now().date());
  } catch (const AppError& e) {
    state.prompter().message(AppTitle(), e.text());
    return 0;
  }
}

double AngularSeparation(const AppState& state, const SkyPosition& a, const SkyPosition& b) {
  try {
    const double factor = kPi / 180;
    auto dec = [](const SkyPosition& p) {
      const double v = num(p.decDegrees) + num(p.decMinutes) / 60;
      return p.decSign == QLatin1String("-") ? -1 * v : v;
    };
    const double d1 = dec(a) * factor, d2 = dec(b) * factor;
    const double c = std::sin(d1) * std::sin(d2) +
                     std::cos(d1) * std::cos(d2) * std::cos((raDegrees(a) - raDegrees(b)) * factor);
    // The same star twice (or its opposite point) leaves no room for the arc tangent's
    // quotient; the answer is still plain.
    if (1 - c * c <= 0) return c > 0 ? 0.0 : 180.0;
    const double root = std::sqrt(1 - c * c);
    return (2 * std::atan(1.0) + std::atan(-c / root)) * (180 / kPi);
  } catch (const AppError& e) {
    state.prompter().message(AppTitle(), e.text());
    return 0;
  }
}
