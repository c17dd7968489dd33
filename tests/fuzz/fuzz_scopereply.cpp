// Position replies of every telescope family, garbage included.
// - A reply decodes to display fields within their ranges, or (binary families, too short)
//   raises error 5; nothing else.
// - Decoding agrees with the slew encoding: sending the telescope to the decoded position asks
//   for the units the reply held, within what the display's rounding loses.
#include <fuzzer/FuzzedDataProvider.h>

#include <cmath>

#include "core/apperror.h"
#include "core/numtext.h"
#include "scope/scopecodec.h"
#include "scope/scopetypes.h"
#include "fuzzsupport.h"

namespace {

// The two 16-bit units a reply holds, read as the family reads them.
std::pair<double, double> unitsOf(const QString& family, const QByteArray& reply) {
  auto byte = [&](int pos) { return double(static_cast<unsigned char>(reply.at(pos - 1))); };
  auto hex = [&](int pos) { return Val(QStringLiteral("&H") + QString::fromLatin1(reply.mid(pos - 1, 2))); };
  if (family == QLatin1String("BIG")) return {byte(2) * 256 + byte(3), byte(4) * 256 + byte(5)};
  if (family == QLatin1String("OLDGT") || family == QLatin1String("TASCO"))
    return {byte(1) * 256 + byte(2), byte(4) * 256 + byte(5)};
  const int o = family == QLatin1String("ULTIMA") ? 1 : 0;
  return {hex(1 + o) * 256 + hex(3 + o), hex(6 + o) * 256 + hex(8 + o)};
}

// Units apart on a circle of 65536.
double apart(double a, double b) {
  const double d = std::fabs(a - b);
  return std::min(d, 65536 - d);
}

}  // namespace

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
              IsNumeric(f.txtDecMin),
          "the fields are numbers", shown);
  Require(raHour >= 0 && raHour <= 23 && raHour == std::floor(raHour), "RA hours 0 to 23", shown);
  Require(raMin >= 0 && raMin < 60, "RA minutes 0 to 59.9", shown);
  Require(f.txtDecSign == QLatin1String("+") || f.txtDecSign == QLatin1String("-"), "a sign", shown);
  Require(decDeg >= 0 && decDeg <= 180 && decMin >= 0 && decMin < 60, "Dec in range", shown);

  // Back to units through the slew encoding, which knows no declination beyond 90 degrees.
  if (decDeg + decMin / 60 > 90) return 0;
  const auto [raUnits, decUnits] = unitsOf(family, reply);
  const double ra = RAUnits(raHour, raMin);
  const double dec = DecUnits(f.txtDecSign, decDeg, decMin);
  // RA is shown to a tenth of a minute of time (4.6 units), Dec to a minute of arc (3.0
  // units); the binary families also carry their scale constant both ways.
  Require(apart(ra, raUnits) <= 4, "RA encodes back to the units of the reply",
          shown + QStringLiteral(" gives %1, reply %2").arg(ra).arg(raUnits));
  Require(apart(dec, decUnits) <= 3, "Dec encodes back to the units of the reply",
          shown + QStringLiteral(" gives %1, reply %2").arg(dec).arg(decUnits));
  return 0;
}
