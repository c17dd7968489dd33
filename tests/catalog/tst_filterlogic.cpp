#include <QtTest>

#include "catalog/filterlogic.h"
#include "catalog/queryset.h"
#include "core/apperror.h"
#include "core/numtext.h"
#include "core/settings.h"
#include "support/testenv.h"

class TestFilterLogic : public QObject {
  Q_OBJECT
 private slots:
  void defaultMessierClause();
  void defaultClausesOfEveryPage_data();
  void defaultClausesOfEveryPage();
  void boundsComeOutPrinted_data();
  void boundsComeOutPrinted();
  void tickedBoxes_data();
  void tickedBoxes();
  void formShowsPlainValues();
  void okAltitudeRange_data();
  void okAltitudeRange();
  void okNumbersAtTheEdges_data();
  void okNumbersAtTheEdges();
  void okStoresEverything();
  void saveAsRecordIsWhatOkWrites();
};

static const char* kDefaultMessier =
    "WHERE (False or (Type = 'Galaxy' and val(Magnitude) between  12 and  0) or (Type = 'Globular "
    "Cluster' and val(Magnitude) between  12 and  0) or (Type = 'Open Cluster' and val(Magnitude) "
    "between  12 and  0) or (Type = 'Planetary Nebula' and val(Magnitude) between  12 and  0) or "
    "(Type = 'Nebula' and val(Magnitude) between  12 and  0))";

void TestFilterLogic::defaultMessierClause() {
  const auto clauses = FilterClauses(FilterFormFrom(FilterSettings{}));
  QCOMPARE(clauses[QuerySet::Messier], QString::fromLatin1(kDefaultMessier));
  QCOMPARE(clauses[QuerySet::Caldwell], QString::fromLatin1(kDefaultMessier));
}

void TestFilterLogic::defaultClausesOfEveryPage_data() {
  QTest::addColumn<int>("page");
  QTest::addColumn<QString>("clause");
  const QString ngc = QString::fromLatin1(kDefaultMessier)
                          .replace(QStringLiteral("(Type = 'Open Cluster' and"),
                                   QStringLiteral("((Type = 'Open Cluster' or Type = 'Cluster "
                                                  "Nebulosity') and"));
  QTest::newRow("NGC") << QuerySet::NGC << ngc;
  QTest::newRow("IC") << QuerySet::IC << ngc;
  QTest::newRow("Deep-sky") << QuerySet::DeepSky
                            << "WHERE (False or (val(Magnitude) between  12 and  0))";
  QTest::newRow("SAO") << QuerySet::SAO << "WHERE True";
  QTest::newRow("User") << QuerySet::User << "WHERE (val(Magnitude) between  12 and -2)";
  QTest::newRow("Double Stars")
      << QuerySet::DoubleStars
      << "WHERE (val(Magnitude) between  10 and -2) and ((Val(Mid(Magnitude, Instr(Magnitude, "
         "',') + 1, 100)) - Val(Magnitude)) between  0 and  10) and (val(Info) between  2 and  "
         "30)";
}

void TestFilterLogic::defaultClausesOfEveryPage() {
  QFETCH(int, page);
  QFETCH(QString, clause);
  QCOMPARE(FilterClauses(FilterFormFrom(FilterSettings{}))[page], clause);
}

void TestFilterLogic::boundsComeOutPrinted_data() {
  QTest::addColumn<QString>("minText");
  QTest::addColumn<QString>("maxText");
  QTest::addColumn<QString>("clause");
  QTest::newRow("negative bound") << "10" << "-2" << "WHERE (val(Magnitude) between  10 and -2)";
  QTest::newRow("fraction") << "9.5" << "0.5" << "WHERE (val(Magnitude) between  9.5 and  .5)";
  QTest::newRow("negative fraction")
      << "-0.5" << "abc" << "WHERE (val(Magnitude) between -.5 and  0)";
  QTest::newRow("leading number with text")
      << " 12mag" << "" << "WHERE (val(Magnitude) between  12 and  0)";
  QTest::newRow("min above max kept in order")
      << "0" << "12" << "WHERE (val(Magnitude) between  0 and  12)";
}

void TestFilterLogic::boundsComeOutPrinted() {
  QFETCH(QString, minText);
  QFETCH(QString, maxText);
  QFETCH(QString, clause);
  FilterForm form = FilterFormFrom(FilterSettings{});
  form.txtUserMagMin = minText;
  form.txtUserMagMax = maxText;
  QCOMPARE(FilterClauses(form)[QuerySet::User], clause);
}

// Each row: which of the five boxes are ticked (G, C, O, P, N letters), then the expected
// clauses of Messier, NGC and Deep-sky.
void TestFilterLogic::tickedBoxes_data() {
  QTest::addColumn<QString>("ticked");
  QTest::addColumn<QString>("messier");
  QTest::addColumn<QString>("ngc");
  QTest::addColumn<QString>("deepSky");
  QTest::newRow("all cleared") << "" << "WHERE True" << "WHERE True" << "WHERE True";
  QTest::newRow("galaxy cleared")
      << "CPON"
      << "WHERE (False or (Type = 'Globular Cluster' and val(Magnitude) between  12 and  0) or "
         "(Type = 'Open Cluster' and val(Magnitude) between  12 and  0) or (Type = 'Planetary "
         "Nebula' and val(Magnitude) between  12 and  0) or (Type = 'Nebula' and val(Magnitude) "
         "between  12 and  0))"
      << "WHERE (False or (Type = 'Globular Cluster' and val(Magnitude) between  12 and  0) or "
         "((Type = 'Open Cluster' or Type = 'Cluster Nebulosity') and val(Magnitude) between  12 "
         "and  0) or (Type = 'Planetary Nebula' and val(Magnitude) between  12 and  0) or (Type = "
         "'Nebula' and val(Magnitude) between  12 and  0))"
      << "WHERE True";
  QTest::newRow("galaxy only")
      << "G" << "WHERE (False or (Type = 'Galaxy' and val(Magnitude) between  12 and  0))"
      << "WHERE (False or (Type = 'Galaxy' and val(Magnitude) between  12 and  0))"
      << "WHERE (False or (val(Magnitude) between  12 and  0))";
  QTest::newRow("open clusters only")
      << "O" << "WHERE (False or (Type = 'Open Cluster' and val(Magnitude) between  12 and  0))"
      << "WHERE (False or ((Type = 'Open Cluster' or Type = 'Cluster Nebulosity') and "
         "val(Magnitude) between  12 and  0))"
      << "WHERE True";
}

void TestFilterLogic::tickedBoxes() {
  QFETCH(QString, ticked);
  QFETCH(QString, messier);
  QFETCH(QString, ngc);
  QFETCH(QString, deepSky);
  FilterForm form = FilterFormFrom(FilterSettings{});
  form.chkGal = ticked.contains('G');
  form.chkGC = ticked.contains('C');
  form.chkOC = ticked.contains('O');
  form.chkPN = ticked.contains('P');
  form.chkNeb = ticked.contains('N');
  const auto clauses = FilterClauses(form);
  QCOMPARE(clauses[QuerySet::Messier], messier);
  QCOMPARE(clauses[QuerySet::Caldwell], messier);
  QCOMPARE(clauses[QuerySet::NGC], ngc);
  QCOMPARE(clauses[QuerySet::IC], ngc);
  QCOMPARE(clauses[QuerySet::DeepSky], deepSky);
  QCOMPARE(clauses[QuerySet::SAO], QStringLiteral("WHERE True"));
}

void TestFilterLogic::formShowsPlainValues() {
  FilterSettings f;
  f.FltAlt = false;
  f.FltMinAlt = 35;
  f.FltGalMin = 9.5f;
  f.FltDSSepMin = 0.1f;
  f.FltUserMagMax = -2;
  const FilterForm form = FilterFormFrom(f);
  QCOMPARE(form.chkAltFilter, false);
  QCOMPARE(form.txtMinAltFilter, QStringLiteral("35"));
  QCOMPARE(form.txtGalMin, QStringLiteral("9.5"));
  QCOMPARE(form.txtGalMax, QStringLiteral("0"));
  QCOMPARE(form.txtDSSepMin, QStringLiteral("0.1"));
  QCOMPARE(form.txtUserMagMax, QStringLiteral("-2"));
}

void TestFilterLogic::okAltitudeRange_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<bool>("closes");
  QTest::newRow("0") << "0" << true;
  QTest::newRow("80") << "80" << true;
  QTest::newRow("80.5") << "80.5" << false;
  QTest::newRow("-1") << "-1" << false;
  QTest::newRow("abc counts 0") << "abc" << true;
  QTest::newRow("empty counts 0") << "" << true;
  QTest::newRow("81") << "81" << false;
}

void TestFilterLogic::okAltitudeRange() {
  QFETCH(QString, text);
  QFETCH(bool, closes);
  TestEnv env;
  AppState& state = *env.state;
  state.FilterCancelled = true;
  const FilterSettings before = state.filter;
  FilterForm form = FilterFormFrom(state.filter);
  form.txtMinAltFilter = text;
  form.txtGalMin = QStringLiteral("8");
  QCOMPARE(FilterOk(state, form), closes);
  if (closes) {
    QVERIFY(env.prompter.entries.isEmpty());
    QCOMPARE(state.FilterCancelled, false);
    QVERIFY(QFileInfo::exists(state.filterPath()));
  } else {
    QCOMPARE(env.prompter.entries.size(), 1);
    QCOMPARE(env.prompter.entries[0].title, QStringLiteral("Error"));
    QCOMPARE(env.prompter.entries[0].text,
             QStringLiteral("Please select a value between 0 and 80"));
    QCOMPARE(state.FilterCancelled, true);
    QCOMPARE(state.filter.FltGalMin, before.FltGalMin);
    for (const PageQuery& p : state.Pages) QVERIFY(p.Filter.isEmpty());
    QVERIFY(!QFileInfo::exists(state.filterPath()));
  }
}

// A number too big for the record refuses OK with nothing changed; one that fits reads back
// from Filter.ini as the value in force.
void TestFilterLogic::okNumbersAtTheEdges_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<bool>("closes");
  QTest::newRow("beyond a single") << "1e39" << false;
  QTest::newRow("rounds to the largest single") << "3.4028235e38" << true;
  QTest::newRow("just under it, negative") << "-3.4028234e38" << true;
}

void TestFilterLogic::okNumbersAtTheEdges() {
  QFETCH(QString, text);
  QFETCH(bool, closes);
  TestEnv env;
  AppState& state = *env.state;
  FilterForm form = FilterFormFrom(state.filter);
  form.txtGalMax = text;
  int error = 0;
  bool closed = false;
  try {
    closed = FilterOk(state, form);
  } catch (const AppError& e) {
    error = e.number;
  }
  QCOMPARE(closed, closes);
  if (!closes) {
    QCOMPARE(error, int(ErrNo::Overflow));
    for (const PageQuery& p : state.Pages) QVERIFY(p.Filter.isEmpty());
    QVERIFY(!QFileInfo::exists(state.filterPath()));
    return;
  }
  FilterSettings back;
  ReadFilterFile(state.filterPath(), back);
  QCOMPARE(FilterRecord(back), FilterRecord(state.filter));
  QCOMPARE(back.FltGalMax, CSng(Val(text)));
}

void TestFilterLogic::okStoresEverything() {
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
  QCOMPARE(state.filter.FltAlt, false);
  QCOMPARE(state.filter.FltMinAlt, qint16(30));
  QCOMPARE(state.filter.FltOC, false);
  QCOMPARE(state.filter.FltGalMin, 13.25f);
  QCOMPARE(state.filter.FltDSSepMax, 0.0f);
  QCOMPARE(state.filter.FltUserMagMax, -3.5f);
  QCOMPARE(env.readFile(QStringLiteral("config/Filter.ini")),
           QByteArray("#FALSE#,30,#TRUE#,0,13.25,#TRUE#,0,12,#FALSE#,0,12,#TRUE#,0,12,#TRUE#,0,"
                      "12,0,2,-2,10,10,0,-3.5,12\r\n"));
}

void TestFilterLogic::saveAsRecordIsWhatOkWrites() {
  // A .flt file saved from the form, opened again, gives the same form back.
  TestEnv env;
  FilterForm form = FilterFormFrom(FilterSettings{});
  form.txtGCMax = QStringLiteral("1.5");
  form.chkNeb = false;
  const QString flt = env.path(QStringLiteral("mine.flt"));
  WriteFilterFile(flt, FilterFormToSettings(form));
  FilterSettings back;
  ReadFilterFile(flt, back);
  const FilterForm again = FilterFormFrom(back);
  QCOMPARE(again.txtGCMax, QStringLiteral("1.5"));
  QCOMPARE(again.chkNeb, false);
  QCOMPARE(FilterClauses(again), FilterClauses(form));

  // Save As does not check the altitude: an out-of-range 16-bit value is the overflow error.
  form.txtMinAltFilter = QStringLiteral("40000");
  try {
    FilterFormToSettings(form);
    QFAIL("no overflow");
  } catch (const AppError& e) {
    QCOMPARE(e.number, int(ErrNo::Overflow));
  }
}

QTEST_GUILESS_MAIN(TestFilterLogic)
#include "tst_filterlogic.moc"
