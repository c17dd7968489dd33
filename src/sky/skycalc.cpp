#include "sky/skycalc.h"

#include <QDateTime>
#include <cmath>

#include "core/apperror.h"
#include "core/appstate.h"
#include "core/numtext.h"
#include "core/prompter.h"

namespace {

constexpr double kPi = 3.14159265358979;

double rad(double degrees) { return (degrees * kPi) / 180; }

// A value as the routines take it: a number, or text that reads as one. Anything else is a
// type mismatch, raised when the routine reaches the position.
bool readNumber(const QString& text, double* out) {
  if (!IsNumeric(text)) return false;
  *out = Val(text);
  return true;
}

bool readNumber(const QVariant& value, double* out) {
  switch (value.typeId()) {
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::UInt:
    case QMetaType::ULongLong: *out = value.toDouble(); return std::isfinite(*out);
    case QMetaType::QString: return readNumber(value.toString(), out);
    default: return false;
  }
}

void requireReadable(const SkyCoordinates& p) {
  if (!p.readable) throw AppError::of(ErrNo::TypeMismatch);
}

double raDegrees(const SkyCoordinates& p) { return (p.raHours + p.raMinutes / 60) * 15; }

// Signed declination; the altitude and azimuth take the degrees' absolute value for the south.
double decDegreesAbs(const SkyCoordinates& p) {
  if (p.south) return -1 * (std::fabs(p.decDegrees) + p.decMinutes / 60);
  return p.decDegrees + p.decMinutes / 60;
}

double westLongitude(const ProgramSettings& s) {
  const double v = s.LongDeg + s.LongMin / 60.0;
  return s.LongHemi == QLatin1String("W") ? v : 360 - v;
}

double latitude(const ProgramSettings& s) {
  const double v = s.LatDeg + s.LatMin / 60.0;
  return s.LatHemi == QLatin1String("N") ? v : -1 * v;
}

// Local sidereal time in degrees for a clock reading (a date serial), from the polynomial at
// 0h of today. Other days are reached through the hours alone: the day count never moves.
double sidereal(const AppState& state, double clock, const QDateTime& now) {
  const double tz = GetTimeZoneHours(state);
  const QDate today = now.date();
  const double Y = today.year(), M = today.month(), D = today.day();
  const double jd = 367 * Y - Int(1.75 * (Y + Int((M + 9) / 12))) -
                    Int(0.75 * (Int(0.01 * (Y + Int((M - 9) / 7))) + 1)) + Int(275 * M / 9) + D +
                    1721028.5;
  const double t = (jd - 2451545) / 36525;
  const double gst0 = 100.46061837 + 36000.770053608 * t + 0.000387933 * t * t;
  // Today at 0h as a date serial is the whole part of the present one.
  const double ut = ((clock - std::floor(DateSerial(now))) * 24) - tz;
  const double deg = (ut / 24) * 360;
  const double x = deg * 1.0027379 + gst0 - westLongitude(state.settings);
  // Remainder by the rounded value integer-divided by 360, as the program always reduced it.
  const double whole = std::trunc(RoundHalfEven(x) / 360);
  return (x / 360 - whole) * 360;
}

double altitudeAt(const AppState& state, double clock, const QDateTime& now,
                  const SkyCoordinates& p) {
  const double lst = sidereal(state, clock, now);
  requireReadable(p);
  const double h = rad(lst - raDegrees(p));
  const double dec = rad(decDegreesAbs(p));
  const double lat = rad(latitude(state.settings));
  const double s = std::sin(lat) * std::sin(dec) + std::cos(lat) * std::cos(dec) * std::cos(h);
  const double root = std::sqrt(1 - s * s);
  if (root == 0 || std::isnan(root)) throw AppError(11, QStringLiteral("Division by zero"));
  return RoundHalfEven(std::atan(s / root) * 180 / kPi, 1);
}

double azimuthAt(const AppState& state, double clock, const QDateTime& now,
                 const SkyCoordinates& p) {
  const double lst = sidereal(state, clock, now);
  requireReadable(p);
  const double h = rad(lst - raDegrees(p));
  const double dec = rad(decDegreesAbs(p));
  const double lat = rad(latitude(state.settings));
  const double num_ = std::sin(h) * std::cos(dec);
  const double den = std::cos(h) * std::cos(dec) * std::sin(lat) - std::sin(dec) * std::cos(lat);
  if (den == 0) throw AppError(11, QStringLiteral("Division by zero"));
  double az = RoundHalfEven(std::atan(num_ / den) * 180 / kPi, 1);
  if (den < 0) az += 180;
  return az;
}

double invalidCoordinates(const AppState& state) {
  state.prompter().message(QStringLiteral("Error"), QStringLiteral("Invalid Coordinates"));
  return 0;
}

using AngleAt = double (*)(const AppState&, double, const QDateTime&, const SkyCoordinates&);

double angleNow(AngleAt angle, const AppState& state, const SkyCoordinates& p) {
  try {
    const QDateTime now = state.now();
    return angle(state, DateSerial(now), now, p);
  } catch (const AppError&) {
    return invalidCoordinates(state);
  }
}

// The observing-date routines must not stop a list for one bad row: a failure gives 0.
double angleAtUserDate(AngleAt angle, const AppState& state, const SkyCoordinates& p) {
  try {
    return angle(state, DateSerial(state.UserDate), state.now(), p);
  } catch (const AppError&) {
    return 0;
  }
}

}  // namespace

SkyPosition SkyPosition::of(double raHours, double raMinutes, const QString& decSign,
                            double decDegrees, double decMinutes) {
  return {PlainNumber(raHours), PlainNumber(raMinutes), decSign, PlainNumber(decDegrees),
          PlainNumber(decMinutes)};
}

SkyCoordinates::SkyCoordinates(const SkyPosition& p)
    : south(p.decSign == QLatin1String("-")),
      readable(readNumber(p.raHours, &raHours) && readNumber(p.raMinutes, &raMinutes) &&
               readNumber(p.decDegrees, &decDegrees) && readNumber(p.decMinutes, &decMinutes)) {}

SkyCoordinates SkyCoordinates::of(double raHours, double raMinutes, bool south, double decDegrees,
                                  double decMinutes) {
  SkyCoordinates c;
  c.raHours = raHours;
  c.raMinutes = raMinutes;
  c.south = south;
  c.decDegrees = decDegrees;
  c.decMinutes = decMinutes;
  c.readable = std::isfinite(raHours) && std::isfinite(raMinutes) && std::isfinite(decDegrees) &&
               std::isfinite(decMinutes);
  return c;
}

SkyCoordinates SkyCoordinates::of(const QVariant& raHours, const QVariant& raMinutes,
                                  const QVariant& decSign, const QVariant& decDegrees,
                                  const QVariant& decMinutes) {
  SkyCoordinates c;
  c.south = decSign.typeId() == QMetaType::QString && decSign.toString() == QLatin1String("-");
  c.readable = readNumber(raHours, &c.raHours) && readNumber(raMinutes, &c.raMinutes) &&
               readNumber(decDegrees, &c.decDegrees) && readNumber(decMinutes, &c.decMinutes);
  return c;
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

double AltitudeNow(const AppState& state, const SkyCoordinates& p) {
  return angleNow(altitudeAt, state, p);
}

double AzimuthNow(const AppState& state, const SkyCoordinates& p) {
  return angleNow(azimuthAt, state, p);
}

double AltitudeAtUserDate(const AppState& state, const SkyCoordinates& p) {
  return angleAtUserDate(altitudeAt, state, p);
}

double AzimuthAtUserDate(const AppState& state, const SkyCoordinates& p) {
  return angleAtUserDate(azimuthAt, state, p);
}

double SiderealDegreesNow(const AppState& state) {
  try {
    const QDateTime now = state.now();
    return sidereal(state, DateSerial(now), now);
  } catch (const AppError& e) {
    state.prompter().message(AppTitle(), e.text());
    return 0;
  }
}

double SiderealDegreesAtUserDate(const AppState& state) {
  try {
    return sidereal(state, DateSerial(state.UserDate), state.now());
  } catch (const AppError& e) {
    state.prompter().message(AppTitle(), e.text());
    return 0;
  }
}

double AngularSeparation(const AppState& state, const SkyCoordinates& a, const SkyCoordinates& b) {
  try {
    const double factor = kPi / 180;
    auto dec = [](const SkyCoordinates& p) {
      requireReadable(p);
      const double v = p.decDegrees + p.decMinutes / 60;
      return p.south ? -1 * v : v;
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
