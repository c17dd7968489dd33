#include <QFileInfo>
#include <QtTest>

#include "catalog/catalogpages.h"
#include "catalog/filterlogic.h"
#include "catalog/jetsql.h"
#include "catalog/recordset.h"
#include "catalog/searchcriteria.h"
#include "core/numtext.h"
#include "sky/altitudefilter.h"
#include "support/testenv.h"

// The program's real query texts on the shipped catalog database.
class TestShippedCatalog : public QObject {
  Q_OBJECT

  TestEnv env_;
  std::shared_ptr<Database> db_;

  std::unique_ptr<Recordset> open(int querySet, const QString& where, const QString& orderBy) {
    env_.state->Pages[querySet].Where = where;
    env_.state->Pages[querySet].OrderBy = orderBy;
    return std::make_unique<Recordset>(db_, PageRecordSource(*env_.state, querySet));
  }

 private slots:
  void initTestCase() {
    const QString path = env_.state->catalogPath();
    if (!QFileInfo::exists(path)) QSKIP("the shipped catalog database is not there");
    db_ = Database::open(path, Database::Mode::ReadOnly);
  }

  // The filter's default clauses keep some rows, all within their magnitude bounds.
  void defaultFilterClauses_data() {
    QTest::addColumn<int>("querySet");
    QTest::addColumn<QString>("where");
    const QString objects = QStringLiteral(
        "WHERE (False or (Type = 'Galaxy' and val(Magnitude) between  12 and  0) or (Type = "
        "'Globular Cluster' and val(Magnitude) between  12 and  0) or (Type = 'Open Cluster' and "
        "val(Magnitude) between  12 and  0) or (Type = 'Planetary Nebula' and val(Magnitude) "
        "between  12 and  0) or (Type = 'Nebula' and val(Magnitude) between  12 and  0))");
    QTest::newRow("Messier") << 4 << objects;
    QTest::newRow("NGC") << 5 << QString(objects).replace(
        "(Type = 'Open Cluster' and", "((Type = 'Open Cluster' or Type = 'Cluster Nebulosity') and");
    QTest::newRow("Deep-sky") << 2 << "WHERE (False or (val(Magnitude) between  12 and  0))";
    QTest::newRow("Doubles")
        << 1
        << "WHERE (val(Magnitude) between  10 and -2) and ((Val(Mid(Magnitude, Instr(Magnitude, "
           "',') + 1, 100)) - Val(Magnitude)) between  0 and  10) and (val(Info) between  2 and  30)";
  }
  void defaultFilterClauses() {
    QFETCH(int, querySet);
    QFETCH(QString, where);
    const int all = open(querySet, "WHERE True", "ORDER BY ObjectNum")->RecordCount();
    auto rs = open(querySet, where, "ORDER BY ObjectNum");
    QVERIFY(rs->RecordCount() > 0 && rs->RecordCount() <= all);
    for (rs->MoveFirst(); !rs->isEOF(); rs->MoveNext()) {
      const double m = Val(rs->text("Magnitude"));
      QVERIFY2(m >= -2 && m <= 12, qPrintable(rs->text("Magnitude")));
    }
  }

  void headerSorts_data() {
    QTest::addColumn<int>("querySet");
    QTest::addColumn<QString>("orderBy");
    for (int qs : {4, 1, 2})
      for (const char* orderBy :
           {"ORDER BY (val(DecSign & '1') * (DecDeg + DecMinute/60)) DESC",
            "ORDER BY (val(DecSign & '1') * (DecDeg + DecMinute/60)) ", "ORDER BY val(Magnitude)",
            "ORDER BY val(Magnitude) DESC", "ORDER BY Constellation DESC, val(Magnitude)",
            "ORDER BY Type DESC, Magnitude", "ORDER BY RAHour DESC, RAMinute DESC",
            "ORDER BY Category DESC, ObjectNum DESC"})
        QTest::addRow("%d %s", qs, orderBy) << qs << QString(orderBy);
  }
  void headerSorts() {
    QFETCH(int, querySet);
    QFETCH(QString, orderBy);
    auto rs = open(querySet, "WHERE True", orderBy);
    QVERIFY(rs->RecordCount() > 1);
    const bool decSort = orderBy.contains("DecSign"), magSort = orderBy.startsWith("ORDER BY val(Magnitude)");
    const double sign = orderBy.contains("DESC") ? -1 : 1;  // each value at least the one before
    double prevDec = -1e9, prevMag = -1e9;
    for (rs->MoveFirst(); !rs->isEOF(); rs->MoveNext()) {
      const double dec = sign * (rs->value("DecDeg").toDouble() + rs->value("DecMinute").toDouble() / 60) *
                         Val(rs->text("DecSign") + '1');
      const double mag = sign * Val(rs->text("Magnitude"));
      if (decSort) QVERIFY(dec >= prevDec - 1e-9);
      if (magSort) QVERIFY(mag >= prevMag);
      prevDec = dec;
      prevMag = mag;
    }
  }

  // The altitude filter keeps the same rows on all eight pages whether the sine it repeats is
  // worked out once a row (as the recordset does) or three times, as the text is written.
  void altitudeFilterKeepsTheWrittenRows_data() {
    QTest::addColumn<QString>("latHemi");
    QTest::addColumn<double>("sidereal");
    QTest::addColumn<int>("minAlt");
    QTest::addColumn<bool>("typeFilter");
    QTest::newRow("north, evening") << "N" << 47.123456789 << 20 << false;
    QTest::newRow("north, horizon, types") << "N" << 200.5 << 0 << true;
    QTest::newRow("south, high") << "S" << -59.75 << 60 << false;
  }
  void altitudeFilterKeepsTheWrittenRows() {
    QFETCH(QString, latHemi);
    QFETCH(double, sidereal);
    QFETCH(int, minAlt);
    QFETCH(bool, typeFilter);
    AppState& s = *env_.state;
    s.settings.LatHemi = latHemi;
    s.filter.FltAlt = true;
    s.filter.FltMinAlt = qint16(minAlt);
    const auto clauses = FilterClauses(FilterFormFrom(s.filter));
    for (int q = 0; q < 8; ++q) s.Pages[q].Filter = typeFilter ? clauses[q] : QStringLiteral("WHERE True");
    BuildAltitudeWhere(s, sidereal);
    QFile::copy(s.programFolder + QStringLiteral("/TavorineUserList.tmp"), env_.path("user.mdb"));
    const auto user = Database::open(env_.path("user.mdb"), Database::Mode::ReadOnly);
    int kept = 0;
    for (const CatalogPage& page : CatalogPages()) {
      const auto db = page.source == CatalogPage::Source::UserList ? user : db_;
      const QString source = PageRecordSource(s, page.querySet);
      QVERIFY(TranslateQuery(source, true).contains(QStringLiteral("shared_1")));
      Recordset rs(db, source);
      QList<qint64> ids;
      for (int i = 0; i < rs.RecordCount(); ++i) ids << rs.bookmarkAt(i);
      const auto written = ParseSimpleSelect(TranslateQuery(source));
      Statement st = db->prepare(QStringLiteral("SELECT rowid FROM %1 WHERE %2 ORDER BY %3, rowid")
                                     .arg(written->table, written->where, written->orderBy));
      QList<qint64> expected;
      while (st.step()) expected << st.int64Value(0);
      QCOMPARE(ids, expected);
      kept += int(ids.size());
    }
    QVERIFY(kept > 0);
  }

  void searches() {
    auto m = open(4, "WHERE True", "ORDER BY ObjectNum");
    const auto find = [&](bool first, SearchOption option, const char* text) {
      const QString criteria = SearchCriteria(4, option, text);
      first ? m->FindFirst(criteria) : m->FindNext(criteria);
      return m->NoMatch() ? QString("no match") : m->text("ObjectNum").trimmed() + " " + m->text("Name");
    };
    QVERIFY(find(true, SearchOption::Number, "31").startsWith("31 "));
    QVERIFY(find(false, SearchOption::Number, "3") == "no match");  // 3 comes before 31
    QVERIFY(find(true, SearchOption::Name, "andr").contains("andr", Qt::CaseInsensitive));
    QVERIFY(find(true, SearchOption::Name, "bode's").contains("Bode's Galaxy"));

    // Exact Match finds the whole designation, not STF 1223 or STF 1224.
    auto d = open(1, "WHERE True", "ORDER BY ObjectNum");
    const QString exact = SearchCriteria(1, SearchOption::Number, QStringLiteral("STF 122"));
    int found = 0;
    for (d->FindFirst(exact); !d->NoMatch(); d->FindNext(exact), ++found) {
      bool whole = false;
      for (const QString& p : d->text("Name").split(',')) whole |= p.endsWith("STF 122", Qt::CaseInsensitive);
      QVERIFY2(whole, qPrintable(d->text("Name")));
    }
    QVERIFY(found > 0);
  }
};

QTEST_GUILESS_MAIN(TestShippedCatalog)
#include "tst_shippedcatalog.moc"
