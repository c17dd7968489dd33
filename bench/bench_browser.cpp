// Rebinding the catalog browser's eight pages under the altitude filter, on the shipped
// catalog, as the list editor does after the filter dialog or a new observing date.
#include <QApplication>
#include <QElapsedTimer>
#include <QTextStream>

#include "benchsetup.h"
#include "catalog/catalogbrowser.h"
#include "sky/skycalc.h"

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  QTextStream out(stdout);
  bench::Setup setup;
  AppState& state = setup.state;
  SilentPrompter& prompter = setup.prompter;
  state.UserDate = QDateTime(QDate(2026, 11, 21), QTime(20, 30));
  state.filter.FltAlt = true;
  state.filter.FltMinAlt = 20;
  for (PageQuery& q : state.Pages) q.Filter = QStringLiteral("WHERE True");

  CatalogBrowser browser(state, BrowserHost::EditList);
  browser.resize(1000, 600);
  browser.show();
  QElapsedTimer t;
  t.start();
  browser.bindPages();
  browser.applyLayouts();
  out << "bind eight pages, no filter: " << QString::number(t.nsecsElapsed() / 1e6, 'f', 1)
      << " ms\n";

  for (int run = 1; run <= 5; ++run) {
    state.FilterOn = run % 2 == 1;
    t.restart();
    browser.refreshFilter(SiderealDegreesAtUserDate(state));
    const double ms = t.nsecsElapsed() / 1e6;
    int rows = 0;
    for (int tab = 0; tab < 8; ++tab)
      if (Recordset* rs = browser.pageRecordset(tab)) rows += rs->RecordCount();
    out << "rebind eight pages, filter " << (state.FilterOn ? "on " : "off") << ", run " << run
        << ": " << QString::number(ms, 'f', 1) << " ms, " << rows << " rows\n";
  }
  for (const QString& m : prompter.messages) out << "message: " << m << "\n";
  return 0;
}
