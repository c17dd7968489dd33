#include "sky/altitudefilter.h"

#include "core/appstate.h"
#include "core/numtext.h"

QString AltitudeExpression(double latRadians, double siderealDegrees) {
  const QString lat = PlainNumber(latRadians);
  const QString lst = PlainNumber(siderealDegrees);
  const QString dec = QStringLiteral("((DecDeg + DecMinute / 60) * Val(DecSign & '1')) * 0.017453");
  const QString ha = QStringLiteral("(%1 - ((RAHour + RAMinute / 60) * 15)) * 0.017453").arg(lst);
  // S, the sine of the altitude; the arcsine is written as Atn(S / Sqr(-S * S + 1)).
  const QString s =
      QStringLiteral("Sin(%1) * Sin(%2) + Cos(%1) * Cos(%2) * Cos(%3)").arg(lat, dec, ha);
  return QStringLiteral("(Atn((%1) / Sqr(-1*(%1) * (%1) + 1)) * 57.2958)").arg(s);
}

void BuildAltitudeWhere(AppState& state, double siderealDegrees) {
  if (!state.filter.FltAlt) {
    for (PageQuery& q : state.Pages) q.Where = q.Filter;
    return;
  }
  const ProgramSettings& s = state.settings;
  double latitude = s.LatDeg + s.LatMin / 60.0;
  if (s.LatHemi != QLatin1String("N")) latitude *= -1;
  const double latRadians = latitude * 0.017453;
  const QString term = QStringLiteral(" and ") + AltitudeExpression(latRadians, siderealDegrees) +
                       QStringLiteral(" >= ") + PlainNumber(state.filter.FltMinAlt);
  for (PageQuery& q : state.Pages) q.Where = q.Filter + term;
}
