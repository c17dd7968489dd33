#include <QFile>
#include <QtTest>

#include "catalog/catalogpages.h"
#include "lists/listsort.h"
#include "catalog/recordset.h"
#include "core/apperror.h"
#include "fixturedb.h"
#include "sky/altitudefilter.h"
#include "sky/skycalc.h"
#include "support/testenv.h"

class TestCatalogPages : public QObject {
  Q_OBJECT

 private slots:
  void numberings() {
    const int sets[8] = {4, 0, 5, 3, 2, 7, 6, 1};
    for (int tab = 0; tab < 8; ++tab) {
      QCOMPARE(PageByTab(tab).querySet, sets[tab]);
      QCOMPARE(PageByQuerySet(sets[tab]).tab, tab);
    }
    const CatalogPage& sao = PageByTab(6);
    QCOMPARE(sao.dataControl, QStringLiteral("datSAOStarsRS"));
    QCOMPARE(sao.findNext, QStringLiteral("cmdSAONext"));
    const CatalogPage& dbl = PageByTab(7);
    QCOMPARE(dbl.grid, QStringLiteral("DBDoubles"));
    QCOMPARE(dbl.numberOptionCaption, QStringLiteral("Exact Match"));
    QCOMPARE(PageByTab(5).source, CatalogPage::Source::UserList);
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
    QCOMPARE(ListRecordSource(QStringLiteral("ORDER BY DisplayOrder")),
             QStringLiteral("SELECT DisplayOrder, Goto, Observed, Category, ObjectNum, Name, Type, "
                            "Constellation, Magnitude, Info, RAHour, RAMinute, DecSign, DecDeg, "
                            "DecMinute From Objects ORDER BY DisplayOrder"));
  }

  void layouts() {
    const ColumnLayouts& m = PageByTab(0).editListColumns;
    QCOMPARE(m.size(), 12);
    QCOMPARE(m[0].caption, QStringLiteral("Number"));
    QCOMPARE(m[0].alignment, Qt::AlignRight);
    QVERIFY(m[8].ownCaption && m[8].caption.isEmpty() && m[8].width == 300);
    QVERIFY(m[11].hidden);
    const ColumnLayouts& d = PageByTab(7).hhcColumns;
    QVERIFY(d[0].hidden);
    QCOMPARE(d[1].width, 3300);
    QCOMPARE(PageByTab(4).editListColumns[2].width, 2300);
    QCOMPARE(PageByTab(4).hhcColumns[2].width, 2200);
    QCOMPARE(PageByTab(4).findColumnName, 2);
    QCOMPARE(PageByTab(7).findColumnNumber, 1);
  }

  void ensureUserListCopiesOnce() {
    TestEnv env;
    AppState& s = *env.state;
    s.programFolder = env.path(QStringLiteral("prog"));
    s.settings.DataDir = env.path(QStringLiteral("user/"));
    try {
      EnsureUserList(s);
      QFAIL("no error without the template");
    } catch (const AppError& e) {
      QCOMPARE(e.number, ErrNo::FileNotFound);
    }
    QDir().mkpath(s.programFolder);
    fixture::userList(s.programFolder + QStringLiteral("/TavorineUserList.tmp"));
    EnsureUserList(s);
    QVERIFY(QFile::exists(s.userListPath()));
    auto db = Database::open(s.userListPath(), Database::Mode::ReadWrite);
    fixture::insert(*db, QStringLiteral("UserObjects"), {"PGC", 1, "Mine", "", "", " ", "", 1, 0, "+", 1, 0});
    EnsureUserList(s);  // an existing list is kept
    Recordset rs(db, QStringLiteral("UserObjects"));
    QCOMPARE(rs.RecordCount(), 1);
  }

  void altitudeExpressionText() {
    // The whole template, with L and T standing for the two numbers.
    const QString tmpl = QStringLiteral(
        "(Atn((Sin(L) * Sin(((DecDeg + DecMinute / 60) * Val(DecSign & '1')) * 0.017453) + Cos(L) * Cos(((DecDeg + DecMinute / 60) * Val(DecSign & '1')) * 0.017453) * Cos((T - ((RAHour + RAMinute / 60) * 15)) * 0.017453)) / Sqr(-1*(Sin(L) * Sin(((DecDeg + DecMinute / 60) * Val(DecSign & '1')) * 0.017453) + Cos(L) * Cos(((DecDeg + DecMinute / 60) * Val(DecSign & '1')) * 0.017453) * Cos((T - ((RAHour + RAMinute / 60) * 15)) * 0.017453)) * (Sin(L) * Sin(((DecDeg + DecMinute / 60) * Val(DecSign & '1')) * 0.017453) + Cos(L) * Cos(((DecDeg + DecMinute / 60) * Val(DecSign & '1')) * 0.017453) * Cos((T - ((RAHour + RAMinute / 60) * 15)) * 0.017453)) + 1)) * 57.2958)");
    auto expected = [&](const QString& l, const QString& t) {
      QString e = tmpl;
      e.replace(QStringLiteral("Sin(L)"), QStringLiteral("Sin(") + l + QLatin1Char(')'));
      e.replace(QStringLiteral("Cos(L)"), QStringLiteral("Cos(") + l + QLatin1Char(')'));
      e.replace(QStringLiteral("Cos((T - "), QStringLiteral("Cos((") + t + QStringLiteral(" - "));
      return e;
    };
    const QString north = AltitudeExpression(0.45960, 315.25);
    QCOMPARE(north, expected(QStringLiteral("0.4596"), QStringLiteral("315.25")));
    QCOMPARE(north.count(QStringLiteral("0.4596")), 6);
    QCOMPARE(north.count(QStringLiteral("315.25")), 3);
    const QString south = AltitudeExpression(-0.59341, 10);
    QCOMPARE(south, expected(QStringLiteral("-0.59341"), QStringLiteral("10")));
    QVERIFY(south.contains(QStringLiteral("Sin(-0.59341) * Sin(")));
  }

  void buildAltitudeWhere() {
    TestEnv env;
    AppState& s = *env.state;
    for (int i = 0; i < 8; ++i) s.Pages[i].Filter = QStringLiteral("WHERE True");
    s.Pages[1].Filter = QStringLiteral("WHERE (val(Magnitude) between  10 and -2)");
    s.filter.FltAlt = false;
    BuildAltitudeWhere(s, 100);
    QCOMPARE(s.Pages[1].Where, s.Pages[1].Filter);
    QCOMPARE(s.Pages[4].Where, QStringLiteral("WHERE True"));

    s.filter.FltAlt = true;
    s.filter.FltMinAlt = 0;
    s.settings.LatHemi = QStringLiteral("S");
    s.settings.LatDeg = 33;
    s.settings.LatMin = 52;
    BuildAltitudeWhere(s, 42.5);
    const double lat = -(33 + 52 / 60.0) * 0.017453;
    const QString term = QStringLiteral(" and ") + AltitudeExpression(lat, 42.5) + QStringLiteral(" >= 0");
    QCOMPARE(s.Pages[1].Where, s.Pages[1].Filter + term);
    QCOMPARE(s.Pages[7].Where, QStringLiteral("WHERE True") + term);
    QVERIFY(s.Pages[7].Where.contains(QStringLiteral("Sin(-0.59")));
  }

  // The text the engine evaluates keeps the rows whose altitude at the observing date reaches
  // the minimum, give or take its truncated constants at the edge.
  void altitudeFilterSelectsRowsAboveTheMinimum_data() {
    QTest::addColumn<QString>("hemi");
    QTest::addColumn<int>("minAlt");
    QTest::newRow("north 20") << "N" << 20;
    QTest::newRow("north 0") << "N" << 0;
    QTest::newRow("south 35") << "S" << 35;
  }
  void altitudeFilterSelectsRowsAboveTheMinimum() {
    QFETCH(QString, hemi);
    QFETCH(int, minAlt);
    TestEnv env;
    AppState& s = *env.state;
    s.UserDate = env.fixedNow;
    s.settings.LatHemi = hemi;
    s.filter.FltAlt = true;
    s.filter.FltMinAlt = qint16(minAlt);
    for (PageQuery& q : s.Pages) q.Filter = QStringLiteral("WHERE True");
    auto db = fixture::catalog(env.path(QStringLiteral("c.mdb")));
    int n = 0;
    db->exec(QStringLiteral("BEGIN"));
    for (int h = 0; h < 24; h += 1)
      for (int d = -80; d <= 80; d += 8) {
        const QString sign = d < 0 ? QStringLiteral("-") : (d % 16 ? QStringLiteral(" ") : QStringLiteral("+"));
        fixture::insert(*db, QStringLiteral("NGCObjects"),
                        {"NGC", ++n, "", "", "", "", "", double(h), 17.5, sign, double(qAbs(d)), 30});
      }
    db->exec(QStringLiteral("COMMIT"));
    BuildAltitudeWhere(s, SiderealDegreesAtUserDate(s));
    Recordset rs(db, PageRecordSource(s, 5));
    QSet<int> selected;
    if (rs.RecordCount() > 0) {
      rs.MoveFirst();
      while (!rs.isEOF()) {
        selected.insert(rs.value(QStringLiteral("ObjectNum")).toInt());
        rs.MoveNext();
      }
    }
    Recordset all(db, QStringLiteral("NGCObjects"));
    int checked = 0;
    all.MoveFirst();
    while (!all.isEOF()) {
      const SkyPosition p{all.text(QStringLiteral("RAHour")), all.text(QStringLiteral("RAMinute")),
                          all.text(QStringLiteral("DecSign")), all.text(QStringLiteral("DecDeg")),
                          all.text(QStringLiteral("DecMinute"))};
      const double alt = AltitudeAtUserDate(s, p);
      const int num = all.value(QStringLiteral("ObjectNum")).toInt();
      if (alt >= minAlt + 0.1) QVERIFY2(selected.contains(num), qPrintable(QString::number(alt)));
      if (alt < minAlt - 0.1) QVERIFY2(!selected.contains(num), qPrintable(QString::number(alt)));
      ++checked;
      all.MoveNext();
    }
    QCOMPARE(checked, n);
    QVERIFY(!selected.isEmpty());
    QVERIFY(selected.size() < n);
  }
};

QTEST_MAIN(TestCatalogPages)
#include "tst_catalogpages.moc"
