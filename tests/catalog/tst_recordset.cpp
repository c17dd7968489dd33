#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include "catalog/database.h"
#include "catalog/recordset.h"
#include "core/apperror.h"
#include "core/paths.h"
#include "fixturedb.h"

namespace {

int errorOf(const std::function<void()>& f) {
  try {
    f();
  } catch (const AppError& e) {
    return e.number;
  }
  return 0;
}

QStringList column(Recordset& rs, const QString& name) {
  QStringList out;
  if (rs.RecordCount() == 0) return out;
  for (rs.MoveFirst(); !rs.isEOF(); rs.MoveNext()) out << rs.text(name);
  return out;
}
QStringList names(Recordset& rs) { return column(rs, QStringLiteral("Name")); }
QStringList orders(Recordset& rs) { return column(rs, QStringLiteral("DisplayOrder")); }

}  // namespace

class TestRecordset : public QObject {
  Q_OBJECT

  QTemporaryDir dir_;
  int n_ = 0;
  QString fresh() { return dir_.filePath(QStringLiteral("f%1.tlf").arg(++n_)); }

 private slots:
  void emptyRecordset() {
    auto db = fixture::list(fresh());
    Recordset rs(db, QStringLiteral("Objects"));
    QVERIFY(rs.isBOF());
    QVERIFY(rs.isEOF());
    QCOMPARE(rs.RecordCount(), 0);
    QCOMPARE(rs.AbsolutePosition(), -1);
    QCOMPARE(errorOf([&] { rs.MoveFirst(); }), ErrNo::NoCurrentRecord);
    QCOMPARE(errorOf([&] { rs.MoveLast(); }), ErrNo::NoCurrentRecord);
    QCOMPARE(errorOf([&] { rs.MoveNext(); }), ErrNo::NoCurrentRecord);
    QCOMPARE(errorOf([&] { rs.MovePrevious(); }), ErrNo::NoCurrentRecord);
    QCOMPARE(errorOf([&] { rs.value(0); }), ErrNo::NoCurrentRecord);
    rs.FindFirst(QStringLiteral("Name = 'x'"));
    QVERIFY(rs.NoMatch());
  }

  void tableOpensInDisplayOrderThenRowOrder() {
    auto db = fixture::list(fresh(), {5, 1, 3, 3});
    db->exec(QStringLiteral("UPDATE Objects SET Name = 'second 3' WHERE rowid = 4"));
    Recordset rs(db, QStringLiteral("Objects"));
    QCOMPARE(rs.columnNames().first(), QStringLiteral("DisplayOrder"));
    QCOMPARE(rs.columnNames().size(), 15);
    QCOMPARE(names(rs), QStringList({"R1", "R3", "second 3", "R5"}));
  }

  void movesAtBothEnds() {
    auto db = fixture::list(fresh(), {1, 2, 3});
    Recordset rs(db, QStringLiteral("Objects"));
    QCOMPARE(rs.AbsolutePosition(), 0);
    QVERIFY(!rs.isBOF());
    rs.MovePrevious();
    QVERIFY(rs.isBOF());
    QVERIFY(!rs.isEOF());
    QCOMPARE(rs.AbsolutePosition(), -1);
    QCOMPARE(errorOf([&] { rs.MovePrevious(); }), ErrNo::NoCurrentRecord);
    QCOMPARE(errorOf([&] { rs.value(0); }), ErrNo::NoCurrentRecord);
    rs.MoveNext();
    QCOMPARE(rs.text(QStringLiteral("Name")), QStringLiteral("R1"));
    rs.MoveLast();
    QCOMPARE(rs.AbsolutePosition(), 2);
    rs.MoveNext();
    QVERIFY(rs.isEOF());
    QCOMPARE(errorOf([&] { rs.MoveNext(); }), ErrNo::NoCurrentRecord);
    rs.MovePrevious();
    QCOMPARE(rs.text(QStringLiteral("Name")), QStringLiteral("R3"));
  }

  void moveIsRelative_data() {
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("position");  // -1 BOF, 5 EOF
    QTest::newRow("forward") << 0 << 3 << 3;
    QTest::newRow("back") << 4 << -2 << 2;
    QTest::newRow("past the end") << 2 << 9 << 5;
    QTest::newRow("before the start") << 2 << -9 << -1;
    QTest::newRow("zero") << 3 << 0 << 3;
  }
  void moveIsRelative() {
    QFETCH(int, from);
    QFETCH(int, rows);
    QFETCH(int, position);
    auto db = fixture::list(fresh(), {1, 2, 3, 4, 5});
    Recordset rs(db, QStringLiteral("Objects"));
    rs.setAbsolutePosition(from);
    rs.Move(rows);
    if (position < 0) QVERIFY(rs.isBOF());
    else if (position >= 5) QVERIFY(rs.isEOF());
    else QCOMPARE(rs.AbsolutePosition(), position);
  }

  void finds() {
    auto db = fixture::list(fresh(), {1, 2, 3, 4});
    db->exec(QStringLiteral("UPDATE Objects SET Name = 'Andromeda' WHERE DisplayOrder IN (2, 4)"));
    Recordset rs(db, QStringLiteral("Objects"));
    const QString c = QStringLiteral("name Like '*ANDR*'");
    rs.FindFirst(c);
    QVERIFY(!rs.NoMatch());
    QCOMPARE(rs.AbsolutePosition(), 1);
    rs.FindNext(c);
    QCOMPARE(rs.AbsolutePosition(), 3);
    rs.FindNext(c);
    QVERIFY(rs.NoMatch());
    QCOMPARE(rs.AbsolutePosition(), 3);  // a failed find keeps the row
    rs.FindPrevious(c);
    QCOMPARE(rs.AbsolutePosition(), 1);
    rs.FindPrevious(c);
    QVERIFY(rs.NoMatch());
    QCOMPARE(rs.AbsolutePosition(), 1);
    rs.FindLast(QStringLiteral("trim(DisplayOrder) = '3'"));
    QCOMPARE(rs.AbsolutePosition(), 2);
    QCOMPARE(errorOf([&] { rs.FindFirst(QStringLiteral("name = 'it's'")); }), ErrNo::Database);
    QCOMPARE(rs.AbsolutePosition(), 2);
  }

  void addNewAppendsAndWritesToTheFile() {
    const QString path = fresh();
    auto db = fixture::list(path, {1, 4, 5});
    Recordset rs(db, QStringLiteral("Objects"));
    QSignalSpy inserted(&rs, &Recordset::rowsInserted);
    rs.MoveLast();
    const int next = int(rs.value(QStringLiteral("DisplayOrder")).toLongLong()) + 1;
    rs.AddNew();
    QCOMPARE(inserted.count(), 1);
    QCOMPARE(rs.displayRowCount(), 4);
    QCOMPARE(rs.currentRow(), 3);
    rs.setValue(QStringLiteral("Name"), QStringLiteral("New"));
    rs.setValue(QStringLiteral("DisplayOrder"), QString::number(next));
    QCOMPARE(rs.text(QStringLiteral("DisplayOrder")), QStringLiteral("6"));
    // A second AddNew writes the first.
    rs.AddNew();
    rs.setValue(QStringLiteral("Name"), QStringLiteral("Newer"));
    rs.setValue(QStringLiteral("DisplayOrder"), 0);
    rs.MoveLast();  // writes it, and stands on it
    QCOMPARE(rs.text(QStringLiteral("Name")), QStringLiteral("Newer"));
    QCOMPARE(rs.RecordCount(), 5);
    QCOMPARE(orders(rs), QStringList({"1", "4", "5", "6", "0"}));  // appended until a requery
    auto other = Database::open(path, Database::Mode::ReadOnly);
    Recordset seen(other, QStringLiteral("Objects"));
    QCOMPARE(names(seen), QStringList({"Newer", "R1", "R4", "R5", "New"}));
    QCOMPARE(errorOf([&] { seen.text(QStringLiteral("DisplayOrder")); }), ErrNo::NoCurrentRecord);
  }

  void cancelUpdateWritesNothing() {
    auto db = fixture::list(fresh(), {1});
    Recordset rs(db, QStringLiteral("Objects"));
    rs.AddNew();
    rs.setValue(QStringLiteral("Name"), QStringLiteral("Gone"));
    rs.CancelUpdate();
    QCOMPARE(rs.displayRowCount(), 1);
    QCOMPARE(rs.text(QStringLiteral("Name")), QStringLiteral("R1"));
    rs.setValue(QStringLiteral("Name"), QStringLiteral("Changed"));
    rs.CancelUpdate();
    rs.Requery();
    QCOMPARE(names(rs), QStringList({"R1"}));
  }

  void pendingEditIsWrittenByTheNextMove() {
    const QString path = fresh();
    auto db = fixture::list(path, {1, 2});
    {
      Recordset rs(db, QStringLiteral("Objects"));
      rs.setValue(QStringLiteral("Observed"), QStringLiteral("Y"));  // starts an Edit itself
      QCOMPARE(rs.editMode(), Recordset::EditMode::Edit);
      rs.MoveNext();
      QCOMPARE(rs.editMode(), Recordset::EditMode::None);
      rs.Edit();
      rs.setValue(QStringLiteral("Goto"), QStringLiteral("Y"));
      rs.Update();
      QCOMPARE(rs.text(QStringLiteral("Goto")), QStringLiteral("Y"));
      rs.MoveFirst();
      rs.setValue(QStringLiteral("Name"), QStringLiteral("left pending"));
    }  // closing writes a pending change too
    Recordset rs(db, QStringLiteral("SELECT Name, Goto, Observed FROM Objects ORDER BY DisplayOrder;"));
    QCOMPARE(rs.text(QStringLiteral("Observed")), QStringLiteral("Y"));
    QCOMPARE(rs.text(QStringLiteral("Name")), QStringLiteral("left pending"));
    rs.MoveNext();
    QCOMPARE(rs.text(QStringLiteral("Goto")), QStringLiteral("Y"));
  }

  void deleteThenMoveNext_data() {
    QTest::addColumn<int>("at");
    QTest::addColumn<QString>("after");  // the row after MoveNext, or "EOF"
    QTest::newRow("first") << 0 << "R2";
    QTest::newRow("middle") << 1 << "R3";
    QTest::newRow("last") << 2 << "EOF";
  }
  void deleteThenMoveNext() {
    QFETCH(int, at);
    QFETCH(QString, after);
    auto db = fixture::list(fresh(), {1, 2, 3});
    Recordset rs(db, QStringLiteral("Objects"));
    rs.setAbsolutePosition(at);
    rs.Delete();
    QCOMPARE(rs.RecordCount(), 2);
    QVERIFY(!rs.isEOF());
    QCOMPARE(errorOf([&] { rs.value(0); }), ErrNo::NoCurrentRecord);
    rs.MoveNext();
    if (after == QLatin1String("EOF")) {
      QVERIFY(rs.isEOF());
      rs.MoveLast();
      QCOMPARE(rs.text(QStringLiteral("Name")), QStringLiteral("R2"));
    } else {
      QCOMPARE(rs.text(QStringLiteral("Name")), after);
    }
  }

  void deleteLeavesGapsAndTheNextAddFollowsTheLast() {
    auto db = fixture::list(fresh(), {1, 2, 3, 4, 5});
    Recordset rs(db, QStringLiteral("Objects"));
    rs.setAbsolutePosition(1);
    rs.Delete();
    rs.MoveNext();
    rs.Delete();
    rs.MoveLast();
    const qint64 next = rs.value(QStringLiteral("DisplayOrder")).toLongLong() + 1;
    rs.AddNew();
    rs.setValue(QStringLiteral("DisplayOrder"), next);
    rs.Requery();
    QCOMPARE(orders(rs), QStringList({"1", "4", "5", "6"}));
  }

  void deleteOnlyRowLeavesAnEmptySet() {
    auto db = fixture::list(fresh(), {1});
    Recordset rs(db, QStringLiteral("Objects"));
    rs.Delete();
    rs.MoveNext();
    QVERIFY(rs.isEOF() && rs.isBOF());
    QCOMPARE(rs.RecordCount(), 0);
  }

  // Moving a row down writes one row before the other: for a moment two rows share a value.
  void swapThroughEqualValuesThenRequery() {
    auto db = fixture::list(fresh(), {10, 20, 30});
    Recordset rs(db, QStringLiteral("Objects"));
    const QString first = rs.text(QStringLiteral("DisplayOrder"));
    rs.MoveNext();
    const QString second = rs.text(QStringLiteral("DisplayOrder"));
    rs.setValue(QStringLiteral("DisplayOrder"), first);
    rs.MovePrevious();  // writes: two rows hold 10 now
    rs.setValue(QStringLiteral("DisplayOrder"), second);
    rs.MoveNext();
    const int p = rs.AbsolutePosition();
    rs.Requery();
    QCOMPARE(rs.AbsolutePosition(), 0);
    rs.Move(p);
    QCOMPARE(rs.text(QStringLiteral("Name")), QStringLiteral("R10"));
    QCOMPARE(names(rs), QStringList({"R20", "R10", "R30"}));
  }

  void bookmarks() {
    auto db = fixture::list(fresh(), {1, 2, 3});
    Recordset rs(db, QStringLiteral("Objects"));
    rs.MoveLast();
    const qint64 b = rs.Bookmark();
    rs.MoveFirst();
    rs.setBookmark(b);
    QCOMPARE(rs.text(QStringLiteral("Name")), QStringLiteral("R3"));
    QCOMPARE(errorOf([&] { rs.setBookmark(999); }), ErrNo::Database);
  }

  void querySourceOverOneTable() {
    auto db = fixture::catalog(fresh());
    for (int i = 1; i <= 3; ++i)
      fixture::insert(*db, QStringLiteral("MessierObjects"),
                      {"Messier", i, QStringLiteral("M%1").arg(i), "Galaxy", "And", "5", "", 1, 0, "+", 1, 0});
    Recordset rs(db, QStringLiteral(
        "SELECT ObjectNum, Name From MessierObjects WHERE True ORDER BY ObjectNum DESC;"));
    QCOMPARE(rs.columnNames(), QStringList({"ObjectNum", "Name"}));
    QCOMPARE(names(rs), QStringList({"M3", "M2", "M1"}));
    QCOMPARE(errorOf([&] { rs.value(0); }), ErrNo::NoCurrentRecord);
  }

  // The number of a list row or a user object stays as typed and still sorts as a number;
  // an old list whose column is numeric opens and sorts as before.
  void objectNumKeptAsTyped_data() {
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("table");
    QTest::newRow("list template") << "TavorineTemplate.tmp" << "Objects";
    QTest::newRow("user table") << "TavorineUserList.tmp" << "UserObjects";
    QTest::newRow("old list") << "" << "Objects";
  }
  void objectNumKeptAsTyped() {
    QFETCH(QString, file);
    QFETCH(QString, table);
    const QString path = fresh();
    std::shared_ptr<Database> db;
    if (file.isEmpty()) {
      db = fixture::list(path, {});
    } else {
      QVERIFY(QFile::copy(SourceDataFolder() + QLatin1Char('/') + file, path));
      QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
      db = Database::open(path, Database::Mode::ReadWrite);
    }
    const QStringList typed = {"        12", "0012", "1.50", "1e3", "2", "PK 064+05.1", "12A", "m31"};
    {
      Recordset rs(db, table);
      for (const QString& t : typed) {
        rs.AddNew();
        rs.setValue(QStringLiteral("ObjectNum"), t);
        rs.Update();
      }
    }
    Recordset sorted(db, QStringLiteral("SELECT ObjectNum FROM %1 ORDER BY ObjectNum").arg(table));
    if (file.isEmpty()) {
      QCOMPARE(column(sorted, "ObjectNum"),
               QStringList({"1.5", "2", "12", "12", "1000", "12A", "PK 064+05.1", "m31"}));
      return;
    }
    QCOMPARE(column(sorted, "ObjectNum"),
             QStringList({"1e3", "1.50", "2", "0012", "        12", "12A", "m31", "PK 064+05.1"}));
    Recordset found(db, QStringLiteral("SELECT ObjectNum FROM %1 WHERE trim(ObjectNum) = '12'").arg(table));
    QCOMPARE(column(found, "ObjectNum"), QStringList({"        12"}));
  }

  void catalogsAreReadOnly() {
    const QString path = fresh();
    fixture::catalog(path);
    auto db = Database::open(path, Database::Mode::ReadOnly);
    Recordset rs(db, QStringLiteral("MessierObjects"));
    QVERIFY(!rs.isUpdatable());
    QCOMPARE(errorOf([&] { rs.AddNew(); }), ErrNo::Database);
  }

  void viewIsReadWhole() {
    auto db = fixture::catalog(fresh());
    db->exec(QStringLiteral("INSERT INTO MapStars (Magnitude, AlignmentName) VALUES "
                            "(1.0, 'Vega'), (5.0, ''), (4.5, 'Mirfak')"));
    Recordset rs(db, QStringLiteral("MapStars to 4_5"));
    QCOMPARE(rs.RecordCount(), 2);
    rs.FindFirst(QStringLiteral("AlignmentName = 'mirfak'"));
    QVERIFY(!rs.NoMatch());
    QCOMPARE(rs.text(QStringLiteral("Magnitude")), QStringLiteral("4.5"));
    QVERIFY(!rs.isUpdatable());
    Recordset table(db, QStringLiteral("MapStars"));
    QCOMPARE(table.RecordCount(), 3);
  }

  void badSources_data() {
    QTest::addColumn<QString>("source");
    QTest::newRow("no such table") << "NoSuchTable";
    QTest::newRow("no such column") << "SELECT Nope From Objects";
    QTest::newRow("broken text") << "SELECT Name From Objects WHERE Name = 'x";
  }
  void badSources() {
    QFETCH(QString, source);
    auto db = fixture::list(fresh());
    QCOMPARE(errorOf([&] { Recordset rs(db, source); }), ErrNo::Database);
  }

  // A list window and the editor hold the same document open; each writes while the other
  // keeps its recordset.
  void twoConnectionsOnOneDocument() {
    const QString path = fresh();
    auto windowDb = fixture::list(path, {1, 2});
    Recordset window(windowDb, QStringLiteral(
        "SELECT DisplayOrder, Goto, Observed, Name From Objects ORDER BY DisplayOrder"));
    window.MoveLast();
    auto editorDb = Database::open(path, Database::Mode::ReadWrite);
    {
      Recordset editor(editorDb, QStringLiteral("Objects"));
      editor.MoveLast();
      editor.AddNew();
      editor.setValue(QStringLiteral("DisplayOrder"), 3);
      editor.setValue(QStringLiteral("Name"), QStringLiteral("R3"));
      editor.MoveLast();
      window.setValue(QStringLiteral("Observed"), QStringLiteral("Y"));
      window.MoveFirst();
      editor.MoveFirst();
      editor.Delete();
    }
    window.Requery();
    QCOMPARE(names(window), QStringList({"R2", "R3"}));
    window.MoveFirst();
    QCOMPARE(window.text(QStringLiteral("Observed")), QStringLiteral("Y"));
  }

  void bigTableOpensByIds() {
    auto db = fixture::catalog(fresh());
    db->exec(QStringLiteral(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 20000) "
        "INSERT INTO StarObjects (ObjectNum, Name, Magnitude) SELECT i, 'S' || i, '9' FROM n"));
    Recordset rs(db, QStringLiteral("SELECT ObjectNum, Name From StarObjects WHERE True ORDER BY ObjectNum;"));
    QCOMPARE(rs.RecordCount(), 20000);
    rs.MoveLast();
    QCOMPARE(rs.text(QStringLiteral("Name")), QStringLiteral("S20000"));
    rs.FindPrevious(QStringLiteral("trim(objectnum) = '5'"));
    QCOMPARE(rs.AbsolutePosition(), 4);
  }
};

QTEST_GUILESS_MAIN(TestRecordset)
#include "tst_recordset.moc"
