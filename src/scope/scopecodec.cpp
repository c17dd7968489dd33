#include "scope/scopecodec.h"

#include "core/apperror.h"
#include "core/numtext.h"

#include <cmath>

namespace {

constexpr double kScale = 1.011358;

bool is(const QString& family, const char* code) { return family == QLatin1String(code); }

bool isBinaryFamily(const QString& family) {
  return is(family, "BIG") || is(family, "OLDGT") || is(family, "TASCO");
}

QByteArray hexPair(int byte) {
  return QByteArray::number(byte, 16).toUpper().rightJustified(2, '0');
}

// One hex pair of the reply at a 1-based position, read the forgiving way.
double hexAt(const QByteArray& reply, int pos) {
  const QByteArray pair = reply.mid(pos - 1, 2);
  return Val(QStringLiteral("&H") + QString::fromLatin1(pair));
}

// One raw byte of the reply at a 1-based position; past the end is error 5.
double byteAt(const QByteArray& reply, int pos) {
  if (pos > reply.size()) throw AppError::of(ErrNo::InvalidCall);
  return static_cast<unsigned char>(reply.at(pos - 1));
}

}  // namespace

bool IsHexTextFamily(const QString& family) {
  return !isBinaryFamily(family) && !is(family, "ULTIMA");
}

bool NeedsArrowReminder(const QString& family) {
  return is(family, "OLDGT") || is(family, "TASCO");
}

double RAUnits(double raHours, double raMinutes) {
  return Int(kScale * (3 * (15 * (raMinutes + raHours * 60))));
}

double DecUnits(const QString& decSign, double decDegrees, double decMinutes) {
  if (decSign == QLatin1String("-"))
    return Int(kScale * (3 * (21600 - (decMinutes + std::fabs(decDegrees) * 60))));
  return Int(kScale * (3 * (decMinutes + decDegrees * 60)));
}

QByteArray HexGotoText(int raUnits, int decUnits) {
  return QByteArray("R") + hexPair(raUnits / 256) + hexPair(raUnits % 256) + ',' +
         hexPair(decUnits / 256) + hexPair(decUnits % 256);
}

namespace {

// A byte cannot hold what a 16-bit unit outside its range would split into.
void checkUnits(double ra, double dec) {
  if (!(ra >= 0 && ra <= 65535 && dec >= 0 && dec <= 65535)) throw AppError::of(ErrNo::InvalidCall);
}

}  // namespace

QList<ScopeWrite> EncodeGoto(const QString& family, double raHours, double raMinutes,
                             const QString& decSign, double decDegrees, double decMinutes) {
  const double ra = RAUnits(raHours, raMinutes);
  const double dec = DecUnits(decSign, decDegrees, decMinutes);
  checkUnits(ra, dec);
  const int r = static_cast<int>(ra), d = static_cast<int>(dec);
  const char raHigh = static_cast<char>(r / 256), raLow = static_cast<char>(r % 256);
  const char decHigh = static_cast<char>(d / 256), decLow = static_cast<char>(d % 256);

  if (is(family, "OLDGT") || is(family, "TASCO")) {
    QByteArray b("R");
    b.append(raHigh).append(raLow).append('\0').append(decHigh).append(decLow).append('\0');
    return {{b, 0}};
  }
  if (is(family, "BIG")) {
    QByteArray b("R");
    b.append(raHigh).append(raLow).append(decHigh).append(decLow);
    return {{QByteArray("?"), 250}, {b, 0}};
  }
  if (is(family, "ULTIMA")) return {{HexGotoText(r, d) + '\r', 0}};
  return {{HexGotoText(r, d), 0}};
}

EquatorialPlace GotoPlace(double raHours, double raMinutes, const QString& decSign,
                          double decDegrees, double decMinutes) {
  checkUnits(RAUnits(raHours, raMinutes), DecUnits(decSign, decDegrees, decMinutes));
  const bool south = decSign == QLatin1String("-");
  const double dec =
      south ? -(std::fabs(decDegrees) + decMinutes / 60) : decDegrees + decMinutes / 60;
  return {std::fmod(raHours + raMinutes / 60, 24.0), dec};
}

PositionFields PlaceFields(const EquatorialPlace& place) {
  double ra = std::fmod(place.raHours, 24.0);
  if (ra < 0) ra += 24;
  const double dec = qBound(-90.0, place.decDegrees, 90.0);
  return DisplayPosition(ra * 60, dec >= 0 ? dec * 60 : 21600 + dec * 60);
}

QList<ScopeWrite> PositionRequest(const QString& family) {
  if (is(family, "BIG")) return {{QByteArray("?"), 250}, {QByteArray("E"), 0}};
  if (is(family, "ULTIMA")) return {{QByteArray("E\r"), 0}};
  return {{QByteArray("E"), 0}};
}

PositionFields DisplayPosition(double raMinutes, double decMinutes) {
  PositionFields f;

  const double raWhole = Int(raMinutes / 60);
  const double m = (raMinutes / 60 - raWhole) * 60;
  const double r = RoundHalfEven(m, 1);
  if (r == 60 || (r == 0 && r > m)) {
    double hour = raWhole + 1;
    if (hour == 24) hour = 0;
    f.txtRAHour = PlainNumber(hour);
  } else {
    f.txtRAHour = PlainNumber(raWhole);
  }
  f.txtRAMin = PlainNumber(r != 60 ? r : 0);

  if (decMinutes <= 10800) {
    f.txtDecSign = QStringLiteral("+");
  } else {
    f.txtDecSign = QStringLiteral("-");
    decMinutes = 21600 - decMinutes;
  }
  const double decWhole = Int(decMinutes / 60);
  const double dm = RoundHalfEven((decMinutes / 60 - decWhole) * 60);
  if (dm == 60) {
    f.txtDecDeg = PlainNumber(decWhole + 1);
    f.txtDecMin = QStringLiteral("0");
  } else {
    f.txtDecDeg = PlainNumber(decWhole);
    f.txtDecMin = PlainNumber(dm);
  }
  return f;
}

PositionFields ReplyDecode(const QString& family, const QByteArray& reply) {
  double raHigh, raLow, decHigh, decLow;
  if (is(family, "BIG")) {
    raHigh = byteAt(reply, 2);
    raLow = byteAt(reply, 3);
    decHigh = byteAt(reply, 4);
    decLow = byteAt(reply, 5);
  } else if (is(family, "OLDGT") || is(family, "TASCO")) {
    raHigh = byteAt(reply, 1);
    raLow = byteAt(reply, 2);
    decHigh = byteAt(reply, 4);
    decLow = byteAt(reply, 5);
  } else {
    const int o = is(family, "ULTIMA") ? 1 : 0;
    raHigh = hexAt(reply, 1 + o);
    raLow = hexAt(reply, 3 + o);
    decHigh = hexAt(reply, 6 + o);
    decLow = hexAt(reply, 8 + o);
  }

  double raMinutes, decMinutes;
  if (isBinaryFamily(family)) {
    // These undo the slew arithmetic exactly, approximate constant included.
    raMinutes = (raHigh * 256 + raLow) / kScale / 3 / 15;
    decMinutes = (decHigh * 256 + decLow) / kScale / 3;
  } else {
    raMinutes = (raHigh * 256 + raLow) * 24 * 60 / 65536;
    decMinutes = (decHigh * 256 + decLow) * 360 * 60 / 65536;
  }
  return DisplayPosition(raMinutes, decMinutes);
}
