#include <QTest>

#include "core/apperror.h"
#include "scope/gotoflow.h"
#include "scope/scopecodec.h"
#include "scope/scopeport.h"
#include "scopetest.h"

namespace {

struct UnitsRow {
  double raH, raM;
  QString sign;
  double decD, decM;
  int ra, dec;
};
struct CommandsRow {
  QString family, sign;
  QList<ScopeWrite> slew, request;
};
struct RouteRow {
  QString commPort;
  bool serial;
  QString target;  // device, host:port, or INDI
};

QString decoded(const QString& family, const QByteArray& reply) {
  try {
    return Shown(ReplyDecode(family, reply));
  } catch (const AppError& e) {
    return QStringLiteral("error %1").arg(e.number);
  }
}

}  // namespace

class TestScopeCodec : public QObject {
  Q_OBJECT

 private slots:
  void units_data() {
    QTest::addColumn<UnitsRow>("row");
    QTest::newRow("worked north") << UnitsRow{5, 34.5, "+", 22, 1, 15223, 4008};
    QTest::newRow("worked south") << UnitsRow{5, 34.5, "-", 22, 1, 15223, 61527};
    QTest::newRow("south zero is a full circle") << UnitsRow{0, 0, "-", 0, 0, 0, 65535};
    QTest::newRow("pole one below a quarter") << UnitsRow{0, 0, "+", 90, 0, 0, 16383};
    QTest::newRow("last RA minute") << UnitsRow{23, 59.9999, "+", 0, 0, 65535, 0};
    QTest::newRow("blank sign is north") << UnitsRow{0, 0, "", 10, 0, 0, 1820};
    QTest::newRow("south takes degrees' size") << UnitsRow{0, 0, "-", -22, 1, 0, 61527};
  }
  void units() {
    QFETCH(UnitsRow, row);
    QCOMPARE(RAUnits(row.raH, row.raM), double(row.ra));
    QCOMPARE(DecUnits(row.sign, row.decD, row.decM), double(row.dec));
  }

  // The bytes of a slew to RA 05 34.5, Dec 22 01, and of a position request, where the
  // simulator cannot tell: an unknown family, and the BIG family's waits. Every family's bytes
  // reach the simulator in tst_scopelink.
  void commands_data() {
    QTest::addColumn<CommandsRow>("row");
    QTest::newRow("unknown code speaks hex")
        << CommandsRow{"XYZ", "+", {{"R3B77,0FA8", 0}}, {{"E", 0}}};
    QTest::newRow("BIG") << CommandsRow{"BIG", "+",
                                        {{"?", 250}, {"R" + QByteArray::fromHex("3B770FA8"), 0}},
                                        {{"?", 250}, {"E", 0}}};
  }
  void commands() {
    QFETCH(CommandsRow, row);
    QCOMPARE(EncodeGoto(row.family, 5, 34.5, row.sign, 22, 1), row.slew);
    QCOMPARE(PositionRequest(row.family), row.request);
  }

  void encodeOutOfRange() {
    // Nothing a byte cannot hold goes out: a negative north declination is refused.
    try {
      EncodeGoto(QStringLiteral("GT"), 0, 0, QStringLiteral("+"), -5, 0);
      QFAIL("no error");
    } catch (const AppError& e) {
      QCOMPARE(e.number, 5);
    }
    // The edge units go out whole.
    QCOMPARE(EncodeGoto(QStringLiteral("GT"), 23, 59.9999, QStringLiteral("-"), 0, 0),
             (QList<ScopeWrite>{{"RFFFF,FFFF", 0}}));
  }

  void display_data() {
    QTest::addColumn<double>("raMinutes");
    QTest::addColumn<double>("decMinutes");
    QTest::addColumn<QString>("shown");
    QTest::newRow("example") << 296.3 << 1586.3 << "4|56.3|+|26|26";
    QTest::newRow("59.96 rounds up to the hour") << 59.96 << 0.0 << "1|0|+|0|0";
    QTest::newRow("1439.96 wraps to 0") << 1439.96 << 0.0 << "0|0|+|0|0";
    QTest::newRow("59.94 stays") << 59.94 << 0.0 << "0|59.9|+|0|0";
    QTest::newRow("half tenth to even") << 60.25 << 0.0 << "1|0.2|+|0|0";
    QTest::newRow("pole") << 0.0 << 5400.0 << "0|0|+|90|0";
    QTest::newRow("half circle is still north") << 0.0 << 10800.0 << "0|0|+|180|0";
    QTest::newRow("past half circle is south") << 0.0 << 10800.5 << "0|0|-|180|0";
    QTest::newRow("just south of 0") << 0.0 << 21599.9 << "0|0|-|0|0";
    QTest::newRow("dec minute 59.6 carries") << 0.0 << 659.6 << "0|0|+|11|0";
    QTest::newRow("south") << 0.0 << 20279.0 << "0|0|-|22|1";
  }
  void display() {
    QFETCH(double, raMinutes);
    QFETCH(double, decMinutes);
    QFETCH(QString, shown);
    QCOMPARE(Shown(DisplayPosition(raMinutes, decMinutes)), shown);
  }

  void decode_data() {
    QTest::addColumn<QString>("family");
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QString>("shown");
    const QString worked = QStringLiteral("5|34.5|+|22|1"), example = "4|56.3|+|26|26";
    QTest::newRow("hex example") << "GT" << QByteArray("34AB,12CD#") << example;
    QTest::newRow("hex lower case") << "ASC" << QByteArray("34ab,12cd#") << example;
    QTest::newRow("hex garbage reads 0") << "GPS" << QByteArray("ZQ?!,GX*%#") << "0|0|+|0|0";
    QTest::newRow("hex absent pairs read 0") << "I" << QByteArray("34") << "4|52.5|+|0|0";
    QTest::newRow("hex top values") << "CGE" << QByteArray("FFFF,FFFF#") << "0|0|-|0|0";
    QTest::newRow("ULTIMA shifted by one") << "ULTIMA" << QByteArray("E34AB,12CD\r") << example;
    QTest::newRow("BIG offset 1") << "BIG" << "#" + QByteArray::fromHex("3B770FA8") << worked;
    QTest::newRow("OLDGT offset 0") << "OLDGT" << QByteArray::fromHex("3B7755F05766")
                                    << "5|34.5|-|22|1";
    QTest::newRow("TASCO five bytes") << "TASCO" << QByteArray::fromHex("3B77000FA8") << worked;
    // Binary replies too short to hold a position.
    QTest::newRow("BIG four bytes") << "BIG" << "#" + QByteArray::fromHex("3B770F") << "error 5";
    QTest::newRow("OLDGT two bytes") << "OLDGT" << QByteArray::fromHex("3B77") << "error 5";
    QTest::newRow("TASCO four bytes") << "TASCO" << QByteArray::fromHex("3B77000F") << "error 5";
  }
  void decode() {
    QFETCH(QString, family);
    QFETCH(QByteArray, reply);
    QFETCH(QString, shown);
    QCOMPARE(decoded(family, reply), shown);
  }

  void route_data() {
    QTest::addColumn<RouteRow>("row");
    QTest::newRow("port 1") << RouteRow{"1", true, "/dev/ttyS0"};
    QTest::newRow("port 3 with letters after") << RouteRow{"3abc", true, "/dev/ttyS2"};
    QTest::newRow("device path") << RouteRow{"/dev/pts/4", true, "/dev/pts/4"};
    QTest::newRow("HCD") << RouteRow{"HCD", false, "127.0.0.1:2000"};
    QTest::newRow("HCD host:port") << RouteRow{"HCD 192.168.1.9:4030", false, "192.168.1.9:4030"};
    QTest::newRow("HCD :port") << RouteRow{"HCD :4030", false, "127.0.0.1:4030"};
    QTest::newRow("zero") << RouteRow{"0", false, "127.0.0.1:2000"};
    QTest::newRow("letters first") << RouteRow{"COM1", false, "127.0.0.1:2000"};
    QTest::newRow("INDI") << RouteRow{" indi ", false, "INDI"};
  }
  void route() {
    QFETCH(RouteRow, row);
    const ScopeRoute r = ScopeRoute::of(row.commPort);
    QCOMPARE(r.serial, row.serial);
    QCOMPARE(r.indi     ? QStringLiteral("INDI")
             : r.serial ? r.device
                        : r.proxyHost + ':' + QString::number(r.proxyPort),
             row.target);
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
    QTest::newRow("letters and blanks read 0") << "x|y||+|q||s" << "";
  }
  void quickGotoCheck() {
    QFETCH(QString, typed);
    QFETCH(QString, problem);
    const QStringList t = typed.split('|');
    QCOMPARE(CheckQuickGoto({t[0], t[1], t[2], t[3], t[4], t[5], t[6]}).problem, problem);
  }

  void quickGotoTargetAndSign() {
    const QuickGotoTarget t = CheckQuickGoto({"23", "59", "59.99", "-", "12", "30", "30"}).target;
    QCOMPARE(t.raHour, 23.0);
    QVERIFY(qAbs(t.raMin - 59.999833) < 1e-6);
    QCOMPARE(t.decSign, QStringLiteral("-"));
    QCOMPARE(t.decMin, 30.5);
    const QStringList flipped{FlipDecSign("+"), FlipDecSign("-"), FlipDecSign(""), FlipDecSign("x")};
    QCOMPARE(flipped, (QStringList{"-", "+", "+", "+"}));
  }

  void alertText() {
    const QString text = QStringLiteral(
        "This object is at an altitude of %1, %2 your %3 altitude limit of %4.\n"
        "Override and Goto anyway?");
    QCOMPARE(AltitudeAlertText(12.5, 20, true), text.arg(" 12.5", "below", "minimum", " 20"));
    QCOMPARE(AltitudeAlertText(-0.5, 0, true), text.arg("-.5", "below", "minimum", " 0"));
    QCOMPARE(AltitudeAlertText(85, 80, false), text.arg(" 85", "above", "maximum", " 80"));
  }
};

QTEST_GUILESS_MAIN(TestScopeCodec)
#include "tst_scopecodec.moc"
