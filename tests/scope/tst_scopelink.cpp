#include <QElapsedTimer>
#include <QTest>

#include "scope/scopecodec.h"
#include "scope/scopecontrol.h"
#include "support/scopesim.h"
#include "support/testenv.h"

namespace {

const QString kReminder = QStringLiteral(
    "After the slew is complete, you must press an arrow button on the hand control\n"
    "before the next GoTo to prevent hand control lockup.");

QString show(const std::optional<PositionFields>& f) {
  if (!f) return QStringLiteral("nothing");
  return QStringList{f->txtRAHour, f->txtRAMin, f->txtDecSign, f->txtDecDeg, f->txtDecMin}.join('|');
}

QByteArray bytes(std::initializer_list<int> values) {
  QByteArray b;
  for (int v : values) b.append(static_cast<char>(v));
  return b;
}

}  // namespace

class TestScopeLink : public QObject {
  Q_OBJECT

 private slots:
  // For each family, a slew then a read-back over a real pseudo-terminal: the telescope gets
  // exactly the family's bytes and the read-back shows the target again.
  void gotoThenReadBack_data() {
    QTest::addColumn<QString>("family");
    QTest::addColumn<QString>("sign");
    QTest::addColumn<QByteArray>("expectedBytes");
    QTest::addColumn<QString>("shown");
    const QString north = QStringLiteral("5|34.5|+|22|1");
    const QString south = QStringLiteral("5|34.5|-|22|1");
    QTest::newRow("GT") << "GT" << "+" << QByteArray("R3B77,0FA8E") << north;
    QTest::newRow("I") << "I" << "-" << QByteArray("R3B77,F057E") << south;
    QTest::newRow("GPS") << "GPS" << "+" << QByteArray("R3B77,0FA8E") << north;
    QTest::newRow("CGE") << "CGE" << "-" << QByteArray("R3B77,F057E") << south;
    QTest::newRow("ASC") << "ASC" << "+" << QByteArray("R3B77,0FA8E") << north;
    QTest::newRow("ULTIMA") << "ULTIMA" << "-" << QByteArray("R3B77,F057\rE\r") << south;
    QTest::newRow("BIG") << "BIG" << "+"
                         << QByteArray("?R") + bytes({0x3B, 0x77, 0x0F, 0xA8}) + "?E" << north;
    QTest::newRow("OLDGT") << "OLDGT" << "-"
                           << QByteArray("R") + bytes({0x3B, 0x77, 0, 0xF0, 0x57, 0}) + "E"
                           << south;
    QTest::newRow("TASCO") << "TASCO" << "+"
                           << QByteArray("R") + bytes({0x3B, 0x77, 0, 0x0F, 0xA8, 0}) + "E"
                           << north;
  }
  void gotoThenReadBack() {
    QFETCH(QString, family);
    QFETCH(QString, sign);
    QFETCH(QByteArray, expectedBytes);
    QFETCH(QString, shown);
    ScopeSim sim;
    QVERIFY(sim.start(family));
    TestEnv env;
    env.state->settings.ScopeType = family;
    env.state->settings.CommPort = sim.address;
    ScopeLink link;

    QVERIFY(ScopeGoto(*env.state, link, 5, 34.5, sign, 22, 1));
    const bool reminder = family == "OLDGT" || family == "TASCO";
    QCOMPARE(env.prompter.texts(), reminder ? QStringList{kReminder} : QStringList{});
    if (reminder) QCOMPARE(env.prompter.entries[0].title, QStringLiteral("Reminder"));

    QCOMPARE(show(ReadScopePosition(*env.state, link)), shown);
    QCOMPARE(env.prompter.entries.size(), reminder ? 1 : 0);
    QCOMPARE(sim.received(), expectedBytes);
    QCOMPARE(sim.stop(), 0);
  }

  void edgeUnitsReachTheTelescope() {
    ScopeSim sim;
    QVERIFY(sim.start(QStringLiteral("GT")));
    TestEnv env;
    env.state->settings.CommPort = sim.address;
    ScopeLink link;
    QVERIFY(ScopeGoto(*env.state, link, 23, 59.9999, QStringLiteral("-"), 0, 0));
    QVERIFY(ScopeGoto(*env.state, link, 0, 0, QStringLiteral("+"), 90, 0));
    QCOMPARE(sim.received(), QByteArray("RFFFF,FFFFR0000,3FFF"));
  }

  void relayRoute() {
    ScopeSim sim;
    QVERIFY(sim.start(QStringLiteral("GPS"), QStringLiteral("normal"), true));
    QVERIFY(sim.address.startsWith(QStringLiteral("HCD 127.0.0.1:")));
    TestEnv env;
    env.state->settings.ScopeType = QStringLiteral("GPS");
    env.state->settings.CommPort = sim.address;
    ScopeLink link;
    QVERIFY(ScopeGoto(*env.state, link, 5, 34.5, QStringLiteral("+"), 22, 1));
    QElapsedTimer t;
    t.start();
    QCOMPARE(show(ReadScopePosition(*env.state, link)), QStringLiteral("5|34.5|+|22|1"));
    QVERIFY2(t.elapsed() < 900, "the relay read has no one-second wait");
    QVERIFY(env.prompter.entries.isEmpty());
    QCOMPARE(sim.received(), QByteArray("R3B77,0FA8E"));
  }

  // Failure paths: the stated messages, and nothing waits longer than a few seconds.
  void failures_data() {
    QTest::addColumn<QString>("family");
    QTest::addColumn<QString>("mode");  // simulator mode, "none" for no simulator, "relay-*"
    QTest::addColumn<QString>("commPort");  // used when there is no simulator
    QTest::addColumn<bool>("gotoResult");
    QTest::addColumn<QStringList>("gotoTexts");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QStringList>("readTexts");
    const QString missing = QStringLiteral("/dev/tavorine-no-such-port");
    const QString noPort = ScopeTrapText(
        PortOpenFailureText({PortOpenProblem::Missing, missing, FoundSerialPorts(), {}, {}, false, {}}));
    const QString closed = QStringLiteral(
        "Unable to communicate with the scope -\nOperation valid only when the port is open");
    const QString plain = QStringLiteral("Unable to communicate with the scope");
    const QString relay = QStringLiteral("Unable to communicate with hcAnywhere");

    QTest::newRow("no such device, hex") << "GT" << "none" << missing << false
                                         << QStringList{noPort, closed} << "nothing"
                                         << QStringList{noPort};
    QTest::newRow("no such device, BIG writes twice")
        << "BIG" << "none" << missing << false << QStringList{noPort, closed, closed} << "nothing"
        << QStringList{noPort};
    QTest::newRow("no such device, TASCO still reminds")
        << "TASCO" << "none" << missing << false << QStringList{noPort, closed, kReminder}
        << "nothing" << QStringList{noPort};
    QTest::newRow("ULTIMA has no relay route") << "ULTIMA" << "none" << "HCD" << false
                                               << QStringList{closed} << "nothing"
                                               << QStringList{closed};
    QTest::newRow("relay not running") << "GT" << "none" << "HCD 127.0.0.1:%1" << false
                                       << QStringList{relay} << "nothing"
                                       << QStringList{relay, plain};
    QTest::newRow("relay link down") << "GT" << "relay-down" << "" << false << QStringList{relay}
                                     << "nothing" << QStringList{relay, plain};
    QTest::newRow("relay silent") << "GT" << "relay-silent" << "" << false << QStringList{relay}
                                  << "nothing" << QStringList{relay, plain};
    QTest::newRow("silent telescope") << "GT" << "silent" << "" << true << QStringList{}
                                      << "nothing" << QStringList{plain};
    QTest::newRow("silent binary telescope") << "OLDGT" << "silent" << "" << true
                                             << QStringList{kReminder} << "nothing"
                                             << QStringList{plain};
    QTest::newRow("garbage reads as zeros") << "ASC" << "garbage" << "" << true << QStringList{}
                                            << "0|0|+|0|0" << QStringList{};
    QTest::newRow("short hex reply, absent pairs read 0")
        << "GT" << "short" << "" << true << QStringList{} << "1|1.9|+|0|0" << QStringList{};
    QTest::newRow("short BIG reply is silent") << "BIG" << "short" << "" << true << QStringList{}
                                               << "nothing" << QStringList{};
    QTest::newRow("short OLDGT reply is silent") << "OLDGT" << "short" << "" << true
                                                 << QStringList{kReminder} << "nothing"
                                                 << QStringList{};
  }
  void failures() {
    QFETCH(QString, family);
    QFETCH(QString, mode);
    QFETCH(QString, commPort);
    QFETCH(bool, gotoResult);
    QFETCH(QStringList, gotoTexts);
    QFETCH(QString, shown);
    QFETCH(QStringList, readTexts);

    ScopeSim sim;
    TestEnv env;
    env.state->settings.ScopeType = family;
    if (mode == "none") {
      env.state->settings.CommPort = commPort.arg(UnusedPort());
    } else {
      const bool relay = mode.startsWith(QStringLiteral("relay-"));
      QVERIFY(sim.start(family, relay ? mode.mid(6) : mode, relay));
      env.state->settings.CommPort = sim.address;
    }
    ScopeLink link;
    link.proxyTimeoutMs = 500;

    QElapsedTimer t;
    t.start();
    QCOMPARE(ScopeGoto(*env.state, link, 1, 2, QStringLiteral("+"), 3, 4), gotoResult);
    QCOMPARE(env.prompter.texts(), gotoTexts);
    for (const auto& e : env.prompter.entries)
      QCOMPARE(e.title, e.text == kReminder ? QStringLiteral("Reminder") : QStringLiteral("Error"));
    env.prompter.clear();
    QCOMPARE(show(ReadScopePosition(*env.state, link)), shown);
    QCOMPARE(env.prompter.texts(), readTexts);
    for (const auto& e : env.prompter.entries) QCOMPARE(e.title, QStringLiteral("Error"));
    QVERIFY2(t.elapsed() < 5000, qPrintable(QString::number(t.elapsed())));
  }

  // A port that will not open says why and what to do.
  void portOpenTexts_data() {
    QTest::addColumn<int>("fault");
    QTest::addColumn<bool>("pending");
    QTest::addColumn<QStringList>("ports");
    QTest::addColumn<QString>("text");
    const QString setup = QStringLiteral("\nChoose the port in Tools, Setup.");
    QTest::newRow("missing, others found")
        << int(PortOpenProblem::Missing) << false << QStringList{"/dev/ttyS0", "/dev/ttyUSB1"}
        << "There is no port /dev/ttyUSB0 on this computer.\nPorts found: /dev/ttyS0, "
           "/dev/ttyUSB1." + setup;
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
    QFETCH(QString, text);
    QCOMPARE(PortOpenFailureText({PortOpenProblem::Fault(fault), "/dev/ttyUSB0", ports, "dialout",
                                  "ann", pending, {}}),
             text);
  }

  // A telescope port another program holds is reported as busy, not as missing.
  void portInUse() {
    ScopeSim sim;
    QVERIFY(sim.start(QStringLiteral("GT")));
    ScopeLink link;
    const auto holder = link.makePort(sim.address);
    holder->open();
    TestEnv env;
    env.state->settings.CommPort = sim.address;
    QVERIFY(!ReadScopePosition(*env.state, link));
    QCOMPARE(env.prompter.texts(),
             QStringList{ScopeTrapText(PortOpenFailureText({PortOpenProblem::Busy, sim.address, {}, {}, {}, false, {}}))});
  }

  // What a slew leaves in the line is emptied before the next read.
  void leftoversAreDropped() {
    ScopeSim sim;
    QVERIFY(sim.start(QStringLiteral("TASCO")));
    TestEnv env;
    env.state->settings.ScopeType = QStringLiteral("TASCO");
    env.state->settings.CommPort = sim.address;
    ScopeLink link;
    QVERIFY(ScopeGoto(*env.state, link, 12, 0, QStringLiteral("-"), 45, 30));
    QVERIFY(ScopeGoto(*env.state, link, 18, 30, QStringLiteral("+"), 60, 15));
    QCOMPARE(show(ReadScopePosition(*env.state, link)), QStringLiteral("18|30|+|60|15"));
  }

  void waitIsTimedAndReportsBusy() {
    QList<bool> calls;
    QElapsedTimer t;
    t.start();
    WaitMs(120.4, [&](bool on) { calls << on; });
    QVERIFY(t.elapsed() >= 115);
    QVERIFY(t.elapsed() < 1000);
    QCOMPARE(calls, (QList<bool>{true, false}));
  }

  void simulatorStopsCleanly() {
    ScopeSim sim;
    QVERIFY(sim.start(QStringLiteral("GT")));
    QVERIFY(sim.address.startsWith('/'));
    QCOMPARE(sim.stop(), 0);
  }
};

QTEST_GUILESS_MAIN(TestScopeLink)
#include "tst_scopelink.moc"
