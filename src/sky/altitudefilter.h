#pragma once

#include <QString>

class AppState;

// The altitude of a row in degrees, written out as query text for the database engine to
// evaluate row by row, with the latitude (radians) and the sidereal time (degrees) inlined.
QString AltitudeExpression(double latRadians, double siderealDegrees);

// Rebuilds PageWhere on all eight pages from PageFilter: with the altitude condition of the
// filter switched on, each gets " and " the expression " >= " the minimum altitude.
// siderealDegrees is SiderealDegreesAtUserDate (list editor) or SiderealDegreesNow (hand
// control window).
void BuildAltitudeWhere(AppState& state, double siderealDegrees);
