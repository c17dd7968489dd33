#include "exchange/csvformat.h"

#include "catalog/recordset.h"
#include "core/numtext.h"
#include "exchange/codepage.h"
#include "exchange/exportvalues.h"

namespace {

const QString kCrLf = QStringLiteral("\r\n");

// The value fitted to the code page first, so a character that becomes a quote mark there (a
// full-width one) is doubled like any other.
void appendQuoted(QString& out, QStringView text) {
  out += QLatin1Char('"');
  for (const QChar c : FitCodePage(text.toString())) {
    if (c == QLatin1Char('"')) out += QLatin1Char('"');
    out += c;
  }
  out += QLatin1Char('"');
}

void appendValue(QString& out, const QVariant& v, bool trimmed) {
  if (v.isNull()) {
    out += QLatin1String("#NULL#");
  } else if (trimmed) {
    appendQuoted(out, QStringView(FieldText(v)).trimmed());
  } else if (v.typeId() == QMetaType::Double || v.typeId() == QMetaType::LongLong) {
    out += NumberText(v.toDouble());
  } else {
    appendQuoted(out, v.toString());
  }
}

QString quotedLine(const QStringList& texts) {
  QString out;
  for (const QString& t : texts) {
    if (!out.isEmpty()) out += QLatin1Char(',');
    appendQuoted(out, t);
  }
  return out + kCrLf;
}

bool isBlank(QChar c) { return c == QLatin1Char(' ') || c == QLatin1Char('\t'); }
bool isLineEnd(QChar c) { return c == QLatin1Char('\r') || c == QLatin1Char('\n'); }

// Each value read from a comma file brought to the form its field is stored in.
QVariant fieldValue(int column, const CsvValue& value) {
  // A Null written by an export comes back as an empty value.
  const QString text =
      !value.quoted && value.text == QLatin1String("#NULL#") ? QString() : value.text;
  if (ExchangeColumns()[size_t(column)].number) return Val(text);
  QString out = text;
  if (column == ColObjectNum) {
    if (IsNumeric(out)) out = PrintedNumber(Val(out));
    // Right-aligned, so that a sort on the text follows the number; a longer one stays whole.
    return PadLeft(out.trimmed(), 10);
  }
  if (column == ColMagnitude && IsNumeric(out)) out = PrintedNumber(Val(out)).trimmed();
  return out.isEmpty() ? QStringLiteral(" ") : out;
}

}  // namespace

QByteArray WriteCsv(ListRows& list, CsvVariant variant) {
  const bool brillet = variant == CsvVariant::Brillet;
  const auto& columns = ExchangeColumns();
  QStringList headers;
  for (const ExchangeColumnInfo& c : columns) headers << c.header;

  QString out;
  if (brillet) {
    QStringList count{QStringLiteral("BRLT"), QString::number(list.count())};
    for (int i = 0; i < 12; ++i) count << QStringLiteral("0");
    out += quotedLine(count);
    headers << QStringLiteral("Ob") << QStringLiteral("Go");
  }
  out += quotedLine(headers);
  out.reserve(out.size() + list.count() * 160);
  while (list.next()) {
    for (int i = 0; i < ExchangeColumnCount; ++i) {
      if (i) out += QLatin1Char(',');
      appendValue(out, list.value(ExchangeColumn(i)), columns[size_t(i)].trimmed);
    }
    if (brillet) out += QStringLiteral(",\"0\",\"0\"");
    out += kCrLf;
  }
  return EncodeCodePage(out);
}

QVector<CsvValue> ReadCsvValues(const QString& text) {
  QVector<CsvValue> values;
  const int n = int(text.size());
  int pos = 0;
  bool afterComma = false;  // a comma promises one more value, empty if nothing follows
  for (;;) {
    while (pos < n && isBlank(text[pos])) ++pos;
    if (pos >= n) {
      if (afterComma) values.append(CsvValue{});
      break;
    }
    const QChar c = text[pos];
    if (isLineEnd(c)) {
      if (afterComma) values.append(CsvValue{});
      afterComma = false;
      if (c == QLatin1Char('\r') && pos + 1 < n && text[pos + 1] == QLatin1Char('\n')) ++pos;
      ++pos;
      continue;
    }
    CsvValue v;
    if (c == QLatin1Char('"')) {
      v.quoted = true;
      ++pos;
      for (;;) {
        const int close = int(text.indexOf(QLatin1Char('"'), pos));
        if (close < 0) {  // no closing quote: the value runs to the end of the file
          v.text += QStringView(text).mid(pos);
          pos = n;
          break;
        }
        v.text += QStringView(text).mid(pos, close - pos);
        pos = close + 1;
        if (pos < n && text[pos] == QLatin1Char('"')) {
          v.text += QLatin1Char('"');
          ++pos;
          continue;
        }
        break;
      }
      // Anything between the closing quote and the next separator is not part of a value.
      while (pos < n && text[pos] != QLatin1Char(',') && !isLineEnd(text[pos])) ++pos;
    } else {
      const int start = pos;
      while (pos < n && text[pos] != QLatin1Char(',') && !isLineEnd(text[pos])) ++pos;
      int end = pos;
      while (end > start && isBlank(text[end - 1])) --end;
      v.text = text.mid(start, end - start);
    }
    values.append(std::move(v));
    afterComma = pos < n && text[pos] == QLatin1Char(',');
    if (afterComma) ++pos;
  }
  return values;
}

ImportReading ReadCsvImport(const QByteArray& bytes, bool hasHeader) {
  const QVector<CsvValue> values = ReadCsvValues(DecodeImportText(bytes));
  ImportReading out;
  int first = 0;
  if (hasHeader && !values.isEmpty()) {
    if (values.size() < ExchangeColumnCount) {
      out.wellFormed = false;
      return out;
    }
    bool object = true;
    for (int c = 0; c < ExchangeColumnCount; ++c)
      if (ExchangeColumns()[size_t(c)].number && !IsNumeric(values[c].text)) object = false;
    // A first line of numbers is no header: the tick was set for a file without one.
    if (!object) first = ExchangeColumnCount;
  }
  const int count = int(values.size()) - first;
  out.wellFormed = count % ExchangeColumnCount == 0;
  if (!out.wellFormed) return out;
  out.objects.reserve(size_t(count / ExchangeColumnCount));
  for (int at = first; at < values.size(); at += ExchangeColumnCount) {
    ImportedObject object;
    for (int c = 0; c < ExchangeColumnCount; ++c) object[size_t(c)] = fieldValue(c, values[at + c]);
    out.objects.push_back(std::move(object));
  }
  return out;
}
