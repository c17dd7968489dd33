#include <QTest>

#include "core/apperror.h"
#include "scope/gotoflow.h"
#include "scope/scopecodec.h"
#include "scope/scopeport.h"
#include "scopetest.h"

// Every family's slew and position bytes reach the simulator in tst_scopelink, and the fuzz
// harness checks that decoding agrees with the encoding and that only a short binary reply
// raises; these are the edges neither reaches.
class TestScopeCodec : public QObject {
  Q_OBJECT

 private slots:
  void units() {
    QCOMPARE(DecUnits("+", 90, 0), 16383.0);  // one below a quarter
    QCOMPARE(DecUnits("", 10, 0), 1820.0);  // a blank sign is north
    QCOMPARE(DecUnits("-", -22, 1), 61527.0);  // south takes the degrees' size
  }

  // What the simulator cannot tell: an unknown family, the BIG family's waits, a reply in
  // lower case.
  void commands() {
    QCOMPARE(EncodeGoto("XYZ", 5, 34.5, "+", 22, 1), (QList<ScopeWrite>{{"R3B77,0FA8", 0}}));
    QCOMPARE(PositionRequest("XYZ"), (QList<ScopeWrite>{{"E", 0}}));
    const QList<ScopeWrite> big{{"?", 250}, {"R" + QByteArray::fromHex("3B770FA8"), 0}};
    QCOMPARE(EncodeGoto("BIG", 5, 34.5, "+", 22, 1), big);
    QCOMPARE(PositionRequest("BIG"), (QList<ScopeWrite>{{"?", 250}, {"E", 0}}));
    // The edge units go out whole; nothing a byte cannot hold goes out.
    QCOMPARE(EncodeGoto("GT", 23, 59.9999, "-", 0, 0), (QList<ScopeWrite>{{"RFFFF,FFFF", 0}}));
    try {
      EncodeGoto(QStringLiteral("GT"), 0, 0, QStringLiteral("+"), -5, 0);
      QFAIL("no error");
    } catch (const AppError& e) {
      QCOMPARE(e.number, 5);
    }
    QCOMPARE(Shown(ReplyDecode("ASC", "34ab,12cd#")), QStringLiteral("4|56.3|+|26|26"));
  }

  // Position fields from RA and Dec minutes (Dec south from 21600 down).
  void display_data() {
    QTest::addColumn<double>("raMinutes");
    QTest::addColumn<double>("decMinutes");
    QTest::addColumn<QString>("shown");
    QTest::newRow("59.96 rounds up to the hour") << 59.96 << 0.0 << "1|0|+|0|0";
    QTest::newRow("1439.96 wraps to 0") << 1439.96 << 0.0 << "0|0|+|0|0";
    QTest::newRow("half tenth to even") << 60.25 << 0.0 << "1|0.2|+|0|0";
    QTest::newRow("half circle is still north") << 0.0 << 10800.0 << "0|0|+|180|0";
    QTest::newRow("past half circle is south") << 0.0 << 10800.5 << "0|0|-|180|0";
    QTest::newRow("just south of 0") << 0.0 << 21599.9 << "0|0|-|0|0";
    QTest::newRow("dec minute 59.6 carries") << 0.0 << 659.6 << "0|0|+|11|0";
  }
  void display() {
    QFETCH(double, raMinutes);
    QFETCH(double, decMinutes);
    QTEST(Shown(DisplayPosition(raMinutes, decMinutes)), "shown");
  }

  void route_data() {
    QTest::addColumn<QString>("commPort");
    QTest::addColumn<bool>("serial");
    QTest::addColumn<QString>("target");  // device, host:port, or INDI
    QTest::newRow("port 3 with letters after") << "3abc" << true << "/dev/ttyS2";
    QTest::newRow("HCD :port") << "HCD :4030" << false << "127.0.0.1:4030";
    QTest::newRow("zero") << "0" << false << "127.0.0.1:2000";
    QTest::newRow("INDI") << " indi " << false << "INDI";
  }
  void route() {
    QFETCH(QString, commPort);
    const ScopeRoute r = ScopeRoute::of(commPort);
    QTEST(r.serial, "serial");
    QTEST(r.indi     ? QStringLiteral("INDI")
          : r.serial ? r.device
                     : r.proxyHost + ':' + QString::number(r.proxyPort),
          "target");
  }

  void quickGotoCheck_data() {
    QTest::addColumn<QString>("typed");  // RA h m s, sign, Dec d m s
    QTest::addColumn<QString>("problem");
    const QString ra = QStringLiteral("Please enter a valid Right Ascension");
    const QString dec = QStringLiteral("Please enter a valid Declination");
    QTest::newRow("23 59 59.99") << "23|59|59.99|+|0|0|0" << "";
    QTest::newRow("23 59 60") << "23|59|60|+|0|0|0" << ra;
    QTest::newRow("hour 24") << "24|0|0|+|0|0|0" << ra;
    QTest::newRow("negative hour") << "-1|0|0|+|0|0|0" << ra;
    QTest::newRow("fraction of an hour passes") << "5.5|0|0|+|0|0|0" << "";
    QTest::newRow("south pole") << "0|0|0|-|90|0|0" << "";
    QTest::newRow("90 00 01") << "0|0|0|+|90|0|1" << dec;
    QTest::newRow("dec minutes 60") << "0|0|0|+|10|60|0" << dec;
    QTest::newRow("RA checked first") << "25|0|0|+|95|0|0" << ra;
    QTest::newRow("Dec seconds") << "5|34|30|-|12|30|30" << "";
  }
  void quickGotoCheck() {
    QFETCH(QString, typed);
    const QStringList t = typed.split('|');
    const QuickGotoCheck c = CheckQuickGoto({t[0], t[1], t[2], t[3], t[4], t[5], t[6]});
    QTEST(c.problem, "problem");
    // The hand control (tst_hhc) sends RA seconds and a flipped "+"; Dec seconds count too.
    if (t[6] == "30") QCOMPARE(c.target.decMin, 30.5);
  }

  void flipSign() { QCOMPARE(FlipDecSign("-") + FlipDecSign("x"), QStringLiteral("++")); }
};

QTEST_GUILESS_MAIN(TestScopeCodec)
#include "tst_scopecodec.moc"
