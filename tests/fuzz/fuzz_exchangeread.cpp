// The CSV and tour import readers, and the exports they read back.
// - Whatever the bytes of a file, a reader ends with objects or a malformed file, never a crash;
//   every object holds twelve values and four finite position numbers; a malformed file gives
//   no objects to store.
// - A row the general CSV export writes, any texts in the code page and any position, reads
//   back through the CSV import with the same texts (trimmed where the export trims, an empty
//   one as a single blank, a number in its printed form) and the same position.
// - A row the tour export writes reads back through the tour import as one object, at the
//   position written to a tenth of a second.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cmath>

#include "catalog/database.h"
#include "core/numtext.h"
#include "exchange/codepage.h"
#include "exchange/csvformat.h"
#include "exchange/exportvalues.h"
#include "exchange/tourformat.h"
#include "fuzzsupport.h"
#include "support/listdocument.h"
#include "support/testenv.h"

namespace {

void checkReading(const ImportReading& r, const char* reader) {
  if (!r.wellFormed) Require(r.objects.empty(), "a malformed file gives nothing to store", reader);
  for (const ImportedObject& o : r.objects)
    for (const int c : {ColRAHour, ColRAMinute, ColDecDeg, ColDecMinute})
      Require(o[c].typeId() == QMetaType::Double && std::isfinite(o[c].toDouble()),
              "a position value is a finite number", reader);
}

// A text the code page holds: printable ASCII and the upper half of Latin-1.
QString codePageText(FuzzedDataProvider& in, size_t most) {
  QString s;
  for (const char c : in.ConsumeRandomLengthString(most)) {
    const auto u = static_cast<unsigned char>(c);
    s += QChar(u >= 0x20 && u < 0x7F ? u : u >= 0xA0 ? u : ' ');
  }
  return s;
}

// An import takes a file that is valid UTF-8 as UTF-8, so code-page texts whose bytes happen to
// spell UTF-8 (the three letters of a byte-order mark, say) come back as other characters: the
// price of reading both. The round trips below are claimed for every other file.
bool readsAsUtf8(const QByteArray& file) { return DecodeImportText(file) != DecodeCodePage(file); }

struct Document {
  Document() {
    EnsureCoreApplication();
    path = env.path(QStringLiteral("fuzz.tlf"));
    MakeListDocument(*env.state, path, {});
    db = std::make_unique<Database>(path, Database::Mode::ReadWrite);
  }
  TestEnv env;
  QString path;
  std::unique_ptr<Database> db;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static Document doc;
  FuzzedDataProvider in(data, size);
  const int mode = in.ConsumeIntegralInRange(0, 2);
  if (mode == 0) {
    const QByteArray bytes = QByteArray::fromStdString(in.ConsumeRemainingBytesAsString());
    checkReading(ReadCsvImport(bytes, false), "csv");
    checkReading(ReadCsvImport(bytes, true), "csv with header");
    checkReading(ReadTour(bytes), "tour");
    return 0;
  }

  QString texts[ExchangeColumnCount];
  for (const int c : {ColCategory, ColObjectNum, ColName, ColType, ColMagnitude, ColConstellation,
                      ColInfo})
    texts[c] = codePageText(in, 40);
  texts[ColDecSign] = in.ConsumeBool() ? QStringLiteral("-") : QStringLiteral("+");
  const double ra = in.ConsumeIntegralInRange(0, 23), raMin = in.ConsumeIntegralInRange(0, 599) / 10.0;
  const double dec = in.ConsumeIntegralInRange(0, 89), decMin = in.ConsumeIntegralInRange(0, 59);
  doc.db->exec(QStringLiteral("DELETE FROM Objects"));
  Statement st = doc.db->prepare(QStringLiteral(
      "INSERT INTO Objects (DisplayOrder, Category, ObjectNum, Name, Type, Constellation, "
      "Magnitude, Info, RAHour, RAMinute, DecSign, DecDeg, DecMinute) "
      "VALUES (1, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"));
  int k = 1;
  for (const int c : {ColCategory, ColObjectNum, ColName, ColType, ColConstellation, ColMagnitude,
                      ColInfo})
    st.bind(k++, texts[c]);
  for (const QVariant& v : {QVariant(ra), QVariant(raMin), QVariant(texts[ColDecSign]),
                            QVariant(dec), QVariant(decMin)})
    st.bind(k++, v);
  st.step();

  ListRows rows(*doc.db);
  if (mode == 1) {
    const QByteArray file = WriteCsv(rows, CsvVariant::General);
    if (readsAsUtf8(file)) return 0;
    const ImportReading r = ReadCsvImport(file, true);
    const QString detail = QString::fromLatin1(file.toPercentEncoding(" ,\"#"));
    Require(r.wellFormed && r.objects.size() == 1, "the export reads back as one object", detail);
    const ImportedObject& o = r.objects[0];
    for (const int c : {ColCategory, ColObjectNum, ColName, ColType, ColMagnitude, ColConstellation,
                        ColDecSign, ColInfo}) {
      QString want = ExchangeColumns()[c].trimmed ? texts[c].trimmed() : texts[c];
      const QString got = o[c].toString();
      if (c == ColObjectNum || c == ColMagnitude) {
        // A number comes back in its printed form, a catalog number right-aligned in ten places.
        const QString w = want.trimmed(), g = got.trimmed();
        const bool same = IsNumeric(w) ? IsNumeric(g) && std::fabs(Val(g) - Val(w)) <=
                                                             1e-14 * std::max(1.0, std::fabs(Val(w)))
                                       : g == w;
        Require(same && (c == ColMagnitude || got.size() >= 10), "a number reads back as written",
                detail);
        continue;
      }
      if (want.isEmpty()) want = QStringLiteral(" ");  // the import stores no empty text
      Require(got == want, "a text reads back as written", detail);
    }
    Require(o[ColRAHour].toDouble() == ra && o[ColRAMinute].toDouble() == raMin &&
                o[ColDecDeg].toDouble() == dec && o[ColDecMinute].toDouble() == decMin,
            "the position reads back as written", detail);
    return 0;
  }
  const QByteArray file = WriteTour(rows);
  if (readsAsUtf8(file)) return 0;
  const ImportReading r = ReadTour(file);
  const QString detail = QString::fromLatin1(file.toPercentEncoding(" #"));
  Require(r.wellFormed && r.objects.size() == 1, "the tour reads back as one object", detail);
  const ImportedObject& o = r.objects[0];
  const double wrote = ra * 60 + raMin, read = o[ColRAHour].toDouble() * 60 + o[ColRAMinute].toDouble();
  Require(std::fabs(wrote - read) < 0.1 / 60 + 1e-9, "the right ascension reads back", detail);
  const double sign = texts[ColDecSign] == QLatin1String("-") && dec * 60 + decMin > 0 ? -1 : 1;
  const double readSign = o[ColDecSign].toString() == QLatin1String("-") ? -1 : 1;
  Require(sign == readSign && std::fabs(dec * 60 + decMin - (o[ColDecDeg].toDouble() * 60 +
                                                             o[ColDecMinute].toDouble())) < 0.1 / 60 + 1e-9,
          "the declination reads back", detail);
  return 0;
}
