// The exchange formats on a list of 10,000 real catalog objects: CSV export (target under
// 100 ms), CSV import of 10,000 rows into a list (under 500 ms) and tour export (under 100 ms;
// a tour holds the first 200). Each figure is printed beside a floor measured in the same run:
// a plain loop that reads the same rows from the file (exports) or splits the same file and
// inserts its values in one transaction (import).
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>
#include <functional>

#include "silentprompter.h"
#include "catalog/database.h"
#include "core/appstate.h"
#include "core/paths.h"
#include "core/recordfile.h"
#include "exchange/exchangejobs.h"

namespace {

constexpr int kObjects = 10000;

QString freshList(const AppState& state, const QString& path) {
  QFile::remove(path);
  QFile::copy(state.templatePath(), path);
  QFile(path).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
  return path;
}

// Best of five runs, in milliseconds; prepare runs untimed before each.
double best(const std::function<void()>& run, const std::function<void()>& prepare = {}) {
  double out = 1e9;
  for (int i = 0; i < 5; ++i) {
    if (prepare) prepare();
    QElapsedTimer t;
    t.start();
    run();
    out = std::min(out, t.nsecsElapsed() / 1e6);
  }
  return out;
}

// Reads every column of every row of the list, in the list's order.
void readRows(const QString& path, int limit) {
  Database db(path, Database::Mode::ReadOnly);
  Statement st = db.prepare(
      QStringLiteral("SELECT * FROM Objects ORDER BY DisplayOrder LIMIT %1").arg(limit));
  QString sink;
  while (st.step())
    for (int i = 0; i < st.columnCount(); ++i) sink += st.value(i).toString();
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  SilentPrompter prompter;
  AppState state(prompter);
  state.programFolder = SourceDataFolder();
  QTemporaryDir dir;
  QTextStream out(stdout);

  const QString list = freshList(state, dir.filePath(QStringLiteral("big.tlf")));
  {
    Database db(list, Database::Mode::ReadWrite);
    db.exec(QStringLiteral("ATTACH DATABASE '%1' AS cat").arg(state.catalogPath()));
    db.exec(QStringLiteral(
                "INSERT INTO Objects (DisplayOrder, Category, ObjectNum, Name, Type, "
                "Constellation, Magnitude, Info, RAHour, RAMinute, DecSign, DecDeg, DecMinute) "
                "SELECT rowid, Category, ObjectNum, Name, Type, Constellation, Magnitude, Info, "
                "RAHour, RAMinute, DecSign, DecDeg, DecMinute FROM cat.NGCObjects "
                "UNION ALL SELECT rowid + 100000, Category, ObjectNum, Name, Type, Constellation, "
                "Magnitude, Info, RAHour, RAMinute, DecSign, DecDeg, DecMinute FROM cat.ICObjects "
                "LIMIT %1")
                .arg(kObjects));
  }
  const QString title = QStringLiteral("big");
  const double csvExport =
      best([&] { ExportList(ExportKind::Csv, list, title, TourFolders{}); });
  const double tourExport =
      best([&] { ExportList(ExportKind::Tour, list, title, TourFolders{}); });
  const double readFloor = best([&] { readRows(list, kObjects); });

  const QString csv = dir.filePath(QStringLiteral("big.csv"));
  const QString target = dir.filePath(QStringLiteral("target.tlf"));
  bool imported = true;
  const double csvImport = best(
      [&] {
        imported &= ImportFile(ImportFormat::Csv, csv, true,
                               Database::open(target, Database::Mode::ReadWrite),
                               ImportTarget::CurrentList);
      },
      [&] { freshList(state, target); });
  const double importFloor = best(
      [&] {
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
      [&] { freshList(state, target); });
  Database check(target, Database::Mode::ReadOnly);
  Statement count = check.prepare(QStringLiteral("SELECT COUNT(*) FROM Objects"));
  count.step();
  if (!imported || count.int64Value(0) != kObjects) {
    out << "the import did not store " << kObjects << " rows\n";
    return 1;
  }

  auto line = [&](const char* what, double ms, double target, double floor) {
    out << what << QString::number(ms, 'f', 1) << " ms  (target " << target << " ms: "
        << (ms < target ? "met" : "MISSED") << "; floor " << QString::number(floor, 'f', 1)
        << " ms)\n";
  };
  line("CSV export of 10,000 objects:  ", csvExport, 100, readFloor);
  line("tour export of 10,000 objects: ", tourExport, 100, readFloor);
  line("CSV import of 10,000 rows:     ", csvImport, 500, importFloor);
  out << "(best of 5 runs each; the floors read the same rows plainly)\n";
  return csvExport < 100 && tourExport < 100 && csvImport < 500 ? 0 : 2;
}
