#pragma once

#include <QFile>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <memory>

#include "catalog/database.h"
#include "catalog/recordset.h"

// Small databases with the shipped schema, made in a test's temporary folder.
namespace fixture {

inline const char* kObjectColumns =
    "Category TEXT COLLATE NOCASE, ObjectNum NUMERIC, Name TEXT COLLATE NOCASE, "
    "Type TEXT COLLATE NOCASE, Constellation TEXT COLLATE NOCASE, "
    "Magnitude TEXT COLLATE NOCASE, Info TEXT COLLATE NOCASE, RAHour REAL, RAMinute REAL, "
    "DecSign TEXT COLLATE NOCASE, DecDeg REAL, DecMinute REAL";

inline const char* kMapStarsColumns =
    "RAHour REAL, RAMinute REAL, DecSign TEXT COLLATE NOCASE, DecDeg REAL, DecMinute REAL, "
    "Magnitude REAL, Alignment INTEGER, AlignmentName TEXT COLLATE NOCASE, autoalignment INTEGER";

// A list document's table as older lists have it: the templates the program ships keep
// ObjectNum as typed.
inline const char* kListColumns =
    "DisplayOrder INTEGER, Goto TEXT COLLATE NOCASE, Category TEXT COLLATE NOCASE, "
    "ObjectNum NUMERIC, Name TEXT COLLATE NOCASE, Type TEXT COLLATE NOCASE, "
    "Constellation TEXT COLLATE NOCASE, Magnitude TEXT COLLATE NOCASE, RAHour REAL, RAMinute REAL, "
    "DecSign TEXT COLLATE NOCASE, DecDeg REAL, DecMinute REAL, Info TEXT COLLATE NOCASE, "
    "Observed TEXT COLLATE NOCASE";

inline const char* kBrightView =
    "CREATE VIEW \"MapStars to 4_5\" AS SELECT RAHour, RAMinute, DecSign, DecDeg, DecMinute, "
    "Magnitude, Alignment, AlignmentName, autoalignment FROM MapStars WHERE Magnitude <= 4.5";

inline const char* kCatalogTables[] = {"MessierObjects",   "CaldwellObjects",  "NGCObjects",
                                       "ICObjects",        "DeepSpaceObjects", "StarObjects",
                                       "DoubleStarObjects"};

// One object row in the order of the twelve common columns.
struct Obj {
  QString category;
  QVariant num;
  QString name, type, constellation, magnitude, info;
  double raHour, raMinute;
  QString decSign;
  double decDeg, decMinute;
};

// A fresh file: opening read-write needs it to exist.
inline std::shared_ptr<Database> create(const QString& path) {
  QFile(path).open(QIODevice::WriteOnly);
  return Database::open(path, Database::Mode::ReadWrite);
}

inline void insert(const Database& db, const QString& table, const Obj& o) {
  Statement st = db.prepare(
      QStringLiteral(
          "INSERT INTO %1 (Category, ObjectNum, Name, Type, Constellation, Magnitude, Info, RAHour, "
          "RAMinute, DecSign, DecDeg, DecMinute) VALUES (?1,?2,?3,?4,?5,?6,?7,?8,?9,?10,?11,?12)")
          .arg(QuoteIdentifier(table)));
  const QVariantList v{o.category, o.num,    o.name,     o.type,    o.constellation, o.magnitude,
                       o.info,     o.raHour, o.raMinute, o.decSign, o.decDeg,        o.decMinute};
  for (int i = 0; i < v.size(); ++i) st.bind(i + 1, v[i]);
  st.step();
}

inline std::shared_ptr<Database> catalog(const QString& path) {
  auto db = create(path);
  for (const char* t : kCatalogTables)
    db->exec(QStringLiteral("CREATE TABLE %1 (%2)").arg(t, kObjectColumns));
  db->exec(QStringLiteral("CREATE TABLE MapStars (%1); %2").arg(kMapStarsColumns, kBrightView));
  return db;
}

inline std::shared_ptr<Database> userList(const QString& path) {
  auto db = create(path);
  db->exec(QStringLiteral("CREATE TABLE UserObjects (%1)").arg(kObjectColumns));
  return db;
}

// A list document with rows of the given DisplayOrder values, names "R<order>".
inline std::shared_ptr<Database> list(const QString& path, const QList<int>& orders = {}) {
  auto db = create(path);
  db->exec(QStringLiteral("CREATE TABLE Objects (%1); CREATE INDEX ObjectsOrder ON Objects "
                          "(DisplayOrder);")
               .arg(kListColumns));
  for (int o : orders)
    db->exec(QStringLiteral("INSERT INTO Objects (DisplayOrder, Category, ObjectNum, Name, "
                            "Magnitude, RAHour, RAMinute, DecSign, DecDeg, DecMinute) VALUES "
                            "(%1, 'NGC', %1, 'R%1', ' ', 1, 0, '+', 10, 0)")
                 .arg(o));
  return db;
}

inline QStringList column(Recordset& rs, const QString& name) {
  QStringList out;
  if (rs.RecordCount() == 0) return out;
  for (rs.MoveFirst(); !rs.isEOF(); rs.MoveNext()) out << rs.text(name);
  return out;
}

}  // namespace fixture
