#include <QTest>
#include <cmath>

#include "core/apperror.h"
#include "scope/gotoflow.h"
#include "scope/scopecontrol.h"
#include "support/scopesim.h"
#include "sky/skycalc.h"
#include "support/testenv.h"

namespace {

const QString kScopeTrap = QStringLiteral("Unable to communicate with the scope -\n");

// A position a little off the zenith of the default site at the test clock: altitude 90.0.
SkyPosition nearZenith(const AppState& state) {
  const double lst = std::fmod(std::fmod(SiderealDegreesNow(state), 360) + 360, 360);
  const double raHours = std::floor(lst / 15);
  const double raMinutes = (lst / 15 - raHours) * 60;
  return SkyPosition::of(raHours, raMinutes, QStringLiteral("+"), 26, 21.2);
}

QuickGotoFields fieldsFor(const SkyPosition& p) {
  return {p.raHours, p.raMinutes, QStringLiteral("0"), p.decSign, p.decDegrees, p.decMinutes,
          QStringLiteral("0")};
}

// A GT telescope on a pseudo-terminal, and a state pointing at it.
struct Rig {
  ScopeSim sim;
  TestEnv env;
  ScopeLink link;
  bool start() {
    if (!sim.start(QStringLiteral("GT"))) return false;
    env.state->settings.ScopeType = QStringLiteral("GT");
    env.state->settings.CommPort = sim.address;
    env.state->settings.UseAltLimit = true;
    env.state->settings.MinAlt = 0;
    env.state->settings.MaxAlt = 90;
    return true;
  }
  AppState& state() { return *env.state; }
};

}  // namespace

class TestGotoFlow : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase() {
    TestEnv env;
    QCOMPARE(AltitudeNow(*env.state, nearZenith(*env.state)), 90.0);
  }

  void quickGotoRefused() {
    Rig rig;
    QVERIFY(rig.start());
    bool timers = false;
    QVERIFY(!QuickGoto(rig.state(), rig.link, {"23", "59", "60", "+", "0", "0", "0"},
                       GotoPanel::MainWindow, [&] { timers = true; }));
    QVERIFY(!QuickGoto(rig.state(), rig.link, {"1", "0", "0", "-", "90", "0", "1"},
                       GotoPanel::HandControl));
    QCOMPARE(rig.env.prompter.texts(),
             (QStringList{"Please enter a valid Right Ascension", "Please enter a valid Declination"}));
    QCOMPARE(rig.env.prompter.entries[0].title, QStringLiteral("Error"));
    QVERIFY(!timers);
    QVERIFY(rig.sim.received().isEmpty());
  }

  void guard_data() {
    QTest::addColumn<bool>("useLimits");
    QTest::addColumn<int>("minAlt");
    QTest::addColumn<int>("maxAlt");
    QTest::addColumn<bool>("answerYes");
    QTest::addColumn<QString>("question");
    QTest::addColumn<bool>("sent");
    const QString above = QStringLiteral(
        "This object is at an altitude of  90, above your maximum altitude limit of  89.\n"
        "Override and Goto anyway?");
    const QString below = QStringLiteral(
        "This object is at an altitude of  90, below your minimum altitude limit of  91.\n"
        "Override and Goto anyway?");
    QTest::newRow("limits off") << false << 91 << 95 << true << "" << true;
    QTest::newRow("maximum is inclusive") << true << 0 << 90 << true << "" << true;
    QTest::newRow("minimum is inclusive") << true << 90 << 90 << true << "" << true;
    QTest::newRow("above, yes") << true << 0 << 89 << true << above << true;
    QTest::newRow("above, no") << true << 0 << 89 << false << above << false;
    QTest::newRow("below, no") << true << 91 << 95 << false << below << false;
    QTest::newRow("below, yes") << true << 91 << 95 << true << below << true;
  }
  void guard() {
    QFETCH(bool, useLimits);
    QFETCH(int, minAlt);
    QFETCH(int, maxAlt);
    QFETCH(bool, answerYes);
    QFETCH(QString, question);
    QFETCH(bool, sent);
    Rig rig;
    QVERIFY(rig.start());
    rig.state().settings.UseAltLimit = useLimits;
    rig.state().settings.MinAlt = static_cast<qint16>(minAlt);
    rig.state().settings.MaxAlt = static_cast<qint16>(maxAlt);
    rig.env.prompter.answer(answerYes ? Prompter::Answer::Yes : Prompter::Answer::No);
    int timers = 0;
    const SkyPosition target = nearZenith(rig.state());
    QCOMPARE(QuickGoto(rig.state(), rig.link, fieldsFor(target), GotoPanel::MainWindow,
                       [&] { ++timers; }),
             sent);
    QCOMPARE(rig.env.prompter.texts(), question.isEmpty() ? QStringList{} : QStringList{question});
    if (!question.isEmpty()) {
      QCOMPARE(rig.env.prompter.entries[0].title, QStringLiteral("Altitude Alert!"));
      QVERIFY(rig.env.prompter.entries[0].question);
    }
    QCOMPARE(timers, sent ? 1 : 0);
    QCOMPARE(rig.sim.received().startsWith('R'), sent);
  }

  void listGoto_data() {
    QTest::addColumn<QString>("situation");
    QTest::addColumn<bool>("marked");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("no record") << "empty" << false << QStringList{};
    QTest::newRow("declined") << "decline" << false
                              << QStringList{"This object is at an altitude of  90, above your "
                                             "maximum altitude limit of  80.\nOverride and Goto anyway?"};
    QTest::newRow("slew failed") << "nodevice" << false
                                 << QStringList{kScopeTrap + PortOpenFailureText({PortOpenProblem::Missing,
                                                                 "/dev/tavorine-no-such-port",
                                                                 FoundSerialPorts(), {}, {}, false,
                                                                 {}}),
                                                kScopeTrap + "Operation valid only when the port is open"};
    QTest::newRow("relay down: not marked") << "norelay" << false
                                            << QStringList{"Unable to communicate with hcAnywhere"};
    QTest::newRow("sent") << "ok" << true << QStringList{};
    QTest::newRow("commit fails") << "readonly" << false
                                  << QStringList{kScopeTrap + "Cannot update. Database or object is read-only."};
    QTest::newRow("row unreadable") << "norow" << false << QStringList{kScopeTrap + "No current record."};
    QTest::newRow("error 5 is silent") << "err5" << false << QStringList{};
  }
  void listGoto() {
    QFETCH(QString, situation);
    QFETCH(bool, marked);
    QFETCH(QStringList, texts);
    Rig rig;
    QVERIFY(rig.start());
    AppState& s = rig.state();
    if (situation == "decline") {
      s.settings.MaxAlt = 80;
      rig.env.prompter.answer(Prompter::Answer::No);
    }
    if (situation == "nodevice") s.settings.CommPort = QStringLiteral("/dev/tavorine-no-such-port");
    if (situation == "norelay") s.settings.CommPort = QStringLiteral("HCD 127.0.0.1:%1").arg(UnusedPort());
    const SkyPosition target = nearZenith(s);
    int marks = 0, timers = 0;
    const bool result = ListGoto(
        s, rig.link,
        [&]() -> std::optional<SkyPosition> {
          if (situation == "empty") return std::nullopt;
          if (situation == "norow") throw AppError::of(ErrNo::NoCurrentRecord);
          if (situation == "err5") throw AppError::of(ErrNo::InvalidCall);
          return target;
        },
        [&] {
          if (situation == "readonly")
            throw AppError(ErrNo::Database, QStringLiteral("Cannot update. Database or object is read-only."));
          ++marks;
        },
        [&] { ++timers; });
    QCOMPARE(result, marked);
    QCOMPARE(marks, marked ? 1 : 0);
    QCOMPARE(rig.env.prompter.texts(), texts);
    for (const auto& e : rig.env.prompter.entries)
      if (!e.question) QCOMPARE(e.title, QStringLiteral("Error"));
    const bool slewed = situation == "ok" || situation == "readonly";
    QCOMPARE(rig.sim.received().startsWith('R'), slewed);
  }

  // The row's fields go by their leading numbers: without limits no altitude is computed, and
  // with them a blank minutes field is 0, not "Invalid Coordinates".
  void listRowText_data() {
    QTest::addColumn<bool>("limits");
    QTest::addColumn<QByteArray>("sent");
    QTest::newRow("without limits") << false << QByteArray("R0000,0024");  // 12 minutes north
    QTest::newRow("blank minutes under limits") << true << QByteArray();
  }
  void listRowText() {
    QFETCH(bool, limits);
    QFETCH(QByteArray, sent);
    Rig rig;
    QVERIFY(rig.start());
    rig.state().settings.UseAltLimit = limits;
    const SkyPosition row = limits ? SkyPosition{nearZenith(rig.state()).raHours, "", "+", "26", " "}
                                   : SkyPosition{"abc", "", "", "x", "12 junk"};
    QVERIFY(ListGoto(rig.state(), rig.link, [&] { return std::optional<SkyPosition>(row); }, {}));
    QCOMPARE(rig.env.prompter.texts(), QStringList{});
    if (!sent.isEmpty()) QCOMPARE(rig.sim.received(), sent);
  }

  void trapsByPanel_data() {
    QTest::addColumn<int>("error");
    QTest::addColumn<bool>("mainWindow");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("5 on the main window") << 5 << true << QStringList{kScopeTrap + "Invalid procedure call or argument"};
    QTest::newRow("5 on the hand control") << 5 << false << QStringList{};
    QTest::newRow("6 on the hand control") << 6 << false << QStringList{kScopeTrap + "Overflow"};
  }
  void trapsByPanel() {
    QFETCH(int, error);
    QFETCH(bool, mainWindow);
    QFETCH(QStringList, texts);
    Rig rig;
    QVERIFY(rig.start());
    rig.state().settings.UseAltLimit = false;
    QVERIFY(!QuickGoto(rig.state(), rig.link, {"1", "0", "0", "+", "0", "0", "0"},
                       mainWindow ? GotoPanel::MainWindow : GotoPanel::HandControl,
                       [&] { throw AppError::of(error); }));
    QCOMPARE(rig.env.prompter.texts(), texts);
    QVERIFY(rig.sim.received().isEmpty());
  }

  void handControlGoto() {
    Rig rig;
    QVERIFY(rig.start());
    rig.state().settings.UseAltLimit = false;
    QVERIFY(HandControlGoto(rig.state(), rig.link, [] {
      return SkyPosition{"5", "34.5", "-", "22", "1"};
    }));
    QVERIFY(!HandControlGoto(rig.state(), rig.link, []() -> SkyPosition {
      throw AppError::of(ErrNo::InvalidCall);
    }));
    QVERIFY(rig.env.prompter.entries.isEmpty());
    QCOMPARE(rig.sim.received(), QByteArray("R3B77,F057"));
  }
};

QTEST_GUILESS_MAIN(TestGotoFlow)
#include "tst_gotoflow.moc"
