#include <QtTest>

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
    row(1, "ORDER BY GoTo, DisplayOrder", "ORDER BY GoTo Desc, DisplayOrder DESC", "GoTo");
    row(2, "ORDER BY Observed, DisplayOrder", "ORDER BY Observed Desc, DisplayOrder DESC",
        "Observed");
    for (int c : {3, 4})
      row(c, "ORDER BY Category, ObjectNum", "ORDER BY Category Desc, ObjectNum DESC", "ObjectNum");
    row(5, "ORDER BY Name", "ORDER BY Name DESC", "Name");
    row(6, "ORDER BY Type, Magnitude", "ORDER BY Type DESC, Magnitude", "Type");
    row(7, "ORDER BY Constellation, Magnitude", "ORDER BY Constellation DESC, Magnitude", "Const");
    row(8, "ORDER BY Magnitude", "ORDER BY Magnitude DESC", "Mag");
    row(9, "ORDER BY Info", "ORDER BY Info DESC", "Info");
    for (int c : {10, 11}) row(c, "ORDER BY RAHour, RAMinute", "ORDER BY RAHour DESC, RAMinute DESC", "RA");
    const QString dec = QStringLiteral("ORDER BY (val(DecSign & '1') * (DecDeg + DecMinute/60)) ");
    for (int c : {12, 13, 14}) row(c, dec + "DESC", dec, "DEC");
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

  void recordSource() {
    QCOMPARE(ListRecordSource(ListSortState{}.ListSortKey),
             QStringLiteral("SELECT DisplayOrder, Goto, Observed, Category, ObjectNum, Name, Type, "
                            "Constellation, Magnitude, Info, RAHour, RAMinute, DecSign, DecDeg, "
                            "DecMinute From Objects ORDER BY DisplayOrder"));
  }
};

QTEST_GUILESS_MAIN(TestListSort)
#include "tst_listsort.moc"
