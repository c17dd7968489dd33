#include <QElapsedTimer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QThread>
#include <cmath>

#include "core/apperror.h"
#include "scope/chartlink.h"
#include "scope/gotoflow.h"
#include "scopetest.h"

namespace {

const QString kReminder = QStringLiteral(
    "After the slew is complete, you must press an arrow button on the hand control\n"
    "before the next GoTo to prevent hand control lockup.");

struct LinkRow {
  QString family;
  QString target;  // the simulator's mode ("relay-" for the relay route), or a Comm Port
  const char* sign;
  bool sent;
  QStringList gotoTexts;
  QString shown;
  QStringList readTexts;
  QByteArray bytes;  // all the telescope received, checked where not null
};

// A planetarium server: greets, records each line and answers it; a null greeting hangs up.
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

const QString kScopeTrap = QStringLiteral("Unable to communicate with the scope -\n");
const QString kReadOnly = QStringLiteral("Cannot update. Database or object is read-only.");

// A position a little off the zenith of the default site at the test clock: altitude 90.0.
SkyPosition nearZenith(const AppState& state) {
  const double lst = std::fmod(std::fmod(SiderealDegreesNow(state), 360) + 360, 360);
  const double raHours = std::floor(lst / 15);
  return SkyPosition::of(raHours, (lst / 15 - raHours) * 60, QStringLiteral("+"), 26, 21.2);
}

// A Quick GoTo: typed fields ("" for the zenith), limits (min above max for none), panel.
struct QuickRow {
  QString typed;
  int minAlt, maxAlt;
  bool answerYes, mainWindow;
  int timerError;  // raised where the position timers start
  QStringList texts;
  bool sent;
};

}  // namespace

// The link to the telescope and its GoTo flows (the windows' slews are their own tests'), and
// to the planetarium.
class TestScopeLink : public QObject {
  Q_OBJECT

 private slots:
  void units() {
    QCOMPARE(DecUnits("+", 90, 0), 16383.0);   // one below a quarter
    QCOMPARE(DecUnits("-", -22, 1), 61527.0);  // south takes the degrees' size
  }

  // The BIG family's waits, the edge units, a reply in lower case.
  void encoding() {
    const QList<ScopeWrite> big{{"?", 250}, {"R" + QByteArray::fromHex("3B770FA8"), 0}};
    QCOMPARE(EncodeGoto("BIG", 5, 34.5, "+", 22, 1), big);
    QCOMPARE(PositionRequest("BIG"), (QList<ScopeWrite>{{"?", 250}, {"E", 0}}));
    // Nothing a byte cannot hold goes out.
    QCOMPARE(EncodeGoto("GT", 23, 59.9999, "-", 0, 0), (QList<ScopeWrite>{{"RFFFF,FFFF", 0}}));
    QVERIFY_THROWS_EXCEPTION(AppError, EncodeGoto("GT", 0, 0, "+", -5, 0));
    QCOMPARE(Shown(ReplyDecode("ASC", "34ab,12cd#")), QStringLiteral("4|56.3|+|26|26"));
  }

  // Position fields from RA and Dec minutes (Dec south from 21600 down).
  // clang-format off
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
  // clang-format on
  void display() {
    QFETCH(double, raMinutes);
    QFETCH(double, decMinutes);
    QTEST(Shown(DisplayPosition(raMinutes, decMinutes)), "shown");
  }

  // clang-format off
  void route_data() {
    QTest::addColumn<QString>("commPort");
    QTest::addColumn<QString>("target");  // serial device or relay host:port
    QTest::newRow("port 3 with letters after") << "3abc" << "/dev/ttyS2";
    QTest::newRow("HCD :port") << "HCD :4030" << "127.0.0.1:4030";
    QTest::newRow("zero") << "0" << "127.0.0.1:2000";
  }
  // clang-format on
  void route() {
    QFETCH(QString, commPort);
    const ScopeRoute r = ScopeRoute::of(commPort);
    QTEST(r.serial ? r.device : r.proxyHost + ':' + QString::number(r.proxyPort), "target");
  }

  // Each family's bytes over a pseudo-terminal (or the relay) and read back, then the failures
  // and their messages. A serial read waits with the hourglass; a relay read returns on the
  // reply's "#"; nothing waits longer than a few seconds.
  // clang-format off
  void exchanges_data() {
    QTest::addColumn<LinkRow>("row");
    const QString n = QStringLiteral("normal");
    const QString missing = QStringLiteral("/dev/tavorine-no-such-port");
    const QString noPort = ScopeTrapText(PortOpenFailureText(
        {PortOpenProblem::Missing, missing, FoundSerialPorts(), {}, {}, false, {}}));
    const QString closed = kScopeTrap + "Operation valid only when the port is open";
    const QString plain = QStringLiteral("Unable to communicate with the scope");
    const QString relay = QStringLiteral("Unable to communicate with hcAnywhere");
    const QString none = QStringLiteral("nothing");
    const QString target = QStringLiteral("5|34.5|+|22|1"), south = QStringLiteral("5|34.5|-|22|1");

    QTest::newRow("GT") << LinkRow{"GT", n, "+", true, {}, target, {}, "R3B77,0FA8E"};
    QTest::newRow("GPS over the relay")
        << LinkRow{"GPS", "relay-normal", "+", true, {}, target, {}, "R3B77,0FA8E"};
    QTest::newRow("ULTIMA") << LinkRow{"ULTIMA", n, "-", true, {}, south, {}, "R3B77,F057\rE\r"};
    QTest::newRow("BIG") << LinkRow{"BIG", n, "+", true, {}, target, {},
                                    "?R" + QByteArray::fromHex("3B770FA8") + "?E"};
    QTest::newRow("OLDGT") << LinkRow{"OLDGT", n, "-", true, {kReminder}, south, {},
                                      "R" + QByteArray::fromHex("3B7700F05700") + "E"};
    QTest::newRow("TASCO") << LinkRow{"TASCO", n, "+", true, {kReminder}, target, {},
                                      "R" + QByteArray::fromHex("3B77000FA800") + "E"};
    QTest::newRow("no such device, BIG writes twice")
        << LinkRow{"BIG", missing, "+", false, {noPort, closed, closed}, none, {noPort}, {}};
    QTest::newRow("no such device, TASCO still reminds")
        << LinkRow{"TASCO", missing, "+", false, {noPort, closed, kReminder}, none, {noPort}, {}};
    QTest::newRow("ULTIMA has no relay route")
        << LinkRow{"ULTIMA", "HCD", "+", false, {closed}, none, {closed}, {}};
    QTest::newRow("relay silent")
        << LinkRow{"GT", "relay-silent", "+", false, {relay}, none, {relay, plain}, {}};
    QTest::newRow("silent telescope") << LinkRow{"GT", "silent", "+", true, {}, none, {plain}, {}};
    QTest::newRow("garbage reads as zeros")
        << LinkRow{"ASC", "garbage", "+", true, {}, "0|0|+|0|0", {}, {}};
    QTest::newRow("short hex reply, absent pairs read 0")
        << LinkRow{"GT", "short", "+", true, {}, "5|31.9|+|0|0", {}, {}};
    QTest::newRow("short BIG reply is silent")
        << LinkRow{"BIG", "short", "+", true, {}, none, {}, {}};
  }
  // clang-format on
  void exchanges() {
    QFETCH(LinkRow, row);
    SimRig rig;
    if (row.target.startsWith('/') || row.target.startsWith(QLatin1String("HCD"))) {
      rig.s.settings.ScopeType = row.family;
      rig.s.settings.CommPort = row.target;
    } else {
      const bool relay = row.target.startsWith(QLatin1String("relay-"));
      QVERIFY(rig.start(row.family, relay ? row.target.mid(6) : row.target, relay));
    }
    // A relay that answers is never waited out: its limit is far past the one below.
    rig.link.proxyTimeoutMs = row.target == "relay-normal" ? 20000 : 500;
    QString hourglass;

    QElapsedTimer t;
    t.start();
    QCOMPARE(rig.slew(5, 34.5, row.sign, 22, 1), row.sent);
    QCOMPARE(rig.env.prompter.texts(), row.gotoTexts);
    rig.link.busy = [&](bool on) { hourglass += on ? '[' : ']'; };
    QCOMPARE(rig.read(), row.shown);
    QCOMPARE(rig.env.prompter.texts(), row.gotoTexts + row.readTexts);
    for (const auto& e : rig.env.prompter.entries)
      QCOMPARE(e.title, e.text == kReminder ? QStringLiteral("Reminder") : QStringLiteral("Error"));
    QVERIFY2(t.elapsed() < 5000, qPrintable(QString::number(t.elapsed())));
    if (row.bytes.isNull()) return;
    const int waits = row.target != "normal" ? 0 : row.family == "BIG" ? 2 : 1;
    QCOMPARE(hourglass, QStringLiteral("[]").repeated(waits));
    QVERIFY(t.elapsed() >= (waits ? 1250 : 250));  // the slew's wait, and a serial read's
    QCOMPARE(rig.sim.received(), row.bytes);
    QCOMPARE(rig.sim.stop(), 0);
  }

  // A port that will not open says why and what to do.
  // clang-format off
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
  // clang-format on
  void portOpenTexts() {
    QFETCH(int, fault);
    QFETCH(bool, pending);
    QFETCH(QStringList, ports);
    QTEST(
        PortOpenFailureText(
            {PortOpenProblem::Fault(fault), "/dev/ttyUSB0", ports, "dialout", "ann", pending, {}}),
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

  // The typed checks, the guard at the zenith, a panel's trap when the timers fail to start.
  // clang-format off
  void quickGoto_data() {
    QTest::addColumn<QuickRow>("row");
    const QString fine = QStringLiteral("1|0|0|+|0|0|0");
    const QString alert = QStringLiteral(
        "This object is at an altitude of  90, %1 altitude limit of  %2.\nOverride and Goto "
        "anyway?");
    const QString above = alert.arg("above your maximum", "89");
    const QString below = alert.arg("below your minimum", "91");
    const QStringList ra{"Please enter a valid Right Ascension"};
    const QStringList dec{"Please enter a valid Declination"};
    // Seconds count as sixtieths of a minute.
    QTest::newRow("23 59 59.99") << QuickRow{"23|59|59.99|+|0|0|0", 1, 0, true, true, 0, {}, true};
    QTest::newRow("23 59 60") << QuickRow{"23|59|60|+|0|0|0", 1, 0, true, true, 0, ra, false};
    QTest::newRow("hour 24") << QuickRow{"24|0|0|+|0|0|0", 1, 0, true, true, 0, ra, false};
    QTest::newRow("south pole") << QuickRow{"0|0|0|-|90|0|0", 1, 0, true, true, 0, {}, true};
    QTest::newRow("90 00 01") << QuickRow{"0|0|0|+|90|0|1", 1, 0, true, true, 0, dec, false};
    QTest::newRow("10 59 60") << QuickRow{"0|0|0|+|10|59|60", 1, 0, true, true, 0, dec, false};
    QTest::newRow("5 on the main window") << QuickRow{
        fine, 1, 0, true, true, 5, {kScopeTrap + "Invalid procedure call or argument"}, false};
    QTest::newRow("5 on the hand control") << QuickRow{fine, 1, 0, true, false, 5, {}, false};
    QTest::newRow("limits off") << QuickRow{"", 1, 0, true, true, 0, {}, true};
    QTest::newRow("maximum is inclusive") << QuickRow{"", 0, 90, true, true, 0, {}, true};
    QTest::newRow("minimum is inclusive") << QuickRow{"", 90, 90, true, true, 0, {}, true};
    QTest::newRow("above, yes") << QuickRow{"", 0, 89, true, true, 0, {above}, true};
    QTest::newRow("below, no") << QuickRow{"", 91, 95, false, true, 0, {below}, false};
  }
  // clang-format on
  void quickGoto() {
    QFETCH(QuickRow, row);
    SimRig rig;  // a telescope only where a slew is due: any other slew fails aloud
    rig.s.settings.UseAltLimit = row.minAlt <= row.maxAlt;
    rig.s.settings.CommPort = QStringLiteral("/dev/tavorine-no-such-port");
    if (row.sent) QVERIFY(rig.start(QStringLiteral("GT")));
    rig.s.settings.MinAlt = static_cast<qint16>(row.minAlt);
    rig.s.settings.MaxAlt = static_cast<qint16>(row.maxAlt);
    rig.env.prompter.answer(row.answerYes ? Prompter::Answer::Yes : Prompter::Answer::No);
    const SkyPosition p = nearZenith(rig.s);
    const QStringList t =
        row.typed.isEmpty()
            ? QStringList{p.raHours, p.raMinutes, "0", p.decSign, p.decDegrees, p.decMinutes, "0"}
            : row.typed.split('|');
    int timers = 0;
    QCOMPARE(QuickGoto(rig.s, rig.link, {t[0], t[1], t[2], t[3], t[4], t[5], t[6]},
                       row.mainWindow ? GotoPanel::MainWindow : GotoPanel::HandControl,
                       [&] {
                         ++timers;
                         if (row.timerError) throw AppError::of(row.timerError);
                       }),
             row.sent);
    QCOMPARE(rig.env.prompter.texts(), row.texts);
    for (const auto& e : rig.env.prompter.entries)
      QCOMPARE(e.title, e.question ? QStringLiteral("Altitude Alert!") : QStringLiteral("Error"));
    QCOMPARE(timers, row.sent || row.timerError ? 1 : 0);
    QCOMPARE(rig.sim.received().startsWith('R'), row.sent);
  }

  // A list row's fields go by their leading numbers (a blank minutes field is 0, not "Invalid
  // Coordinates"); the row is marked only after a slew.
  // clang-format off
  void listGoto_data() {
    QTest::addColumn<QString>("situation");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("text in the fields, no limits") << "text" << QStringList{};
    QTest::newRow("blank minutes under the limits") << "blank" << QStringList{};
    QTest::newRow("commit fails") << "readonly" << QStringList{kScopeTrap + kReadOnly};
    QTest::newRow("error 5 is silent") << "err5" << QStringList{};
    QTest::newRow("hand control: error 5 is silent too") << "hand control" << QStringList{};
  }
  // clang-format on
  void listGoto() {
    QFETCH(QString, situation);
    QFETCH(QStringList, texts);
    SimRig rig;
    rig.s.settings.UseAltLimit = situation != "text";
    QVERIFY(rig.start(QStringLiteral("GT")));
    const SkyPosition target = nearZenith(rig.s);
    int marks = 0;
    auto row = [&]() -> std::optional<SkyPosition> {
      if (situation == "text") return SkyPosition{"abc", "", "", "x", "12 junk"};
      if (situation == "blank") return SkyPosition{target.raHours, "", "+", "26", " "};
      if (situation == "err5" || situation == "hand control")
        throw AppError::of(ErrNo::InvalidCall);
      return target;
    };
    auto mark = [&] {
      if (situation == "readonly") throw AppError(ErrNo::Database, kReadOnly);
      ++marks;
    };
    const bool marked = situation == "hand control"
                            ? HandControlGoto(rig.s, rig.link, [&] { return *row(); })
                            : ListGoto(rig.s, rig.link, row, mark);
    QCOMPARE(marked, situation == "text" || situation == "blank");
    QCOMPARE(marks, int(marked));
    QCOMPARE(rig.env.prompter.texts(), texts);
    for (const auto& e : rig.env.prompter.entries) QCOMPARE(e.title, QStringLiteral("Error"));
    QCOMPARE(rig.sim.received().startsWith('R'), marked || situation == "readonly");
    if (situation == "text") QCOMPARE(rig.sim.received(), QByteArray("R0000,0024"));
  }

  void flipSign() { QCOMPARE(FlipDecSign("-") + FlipDecSign("x"), QStringLiteral("++")); }

  // The rounded minutes carry into the next unit, RA wraps at 24h, a blank sign is left out.
  // clang-format off
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
  // clang-format on
  void chartCommands() {
    QFETCH(QList<double>, p);
    QFETCH(QString, sign);
    QTEST(ChartServerCommands(p[0], p[1], sign, p[2], p[3], 5).mid(0, 2).join('|'), "sent");
  }

  // clang-format off
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
  // clang-format on
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
    std::unique_ptr<QThread> client(
        QThread::create([&] { result = MoveChart(*env.state, link, 5, 34.5, "-", 22, 1, 5); }));
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
