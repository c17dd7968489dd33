#include "exchange/exchangeobject.h"

#include <QFileInfo>
#include <QStringList>

#include "catalog/database.h"
#include "catalog/recordset.h"
#include "core/numtext.h"

const std::array<ExchangeColumnInfo, ExchangeColumnCount>& ExchangeColumns() {
  static const std::array<ExchangeColumnInfo, ExchangeColumnCount> columns = {{
      {QStringLiteral("Category"), QStringLiteral("Category"), true, false},
      {QStringLiteral("ObjectNum"), QStringLiteral("Object Number"), true, false},
      {QStringLiteral("Name"), QStringLiteral("Name"), true, false},
      {QStringLiteral("Type"), QStringLiteral("Type"), true, false},
      {QStringLiteral("Magnitude"), QStringLiteral("Magnitude"), false, false},
      {QStringLiteral("Constellation"), QStringLiteral("Constellation"), true, false},
      {QStringLiteral("RAHour"), QStringLiteral("RA Hour"), false, true},
      {QStringLiteral("RAMinute"), QStringLiteral("RA Minute"), false, true},
      {QStringLiteral("DecSign"), QStringLiteral("Dec Sign"), true, false},
      {QStringLiteral("DecDeg"), QStringLiteral("Dec Degree"), false, true},
      {QStringLiteral("DecMinute"), QStringLiteral("Dec Arcminute"), false, true},
      {QStringLiteral("Info"), QStringLiteral("Info"), true, false},
  }};
  return columns;
}

int StoreImportedObjects(const std::shared_ptr<Database>& db, ImportTarget target,
                         const std::vector<ImportedObject>& objects) {
  const bool list = target == ImportTarget::CurrentList;
  const QString table = list ? QStringLiteral("Objects") : QStringLiteral("UserObjects");
  Database::Transaction batch(*db);

  // The last row in the list's own order gives the number the new rows count on from.
  qint64 order = 1;
  if (list) {
    Recordset rows(db, table);
    if (rows.RecordCount() > 0) {
      rows.MoveLast();
      order = qint64(Val(rows.text(QStringLiteral("DisplayOrder"))));
    }
  }

  QStringList columns, marks;
  for (const ExchangeColumnInfo& c : ExchangeColumns()) columns << QuoteIdentifier(c.field);
  if (list) columns << QStringLiteral("DisplayOrder");
  for (int i = 1; i <= columns.size(); ++i) marks << QStringLiteral("?%1").arg(i);
  Statement insert =
      db->prepare(QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                      .arg(QuoteIdentifier(table), columns.join(QStringLiteral(", ")),
                           marks.join(QStringLiteral(", "))));
  for (const ImportedObject& object : objects) {
    for (int i = 0; i < ExchangeColumnCount; ++i) insert.bind(i + 1, object[size_t(i)]);
    if (list) {
      order += 1;
      insert.bindInt64(ExchangeColumnCount + 1, qint64(order));
    }
    insert.step();
    insert.reset();
  }
  batch.commit();
  return int(objects.size());
}

QString IncorrectFileFormatText() {
  return QStringLiteral(
      "Incorrect File Format\n"
      "Check the contents of the file and re-read the operating instructions.");
}

QString ImportCompleteText(ImportTarget target) {
  return target == ImportTarget::CurrentList
             ? QStringLiteral("Import to current list is complete.")
             : QStringLiteral("Import to User Supplied List is complete.");
}

QString PathStem(const QString& path) {
  const QFileInfo info(path);
  const QString suffix = info.suffix();
  return suffix.isEmpty() ? path : path.left(path.size() - suffix.size() - 1);
}
