#include <QtTest>

#include "charts/bestpairs.h"

namespace {

// Stars are letters, "*" marks an automatic alignment star, and "P" is Polaris. Separations
// are looked up by the two letters ("AB=12.25"); a pair not listed is 10 degrees apart.
std::vector<AlignmentCandidate> candidatesOf(const QString& stars) {
  std::vector<AlignmentCandidate> out;
  for (const QString& s : stars.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
    const QString letter = s.left(1);
    out.push_back({letter == QLatin1String("P") ? QStringLiteral("Polaris") : letter,
                   SkyPosition{letter, "0", "+", "0", "0"}, s.endsWith(QLatin1Char('*'))});
  }
  return out;
}

PairSeparation separationsOf(const QString& table) {
  QHash<QString, double> seps;
  for (const QString& e : table.split(QLatin1Char(' '), Qt::SkipEmptyParts))
    seps.insert(e.left(2), e.mid(3).toDouble());
  return [seps](const SkyPosition& a, const SkyPosition& b) {
    return seps.value(a.raHours + b.raHours, 10.0);
  };
}

QStringList rowsOf(const std::vector<AlignmentPair>& rows) {
  QStringList out;
  for (const AlignmentPair& r : rows)
    out << r.name + QLatin1Char('|') + SeparationText(r.separation);
  return out;
}

}  // namespace

class TestBestPairs : public QObject {
  Q_OBJECT
 private slots:
  void tables_data() {
    QTest::addColumn<QString>("stars");
    QTest::addColumn<QString>("seps");
    QTest::addColumn<bool>("twoStar");
    QTest::addColumn<QStringList>("autoRows");
    QTest::addColumn<QStringList>("twoStarRows");
    QTest::addColumn<bool>("note");

    QTest::newRow("no candidates") << "" << "" << true << QStringList() << QStringList() << false;
    QTest::newRow("one candidate: one empty row") << "A*" << "" << true << QStringList()
                                                  << QStringList{"| 0"} << false;
    QTest::newRow("two candidates: a pair and an empty row")
        << "A* B" << "AB=30" << true << QStringList() << QStringList{"A - B| 30", "| 0"} << false;
    // The two star table stops at the number of candidates; a plain star only shows there.
    QTest::newRow("widest first, equal ones in build order")
        << "A* B C* D*" << "AB=40 AC=50 AD=60 BC=50 BD=70 CD=50" << true
        << QStringList{"A - D| 60", "A - C| 50", "C - D| 50"}
        << QStringList{"B - D| 70", "A - D| 60", "A - C| 50", "B - C| 50"} << false;
    QTest::newRow("halves go to the even tenth, table off")
        << "A* B* C*" << "AB=12.25 AC=12.75 BC=12.35" << false
        << QStringList{"A - C| 12.8", "B - C| 12.4", "A - B| 12.2"} << QStringList() << false;
    QTest::newRow("five rows at most") << "A* B* C* D* E*" << "" << false
                                       << QStringList{"A - B| 10", "A - C| 10", "A - D| 10",
                                                      "A - E| 10", "B - C| 10"}
                                       << QStringList() << false;
    QTest::newRow("Polaris at row 3 of the first table")
        << "A* B* C* P*" << "AB=60 AC=50 AP=40" << false
        << QStringList{"A - B| 60", "A - C| 50", "A - Polaris| 40", "B - C| 10", "B - Polaris| 10"}
        << QStringList() << true;
    QTest::newRow("Polaris only in the two star table")
        << "A* B* P" << "AP=80" << true << QStringList{"A - B| 10"}
        << QStringList{"A - Polaris| 80", "A - B| 10", "B - Polaris| 10"} << false;
    const QString hidden = QStringLiteral("AB=60 AC=59 AD=58 BC=57 BD=56");
    QTest::newRow("Polaris at hidden row 6 of the first table")
        << "A* B* C* D* P* E" << hidden << true
        << QStringList{"A - B| 60", "A - C| 59", "A - D| 58", "B - C| 57", "B - D| 56"}
        << QStringList{"A - B| 60", "A - C| 59", "A - D| 58", "B - C| 57", "B - D| 56",
                       "A - Polaris| 10"}
        << true;
    QTest::newRow("row 6 is not looked at without the two star table")
        << "A* B* C* D* P* E" << hidden << false
        << QStringList{"A - B| 60", "A - C| 59", "A - D| 58", "B - C| 57", "B - D| 56"}
        << QStringList() << false;
  }

  void tables() {
    QFETCH(QString, stars);
    QFETCH(QString, seps);
    QFETCH(bool, twoStar);
    QFETCH(QStringList, autoRows);
    QFETCH(QStringList, twoStarRows);
    QFETCH(bool, note);
    const BestPairs pairs = MakeBestPairs(candidatesOf(stars), twoStar, separationsOf(seps));
    QCOMPARE(rowsOf(pairs.autoRows), autoRows);
    QCOMPARE(pairs.twoStarTable, twoStar);
    QCOMPARE(rowsOf(pairs.twoStarRows), twoStarRows);
    QCOMPARE(pairs.polarisNote, note);
  }

  void band() {
    QCOMPARE((QList<bool>{InAlignmentBand(19.9), InAlignmentBand(20), InAlignmentBand(70),
                          InAlignmentBand(70.1)}),
             (QList<bool>{false, true, true, false}));
  }
};

QTEST_GUILESS_MAIN(TestBestPairs)
#include "tst_bestpairs.moc"
