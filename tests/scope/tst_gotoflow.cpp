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

// The list window's and the hand control's slews are their windows' tests; here the checks
// of a typed position, the traps and the altitude guard's edges.
class TestGotoFlow : public QObject {
  Q_OBJECT

 private slots:
  // The checks, the altitude guard at the zenith, and what a panel's trap shows when starting
  // the position timers fails.
  void quickGoto_data() {
    QTest::addColumn<QuickRow>("row");
    const QString fine = QStringLiteral("1|0|0|+|0|0|0");
    const QString alert = QStringLiteral(
        "This object is at an altitude of  90, %1 altitude limit of  %2.\nOverride and Goto anyway?");
    const QString above = alert.arg("above your maximum", "89");
    const QString below = alert.arg("below your minimum", "91");
    QTest::newRow("RA") << QuickRow{"23|59|60|+|0|0|0", 1, 0, true, true, 0,
                                    {"Please enter a valid Right Ascension"}, false};
    QTest::newRow("5 on the main window") << QuickRow{
        fine, 1, 0, true, true, 5, {kScopeTrap + "Invalid procedure call or argument"}, false};
    QTest::newRow("5 on the hand control") << QuickRow{fine, 1, 0, true, false, 5, {}, false};
    QTest::newRow("limits off") << QuickRow{"", 1, 0, true, true, 0, {}, true};
    QTest::newRow("maximum is inclusive") << QuickRow{"", 0, 90, true, true, 0, {}, true};
    QTest::newRow("minimum is inclusive") << QuickRow{"", 90, 90, true, true, 0, {}, true};
    QTest::newRow("above, yes") << QuickRow{"", 0, 89, true, true, 0, {above}, true};
    QTest::newRow("below, no") << QuickRow{"", 91, 95, false, true, 0, {below}, false};
  }
  void quickGoto() {
    QFETCH(QuickRow, row);
    SimRig rig;
    rig.s.settings.UseAltLimit = row.minAlt <= row.maxAlt;
    QVERIFY(rig.start(QStringLiteral("GT")));
    rig.s.settings.MinAlt = static_cast<qint16>(row.minAlt);
    rig.s.settings.MaxAlt = static_cast<qint16>(row.maxAlt);
    rig.env.prompter.answer(row.answerYes ? Prompter::Answer::Yes : Prompter::Answer::No);
    const SkyPosition p = nearZenith(rig.s);
    const QStringList t = row.typed.isEmpty() ? QStringList{p.raHours, p.raMinutes, "0", p.decSign,
                                                            p.decDegrees, p.decMinutes, "0"}
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

  // A list row's fields go by their leading numbers: without limits no altitude is computed
  // (12 minutes north goes out), and with them a blank minutes field is 0, not "Invalid
  // Coordinates". The row is marked only after a slew.
  void listGoto_data() {
    QTest::addColumn<QString>("situation");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("no record") << "empty" << QStringList{};
    QTest::newRow("text in the fields, no limits") << "text" << QStringList{};
    QTest::newRow("blank minutes under the limits") << "blank" << QStringList{};
    QTest::newRow("commit fails")
        << "readonly" << QStringList{kScopeTrap + "Cannot update. Database or object is read-only."};
    QTest::newRow("error 5 is silent") << "err5" << QStringList{};
    QTest::newRow("hand control: error 5 is silent too") << "hand control" << QStringList{};
  }
  void listGoto() {
    QFETCH(QString, situation);
    QFETCH(QStringList, texts);
    SimRig rig;
    rig.s.settings.UseAltLimit = situation != "text";
    QVERIFY(rig.start(QStringLiteral("GT")));
    const SkyPosition target = nearZenith(rig.s);
    int marks = 0;
    auto row = [&]() -> std::optional<SkyPosition> {
      if (situation == "empty") return std::nullopt;
      if (situation == "text") return SkyPosition{"abc", "", "", "x", "12 junk"};
      if (situation == "blank") return SkyPosition{target.raHours, "", "+", "26", " "};
      if (situation == "err5" || situation == "hand control")
        throw AppError::of(ErrNo::InvalidCall);
      return target;
    };
    auto mark = [&] {
      if (situation == "readonly")
        throw AppError(ErrNo::Database, "Cannot update. Database or object is read-only.");
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

  void quickGotoCheck_data() {
    QTest::addColumn<QString>("typed");  // RA h m s, sign, Dec d m s
    QTest::addColumn<QString>("problem");
    const QString ra = QStringLiteral("Please enter a valid Right Ascension");
    const QString dec = QStringLiteral("Please enter a valid Declination");
    QTest::newRow("23 59 59.99") << "23|59|59.99|+|0|0|0" << "";
    QTest::newRow("hour 24") << "24|0|0|+|0|0|0" << ra;
    QTest::newRow("south pole") << "0|0|0|-|90|0|0" << "";
    QTest::newRow("90 00 01") << "0|0|0|+|90|0|1" << dec;
    QTest::newRow("dec minutes 60") << "0|0|0|+|10|60|0" << dec;
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

QTEST_GUILESS_MAIN(TestGotoFlow)
#include "tst_gotoflow.moc"
