#include <QFileInfo>
#include <QtTest>

#include "catalog/catalogpages.h"
#include "catalog/filterlogic.h"
#include "catalog/jetsql.h"
#include "catalog/searchcriteria.h"
#include "catalog/recordset.h"
#include "core/numtext.h"
#include "sky/altitudefilter.h"
#include "support/testenv.h"

// The program's real query texts on the shipped catalog database.
class TestShippedCatalog : public QObject {
  Q_OBJECT

  TestEnv env_;
  std::shared_ptr<Database> db_;

  QString source(int querySet, const QString& where, const QString& orderBy) {
    env_.state->Pages[querySet].Where = where;
    env_.state->Pages[querySet].OrderBy = orderBy;
    return PageRecordSource(*env_.state, querySet);
  }

  static double dec(Recordset& rs) {
    return (rs.value(QStringLiteral("DecDeg")).toDouble() +
            rs.value(QStringLiteral("DecMinute")).toDouble() / 60) *
           Val(rs.text(QStringLiteral("DecSign")) + QLatin1Char('1'));
  }

 private slots:
  void initTestCase() {
    const QString path = env_.state->catalogPath();
    if (!QFileInfo::exists(path)) QSKIP("the shipped catalog database is not there");
    db_ = Database::open(path, Database::Mode::ReadOnly);
  }

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
        QStringLiteral("(Type = 'Open Cluster' and"),
        QStringLiteral("((Type = 'Open Cluster' or Type = 'Cluster Nebulosity') and"));
    QTest::newRow("Deep-sky") << 2 << "WHERE (False or (val(Magnitude) between  12 and  0))";
    QTest::newRow("User") << 7 << "WHERE (val(Magnitude) between  12 and -2)";
    QTest::newRow("Doubles")
        << 1
        << "WHERE (val(Magnitude) between  10 and -2) and ((Val(Mid(Magnitude, Instr(Magnitude, "
           "',') + 1, 100)) - Val(Magnitude)) between  0 and  10) and (val(Info) between  2 and  30)";
  }
  void defaultFilterClauses() {
    QFETCH(int, querySet);
    QFETCH(QString, where);
    if (querySet == 7) QSKIP("the user table lives in its own database");
    Recordset rs(db_, source(querySet, where, QStringLiteral("ORDER BY ObjectNum")));
    Recordset all(db_, source(querySet, QStringLiteral("WHERE True"), QStringLiteral("ORDER BY ObjectNum")));
    QVERIFY(rs.RecordCount() > 0);
    QVERIFY(rs.RecordCount() <= all.RecordCount());
    rs.MoveFirst();
    while (!rs.isEOF()) {
      const double m = Val(rs.text(QStringLiteral("Magnitude")));
      QVERIFY2(m >= -2 && m <= 12, qPrintable(rs.text(QStringLiteral("Magnitude"))));
      rs.MoveNext();
    }
  }

  void headerSorts_data() {
    QTest::addColumn<int>("querySet");
    QTest::addColumn<QString>("orderBy");
    for (int qs : {4, 1, 2}) {
      const QByteArray p = QByteArray::number(qs) + ' ';
      QTest::newRow(p + "dec north first") << qs << "ORDER BY (val(DecSign & '1') * (DecDeg + DecMinute/60)) DESC";
      QTest::newRow(p + "dec ascending") << qs << "ORDER BY (val(DecSign & '1') * (DecDeg + DecMinute/60)) ";
      QTest::newRow(p + "val mag") << qs << "ORDER BY val(Magnitude)";
      QTest::newRow(p + "val mag desc") << qs << "ORDER BY val(Magnitude) DESC";
      QTest::newRow(p + "const") << qs << "ORDER BY Constellation DESC, val(Magnitude)";
      QTest::newRow(p + "type") << qs << "ORDER BY Type DESC, Magnitude";
      QTest::newRow(p + "ra") << qs << "ORDER BY RAHour DESC, RAMinute DESC";
      QTest::newRow(p + "number") << qs << "ORDER BY Category DESC, ObjectNum DESC";
    }
  }
  void headerSorts() {
    QFETCH(int, querySet);
    QFETCH(QString, orderBy);
    Recordset rs(db_, source(querySet, QStringLiteral("WHERE True"), orderBy));
    QVERIFY(rs.RecordCount() > 1);
    rs.MoveFirst();
    double prevDec = dec(rs), prevMag = Val(rs.text(QStringLiteral("Magnitude")));
    const bool decSort = orderBy.contains(QStringLiteral("DecSign"));
    const bool magSort = orderBy.startsWith(QStringLiteral("ORDER BY val(Magnitude)"));
    const bool desc = orderBy.contains(QStringLiteral("DESC"));
    rs.MoveNext();
    while (!rs.isEOF()) {
      const double d = dec(rs), m = Val(rs.text(QStringLiteral("Magnitude")));
      if (decSort) QVERIFY(desc ? d <= prevDec + 1e-9 : d >= prevDec - 1e-9);
      if (magSort) QVERIFY(desc ? m <= prevMag : m >= prevMag);
      prevDec = d;
      prevMag = m;
      rs.MoveNext();
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
    for (int q = 0; q < 8; ++q)
      s.Pages[q].Filter = typeFilter ? clauses[q] : QStringLiteral("WHERE True");
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
    Recordset m(db_, source(4, QStringLiteral("WHERE True"), QStringLiteral("ORDER BY ObjectNum")));
    m.FindFirst(SearchCriteria(4, SearchOption::Number, QStringLiteral("31")));
    QVERIFY(!m.NoMatch());
    QCOMPARE(m.text(QStringLiteral("ObjectNum")).trimmed(), QStringLiteral("31"));
    m.FindNext(SearchCriteria(4, SearchOption::Number, QStringLiteral("3")));
    QVERIFY(m.NoMatch() || m.text(QStringLiteral("ObjectNum")).trimmed() == QLatin1String("3"));
    m.FindFirst(SearchCriteria(4, SearchOption::Name, QStringLiteral("andr")));
    QVERIFY(!m.NoMatch());
    QVERIFY(m.text(QStringLiteral("Name")).contains(QStringLiteral("andr"), Qt::CaseInsensitive));
    m.FindFirst(SearchCriteria(4, SearchOption::Name, QStringLiteral("bode's")));
    QVERIFY(!m.NoMatch());
    QVERIFY(m.text(QStringLiteral("Name")).contains(QStringLiteral("Bode's Galaxy")));

    Recordset d(db_, source(1, QStringLiteral("WHERE True"), QStringLiteral("ORDER BY ObjectNum")));
    d.FindFirst(SearchCriteria(1, SearchOption::Number, QStringLiteral("STF 12")));
    while (!d.NoMatch()) {
      const QStringList parts = d.text(QStringLiteral("Name")).split(QLatin1Char(','));
      bool whole = false;
      for (const QString& p : parts) whole |= p.endsWith(QStringLiteral("STF 12"), Qt::CaseInsensitive);
      QVERIFY2(whole, qPrintable(d.text(QStringLiteral("Name"))));
      d.FindNext(SearchCriteria(1, SearchOption::Number, QStringLiteral("STF 12")));
    }
  }
};

QTEST_GUILESS_MAIN(TestShippedCatalog)
#include "tst_shippedcatalog.moc"
