#include <QTest>
#include <cmath>

#include "core/apperror.h"
#include "scope/gotoflow.h"
#include "scope/scopecontrol.h"
#include "sky/skycalc.h"
#include "support/scopesim.h"
#include "support/testenv.h"

namespace {

const QString kScopeTrap = QStringLiteral("Unable to communicate with the scope -\n");

// A position a little off the zenith of the default site at the test clock: altitude 90.0.
SkyPosition nearZenith(const AppState& state) {
  const double lst = std::fmod(std::fmod(SiderealDegreesNow(state), 360) + 360, 360);
  const double raHours = std::floor(lst / 15);
  return SkyPosition::of(raHours, (lst / 15 - raHours) * 60, QStringLiteral("+"), 26, 21.2);
}

// The altitude alert at the zenith (its wording is checked with the encoder's tests).
QString alert(const char* side, int limit) { return AltitudeAlertText(90, limit, side[0] == 'b'); }

// A GT telescope on a pseudo-terminal, and a state pointing at it with limits 0 to 90.
struct Rig {
  ScopeSim sim;
  TestEnv env;
  ScopeLink link;
  AppState& s = *env.state;
  bool start(bool limits = true) {
    s.settings.ScopeType = QStringLiteral("GT");
    s.settings.UseAltLimit = limits;
    s.settings.MinAlt = 0;
    s.settings.MaxAlt = 90;
    if (!sim.start(QStringLiteral("GT"))) return false;
    s.settings.CommPort = sim.address;
    return true;
  }
  bool slewed() { return sim.received().startsWith('R'); }
};

struct GuardRow {
  bool useLimits;
  int minAlt, maxAlt;
  bool answerYes;
  QString question;
  bool sent;
};

}  // namespace

class TestGotoFlow : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase() {
    TestEnv env;
    QCOMPARE(AltitudeNow(*env.state, nearZenith(*env.state)), 90.0);
  }

  // What Quick GoTo refuses, and what a panel's trap shows when starting the position timers
  // fails: nothing goes to the telescope.
  void quickGotoRefused_data() {
    QTest::addColumn<QString>("typed");  // RA h m s, sign, Dec d m s
    QTest::addColumn<bool>("mainWindow");
    QTest::addColumn<int>("timerError");
    QTest::addColumn<QString>("text");
    const QString fine = QStringLiteral("1|0|0|+|0|0|0");
    QTest::newRow("RA") << "23|59|60|+|0|0|0" << true << 0
                        << "Please enter a valid Right Ascension";
    QTest::newRow("Dec") << "1|0|0|-|90|0|1" << false << 0 << "Please enter a valid Declination";
    QTest::newRow("5 on the main window")
        << fine << true << 5 << kScopeTrap + "Invalid procedure call or argument";
    QTest::newRow("5 on the hand control") << fine << false << 5 << "";
    QTest::newRow("6 on the hand control") << fine << false << 6 << kScopeTrap + "Overflow";
  }
  void quickGotoRefused() {
    QFETCH(QString, typed);
    QFETCH(bool, mainWindow);
    QFETCH(int, timerError);
    QFETCH(QString, text);
    Rig rig;
    QVERIFY(rig.start(false));
    const QStringList t = typed.split('|');
    bool timers = false;
    QVERIFY(!QuickGoto(rig.s, rig.link, {t[0], t[1], t[2], t[3], t[4], t[5], t[6]},
                       mainWindow ? GotoPanel::MainWindow : GotoPanel::HandControl, [&] {
                         timers = true;
                         throw AppError::of(timerError);
                       }));
    QCOMPARE(timers, timerError != 0);
    QCOMPARE(rig.env.prompter.texts(), text.isEmpty() ? QStringList{} : QStringList{text});
    for (const auto& e : rig.env.prompter.entries) QCOMPARE(e.title, QStringLiteral("Error"));
    QVERIFY(rig.sim.received().isEmpty());
  }

  void guard_data() {
    QTest::addColumn<GuardRow>("row");
    QTest::newRow("limits off") << GuardRow{false, 91, 95, true, "", true};
    QTest::newRow("maximum is inclusive") << GuardRow{true, 0, 90, true, "", true};
    QTest::newRow("minimum is inclusive") << GuardRow{true, 90, 90, true, "", true};
    QTest::newRow("above, yes") << GuardRow{true, 0, 89, true, alert("above", 89), true};
    QTest::newRow("above, no") << GuardRow{true, 0, 89, false, alert("above", 89), false};
    QTest::newRow("below, no") << GuardRow{true, 91, 95, false, alert("below", 91), false};
  }
  void guard() {
    QFETCH(GuardRow, row);
    Rig rig;
    QVERIFY(rig.start(row.useLimits));
    rig.s.settings.MinAlt = static_cast<qint16>(row.minAlt);
    rig.s.settings.MaxAlt = static_cast<qint16>(row.maxAlt);
    rig.env.prompter.answer(row.answerYes ? Prompter::Answer::Yes : Prompter::Answer::No);
    int timers = 0;
    const SkyPosition p = nearZenith(rig.s);
    QCOMPARE(QuickGoto(rig.s, rig.link,
                       {p.raHours, p.raMinutes, "0", p.decSign, p.decDegrees, p.decMinutes, "0"},
                       GotoPanel::MainWindow, [&] { ++timers; }),
             row.sent);
    QCOMPARE(rig.env.prompter.texts(),
             row.question.isEmpty() ? QStringList{} : QStringList{row.question});
    for (const auto& e : rig.env.prompter.entries)
      QVERIFY(e.question && e.title == QStringLiteral("Altitude Alert!"));
    QCOMPARE(timers, row.sent ? 1 : 0);
    QCOMPARE(rig.slewed(), row.sent);
  }

  void listGoto_data() {
    QTest::addColumn<QString>("situation");
    QTest::addColumn<bool>("marked");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("no record") << "empty" << false << QStringList{};
    QTest::newRow("declined") << "decline" << false << QStringList{alert("above", 80)};
    QTest::newRow("slew failed")
        << "nodevice" << false
        << QStringList{kScopeTrap + PortOpenFailureText({PortOpenProblem::Missing,
                                                         "/dev/tavorine-no-such-port",
                                                         FoundSerialPorts(), {}, {}, false, {}}),
                       kScopeTrap + "Operation valid only when the port is open"};
    QTest::newRow("relay down: not marked")
        << "norelay" << false << QStringList{"Unable to communicate with hcAnywhere"};
    QTest::newRow("sent") << "ok" << true << QStringList{};
    QTest::newRow("commit fails") << "readonly" << false
                                  << QStringList{kScopeTrap +
                                                 "Cannot update. Database or object is read-only."};
    QTest::newRow("row unreadable") << "norow" << false
                                    << QStringList{kScopeTrap + "No current record."};
    QTest::newRow("error 5 is silent") << "err5" << false << QStringList{};
  }
  void listGoto() {
    QFETCH(QString, situation);
    QFETCH(bool, marked);
    QFETCH(QStringList, texts);
    Rig rig;
    QVERIFY(rig.start());
    if (situation == "decline") {
      rig.s.settings.MaxAlt = 80;
      rig.env.prompter.answer(Prompter::Answer::No);
    }
    if (situation == "nodevice") rig.s.settings.CommPort = "/dev/tavorine-no-such-port";
    if (situation == "norelay") rig.s.settings.CommPort = QString("HCD 127.0.0.1:%1").arg(UnusedPort());
    const SkyPosition target = nearZenith(rig.s);
    int marks = 0, timers = 0;
    const bool result = ListGoto(
        rig.s, rig.link,
        [&]() -> std::optional<SkyPosition> {
          if (situation == "empty") return std::nullopt;
          if (situation == "norow") throw AppError::of(ErrNo::NoCurrentRecord);
          if (situation == "err5") throw AppError::of(ErrNo::InvalidCall);
          return target;
        },
        [&] {
          if (situation == "readonly")
            throw AppError(ErrNo::Database, "Cannot update. Database or object is read-only.");
          ++marks;
        },
        [&] { ++timers; });
    QCOMPARE(result, marked);
    QCOMPARE(marks, marked ? 1 : 0);
    QCOMPARE(rig.env.prompter.texts(), texts);
    for (const auto& e : rig.env.prompter.entries)
      if (!e.question) QCOMPARE(e.title, QStringLiteral("Error"));
    QCOMPARE(rig.slewed(), situation == "ok" || situation == "readonly");
  }

  // The row's fields go by their leading numbers: without limits no altitude is computed (12
  // minutes north goes out), and with them a blank minutes field is 0, not "Invalid
  // Coordinates".
  void listRowText() {
    for (const bool limits : {false, true}) {
      Rig rig;
      QVERIFY(rig.start(limits));
      const SkyPosition row = limits ? SkyPosition{nearZenith(rig.s).raHours, "", "+", "26", " "}
                                     : SkyPosition{"abc", "", "", "x", "12 junk"};
      QVERIFY(ListGoto(rig.s, rig.link, [&] { return std::optional<SkyPosition>(row); }, {}));
      QCOMPARE(rig.env.prompter.texts(), QStringList{});
      if (!limits) QCOMPARE(rig.sim.received(), QByteArray("R0000,0024"));
    }
  }

  void handControlGoto() {
    Rig rig;
    QVERIFY(rig.start(false));
    QVERIFY(HandControlGoto(rig.s, rig.link, [] { return SkyPosition{"5", "34.5", "-", "22", "1"}; }));
    QVERIFY(!HandControlGoto(rig.s, rig.link,
                             []() -> SkyPosition { throw AppError::of(ErrNo::InvalidCall); }));
    QVERIFY(rig.env.prompter.entries.isEmpty());
    QCOMPARE(rig.sim.received(), QByteArray("R3B77,F057"));
  }
};

QTEST_GUILESS_MAIN(TestGotoFlow)
#include "tst_gotoflow.moc"
