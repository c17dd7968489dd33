#include <QtTest>
#include <random>

#include "lists/autosort.h"

class TestAutoSort : public QObject {
  Q_OBJECT
 private slots:
  void keys_data() {
    QTest::addColumn<double>("alt");
    QTest::addColumn<double>("az");
    QTest::addColumn<double>("key");
    const struct { const char* name; double alt, az, key; } rows[] = {
        {"just west of south", 20, 10, 0.2222},       {"west", 40, 100, 90.4444},
        {"west, higher", 60, 100, 90.6667},           {"almost north", 45, 175, 150.5},
        {"high south", 70, 20, 155.0556},             {"high east", 70, 300, 155.8333},
        {"due north", 30, 180, 180.3333},             {"just east of north", 60, 200, 180.3333},
        {"just east of north, lower", 30, 200, 180.6667},
        {"west, below the horizon", -10, 100, 89.8889},
        {"east of north, below", -10, 200, 181.1111}, {"Z -0.1 is the last slice", 20, -0.1, 330.7778},
        {"Z 0.1 is the first slice", 20, 0.1, 0.2222}, {"east as -90", 20, -90, 270.7778},
        {"A 65 counts low", 65, 10, 0.7222},          {"A 65.1 counts high", 65.1, 90, 155.25},
        {"slice edge 30", 0, 30, 30}};
    for (const auto& r : rows) QTest::newRow(r.name) << r.alt << r.az << r.key;
  }
  void keys() {
    QFETCH(double, alt);
    QFETCH(double, az);
    QFETCH(double, key);
    QCOMPARE(std::round(AutoSortKey(alt, az) * 10000) / 10000, key);
  }

  void orders() {
    // The example rows in list order; the tour visits them by ascending key, and 180.3333
    // (rows 1 and 4) keeps its list order.
    const std::vector<std::pair<double, double>> rows = {
        {30, 200}, {60, 200}, {70, 300}, {20, 10}, {30, 180}, {-10, 100}, {45, 175}, {70, 20}};
    std::vector<double> keys;
    for (auto [a, z] : rows) keys.push_back(AutoSortKey(a, z));
    const std::vector<int> expected = {3, 5, 6, 7, 2, 1, 4, 0};
    QCOMPARE(AutoSortOrder(keys), expected);
    QCOMPARE(BubbleSortOrder(keys), expected);
    // Ties keep their order; every row gets one number of 1..N, no gaps.
    QCOMPARE(AutoSortOrder({5, 1, 5, 1, 5, 0}), (std::vector<int>{5, 1, 3, 0, 2, 4}));
    QCOMPARE(NewDisplayOrders({5, 1, 5, 1, 5, 0}), (std::vector<int>{4, 2, 5, 3, 6, 1}));
    QCOMPARE(NewDisplayOrders({3.5, 0.1, 200, 155.2, 90, 90, 330.7}),
             (std::vector<int>{2, 1, 6, 5, 3, 4, 7}));
    QCOMPARE(NewDisplayOrders({}), std::vector<int>{});
    QCOMPARE(NewDisplayOrders({42.0}), std::vector<int>{1});
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

QTEST_GUILESS_MAIN(TestAutoSort)
#include "tst_autosort.moc"
