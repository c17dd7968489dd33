#include "sky/ofdate.h"

#include <erfa.h>

#include <cmath>

namespace {

constexpr double kHoursPerRadian = 12.0 / M_PI;
constexpr double kDegreesPerRadian = 180.0 / M_PI;

// The moment as the two-part Julian date of Terrestrial Time that ERFA takes.
struct TerrestrialTime {
  double jd1 = 0, jd2 = 0;
};

TerrestrialTime ttOf(const QDateTime& moment) {
  const QDateTime utc = moment.toUTC();
  const QDate d = utc.date();
  const QTime t = utc.time();
  double utc1 = 0, utc2 = 0, tai1 = 0, tai2 = 0;
  TerrestrialTime tt;
  // A year past ERFA's leap-second table only warns (status 1); the date is still good.
  eraDtf2d("UTC", d.year(), d.month(), d.day(), t.hour(), t.minute(),
           t.second() + t.msec() / 1000.0, &utc1, &utc2);
  eraUtctai(utc1, utc2, &tai1, &tai2);
  eraTaitt(tai1, tai2, &tt.jd1, &tt.jd2);
  return tt;
}

EquatorialPlace placeOf(double raRadians, double decRadians) {
  return {eraAnp(raRadians) * kHoursPerRadian, decRadians * kDegreesPerRadian};
}

}  // namespace

EquatorialPlace J2000ToOfDate(const EquatorialPlace& j2000, const QDateTime& utc) {
  const TerrestrialTime tt = ttOf(utc);
  double ri = 0, di = 0, eo = 0;
  eraAtci13(j2000.raHours / kHoursPerRadian, j2000.decDegrees / kDegreesPerRadian, 0, 0, 0, 0,
            tt.jd1, tt.jd2, &ri, &di, &eo);
  // From the celestial intermediate origin to the equinox.
  return placeOf(ri - eo, di);
}

EquatorialPlace OfDateToJ2000(const EquatorialPlace& ofDate, const QDateTime& utc) {
  const TerrestrialTime tt = ttOf(utc);
  const double eo = eraEo06a(tt.jd1, tt.jd2);
  double rc = 0, dc = 0, eoBack = 0;
  eraAtic13(ofDate.raHours / kHoursPerRadian + eo, ofDate.decDegrees / kDegreesPerRadian, tt.jd1,
            tt.jd2, &rc, &dc, &eoBack);
  return placeOf(rc, dc);
}
