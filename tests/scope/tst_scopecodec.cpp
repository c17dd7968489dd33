#include <QTest>

#include "core/apperror.h"
#include "scope/chartlink.h"
#include "scope/gotoflow.h"
#include "scope/scopecodec.h"
#include "scope/scopeport.h"

Q_DECLARE_METATYPE(PositionFields)

namespace {

QByteArray bytes(std::initializer_list<int> values) {
  QByteArray b;
  for (int v : values) b.append(static_cast<char>(v));
  return b;
}

PositionFields fields(const char* h, const char* m, const char* s, const char* d, const char* dm) {
  return {QString::fromLatin1(h), QString::fromLatin1(m), QString::fromLatin1(s),
          QString::fromLatin1(d), QString::fromLatin1(dm)};
}

QString show(const PositionFields& f) {
  return QStringList{f.txtRAHour, f.txtRAMin, f.txtDecSign, f.txtDecDeg, f.txtDecMin}.join('|');
}

}  // namespace

class TestScopeCodec : public QObject {
  Q_OBJECT

 private slots:
  void units_data() {
    QTest::addColumn<double>("raH");
    QTest::addColumn<double>("raM");
    QTest::addColumn<QString>("sign");
    QTest::addColumn<double>("decD");
    QTest::addColumn<double>("decM");
    QTest::addColumn<int>("ra");
    QTest::addColumn<int>("dec");
    QTest::newRow("worked north") << 5.0 << 34.5 << "+" << 22.0 << 1.0 << 15223 << 4008;
    QTest::newRow("worked south") << 5.0 << 34.5 << "-" << 22.0 << 1.0 << 15223 << 61527;
    QTest::newRow("south zero is a full circle") << 0.0 << 0.0 << "-" << 0.0 << 0.0 << 0 << 65535;
    QTest::newRow("pole one below a quarter") << 0.0 << 0.0 << "+" << 90.0 << 0.0 << 0 << 16383;
    QTest::newRow("last RA minute") << 23.0 << 59.9999 << "+" << 0.0 << 0.0 << 65535 << 0;
    QTest::newRow("blank sign is north") << 0.0 << 0.0 << "" << 10.0 << 0.0 << 0 << 1820;
    QTest::newRow("south takes degrees' size") << 0.0 << 0.0 << "-" << -22.0 << 1.0 << 0 << 61527;
  }
  void units() {
    QFETCH(double, raH);
    QFETCH(double, raM);
    QFETCH(QString, sign);
    QFETCH(double, decD);
    QFETCH(double, decM);
    QFETCH(int, ra);
    QFETCH(int, dec);
    QCOMPARE(RAUnits(raH, raM), double(ra));
    QCOMPARE(DecUnits(sign, decD, decM), double(dec));
  }

  void encode_data() {
    QTest::addColumn<QString>("family");
    QTest::addColumn<QString>("sign");
    QTest::addColumn<QList<QByteArray>>("writes");
    QTest::addColumn<QList<int>>("waits");
    const QList<QByteArray> hex{"R3B77,0FA8"};
    for (const char* f : {"GT", "I", "GPS", "CGE", "ASC"})
      QTest::newRow(f) << f << "+" << hex << QList<int>{0};
    QTest::newRow("unknown code speaks hex") << "XYZ" << "+" << hex << QList<int>{0};
    QTest::newRow("GT south") << "GT" << "-" << QList<QByteArray>{"R3B77,F057"} << QList<int>{0};
    QTest::newRow("ULTIMA") << "ULTIMA" << "+" << QList<QByteArray>{"R3B77,0FA8\r"}
                            << QList<int>{0};
    QTest::newRow("BIG") << "BIG" << "+"
                         << QList<QByteArray>{"?", QByteArray("R") + bytes({0x3B, 0x77, 0x0F, 0xA8})}
                         << QList<int>{250, 0};
    QTest::newRow("OLDGT") << "OLDGT" << "+"
                           << QList<QByteArray>{QByteArray("R") +
                                                bytes({0x3B, 0x77, 0, 0x0F, 0xA8, 0})}
                           << QList<int>{0};
    QTest::newRow("TASCO south") << "TASCO" << "-"
                                 << QList<QByteArray>{QByteArray("R") +
                                                      bytes({0x3B, 0x77, 0, 0xF0, 0x57, 0})}
                                 << QList<int>{0};
  }
  void encode() {
    QFETCH(QString, family);
    QFETCH(QString, sign);
    QFETCH(QList<QByteArray>, writes);
    QFETCH(QList<int>, waits);
    const QList<ScopeWrite> got = EncodeGoto(family, 5, 34.5, sign, 22, 1);
    QCOMPARE(got.size(), writes.size());
    for (int i = 0; i < got.size(); ++i) {
      QCOMPARE(got[i].bytes, writes[i]);
      QCOMPARE(got[i].waitAfterMs, waits[i]);
    }
  }

  void encodeOutOfRange() {
    // Nothing a byte cannot hold goes out: a negative north declination is refused.
    try {
      EncodeGoto(QStringLiteral("GT"), 0, 0, QStringLiteral("+"), -5, 0);
      QFAIL("no error");
    } catch (const AppError& e) {
      QCOMPARE(e.number, 5);
    }
    QCOMPARE(HexGotoText(65535, 0), QByteArray("RFFFF,0000"));
  }

  void display_data() {
    QTest::addColumn<double>("raMinutes");
    QTest::addColumn<double>("decMinutes");
    QTest::addColumn<PositionFields>("expected");
    QTest::newRow("example") << 296.3 << 1586.3 << fields("4", "56.3", "+", "26", "26");
    QTest::newRow("59.96 rounds up to the hour") << 59.96 << 0.0 << fields("1", "0", "+", "0", "0");
    QTest::newRow("1439.96 wraps to 0") << 1439.96 << 0.0 << fields("0", "0", "+", "0", "0");
    QTest::newRow("59.94 stays") << 59.94 << 0.0 << fields("0", "59.9", "+", "0", "0");
    QTest::newRow("half tenth to even") << 60.25 << 0.0 << fields("1", "0.2", "+", "0", "0");
    QTest::newRow("pole") << 0.0 << 5400.0 << fields("0", "0", "+", "90", "0");
    QTest::newRow("half circle is still north") << 0.0 << 10800.0 << fields("0", "0", "+", "180", "0");
    QTest::newRow("past half circle is south") << 0.0 << 10800.5 << fields("0", "0", "-", "180", "0");
    QTest::newRow("just south of 0") << 0.0 << 21599.9 << fields("0", "0", "-", "0", "0");
    QTest::newRow("dec minute 59.6 carries") << 0.0 << 659.6 << fields("0", "0", "+", "11", "0");
    QTest::newRow("south") << 0.0 << 20279.0 << fields("0", "0", "-", "22", "1");
  }
  void display() {
    QFETCH(double, raMinutes);
    QFETCH(double, decMinutes);
    QFETCH(PositionFields, expected);
    QCOMPARE(show(DisplayPosition(raMinutes, decMinutes)), show(expected));
  }

  void decode_data() {
    QTest::addColumn<QString>("family");
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<PositionFields>("expected");
    QTest::newRow("hex example") << "GT" << QByteArray("34AB,12CD#")
                                 << fields("4", "56.3", "+", "26", "26");
    QTest::newRow("hex lower case") << "ASC" << QByteArray("34ab,12cd#")
                                    << fields("4", "56.3", "+", "26", "26");
    QTest::newRow("hex garbage reads 0") << "GPS" << QByteArray("ZQ?!,GX*%#")
                                         << fields("0", "0", "+", "0", "0");
    QTest::newRow("hex absent pairs read 0") << "I" << QByteArray("34")
                                             << fields("4", "52.5", "+", "0", "0");
    QTest::newRow("hex top values") << "CGE" << QByteArray("FFFF,FFFF#")
                                    << fields("0", "0", "-", "0", "0");
    QTest::newRow("ULTIMA shifted by one") << "ULTIMA" << QByteArray("E34AB,12CD\r")
                                           << fields("4", "56.3", "+", "26", "26");
    QTest::newRow("BIG offset 1") << "BIG" << (QByteArray("#") + bytes({0x3B, 0x77, 0x0F, 0xA8}))
                                  << fields("5", "34.5", "+", "22", "1");
    QTest::newRow("OLDGT offset 0") << "OLDGT" << bytes({0x3B, 0x77, 0x55, 0xF0, 0x57, 0x66})
                                    << fields("5", "34.5", "-", "22", "1");
    QTest::newRow("TASCO five bytes") << "TASCO" << bytes({0x3B, 0x77, 0, 0x0F, 0xA8})
                                      << fields("5", "34.5", "+", "22", "1");
  }
  void decode() {
    QFETCH(QString, family);
    QFETCH(QByteArray, reply);
    QFETCH(PositionFields, expected);
    QCOMPARE(show(ReplyDecode(family, reply)), show(expected));
  }

  void shortBinaryReply_data() {
    QTest::addColumn<QString>("family");
    QTest::addColumn<QByteArray>("reply");
    QTest::newRow("BIG four bytes") << "BIG" << QByteArray("#\x3B\x77\x0F");
    QTest::newRow("OLDGT two bytes") << "OLDGT" << QByteArray("\x3B\x77");
    QTest::newRow("TASCO four bytes") << "TASCO" << QByteArray("\x3B\x77\x00\x0F", 4);
  }
  void shortBinaryReply() {
    QFETCH(QString, family);
    QFETCH(QByteArray, reply);
    try {
      ReplyDecode(family, reply);
      QFAIL("no error");
    } catch (const AppError& e) {
      QCOMPARE(e.number, 5);
    }
  }

  void positionRequest() {
    QCOMPARE(PositionRequest("GT"), (QList<ScopeWrite>{{"E", 0}}));
    QCOMPARE(PositionRequest("ULTIMA"), (QList<ScopeWrite>{{"E\r", 0}}));
    QCOMPARE(PositionRequest("BIG"), (QList<ScopeWrite>{{"?", 250}, {"E", 0}}));
    QCOMPARE(PositionRequest("TASCO"), (QList<ScopeWrite>{{"E", 0}}));
  }

  void route_data() {
    QTest::addColumn<QString>("commPort");
    QTest::addColumn<bool>("serial");
    QTest::addColumn<QString>("target");  // device, or host:port
    QTest::newRow("port 1") << "1" << true << "/dev/ttyS0";
    QTest::newRow("port 3 with letters after") << "3abc" << true << "/dev/ttyS2";
    QTest::newRow("device path") << "/dev/pts/4" << true << "/dev/pts/4";
    QTest::newRow("HCD") << "HCD" << false << "127.0.0.1:2000";
    QTest::newRow("HCD host:port") << "HCD 192.168.1.9:4030" << false << "192.168.1.9:4030";
    QTest::newRow("HCD :port") << "HCD :4030" << false << "127.0.0.1:4030";
    QTest::newRow("zero") << "0" << false << "127.0.0.1:2000";
    QTest::newRow("letters first") << "COM1" << false << "127.0.0.1:2000";
    QTest::newRow("blank") << "" << false << "127.0.0.1:2000";
    QTest::newRow("INDI") << " indi " << false << "INDI";
  }
  void route() {
    QFETCH(QString, commPort);
    QFETCH(bool, serial);
    QFETCH(QString, target);
    const ScopeRoute r = ScopeRoute::of(commPort);
    QCOMPARE(r.serial, serial);
    QCOMPARE(r.indi ? QStringLiteral("INDI")
             : serial ? r.device
                      : r.proxyHost + ':' + QString::number(r.proxyPort),
             target);
  }

  void chartCommand_data() {
    QTest::addColumn<double>("raH");
    QTest::addColumn<double>("raM");
    QTest::addColumn<QString>("sign");
    QTest::addColumn<double>("decD");
    QTest::addColumn<double>("decM");
    QTest::addColumn<QByteArray>("command");
    QTest::newRow("worked") << 5.0 << 34.5 << "-" << 22.0 << 1.0
                            << QByteArray("MOVE RA:5h34m00.00s DEC:-22\xB0" "1'00\" FOV:+5\xB0" "00'00\"");
    QTest::newRow("59.6 carried into the hours") << 12.0 << 59.6 << "+" << 0.0 << 35.5
                                                 << QByteArray("MOVE RA:13h0m00.00s DEC:+0\xB0" "36'00\" FOV:+5\xB0" "00'00\"");
    QTest::newRow("blank sign") << 0.0 << 0.0 << "" << 41.0 << 16.0
                                << QByteArray("MOVE RA:0h0m00.00s DEC:41\xB0" "16'00\" FOV:+5\xB0" "00'00\"");
  }
  void chartCommand() {
    QFETCH(double, raH);
    QFETCH(double, raM);
    QFETCH(QString, sign);
    QFETCH(double, decD);
    QFETCH(double, decM);
    QFETCH(QByteArray, command);
    QCOMPARE(MoveChartCommand(raH, raM, sign, decD, decM, 5), command);
  }

  void quickGotoCheck_data() {
    QTest::addColumn<QStringList>("typed");  // RA h m s, sign, Dec d m s
    QTest::addColumn<QString>("problem");
    const QString ra = QStringLiteral("Please enter a valid Right Ascension");
    const QString dec = QStringLiteral("Please enter a valid Declination");
    QTest::newRow("plain") << QStringList{"5", "34", "30", "+", "22", "1", "0"} << "";
    QTest::newRow("blanks read 0") << QStringList{"", "", "", "", "", "", ""} << "";
    QTest::newRow("23 59 59.9") << QStringList{"23", "59", "59.9", "+", "0", "0", "0"} << "";
    QTest::newRow("23 59 59.99") << QStringList{"23", "59", "59.99", "+", "0", "0", "0"} << "";
    QTest::newRow("23 59 60") << QStringList{"23", "59", "60", "+", "0", "0", "0"} << ra;
    QTest::newRow("hour 24") << QStringList{"24", "0", "0", "+", "0", "0", "0"} << ra;
    QTest::newRow("negative hour") << QStringList{"-1", "0", "0", "+", "0", "0", "0"} << ra;
    QTest::newRow("fraction of an hour passes") << QStringList{"5.5", "0", "0", "+", "0", "0", "0"} << "";
    QTest::newRow("south pole") << QStringList{"0", "0", "0", "-", "90", "0", "0"} << "";
    QTest::newRow("90 00 01") << QStringList{"0", "0", "0", "+", "90", "0", "1"} << dec;
    QTest::newRow("91") << QStringList{"0", "0", "0", "+", "91", "0", "0"} << dec;
    QTest::newRow("dec minutes 60") << QStringList{"0", "0", "0", "+", "10", "60", "0"} << dec;
    QTest::newRow("RA checked first") << QStringList{"25", "0", "0", "+", "95", "0", "0"} << ra;
    QTest::newRow("letters read 0") << QStringList{"x", "y", "z", "+", "q", "r", "s"} << "";
  }
  void quickGotoCheck() {
    QFETCH(QStringList, typed);
    QFETCH(QString, problem);
    const QuickGotoFields f{typed[0], typed[1], typed[2], typed[3], typed[4], typed[5], typed[6]};
    QCOMPARE(CheckQuickGoto(f).problem, problem);
  }

  void quickGotoTarget() {
    const QuickGotoTarget t =
        CheckQuickGoto({"23", "59", "59.99", "-", "12", "30", "30"}).target;
    QCOMPARE(t.raHour, 23.0);
    QVERIFY(qAbs(t.raMin - 59.999833) < 1e-6);
    QCOMPARE(t.decSign, QStringLiteral("-"));
    QCOMPARE(t.decMin, 30.5);
  }

  void flipSign_data() {
    QTest::addColumn<QString>("sign");
    QTest::addColumn<QString>("flipped");
    QTest::newRow("plus") << "+" << "-";
    QTest::newRow("minus") << "-" << "+";
    QTest::newRow("blank") << "" << "+";
    QTest::newRow("other") << "x" << "+";
  }
  void flipSign() {
    QFETCH(QString, sign);
    QFETCH(QString, flipped);
    QCOMPARE(FlipDecSign(sign), flipped);
  }

  void alertText() {
    QCOMPARE(AltitudeAlertText(12.5, 20, true),
             QStringLiteral("This object is at an altitude of  12.5, below your minimum altitude "
                            "limit of  20.\nOverride and Goto anyway?"));
    QCOMPARE(AltitudeAlertText(-0.5, 0, true),
             QStringLiteral("This object is at an altitude of -.5, below your minimum altitude "
                            "limit of  0.\nOverride and Goto anyway?"));
    QCOMPARE(AltitudeAlertText(85, 80, false),
             QStringLiteral("This object is at an altitude of  85, above your maximum altitude "
                            "limit of  80.\nOverride and Goto anyway?"));
  }
};

QTEST_GUILESS_MAIN(TestScopeCodec)
#include "tst_scopecodec.moc"
