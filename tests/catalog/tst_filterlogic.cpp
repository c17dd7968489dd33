#include <QtTest>

#include "catalog/filterlogic.h"
#include "catalog/queryset.h"
#include "core/apperror.h"
#include "core/handler.h"
#include "core/numtext.h"
#include "core/settings.h"
#include "support/testenv.h"

namespace {

const QString kDefaultMessier = QStringLiteral(
    "WHERE (False or (Type = 'Galaxy' and val(Magnitude) between  12 and  0) or (Type = 'Globular "
    "Cluster' and val(Magnitude) between  12 and  0) or (Type = 'Open Cluster' and val(Magnitude) "
    "between  12 and  0) or (Type = 'Planetary Nebula' and val(Magnitude) between  12 and  0) or "
    "(Type = 'Nebula' and val(Magnitude) between  12 and  0))");

// The NGC and IC pages count cluster nebulosity among the open clusters.
QString ngcOf(QString messier) {
  return messier.replace(
      QStringLiteral("(Type = 'Open Cluster' and"),
      QStringLiteral("((Type = 'Open Cluster' or Type = 'Cluster Nebulosity') and"));
}

FilterForm defaults() { return FilterFormFrom(FilterSettings{}); }

}  // namespace

class TestFilterLogic : public QObject {
  Q_OBJECT
 private slots:
  // The pages without the five boxes, and the user page's bounds; the others are in the
  // ticked-boxes table.
  void defaultClauses() {
    const auto clauses = FilterClauses(defaults());
    QCOMPARE(clauses[QuerySet::User], QStringLiteral("WHERE (val(Magnitude) between  12 and -2)"));
    QCOMPARE(clauses[QuerySet::DoubleStars],
             QStringLiteral("WHERE (val(Magnitude) between  10 and -2) and ((Val(Mid(Magnitude, "
                            "Instr(Magnitude, ',') + 1, 100)) - Val(Magnitude)) between  0 and  "
                            "10) and (val(Info) between  2 and  30)"));
    // How numbers print is numtext's; here both bounds go through it, in the order typed.
    auto user = [](const char* min, const char* max) {
      FilterForm form = defaults();
      form.txtUserMagMin = QString::fromLatin1(min);
      form.txtUserMagMax = QString::fromLatin1(max);
      return FilterClauses(form)[QuerySet::User];
    };
    QCOMPARE(user("-0.5", "abc"), QStringLiteral("WHERE (val(Magnitude) between -.5 and  0)"));
  }

  // Which of the five boxes are ticked (G, C, O, P, N), then Messier's and Deep-sky's clauses;
  // NGC's follows from Messier's.
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
  void tickedBoxes() {
    QFETCH(QString, ticked);
    QFETCH(QString, messier);
    QFETCH(QString, deepSky);
    FilterForm form = defaults();
    form.chkGal = ticked.contains('G');
    form.chkGC = ticked.contains('C');
    form.chkOC = ticked.contains('O');
    form.chkPN = ticked.contains('P');
    form.chkNeb = ticked.contains('N');
    const auto clauses = FilterClauses(form);
    QCOMPARE(clauses[QuerySet::Messier], messier);
    QCOMPARE(clauses[QuerySet::Caldwell], messier);
    QCOMPARE(clauses[QuerySet::NGC], ngcOf(messier));
    QCOMPARE(clauses[QuerySet::IC], ngcOf(messier));
    QCOMPARE(clauses[QuerySet::DeepSky], deepSky);
    QCOMPARE(clauses[QuerySet::SAO], QStringLiteral("WHERE True"));
  }

  // OK refuses a minimum altitude outside 0 to 80, and a bound too big for the record (the
  // overflow error, as the dialog shows it), changing nothing; otherwise it closes, and what it
  // wrote to Filter.ini reads back as the values in force.
  void ok_data() {
    QTest::addColumn<QString>("minAlt");
    QTest::addColumn<QString>("galMax");
    QTest::addColumn<QString>("refusal");  // empty: closes
    const QString range = QStringLiteral("Please select a value between 0 and 80");
    QTest::newRow("altitude 0") << "0" << "0" << "";
    QTest::newRow("altitude 80") << "80" << "0" << "";
    QTest::newRow("altitude 80.5") << "80.5" << "0" << range;
    QTest::newRow("bound beyond a single") << "20" << "1e39" << "Overflow - 6";
    QTest::newRow("rounds to the largest single") << "20" << "3.4028235e38" << "";
  }
  void ok() {
    QFETCH(QString, minAlt);
    QFETCH(QString, galMax);
    QFETCH(QString, refusal);
    TestEnv env;
    AppState& state = *env.state;
    state.FilterCancelled = true;
    FilterForm form = FilterFormFrom(state.filter);
    form.txtMinAltFilter = minAlt;
    form.txtGalMin = QStringLiteral("8");
    form.txtGalMax = galMax;
    RunGuarded(state.prompter(), [&] { FilterOk(state, form); });
    QCOMPARE(env.prompter.texts(), refusal.isEmpty() ? QStringList() : QStringList{refusal});
    QCOMPARE(state.FilterCancelled, !refusal.isEmpty());
    if (!refusal.isEmpty()) {
      for (const PageQuery& p : state.Pages) QVERIFY(p.Filter.isEmpty());
      QVERIFY(!QFileInfo::exists(state.filterPath()));
      return;
    }
    FilterSettings back;
    ReadFilterFile(state.filterPath(), back);
    QCOMPARE(FilterRecord(back), FilterRecord(state.filter));
    QCOMPARE(back.FltGalMax, CSng(Val(galMax)));
  }

  void okStoresEverything() {
    TestEnv env;
    AppState& state = *env.state;
    FilterForm form = FilterFormFrom(state.filter);
    form.chkAltFilter = false;
    form.txtMinAltFilter = QStringLiteral("30.5");  // rounds half to even
    form.chkOC = false;
    form.txtGalMin = QStringLiteral("13.25");
    form.txtDSSepMax = QStringLiteral("x");
    form.txtUserMagMax = QStringLiteral("-3.5");
    QVERIFY(FilterOk(state, form));
    const auto clauses = FilterClauses(form);
    for (int i = 0; i < 8; ++i) QCOMPARE(state.Pages[i].Filter, clauses[i]);
    const QByteArray record("#FALSE#,30,#TRUE#,0,13.25,#TRUE#,0,12,#FALSE#,0,12,#TRUE#,0,12,"
                            "#TRUE#,0,12,0,2,-2,10,10,0,-3.5,12\r\n");
    QCOMPARE(env.readFile(QStringLiteral("config/Filter.ini")), record);
    QCOMPARE(FilterRecord(state.filter), record);
  }

  // Save As skips the altitude test: an out-of-range 16-bit value is then the overflow error.
  void saveAsSkipsTheAltitudeTest() {
    FilterForm form = defaults();
    form.txtMinAltFilter = QStringLiteral("40000");
    QVERIFY_THROWS_EXCEPTION(AppError, FilterFormToSettings(form));
  }
};

QTEST_GUILESS_MAIN(TestFilterLogic)
#include "tst_filterlogic.moc"
