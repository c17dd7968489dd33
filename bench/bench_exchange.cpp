// The exchange formats on a list of 10,000 real catalog objects: CSV export (target under
// 100 ms), CSV import of 10,000 rows into a list (under 500 ms) and tour export (under 100 ms;
// a tour holds the first 200). Each figure is printed beside a floor measured in the same run:
// a plain loop that reads the same rows from the file (exports) or splits the same file and
// inserts its values in one transaction (import).
#include <QCoreApplication>
#include <QTextStream>

#include "benchsetup.h"
#include "benchstats.h"
#include "catalog/database.h"
#include "core/recordfile.h"
#include "exchange/exchangejobs.h"

namespace {

constexpr int kObjects = 10000;

// Reads every column of every row of the list, in the list's order.
void readRows(const QString& path, int limit) {
  Database db(path, Database::Mode::ReadOnly);
  Statement st =
      db.prepare(QStringLiteral("SELECT * FROM Objects ORDER BY DisplayOrder LIMIT %1").arg(limit));
  QString sink;
  while (st.step())
    for (int i = 0; i < st.columnCount(); ++i) sink += st.value(i).toString();
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  bench::Setup setup;
  const AppState& state = setup.state;
  const QTemporaryDir& dir = setup.dir;
  QTextStream out(stdout);

  const QString list = bench::catalogRowsList(state, dir, QStringLiteral("big.tlf"), kObjects);
  const QString title = QStringLiteral("big");
  const auto readFloor = [&](int) { readRows(list, kObjects); };
  const bench::Measured csvExport = bench::measure(
      [&](int) { ExportList(ExportKind::Csv, list, title, TourFolders{}); }, readFloor);
  const bench::Measured tourExport = bench::measure(
      [&](int) { ExportList(ExportKind::Tour, list, title, TourFolders{}); }, readFloor);

  const QString csv = dir.filePath(QStringLiteral("big.csv"));
  QString target;
  bool imported = true;
  const bench::Measured csvImport = bench::measure(
      [&](int) {
        imported &= ImportFile(ImportFormat::Csv, csv, true,
                               Database::open(target, Database::Mode::ReadWrite),
                               ImportTarget::CurrentList);
      },
      [&](int) {
        const QList<QByteArray> rows = ReadWholeFile(csv).split('\n');
        Database db(target, Database::Mode::ReadWrite);
        Database::Transaction batch(db);
        Statement st = db.prepare(QStringLiteral(
            "INSERT INTO Objects (Category, ObjectNum, Name, Type, Magnitude, Constellation, "
            "RAHour, RAMinute, DecSign, DecDeg, DecMinute, Info) "
            "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12)"));
        for (int r = 1; r < rows.size(); ++r) {
          const QList<QByteArray> values = rows[r].split(',');
          if (values.size() < 12) continue;
          for (int i = 0; i < 12; ++i) st.bind(i + 1, QString::fromLatin1(values[i]));
          st.step();
          st.reset();
        }
        batch.commit();
      },
      [&](int) { target = bench::freshList(state, dir, QStringLiteral("target.tlf")); });
  // The last prepared list holds the floor's rows; import once more to check what it stores.
  target = bench::freshList(state, dir, QStringLiteral("target.tlf"));
  imported &=
      ImportFile(ImportFormat::Csv, csv, true, Database::open(target, Database::Mode::ReadWrite),
                 ImportTarget::CurrentList);
  Database check(target, Database::Mode::ReadOnly);
  Statement count = check.prepare(QStringLiteral("SELECT COUNT(*) FROM Objects"));
  count.step();
  if (!imported || count.int64Value(0) != kObjects) {
    out << "the import did not store " << kObjects << " rows\n";
    return 1;
  }

  bool met = bench::report(out, QStringLiteral("CSV export of 10,000 objects"), csvExport, 100);
  met &= bench::report(out, QStringLiteral("tour export of 10,000 objects (a tour keeps 200)"),
                       tourExport, 100);
  met &= bench::report(out, QStringLiteral("CSV import of 10,000 rows"), csvImport, 500);
  out << "(floors: the same rows read plainly; the same file split and inserted in one "
         "transaction)\n";
  return met ? 0 : 2;
}
