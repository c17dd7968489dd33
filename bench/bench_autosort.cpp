// Auto-sort of a list, as the list editor's button runs it on its open list: the key of every
// row from its altitude and azimuth at the observing date, the new DisplayOrder of every row
// written to the file, and the requery. Real files, real clock, the system's time zone.
#include <QCoreApplication>
#include <QTextStream>
#include <numeric>

#include "benchsetup.h"
#include "benchstats.h"
#include "lists/autosort.h"
#include "plainsky.h"
#include "sky/skycalc.h"

namespace {

// The floor: one plain read of the positions, the keys done plainly, a stable sort, and the
// numbers written with one prepared statement in one transaction.
void plainSort(const AppState& state, const Database& doc) {
  const bench::PlainSky sky{SiderealDegreesAtUserDate(state),
                            bench::latitudeDegrees(state.settings)};
  std::vector<qint64> ids;
  std::vector<double> keys;
  Statement read = doc.prepare(
      QStringLiteral("SELECT rowid, RAHour, RAMinute, DecSign, DecDeg, DecMinute FROM Objects "
                     "ORDER BY DisplayOrder, rowid"));
  while (read.step()) {
    double alt = 0, az = 0;
    sky.altAz(read.doubleValue(1), read.doubleValue(2),
              read.value(3).toString() == QLatin1String("-"), read.doubleValue(4),
              read.doubleValue(5), &alt, &az);
    ids.push_back(read.int64Value(0));
    keys.push_back(AutoSortKey(alt, az));
  }
  read.reset();
  std::vector<int> order(keys.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return keys[a] < keys[b]; });
  Database::Transaction batch(doc);
  Statement write =
      doc.prepare(QStringLiteral("UPDATE Objects SET DisplayOrder = ?1 WHERE rowid = ?2"));
  for (size_t n = 0; n < order.size(); ++n) {
    write.bindInt64(1, qint64(n + 1));
    write.bindInt64(2, ids[size_t(order[n])]);
    write.step();
    write.reset();
  }
  batch.commit();
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  QTextStream out(stdout);
  bench::Setup setup;
  AppState& state = setup.state;

  const struct {
    int rows, tab;
    double targetMs;
  } cases[] = {{2000, 2, 50}, {40000, 6, 1000}};
  bool met = true;
  for (const auto& c : cases) {
    const QString path = bench::listOfPage(state, setup.dir,
                                           QStringLiteral("sort%1.tlf").arg(c.rows), c.tab, c.rows);
    auto doc = Database::open(path, Database::Mode::ReadWrite);
    Recordset list(doc, QStringLiteral("Objects"));  // the editor's open list
    list.MoveLast();
    list.MoveFirst();
    // Each run sorts for another hour of the night, so that rows move and every one is written.
    const QDateTime night(QDate::currentDate(), QTime(19, 0));
    met &= bench::report(
        out, QStringLiteral("Auto-sort of %1 rows, written").arg(c.rows),
        bench::measure([&](int) { AutoSortList(state, list); },
                       [&](int) { plainSort(state, *doc); },
                       [&](int run) { state.UserDate = night.addSecs(3600 * 2 * run); }),
        c.targetMs);
    if (list.RecordCount() != c.rows) return 1;
  }
  return met ? 0 : 2;
}
