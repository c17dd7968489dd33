#include <QTemporaryDir>
#include <QtTest>

#include "catalog/database.h"
#include "catalog/jetsql.h"
#include "core/apperror.h"
#include "fixturedb.h"

class TestJetSql : public QObject {
  Q_OBJECT

 private:
  QTemporaryDir dir_;
  std::shared_ptr<Database> db_;

  QVariant scalar(const QString& classicExpr) {
    Statement st = db_->prepare(QStringLiteral("SELECT ") + TranslateQuery(classicExpr));
    st.step();
    return st.value(0);
  }

 private slots:
  void initTestCase() {
    db_ = fixture::catalog(dir_.filePath(QStringLiteral("c.mdb")));
    using fixture::Obj;
    const QList<Obj> rows = {
        {"Messier", 31, "Andromeda Galaxy", "Galaxy", "And", "3.4", "", 0, 42.7, "+", 41, 16},
        {"Messier", 42, "Orion Nebula", "Nebula", "Ori", "4", "", 5, 35.3, "-", 5, 27},
        {"Messier", 13, "Hercules Cluster", "Globular Cluster", "Her", "5.8", "", 16, 41.7, " ", 36, 28},
    };
    for (const Obj& o : rows) fixture::insert(*db_, QStringLiteral("MessierObjects"), o);
  }

  // The classic functions as the engine works them out, or the error they raise.
  void functions_data() {
    QTest::addColumn<QString>("expr");
    QTest::addColumn<QVariant>("expected");
    QTest::addColumn<int>("error");
    const auto row = [](const char* name, const QString& expr, const QVariant& expected,
                        int error = 0) { QTest::newRow(name) << expr << expected << error; };
    row("val number", "Val(7)", 7);
    row("val joins numbers as the engine writes them", "Val(2.0 & 5)", 2.05);
    row("mid", "Mid('4.5,6.1', 5)", "6.1");
    row("mid length", "Mid('abcdef', 2, 3)", "bcd");
    row("mid past end", "Mid('abc', 9, 2)", "");
    row("instr", "Instr('4.5,6.1', ',')", 4);
    row("instr case", "Instr('Andromeda', 'DROM')", 3);
    row("instr start", "Instr(3, 'abcabc', 'a')", 4);
    row("trim blanks only", "'[' & Trim('  a b \t ') & ']'", "[a b \t]");
    row("trim real", "Trim(31.0)", "31");
    row("arithmetic", "Atn(1) * 4 + Sqr(2.25) + Sin(0) + Cos(0) + 7 Mod 3", M_PI + 3.5);
    row("ninety brackets", QString(90, '(') + "1" + QString(90, ')'), 1);
    // The classic operators and literals.
    row("words inside a literal", "'True & False' & ''", "True & False");
    row("double quotes", "\"it's\"", "it's");
    row("concat skips null", "'a' & Null & 'b'", "ab");
    row("concat below plus", "1 + 2 & 3", "33");
    row("concat above compare, any case", "'x' & 'y' = 'XY'", 1);
    row("like a joined pattern", "'Andromeda' like 'AND' & '*'", 1);
    row("between reversed expressions", "2 between 3 and 1 + 0", 1);
    row("between then and", "2 between 3 and 1 and 1 = 1", 1);
    row("like any case", "'Andromeda Galaxy' Like '*andr*'", 1);
    row("like question mark", "'Orion Nebula' Like 'Orion Neb?la'", 1);
    // 1: the plain character matches itself and nothing else.
    row("like percent is plain", "('100 sure' Like '*100%*') * 2 + ('100% sure' Like '*100%*')", 1);
    row("like underscore is plain", "('exo' Like '*e_o*') * 2 + ('sure_ok' Like '*e_o*')", 1);
    row("sqr negative", "Sqr(-1)", {}, ErrNo::Database);
    row("mid start 0", "Mid('abc', 0)", {}, ErrNo::Database);
    row("mid negative length", "Mid('abc', 1, -1)", {}, ErrNo::Database);
    row("no such column", "Nonsense + 1", {}, ErrNo::Database);
    // Nesting beyond what the reader follows is refused, however deep.
    for (const char* open : {"(", "not ", "-", "2^", "Val("})
      row(qPrintable(QStringLiteral("3000 times %1").arg(open)), QString(open).repeated(3000) + "1",
          {}, ErrNo::QueryTooComplex);
    row("3000 brackets after a term", "'x' or " + QString("(").repeated(3000) + "1", {},
        ErrNo::QueryTooComplex);
  }
  void functions() {
    QFETCH(QString, expr);
    QFETCH(QVariant, expected);
    QFETCH(int, error);
    try {
      const QVariant v = scalar(expr);
      QCOMPARE(0, error);
      if (expected.typeId() == QMetaType::Double)
        QVERIFY2(qAbs(v.toDouble() - expected.toDouble()) < 1e-9, qPrintable(v.toString()));
      else
        QCOMPARE(v.toString(), expected.toString());
    } catch (const AppError& e) {
      QCOMPARE(e.number, error);
      QVERIFY(!e.description.isEmpty());
    }
  }

  // A condition that repeats a bracketed term keeps the same rows when the term is worked
  // out once a row, and is left as written where that could change anything.
  void sharedTerms_data() {
    QTest::addColumn<QString>("where");
    QTest::addColumn<bool>("shared");
    QTest::newRow("number as text") << "ObjectNum = '31' and (Sin(RAHour) + DecDeg) * "
                                       "(Sin(RAHour) + DecDeg) > 0" << true;
    QTest::newRow("or at the top") << "Name Like '*neb*' or (Cos(DecDeg) * 2) > (Cos(DecDeg) * 2) - 1"
                                   << true;
    QTest::newRow("sqr can fail") << "(Sqr(DecDeg) + 1) > (Sqr(DecDeg) + 1) - 1" << false;
    QTest::newRow("null is no column") << "Info Is Null or (Sin(DecDeg)) = (Sin(DecDeg))" << false;
    QTest::newRow("qualified") << "MessierObjects.Name <> '' and (Sin(DecDeg)) > (Sin(DecDeg)) - 1"
                               << false;
    QTest::newRow("once") << "(Sin(DecDeg) + 1) > 0" << false;
  }
  void sharedTerms() {
    QFETCH(QString, where);
    QFETCH(bool, shared);
    const QString sql = "SELECT ObjectNum From MessierObjects WHERE " + where + " ORDER BY ObjectNum;";
    const QString rewritten = TranslateQuery(sql, true);
    QCOMPARE(rewritten.contains(QStringLiteral("shared_1")), shared);
    QStringList rows[2];
    const QString texts[2] = {TranslateQuery(sql), rewritten};
    for (int i = 0; i < 2; ++i) {
      Statement st = db_->prepare(texts[i]);
      while (st.step()) rows[i] << st.value(0).toString();
    }
    QCOMPARE(rows[1], rows[0]);
  }

  void simpleSelect_data() {
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("parts");  // columns|table|where|orderBy, or "none"
    QTest::newRow("page") << "SELECT a, b From MessierObjects WHERE 1 and x = 2 ORDER BY a DESC"
                          << "a, b|MessierObjects|1 and x = 2|a DESC";
    QTest::newRow("no where") << "SELECT * FROM Objects ORDER BY DisplayOrder"
                              << "*|Objects||DisplayOrder";
    QTest::newRow("bracketed") << "SELECT * FROM [MapStars to 4_5]" << "*|MapStars to 4_5||";
    QTest::newRow("subquery in where") << "SELECT a FROM t WHERE a IN (SELECT b FROM u ORDER BY b)"
                                       << "a|t|a IN (SELECT b FROM u ORDER BY b)|";
    for (const char* sql : {"SELECT a FROM t JOIN u ON t.x = u.x", "SELECT a FROM t AS z",
                            "SELECT DISTINCT a FROM t", "SELECT a FROM t GROUP BY a"})
      QTest::newRow(sql) << sql << "none";
  }
  void simpleSelect() {
    QFETCH(QString, sql);
    QFETCH(QString, parts);
    const auto s = ParseSimpleSelect(sql);
    if (parts == QLatin1String("none")) {
      QVERIFY(!s.has_value());
      return;
    }
    QVERIFY(s.has_value());
    QCOMPARE(QStringList({s->columns, s->table, s->where, s->orderBy}).join(QLatin1Char('|')), parts);
  }
};

QTEST_GUILESS_MAIN(TestJetSql)
#include "tst_jetsql.moc"
