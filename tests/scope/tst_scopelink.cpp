#include <QElapsedTimer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QThread>

#include "core/apperror.h"
#include "scope/chartlink.h"
#include "scopetest.h"

namespace {

const QString kReminder = QStringLiteral(
    "After the slew is complete, you must press an arrow button on the hand control\n"
    "before the next GoTo to prevent hand control lockup.");

struct FailureRow {
  QString family;
  QString target;  // the simulator's mode ("relay-" for the relay route), or a Comm Port
  bool gotoResult;
  QStringList gotoTexts;
  QString shown;
  QStringList readTexts;
};

// A planetarium server on the test's thread (the link runs on one of its own): sends
// `greeting` to each caller, records each line it receives and answers it with `answer`; a
// null greeting hangs up at once.
struct ChartServer : QTcpServer {
  QStringList lines;
  ChartServer(const QByteArray& greeting, const QByteArray& answer) {
    listen(QHostAddress::LocalHost);
    connect(this, &QTcpServer::newConnection, [=] {
      QTcpSocket* s = nextPendingConnection();
      if (greeting.isNull()) return s->close();
      s->write(greeting);
      connect(s, &QTcpSocket::readyRead, [=] {
        while (s->canReadLine()) {
          lines << QString::fromLatin1(s->readLine()).trimmed();
          s->write(answer);
        }
      });
    });
  }
};

const QStringList kCentring{"SETRA RA:5h34m00.00s", "SETDEC DEC:-22d1m00s", "SETFOV FOV:+5d00m00s",
                            "REDRAW"};

}  // namespace

// The link to the telescope, its encoding's edges that neither the simulator runs below nor
// the reply fuzz harness reach, and the link to the planetarium.
class TestScopeLink : public QObject {
  Q_OBJECT

 private slots:
  void units() {
    QCOMPARE(DecUnits("+", 90, 0), 16383.0);  // one below a quarter
    QCOMPARE(DecUnits("", 10, 0), 1820.0);  // a blank sign is north
    QCOMPARE(DecUnits("-", -22, 1), 61527.0);  // south takes the degrees' size
  }

  // An unknown family, the BIG family's waits, a reply in lower case.
  void encoding() {
    QCOMPARE(EncodeGoto("XYZ", 5, 34.5, "+", 22, 1), (QList<ScopeWrite>{{"R3B77,0FA8", 0}}));
    QCOMPARE(PositionRequest("XYZ"), (QList<ScopeWrite>{{"E", 0}}));
    const QList<ScopeWrite> big{{"?", 250}, {"R" + QByteArray::fromHex("3B770FA8"), 0}};
    QCOMPARE(EncodeGoto("BIG", 5, 34.5, "+", 22, 1), big);
    QCOMPARE(PositionRequest("BIG"), (QList<ScopeWrite>{{"?", 250}, {"E", 0}}));
    // The edge units go out whole; nothing a byte cannot hold goes out.
    QCOMPARE(EncodeGoto("GT", 23, 59.9999, "-", 0, 0), (QList<ScopeWrite>{{"RFFFF,FFFF", 0}}));
    QVERIFY_THROWS_EXCEPTION(AppError, EncodeGoto("GT", 0, 0, "+", -5, 0));
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
    QTest::addColumn<QString>("target");  // serial device, relay host:port, or INDI
    QTest::newRow("port 3 with letters after") << "3abc" << "/dev/ttyS2";
    QTest::newRow("HCD :port") << "HCD :4030" << "127.0.0.1:4030";
    QTest::newRow("zero") << "0" << "127.0.0.1:2000";
    QTest::newRow("INDI") << " indi " << "INDI";
  }
  void route() {
    QFETCH(QString, commPort);
    const ScopeRoute r = ScopeRoute::of(commPort);
    QTEST(r.indi     ? QStringLiteral("INDI")
          : r.serial ? r.device
                     : r.proxyHost + ':' + QString::number(r.proxyPort),
          "target");
  }

  // For each family, a slew then a read-back over a real pseudo-terminal (or the relay): the
  // telescope gets exactly the family's bytes and the read-back shows the target again. A
  // serial read waits (with the hourglass) for the reply; a relay read returns on the reply's
  // "#", with no fixed wait and long before its time limit.
  void gotoThenReadBack_data() {
    QTest::addColumn<QString>("family");
    QTest::addColumn<QString>("sign");
    QTest::addColumn<bool>("relay");
    QTest::addColumn<int>("waits");
    QTest::addColumn<QByteArray>("expectedBytes");
    QTest::newRow("GT") << "GT" << "+" << false << 1 << QByteArray("R3B77,0FA8E");
    QTest::newRow("GPS over the relay") << "GPS" << "+" << true << 0 << QByteArray("R3B77,0FA8E");
    QTest::newRow("ULTIMA") << "ULTIMA" << "-" << false << 1 << QByteArray("R3B77,F057\rE\r");
    QTest::newRow("BIG") << "BIG" << "+" << false << 2
                         << "?R" + QByteArray::fromHex("3B770FA8") + "?E";
    QTest::newRow("OLDGT") << "OLDGT" << "-" << false << 1
                           << "R" + QByteArray::fromHex("3B7700F05700") + "E";
    QTest::newRow("TASCO") << "TASCO" << "+" << false << 1
                           << "R" + QByteArray::fromHex("3B77000FA800") + "E";
  }
  void gotoThenReadBack() {
    QFETCH(QString, family);
    QFETCH(QString, sign);
    QFETCH(bool, relay);
    QFETCH(int, waits);
    QFETCH(QByteArray, expectedBytes);
    SimRig rig;
    QVERIFY(rig.start(family, QStringLiteral("normal"), relay));
    rig.link.proxyTimeoutMs = 20000;
    QVERIFY(rig.slew(5, 34.5, qPrintable(sign), 22, 1));
    QString hourglass;
    rig.link.busy = [&](bool on) { hourglass += on ? '[' : ']'; };
    QElapsedTimer t;
    t.start();
    QCOMPARE(rig.read(), QStringLiteral("5|34.5|%1|22|1").arg(sign));
    QVERIFY2(t.elapsed() < 10000, "a read waited out its time limit");
    QCOMPARE(hourglass, QStringLiteral("[]").repeated(waits));
    const bool reminder = family == "OLDGT" || family == "TASCO";
    QCOMPARE(rig.env.prompter.texts(), reminder ? QStringList{kReminder} : QStringList{});
    QCOMPARE(rig.sim.received(), expectedBytes);
    QCOMPARE(rig.sim.stop(), 0);
  }

  // Failure paths: the stated messages, and nothing waits longer than a few seconds.
  void failures_data() {
    QTest::addColumn<FailureRow>("row");
    const QString missing = QStringLiteral("/dev/tavorine-no-such-port");
    const QString noPort = ScopeTrapText(PortOpenFailureText(
        {PortOpenProblem::Missing, missing, FoundSerialPorts(), {}, {}, false, {}}));
    const QString closed = QStringLiteral(
        "Unable to communicate with the scope -\nOperation valid only when the port is open");
    const QString plain = QStringLiteral("Unable to communicate with the scope");
    const QString relay = QStringLiteral("Unable to communicate with hcAnywhere");
    const QString none = QStringLiteral("nothing");

    QTest::newRow("no such device, BIG writes twice")
        << FailureRow{"BIG", missing, false, {noPort, closed, closed}, none, {noPort}};
    QTest::newRow("no such device, TASCO still reminds")
        << FailureRow{"TASCO", missing, false, {noPort, closed, kReminder}, none, {noPort}};
    QTest::newRow("ULTIMA has no relay route")
        << FailureRow{"ULTIMA", "HCD", false, {closed}, none, {closed}};
    QTest::newRow("relay silent")
        << FailureRow{"GT", "relay-silent", false, {relay}, none, {relay, plain}};
    QTest::newRow("silent telescope") << FailureRow{"GT", "silent", true, {}, none, {plain}};
    QTest::newRow("garbage reads as zeros")
        << FailureRow{"ASC", "garbage", true, {}, "0|0|+|0|0", {}};
    QTest::newRow("short hex reply, absent pairs read 0")
        << FailureRow{"GT", "short", true, {}, "1|1.9|+|0|0", {}};
    QTest::newRow("short BIG reply is silent") << FailureRow{"BIG", "short", true, {}, none, {}};
  }
  void failures() {
    QFETCH(FailureRow, row);
    SimRig rig;
    if (row.target.startsWith('/') || row.target.startsWith(QLatin1String("HCD"))) {
      rig.s.settings.ScopeType = row.family;
      rig.s.settings.CommPort = row.target;
    } else {
      const bool relay = row.target.startsWith(QLatin1String("relay-"));
      QVERIFY(rig.start(row.family, relay ? row.target.mid(6) : row.target, relay));
    }
    rig.link.proxyTimeoutMs = 500;

    QElapsedTimer t;
    t.start();
    QCOMPARE(rig.slew(1, 2, "+", 3, 4), row.gotoResult);
    QCOMPARE(rig.env.prompter.texts(), row.gotoTexts);
    QCOMPARE(rig.read(), row.shown);
    QCOMPARE(rig.env.prompter.texts(), row.gotoTexts + row.readTexts);
    for (const auto& e : rig.env.prompter.entries)
      QCOMPARE(e.title, e.text == kReminder ? QStringLiteral("Reminder") : QStringLiteral("Error"));
    QVERIFY2(t.elapsed() < 5000, qPrintable(QString::number(t.elapsed())));
  }

  // A port that will not open says why and what to do.
  void portOpenTexts_data() {
    QTest::addColumn<int>("fault");
    QTest::addColumn<bool>("pending");
    QTest::addColumn<QStringList>("ports");
    QTest::addColumn<QString>("text");
    QTest::newRow("missing, others found")
        << int(PortOpenProblem::Missing) << false << QStringList{"/dev/ttyS0", "/dev/ttyUSB1"}
        << "There is no port /dev/ttyUSB0 on this computer.\nPorts found: /dev/ttyS0, "
           "/dev/ttyUSB1.\nChoose the port in Tools, Setup.";
    QTest::newRow("not in the group")
        << int(PortOpenProblem::NoPermission) << false << QStringList{}
        << "You may not use /dev/ttyUSB0: only members of the group dialout may.\nAdd yourself "
           "to it with the command\n    sudo usermod -aG dialout ann\nthen log out and log in "
           "again.";
    QTest::newRow("in the group since this login")
        << int(PortOpenProblem::NoPermission) << true << QStringList{}
        << "You were added to the group dialout, which may use /dev/ttyUSB0, after this session "
           "began.\nLog out and log in again (or restart the computer), then try again.";
  }
  void portOpenTexts() {
    QFETCH(int, fault);
    QFETCH(bool, pending);
    QFETCH(QStringList, ports);
    QTEST(PortOpenFailureText({PortOpenProblem::Fault(fault), "/dev/ttyUSB0", ports, "dialout",
                               "ann", pending, {}}),
          "text");
  }

  // A telescope port another program holds is reported as busy, not as missing.
  void portInUse() {
    SimRig rig;
    QVERIFY(rig.start(QStringLiteral("GT")));
    const auto holder = rig.link.makePort(rig.sim.address);
    holder->open();
    QCOMPARE(rig.read(), QStringLiteral("nothing"));
    QCOMPARE(rig.env.prompter.texts(),
             QStringList{ScopeTrapText(PortOpenFailureText(
                 {PortOpenProblem::Busy, rig.sim.address, {}, {}, {}, false, {}}))});
  }

  // The rounded minutes carry into the next unit, RA wraps at 24h, a blank sign is left out.
  void chartCommands_data() {
    QTest::addColumn<QList<double>>("p");  // RA h, m, Dec d, m
    QTest::addColumn<QString>("sign");
    QTest::addColumn<QString>("sent");  // SETRA|SETDEC
    QTest::newRow("minutes carry") << QList<double>{12, 59.6, 44, 59.5} << "+"
                                   << "SETRA RA:13h0m00.00s|SETDEC DEC:+45d0m00s";
    QTest::newRow("blank sign") << QList<double>{12, 58.6, 0, 35.5} << " "
                                << "SETRA RA:12h59m00.00s|SETDEC DEC:0d36m00s";
    QTest::newRow("24h wraps") << QList<double>{23, 59.7, 89, 59.9} << "-"
                               << "SETRA RA:0h0m00.00s|SETDEC DEC:-90d0m00s";
  }
  void chartCommands() {
    QFETCH(QList<double>, p);
    QFETCH(QString, sign);
    QTEST(ChartServerCommands(p[0], p[1], sign, p[2], p[3], 5).mid(0, 2).join('|'), "sent");
  }

  void moveChart_data() {
    QTest::addColumn<QByteArray>("greeting");  // null: hangs up; "-": nothing listens
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QStringList>("received");
    QTest::addColumn<QString>("message");
    const QString cdc = QStringLiteral("Unable to communicate with CDC -");
    const QByteArray ok("OK!\r\n");
    QTest::newRow("greeted first") << QByteArray("OK! id=1 chart=Chart_1\r\n") << ok << kCentring
                                   << "";
    QTest::newRow("news passed over") << QByteArray("") << ">Chart_1 selected object\r\n" + ok
                                      << kCentring << "";
    QTest::newRow("refused")
        << QByteArray("") << QByteArray("Failed!\r\n") << kCentring.mid(0, 1)
        << cdc + "Foreign application won't perform DDE method or operation - 285";
    QTest::newRow("no answer") << QByteArray("") << QByteArray() << kCentring.mid(0, 1)
                               << cdc + "Timeout while waiting for DDE response - 286";
    QTest::newRow("hangs up") << QByteArray() << QByteArray() << QStringList{}
                              << cdc + "Foreign application quit - 291";
    QTest::newRow("nothing listening") << QByteArray("-") << QByteArray() << QStringList{}
                                       << "Start CDC before using this feature.";
  }
  void moveChart() {
    QFETCH(QByteArray, greeting);
    QFETCH(QByteArray, answer);
    QFETCH(QString, message);
    ChartServer server(greeting, answer);
    TestEnv env;
    ScopeLink link;
    link.chartPort = greeting == "-" ? UnusedPort() : server.serverPort();
    link.chartTimeoutMs = 500;
    bool result = false;
    std::unique_ptr<QThread> client(QThread::create(
        [&] { result = MoveChart(*env.state, link, 5, 34.5, "-", 22, 1, 5); }));
    client->start();
    const auto join = qScopeGuard([&] { client->wait(); });
    QTRY_VERIFY_WITH_TIMEOUT(client->isFinished(), 3000);
    QCOMPARE(result, message.isEmpty());
    QTEST(server.lines, "received");
    QCOMPARE(env.prompter.texts(), message.isEmpty() ? QStringList{} : QStringList{message});
    for (const auto& e : env.prompter.entries) QCOMPARE(e.title, QStringLiteral("Error"));
  }
};

QTEST_GUILESS_MAIN(TestScopeLink)
#include "tst_scopelink.moc"
