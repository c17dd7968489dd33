#include <QtTest>

#include "catalog/database.h"
#include "catalog/fixturedb.h"
#include "catalog/recordset.h"
#include "lists/autosort.h"
#include "lists/editlistlogic.h"
#include "lists/listsort.h"
#include "support/listdocument.h"
#include "support/testenv.h"

namespace {

// One column (or expression) of every list row in DisplayOrder, joined by `sep`.
QString column(const Database& db, const QString& expr, QChar sep = QLatin1Char(' ')) {
  Statement st =
      db.prepare(QStringLiteral("SELECT %1 FROM Objects ORDER BY DisplayOrder, rowid").arg(expr));
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
  // Three Messier objects and one with holes (the fallbacks fill them), made on first use.
  Recordset messier(const char* where = "True") {
    if (!catalog) {
      catalog = fixture::catalog(env->path("catalog.mdb"));
      fixture::insert(*catalog, "MessierObjects",
                      {"Messier", 31, "Andromeda Galaxy", "Galaxy", "Andromeda", "3.4",
                       "Local Group", 0, 42.7, "+", 41, 16});
      fixture::insert(
          *catalog, "MessierObjects",
          {"Messier", 42, "Orion Nebula", "Nebula", "Orion", "4", "", 5, 35.3, "-", 5, 23});
      fixture::insert(*catalog, "MessierObjects",
                      {"Messier", 45, "Pleiades", "Open Cluster", "Taurus", "1.6", "Seven sisters",
                       3, 47, "+", 24, 7});
      catalog->exec(QStringLiteral(
          "INSERT INTO MessierObjects (Category, ObjectNum, Name) VALUES ('Messier', 99, '')"));
    }
    return Recordset(catalog, QStringLiteral("SELECT * From MessierObjects WHERE %1 ORDER BY "
                                             "ObjectNum;")
                                  .arg(QLatin1String(where)));
  }
  std::shared_ptr<Database> list(const QString& orders = {}) {
    static int n = 0;
    return fixture::list(env->path(QStringLiteral("l%1.tlf").arg(++n)), ints(orders));
  }

 private slots:
  void init() {
    env = std::make_unique<TestEnv>();
    catalog.reset();
  }

  void caption() {
    QCOMPARE(EditListCaption("Objects -   Spaced  "), QStringLiteral("Edit - Spaced"));
    QCOMPARE(EditListCaption("Objects"), QStringLiteral("Edit - "));
  }

  // Start from a list (its DisplayOrder values, names R1, R2, ...), run the steps and look at
  // the file and the current row. Steps: "del@n" deletes row n, "add" adds the page's current
  // row, "sel" a selection of M45, M31 and M42 (the current row M99 not part of it), "none"
  // an empty page, "down@n" and "up@n" move row n, and a step ending in "-" changes nothing.
  // Deletes and moves leave gaps and the DisplayOrder values where they were; adds number
  // after the last row, in the order selected.
  // clang-format off
  void edits_data() {
    QTest::addColumn<QString>("start");
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("result");  // orders, names, current row and its position
    const QString m31 = QStringLiteral("Andromeda Galaxy");
    QTest::newRow("first add") << "" << "add" << "1|" + m31 + "|" + m31 + "|0";
    QTest::newRow("add after the first was deleted")
        << "1 2 3" << "del@0 add" << "2 3 4|R2,R3," + m31 + "|" + m31 + "|2";
    QTest::newRow("same object twice")
        << "7" << "add add" << "7 8 9|R7," + m31 + "," + m31 + "|" + m31 + "|2";
    QTest::newRow("selection")
        << "1 2" << "sel" << "1 2 3 4 5|R1,R2,Pleiades," + m31 + ",Orion Nebula|Orion Nebula|4";
    QTest::newRow("empty page") << "1 2" << "none-" << "1 2|R1,R2|R1|0";
    QTest::newRow("delete the middle: the next row") << "1 2 5" << "del@1" << "1 5|R1,R5|R5|1";
    QTest::newRow("delete the last: the new last") << "1 2 5" << "del@2" << "1 2|R1,R2|R2|1";
    QTest::newRow("delete on an empty list") << "4" << "del del" << "|||-1";
    QTest::newRow("down from the first") << "1 2 5" << "down@0" << "1 2 5|R2,R1,R5|R1|1";
    QTest::newRow("down across the gap") << "1 2 5" << "down@1" << "1 2 5|R1,R5,R2|R2|2";
    QTest::newRow("up from the last") << "1 2 5" << "up@2" << "1 2 5|R1,R5,R2|R5|1";
    QTest::newRow("down on the last") << "1 2 5" << "down@2-" << "1 2 5|R1,R2,R5|R5|2";
    QTest::newRow("up on the first") << "1 2 5" << "up@0-" << "1 2 5|R1,R2,R5|R1|0";
    QTest::newRow("moves on an empty list") << "" << "down- up-" << "|||-1";
  }
  // clang-format on
  void edits() {
    QFETCH(QString, start);
    QFETCH(QString, steps);
    QFETCH(QString, result);
    auto db = list(start);
    Recordset rows(db, "Objects");
    Recordset page = messier();
    Recordset none = messier("False");
    for (QString step : steps.split(' ')) {
      const bool refused = step.endsWith('-');
      step.remove('-');
      if (step.contains('@')) rows.setAbsolutePosition(step.section('@', 1).toInt());
      step = step.section('@', 0, 0);
      if (step == "add") QCOMPARE(AddSelectedRows(page, rows, {}), 1);
      else if (step == "sel") {
        const QList<qint64> selection = {page.bookmarkAt(2), page.bookmarkAt(0),
                                         page.bookmarkAt(1)};
        page.MoveLast();
        QCOMPARE(AddSelectedRows(page, rows, selection), 3);
      } else if (step == "none") QCOMPARE(AddSelectedRows(none, rows, {}), 0);
      else if (step == "del") DeleteListRow(rows);
      else
        QCOMPARE(MoveListRow(rows, step == "up" ? MoveDirection::Up : MoveDirection::Down),
                 !refused);
    }
    const QString current = rows.AbsolutePosition() < 0 ? QString() : rows.text("Name");
    QCOMPARE(QStringLiteral("%1|%2|%3|%4")
                 .arg(orders(*db), names(*db), current)
                 .arg(rows.AbsolutePosition()),
             result);
    QVERIFY(!db->inTransaction());
  }

  // Left without a commit it rolls back; one inside an open one adds nothing of its own.
  void transactionCommitsOrRollsBack() {
    auto db = list("1");
    for (bool commit : {false, true}) {
      {
        Database::Transaction t(*db);
        db->exec("UPDATE Objects SET DisplayOrder = 9");
        { Database::Transaction inner(*db); }
        if (commit) t.commit();
      }
      QVERIFY(!db->inTransaction());
      QCOMPARE(orders(*db), QLatin1String(commit ? "9" : "1"));
    }
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

  void autoSort() {
    AppState& state = *env->state;
    env->fixedOffsetHours = 9;
    state.UserDate = QDateTime(QDate(2026, 11, 21), QTime(21, 0));  // site 26.3 N, 127.7 E
    const QString path = env->path("sort.tlf");
    MakeListDocument(state, path,
                     {NamedRow("Vega", SkyPosition::of(18, 36, "+", 38, 48)),
                      NamedRow("Pleiades", SkyPosition::of(3, 48, "+", 24, 6)),
                      NamedRow("Andromeda", SkyPosition::of(0, 42, "+", 41, 18)),
                      NamedRow("Fomalhaut", SkyPosition::of(22, 57.6, "-", 29, 36)),
                      NamedRow("Polaris", SkyPosition::of(2, 30, "+", 89, 18)),
                      NamedRow("Betelgeuse", SkyPosition::of(5, 54, "+", 7, 24)),
                      NamedRow("Vega twin", SkyPosition::of(18, 36, "+", 38, 48)),
                      NamedRow("Deneb", SkyPosition::of(20, 42, "+", 45, 18))});
    auto db = Database::open(path, Database::Mode::ReadWrite);
    db->exec("UPDATE Objects SET DisplayOrder = DisplayOrder * 10");
    Recordset rows(db, "Objects");
    rows.MoveLast();
    AutoSortList(state, rows);
    // That evening: from Fomalhaut in the south-west through the west, the high Andromeda,
    // Polaris in the north, then down the eastern sky; identical objects keep their order.
    QCOMPARE(names(*db), QStringLiteral("Fomalhaut,Vega,Vega twin,Deneb,Andromeda,Polaris,"
                                        "Pleiades,Betelgeuse"));
    QCOMPARE(orders(*db), QStringLiteral("1 2 3 4 5 6 7 8"));
    QCOMPARE(rows.AbsolutePosition(), 0);
    Recordset none(list(), "Objects");
    AutoSortList(state, none);
    QCOMPARE(none.RecordCount(), 0);
  }

  // A fresh window holds "DisplayOrder", so its first click on "#" is the descending clause; a
  // second click on a head turns its clause round. Heads that share a key count as one; another
  // head in between starts afresh; a click outside the fifteen columns is refused.
  // clang-format off
  void clicks_data() {
    QTest::addColumn<QList<int>>("clicks");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("field");
    const QString dec = QStringLiteral("ORDER BY (val(DecSign & '1') * (DecDeg + DecMinute/60)) ");
    const QString number = QStringLiteral("ORDER BY Category Desc, ObjectNum DESC");
    QTest::newRow("#") << QList<int>{0} << "ORDER BY DisplayOrder Desc" << "DisplayOrderDesc";
    QTest::newRow("# twice") << QList<int>{0, 0} << "ORDER BY DisplayOrder" << "DisplayOrder";
    QTest::newRow("number") << QList<int>{4} << "ORDER BY Category, ObjectNum" << "ObjectNum";
    QTest::newRow("number twice") << QList<int>{4, 4} << number << "ObjectNumDesc";
    QTest::newRow("type") << QList<int>{6} << "ORDER BY Type, Magnitude" << "Type";
    QTest::newRow("type twice") << QList<int>{6, 6} << "ORDER BY Type DESC, Magnitude"
                                << "TypeDesc";
    QTest::newRow("dec") << QList<int>{13} << dec + "DESC" << "DEC";
    QTest::newRow("dec, two heads") << QList<int>{5, 13, 14} << dec << "DECDesc";
    QTest::newRow("dec, three heads") << QList<int>{5, 13, 14, 12} << dec + "DESC" << "DEC";
    QTest::newRow("other head between") << QList<int>{13, 5, 13} << dec + "DESC" << "DEC";
    QTest::newRow("outside -1") << QList<int>{9, -1} << "ORDER BY Info" << "Info";
    QTest::newRow("outside 15") << QList<int>{9, 15} << "ORDER BY Info" << "Info";
  }
  // clang-format on
  void clicks() {
    QFETCH(QList<int>, clicks);
    QFETCH(QString, key);
    QFETCH(QString, field);
    ListSortState state;
    bool last = false;
    for (int column : clicks) last = ListHeaderClick(state, column);
    QCOMPARE(last, clicks.last() >= 0 && clicks.last() < 15);
    QCOMPARE(state.ListSortKey, key);
    QCOMPARE(state.ListSortField, field);
  }

  // clang-format off
  void autoSortKeys_data() {
    QTest::addColumn<double>("alt");
    QTest::addColumn<double>("az");
    QTest::addColumn<double>("key");
    const struct { const char* name; double alt, az, key; } rows[] = {
        {"just west of south", 20, 10, 0.2222},       {"west", 40, 100, 90.4444},
        {"almost north", 45, 175, 150.5},             {"high east", 70, 300, 155.8333},
        {"due north", 30, 180, 180.3333},             {"just east of north", 60, 200, 180.3333},
        {"west, below the horizon", -10, 100, 89.8889}, {"east as -90", 20, -90, 270.7778},
        {"Z -0.1 is the last slice", 20, -0.1, 330.7778}, {"Z 0.1 is the first", 20, 0.1, 0.2222},
        {"A 65 counts low", 65, 10, 0.7222},          {"A 65.1 counts high", 65.1, 90, 155.25},
        {"slice edge 30", 0, 30, 30}};
    for (const auto& r : rows) QTest::newRow(r.name) << r.alt << r.az << r.key;
  }
  // clang-format on
  void autoSortKeys() {
    QFETCH(double, alt);
    QFETCH(double, az);
    QFETCH(double, key);
    QCOMPARE(std::round(AutoSortKey(alt, az) * 10000) / 10000, key);
  }
};

QTEST_GUILESS_MAIN(TestEditListLogic)
#include "tst_editlistlogic.moc"
