#include <QtTest>
#include <random>

#include "lists/autosort.h"
#include "lists/listsort.h"

class TestListSort : public QObject {
  Q_OBJECT
 private slots:
  // Three clicks on one head: its clause, the other way, the first again.
  void clicks_data() {
    QTest::addColumn<int>("column");
    QTest::addColumn<QStringList>("clauses");
    QTest::addColumn<QStringList>("words");
    auto row = [](int column, const QString& first, const QString& second, const QString& word) {
      QTest::newRow(qPrintable(QString::number(column)))
          << column << QStringList{first, second, first} << QStringList{word, word + "Desc", word};
    };
    // A fresh window holds "DisplayOrder": its first click on "#" is the descending clause.
    QTest::newRow("0") << 0
                       << QStringList{"ORDER BY DisplayOrder Desc", "ORDER BY DisplayOrder",
                                      "ORDER BY DisplayOrder Desc"}
                       << QStringList{"DisplayOrderDesc", "DisplayOrder", "DisplayOrderDesc"};
    // One head of each shape; the others follow the same table.
    row(4, "ORDER BY Category, ObjectNum", "ORDER BY Category Desc, ObjectNum DESC", "ObjectNum");
    row(6, "ORDER BY Type, Magnitude", "ORDER BY Type DESC, Magnitude", "Type");
    const QString dec = QStringLiteral("ORDER BY (val(DecSign & '1') * (DecDeg + DecMinute/60)) ");
    row(13, dec + "DESC", dec, "DEC");
  }
  void clicks() {
    QFETCH(int, column);
    QFETCH(QStringList, clauses);
    QFETCH(QStringList, words);
    ListSortState state;
    for (int click = 0; click < 3; ++click) {
      QVERIFY(ListHeaderClick(state, column));
      QCOMPARE(state.ListSortKey, clauses[click]);
      QCOMPARE(state.ListSortField, words[click]);
    }
  }

  // Heads that share a key count as one; another head in between starts afresh; a click
  // outside the grid's fifteen columns is refused and changes nothing.
  void sequences_data() {
    QTest::addColumn<QList<int>>("clicks");
    QTest::addColumn<bool>("accepted");  // the last click
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("field");
    const QString dec = QStringLiteral("ORDER BY (val(DecSign & '1') * (DecDeg + DecMinute/60)) ");
    QTest::newRow("dec, two heads") << QList<int>{5, 13, 14} << true << dec << "DECDesc";
    QTest::newRow("dec, three heads") << QList<int>{5, 13, 14, 12} << true << dec + "DESC" << "DEC";
    QTest::newRow("other head between") << QList<int>{13, 5, 13} << true << dec + "DESC" << "DEC";
    QTest::newRow("number then category") << QList<int>{4, 3} << true
                                          << "ORDER BY Category Desc, ObjectNum DESC"
                                          << "ObjectNumDesc";
    for (int outside : {-1, 15, 99})
      QTest::newRow(qPrintable(QStringLiteral("outside %1").arg(outside)))
          << QList<int>{9, outside} << false << "ORDER BY Info" << "Info";
  }
  void sequences() {
    QFETCH(QList<int>, clicks);
    QFETCH(bool, accepted);
    QFETCH(QString, key);
    QFETCH(QString, field);
    ListSortState state;
    bool last = false;
    for (int column : clicks) last = ListHeaderClick(state, column);
    QCOMPARE(last, accepted);
    QCOMPARE(state.ListSortKey, key);
    QCOMPARE(state.ListSortField, field);
  }

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
  void autoSortKeys() {
    QFETCH(double, alt);
    QFETCH(double, az);
    QFETCH(double, key);
    QCOMPARE(std::round(AutoSortKey(alt, az) * 10000) / 10000, key);
  }

  // Ties keep their order; every row gets one number of 1..N, no gaps. The tour of a real sky
  // is the list editor logic test's.
  void autoSortOrders() {
    QCOMPARE(AutoSortOrder({5, 1, 5, 1, 5, 0}), (std::vector<int>{5, 1, 3, 0, 2, 4}));
    QCOMPARE(NewDisplayOrders({5, 1, 5, 1, 5, 0}), (std::vector<int>{4, 2, 5, 3, 6, 1}));
    QCOMPARE(NewDisplayOrders({}), std::vector<int>{});
  }

  void fastOrderIsTheBubbleOrder() {
    std::mt19937 rng(20261121);
    for (int trial = 0; trial < 300; ++trial) {
      const int n = std::uniform_int_distribution<int>(0, 120)(rng);
      // Few distinct keys, so that most lists are full of ties; some lists all alike.
      const int distinct = std::uniform_int_distribution<int>(1, 12)(rng);
      std::vector<double> keys(n);
      for (double& k : keys) {
        const int slot = std::uniform_int_distribution<int>(0, distinct - 1)(rng);
        k = trial % 3 == 0 ? AutoSortKey(slot * 7.0 - 10, slot * 31.0 - 90) : slot * 30 + 0.25;
      }
      QCOMPARE(AutoSortOrder(keys), BubbleSortOrder(keys));
    }
  }
};

QTEST_GUILESS_MAIN(TestListSort)
#include "tst_listsort.moc"
