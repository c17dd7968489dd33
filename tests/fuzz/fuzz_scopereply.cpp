// Position replies of every telescope family, garbage included: a reply decodes to display
// fields within their ranges, or (binary families, too short) raises error 5; nothing else.
#include <cmath>

#include "core/apperror.h"
#include "core/numtext.h"
#include "fuzzsupport.h"
#include "scope/scopecodec.h"
#include "scope/scopetypes.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider in(data, size);
  const QString family = QString::fromLatin1(kScopeFamilies[in.ConsumeIntegralInRange(0, 8)].code);
  const std::string bytes = in.ConsumeRemainingBytesAsString();
  const QByteArray reply(bytes.data(), int(bytes.size()));

  PositionFields f;
  try {
    f = ReplyDecode(family, reply);
  } catch (const AppError& e) {
    Require(e.number == ErrNo::InvalidCall && IsHexTextFamily(family) == false,
            "only a short binary reply raises, and only error 5", e.text());
    return 0;
  }
  const QString shown = f.txtRAHour + QLatin1Char(' ') + f.txtRAMin + QLatin1Char(' ') +
                        f.txtDecSign + f.txtDecDeg + QLatin1Char(' ') + f.txtDecMin;
  const double raHour = Val(f.txtRAHour), raMin = Val(f.txtRAMin);
  const double decDeg = Val(f.txtDecDeg), decMin = Val(f.txtDecMin);
  Require(IsNumeric(f.txtRAHour) && IsNumeric(f.txtRAMin) && IsNumeric(f.txtDecDeg) &&
              IsNumeric(f.txtDecMin) && raHour >= 0 && raHour <= 23 &&
              raHour == std::floor(raHour) && raMin >= 0 && raMin < 60 &&
              (f.txtDecSign == QLatin1String("+") || f.txtDecSign == QLatin1String("-")) &&
              decDeg >= 0 && decDeg <= 180 && decMin >= 0 && decMin < 60,
          "the fields are numbers within their ranges", shown);
  return 0;
}
