#pragma once

// What the benchmarks start from: the program's state in a temporary folder, on the real
// clock and the system's time zone, and list documents filled with catalog rows.
#include <QFile>
#include <QTemporaryDir>

#include "catalog/catalogpages.h"
#include "catalog/database.h"
#include "catalog/recordset.h"
#include "core/appstate.h"
#include "core/paths.h"
#include "lists/editlistlogic.h"
#include "silentprompter.h"

namespace bench {

struct Setup {
  QTemporaryDir dir;
  SilentPrompter prompter;
  AppState state{prompter};

  Setup() {
    state.programFolder = SourceDataFolder();
    state.configFolder = dir.path();
    state.settings.DataDir = dir.path() + QLatin1Char('/');
  }
};

inline QString freshList(const AppState& state, const QTemporaryDir& dir, const QString& name) {
  const QString path = dir.filePath(name);
  QFile::remove(path);
  QFile::copy(state.templatePath(), path);
  QFile(path).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
  return path;
}

// A new list of the first `rows` rows of a catalog page (by tab), added as the editor adds a
// selection; DisplayOrder then spread out with gaps, as deletes and moves leave it.
inline QString listOfPage(const AppState& state, const QTemporaryDir& dir, const QString& name,
                          int tab, int rows) {
  const QString path = freshList(state, dir, name);
  auto catalog = Database::open(state.catalogPath(), Database::Mode::ReadOnly);
  Recordset page(catalog, PageRecordSource(state, PageByTab(tab).querySet));
  QList<qint64> selection;
  for (int i = 0; i < rows; ++i) selection << page.bookmarkAt(i % page.RecordCount());
  auto doc = Database::open(path, Database::Mode::ReadWrite);
  Recordset list(doc, QStringLiteral("Objects"));
  AddSelectedRows(page, list, selection);
  doc->exec(QStringLiteral("UPDATE Objects SET DisplayOrder = DisplayOrder * 3"));
  return path;
}

// A new list of the first n rows of the NGC and then the IC catalog, copied straight in SQL
// (DisplayOrder from the catalog's row ids).
inline QString catalogRowsList(const AppState& state, const QTemporaryDir& dir, const QString& name,
                               int n) {
  const QString path = freshList(state, dir, name);
  Database db(path, Database::Mode::ReadWrite);
  db.exec(QStringLiteral("ATTACH DATABASE '%1' AS cat").arg(state.catalogPath()));
  db.exec(QStringLiteral(
              "INSERT INTO Objects (DisplayOrder, Category, ObjectNum, Name, Type, "
              "Constellation, Magnitude, Info, RAHour, RAMinute, DecSign, DecDeg, DecMinute) "
              "SELECT rowid, Category, ObjectNum, Name, Type, Constellation, Magnitude, Info, "
              "RAHour, RAMinute, DecSign, DecDeg, DecMinute FROM cat.NGCObjects "
              "UNION ALL SELECT rowid + 100000, Category, ObjectNum, Name, Type, Constellation, "
              "Magnitude, Info, RAHour, RAMinute, DecSign, DecDeg, DecMinute FROM cat.ICObjects "
              "LIMIT %1")
              .arg(n));
  return path;
}

}  // namespace bench
