#include "exchange/codepage.h"

#include <QList>
#include <QStringDecoder>

namespace {

// The characters of the bytes 0x80 to 0x9F; 0 where Windows-1252 defines none.
constexpr char16_t kHigh[32] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

// The byte of a character, or -1 when the code page cannot hold it.
int byteOf(char32_t c) {
  if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return int(c);
  if (c <= 0x9F) return kHigh[c - 0x80] == 0 ? int(c) : -1;
  for (int i = 0; i < 32; ++i)
    if (kHigh[i] == c) return 0x80 + i;
  return -1;
}

// What stands for a character the code page cannot hold: the representable part of its
// compatibility decomposition, or "?".
QString standIn(char32_t c) {
  const QString decomposed = QString::fromUcs4(&c, 1).normalized(QString::NormalizationForm_KD);
  QString out;
  for (const char32_t d : decomposed.toUcs4())
    if (byteOf(d) >= 0) out += QChar(char16_t(d));
  return out.isEmpty() ? QStringLiteral("?") : out;
}

template <typename Emit>
void eachFitted(const QString& text, Emit sink) {
  const int n = int(text.size());
  for (int i = 0; i < n; ++i) {
    char32_t c = text[i].unicode();
    if (QChar::isHighSurrogate(c) && i + 1 < n && text[i + 1].isLowSurrogate())
      c = QChar::surrogateToUcs4(char16_t(c), text[++i].unicode());
    const int b = byteOf(c);
    if (b >= 0) {
      sink(char16_t(c), b);
    } else {
      for (QChar s : standIn(c)) sink(s.unicode(), byteOf(s.unicode()));
    }
  }
}

}  // namespace

QString FitCodePage(const QString& text) {
  QString out;
  out.reserve(text.size());
  eachFitted(text, [&](char16_t c, int) { out += QChar(c); });
  return out;
}

QByteArray EncodeCodePage(const QString& text) {
  QByteArray out;
  out.reserve(text.size());
  eachFitted(text, [&](char16_t, int b) { out += char(b); });
  return out;
}

QString DecodeCodePage(const QByteArray& bytes) {
  QString out(bytes.size(), Qt::Uninitialized);
  QChar* d = out.data();
  for (const char ch : bytes) {
    const auto b = static_cast<unsigned char>(ch);
    *d++ = QChar(b >= 0x80 && b <= 0x9F && kHigh[b - 0x80] ? kHigh[b - 0x80] : char16_t(b));
  }
  return out;
}

QString DecodeImportText(const QByteArray& bytes) {
  if (bytes.startsWith("\xEF\xBB\xBF")) return QString::fromUtf8(bytes.mid(3));
  bool ascii = true;
  for (const char ch : bytes)
    if (static_cast<unsigned char>(ch) >= 0x80) {
      ascii = false;
      break;
    }
  if (ascii) return QString::fromLatin1(bytes);
  QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
  const QString asUtf8 = utf8.decode(bytes);
  return utf8.hasError() ? DecodeCodePage(bytes) : asUtf8;
}
