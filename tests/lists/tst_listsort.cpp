#include <QtTest>

#include "lists/listsort.h"

class TestListSort : public QObject {
  Q_OBJECT
 private slots:
  void clicks_data();
  void clicks();
  void declinationNeedsThreeClicks();
  void otherColumnInBetweenStartsAfresh();
  void outsideTheGrid();
  void recordSource();
};

void TestListSort::clicks_data() {
  QTest::addColumn<int>("column");
  QTest::addColumn<QStringList>("clauses");
  QTest::addColumn<QStringList>("words");
  auto row = [](const char* name, int column, const QString& first, const QString& second,
                const QString& w1, const QString& w2) {
    QTest::newRow(name) << column << QStringList{first, second, first} << QStringList{w1, w2, w1};
  };
  // A fresh window holds "DisplayOrder": its first click on "#" is the descending clause.
  QTest::newRow("0 from start")
      << 0
      << QStringList{"ORDER BY DisplayOrder Desc", "ORDER BY DisplayOrder",
                     "ORDER BY DisplayOrder Desc"}
      << QStringList{"DisplayOrderDesc", "DisplayOrder", "DisplayOrderDesc"};
  row("1 Goto", 1, "ORDER BY GoTo, DisplayOrder", "ORDER BY GoTo Desc, DisplayOrder DESC", "GoTo",
      "GoToDesc");
  row("2 Observed", 2, "ORDER BY Observed, DisplayOrder",
      "ORDER BY Observed Desc, DisplayOrder DESC", "Observed", "ObservedDesc");
  row("3 Category", 3, "ORDER BY Category, ObjectNum", "ORDER BY Category Desc, ObjectNum DESC",
      "ObjectNum", "ObjectNumDesc");
  row("4 Number", 4, "ORDER BY Category, ObjectNum", "ORDER BY Category Desc, ObjectNum DESC",
      "ObjectNum", "ObjectNumDesc");
  row("5 Name", 5, "ORDER BY Name", "ORDER BY Name DESC", "Name", "NameDesc");
  row("6 Type", 6, "ORDER BY Type, Magnitude", "ORDER BY Type DESC, Magnitude", "Type",
      "TypeDesc");
  row("7 Const", 7, "ORDER BY Constellation, Magnitude", "ORDER BY Constellation DESC, Magnitude",
      "Const", "ConstDesc");
  row("8 Mag", 8, "ORDER BY Magnitude", "ORDER BY Magnitude DESC", "Mag", "MagDesc");
  row("9 Info", 9, "ORDER BY Info", "ORDER BY Info DESC", "Info", "InfoDesc");
  row("10 RA", 10, "ORDER BY RAHour, RAMinute", "ORDER BY RAHour DESC, RAMinute DESC", "RA",
      "RADesc");
  row("11 RA minutes", 11, "ORDER BY RAHour, RAMinute", "ORDER BY RAHour DESC, RAMinute DESC",
      "RA", "RADesc");
  const QString dec = QStringLiteral("ORDER BY (val(DecSign & '1') * (DecDeg + DecMinute/60)) ");
  row("12 Dec sign", 12, dec + "DESC", dec, "DEC", "DECDesc");
  row("13 Dec degrees", 13, dec + "DESC", dec, "DEC", "DECDesc");
  row("14 Dec minutes", 14, dec + "DESC", dec, "DEC", "DECDesc");
}

void TestListSort::clicks() {
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

void TestListSort::declinationNeedsThreeClicks() {
  ListSortState state;
  ListHeaderClick(state, 5);
  ListHeaderClick(state, 13);
  const QString first = state.ListSortKey;
  ListHeaderClick(state, 14);
  QVERIFY(state.ListSortKey != first);
  QCOMPARE(state.ListSortField, QStringLiteral("DECDesc"));
  ListHeaderClick(state, 12);
  QCOMPARE(state.ListSortKey, first);
}

void TestListSort::otherColumnInBetweenStartsAfresh() {
  ListSortState state;
  ListHeaderClick(state, 13);
  ListHeaderClick(state, 5);
  ListHeaderClick(state, 13);
  QVERIFY(state.ListSortKey.endsWith(QStringLiteral(" DESC")));
  ListHeaderClick(state, 4);
  ListHeaderClick(state, 3);  // the other half of the same key: its second click
  QCOMPARE(state.ListSortKey, QStringLiteral("ORDER BY Category Desc, ObjectNum DESC"));
}

void TestListSort::outsideTheGrid() {
  ListSortState state;
  ListHeaderClick(state, 9);
  for (int column : {-1, 15, 99}) {
    QVERIFY(!ListHeaderClick(state, column));
    QCOMPARE(state.ListSortKey, QStringLiteral("ORDER BY Info"));
    QCOMPARE(state.ListSortField, QStringLiteral("Info"));
  }
}

void TestListSort::recordSource() {
  QCOMPARE(ListRecordSource(ListSortState{}.ListSortKey),
           QStringLiteral("SELECT DisplayOrder, Goto, Observed, Category, ObjectNum, Name, Type, "
                          "Constellation, Magnitude, Info, RAHour, RAMinute, DecSign, DecDeg, "
                          "DecMinute From Objects ORDER BY DisplayOrder"));
}

QTEST_GUILESS_MAIN(TestListSort)
#include "tst_listsort.moc"
