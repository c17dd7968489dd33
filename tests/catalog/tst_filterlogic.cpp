#include <QtTest>

#include "catalog/filterlogic.h"
#include "catalog/queryset.h"
#include "core/handler.h"
#include "core/settings.h"
#include "support/testenv.h"

namespace {

const QString kDefaultMessier = QStringLiteral(
    "WHERE (False or (Type = 'Galaxy' and val(Magnitude) between  12 and  0) or (Type = 'Globular "
    "Cluster' and val(Magnitude) between  12 and  0) or (Type = 'Open Cluster' and val(Magnitude) "
    "between  12 and  0) or (Type = 'Planetary Nebula' and val(Magnitude) between  12 and  0) or "
    "(Type = 'Nebula' and val(Magnitude) between  12 and  0))");

FilterForm defaults() { return FilterFormFrom(FilterSettings{}); }

}  // namespace

class TestFilterLogic : public QObject {
  Q_OBJECT
 private slots:
  // The pages without the five boxes; the others are in the ticked-boxes table. How numbers
  // print is numtext's; here both bounds go through it, in the order typed.
  void otherClauses() {
    FilterForm form = defaults();
    form.txtUserMagMin = QStringLiteral("-0.5");
    form.txtUserMagMax = QStringLiteral("abc");
    const auto clauses = FilterClauses(form);
    QCOMPARE(clauses[QuerySet::User], QStringLiteral("WHERE (val(Magnitude) between -.5 and  0)"));
    QCOMPARE(clauses[QuerySet::DoubleStars],
             QStringLiteral("WHERE (val(Magnitude) between  10 and -2) and ((Val(Mid(Magnitude, "
                            "Instr(Magnitude, ',') + 1, 100)) - Val(Magnitude)) between  0 and  "
                            "10) and (val(Info) between  2 and  30)"));
  }

  // Which of the five boxes are ticked (G, C, O, P, N), then Messier's and Deep-sky's clauses.
  // NGC's follows from Messier's: those pages count cluster nebulosity among the open clusters.
  // clang-format off
  void tickedBoxes_data() {
    QTest::addColumn<QString>("ticked");
    QTest::addColumn<QString>("messier");
    QTest::addColumn<QString>("deepSky");
    QTest::newRow("all ticked, as by default")
        << "GCOPN" << kDefaultMessier << "WHERE (False or (val(Magnitude) between  12 and  0))";
    QTest::newRow("all cleared") << "" << "WHERE True" << "WHERE True";
    QTest::newRow("galaxy only")
        << "G" << "WHERE (False or (Type = 'Galaxy' and val(Magnitude) between  12 and  0))"
        << "WHERE (False or (val(Magnitude) between  12 and  0))";
  }
  // clang-format on
  void tickedBoxes() {
    QFETCH(QString, ticked);
    QFETCH(QString, messier);
    QFETCH(QString, deepSky);
    FilterForm form = defaults();
    const std::pair<char, bool FilterForm::*> boxes[] = {{'G', &FilterForm::chkGal},
                                                         {'C', &FilterForm::chkGC},
                                                         {'O', &FilterForm::chkOC},
                                                         {'P', &FilterForm::chkPN},
                                                         {'N', &FilterForm::chkNeb}};
    for (auto [letter, tick] : boxes) form.*tick = ticked.contains(QLatin1Char(letter));
    const QString ngc = QString(messier).replace(
        QStringLiteral("(Type = 'Open Cluster' and"),
        QStringLiteral("((Type = 'Open Cluster' or Type = 'Cluster Nebulosity') and"));
    const auto clauses = FilterClauses(form);
    QCOMPARE(clauses[QuerySet::Messier], messier);
    QCOMPARE(clauses[QuerySet::Caldwell], messier);
    QCOMPARE(clauses[QuerySet::NGC], ngc);
    QCOMPARE(clauses[QuerySet::IC], ngc);
    QCOMPARE(clauses[QuerySet::DeepSky], deepSky);
    QCOMPARE(clauses[QuerySet::SAO], QStringLiteral("WHERE True"));
  }

  // OK refuses a minimum altitude outside 0 to 80, and a bound too big for the record (the
  // overflow error, as the dialog shows it), changing nothing. Otherwise it sets the pages'
  // clauses and writes Filter.ini, which reads back as the values in force; the altitude is
  // kept rounded half to even, its box ticked or not.
  // clang-format off
  void ok_data() {
    QTest::addColumn<QString>("minAlt");
    QTest::addColumn<QString>("galMax");
    QTest::addColumn<QString>("refusal");
    QTest::addColumn<QString>("stored");  // the altitude, the galaxies' tick and brightest
    const QString range = QStringLiteral("Please select a value between 0 and 80");
    QTest::newRow("altitude 0") << "0" << "0" << "" << "0,#TRUE#,0";
    QTest::newRow("altitude 80") << "80" << "0" << "" << "80,#TRUE#,0";
    QTest::newRow("altitude 80.5") << "80.5" << "0" << range << "";
    QTest::newRow("altitude -1") << "-1" << "0" << range << "";
    QTest::newRow("altitude 20.6") << "20.6" << "0" << "" << "21,#TRUE#,0";
    QTest::newRow("altitude 30.5") << "30.5" << "0" << "" << "30,#TRUE#,0";
    QTest::newRow("bound beyond a single") << "20" << "1e39" << "Overflow - 6" << "";
    QTest::newRow("rounds to the largest single")
        << "20" << "3.4028235e38" << "" << "20,#TRUE#,3.40282347E+38";
  }
  // clang-format on
  void ok() {
    QFETCH(QString, minAlt);
    QFETCH(QString, galMax);
    QFETCH(QString, refusal);
    QFETCH(QString, stored);
    TestEnv env;
    AppState& state = *env.state;
    state.FilterCancelled = true;
    FilterForm form = defaults();
    form.chkAltFilter = false;
    form.txtMinAltFilter = minAlt;
    form.chkOC = false;
    form.txtGalMin = QStringLiteral("13.25");
    form.txtGalMax = galMax;
    form.txtDSSepMax = QStringLiteral("x");
    form.txtUserMagMax = QStringLiteral("-3.5");
    RunGuarded(state.prompter(), [&] { FilterOk(state, form); });
    QCOMPARE(env.prompter.texts(), refusal.isEmpty() ? QStringList() : QStringList{refusal});
    QCOMPARE(state.FilterCancelled, !refusal.isEmpty());
    const auto clauses = FilterClauses(form);
    for (int i = 0; i < 8; ++i)
      QCOMPARE(state.Pages[i].Filter, refusal.isEmpty() ? clauses[i] : QString());
    if (!refusal.isEmpty()) {
      QVERIFY(!QFileInfo::exists(state.filterPath()));
      return;
    }
    const QByteArray record = "#FALSE#," + stored.toLatin1() +
                              ",13.25,#TRUE#,0,12,#FALSE#,0,12,#TRUE#,0,12,#TRUE#,0,12,0,2,-2,10,"
                              "10,0,-3.5,12\r\n";
    QCOMPARE(env.readFile(QStringLiteral("config/Filter.ini")), record);
    QCOMPARE(FilterRecord(state.filter), record);
    FilterSettings back;
    ReadFilterFile(state.filterPath(), back);
    QCOMPARE(FilterRecord(back), record);
  }
};

QTEST_GUILESS_MAIN(TestFilterLogic)
#include "tst_filterlogic.moc"
