#include "fuzzsupport.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

#include "catalog/catalogpages.h"
#include "catalog/database.h"
#include "core/paths.h"
#include "core/settings.h"

void Require(bool holds, const char* property, const QString& detail) {
  if (holds) return;
  std::fprintf(stderr, "\nProperty broken: %s\n%s\n", property, detail.toUtf8().constData());
  std::abort();
}

QString Shown(const QByteArray& bytes) {
  return QString::fromLatin1(bytes.toPercentEncoding(" ,\"#"));
}

QString SomeText(FuzzedDataProvider& in, size_t most) {
  const std::string bytes = in.ConsumeRandomLengthString(most);
  return in.ConsumeBool() ? QString::fromLatin1(bytes.data(), int(bytes.size()))
                          : QString::fromUtf8(bytes.data(), int(bytes.size()));
}

void RequireFilterFileInForce(const AppState& state) {
  FilterSettings onDisk;
  RequireNoError("Filter.ini reads back without an error",
                 [&] { ReadFilterFile(state.filterPath(), onDisk); });
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

// A copy of the database file `source` at `path` that keeps about 60 rows of each table.
std::shared_ptr<Database> copySample(const QString& source, const QString& path) {
  QFile::copy(source, path);
  QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
  auto db = Database::open(path, Database::Mode::ReadWrite);
  QStringList names;
  auto tables = db->prepare(QStringLiteral("SELECT name FROM sqlite_master WHERE type='table'"));
  while (tables.step()) names << QuoteIdentifier(tables.value(0).toString());
  tables.reset();
  for (const QString& t : names)
    db->exec(QStringLiteral("DELETE FROM %1 WHERE rowid NOT IN (SELECT rowid FROM %1 WHERE rowid %"
                            " max(1, (SELECT count(*) FROM %1) / 60) = 0 LIMIT 60)")
                 .arg(t));
  return db;
}

}  // namespace

SamplePages::SamplePages() {
  EnsureCoreApplication();
  static QTemporaryDir dir(QDir::tempPath() + QStringLiteral("/tavorine-fuzz-XXXXXX"));
  const QString catalog = dir.filePath(QStringLiteral("TavorineList.mdb"));
  copySample(SourceDataFolder() + QStringLiteral("/TavorineList.mdb"), catalog);
  auto user = copySample(SourceDataFolder() + QStringLiteral("/TavorineUserList.tmp"),
                         dir.filePath(QStringLiteral("TavorineUserList.mdb")));
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
