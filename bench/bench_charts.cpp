// The chart windows on the shipped catalog, with the real clock and the system's time zone:
// - Hyper Hand Control: ShowDetails with its chart marker (target under 5 ms), beside the
//   plain read of the same rows;
// - its 21st-minute requery of the eight pages with the altitude filter on, beside the list
//   editor's refresh of the same pages and a plain open of the eight queries;
// - the Alignment Stars window: chart and best pairs (target under 20 ms), beside a plain
//   loop computing the altitude of every MapStars row.
#include <QApplication>
#include <QTextStream>

#include "benchsetup.h"
#include "benchstats.h"
#include "catalog/catalogbrowser.h"
#include "charts/alignchart.h"
#include "charts/alignstars.h"
#include "charts/hhc.h"
#include "charts/hhclogic.h"
#include "plainsky.h"
#include "scope/scopecontrol.h"
#include "sky/skycalc.h"

namespace {

// The chart's stars worked out plainly at one moment: the floor of a chart redraw.
double plainAltitudes(const AppState& state, const std::vector<SkyCoordinates>& stars) {
  const bench::PlainSky sky{SiderealDegreesAtUserDate(state),
                            bench::latitudeDegrees(state.settings)};
  double sum = 0;
  for (const SkyCoordinates& p : stars) {
    double alt = 0;
    sky.altAz(p.raHours, p.raMinutes, p.south, p.decDegrees, p.decMinutes, &alt, nullptr);
    sum += alt;
  }
  return sum;
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  QTextStream out(stdout);
  bench::Setup setup;
  AppState& state = setup.state;
  state.UserDate = state.now();
  state.filter.FltAlt = true;
  state.filter.FltMinAlt = 20;
  for (PageQuery& q : state.Pages) q.Filter = QStringLiteral("WHERE True");

  // ---- Hyper Hand Control: the object in view, 100 rows of the NGC page a run.
  ScopeLink link;
  HHC hhc(state, link);
  hhc.show();
  hhc.Form_Activate();
  hhc.browser()->setCurrentIndex(2);
  Recordset* ngc = hhc.browser()->pageRecordset(2);
  constexpr int kRows = 100;
  bench::Measured show = bench::measure(
      [&](int run) {
        for (int row = 0; row < kRows; ++row) {
          ngc->setAbsolutePosition((run * kRows + row) * 7);
          hhc.ShowDetails();
        }
      },
      [&](int run) {
        for (int row = 0; row < kRows; ++row) {
          ngc->setAbsolutePosition((run * kRows + row) * 7);
          const QStringList texts = HHCDetailTexts(*ngc, 2);
          AltitudeNow(state, SkyPosition{texts[6], texts[7], texts[8], texts[9], texts[10]});
        }
      });
  for (bench::Timings* t : {&show.figure, &show.floor, &show.figureCpu, &show.floorCpu})
    for (double& v : t->ms) v /= kRows;
  bool met = bench::report(out, QStringLiteral("HHC ShowDetails with the marker, a row"), show, 5);

  // ---- The minute tick, and the 21st with its requery with the filter on, beside the list
  // editor's refresh of the same pages and a plain open of the eight queries.
  state.FilterOn = true;
  const auto catalog = Database::open(state.catalogPath(), Database::Mode::ReadOnly);
  const auto users = Database::open(state.userListPath(), Database::Mode::ReadOnly);
  const auto openPages = [&](int) {
    for (int tab = 0; tab < 8; ++tab) {
      const CatalogPage& page = PageByTab(tab);
      Recordset(page.source == CatalogPage::Source::UserList ? users : catalog,
                PageRecordSource(state, page.querySet))
          .RecordCount();
    }
  };
  bench::report(out, QStringLiteral("HHC minute tick (chart, details)"),
                bench::measure(
                    [&](int) {
                      hhc.setAltitudeTicks(0);
                      hhc.timerAltitude_Timer();
                    },
                    [&](int) { plainAltitudes(state, hhc.mapStars()); }),
                0);
  bench::report(out, QStringLiteral("HHC 21st tick, eight pages requeried, filter on"),
                bench::measure(
                    [&](int) {
                      hhc.setAltitudeTicks(20);
                      hhc.timerAltitude_Timer();
                    },
                    openPages),
                0);
  CatalogBrowser editor(state, BrowserHost::EditList);
  editor.resize(1000, 600);
  editor.show();
  editor.bindPages();
  bench::report(out, QStringLiteral("list editor's refresh of the same pages"),
                bench::measure([&](int) { editor.refreshFilter(SiderealDegreesAtUserDate(state)); },
                               openPages),
                0);

  // ---- The Alignment Stars window.
  AlignStars align(state);
  align.show();
  align.Form_Activate();
  std::vector<SkyCoordinates> stars;
  for (const MapStar& s : LoadAlignmentStars(*catalog)) stars.push_back(s.position);
  met &= bench::report(out,
                       QStringLiteral("Alignment chart and best pairs, %1 stars").arg(stars.size()),
                       bench::measure(
                           [&](int) {
                             align.DrawAlignmentChart();
                             align.ShowBestPairs();
                           },
                           [&](int) { plainAltitudes(state, stars); }),
                       20);
  out << "(floors: the same rows read and their altitude; every chart star's altitude worked "
         "out plainly; the eight page queries opened)\n";
  return met ? 0 : 2;
}
