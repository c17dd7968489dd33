#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "catalog/catalogpages.h"
#include "catalog/database.h"
#include "catalog/queryset.h"
#include "catalog/recordset.h"
#include "core/apperror.h"
#include "core/paths.h"
#include "core/settings.h"
#include "support/testenv.h"

// Stops the run when a property fails, naming it; libFuzzer keeps the input that broke it.
inline void Require(bool holds, const char* property, const QString& detail = QString()) {
  if (holds) return;
  std::fprintf(stderr, "\nProperty broken: %s\n%s\n", property, detail.toUtf8().constData());
  std::abort();
}

// Runs f, which must end without the program's errors.
template <class F>
void RequireNoError(const char* property, F&& f, const QString& detail = QString()) {
  try {
    f();
  } catch (const AppError& e) {
    Require(false, property, e.text() + QLatin1Char('\n') + detail);
  }
}

// File bytes for a message, with the blanks and separators of the formats left readable.
inline QString Shown(const QByteArray& bytes) {
  return QString::fromLatin1(bytes.toPercentEncoding(" ,\"#"));
}

// Up to `most` bytes of the input read as Latin-1 or as UTF-8 (valid code points only).
inline QString SomeText(FuzzedDataProvider& in, size_t most) {
  const std::string bytes = in.ConsumeRandomLengthString(most);
  return in.ConsumeBool() ? QString::fromLatin1(bytes.data(), int(bytes.size()))
                          : QString::fromUtf8(bytes.data(), int(bytes.size()));
}

inline void RequireFilterFileInForce(const AppState& state) {
  FilterSettings onDisk;
  RequireNoError("Filter.ini reads back without an error",
                 [&] { ReadFilterFile(state.filterPath(), onDisk); });
  Require(FilterRecord(onDisk) == FilterRecord(state.filter),
          "Filter.ini holds the filter in force", QString::fromLatin1(FilterRecord(state.filter)));
}

inline void EnsureCoreApplication() {
  if (QCoreApplication::instance()) return;
  static int argc = 1;
  static char name[] = "fuzz";
  static char* argv[] = {name, nullptr};
  new QCoreApplication(argc, argv);
}

// A copy of the database file `source` at `path` that keeps about 60 rows of each table.
inline std::shared_ptr<Database> CopySample(const QString& source, const QString& path) {
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

// The program's state over a copy of the shipped catalog database thinned to about 60 rows of
// each table and a user list filled from its deep-sky rows, with every catalog page's rows
// unfiltered: a query takes microseconds, so a run can make millions.
struct SamplePages {
  TestEnv env;
  std::shared_ptr<Database> db[QuerySet::Count];
  std::unique_ptr<Recordset> rs[QuerySet::Count];

  SamplePages() {
    EnsureCoreApplication();
    static QTemporaryDir dir(QDir::tempPath() + QStringLiteral("/tavorine-fuzz-XXXXXX"));
    const QString catalog = dir.filePath(QStringLiteral("TavorineList.mdb"));
    CopySample(SourceDataFolder() + QStringLiteral("/TavorineList.mdb"), catalog);
    CopySample(SourceDataFolder() + QStringLiteral("/TavorineUserList.tmp"),
               dir.filePath(QStringLiteral("TavorineUserList.mdb")))
        ->exec(
            QStringLiteral(
                "ATTACH DATABASE '%1' AS cat; INSERT INTO UserObjects (Category, ObjectNum, Name, "
                "Type, Constellation, Magnitude, Info, RAHour, RAMinute, DecSign, DecDeg, DecMinute) "
                "SELECT Category, ObjectNum, Name, Type, Constellation, Magnitude, Info, RAHour, "
                "RAMinute, DecSign, DecDeg, DecMinute FROM cat.DeepSpaceObjects")
                .arg(catalog));
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
};
