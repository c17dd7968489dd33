#include "fuzzsupport.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

#include "catalog/catalogpages.h"
#include "catalog/database.h"
#include "core/apperror.h"
#include "core/paths.h"
#include "core/settings.h"

void Require(bool holds, const char* property, const QString& detail) {
  if (holds) return;
  std::fprintf(stderr, "\nProperty broken: %s\n%s\n", property, detail.toUtf8().constData());
  std::abort();
}

QString SomeText(FuzzedDataProvider& in, size_t most) {
  const std::string bytes = in.ConsumeRandomLengthString(most);
  return in.ConsumeBool() ? QString::fromLatin1(bytes.data(), int(bytes.size()))
                          : QString::fromUtf8(bytes.data(), int(bytes.size()));
}

void RequireFilterFileInForce(const AppState& state) {
  FilterSettings onDisk;
  try {
    ReadFilterFile(state.filterPath(), onDisk);
  } catch (const AppError& e) {
    Require(false, "Filter.ini reads back without an error", e.text());
  }
  Require(FilterRecord(onDisk) == FilterRecord(state.filter), "Filter.ini holds the filter in force",
          QString::fromLatin1(FilterRecord(state.filter)));
}

void EnsureCoreApplication() {
  if (QCoreApplication::instance()) return;
  static int argc = 1;
  static char name[] = "fuzz";
  static char* argv[] = {name, nullptr};
  new QCoreApplication(argc, argv);
}

namespace {

// Copies the schema of `source` and about `rows` rows of each of its tables into a new
// database at `path`.
std::shared_ptr<Database> copySample(const QString& source, const QString& path, int rows) {
  QFile f(path);
  f.open(QIODevice::WriteOnly);
  f.close();
  auto db = Database::open(path, Database::Mode::ReadWrite);
  db->exec(QStringLiteral("ATTACH DATABASE '%1' AS src")
               .arg(QString(source).replace(QLatin1Char('\''), QStringLiteral("''"))));
  Statement schema = db->prepare(QStringLiteral(
      "SELECT type, name, sql FROM src.sqlite_master WHERE sql IS NOT NULL "
      "ORDER BY type = 'view', type = 'index'"));
  QStringList tables, statements;
  while (schema.step()) {
    statements << schema.value(2).toString();
    if (schema.value(0).toString() == QLatin1String("table")) tables << schema.value(1).toString();
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
                 .arg(q).arg(step).arg(rows));
  }
  batch.commit();
  db->exec(QStringLiteral("DETACH DATABASE src"));
  return db;
}

}  // namespace

SamplePages::SamplePages() {
  EnsureCoreApplication();
  static QTemporaryDir dir(QDir::tempPath() + QStringLiteral("/tavorine-fuzz-XXXXXX"));
  const QString catalog = dir.filePath(QStringLiteral("TavorineList.mdb"));
  copySample(SourceDataFolder() + QStringLiteral("/TavorineList.mdb"), catalog, 60);
  auto user = copySample(SourceDataFolder() + QStringLiteral("/TavorineUserList.tmp"),
                         dir.filePath(QStringLiteral("TavorineUserList.mdb")), 60);
  user->exec(QStringLiteral("ATTACH DATABASE '%1' AS cat").arg(catalog));
  user->exec(QStringLiteral(
      "INSERT INTO UserObjects (Category, ObjectNum, Name, Type, Constellation, Magnitude, Info, "
      "RAHour, RAMinute, DecSign, DecDeg, DecMinute) SELECT Category, ObjectNum, Name, Type, "
      "Constellation, Magnitude, Info, RAHour, RAMinute, DecSign, DecDeg, DecMinute "
      "FROM cat.DeepSpaceObjects"));
  user.reset();
  env.state->programFolder = dir.path();
  env.state->settings.DataDir = dir.path();
  for (int set = 0; set < QuerySet::Count; ++set) {
    const CatalogPage& page = PageByQuerySet(set);
    const bool users = page.source == CatalogPage::Source::UserList;
    db[set] = Database::open(PageDatabasePath(*env.state, page),
                             users ? Database::Mode::ReadWrite : Database::Mode::ReadOnly);
    rs[set] = std::make_unique<Recordset>(db[set], PageRecordSource(*env.state, set));
  }
}
