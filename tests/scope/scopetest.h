#pragma once

#include <QStringList>
#include <optional>

#include "scope/scopecodec.h"

// A read-back's five fields as one text ("5|34.5|+|22|1"), "nothing" when there was none.
inline QString Shown(const std::optional<PositionFields>& f) {
  if (!f) return QStringLiteral("nothing");
  return QStringList{f->txtRAHour, f->txtRAMin, f->txtDecSign, f->txtDecDeg, f->txtDecMin}.join(
      QLatin1Char('|'));
}
