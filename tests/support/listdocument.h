#pragma once

#include <QFile>
#include <QString>
#include <QVariant>
#include <vector>

#include "catalog/database.h"
#include "core/appstate.h"
#include "sky/skycalc.h"

// A row of a list document as a test writes it.
struct ListRow {
  QString name;
  SkyPosition position;
  QString gotoMark;  // empty: NULL
  QString observed;  // empty: NULL
  QString category = QStringLiteral("Messier");
  int objectNum = 0;
  QString magnitude;
  QString type = QStringLiteral("Galaxy");
  QString constellation = QStringLiteral("And");
  QString info;
};

// A row with its name and place, the rest as above.
inline ListRow NamedRow(const QString& name, const SkyPosition& position) {
  ListRow row;
  row.name = name;
  row.position = position;
  return row;
}

// A list document made from the shipped template, with the rows in DisplayOrder 1..n.
inline void MakeListDocument(const AppState& state, const QString& path,
                             const std::vector<ListRow>& rows) {
  QFile::remove(path);
  QFile::copy(state.templatePath(), path);
  QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
  Database db(path, Database::Mode::ReadWrite);
  int order = 0;
  for (const ListRow& r : rows) {
    Statement st = db.prepare(QStringLiteral(
        "INSERT INTO Objects (DisplayOrder, Goto, Observed, Category, ObjectNum, Name, Type, "
        "Constellation, Magnitude, Info, RAHour, RAMinute, DecSign, DecDeg, DecMinute) "
        "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"));
    ++order;
    auto textOrNull = [](const QString& t) { return t.isEmpty() ? QVariant() : QVariant(t); };
    st.bind(1, order);
    st.bind(2, textOrNull(r.gotoMark));
    st.bind(3, textOrNull(r.observed));
    st.bind(4, r.category);
    st.bind(5, r.objectNum ? r.objectNum : order);
    st.bind(6, r.name);
    st.bind(7, r.type);
    st.bind(8, r.constellation);
    st.bind(9, r.magnitude.isEmpty() ? QString::number(order) : r.magnitude);
    st.bind(10, r.info);
    st.bind(11, r.position.raHours.toDouble());
    st.bind(12, r.position.raMinutes.toDouble());
    st.bind(13, r.position.decSign);
    st.bind(14, r.position.decDegrees.toDouble());
    st.bind(15, r.position.decMinutes.toDouble());
    st.step();
  }
}

// One column of every row of a list document, in DisplayOrder (NULL reads as "<null>").
inline QStringList ListColumn(const QString& path, const QString& column) {
  Database db(path, Database::Mode::ReadOnly);
  Statement st =
      db.prepare(QStringLiteral("SELECT %1 FROM Objects ORDER BY DisplayOrder").arg(column));
  QStringList out;
  while (st.step()) out << (st.isNull(0) ? QStringLiteral("<null>") : st.value(0).toString());
  return out;
}
