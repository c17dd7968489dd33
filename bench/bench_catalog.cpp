// Opening catalog pages: the largest page to its last row, and the altitude filter over all
// eight pages. Uses the shipped catalog when it is there, else a generated one of like size.
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextStream>
#include <cstdio>

#include "silentprompter.h"
#include "catalog/catalogpages.h"
#include "catalog/database.h"
#include "catalog/recordset.h"
#include "core/appstate.h"
#include "core/paths.h"
#include "core/prompter.h"
#include "sky/altitudefilter.h"
#include "sky/skycalc.h"

namespace {


const char* kColumns =
    "Category TEXT COLLATE NOCASE, ObjectNum NUMERIC, Name TEXT COLLATE NOCASE, "
    "Type TEXT COLLATE NOCASE, Constellation TEXT COLLATE NOCASE, Magnitude TEXT COLLATE NOCASE, "
    "Info TEXT COLLATE NOCASE, RAHour REAL, RAMinute REAL, DecSign TEXT COLLATE NOCASE, "
    "DecDeg REAL, DecMinute REAL";

void fill(const Database& db, const QString& table, const QString& category, int rows) {
  db.exec(QStringLiteral("CREATE TABLE %1 (%2)").arg(table, QLatin1String(kColumns)));
  // Positions spread over the sky by a simple generator; magnitudes as text, doubles with two.
  db.exec(QStringLiteral(
              "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) "
              "INSERT INTO %2 SELECT '%3', i, 'Object ' || i, "
              "CASE i % 5 WHEN 0 THEN 'Galaxy' WHEN 1 THEN 'Open Cluster' WHEN 2 THEN 'Nebula' "
              "WHEN 3 THEN 'Globular Cluster' ELSE 'Planetary Nebula' END, 'And', "
              "CASE WHEN '%3' = 'Double Star' THEN (i % 9) || '.' || (i % 7) || ',' || (i % 11) "
              "ELSE (i % 14) || '.' || (i % 10) END, (i % 40) || '\" sep', "
              "(i * 7) % 24, (i * 13) % 60 + 0.5, CASE WHEN i % 3 = 0 THEN '-' ELSE '+' END, "
              "(i * 11) % 90, (i * 17) % 60 FROM n")
              .arg(rows)
              .arg(table, category));
}

void generate(const QString& catalogPath, const QString& userPath) {
  {
    QFile(catalogPath).open(QIODevice::WriteOnly);
    QFile(userPath).open(QIODevice::WriteOnly);
  }
  Database cat(catalogPath, Database::Mode::ReadWrite);
  cat.exec(QStringLiteral("BEGIN"));
  fill(cat, QStringLiteral("MessierObjects"), QStringLiteral("Messier"), 110);
  fill(cat, QStringLiteral("CaldwellObjects"), QStringLiteral("Caldwell"), 109);
  fill(cat, QStringLiteral("NGCObjects"), QStringLiteral("NGC"), 7840);
  fill(cat, QStringLiteral("ICObjects"), QStringLiteral("IC"), 5386);
  fill(cat, QStringLiteral("DeepSpaceObjects"), QStringLiteral("PGC"), 10000);
  fill(cat, QStringLiteral("StarObjects"), QStringLiteral("SAO"), 50000);
  fill(cat, QStringLiteral("DoubleStarObjects"), QStringLiteral("Double Star"), 6500);
  cat.exec(QStringLiteral("COMMIT"));
  Database user(userPath, Database::Mode::ReadWrite);
  fill(user, QStringLiteral("UserObjects"), QStringLiteral("Mine"), 100);
}

double openToLast(const std::shared_ptr<Database>& db, const QString& source, int* rows) {
  QElapsedTimer t;
  t.start();
  Recordset rs(db, source);
  if (rs.RecordCount() > 0) {
    rs.MoveLast();
    (void)rs.value(0);
  }
  *rows = rs.RecordCount();
  return t.nsecsElapsed() / 1e6;
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  QTextStream out(stdout);
  QTemporaryDir dir;
  SilentPrompter prompter;
  AppState state(prompter);
  state.programFolder = SourceDataFolder();
  state.settings.DataDir = dir.path() + QLatin1Char('/');

  QString catalogPath = state.catalogPath();
  const QString userPath = state.userListPath();
  const bool shipped = QFileInfo::exists(catalogPath);
  if (shipped) {
    const QString tmpl = state.programFolder + QStringLiteral("/TavorineUserList.tmp");
    if (QFileInfo::exists(tmpl)) QFile::copy(tmpl, userPath);
    else generate(dir.filePath(QStringLiteral("unused.mdb")), userPath);
    out << "catalog: shipped " << catalogPath << "\n";
  } else {
    catalogPath = dir.filePath(QStringLiteral("TavorineList.mdb"));
    QElapsedTimer g;
    g.start();
    generate(catalogPath, userPath);
    out << "catalog: generated (" << g.elapsed() << " ms to build)\n";
  }

  auto catalog = Database::open(catalogPath, Database::Mode::ReadOnly);
  auto user = Database::open(userPath, Database::Mode::ReadWrite);
  auto dbOf = [&](const CatalogPage& p) {
    return p.source == CatalogPage::Source::UserList ? user : catalog;
  };

  // The largest page, unfiltered.
  int largest = 0;
  int largestRows = 0;
  for (const CatalogPage& p : CatalogPages()) {
    Statement st = dbOf(p)->prepare(QStringLiteral("SELECT count(*) FROM ") + p.table);
    st.step();
    if (st.int64Value(0) > largestRows) {
      largestRows = int(st.int64Value(0));
      largest = p.tab;
    }
  }
  const CatalogPage& big = PageByTab(largest);
  for (int run = 1; run <= 3; ++run) {
    int rows = 0;
    const double ms = openToLast(dbOf(big), PageRecordSource(state, big.querySet), &rows);
    out << "largest page " << big.caption << ", run " << run << ": " << rows << " rows, "
        << QString::number(ms, 'f', 1) << " ms to open and reach the last row\n";
  }

  // The altitude filter on all eight pages.
  state.UserDate = QDateTime(QDate(2026, 11, 21), QTime(20, 30));
  state.filter.FltAlt = true;
  state.filter.FltMinAlt = 20;
  for (PageQuery& q : state.Pages) q.Filter = QStringLiteral("WHERE True");
  for (int run = 1; run <= 3; ++run) {
    QElapsedTimer t;
    t.start();
    BuildAltitudeWhere(state, SiderealDegreesAtUserDate(state));
    int total = 0, kept = 0;
    QString detail;
    for (const CatalogPage& p : CatalogPages()) {
      int rows = 0;
      const double ms = openToLast(dbOf(p), PageRecordSource(state, p.querySet), &rows);
      kept += rows;
      detail += QStringLiteral(" %1 %2 (%3 ms)").arg(p.caption).arg(rows).arg(ms, 0, 'f', 1);
      Q_UNUSED(total);
    }
    out << "altitude filter, eight pages, run " << run << ": "
        << QString::number(t.nsecsElapsed() / 1e6, 'f', 1) << " ms, " << kept
        << " rows kept;" << detail << "\n";
  }
  return 0;
}
