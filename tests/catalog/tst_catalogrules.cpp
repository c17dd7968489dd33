#include <QtTest>

#include "catalog/catalogpages.h"
#include "catalog/jetsql.h"
#include "catalog/pagesort.h"
#include "catalog/queryset.h"
#include "catalog/recordset.h"
#include "catalog/searchcriteria.h"
#include "catalog/userobjectlogic.h"
#include "core/appstate.h"
#include "core/numtext.h"
#include "fixturedb.h"
#include "sky/altitudefilter.h"
#include "sky/skycalc.h"
#include "support/scriptedprompter.h"
#include "support/testenv.h"

// The rules of the catalog windows: searches, header sorts, user fields and the altitude filter.
class TestCatalogRules : public QObject {
  Q_OBJECT
 private slots:
  // A typed quote stays inside its literal; the Exact Match of a double is trimmed.
  void criteria() {
    const SearchOption num = SearchOption::Number, name = SearchOption::Name;
    const QString exact = "name = '*%1' OR name like '*%1,*' OR name like '*%1'";
    QCOMPARE(SearchCriteria(QuerySet::NGC, num, " 7'0 "),
             QStringLiteral("trim(objectnum) = ' 7''0 '"));
    QCOMPARE(SearchCriteria(QuerySet::User, name, "x' or (((("),
             QStringLiteral("name Like '*x'' or ((((*'"));
    QCOMPARE(SearchCriteria(QuerySet::DoubleStars, num, "  Abt's "), exact.arg("Abt''s"));
    QCOMPARE(SearchCriteria(QuerySet::DoubleStars, name, " STF 12"),
             QStringLiteral("name Like '* STF 12*'"));
  }

  // Clicks on column headers from the start state: the clause and state word after each. A
  // click outside the page's table returns false and changes nothing.
  void clicks() {
    const auto walk = [](int page, const QList<int>& columns, const QStringList& clauses,
                         const QStringList& words) {
      ScriptedPrompter prompter;
      AppState state(prompter);
      PageQuery& q = state.Pages[page];
      q.Where = QStringLiteral("WHERE (val(Magnitude) between  12 and  0)");
      for (int click = 0; click < columns.size(); ++click) {
        const bool changes =
            click == 0 || clauses[click] != clauses[click - 1] || words[click] != words[click - 1];
        QCOMPARE(PageHeaderClick(q, page, columns[click]), changes);
        QCOMPARE(q.OrderBy, clauses[click]);
        QCOMPARE(q.SortField, words[click]);
      }
      QCOMPARE(q.Where, QStringLiteral("WHERE (val(Magnitude) between  12 and  0)"));
    };
    // Three clicks on one column.
    const auto thrice = [&](int page, int column, const QString& first, const QString& second,
                            const QString& word, bool descFirst = false) {
      const QString desc = word + "Desc";
      walk(page, {column, column, column}, {first, second, first},
           descFirst ? QStringList{desc, word, desc} : QStringList{word, desc, word});
    };
    // A fresh page holds "ObjectNum": its first click on Number gives the second clause.
    thrice(QuerySet::DeepSky, 0, "ORDER BY Category DESC, ObjectNum DESC",
           "ORDER BY Category, ObjectNum", "ObjectNum", true);
    // Type keeps a plain Magnitude; doubles and Category pages sort on the leading magnitude.
    thrice(QuerySet::DoubleStars, 2, "ORDER BY Type, Magnitude", "ORDER BY Type DESC, Magnitude",
           "Type");
    thrice(QuerySet::DoubleStars, 3, "ORDER BY Constellation, val(Magnitude)",
           "ORDER BY Constellation DESC, val(Magnitude)", "Const");
    thrice(QuerySet::User, 5, "ORDER BY val(Magnitude)", "ORDER BY val(Magnitude) DESC", "Mag");
    // Declination sorts north first under the word "DEC"; its ascending clause keeps the
    // closing blank.
    const QString dec = "ORDER BY (val(DecSign & '1') * (DecDeg + DecMinute/60)) ";
    thrice(QuerySet::Messier, 8, dec + "DESC", dec, "DEC");
    // Name, Mag, Name again start afresh; the two halves of the split RA column are one key;
    // a click on the hidden Category or past the end changes nothing.
    const QString name = "ORDER BY Name", mag = "ORDER BY Magnitude";
    const QString ra = "ORDER BY RAHour, RAMinute", raDesc = "ORDER BY RAHour DESC, RAMinute DESC";
    walk(QuerySet::Messier, {1, 4, 1, 6, 7, 11}, {name, mag, name, ra, raDesc, raDesc},
         {"Name", "Mag", "Name", "RA", "RADesc", "RADesc"});
    walk(QuerySet::DeepSky, {2, 12}, {name, name}, {"Name", "Name"});
  }

  // A user object's field as it is left: its text, and the message that keeps the user there.
  void fields() {
    const char* at90 = "Declination Minute must be a value of 0 when Degree is 90";
    const struct {
      int index;
      const char *text, *decDeg, *result, *message;
    } cases[] = {
        {1, "  NGC 12  ", "", "    NGC 12", ""},
        {1, "1234567890", "", "1234567890", ""},
        {1, "1\"2", "", "        12", ""},
        {2, "  O\"w\"l  ", "", "  Owl  ", ""},
        {4, "23", "", "23", ""},
        {4, "23.5", "", "23.5", "RA Hour must be a value between 0 and 23"},
        {5, "59.995", "", "59.995", ""},
        {5, "60", "", "60", "RA Minute must be a value between 0 and 59.99"},
        {7, "90", "", "90", ""},
        {7, "90.5", "", "90.5", "Declination Degree must be a value between 0 and 90"},
        {8, "0", "90", "0", ""},
        {8, "0.01", "90", "0.01", at90},
        {8, "60", "90", "60", at90},
        {8, "30", "89", "30", ""},
        {8, "60", "10", "60", "Declination Minute must be a value between 0 and 59.99"},
        {8, "-59.99", "10", "59.99", ""},
    };
    for (const auto& c : cases) {
      const UserFieldCheck check = ValidateUserField(c.index, c.text, c.decDeg);
      QCOMPARE(check.text + " | " + check.message, QString(c.result) + " | " + c.message);
      QCOMPARE(check.ok(), !*c.message);
    }
  }

  void captionsAndSeconds() {
    QCOMPARE(PageByTab(7).numberOptionCaption, QStringLiteral("Exact Match"));
    for (int tab = 0; tab < 8; ++tab) QCOMPARE(PageByQuerySet(PageByTab(tab).querySet).tab, tab);
    QCOMPARE(UserRecordPosition(3, 12), QStringLiteral(" Record: 3 of 12"));
    QCOMPARE(UserNewRecordPosition(0), QStringLiteral(" Record: New of 1"));
    QCOMPARE(ToggleButtonsCaption(true), QStringLiteral("&Save"));
    QCOMPARE(ToggleButtonsCaption(false), QStringLiteral("&Re-sort"));
    QCOMPARE(DecSignCaption(QString()), QStringLiteral("-"));
    QCOMPARE(ToggledDecSign(QString()), QStringLiteral("+"));
    // Seconds typed become minutes, half to even: 0.3" is 0.005', 0.9" 0.015'.
    const QStringList seconds = {"42", "0.3", "0.9", "-42"}, minutes = {"0.7", "0", "0.02", "-0.7"};
    for (int i = 0; i < seconds.size(); ++i) QCOMPARE(SecondsToDecimalText(seconds[i]), minutes[i]);
  }

  // The text the engine evaluates keeps the rows whose altitude at the observing date reaches
  // the minimum, give or take its truncated constants at the edge; with the filter off, all.
  void altitudeFilter() {
    for (const auto& [hemi, minAlt] : QList<QPair<QString, int>>{{"N", 20}, {"S", 35}, {"S", -1}}) {
      TestEnv env;
      AppState& s = *env.state;
      s.UserDate = env.fixedNow;
      s.settings.LatHemi = hemi;
      s.filter.FltAlt = minAlt >= 0;
      s.filter.FltMinAlt = qint16(minAlt);
      for (PageQuery& q : s.Pages) q.Filter = QStringLiteral("WHERE Name <> 'x'");
      auto db = fixture::catalog(env.path(QStringLiteral("c.mdb")));
      QHash<int, double> altitudes;  // by ObjectNum
      db->exec(QStringLiteral("BEGIN"));
      for (int h = 0; h < 24; ++h)
        for (int d = -80; d <= 80; d += 8) {
          // Both "+" and a blank sign mean north.
          const QString sign = d < 0 ? "-" : (d % 16 ? " " : "+");
          const int n = altitudes.size() + 1;
          fixture::insert(
              *db, "NGCObjects",
              {"NGC", n, "", "", "", "", "", double(h), 17.5, sign, double(qAbs(d)), 30});
          altitudes[n] = AltitudeAtUserDate(s, SkyPosition::of(h, 17.5, sign, qAbs(d), 30));
        }
      db->exec(QStringLiteral("COMMIT"));
      const double sidereal = SiderealDegreesAtUserDate(s);
      BuildAltitudeWhere(s, sidereal);
      // The whole text, with L and T for the latitude and the sidereal angle; the latitude goes
      // in with the same short factor as the rest of the text.
      const double latitude =
          (s.settings.LatDeg + s.settings.LatMin / 60.0) * (hemi == "N" ? 1 : -1);
      const QString alt = QStringLiteral(
          "(Sin(L) * Sin(((DecDeg + DecMinute / 60) * Val(DecSign & '1')) * 0.017453) + Cos(L) * "
          "Cos(((DecDeg + DecMinute / 60) * Val(DecSign & '1')) * 0.017453) * Cos((T - ((RAHour + "
          "RAMinute / 60) * 15)) * 0.017453))");
      const QString term = QString(" and (Atn(" + alt + " / Sqr(-1*" + alt + " * " + alt +
                                   " + 1)) * 57.2958) >= " + QString::number(minAlt))
                               .replace("(L)", "(" + PlainNumber(latitude * 0.017453) + ")")
                               .replace("Cos((T - ", "Cos((" + PlainNumber(sidereal) + " - ");
      QCOMPARE(s.Pages[5].Where, s.Pages[5].Filter + (minAlt < 0 ? QString() : term));
      // The recordset works the repeated sine out once a row.
      const QString source = PageRecordSource(s, 5);
      QCOMPARE(TranslateQuery(source, true).contains(QStringLiteral("shared_1")), minAlt >= 0);
      Recordset rs(db, source);
      const QStringList selected = fixture::column(rs, QStringLiteral("ObjectNum"));
      QCOMPARE(selected.size() == altitudes.size(), minAlt < 0);
      for (auto it = altitudes.cbegin(); it != altitudes.cend(); ++it) {
        const bool kept = selected.contains(QString::number(it.key()));
        const QByteArray altitude = QByteArray::number(it.value());
        if (it.value() >= minAlt + 0.1) QVERIFY2(kept, altitude);
        if (minAlt >= 0 && it.value() < minAlt - 0.1) QVERIFY2(!kept, altitude);
      }
    }
  }
};

QTEST_GUILESS_MAIN(TestCatalogRules)
#include "tst_catalogrules.moc"
