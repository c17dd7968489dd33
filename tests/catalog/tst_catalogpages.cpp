#include <QtTest>

#include "catalog/catalogpages.h"
#include "catalog/jetsql.h"
#include "catalog/recordset.h"
#include "core/apperror.h"
#include "core/numtext.h"
#include "fixturedb.h"
#include "sky/altitudefilter.h"
#include "sky/skycalc.h"
#include "support/testenv.h"

class TestCatalogPages : public QObject {
  Q_OBJECT

 private slots:
  void pages() {
    const int sets[8] = {4, 0, 5, 3, 2, 7, 6, 1};
    for (int tab = 0; tab < 8; ++tab) {
      QCOMPARE(PageByTab(tab).querySet, sets[tab]);
      QCOMPARE(PageByQuerySet(sets[tab]).tab, tab);
    }
    QCOMPARE(PageByTab(7).numberOptionCaption, QStringLiteral("Exact Match"));
    QCOMPARE(PageByTab(5).source, CatalogPage::Source::UserList);
    // The Double Stars page shows no Category on the hand controller list.
    QVERIFY(PageByTab(7).hhcColumns[0].hidden);
  }

  void recordSources() {
    TestEnv env;
    AppState& s = *env.state;
    QCOMPARE(PageRecordSource(s, 4),
             QStringLiteral("SELECT ObjectNum, Name, Type, Constellation, Magnitude, Info, RAHour, "
                            "RAMinute, DecSign, DecDeg, DecMinute, Category From MessierObjects "
                            "WHERE True ORDER BY ObjectNum;"));
    s.Pages[2].Where = QStringLiteral("WHERE (False)");
    QCOMPARE(PageRecordSource(s, 2),
             QStringLiteral("SELECT Category, ObjectNum, Name, Type, Constellation, Magnitude, Info, "
                            "RAHour, RAMinute, DecSign, DecDeg, DecMinute From DeepSpaceObjects "
                            "WHERE (False) ORDER BY Category, ObjectNum;"));
  }

  void userListNeedsItsTemplate() {
    TestEnv env;
    env.state->programFolder = env.path(QStringLiteral("prog"));
    try {
      EnsureUserList(*env.state);
      QFAIL("no error without the template");
    } catch (const AppError& e) {
      QCOMPARE(e.number, ErrNo::FileNotFound);
    }
  }

  // The text the engine evaluates keeps the rows whose altitude at the observing date reaches
  // the minimum, give or take its truncated constants at the edge; with the filter off, all.
  void altitudeFilter_data() {
    QTest::addColumn<QString>("hemi");
    QTest::addColumn<int>("minAlt");  // below zero: the filter is off
    QTest::newRow("north 20") << "N" << 20;
    QTest::newRow("north 0") << "N" << 0;
    QTest::newRow("south 35") << "S" << 35;
    QTest::newRow("off") << "S" << -1;
  }
  void altitudeFilter() {
    QFETCH(QString, hemi);
    QFETCH(int, minAlt);
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
        fixture::insert(*db, "NGCObjects", {"NGC", n, "", "", "", "", "", double(h), 17.5, sign, double(qAbs(d)), 30});
        altitudes[n] = AltitudeAtUserDate(s, SkyPosition::of(h, 17.5, sign, qAbs(d), 30));
      }
    db->exec(QStringLiteral("COMMIT"));
    const double sidereal = SiderealDegreesAtUserDate(s);
    BuildAltitudeWhere(s, sidereal);
    // The whole text, with L and T for the latitude and the sidereal angle; the latitude goes
    // in with the same short factor as the rest of the text.
    const double latitude = (s.settings.LatDeg + s.settings.LatMin / 60.0) * (hemi == "N" ? 1 : -1);
    const QString alt = QStringLiteral(
        "(Sin(L) * Sin(((DecDeg + DecMinute / 60) * Val(DecSign & '1')) * 0.017453) + Cos(L) * "
        "Cos(((DecDeg + DecMinute / 60) * Val(DecSign & '1')) * 0.017453) * Cos((T - ((RAHour + "
        "RAMinute / 60) * 15)) * 0.017453))");
    const QString term = QString(" and (Atn(" + alt + " / Sqr(-1*" + alt + " * " + alt +
                                 " + 1)) * 57.2958) >= " + QString::number(minAlt))
                             .replace("(L)", "(" + PlainNumber(latitude * 0.017453) + ")")
                             .replace("Cos((T - ", "Cos((" + PlainNumber(sidereal) + " - ");
    QCOMPARE(s.Pages[5].Where, s.Pages[5].Filter + (minAlt < 0 ? QString() : term));
    // The recordset works the repeated sine out once a row; it keeps the rows of the text as
    // it is written.
    const QString source = PageRecordSource(s, 5);
    QCOMPARE(TranslateQuery(source, true).contains(QStringLiteral("shared_1")), minAlt >= 0);
    Recordset rs(db, source);
    QSet<int> selected, written;
    for (int i = 0; i < rs.RecordCount(); ++i) {
      rs.setAbsolutePosition(i);
      selected.insert(rs.value(QStringLiteral("ObjectNum")).toInt());
    }
    for (Statement st = db->prepare(TranslateQuery(source)); st.step();) written.insert(st.value(0).toInt());
    QCOMPARE(selected, written);
    QVERIFY(!selected.isEmpty());
    QCOMPARE(selected.size() == altitudes.size(), minAlt < 0);
    for (auto it = altitudes.cbegin(); it != altitudes.cend(); ++it) {
      if (it.value() >= minAlt + 0.1) QVERIFY2(selected.contains(it.key()), qPrintable(QString::number(it.value())));
      if (minAlt >= 0 && it.value() < minAlt - 0.1)
        QVERIFY2(!selected.contains(it.key()), qPrintable(QString::number(it.value())));
    }
  }
};

QTEST_MAIN(TestCatalogPages)
#include "tst_catalogpages.moc"
