#include <QElapsedTimer>
#include <QTest>

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

}  // namespace

class TestScopeLink : public QObject {
  Q_OBJECT

 private slots:
  // For each family, a slew then a read-back over a real pseudo-terminal (or the relay): the
  // telescope gets exactly the family's bytes and the read-back shows the target again.
  void gotoThenReadBack_data() {
    QTest::addColumn<QString>("family");
    QTest::addColumn<QString>("sign");
    QTest::addColumn<bool>("relay");
    QTest::addColumn<QByteArray>("expectedBytes");
    QTest::newRow("GT") << "GT" << "+" << false << QByteArray("R3B77,0FA8E");
    QTest::newRow("GPS over the relay") << "GPS" << "+" << true << QByteArray("R3B77,0FA8E");
    QTest::newRow("ULTIMA") << "ULTIMA" << "-" << false << QByteArray("R3B77,F057\rE\r");
    QTest::newRow("BIG") << "BIG" << "+" << false << "?R" + QByteArray::fromHex("3B770FA8") + "?E";
    QTest::newRow("OLDGT") << "OLDGT" << "-" << false
                           << "R" + QByteArray::fromHex("3B7700F05700") + "E";
    QTest::newRow("TASCO") << "TASCO" << "+" << false
                           << "R" + QByteArray::fromHex("3B77000FA800") + "E";
  }
  void gotoThenReadBack() {
    QFETCH(QString, family);
    QFETCH(QString, sign);
    QFETCH(bool, relay);
    QFETCH(QByteArray, expectedBytes);
    SimRig rig;
    QVERIFY(rig.start(family, QStringLiteral("normal"), relay));
    QVERIFY(rig.slew(5, 34.5, qPrintable(sign), 22, 1));
    const bool reminder = family == "OLDGT" || family == "TASCO";
    QCOMPARE(rig.env.prompter.texts(), reminder ? QStringList{kReminder} : QStringList{});
    if (reminder) QCOMPARE(rig.env.prompter.entries[0].title, QStringLiteral("Reminder"));

    QElapsedTimer t;
    t.start();
    QCOMPARE(rig.read(), QStringLiteral("5|34.5|%1|22|1").arg(sign));
    if (relay) QVERIFY2(t.elapsed() < 900, "the relay read has no one-second wait");
    QCOMPARE(rig.env.prompter.entries.size(), reminder ? 1 : 0);
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
    for (const auto& e : rig.env.prompter.entries)
      QCOMPARE(e.title, e.text == kReminder ? QStringLiteral("Reminder") : QStringLiteral("Error"));
    rig.env.prompter.clear();
    QCOMPARE(rig.read(), row.shown);
    QCOMPARE(rig.env.prompter.texts(), row.readTexts);
    for (const auto& e : rig.env.prompter.entries) QCOMPARE(e.title, QStringLiteral("Error"));
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

  void waitIsTimedAndReportsBusy() {
    QList<bool> calls;
    QElapsedTimer t;
    t.start();
    WaitMs(120.4, [&](bool on) { calls << on; });
    QVERIFY(t.elapsed() >= 115 && t.elapsed() < 1000);
    QCOMPARE(calls, (QList<bool>{true, false}));
  }
};

QTEST_GUILESS_MAIN(TestScopeLink)
#include "tst_scopelink.moc"
