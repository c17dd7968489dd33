#include <QtTest>

#include "catalog/database.h"
#include "catalog/fixturedb.h"
#include "catalog/recordset.h"
#include "lists/autosort.h"
#include "lists/editlistlogic.h"
#include "support/testenv.h"

namespace {

// One column (or expression) of every list row in DisplayOrder, joined by `sep`.
QString column(const Database& db, const QString& expr, QChar sep = QLatin1Char(' ')) {
  Statement st = db.prepare(
      QStringLiteral("SELECT %1 FROM Objects ORDER BY DisplayOrder, rowid").arg(expr));
  QStringList out;
  while (st.step()) out << st.value(0).toString();
  return out.join(sep);
}
QString orders(const Database& db) { return column(db, QStringLiteral("DisplayOrder")); }
QString names(const Database& db) { return column(db, QStringLiteral("Name"), QLatin1Char(',')); }

QList<int> ints(const QString& text) {
  QList<int> out;
  for (const QString& n : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) out << n.toInt();
  return out;
}

}  // namespace

class TestEditListLogic : public QObject {
  Q_OBJECT
  std::unique_ptr<TestEnv> env;
  std::shared_ptr<Database> catalog;
  Recordset messier(const char* where = "True") {
    return Recordset(catalog, QStringLiteral("SELECT * From MessierObjects WHERE %1 ORDER BY "
                                             "ObjectNum;").arg(QLatin1String(where)));
  }
  std::shared_ptr<Database> list(const QString& orders = {}) {
    static int n = 0;
    return fixture::list(env->path(QStringLiteral("l%1.tlf").arg(++n)), ints(orders));
  }

 private slots:
  void init() {
    env = std::make_unique<TestEnv>();
    catalog = fixture::catalog(env->path("catalog.mdb"));
    fixture::insert(*catalog, "MessierObjects", {"Messier", 31, "Andromeda Galaxy", "Galaxy",
                                                 "Andromeda", "3.4", "Local Group", 0, 42.7, "+",
                                                 41, 16});
    fixture::insert(*catalog, "MessierObjects", {"Messier", 42, "Orion Nebula", "Nebula", "Orion",
                                                 "4", "", 5, 35.3, "-", 5, 23});
    fixture::insert(*catalog, "MessierObjects", {"Messier", 45, "Pleiades", "Open Cluster",
                                                 "Taurus", "1.6", "Seven sisters", 3, 47, "+", 24,
                                                 7});
    // A row with holes: the fallbacks fill them.
    catalog->exec(QStringLiteral(
        "INSERT INTO MessierObjects (Category, ObjectNum, Name) VALUES ('Messier', 99, '')"));
  }

  void caption_data() {
    QTest::addColumn<QString>("window");
    QTest::addColumn<QString>("editor");
    QTest::newRow("title kept") << "Objects - Autumn galaxies" << "Edit - Autumn galaxies";
    QTest::newRow("blanks trimmed") << "Objects -   Spaced  " << "Edit - Spaced";
    QTest::newRow("too short") << "Objects" << "Edit - ";
  }
  void caption() {
    QFETCH(QString, window);
    QFETCH(QString, editor);
    QCOMPARE(EditListCaption(window), editor);
  }

  // Start from a list, delete the rows named by position (0-based, in this order), then add the
  // page's first row a number of times: the DisplayOrder values that result.
  void addNumbering_data() {
    QTest::addColumn<QString>("start");
    QTest::addColumn<QString>("deleteAt");
    QTest::addColumn<int>("adds");
    QTest::addColumn<QString>("result");
    QTest::newRow("first add") << "" << "" << 1 << "1";
    QTest::newRow("after the last was deleted") << "1 2 3" << "2" << 1 << "1 2 3";
    QTest::newRow("after the first was deleted") << "1 2 3" << "0" << 1 << "2 3 4";
    QTest::newRow("middle rows deleted") << "1 2 3 4 5" << "1 1" << 1 << "1 4 5 6";
    QTest::newRow("same object twice") << "7" << "" << 2 << "7 8 9";
  }
  void addNumbering() {
    QFETCH(QString, start);
    QFETCH(QString, deleteAt);
    QFETCH(int, adds);
    QFETCH(QString, result);
    auto db = list(start);
    Recordset rows(db, "Objects");
    for (int at : ints(deleteAt)) {
      rows.setAbsolutePosition(at);
      DeleteListRow(rows);
    }
    Recordset page = messier();
    for (int i = 0; i < adds; ++i) QCOMPARE(AddSelectedRows(page, rows, {}), 1);
    QCOMPARE(orders(*db), result);
    QCOMPARE(rows.AbsolutePosition(), rows.RecordCount() - 1);
    if (adds == 2) QCOMPARE(names(*db), QStringLiteral("R7,Andromeda Galaxy,Andromeda Galaxy"));
  }

  void addCopiesWithFallbacks() {
    auto db = list();
    Recordset rows(db, "Objects");
    Recordset page = messier();
    page.MoveLast();  // M99, the row with holes
    AddSelectedRows(page, rows, {});
    page.MovePrevious();  // M45
    AddSelectedRows(page, rows, {});
    QCOMPARE(column(*db,
                    "DisplayOrder || '|' || ifnull(Goto, '-') || ifnull(Observed, '-') || '|' || "
                    "Category || ObjectNum || '|' || Name || '|' || Type || '|' || Constellation "
                    "|| '|' || Magnitude || '|' || Info || '|' || typeof(RAHour) || RAHour || ' ' "
                    "|| RAMinute || DecSign || DecDeg",
                    QLatin1Char('\n')),
             QStringLiteral("1|--|Messier99| | | | | |real0.0 0.0+0.0\n"
                            "2|--|Messier45|Pleiades|Open Cluster|Taurus|1.6|Seven sisters|"
                            "real3.0 47.0+24.0"));
  }

  void addSelectionInOrder() {
    auto db = list("1 2");
    Recordset rows(db, "Objects");
    rows.MoveFirst();
    Recordset page = messier();
    // Selected as M45, M31, M42; the page's current row (M99) is not part of it.
    const QList<qint64> selection = {page.bookmarkAt(2), page.bookmarkAt(0), page.bookmarkAt(1)};
    page.MoveLast();
    QCOMPARE(AddSelectedRows(page, rows, selection), 3);
    QCOMPARE(names(*db), QStringLiteral("R1,R2,Pleiades,Andromeda Galaxy,Orion Nebula"));
    QCOMPARE(orders(*db), QStringLiteral("1 2 3 4 5"));
    QCOMPARE(rows.editMode(), Recordset::EditMode::None);
    QCOMPARE(rows.AbsolutePosition(), 4);
    QCOMPARE(rows.text("Name"), QStringLiteral("Orion Nebula"));
    QVERIFY(!db->inTransaction());
    // An empty page adds nothing.
    Recordset none = messier("False");
    QCOMPARE(AddSelectedRows(none, rows, {}), 0);
    QCOMPARE(orders(*db), QStringLiteral("1 2 3 4 5"));
  }

  void deleteKeepsGaps_data() {
    QTest::addColumn<int>("at");
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("current");
    QTest::newRow("middle: the next row") << 1 << "1 5" << "R5";
    QTest::newRow("last: the new last") << 2 << "1 2" << "R2";
    QTest::newRow("first") << 0 << "2 5" << "R2";
  }
  void deleteKeepsGaps() {
    QFETCH(int, at);
    QFETCH(QString, left);
    QFETCH(QString, current);
    auto db = list("1 2 5");
    Recordset rows(db, "Objects");
    rows.setAbsolutePosition(at);
    DeleteListRow(rows);
    QCOMPARE(orders(*db), left);
    QCOMPARE(rows.text("Name"), current);

    Recordset one(list("4"), "Objects");
    DeleteListRow(one);
    QCOMPARE(one.RecordCount(), 0);
    DeleteListRow(one);  // nothing left: nothing happens
  }

  // On the list R1, R2, R5: moves swap the rows and keep the DisplayOrder values in place.
  void moves_data() {
    QTest::addColumn<int>("at");
    QTest::addColumn<bool>("down");
    QTest::addColumn<bool>("swapped");
    QTest::addColumn<QString>("order");
    QTest::addColumn<int>("position");
    QTest::newRow("down from the first") << 0 << true << true << "R2,R1,R5" << 1;
    QTest::newRow("down across the gap") << 1 << true << true << "R1,R5,R2" << 2;
    QTest::newRow("up from the last") << 2 << false << true << "R1,R5,R2" << 1;
    QTest::newRow("down on the last") << 2 << true << false << "R1,R2,R5" << 2;
    QTest::newRow("up on the first") << 0 << false << false << "R1,R2,R5" << 0;
  }
  void moves() {
    QFETCH(int, at);
    QFETCH(bool, down);
    QFETCH(bool, swapped);
    QFETCH(QString, order);
    QFETCH(int, position);
    auto db = list("1 2 5");
    Recordset rows(db, "Objects");
    rows.setAbsolutePosition(at);
    const QString moved = rows.text("Name");
    QCOMPARE(MoveListRow(rows, down ? MoveDirection::Down : MoveDirection::Up), swapped);
    QCOMPARE(names(*db), order);
    QCOMPARE(orders(*db), QStringLiteral("1 2 5"));
    QCOMPARE(rows.AbsolutePosition(), position);
    QCOMPARE(rows.text("Name"), moved);

    Recordset none(list(), "Objects");
    QVERIFY(!MoveListRow(none, MoveDirection::Down));
    QVERIFY(!MoveListRow(none, MoveDirection::Up));
  }

  void autoSort() {
    AppState& state = *env->state;
    env->fixedOffsetHours = 9;
    state.UserDate = QDateTime(QDate(2026, 11, 21), QTime(21, 0));  // site 26.3 N, 127.7 E
    // Objects in known places (RA hours, Dec degrees), in list order with gaps.
    auto db = list();
    const struct { const char* name; double ra, dec; int order; } places[] = {
        {"Vega", 18.6, 38.8, 3},        {"Pleiades", 3.8, 24.1, 10},  {"Andromeda", 0.7, 41.3, 11},
        {"Fomalhaut", 22.96, -29.6, 12}, {"Polaris", 2.5, 89.3, 20},   {"Betelgeuse", 5.9, 7.4, 21},
        {"Vega twin", 18.6, 38.8, 22},  {"Deneb", 20.7, 45.3, 30}};
    for (const auto& p : places) {
      const double raH = std::floor(p.ra), decD = std::floor(std::abs(p.dec));
      Statement st = db->prepare(QStringLiteral(
          "INSERT INTO Objects (DisplayOrder, Name, RAHour, RAMinute, DecSign, DecDeg, DecMinute) "
          "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7)"));
      const QVariantList v{p.order, p.name, raH, (p.ra - raH) * 60, p.dec < 0 ? "-" : "+", decD,
                           (std::abs(p.dec) - decD) * 60};
      for (int i = 0; i < v.size(); ++i) st.bind(i + 1, v[i]);
      st.step();
    }
    Recordset rows(db, "Objects");
    rows.MoveLast();
    AutoSortList(state, rows);
    // That evening: from Fomalhaut in the south-west through the west, the high Andromeda,
    // Polaris in the north, then down the eastern sky; identical objects keep their order.
    const QString evening =
        "Fomalhaut,Vega,Vega twin,Deneb,Andromeda,Polaris,Pleiades,Betelgeuse";
    QCOMPARE(names(*db), evening);
    QCOMPARE(orders(*db), QStringLiteral("1 2 3 4 5 6 7 8"));
    QCOMPARE(rows.AbsolutePosition(), 0);
    AutoSortList(state, rows);
    QCOMPARE(names(*db), evening);
    QVERIFY(!db->inTransaction());
    // The sky of another hour gives another tour.
    state.UserDate = QDateTime(QDate(2026, 11, 22), QTime(4, 0));
    AutoSortList(state, rows);
    QVERIFY(names(*db) != evening);
    QCOMPARE(orders(*db), QStringLiteral("1 2 3 4 5 6 7 8"));

    auto single = list("7");
    Recordset one(single, "Objects");
    AutoSortList(state, one);
    QCOMPARE(orders(*single), QStringLiteral("1"));
    Recordset none(list(), "Objects");
    AutoSortList(state, none);
    QCOMPARE(none.RecordCount(), 0);
  }

  void transactionCommitsOrRollsBack() {
    auto db = list("1");
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
    QCOMPARE(orders(*db), QStringLiteral("1"));
    {
      Database::Transaction t(*db);
      db->exec("UPDATE Objects SET DisplayOrder = 9");
      t.commit();
    }
    // Another connection sees the change: it is on the file.
    QCOMPARE(orders(*Database::open(db->path(), Database::Mode::ReadOnly)), QStringLiteral("9"));
  }
};

QTEST_GUILESS_MAIN(TestEditListLogic)
#include "tst_editlistlogic.moc"
