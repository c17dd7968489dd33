#include "fuzzsupport.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

#include "catalog/database.h"
#include "core/paths.h"

void Require(bool holds, const char* property, const QString& detail) {
  if (holds) return;
  std::fprintf(stderr, "\nProperty broken: %s\n%s\n", property, detail.toUtf8().constData());
  std::abort();
}

QString FuzzFolder() {
  static QTemporaryDir dir(QDir::tempPath() + QStringLiteral("/tavorine-fuzz-XXXXXX"));
  return dir.path();
}

namespace {

std::shared_ptr<Database> fresh(const QString& path) {
  QFile::remove(path);
  QFile f(path);
  f.open(QIODevice::WriteOnly);
  f.close();
  return Database::open(path, Database::Mode::ReadWrite);
}

// Copies the schema of `source` and about `rows` rows of each of its tables (or of the tables
// named in `only`) into a new database at `path`.
void copySample(const QString& source, const QString& path, int rows, const QString& only = {}) {
  auto db = fresh(path);
  db->exec(QStringLiteral("ATTACH DATABASE %1 AS src")
               .arg(QLatin1Char('\'') + QString(source).replace(QLatin1Char('\''), QStringLiteral("''")) +
                    QLatin1Char('\'')));
  Statement schema = db->prepare(QStringLiteral(
      "SELECT type, name, sql FROM src.sqlite_master WHERE sql IS NOT NULL "
      "ORDER BY type = 'view', type = 'index'"));
  QStringList tables, statements;
  while (schema.step()) {
    const QString name = schema.value(1).toString();
    if (!only.isEmpty() && name != only) continue;
    statements << schema.value(2).toString();
    if (schema.value(0).toString() == QLatin1String("table")) tables << name;
  }
  schema.reset();
  for (const QString& sql : statements) db->exec(sql);
  Database::Transaction batch(*db);
  for (const QString& t : tables) {
    const QString q = QuoteIdentifier(t);
    Statement count = db->prepare(QStringLiteral("SELECT count(*) FROM src.%1").arg(q));
    count.step();
    const qint64 step = std::max<qint64>(1, count.int64Value(0) / rows);
    count.reset();
    db->exec(QStringLiteral("INSERT INTO main.%1 SELECT * FROM src.%1 WHERE rowid % %2 = 0 LIMIT %3")
                 .arg(q)
                 .arg(step)
                 .arg(rows));
  }
  batch.commit();
}

}  // namespace

QString SampleCatalog(int rows) {
  const QString path = FuzzFolder() + QStringLiteral("/TavorineList.mdb");
  if (!QFile::exists(path))
    copySample(SourceDataFolder() + QStringLiteral("/TavorineList.mdb"), path, rows);
  return path;
}

QString SampleUserList(int rows) {
  const QString path = FuzzFolder() + QStringLiteral("/TavorineUserList.mdb");
  if (QFile::exists(path)) return path;
  copySample(SourceDataFolder() + QStringLiteral("/TavorineUserList.tmp"), path, rows);
  auto db = Database::open(path, Database::Mode::ReadWrite);
  db->exec(QStringLiteral("ATTACH DATABASE '%1' AS cat").arg(SampleCatalog(rows)));
  db->exec(QStringLiteral(
      "INSERT INTO UserObjects (Category, ObjectNum, Name, Type, Constellation, Magnitude, Info, "
      "RAHour, RAMinute, DecSign, DecDeg, DecMinute) SELECT Category, ObjectNum, Name, Type, "
      "Constellation, Magnitude, Info, RAHour, RAMinute, DecSign, DecDeg, DecMinute "
      "FROM cat.DeepSpaceObjects"));
  return path;
}

void EnsureCoreApplication() {
  if (QCoreApplication::instance()) return;
  static int argc = 1;
  static char name[] = "fuzz";
  static char* argv[] = {name, nullptr};
  new QCoreApplication(argc, argv);
}
