#include "core/numtext.h"

#include <QLocale>
#include <QRegularExpression>
#include <cfenv>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string>

#include "core/apperror.h"

namespace {

// The digits of a number in scientific notation, "d.ddde[+-]xx", with a point whatever the
// locale: the C library's printf takes its decimal sign from LC_NUMERIC, which Qt sets from
// the user's locale at start.
QByteArray scientific(double value, int precision) {
  char buf[64];
  const auto r =
      std::to_chars(buf, buf + sizeof buf, value, std::chars_format::scientific, precision);
  return QByteArray(buf, static_cast<int>(r.ptr - buf));
}

// Lays out a number with at most `digits` significant digits the classic way: fixed notation
// for decimal exponents from -4 to layout-1, scientific ("1.5E-07", "1E+15") beyond.
QString formatGeneral(double value, int digits, int layout = 0) {
  if (layout == 0) layout = digits;
  if (value == 0.0 || !std::isfinite(value)) return QStringLiteral("0");
  // [-]d.ddddde[+-]xx
  QString s = QString::fromLatin1(scientific(value, digits - 1));
  const bool negative = s.startsWith(QLatin1Char('-'));
  if (negative) s.remove(0, 1);
  const int ePos = s.indexOf(QLatin1Char('e'));
  QString mant = s.left(ePos);
  int exponent = s.mid(ePos + 1).toInt();
  mant.remove(QLatin1Char('.'));
  while (mant.size() > 1 && mant.endsWith(QLatin1Char('0'))) mant.chop(1);

  QString out;
  if (exponent < -4 || exponent >= layout) {
    out = mant.left(1);
    if (mant.size() > 1) out += QLatin1Char('.') + mant.mid(1);
    out += QLatin1Char('E');
    out += exponent < 0 ? QLatin1Char('-') : QLatin1Char('+');
    out += QString::number(std::abs(exponent)).rightJustified(2, QLatin1Char('0'));
  } else if (exponent < 0) {
    out = QStringLiteral("0.") + QString(-exponent - 1, QLatin1Char('0')) + mant;
  } else if (mant.size() <= exponent + 1) {
    out = mant + QString(exponent + 1 - mant.size(), QLatin1Char('0'));
  } else {
    out = mant.left(exponent + 1) + QLatin1Char('.') + mant.mid(exponent + 1);
  }
  return negative ? QLatin1Char('-') + out : out;
}

std::optional<double> parseStrict(const QString& text) {
  static const QRegularExpression re(
      QStringLiteral("^[+-]?(\\d+\\.?\\d*|\\.\\d+)([eEdD][+-]?\\d+)?$"));
  const QString t = text.trimmed();
  if (!re.match(t).hasMatch()) return std::nullopt;
  QString n = t;
  n.replace(QLatin1Char('d'), QLatin1Char('e')).replace(QLatin1Char('D'), QLatin1Char('e'));
  bool ok = false;
  const double v = QLocale::c().toDouble(n, &ok);
  if (!ok || !std::isfinite(v)) return std::nullopt;
  return v;
}

}  // namespace

namespace {

// Val looks only at ASCII characters, so it reads UTF-16 units and UTF-8 bytes alike: a
// character beyond ASCII is never a digit, a sign or a blank in either form.
unsigned unitOf(QChar c) { return c.unicode(); }
unsigned unitOf(char c) { return static_cast<unsigned char>(c); }

template <typename Unit>
double leadingNumber(const Unit* text, qsizetype size) {
  constexpr unsigned kEnd = ~0u;
  qsizetype i = 0;
  // The next character that counts: blanks, tabs and line feeds are passed over anywhere.
  const auto peek = [&]() -> unsigned {
    for (; i < size; ++i) {
      const unsigned c = unitOf(text[i]);
      if (c != ' ' && c != '\t' && c != '\n') return c;
    }
    return kEnd;
  };
  const auto isDigit = [](unsigned c) { return c >= '0' && c <= '9'; };
  const auto upper = [](unsigned c) { return c >= 'a' && c <= 'z' ? c - 32 : c; };

  if (peek() == '&') {
    ++i;
    const unsigned kind = upper(peek());
    if (kind == kEnd) return 0;
    const int base = kind == 'H' ? 16 : kind == 'O' ? 8 : 0;
    if (base == 0) return 0;
    ++i;
    quint64 v = 0;
    int n = 0;
    for (; n < 11; ++n, ++i) {
      const unsigned c = upper(peek());
      const int d = isDigit(c) ? int(c - '0') : c >= 'A' && c <= 'F' ? int(c - 'A' + 10) : -1;
      if (d < 0 || d >= base) break;
      v = v * base + d;
    }
    if (n == 0) return 0;
    if (v <= 0xFFFF && n <= (base == 16 ? 4 : 6)) return static_cast<qint16>(v);
    return static_cast<qint32>(static_cast<quint32>(v));
  }

  std::string num;
  unsigned c = peek();
  if (c == '+' || c == '-') {
    if (c == '-') num += '-';
    ++i;
  }
  bool digits = false;
  for (; isDigit(c = peek()); ++i, digits = true) num += char(c);
  if (c == '.') {
    num += '.';
    ++i;
    for (; isDigit(c = peek()); ++i, digits = true) num += char(c);
  }
  if (!digits) return 0;
  if (upper(c) == 'E' || upper(c) == 'D') {
    ++i;
    std::string exponent = "e";
    c = peek();
    if (c == '+' || c == '-') {
      exponent += char(c);
      ++i;
    }
    bool exponentDigits = false;
    for (; isDigit(c = peek()); ++i, exponentDigits = true) exponent += char(c);
    if (exponentDigits) num += exponent;
  }
  // Every digit counts, and so does the whole exponent; a number beyond the range of a double
  // (or too small for it) gives 0.
  double v = 0;
  const auto r = std::from_chars(num.data(), num.data() + num.size(), v);
  return r.ec == std::errc() && std::isfinite(v) ? v : 0.0;
}

}  // namespace

double Val(const QString& text) { return leadingNumber(text.constData(), text.size()); }

double ValUtf8(const char* text, qsizetype size) { return leadingNumber(text, size); }

bool IsNumeric(const QString& text) { return parseStrict(text).has_value(); }

QString PlainNumber(double value) { return formatGeneral(value, 15); }

QString PlainSingle(float value) { return formatGeneral(static_cast<double>(value), 7); }

QString PrintedNumber(double value) {
  QString s = PlainNumber(value);
  if (s.startsWith(QStringLiteral("0."))) s.remove(0, 1);
  else if (s.startsWith(QStringLiteral("-0."))) s.remove(1, 1);
  return value < 0 ? s : QLatin1Char(' ') + s;
}

QString ShortestSingle(float value) {
  if (value == 0.0f || !std::isfinite(value)) return QStringLiteral("0");
  for (int p = 1; p <= 9; ++p) {
    if (scientific(static_cast<double>(value), p - 1).toFloat() == value)
      return formatGeneral(static_cast<double>(value), p, 7);
  }
  return formatGeneral(static_cast<double>(value), 9, 7);
}

double RoundHalfEven(double value, int decimals) {
  const double scale = std::pow(10.0, decimals);
  const int saved = std::fegetround();
  std::fesetround(FE_TONEAREST);
  const double r = std::nearbyint(value * scale) / scale;
  std::fesetround(saved);
  return r;
}

double Int(double value) { return std::floor(value); }
double Fix(double value) { return std::trunc(value); }

qint16 CInt(double value) {
  const double r = RoundHalfEven(value);
  if (!std::isfinite(r) || r < -32768.0 || r > 32767.0) throw AppError::of(ErrNo::Overflow);
  return static_cast<qint16>(r);
}

qint16 CInt(const QString& text) {
  // The program's own number form only, so a setting reads the same under every locale.
  const std::optional<double> v = parseStrict(text);
  if (!v) throw AppError::of(ErrNo::TypeMismatch);
  return CInt(*v);
}

float CSng(double value) {
  // Up to half a unit in the last place beyond the largest single still rounds to it.
  constexpr double kBeyond = 3.4028235677973366e38;  // 2^128 - 2^103
  if (!std::isfinite(value) || std::fabs(value) >= kBeyond) throw AppError::of(ErrNo::Overflow);
  return static_cast<float>(value);
}

qint32 CLng(double value) {
  const double r = RoundHalfEven(value);
  if (!std::isfinite(r) || r < -2147483648.0 || r > 2147483647.0)
    throw AppError::of(ErrNo::Overflow);
  return static_cast<qint32>(r);
}

QString FormatMask(double value, const QString& mask) {
  const int dot = mask.indexOf(QLatin1Char('.'));
  const int intDigits = dot < 0 ? mask.size() : dot;
  const int decimals = dot < 0 ? 0 : mask.size() - dot - 1;
  const double scale = std::pow(10.0, decimals);
  const double magnitude = std::floor(std::fabs(value) * scale + 0.5) / scale;
  QString s = QString::number(magnitude, 'f', decimals);
  const int point = s.indexOf(QLatin1Char('.'));
  const int have = point < 0 ? s.size() : point;
  if (have < intDigits) s.prepend(QString(intDigits - have, QLatin1Char('0')));
  if (intDigits == 0 && s.startsWith(QStringLiteral("0."))) s.remove(0, 1);
  return value < 0 && magnitude != 0.0 ? QLatin1Char('-') + s : s;
}

QString PadLeft(const QString& text, int width) {
  return text.size() >= width ? text : QString(width - text.size(), QLatin1Char(' ')) + text;
}

QString ShortDate(const QDate& date) {
  return QLocale::system().toString(date, QLocale::ShortFormat);
}

QString ShortTime(const QTime& time) {
  return QLocale::system().toString(time, QLocale::ShortFormat);
}

QDateTime CDate(const QString& text) {
  // A time, when there is one, stands at the end after a blank; the date format of the
  // locale may hold blanks of its own ("21 Nov 2026").
  static const QRegularExpression timeRe(
      QStringLiteral("^(.*\\S)\\s+(\\d{1,2}):(\\d{1,2})(?::(\\d{1,2}))?$"));
  QString datePart = text.trimmed();
  QTime tm(0, 0);
  const auto m = timeRe.match(datePart);
  if (m.hasMatch()) {
    datePart = m.captured(1);
    tm = QTime(m.captured(2).toInt(), m.captured(3).toInt(),
               m.captured(4).isEmpty() ? 0 : m.captured(4).toInt());
    if (!tm.isValid()) throw AppError::of(ErrNo::TypeMismatch);
  }
  const QLocale loc = QLocale::system();
  const QString fmt = loc.dateFormat(QLocale::ShortFormat);
  QDate d = loc.toDate(datePart, fmt);
  if (!d.isValid()) d = QDate::fromString(datePart, Qt::ISODate);
  if (!d.isValid()) throw AppError::of(ErrNo::TypeMismatch);
  // Two-digit years: 00-29 are this century, 30-99 the last.
  if (!fmt.contains(QStringLiteral("yyyy")) && d.year() < 1930) d = d.addYears(100);
  return QDateTime(d, tm);
}

double DateSerial(const QDateTime& local) {
  static const QDate epoch(1899, 12, 30);
  return static_cast<double>(epoch.daysTo(local.date())) +
         local.time().msecsSinceStartOfDay() / 86400000.0;
}
