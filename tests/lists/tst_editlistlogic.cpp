#include <QtTest>

#include "catalog/database.h"
#include "catalog/fixturedb.h"
#include "catalog/recordset.h"
#include "lists/autosort.h"
#include "lists/editlistlogic.h"
#include "support/testenv.h"

namespace {

using fixture::Obj;

QList<int> orders(Database& db) {
  QList<int> out;
  Statement st = db.prepare(QStringLiteral("SELECT DisplayOrder FROM Objects ORDER BY DisplayOrder, rowid"));
  while (st.step()) out << int(st.int64Value(0));
  return out;
}

QStringList names(Database& db) {
  QStringList out;
  Statement st = db.prepare(QStringLiteral("SELECT Name FROM Objects ORDER BY DisplayOrder, rowid"));
  while (st.step()) out << st.value(0).toString();
  return out;
}

}  // namespace

class TestEditListLogic : public QObject {
  Q_OBJECT
 private slots:
  void init();
  void caption_data();
  void caption();
  void addNumbering_data();
  void addNumbering();
  void addCopiesWithFallbacks();
  void addSelectionInOrder();
  void addFromEmptyPage();
  void deleteKeepsGaps_data();
  void deleteKeepsGaps();
  void moves_data();
  void moves();
  void autoSortTour();
  void autoSortDependsOnUserDate();
  void autoSortSingleAndEmpty();
  void transactionCommitsOrRollsBack();

 private:
  std::unique_ptr<TestEnv> env;
  std::shared_ptr<Database> catalog;
};

void TestEditListLogic::init() {
  env = std::make_unique<TestEnv>();
  catalog = fixture::catalog(env->path("catalog.mdb"));
  fixture::insert(*catalog, "MessierObjects",
                  {"Messier", 31, "Andromeda Galaxy", "Galaxy", "Andromeda", "3.4", "Local Group",
                   0, 42.7, "+", 41, 16});
  fixture::insert(*catalog, "MessierObjects",
                  {"Messier", 42, "Orion Nebula", "Nebula", "Orion", "4", "", 5, 35.3, "-", 5,
                   23});
  fixture::insert(*catalog, "MessierObjects",
                  {"Messier", 45, "Pleiades", "Open Cluster", "Taurus", "1.6", "Seven sisters", 3,
                   47, "+", 24, 7});
  // A row with holes: the fallbacks fill them.
  catalog->exec(QStringLiteral(
      "INSERT INTO MessierObjects (Category, ObjectNum, Name) VALUES ('Messier', 99, '')"));
}

void TestEditListLogic::caption_data() {
  QTest::addColumn<QString>("window");
  QTest::addColumn<QString>("editor");
  QTest::newRow("title kept") << "Objects - Autumn galaxies" << "Edit - Autumn galaxies";
  QTest::newRow("blanks trimmed") << "Objects -   Spaced  " << "Edit - Spaced";
  QTest::newRow("too short") << "Objects" << "Edit - ";
}

void TestEditListLogic::caption() {
  QFETCH(QString, window);
  QFETCH(QString, editor);
  QCOMPARE(EditListCaption(window), editor);
}

// Start from a list, delete the rows named by position (0-based, in this order), then add the
// page's first row a number of times: the DisplayOrder values that result.
void TestEditListLogic::addNumbering_data() {
  QTest::addColumn<QList<int>>("start");
  QTest::addColumn<QList<int>>("deleteAt");
  QTest::addColumn<int>("adds");
  QTest::addColumn<QList<int>>("result");
  QTest::newRow("first add") << QList<int>{} << QList<int>{} << 1 << QList<int>{1};
  QTest::newRow("after the last was deleted") << QList<int>{1, 2, 3} << QList<int>{2} << 1
                                              << QList<int>{1, 2, 3};
  QTest::newRow("after the first was deleted") << QList<int>{1, 2, 3} << QList<int>{0} << 1
                                               << QList<int>{2, 3, 4};
  QTest::newRow("middle rows deleted") << QList<int>{1, 2, 3, 4, 5} << QList<int>{1, 1} << 1
                                       << QList<int>{1, 4, 5, 6};
  QTest::newRow("same object twice") << QList<int>{7} << QList<int>{} << 2
                                     << QList<int>{7, 8, 9};
}

void TestEditListLogic::addNumbering() {
  QFETCH(QList<int>, start);
  QFETCH(QList<int>, deleteAt);
  QFETCH(int, adds);
  QFETCH(QList<int>, result);
  auto db = fixture::list(env->path("l.tlf"), start);
  Recordset list(db, "Objects");
  for (int at : deleteAt) {
    list.setAbsolutePosition(at);
    DeleteListRow(list);
  }
  Recordset page(catalog, "SELECT * From MessierObjects WHERE True ORDER BY ObjectNum;");
  for (int i = 0; i < adds; ++i) QCOMPARE(AddSelectedRows(page, list, {}), 1);
  QCOMPARE(orders(*db), result);
  QCOMPARE(list.AbsolutePosition(), list.RecordCount() - 1);
  if (adds == 2) QCOMPARE(names(*db).mid(1), (QStringList{"Andromeda Galaxy", "Andromeda Galaxy"}));
}

void TestEditListLogic::addCopiesWithFallbacks() {
  auto db = fixture::list(env->path("l.tlf"));
  Recordset list(db, "Objects");
  Recordset page(catalog, "SELECT * From MessierObjects WHERE True ORDER BY ObjectNum;");
  page.MoveLast();  // M99, the row with holes
  AddSelectedRows(page, list, {});
  page.MovePrevious();  // M45
  AddSelectedRows(page, list, {});
  Statement st = db->prepare(QStringLiteral(
      "SELECT DisplayOrder, Goto, Observed, Category, ObjectNum, Name, Type, Constellation, "
      "Magnitude, Info, typeof(RAHour), RAHour, RAMinute, DecSign, DecDeg, DecMinute "
      "FROM Objects ORDER BY DisplayOrder"));
  QVERIFY(st.step());
  QCOMPARE(st.value(0).toInt(), 1);
  QVERIFY(st.isNull(1));
  QVERIFY(st.isNull(2));
  QCOMPARE(st.value(3).toString(), QStringLiteral("Messier"));
  QCOMPARE(st.value(4).toInt(), 99);
  for (int c = 5; c <= 9; ++c) QCOMPARE(st.value(c).toString(), QStringLiteral(" "));
  QCOMPARE(st.value(10).toString(), QStringLiteral("real"));
  QCOMPARE(st.value(11).toDouble(), 0.0);
  QCOMPARE(st.value(13).toString(), QStringLiteral("+"));
  QVERIFY(st.step());
  QCOMPARE(st.value(0).toInt(), 2);
  QCOMPARE(st.value(5).toString(), QStringLiteral("Pleiades"));
  QCOMPARE(st.value(8).toString(), QStringLiteral("1.6"));
  QCOMPARE(st.value(9).toString(), QStringLiteral("Seven sisters"));
  QCOMPARE(st.value(12).toDouble(), 47.0);
  QCOMPARE(st.value(14).toDouble(), 24.0);
  QVERIFY(!st.step());
}

void TestEditListLogic::addSelectionInOrder() {
  auto db = fixture::list(env->path("l.tlf"), {1, 2});
  Recordset list(db, "Objects");
  list.MoveFirst();
  Recordset page(catalog, "SELECT * From MessierObjects WHERE True ORDER BY ObjectNum;");
  // Selected as M45, M31, M42; the page's current row (M99) is not part of it.
  const QList<qint64> selection = {page.bookmarkAt(2), page.bookmarkAt(0), page.bookmarkAt(1)};
  page.MoveLast();
  QCOMPARE(AddSelectedRows(page, list, selection), 3);
  QCOMPARE(names(*db), (QStringList{"R1", "R2", "Pleiades", "Andromeda Galaxy", "Orion Nebula"}));
  QCOMPARE(orders(*db), (QList<int>{1, 2, 3, 4, 5}));
  QCOMPARE(list.editMode(), Recordset::EditMode::None);
  QCOMPARE(list.AbsolutePosition(), 4);
  QCOMPARE(list.text("Name"), QStringLiteral("Orion Nebula"));
  QVERIFY(!db->inTransaction());
}

void TestEditListLogic::addFromEmptyPage() {
  auto db = fixture::list(env->path("l.tlf"), {1});
  Recordset list(db, "Objects");
  Recordset page(catalog, "SELECT * From MessierObjects WHERE False ORDER BY ObjectNum;");
  QCOMPARE(AddSelectedRows(page, list, {}), 0);
  QCOMPARE(orders(*db), QList<int>{1});
}

void TestEditListLogic::deleteKeepsGaps_data() {
  QTest::addColumn<int>("at");
  QTest::addColumn<QList<int>>("left");
  QTest::addColumn<QString>("current");
  QTest::newRow("middle: the next row") << 1 << QList<int>{1, 5} << "R5";
  QTest::newRow("last: the new last") << 2 << QList<int>{1, 2} << "R2";
  QTest::newRow("first") << 0 << QList<int>{2, 5} << "R2";
}

void TestEditListLogic::deleteKeepsGaps() {
  QFETCH(int, at);
  QFETCH(QList<int>, left);
  QFETCH(QString, current);
  auto db = fixture::list(env->path("l.tlf"), {1, 2, 5});
  Recordset list(db, "Objects");
  list.setAbsolutePosition(at);
  DeleteListRow(list);
  QCOMPARE(orders(*db), left);
  QCOMPARE(list.text("Name"), current);

  auto single = fixture::list(env->path("s.tlf"), {4});
  Recordset one(single, "Objects");
  DeleteListRow(one);
  QCOMPARE(one.RecordCount(), 0);
  DeleteListRow(one);  // nothing left: nothing happens
}

void TestEditListLogic::moves_data() {
  QTest::addColumn<int>("at");
  QTest::addColumn<bool>("down");
  QTest::addColumn<bool>("swapped");
  QTest::addColumn<QStringList>("order");
  QTest::addColumn<QList<int>>("values");
  QTest::addColumn<int>("position");
  const QStringList same = {"R1", "R2", "R5"};
  QTest::newRow("down from the first") << 0 << true << true << QStringList{"R2", "R1", "R5"}
                                       << QList<int>{1, 2, 5} << 1;
  QTest::newRow("down across the gap") << 1 << true << true << QStringList{"R1", "R5", "R2"}
                                       << QList<int>{1, 2, 5} << 2;
  QTest::newRow("up from the last") << 2 << false << true << QStringList{"R1", "R5", "R2"}
                                    << QList<int>{1, 2, 5} << 1;
  QTest::newRow("down on the last") << 2 << true << false << same << QList<int>{1, 2, 5} << 2;
  QTest::newRow("up on the first") << 0 << false << false << same << QList<int>{1, 2, 5} << 0;
}

void TestEditListLogic::moves() {
  QFETCH(int, at);
  QFETCH(bool, down);
  QFETCH(bool, swapped);
  QFETCH(QStringList, order);
  QFETCH(QList<int>, values);
  QFETCH(int, position);
  auto db = fixture::list(env->path("l.tlf"), {1, 2, 5});
  Recordset list(db, "Objects");
  list.setAbsolutePosition(at);
  const QString moved = list.text("Name");
  QCOMPARE(MoveListRow(list, down ? MoveDirection::Down : MoveDirection::Up), swapped);
  QCOMPARE(names(*db), order);
  QCOMPARE(orders(*db), values);
  QCOMPARE(list.AbsolutePosition(), position);
  QCOMPARE(list.text("Name"), moved);

  auto empty = fixture::list(env->path("e.tlf"));
  Recordset none(empty, "Objects");
  QVERIFY(!MoveListRow(none, MoveDirection::Down));
  QVERIFY(!MoveListRow(none, MoveDirection::Up));
}

namespace {

// A list of objects in known places (RA hours, Dec degrees), in list order with gaps.
std::shared_ptr<Database> skyList(const QString& path) {
  auto db = fixture::list(path);
  struct P {
    const char* name;
    double ra, dec;
    const char* sign;
    int order;
  };
  const P rows[] = {{"Vega", 18.6, 38.8, "+", 3},      {"Pleiades", 3.8, 24.1, "+", 10},
                    {"Andromeda", 0.7, 41.3, "+", 11}, {"Fomalhaut", 22.96, 29.6, "-", 12},
                    {"Polaris", 2.5, 89.3, "+", 20},   {"Betelgeuse", 5.9, 7.4, "+", 21},
                    {"Vega twin", 18.6, 38.8, "+", 22}, {"Deneb", 20.7, 45.3, "+", 30}};
  for (const P& p : rows) {
    Statement st = db->prepare(QStringLiteral(
        "INSERT INTO Objects (DisplayOrder, Name, RAHour, RAMinute, DecSign, DecDeg, DecMinute) "
        "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7)"));
    const double raH = std::floor(p.ra), decD = std::floor(p.dec);
    const QVariantList v{p.order, p.name, raH, (p.ra - raH) * 60, p.sign, decD, (p.dec - decD) * 60};
    for (int i = 0; i < v.size(); ++i) st.bind(i + 1, v[i]);
    st.step();
  }
  return db;
}

}  // namespace

void TestEditListLogic::autoSortTour() {
  AppState& state = *env->state;
  env->fixedOffsetHours = 9;
  state.UserDate = QDateTime(QDate(2026, 11, 21), QTime(21, 0));  // site 26.3 N, 127.7 E
  auto db = skyList(env->path("l.tlf"));
  Recordset list(db, "Objects");
  list.MoveLast();
  AutoSortList(state, list);
  // That evening: from Fomalhaut in the south-west through the west, the high Andromeda,
  // Polaris in the north, then down the eastern sky; identical objects keep their order.
  const QStringList expected{"Fomalhaut", "Vega",     "Vega twin", "Deneb",
                             "Andromeda", "Polaris",  "Pleiades",  "Betelgeuse"};
  QCOMPARE(names(*db), expected);
  QCOMPARE(orders(*db), (QList<int>{1, 2, 3, 4, 5, 6, 7, 8}));
  QCOMPARE(list.AbsolutePosition(), 0);
  AutoSortList(state, list);
  QCOMPARE(names(*db), expected);
  QVERIFY(!db->inTransaction());
}

void TestEditListLogic::autoSortDependsOnUserDate() {
  AppState& state = *env->state;
  auto db = skyList(env->path("l.tlf"));
  Recordset list(db, "Objects");
  state.UserDate = QDateTime(QDate(2026, 11, 21), QTime(21, 0));
  AutoSortList(state, list);
  const QStringList evening = names(*db);
  state.UserDate = QDateTime(QDate(2026, 11, 22), QTime(4, 0));
  AutoSortList(state, list);
  QVERIFY(names(*db) != evening);
  QCOMPARE(orders(*db), (QList<int>{1, 2, 3, 4, 5, 6, 7, 8}));
}

void TestEditListLogic::autoSortSingleAndEmpty() {
  auto db = fixture::list(env->path("l.tlf"), {7});
  Recordset list(db, "Objects");
  AutoSortList(*env->state, list);
  QCOMPARE(orders(*db), QList<int>{1});
  auto empty = fixture::list(env->path("e.tlf"));
  Recordset none(empty, "Objects");
  AutoSortList(*env->state, none);
  QCOMPARE(none.RecordCount(), 0);
}

void TestEditListLogic::transactionCommitsOrRollsBack() {
  auto db = fixture::list(env->path("l.tlf"), {1});
  {
    Database::Transaction t(*db);
    QVERIFY(db->inTransaction());
    db->exec("UPDATE Objects SET DisplayOrder = 9");
    {
      Database::Transaction inner(*db);  // inside an open one: nothing of its own
    }
    QVERIFY(db->inTransaction());
  }
  QVERIFY(!db->inTransaction());
  QCOMPARE(orders(*db), QList<int>{1});
  {
    Database::Transaction t(*db);
    db->exec("UPDATE Objects SET DisplayOrder = 9");
    t.commit();
  }
  QCOMPARE(orders(*db), QList<int>{9});
  // Another connection sees the change: it is on the file.
  auto other = Database::open(env->path("l.tlf"), Database::Mode::ReadOnly);
  QCOMPARE(orders(*other), QList<int>{9});
}


QTEST_GUILESS_MAIN(TestEditListLogic)
#include "tst_editlistlogic.moc"
