#include <QtTest>

#include "core/apperror.h"
#include "core/numtext.h"
#include "support/commalocale.h"

class TestNumText : public QObject {
  Q_OBJECT
 private slots:
  void val_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");
    QTest::newRow("empty") << "" << 0.0;
    QTest::newRow("letters") << "HCD" << 0.0;
    QTest::newRow("no leading zero") << ".5" << 0.5;
    QTest::newRow("plus") << "+1" << 1.0;
    QTest::newRow("double sign") << "--1" << 0.0;
    QTest::newRow("exponent") << "1e3" << 1000.0;
    QTest::newRow("exponent D") << "2D2" << 200.0;
    QTest::newRow("exponent without digits") << "5e" << 5.0;
    QTest::newRow("trailing point") << "5." << 5.0;
    QTest::newRow("hex") << "&H1F" << 31.0;
    QTest::newRow("hex 16-bit wraps") << "&HFFFF" << -1.0;
    QTest::newRow("octal") << "&O17" << 15.0;
    QTest::newRow("tab and line feed skipped") << "\t4\n2" << 42.0;
    QTest::newRow("every exponent digit") << "1e0000001" << 10.0;
    QTest::newRow("every digit") << "0.000000000000000000000000000000000000000000001" << 1e-45;
    QTest::newRow("50 digits") << QString(50, QLatin1Char('9')) << 1e50;
    QTest::newRow("beyond a double") << "1e400" << 0.0;
  }
  void val() {
    QFETCH(QString, text);
    QTEST(Val(text), "value");
  }

  // The same texts under a decimal-comma locale.
  void plainAndPrinted_data() {
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("plain");
    QTest::addColumn<QString>("printed");
    QTest::newRow("zero") << 0.0 << "0" << " 0";
    QTest::newRow("half") << 0.5 << "0.5" << " .5";
    QTest::newRow("minus half") << -0.5 << "-0.5" << "-.5";
    QTest::newRow("third") << 1.0 / 3 << "0.333333333333333" << " .333333333333333";
    QTest::newRow("large") << 1e15 << "1E+15" << " 1E+15";
    QTest::newRow("fifteen digits") << 123456789012345.0 << "123456789012345"
                                    << " 123456789012345";
    QTest::newRow("small") << 0.00001 << "1E-05" << " 1E-05";
    QTest::newRow("small fixed") << 0.0001 << "0.0001" << " .0001";
    QTest::newRow("small mantissa") << -1.5e-7 << "-1.5E-07" << "-1.5E-07";
  }
  void plainAndPrinted() {
    QFETCH(double, value);
    QTEST(PlainNumber(value), "plain");
    QTEST(PrintedNumber(value), "printed");
    CommaLocale comma;
    REQUIRE_COMMA_LOCALE(comma);
    QTEST(PlainNumber(value), "plain");
    QTEST(PrintedNumber(value), "printed");
  }

  // The shortest text that reads back as the same single; rounding sends halves to the even
  // neighbour at any number of decimals; Int floors and Fix truncates.
  void singlesAndRounding() {
    CommaLocale comma;
    REQUIRE_COMMA_LOCALE(comma);
    QCOMPARE(ShortestSingle(0.1f), QStringLiteral("0.1"));
    QCOMPARE(ShortestSingle(0.0f), QStringLiteral("0"));
    QCOMPARE(RoundHalfEven(0.5, 0), 0.0);
    QCOMPARE(RoundHalfEven(1.5, 0), 2.0);
    QCOMPARE(RoundHalfEven(-2.5, 0), -2.0);
    QCOMPARE(RoundHalfEven(0.25, 1), 0.2);
    QCOMPARE(RoundHalfEven(0.7, 2), 0.7);
    QCOMPARE(Int(2.7), 2.0);
    QCOMPARE(Int(-2.1), -3.0);
    QCOMPARE(Fix(-2.7), -2.0);
  }

  // CInt rounds halves to even after blanks; anything else but a number is error 13, and a
  // number beyond 16 bits error 6.
  void cint() {
    const auto cint = [](const QString& text) {
      try {
        return QString::number(CInt(text));
      } catch (const AppError& e) {
        return QStringLiteral("error %1").arg(e.number);
      }
    };
    QCOMPARE(cint(" 40 "), QStringLiteral("40"));
    QCOMPARE(cint("12.5"), QStringLiteral("12"));
    QCOMPARE(cint("13.5"), QStringLiteral("14"));
    QCOMPARE(cint("12a"), QStringLiteral("error 13"));
    QCOMPARE(cint(""), QStringLiteral("error 13"));
    QCOMPARE(cint("1,5"), QStringLiteral("error 13"));
    QCOMPARE(cint("40000"), QStringLiteral("error 6"));
  }

  void formatMask() {
    QCOMPARE(FormatMask(5.0, QStringLiteral("00")), QStringLiteral("05"));
    QCOMPARE(FormatMask(123.0, QStringLiteral("00")), QStringLiteral("123"));
    QCOMPARE(FormatMask(5.25, QStringLiteral("00.0")), QStringLiteral("05.3"));
    QCOMPARE(FormatMask(-3.0, QStringLiteral("00")), QStringLiteral("-03"));
  }

  void dates() {
    const QDate d(2026, 11, 21);
    // A short date of the locale reads back to the same date, with a time behind it.
    QCOMPARE(CDate(ShortDate(d) + QStringLiteral(" 22:05")), QDateTime(d, QTime(22, 5)));
    QCOMPARE(CDate(ShortDate(d)), QDateTime(d, QTime(0, 0)));
    // An hour of 25 is no date.
    QVERIFY_THROWS_EXCEPTION(AppError, CDate(ShortDate(d) + QStringLiteral(" 25:00")));
    QVERIFY_THROWS_EXCEPTION(AppError, CDate(QStringLiteral("tonight")));
    // The date serial counts days and the fraction of the day.
    QCOMPARE(DateSerial(QDateTime(QDate(1899, 12, 31), QTime(12, 0))), 1.5);
    QCOMPARE(DateSerial(QDateTime(QDate(2000, 1, 1), QTime(0, 0))), 36526.0);
  }
};

QTEST_GUILESS_MAIN(TestNumText)
#include "tst_numtext.moc"
