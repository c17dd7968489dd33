#pragma once

#include <QDateTime>

// A place on the sky: right ascension in hours (0 up to 24), declination in degrees.
struct EquatorialPlace {
  double raHours = 0;
  double decDegrees = 0;
};

// Our catalogs hold J2000 places; an INDI mount takes and reports the apparent place on the
// equator and equinox of date (precession, nutation, aberration and light deflection, seen
// from the Earth's centre). These turn one into the other for a moment in UTC, through ERFA.
EquatorialPlace J2000ToOfDate(const EquatorialPlace& j2000, const QDateTime& utc);
EquatorialPlace OfDateToJ2000(const EquatorialPlace& ofDate, const QDateTime& utc);
