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

  // The filter's default clauses keep some rows of every page, all within their magnitude bounds.
  void defaultFilterClauses() {
    const auto clauses = FilterClauses(FilterFormFrom(FilterSettings{}));
    for (const CatalogPage& page : CatalogPages()) {
      if (page.source == CatalogPage::Source::UserList) continue;
      const int all = open(page.querySet, "WHERE True", "ORDER BY ObjectNum")->RecordCount();
      auto rs = open(page.querySet, clauses[page.querySet], "ORDER BY ObjectNum");
      QVERIFY2(rs->RecordCount() > 0 && rs->RecordCount() <= all, qPrintable(page.table));
      for (rs->MoveFirst(); !rs->isEOF(); rs->MoveNext()) {
        const double m = Val(rs->text("Magnitude"));
        QVERIFY2(m >= -2 && m <= 12, qPrintable(rs->text("Magnitude")));
      }
    }
  }

  // Declination and magnitude sorts: each value at least the one before.
  void headerSorts_data() {
    QTest::addColumn<int>("querySet");
    QTest::addColumn<QString>("orderBy");
    for (int qs : {4, 1, 2})
      for (const char* orderBy : {"ORDER BY (val(DecSign & '1') * (DecDeg + DecMinute/60)) DESC",
                                  "ORDER BY (val(DecSign & '1') * (DecDeg + DecMinute/60)) ",
                                  "ORDER BY val(Magnitude)", "ORDER BY val(Magnitude) DESC"})
        QTest::addRow("%d %s", qs, orderBy) << qs << QString(orderBy);
  }
  void headerSorts() {
    QFETCH(int, querySet);
    QFETCH(QString, orderBy);
    auto rs = open(querySet, "WHERE True", orderBy);
    QVERIFY(rs->RecordCount() > 1);
    const double sign = orderBy.contains("DESC") ? -1 : 1;
    double previous = -1e9;
    for (rs->MoveFirst(); !rs->isEOF(); rs->MoveNext()) {
      const double dec = (rs->value("DecDeg").toDouble() + rs->value("DecMinute").toDouble() / 60) *
                         Val(rs->text("DecSign") + '1');
      const double key = sign * (orderBy.contains("DecSign") ? dec : Val(rs->text("Magnitude")));
      QVERIFY(key >= previous - 1e-9);
      previous = key;
    }
  }

  // The altitude filter keeps the same rows on the catalog pages whether the sine it repeats is
  // worked out once a row (as the recordset does) or three times, as the text is written.
  void altitudeFilterKeepsTheWrittenRows_data() {
    QTest::addColumn<QString>("latHemi");
    QTest::addColumn<double>("sidereal");
    QTest::addColumn<int>("minAlt");
    QTest::addColumn<bool>("typeFilter");
    QTest::newRow("north, evening") << "N" << 47.123456789 << 20 << false;
    QTest::newRow("south, horizon, types") << "S" << -59.75 << 0 << true;
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
    int kept = 0;
    for (const CatalogPage& page : CatalogPages()) {
      if (page.source == CatalogPage::Source::UserList) continue;
      const QString source = PageRecordSource(s, page.querySet);
      QVERIFY(TranslateQuery(source, true).contains(QStringLiteral("shared_1")));
      Recordset rs(db_, source);
      QList<qint64> ids;
      for (int i = 0; i < rs.RecordCount(); ++i) ids << rs.bookmarkAt(i);
      const auto written = ParseSimpleSelect(TranslateQuery(source));
      Statement st = db_->prepare(QStringLiteral("SELECT rowid FROM %1 WHERE %2 ORDER BY %3, rowid")
                                     .arg(written->table, written->where, written->orderBy));
      QList<qint64> expected;
      while (st.step()) expected << st.int64Value(0);
      QCOMPARE(ids, expected);
      kept += int(ids.size());
    }
    QVERIFY(kept > 0);
  }

  // A number is whole, a name is found anywhere in any case, a quote is searched for, and
  // Exact Match finds a whole designation, not STF 1223 or STF 1224.
  void searches_data() {
    QTest::addColumn<int>("querySet");
    QTest::addColumn<bool>("byName");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("found");  // the Name of every row found, a part of it
    QTest::addColumn<int>("count");
    QTest::newRow("a whole number") << 4 << false << "3" << "" << 1;
    QTest::newRow("name any case") << 4 << true << "ANDR" << "Andromeda" << 1;
    QTest::newRow("a quote") << 4 << true << "bode's" << "Bode's" << 2;
    QTest::newRow("exact designation") << 1 << false << "STF 122" << "STF 122" << 1;
  }
  void searches() {
    QFETCH(int, querySet);
    QFETCH(bool, byName);
    QFETCH(QString, text);
    QFETCH(QString, found);
    QFETCH(int, count);
    auto rs = open(querySet, "WHERE True", "ORDER BY ObjectNum");
    const QString criteria =
        SearchCriteria(querySet, byName ? SearchOption::Name : SearchOption::Number, text);
    int n = 0;
    for (rs->FindFirst(criteria); !rs->NoMatch(); rs->FindNext(criteria), ++n) {
      const QString name = rs->text("Name");
      QVERIFY2(querySet == 1 ? name.endsWith(found) || name.contains(found + ",") : name.contains(found),
               qPrintable(name));
    }
    QCOMPARE(n, count);
  }
};

QTEST_GUILESS_MAIN(TestShippedCatalog)
#include "tst_shippedcatalog.moc"
