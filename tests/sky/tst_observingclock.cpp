#include <QtTest>

#include "core/apperror.h"
#include "sky/observingclock.h"

class TestObservingClock : public QObject {
  Q_OBJECT
 private slots:
  void fromFields_data();
  void fromFields();
  void notADate_data();
  void notADate();
  void fieldsOf_data();
  void fieldsOf();
  void step_data();
  void step();
};

void TestObservingClock::fromFields_data() {
  QTest::addColumn<QString>("hour");
  QTest::addColumn<QString>("minute");
  QTest::addColumn<QTime>("time");

  QTest::newRow("plain") << "3" << "07" << QTime(3, 7);
  QTest::newRow("minute without its zero") << "22" << "5" << QTime(22, 5);
  QTest::newRow("last minute of the day") << "23" << "59" << QTime(23, 59);
  QTest::newRow("blanks are skipped") << " 9 " << " 3 0" << QTime(9, 30);
  QTest::newRow("leading number only") << "7pm" << "15min" << QTime(7, 15);
  QTest::newRow("empty fields are midnight") << "" << "" << QTime(0, 0);
  QTest::newRow("fractions round in the two-digit form") << "7.6" << "29.5" << QTime(8, 30);
}

void TestObservingClock::fromFields() {
  QFETCH(QString, hour);
  QFETCH(QString, minute);
  QFETCH(QTime, time);

  for (const QDate date : {QDate(2026, 11, 21), QDate(2027, 2, 28), QDate(2025, 1, 1)}) {
    const QDateTime got = UserDateFromFields(date, hour, minute);
    QCOMPARE(got, QDateTime(date, time));
    QCOMPARE(got.time().second(), 0);
  }
}

void TestObservingClock::notADate_data() {
  QTest::addColumn<QString>("hour");
  QTest::addColumn<QString>("minute");

  QTest::newRow("hour 25") << "25" << "00";
  QTest::newRow("hour 24") << "24" << "0";
  QTest::newRow("minute 60") << "12" << "60";
  QTest::newRow("negative hour") << "-1" << "0";
  QTest::newRow("three-digit hour") << "100" << "0";
}

void TestObservingClock::notADate() {
  QFETCH(QString, hour);
  QFETCH(QString, minute);
  try {
    UserDateFromFields(QDate(2026, 11, 21), hour, minute);
    QFAIL("no error");
  } catch (const AppError& e) {
    QCOMPARE(e.text(), QStringLiteral("Type mismatch - 13"));
  }
}

void TestObservingClock::fieldsOf_data() {
  QTest::addColumn<QDateTime>("userDate");
  QTest::addColumn<QString>("hour");
  QTest::addColumn<QString>("minute");

  QTest::newRow("small hours with seconds")
      << QDateTime(QDate(2026, 11, 21), QTime(3, 7, 42)) << "3" << "07";
  QTest::newRow("start value") << QDateTime(QDate(2026, 11, 21), QTime(22, 0)) << "22" << "00";
  QTest::newRow("midnight") << QDateTime(QDate(2026, 12, 31), QTime(0, 5)) << "0" << "05";
}

void TestObservingClock::fieldsOf() {
  QFETCH(QDateTime, userDate);
  QFETCH(QString, hour);
  QFETCH(QString, minute);

  const UserDateFields f = UserDateFieldsOf(userDate);
  QCOMPARE(f.date, userDate.date());
  QCOMPARE(f.hour, hour);
  QCOMPARE(f.minute, minute);
  // Back through the fields, only the seconds are lost.
  const QTime t = userDate.time();
  QCOMPARE(UserDateFromFields(f.date, f.hour, f.minute),
           QDateTime(userDate.date(), QTime(t.hour(), t.minute())));
}

void TestObservingClock::step_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<int>("steps");
  QTest::addColumn<int>("maximum");
  QTest::addColumn<QString>("mask");
  QTest::addColumn<QString>("result");

  QTest::newRow("hour up") << "7" << 1 << 23 << "0" << "8";
  QTest::newRow("hour stops at 23") << "23" << 1 << 23 << "0" << "23";
  QTest::newRow("typed past the top comes back in") << "25" << -1 << 23 << "0" << "23";
  QTest::newRow("minute keeps two digits") << "09" << 1 << 59 << "00" << "10";
  QTest::newRow("minute stops at 00") << "03" << -10 << 59 << "00" << "00";
  QTest::newRow("text counts as 0") << "abc" << 1 << 23 << "0" << "1";
}

void TestObservingClock::step() {
  QFETCH(QString, text);
  QFETCH(int, steps);
  QFETCH(int, maximum);
  QFETCH(QString, mask);
  QFETCH(QString, result);
  QCOMPARE(StepNumberText(text, steps, maximum, mask), result);
}

QTEST_GUILESS_MAIN(TestObservingClock)
#include "tst_observingclock.moc"
