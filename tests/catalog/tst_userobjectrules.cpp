#include <QtTest>

#include "catalog/userobjectrules.h"

class TestUserObjectRules : public QObject {
  Q_OBJECT
 private slots:
  void fields_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("decDeg");
    QTest::addColumn<QString>("result");
    QTest::addColumn<QString>("message");
    const QString hour = "RA Hour must be a value between 0 and 23";
    const QString minute = "RA Minute must be a value between 0 and 59.99";
    const QString degree = "Declination Degree must be a value between 0 and 90";
    const QString decMin = "Declination Minute must be a value between 0 and 59.99";
    const QString at90 = "Declination Minute must be a value of 0 when Degree is 90";
    QTest::newRow("number padded") << 1 << "12" << "" << "        12" << "";
    QTest::newRow("number trimmed first") << 1 << "  NGC 12  " << "" << "    NGC 12" << "";
    QTest::newRow("number of 10") << 1 << "1234567890" << "" << "1234567890" << "";
    QTest::newRow("number with quote") << 1 << "1\"2" << "" << "        12" << "";
    QTest::newRow("hour 23") << 4 << "23" << "" << "23" << "";
    QTest::newRow("hour 23.5") << 4 << "23.5" << "" << "23.5" << hour;
    QTest::newRow("hour text") << 4 << "abc" << "" << "0" << "";
    QTest::newRow("ra minute 59.995") << 5 << "59.995" << "" << "59.995" << "";
    QTest::newRow("ra minute 60") << 5 << "60" << "" << "60" << minute;
    QTest::newRow("deg 90") << 7 << "90" << "" << "90" << "";
    QTest::newRow("deg 90.5") << 7 << "90.5" << "" << "90.5" << degree;
    QTest::newRow("dec minute 0 at 90") << 8 << "0" << "90" << "0" << "";
    QTest::newRow("dec minute 0.01 at 90") << 8 << "0.01" << "90" << "0.01" << at90;
    QTest::newRow("dec minute 60 at 90") << 8 << "60" << "90" << "60" << at90;
    QTest::newRow("dec minute 60") << 8 << "60" << "10" << "60" << decMin;
    QTest::newRow("dec minute 59.99") << 8 << "-59.99" << "10" << "59.99" << "";
    QTest::newRow("name untouched") << 2 << "  Owl  " << "" << "  Owl  " << "";
    QTest::newRow("info quotes gone") << 11 << "\"\"a\"\"b\"" << "" << "ab" << "";
  }
  void fields() {
    QFETCH(int, index);
    QFETCH(QString, text);
    QFETCH(QString, decDeg);
    QFETCH(QString, result);
    QFETCH(QString, message);
    const UserFieldCheck check = ValidateUserField(index, text, decDeg);
    QCOMPARE(check.text, result);
    QCOMPARE(check.message, message);
    QCOMPARE(check.ok(), message.isEmpty());
  }

  void secondsToDecimal_data() {
    QTest::addColumn<QString>("seconds");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("42") << "42" << 0.7 << "0.7";
    QTest::newRow("0.3 half to even") << "0.3" << 0.0 << "0";      // 0.005 -> 0
    QTest::newRow("0.9 half to even") << "0.9" << 0.02 << "0.02";  // 0.015 -> 0.02
    QTest::newRow("text") << "abc" << 0.0 << "0";
    QTest::newRow("negative") << "-42" << -0.7 << "-0.7";
  }
  void secondsToDecimal() {
    QFETCH(QString, seconds);
    QFETCH(double, value);
    QFETCH(QString, text);
    QCOMPARE(SecondsToDecimal(seconds), value);
    QCOMPARE(SecondsToDecimalText(seconds), text);
  }

  void captions() {
    QCOMPARE(UserRecordPosition(3, 12), QStringLiteral(" Record: 3 of 12"));
    QCOMPARE(UserNewRecordPosition(12), QStringLiteral(" Record: New of 13"));
    QCOMPARE(UserNewRecordPosition(0), QStringLiteral(" Record: New of 1"));
    QCOMPARE(ToggleButtonsCaption(true), QStringLiteral("&Save"));
    QCOMPARE(ToggleButtonsCaption(false), QStringLiteral("&Re-sort"));
    QCOMPARE(DecSignCaption(QString()), QStringLiteral("-"));
    QCOMPARE(ToggledDecSign(QString()), QStringLiteral("+"));
  }
};

QTEST_GUILESS_MAIN(TestUserObjectRules)
#include "tst_userobjectrules.moc"
