#include <QtTest>
#include <random>

#include "lists/autosort.h"

class TestAutoSort : public QObject {
  Q_OBJECT
 private slots:
  void keys_data();
  void keys();
  void examplesInTourOrder();
  void tiesKeepTheirOrder();
  void fastOrderIsTheBubbleOrder();
  void displayOrders();
};

void TestAutoSort::keys_data() {
  QTest::addColumn<double>("alt");
  QTest::addColumn<double>("az");
  QTest::addColumn<double>("key");
  QTest::newRow("just west of south") << 20.0 << 10.0 << 0.2222;
  QTest::newRow("west") << 40.0 << 100.0 << 90.4444;
  QTest::newRow("west, higher") << 60.0 << 100.0 << 90.6667;
  QTest::newRow("almost north") << 45.0 << 175.0 << 150.5;
  QTest::newRow("high south") << 70.0 << 20.0 << 155.0556;
  QTest::newRow("high east") << 70.0 << 300.0 << 155.8333;
  QTest::newRow("due north") << 30.0 << 180.0 << 180.3333;
  QTest::newRow("just east of north") << 60.0 << 200.0 << 180.3333;
  QTest::newRow("just east of north, lower") << 30.0 << 200.0 << 180.6667;
  QTest::newRow("west, below the horizon") << -10.0 << 100.0 << 89.8889;
  QTest::newRow("east of north, below") << -10.0 << 200.0 << 181.1111;
  QTest::newRow("Z -0.1 is the last slice") << 20.0 << -0.1 << 330.7778;
  QTest::newRow("Z 0.1 is the first slice") << 20.0 << 0.1 << 0.2222;
  QTest::newRow("east as -90") << 20.0 << -90.0 << 270.7778;
  QTest::newRow("A 65 counts low") << 65.0 << 10.0 << 0.7222;
  QTest::newRow("A 65.1 counts high") << 65.1 << 90.0 << 155.25;
  QTest::newRow("slice edge 30") << 0.0 << 30.0 << 30.0;
}

void TestAutoSort::keys() {
  QFETCH(double, alt);
  QFETCH(double, az);
  QFETCH(double, key);
  QCOMPARE(std::round(AutoSortKey(alt, az) * 10000) / 10000, key);
}

void TestAutoSort::examplesInTourOrder() {
  // The example rows in list order; the tour visits them by ascending key.
  const std::vector<std::pair<double, double>> rows = {
      {30, 200}, {60, 200}, {70, 300}, {20, 10}, {30, 180}, {-10, 100}, {45, 175}, {70, 20}};
  std::vector<double> keys;
  for (auto [a, z] : rows) keys.push_back(AutoSortKey(a, z));
  // 180.3333 appears twice (rows 1 and 4): they keep their list order.
  const std::vector<int> expected = {3, 5, 6, 7, 2, 1, 4, 0};
  QCOMPARE(AutoSortOrder(keys), expected);
  QCOMPARE(BubbleSortOrder(keys), expected);
}

void TestAutoSort::tiesKeepTheirOrder() {
  const std::vector<double> keys = {5, 1, 5, 1, 5, 0};
  QCOMPARE(AutoSortOrder(keys), (std::vector<int>{5, 1, 3, 0, 2, 4}));
  QCOMPARE(NewDisplayOrders(keys), (std::vector<int>{4, 2, 5, 3, 6, 1}));
}

void TestAutoSort::fastOrderIsTheBubbleOrder() {
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

void TestAutoSort::displayOrders() {
  QCOMPARE(NewDisplayOrders({}), std::vector<int>{});
  QCOMPARE(NewDisplayOrders({42.0}), std::vector<int>{1});
  // Every row gets one number of 1..N, no gaps.
  std::vector<double> keys = {3.5, 0.1, 200, 155.2, 90, 90, 330.7};
  std::vector<int> orders = NewDisplayOrders(keys);
  std::vector<int> sorted = orders;
  std::sort(sorted.begin(), sorted.end());
  QCOMPARE(sorted, (std::vector<int>{1, 2, 3, 4, 5, 6, 7}));
  QCOMPARE(orders, (std::vector<int>{2, 1, 6, 5, 3, 4, 7}));
}

QTEST_GUILESS_MAIN(TestAutoSort)
#include "tst_autosort.moc"
