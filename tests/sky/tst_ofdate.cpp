#include <erfa.h>

#include <QtTest>

#include "sky/ofdate.h"
#include "support/csvrows.h"

namespace {

constexpr double kArcsecPerRadian = 180.0 * 3600.0 / M_PI;

double separationArcsec(const EquatorialPlace& a, const EquatorialPlace& b) {
  return eraSeps(a.raHours * M_PI / 12, a.decDegrees * M_PI / 180, b.raHours * M_PI / 12,
                 b.decDegrees * M_PI / 180) *
         kArcsecPerRadian;
}

}  // namespace

class TestOfDate : public QObject {
  Q_OBJECT

  double worst_ = 0;

 private slots:
  // Bright stars at moments from 2000 to 2049 (tools/ofdate_crosscheck.py, astropy's TETE).
  void crossCheck_data() {
    QTest::addColumn<QStringList>("row");
    const QList<QStringList> rows = CsvRows(QFINDTESTDATA("data/ofdate.csv"));
    QVERIFY(!rows.isEmpty());
    for (const QStringList& row : rows) {
      QCOMPARE(row.size(), 6);
      QTest::newRow(qPrintable(row[0] + QLatin1Char(' ') + row[1])) << row;
    }
  }
  void crossCheck() {
    QFETCH(QStringList, row);
    QDateTime utc = QDateTime::fromString(row[0], Qt::ISODate);
    utc.setTimeZone(QTimeZone::utc());
    QVERIFY(utc.isValid());
    const EquatorialPlace j2000{row[2].toDouble(), row[3].toDouble()};
    const EquatorialPlace ofDate{row[4].toDouble(), row[5].toDouble()};

    const EquatorialPlace there = J2000ToOfDate(j2000, utc);
    const EquatorialPlace back = OfDateToJ2000(ofDate, utc);
    QVERIFY(there.raHours >= 0 && there.raHours < 24 && back.raHours >= 0 && back.raHours < 24);
    const double worst = qMax(separationArcsec(there, ofDate), separationArcsec(back, j2000));
    worst_ = qMax(worst_, worst);
    QVERIFY2(worst < 1.0, qPrintable(QString::number(worst)));
  }
  void cleanupTestCase() {
    qInfo("largest difference from astropy: %.3f milliarcseconds", worst_ * 1000);
  }
};

QTEST_GUILESS_MAIN(TestOfDate)
#include "tst_ofdate.moc"
