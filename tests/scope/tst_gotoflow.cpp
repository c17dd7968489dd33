#include <QTest>
#include <cmath>

#include "core/apperror.h"
#include "scope/gotoflow.h"
#include "scopetest.h"
#include "sky/skycalc.h"

namespace {

const QString kScopeTrap = QStringLiteral("Unable to communicate with the scope -\n");

// A position a little off the zenith of the default site at the test clock: altitude 90.0.
SkyPosition nearZenith(const AppState& state) {
  const double lst = std::fmod(std::fmod(SiderealDegreesNow(state), 360) + 360, 360);
  const double raHours = std::floor(lst / 15);
  return SkyPosition::of(raHours, (lst / 15 - raHours) * 60, QStringLiteral("+"), 26, 21.2);
}

// A GT telescope on a pseudo-terminal, with or without the altitude limits.
struct Rig : SimRig {
  bool start(bool limits) {
    s.settings.UseAltLimit = limits;
    return SimRig::start(QStringLiteral("GT"));
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

// The list window's slew, decline and missing device are in tst_listwindow, the hand
// control's slew and decline in tst_hhc.
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

  // The guard at the zenith (the alert's wording is pinned in tst_scopecodec).
  void guard_data() {
    QTest::addColumn<GuardRow>("row");
    const QString above = AltitudeAlertText(90, 89, false), below = AltitudeAlertText(90, 91, true);
    QTest::newRow("limits off") << GuardRow{false, 91, 95, true, "", true};
    QTest::newRow("maximum is inclusive") << GuardRow{true, 0, 90, true, "", true};
    QTest::newRow("minimum is inclusive") << GuardRow{true, 90, 90, true, "", true};
    QTest::newRow("above, yes") << GuardRow{true, 0, 89, true, above, true};
    QTest::newRow("below, no") << GuardRow{true, 91, 95, false, below, false};
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
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("no record") << "empty" << QStringList{};
    QTest::newRow("relay down: not marked")
        << "norelay" << QStringList{"Unable to communicate with hcAnywhere"};
    QTest::newRow("commit fails")
        << "readonly" << QStringList{kScopeTrap + "Cannot update. Database or object is read-only."};
    QTest::newRow("error 5 is silent") << "err5" << QStringList{};
  }
  void listGoto() {
    QFETCH(QString, situation);
    QFETCH(QStringList, texts);
    Rig rig;
    QVERIFY(rig.start(true));
    if (situation == "norelay") rig.s.settings.CommPort = QString("HCD 127.0.0.1:%1").arg(UnusedPort());
    const SkyPosition target = nearZenith(rig.s);
    int marks = 0;
    const bool result = ListGoto(
        rig.s, rig.link,
        [&]() -> std::optional<SkyPosition> {
          if (situation == "empty") return std::nullopt;
          if (situation == "err5") throw AppError::of(ErrNo::InvalidCall);
          return target;
        },
        [&] {
          if (situation == "readonly")
            throw AppError(ErrNo::Database, "Cannot update. Database or object is read-only.");
          ++marks;
        });
    QVERIFY(!result);
    QCOMPARE(marks, 0);
    QCOMPARE(rig.env.prompter.texts(), texts);
    for (const auto& e : rig.env.prompter.entries) QCOMPARE(e.title, QStringLiteral("Error"));
    QCOMPARE(rig.slewed(), situation == "readonly");
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

  // The hand control's trap, like the list's, passes error 5 over.
  void handControlError5IsSilent() {
    TestEnv env;
    ScopeLink link;
    QVERIFY(!HandControlGoto(*env.state, link,
                             []() -> SkyPosition { throw AppError::of(ErrNo::InvalidCall); }));
    QVERIFY(env.prompter.entries.isEmpty());
  }
};

QTEST_GUILESS_MAIN(TestGotoFlow)
#include "tst_gotoflow.moc"
