// - Whatever the bytes, the CSV and tour import readers end with objects of finite positions or
//   a malformed file.
// - A row the general CSV export writes, any code-page texts and position, reads back through
//   the CSV import as written; a tour row reads back to a tenth of a second.
#include <algorithm>
#include <cmath>

#include "core/numtext.h"
#include "exchange/codepage.h"
#include "exchange/csvformat.h"
#include "exchange/exchangefixture.h"
#include "exchange/exportvalues.h"
#include "exchange/tourformat.h"
#include "fuzzsupport.h"

namespace {

// A text the code page holds: printable ASCII and the upper half of Latin-1.
QString codePageText(FuzzedDataProvider& in) {
  QString s;
  for (const char c : in.ConsumeRandomLengthString(40)) {
    const auto u = static_cast<unsigned char>(c);
    s += QChar(u >= 0x20 && u < 0x7F ? u : u >= 0xA0 ? u : ' ');
  }
  return s;
}

// Whether the CSV import stores what the general export wrote of a column: a blank for an
// empty text, a number in its printed form, a catalog number right-aligned in ten places.
bool csvReadsBack(int c, const QVariant& written, const QVariant& back) {
  const ExchangeColumnInfo& info = ExchangeColumns()[size_t(c)];
  if (info.number) return back.toDouble() == written.toDouble();
  const QString want = info.trimmed ? written.toString().trimmed() : written.toString();
  const QString got = back.toString();
  if (c == ColObjectNum && got.size() < 10) return false;
  if ((c == ColObjectNum || c == ColMagnitude) && IsNumeric(want.trimmed()))
    return IsNumeric(got) &&
           std::fabs(Val(got) - Val(want)) <= 1e-14 * std::max(1.0, std::fabs(Val(want)));
  if (c == ColObjectNum) return got.trimmed() == want;
  return got == (want.isEmpty() ? QStringLiteral(" ") : want);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static TestEnv env;
  static const QString path = env.path(QStringLiteral("fuzz.tlf"));
  static const auto db = (EnsureCoreApplication(), MakeExchangeList(*env.state, path, {}),
                          Database::open(path, Database::Mode::ReadWrite));
  // Each run rewrites the list; nothing waits for the disk.
  [[maybe_unused]] static const bool unsynced =
      (db->exec(QStringLiteral("PRAGMA synchronous = OFF; PRAGMA journal_mode = MEMORY")), true);
  FuzzedDataProvider in(data, size);
  const int mode = in.ConsumeIntegralInRange(0, 2);
  if (mode == 0) {
    const QByteArray bytes = QByteArray::fromStdString(in.ConsumeRemainingBytesAsString());
    for (const ImportReading& r :
         {ReadCsvImport(bytes, false), ReadCsvImport(bytes, true), ReadTour(bytes)}) {
      Require(r.wellFormed || r.objects.empty(), "a malformed file gives nothing to store");
      for (const ImportedObject& o : r.objects)
        for (const int c : {ColRAHour, ColRAMinute, ColDecDeg, ColDecMinute})
          Require(o[c].typeId() == QMetaType::Double && std::isfinite(o[c].toDouble()),
                  "a position value is a finite number");
    }
    return 0;
  }

  ImportedObject o;
  for (const int c :
       {ColCategory, ColObjectNum, ColName, ColType, ColMagnitude, ColConstellation, ColInfo})
    o[c] = codePageText(in);
  o[ColDecSign] = in.ConsumeBool() ? QStringLiteral("-") : QStringLiteral("+");
  o[ColRAHour] = double(in.ConsumeIntegralInRange(0, 23));
  o[ColRAMinute] = in.ConsumeIntegralInRange(0, 599) / 10.0;
  o[ColDecDeg] = double(in.ConsumeIntegralInRange(0, 89));
  o[ColDecMinute] = double(in.ConsumeIntegralInRange(0, 59));
  db->exec(QStringLiteral("DELETE FROM Objects"));
  StoreImportedObjects(db, ImportTarget::CurrentList, {o});
  ListRows rows(*db);
  const QByteArray file = mode == 1 ? WriteCsv(rows, CsvVariant::General) : WriteTour(rows);
  // An import takes a file that is valid UTF-8 as UTF-8, so code-page texts whose bytes happen
  // to spell UTF-8 (the three letters of a byte-order mark, say) come back as other characters:
  // the price of reading both. The round trips are claimed for every other file.
  if (DecodeImportText(file) != DecodeCodePage(file)) return 0;
  const ImportReading r = mode == 1 ? ReadCsvImport(file, true) : ReadTour(file);
  Require(r.wellFormed && r.objects.size() == 1, "the export reads back as one", Shown(file));
  const ImportedObject& back = r.objects[0];
  if (mode == 1) {
    for (int c = 0; c < ExchangeColumnCount; ++c)
      Require(csvReadsBack(c, o[c], back[c]), "a value reads back as written",
              ExchangeColumns()[c].field + QLatin1Char('\n') + Shown(file));
    return 0;
  }
  const auto apart = [&](int whole, int part) {  // minutes between written and read back
    return std::fabs(o[whole].toDouble() * 60 + o[part].toDouble() -
                     (back[whole].toDouble() * 60 + back[part].toDouble()));
  };
  // The reader takes the sign from the degrees, so a declination between -1 and 0 degrees
  // ("-00:30:00") comes back north, as tours have always read.
  const bool south = o[ColDecSign].toString() == QLatin1String("-") && o[ColDecDeg].toDouble() >= 1;
  const double tenthSecond = 0.1 / 60 + 1e-9;
  Require(apart(ColRAHour, ColRAMinute) < tenthSecond &&
              apart(ColDecDeg, ColDecMinute) < tenthSecond &&
              south == (back[ColDecSign].toString() == QLatin1String("-")),
          "the position reads back", Shown(file));
  return 0;
}
