#include <QtTest>

#include "catalog/pagesort.h"
#include "catalog/queryset.h"
#include "catalog/searchcriteria.h"
#include "core/appstate.h"
#include "support/scriptedprompter.h"

class TestPageSort : public QObject {
  Q_OBJECT
 private slots:
  void criteria_data();
  void criteria();
  void userSearch_data();
  void userSearch();
  void columnAfterFind_data();
  void columnAfterFind();
  void clicks_data();
  void clicks();
  void declinationNeedsThreeClicks();
  void otherColumnInBetweenStartsAfresh();
  void clickOutsideTableChangesNothing_data();
  void clickOutsideTableChangesNothing();
};

void TestPageSort::criteria_data() {
  QTest::addColumn<int>("page");
  QTest::addColumn<int>("option");
  QTest::addColumn<QString>("text");
  QTest::addColumn<QString>("criteria");
  const int num = int(SearchOption::Number), name = int(SearchOption::Name);
  QTest::newRow("Messier number") << QuerySet::Messier << num << "31" << "trim(objectnum) = '31'";
  QTest::newRow("number as typed") << QuerySet::NGC << num << " 7000 "
                                   << "trim(objectnum) = ' 7000 '";
  QTest::newRow("name substring") << QuerySet::Messier << name << "andr"
                                  << "name Like '*andr*'";
  QTest::newRow("a quote stays in its literal") << QuerySet::User << name << "x' or (((("
                                               << "name Like '*x'' or ((((*'";
  QTest::newRow("a quote in a number") << QuerySet::Messier << num << "3'1"
                                       << "trim(objectnum) = '3''1'";
  QTest::newRow("double exact")
      << QuerySet::DoubleStars << num << "STF 12"
      << "name = '*STF 12' OR name like '*STF 12,*' OR name like '*STF 12'";
  QTest::newRow("double exact trimmed")
      << QuerySet::DoubleStars << num << "  STF 12 "
      << "name = '*STF 12' OR name like '*STF 12,*' OR name like '*STF 12'";
  QTest::newRow("double close") << QuerySet::DoubleStars << name << " STF 12"
                                << "name Like '* STF 12*'";
  QTest::newRow("double exact, a quote") << QuerySet::DoubleStars << num << "Abt's Star"
                                         << "name = '*Abt''s Star' OR name like '*Abt''s Star,*' OR "
                                            "name like '*Abt''s Star'";
}

void TestPageSort::criteria() {
  QFETCH(int, page);
  QFETCH(int, option);
  QFETCH(QString, text);
  QFETCH(QString, criteria);
  QCOMPARE(SearchCriteria(page, SearchOption(option), text), criteria);
}

void TestPageSort::userSearch_data() {
  QTest::addColumn<int>("option");
  QTest::addColumn<QString>("field");
  QTest::addColumn<QString>("criteria");
  QTest::newRow("number") << int(SearchOption::Number) << "ObjectNum" << "trim(objectnum) = '12'";
  QTest::newRow("name") << int(SearchOption::Name) << "Name" << "name Like '*12*'";
}

void TestPageSort::userSearch() {
  QFETCH(int, option);
  QFETCH(QString, field);
  QFETCH(QString, criteria);
  QCOMPARE(UserSearchFieldOf(SearchOption(option)), field);
  QCOMPARE(int(UserSearchOptionOf(field)), option);
  QCOMPARE(SearchUserCriteria(field, QStringLiteral("12")), criteria);
}

void TestPageSort::columnAfterFind_data() {
  QTest::addColumn<int>("page");
  QTest::addColumn<int>("afterNumber");
  QTest::addColumn<int>("afterName");
  QTest::newRow("Messier") << QuerySet::Messier << 0 << 1;
  QTest::newRow("Caldwell") << QuerySet::Caldwell << 0 << 1;
  QTest::newRow("NGC") << QuerySet::NGC << 0 << 1;
  QTest::newRow("IC") << QuerySet::IC << 0 << 1;
  QTest::newRow("SAO") << QuerySet::SAO << 0 << 1;
  QTest::newRow("Deep-sky") << QuerySet::DeepSky << 1 << 2;
  QTest::newRow("User") << QuerySet::User << 1 << 2;
  QTest::newRow("Double Stars") << QuerySet::DoubleStars << 1 << 1;
}

void TestPageSort::columnAfterFind() {
  QFETCH(int, page);
  QFETCH(int, afterNumber);
  QFETCH(int, afterName);
  QCOMPARE(ColumnAfterFind(page, SearchOption::Number), afterNumber);
  QCOMPARE(ColumnAfterFind(page, SearchOption::Name), afterName);
}

// Three clicks on one column from the start state: the clause and state word after each.
void TestPageSort::clicks_data() {
  QTest::addColumn<int>("page");
  QTest::addColumn<int>("column");
  QTest::addColumn<QStringList>("clauses");
  QTest::addColumn<QStringList>("words");

  const QString dec = QStringLiteral("ORDER BY (val(DecSign & '1') * (DecDeg + DecMinute/60)) ");
  auto row = [](const char* name, int page, int column, const QString& first,
                const QString& second, const QString& w1, const QString& w2) {
    QTest::newRow(name) << page << column << QStringList{first, second, first}
                        << QStringList{w1, w2, w1};
  };
  // A fresh page holds "ObjectNum": its first click on Number gives the second clause.
  QTest::newRow("Messier Number from start")
      << QuerySet::Messier << 0
      << QStringList{"ORDER BY ObjectNum DESC", "ORDER BY ObjectNum", "ORDER BY ObjectNum DESC"}
      << QStringList{"ObjectNumDesc", "ObjectNum", "ObjectNumDesc"};
  QTest::newRow("Deep-sky Category from start")
      << QuerySet::DeepSky << 0
      << QStringList{"ORDER BY Category DESC, ObjectNum DESC", "ORDER BY Category, ObjectNum",
                     "ORDER BY Category DESC, ObjectNum DESC"}
      << QStringList{"ObjectNumDesc", "ObjectNum", "ObjectNumDesc"};
  QTest::newRow("User Number column from start")
      << QuerySet::User << 1
      << QStringList{"ORDER BY Category DESC, ObjectNum DESC", "ORDER BY Category, ObjectNum",
                     "ORDER BY Category DESC, ObjectNum DESC"}
      << QStringList{"ObjectNumDesc", "ObjectNum", "ObjectNumDesc"};
  row("Messier Name", QuerySet::Messier, 1, "ORDER BY Name", "ORDER BY Name DESC", "Name",
      "NameDesc");
  row("Deep-sky Name", QuerySet::DeepSky, 2, "ORDER BY Name", "ORDER BY Name DESC", "Name",
      "NameDesc");
  row("NGC Type", QuerySet::NGC, 2, "ORDER BY Type, Magnitude", "ORDER BY Type DESC, Magnitude",
      "Type", "TypeDesc");
  row("Double Type keeps plain Magnitude", QuerySet::DoubleStars, 2, "ORDER BY Type, Magnitude",
      "ORDER BY Type DESC, Magnitude", "Type", "TypeDesc");
  row("User Type", QuerySet::User, 3, "ORDER BY Type, Magnitude", "ORDER BY Type DESC, Magnitude",
      "Type", "TypeDesc");
  row("IC Const", QuerySet::IC, 3, "ORDER BY Constellation, Magnitude",
      "ORDER BY Constellation DESC, Magnitude", "Const", "ConstDesc");
  row("Double Const", QuerySet::DoubleStars, 3, "ORDER BY Constellation, val(Magnitude)",
      "ORDER BY Constellation DESC, val(Magnitude)", "Const", "ConstDesc");
  row("Deep-sky Const", QuerySet::DeepSky, 4, "ORDER BY Constellation, val(Magnitude)",
      "ORDER BY Constellation DESC, val(Magnitude)", "Const", "ConstDesc");
  row("SAO Mag", QuerySet::SAO, 4, "ORDER BY Magnitude", "ORDER BY Magnitude DESC", "Mag",
      "MagDesc");
  row("Double Mag", QuerySet::DoubleStars, 4, "ORDER BY val(Magnitude)",
      "ORDER BY val(Magnitude) DESC", "Mag", "MagDesc");
  row("User Mag", QuerySet::User, 5, "ORDER BY val(Magnitude)", "ORDER BY val(Magnitude) DESC",
      "Mag", "MagDesc");
  row("Caldwell Info", QuerySet::Caldwell, 5, "ORDER BY Info", "ORDER BY Info DESC", "Info",
      "InfoDesc");
  row("Deep-sky Info", QuerySet::DeepSky, 6, "ORDER BY Info", "ORDER BY Info DESC", "Info",
      "InfoDesc");
  row("Messier RA hours", QuerySet::Messier, 6, "ORDER BY RAHour, RAMinute",
      "ORDER BY RAHour DESC, RAMinute DESC", "RA", "RADesc");
  row("Messier RA minutes", QuerySet::Messier, 7, "ORDER BY RAHour, RAMinute",
      "ORDER BY RAHour DESC, RAMinute DESC", "RA", "RADesc");
  row("User RA minutes", QuerySet::User, 8, "ORDER BY RAHour, RAMinute",
      "ORDER BY RAHour DESC, RAMinute DESC", "RA", "RADesc");
  row("Messier Dec sign", QuerySet::Messier, 8, dec + "DESC", dec, "DEC", "DECDesc");
  row("Messier Dec minutes", QuerySet::Messier, 10, dec + "DESC", dec, "DEC", "DECDesc");
  row("Deep-sky Dec degrees", QuerySet::DeepSky, 10, dec + "DESC", dec, "DEC", "DECDesc");
  row("User Dec minutes", QuerySet::User, 11, dec + "DESC", dec, "DEC", "DECDesc");
}

void TestPageSort::clicks() {
  QFETCH(int, page);
  QFETCH(int, column);
  QFETCH(QStringList, clauses);
  QFETCH(QStringList, words);
  ScriptedPrompter prompter;
  AppState state(prompter);
  PageQuery& q = state.Pages[page];
  q.Where = QStringLiteral("WHERE (val(Magnitude) between  12 and  0)");
  for (int click = 0; click < 3; ++click) {
    QVERIFY(PageHeaderClick(q, page, column));
    QCOMPARE(q.OrderBy, clauses[click]);
    QCOMPARE(q.SortField, words[click]);
  }
  QCOMPARE(q.Where, QStringLiteral("WHERE (val(Magnitude) between  12 and  0)"));
}

void TestPageSort::declinationNeedsThreeClicks() {
  ScriptedPrompter prompter;
  AppState state(prompter);
  PageQuery& q = state.Pages[QuerySet::NGC];
  QVERIFY(PageHeaderClick(q, QuerySet::NGC, 1));  // by Name
  const QString start = q.OrderBy;
  PageHeaderClick(q, QuerySet::NGC, 9);
  QVERIFY(q.OrderBy.endsWith(QStringLiteral(" DESC")));  // north first
  PageHeaderClick(q, QuerySet::NGC, 9);
  QVERIFY(q.OrderBy.endsWith(QStringLiteral(") ")));  // ascending, closing blank kept
  PageHeaderClick(q, QuerySet::NGC, 9);
  QVERIFY(q.OrderBy.endsWith(QStringLiteral(" DESC")));  // third click starts over
  QVERIFY(q.OrderBy != start);
}

void TestPageSort::otherColumnInBetweenStartsAfresh() {
  ScriptedPrompter prompter;
  AppState state(prompter);
  PageQuery& q = state.Pages[QuerySet::Messier];
  PageHeaderClick(q, QuerySet::Messier, 1);
  QCOMPARE(q.OrderBy, QStringLiteral("ORDER BY Name"));
  PageHeaderClick(q, QuerySet::Messier, 4);
  QCOMPARE(q.OrderBy, QStringLiteral("ORDER BY Magnitude"));
  PageHeaderClick(q, QuerySet::Messier, 1);
  QCOMPARE(q.OrderBy, QStringLiteral("ORDER BY Name"));
  // The two halves of a split column are one key: the second click of RA on the other half.
  PageHeaderClick(q, QuerySet::Messier, 6);
  PageHeaderClick(q, QuerySet::Messier, 7);
  QCOMPARE(q.OrderBy, QStringLiteral("ORDER BY RAHour DESC, RAMinute DESC"));
}

void TestPageSort::clickOutsideTableChangesNothing_data() {
  QTest::addColumn<int>("page");
  QTest::addColumn<int>("column");
  QTest::newRow("hidden Category of Messier") << QuerySet::Messier << 11;
  QTest::newRow("Double past the end") << QuerySet::DoubleStars << 12;
  QTest::newRow("Deep-sky past the end") << QuerySet::DeepSky << 12;
  QTest::newRow("negative") << QuerySet::User << -1;
}

void TestPageSort::clickOutsideTableChangesNothing() {
  QFETCH(int, page);
  QFETCH(int, column);
  ScriptedPrompter prompter;
  AppState state(prompter);
  PageQuery& q = state.Pages[page];
  PageHeaderClick(q, page, page == QuerySet::Messier || page == QuerySet::DoubleStars ? 1 : 2);
  const PageQuery before = q;
  QVERIFY(!PageHeaderClick(q, page, column));
  QCOMPARE(q.OrderBy, before.OrderBy);
  QCOMPARE(q.SortField, before.SortField);
}

QTEST_GUILESS_MAIN(TestPageSort)
#include "tst_pagesort.moc"
