#include <QTemporaryDir>
#include <QtTest>
#include <optional>

#include "catalog/database.h"
#include "catalog/jetsql.h"
#include "catalog/recordset.h"
#include "core/apperror.h"
#include "fixturedb.h"

// The query translator, its classic functions, and the recordset that works through them.
class TestRecordset : public QObject {
  Q_OBJECT

  QTemporaryDir dir_;
  int n_ = 0;
  QString fresh() { return dir_.filePath(QStringLiteral("f%1.tlf").arg(++n_)); }
  std::shared_ptr<Database> db_;  // a catalog of three Messier objects

 private slots:
  void initTestCase() {
    db_ = fixture::catalog(fresh());
    using fixture::Obj;
    const QList<Obj> rows = {
        {"Messier", 31, "Andromeda Galaxy", "Galaxy", "And", "3.4", "", 0, 42.7, "+", 41, 16},
        {"Messier", 42, "Orion Nebula", "Nebula", "Ori", "4", "", 5, 35.3, "-", 5, 27},
        {"Messier", 13, "Hercules", "Globular Cluster", "Her", "5.8", "", 16, 41.7, " ", 36, 28},
    };
    for (const Obj& o : rows) fixture::insert(*db_, QStringLiteral("MessierObjects"), o);
  }

  // The classic functions as the engine works them out, or the error they raise; several
  // cases of one function or operator are joined into one text.
  // clang-format off
  void functions_data() {
    QTest::addColumn<QString>("expr");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("error");
    const auto row = [](const char* name, const QString& expr, const QString& expected,
                        int error = 0) { QTest::newRow(name) << expr << expected << error; };
    row("val", "Val(7) & '|' & Val(2.0 & 5)", "7|2.05");
    row("mid", "Mid('4.5,6.1', 5) & '|' & Mid('abcdef', 2, 3) & '|' & Mid('abc', 9, 2) & '|'",
        "6.1|bcd||");
    row("instr", "Instr('4.5,6.1', ',') & Instr('Andromeda', 'DROM') & Instr(3, 'abcabc', 'a') & "
        "Instr('4.5', ',')", "4340");
    row("trim blanks only", "'[' & Trim('  a b \t ') & Trim(31.0) & ']'", "[a b \t31]");
    row("arithmetic", "Round(Atn(1) * 4 + Sqr(2.25) + Sin(0) + Cos(0) + 7 Mod 3, 9)",
        "6.641592654");
    row("ninety brackets", QString(90, '(') + "1" + QString(90, ')'), "1");
    row("literals", "'True & False' & \"it's\" & 'a' & Null & 'b'", "True & Falseit'sab");
    row("precedence", "(1 + 2 & 3) & ('x' & 'y' = 'XY') & ('Andromeda' like 'AND' & '*') & "
        "(2 between 3 and 1 + 0) & (2 between 3 and 1 and 1 = 1)", "331111");
    row("like", "('Andromeda Galaxy' Like '*andr*') & ('Orion Nebula' Like 'Orion Neb?la') & "
        "('100 sure' Like '*100%*') & ('100% sure' Like '*100%*') & ('exo' Like '*e_o*') & "
        "('sure_ok' Like '*e_o*')", "110101");
    row("a literal of NULs", "Mid('a" + QString(1500, QChar()) + "''b', 1502)", "'b");
    row("sqr negative", "Sqr(-1)", {}, ErrNo::Database);
    row("mid start 0", "Mid('abc', 0)", {}, ErrNo::Database);
    // Nesting beyond what the reader follows is refused, however deep.
    for (const char* open : {"(", "not ", "-", "2^", "Val("})
      row(qPrintable(QStringLiteral("3000 times %1").arg(open)), QString(open).repeated(3000) + "1",
          {}, ErrNo::QueryTooComplex);
    row("3000 brackets after a term", "'x' or " + QString("(").repeated(3000) + "1", {},
        ErrNo::QueryTooComplex);
  }
  // clang-format on
  void functions() {
    QFETCH(QString, expr);
    QFETCH(QString, expected);
    QFETCH(int, error);
    try {
      Statement st = db_->prepare(QStringLiteral("SELECT ") + TranslateQuery(expr));
      st.step();
      QCOMPARE(st.value(0).toString(), expected);
      QCOMPARE(0, error);
    } catch (const AppError& e) {
      QCOMPARE(e.number, error);
      QVERIFY(!e.description.isEmpty());
    }
  }

  // A condition that repeats a bracketed term keeps the same rows when the term is worked
  // out once a row, and is left as written where that could change anything.
  void sharedTerms() {
    const QString sin = "(Sin(RAHour) + DecDeg)", cos = "(Cos(DecDeg) * 2)";
    const QList<QPair<QString, bool>> conditions = {
        {"ObjectNum = '31' and " + sin + " * " + sin + " > 0", true},
        {"Name Like '*neb*' or " + cos + " > " + cos + " - 1", true},
        {"(Sqr(DecDeg) + 1) > (Sqr(DecDeg) + 1) - 1", false},
        {"Info Is Null or (Sin(DecDeg)) = (Sin(DecDeg))", false},
        {"MessierObjects.Name <> '' and (Sin(DecDeg)) > (Sin(DecDeg)) - 1", false}};
    for (const auto& [where, shared] : conditions) {
      const QString sql = "SELECT ObjectNum From MessierObjects WHERE " + where + " ORDER BY 1;";
      const QString texts[2] = {TranslateQuery(sql), TranslateQuery(sql, true)};
      QVERIFY2(texts[1].contains(QStringLiteral("shared_1")) == shared, qPrintable(where));
      QStringList rows[2];
      for (int i = 0; i < 2; ++i)
        for (Statement st = db_->prepare(texts[i]); st.step();) rows[i] << st.value(0).toString();
      QCOMPARE(rows[1], rows[0]);
    }
  }

  // Steps on a list of rows named "R<order>", separated by "; " (a source may end in ";"): a
  // command and its argument, then after " => " what must hold (key=value; a column name gives
  // its value on the current row, "Col[]" the whole column). A command raises no error unless
  // err= says.
  // clang-format off
  void steps_data() {
    QTest::addColumn<QList<int>>("orders");
    QTest::addColumn<QString>("setup");  // SQL run before the recordset opens
    QTest::addColumn<QString>("steps");
    const auto row = [](const char* name, const QList<int>& orders, const char* steps,
                        const char* setup = "") {
      QTest::newRow(name) << orders << setup << steps;
    };
    row("empty, bad sources", {},
        " => bof=1 eof=1 count=0 pos=-1; first => err=nocur; last => err=nocur; next => "
        "err=nocur; prev => err=nocur; value => err=nocur; findfirst Name = 'x' => match=0; "
        "open NoSuchTable => err=db; open SELECT Nope From Objects => err=db; "
        "open SELECT Name From Objects WHERE Name = 'x => err=db");
    row("display order, then row order", {5, 1, 3, 3}, " => Name[]=R1,R3,R3b,R5",
        "UPDATE Objects SET Name = 'R3b' WHERE rowid = 4");
    row("moves and bookmarks", {1, 2, 3, 4, 5},
        " => pos=0 bof=0; prev => bof=1 eof=0 pos=-1; prev => err=nocur; value => err=nocur; "
        "next => Name=R1; last => pos=4; next => eof=1; next => err=nocur; prev => Name=R5; "
        "goto 0; move 3 => pos=3; goto 4; move -2 => pos=2; goto 2; move 9 => eof=1; goto 2; "
        "move -9 => bof=1; goto 3; move 0 => pos=3; mark; first; tomark => Name=R4; "
        "bookmark 999 => err=db");
    // A failed find keeps the row.
    row("finds", {1, 2, 3, 4},
        "findfirst name Like '*ANDR*' => match=1 pos=1; findnext name Like '*ANDR*' => pos=3; "
        "findnext name Like '*ANDR*' => match=0 pos=3; findprev name Like '*ANDR*' => pos=1; "
        "findprev name Like '*ANDR*' => match=0 pos=1; findlast trim(DisplayOrder) = '3' => "
        "pos=2; findfirst name = 'it's' => err=db pos=2",
        "UPDATE Objects SET Name = 'Andromeda' WHERE DisplayOrder IN (2, 4)");
    // Deletes leave gaps; the next add follows the last row.
    row("deletes", {1, 2, 3, 4, 5},
        "goto 1; delete => count=4 eof=0; value => err=nocur; next => Name=R3; delete; last => "
        "Name=R5; delete => count=2 eof=0; value => err=nocur; next => eof=1; last => Name=R4; "
        "add; set DisplayOrder=6; requery => DisplayOrder[]=1,4,6");
    // Rows added show at the end until a requery; the next add or move writes them.
    row("adds append and write to the file", {1, 4, 5},
        "last; add => shown=4; set Name=New; set DisplayOrder=6 => DisplayOrder=6; add; "
        "set Name=Newer; set DisplayOrder=0; last => Name=Newer count=5 "
        "DisplayOrder[]=1,4,5,6,0; requery => Name[]=Newer,R1,R4,R5,New");
    row("cancel writes nothing, delete the only row", {1},
        "add => shown=2; set Name=Gone; cancel => shown=1 Name=R1; set Name=Changed; cancel; "
        "requery => Name[]=R1; first; delete; next => eof=1 bof=1 count=0");
    // A change starts an edit itself; the next move, or closing, writes it.
    row("pending edits", {1, 2},
        "set Observed=Y; next; edit; set Goto=Y; update => Goto=Y; first; "
        "set Name=Pending; close; open SELECT Name, Goto, Observed FROM Objects ORDER BY "
        "DisplayOrder => Name[]=Pending,R2 Goto[]=,Y Observed[]=Y,");
    // Query sources and views are read whole; a document opened read-only refuses writes.
    row("query sources and views", {1, 2, 3},
        "open SELECT DisplayOrder, Name From Objects WHERE True ORDER BY DisplayOrder DESC; => "
        "Name[]=R3,R2,R1; value => err=nocur; open Objects to 2 => count=2 upd=0; findfirst "
        "Name = 'r2' => DisplayOrder=2; readonly Objects => upd=0; add => err=db",
        "CREATE VIEW \"Objects to 2\" AS SELECT * FROM Objects WHERE DisplayOrder <= 2");
    // A list window and the editor hold the same document open; each writes while the other
    // keeps its recordset.
    row("two connections", {1, 2},
        "open SELECT DisplayOrder, Goto, Observed, Name From Objects ORDER BY DisplayOrder; "
        "last; other Objects; last; add; set DisplayOrder=3; set Name=R3; last; back; "
        "set Observed=Y; first; other; first; delete; close; back; requery => Name[]=R2,R3; "
        "first => Observed=Y");
    // The number of a user object stays as typed and still sorts by its leading number.
    row("object numbers as typed", {},
        "open U; add; set ObjectNum=        12; add; set ObjectNum=0012; add; set ObjectNum=1.50; "
        "add; set ObjectNum=1e3; add; set ObjectNum=2; add; set ObjectNum=PK 064+05.1; add; "
        "set ObjectNum=12A; add; set ObjectNum=m31; open SELECT replace(ObjectNum, ' ', '_') N "
        "FROM U ORDER BY ObjectNum => N[]=1e3,1.50,2,0012,________12,12A,m31,PK_064+05.1",
        "CREATE TABLE U (ObjectNum TEXT COLLATE ObjectNumber)");
    // A large source is read in blocks of 64 rows.
    row("20000 rows", {},
        "open SELECT DisplayOrder, Name From Objects WHERE True ORDER BY DisplayOrder; => "
        "count=20000; last => Name=S20000; findprev trim(DisplayOrder) = '5' => pos=4; "
        "goto 63 => Name=S64",
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 20000) "
        "INSERT INTO Objects (DisplayOrder, Name) SELECT i, 'S' || i FROM n");
  }
  // clang-format on
  void steps() {
    QFETCH(QList<int>, orders);
    QFETCH(QString, setup);
    QFETCH(QString, steps);
    const QString path = fresh();
    auto db = fixture::list(path, orders);
    if (!setup.isEmpty()) db->exec(setup);
    // The first recordset; "other <source>" opens one on a second connection and works there,
    // "other" returns to it, "back" to the first.
    std::optional<Recordset> held[2];
    held[0].emplace(db, QStringLiteral("Objects"));
    std::optional<Recordset>* cur = &held[0];
    const auto rs = [&]() -> Recordset& { return **cur; };
    qint64 mark = 0;
    const auto observe = [&](const QString& key) -> QString {
      if (key == "bof") return QString::number(rs().isBOF());
      if (key == "eof") return QString::number(rs().isEOF());
      if (key == "pos") return QString::number(rs().AbsolutePosition());
      if (key == "count") return QString::number(rs().RecordCount());
      if (key == "shown") return QString::number(rs().displayRowCount());
      if (key == "match") return QString::number(!rs().NoMatch());
      if (key == "upd") return QString::number(rs().isUpdatable());
      if (key.endsWith("[]")) return fixture::column(rs(), key.chopped(2)).join(',');
      return rs().text(key);
    };
    static const QHash<QString, void (Recordset::*)()> plain = {
        {"first", &Recordset::MoveFirst},     {"last", &Recordset::MoveLast},
        {"next", &Recordset::MoveNext},       {"prev", &Recordset::MovePrevious},
        {"delete", &Recordset::Delete},       {"add", &Recordset::AddNew},
        {"edit", &Recordset::Edit},           {"update", &Recordset::Update},
        {"cancel", &Recordset::CancelUpdate}, {"requery", &Recordset::Requery}};
    static const QHash<QString, void (Recordset::*)(const QString&)> finds = {
        {"findfirst", &Recordset::FindFirst},
        {"findnext", &Recordset::FindNext},
        {"findprev", &Recordset::FindPrevious},
        {"findlast", &Recordset::FindLast}};
    static const QRegularExpression separator(QStringLiteral("; (?!=>)"));
    for (const QString& step : steps.split(separator)) {
      const QString command = step.section(" => ", 0, 0), verb = command.section(' ', 0, 0);
      const QString arg = command.section(' ', 1);
      int error = 0;
      try {
        if (const auto f = plain.value(verb)) (rs().*f)();
        else if (const auto find = finds.value(verb)) (rs().*find)(arg);
        else if (verb == "move") rs().Move(arg.toInt());
        else if (verb == "goto") rs().setAbsolutePosition(arg.toInt());
        else if (verb == "value") rs().value(0);
        else if (verb == "set") rs().setValue(arg.section('=', 0, 0), arg.section('=', 1));
        else if (verb == "close") cur->reset();
        else if (verb == "open") cur->emplace(db, arg);
        else if (verb == "readonly")
          cur->emplace(Database::open(path, Database::Mode::ReadOnly), arg);
        else if (verb == "other") {
          cur = &held[1];
          if (!arg.isEmpty()) cur->emplace(Database::open(path, Database::Mode::ReadWrite), arg);
        } else if (verb == "back") cur = &held[0];
        else if (verb == "mark") mark = rs().Bookmark();
        else if (verb == "tomark") rs().setBookmark(mark);
        else if (verb == "bookmark") rs().setBookmark(arg.toLongLong());
        else QVERIFY2(verb.isEmpty(), qPrintable(verb));
      } catch (const AppError& e) {
        error = e.number;
      }
      QString expectedError = "0";
      for (const QString& check : step.section(" => ", 1).split(' ', Qt::SkipEmptyParts)) {
        const QString key = check.section('=', 0, 0), want = check.section('=', 1);
        if (key == "err") expectedError = want;
        else QVERIFY2(observe(key) == want, qPrintable(step + ": " + key + " is " + observe(key)));
      }
      const QHash<QString, int> errors = {{"nocur", ErrNo::NoCurrentRecord},
                                          {"db", ErrNo::Database}};
      QVERIFY2(error == errors.value(expectedError),
               qPrintable(step + ": error " + QString::number(error)));
    }
  }
};

QTEST_GUILESS_MAIN(TestRecordset)
#include "tst_recordset.moc"
