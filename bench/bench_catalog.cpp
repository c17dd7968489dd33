// Catalog pages on the shipped catalog: the largest page (SAO Stars) opened to its last row,
// and the altitude filter over all eight pages, each page opened to its last row as the
// browser binds it.
#include <QCoreApplication>
#include <QFile>
#include <QTextStream>
#include <cmath>

#include "benchsetup.h"
#include "benchstats.h"
#include "catalog/catalogpages.h"
#include "catalog/database.h"
#include "catalog/jetsql.h"
#include "catalog/recordset.h"
#include "core/appstate.h"
#include "plainsky.h"
#include "sky/altitudefilter.h"
#include "sky/skycalc.h"

namespace {

int openToLast(const std::shared_ptr<Database>& db, const QString& source) {
  Recordset rs(db, source);
  if (rs.RecordCount() > 0) {
    rs.MoveLast();
    (void)rs.value(0);
  }
  return rs.RecordCount();
}

// The floors read the page's rows in its order with a plain statement.
Statement pageInOrder(const Database& db, const QString& source, const QString& columns) {
  const auto s = ParseSimpleSelect(TranslateQuery(source));
  return db.prepare(QStringLiteral("SELECT rowid, %1 FROM %2 ORDER BY %3, rowid")
                        .arg(columns, s->table, s->orderBy));
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  QTextStream out(stdout);
  bench::Setup setup;
  AppState& state = setup.state;
  QFile::copy(state.programFolder + QStringLiteral("/TavorineUserList.tmp"), state.userListPath());
  auto catalog = Database::open(state.catalogPath(), Database::Mode::ReadOnly);
  auto user = Database::open(state.userListPath(), Database::Mode::ReadWrite);
  auto dbOf = [&](const CatalogPage& p) {
    return p.source == CatalogPage::Source::UserList ? user : catalog;
  };

  const CatalogPage& sao = PageByTab(6);
  const QString saoSource = PageRecordSource(state, sao.querySet);
  int saoRows = 0;
  bench::report(out, QStringLiteral("SAO Stars page opened to its last row"),
                bench::measure([&](int) { saoRows = openToLast(catalog, saoSource); },
                               [&](int) {
                                 Statement st = pageInOrder(*catalog, saoSource,
                                                            QStringLiteral("ObjectNum, Name"));
                                 QVariant last;
                                 while (st.step()) last = st.value(2);
                               }),
                0);
  out << "  (" << saoRows << " rows)\n";

  state.UserDate = QDateTime(QDate::currentDate(), QTime(20, 30));
  state.filter.FltAlt = true;
  state.filter.FltMinAlt = 20;
  for (PageQuery& q : state.Pages) q.Filter = QStringLiteral("WHERE True");
  int kept = 0, rows = 0;
  const bench::Measured m = bench::measure(
      [&](int) {
        BuildAltitudeWhere(state, SiderealDegreesAtUserDate(state));
        kept = 0;
        for (const CatalogPage& p : CatalogPages())
          kept += openToLast(dbOf(p), PageRecordSource(state, p.querySet));
      },
      // The floor: every row of the eight pages read in page order, its altitude worked out
      // plainly with the constants of the filter text, the rows above the limit kept.
      [&](int) {
        const double lat = bench::latitudeDegrees(state.settings) * 0.017453;
        const double lst = SiderealDegreesAtUserDate(state);
        rows = 0;
        for (const CatalogPage& p : CatalogPages()) {
          Statement st =
              pageInOrder(*dbOf(p), PageRecordSource(state, p.querySet),
                          QStringLiteral("RAHour, RAMinute, DecSign, DecDeg, DecMinute"));
          std::vector<qint64> ids;
          while (st.step()) {
            ++rows;
            const double sign = st.value(3).toString() == QLatin1String("-") ? -1 : 1;
            const double dec = (st.doubleValue(4) + st.doubleValue(5) / 60) * sign * 0.017453;
            const double ha = (lst - (st.doubleValue(1) + st.doubleValue(2) / 60) * 15) * 0.017453;
            const double sn =
                std::sin(lat) * std::sin(dec) + std::cos(lat) * std::cos(dec) * std::cos(ha);
            if (std::atan(sn / std::sqrt(-sn * sn + 1)) * 57.2958 >= 20)
              ids.push_back(st.int64Value(0));
          }
        }
      });
  const bool met = bench::report(out, QStringLiteral("altitude filter, eight pages"), m, 60);
  out << "  (" << kept << " of " << rows << " rows kept)\n";
  return met ? 0 : 2;
}
