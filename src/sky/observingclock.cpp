#include "sky/observingclock.h"

#include <algorithm>
#include <cmath>

#include "core/numtext.h"

UserDateFields UserDateFieldsOf(const QDateTime& userDate) {
  const QTime t = userDate.time();
  return {userDate.date(), QString::number(t.hour()), FormatMask(t.minute(), QStringLiteral("00"))};
}

QDateTime UserDateFromFields(const QDate& date, const QString& hourText,
                             const QString& minuteText) {
  const double hour = Val(hourText);
  const double minute = Val(minuteText);
  const QString text = ShortDate(date) + QLatin1Char(' ') + FormatMask(hour, QStringLiteral("00")) +
                       QLatin1Char(':') + FormatMask(minute, QStringLiteral("00"));
  return CDate(text);
}

QString StepNumberText(const QString& text, int steps, int maximum, const QString& mask) {
  const double current = RoundHalfEven(Val(text));
  const double moved = std::clamp(current + steps, 0.0, static_cast<double>(maximum));
  return FormatMask(moved, mask);
}
