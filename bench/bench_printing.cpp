// Printing to PDF, as Save as PDF does it: a 500-object list in "Compact" (target under 1 s)
// and a chart page with 300 objects (target under 300 ms). Each figure stands beside a floor:
// a plain loop over the same rows.
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QPrinter>
#include <QTemporaryDir>
#include <QTextStream>
#include <cmath>

#include "silentprompter.h"
#include "catalog/database.h"
#include "catalog/recordset.h"
#include "core/appstate.h"
#include "core/paths.h"
#include "lists/listview.h"
#include "printing/listprinting.h"
#include "printing/printoptions.h"
#include "sky/skycalc.h"

namespace {

// A list of n catalog rows; with circumpolar, each is moved to the northern sky, where it
// stands above the horizon all night.
QString makeList(const AppState& state, const QTemporaryDir& dir, int n, bool circumpolar) {
  const QString path = dir.filePath(QStringLiteral("list%1.tlf").arg(n));
  QFile::copy(state.templatePath(), path);
  QFile(path).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
  Database db(path, Database::Mode::ReadWrite);
  db.exec(QStringLiteral("ATTACH DATABASE %1 AS cat")
              .arg(QStringLiteral("'") + state.catalogPath() + QStringLiteral("'")));
  db.exec(QStringLiteral(
              "INSERT INTO Objects (DisplayOrder, Category, ObjectNum, Name, Type, "
              "Constellation, Magnitude, Info, RAHour, RAMinute, DecSign, DecDeg, DecMinute) "
              "SELECT rowid, Category, ObjectNum, Name, Type, Constellation, Magnitude, Info, "
              "RAHour, RAMinute, DecSign, DecDeg, DecMinute FROM cat.NGCObjects LIMIT %1")
              .arg(n));
  if (circumpolar)
    db.exec(QStringLiteral("UPDATE Objects SET DecSign = '+', DecDeg = 65 + DisplayOrder % 24"));
  return path;
}

template <typename F>
double bestOf(int runs, F f) {
  double best = 1e9;
  for (int i = 0; i < runs; ++i) {
    QElapsedTimer t;
    t.start();
    f();
    best = std::min(best, t.nsecsElapsed() / 1e6);
  }
  return best;
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  SilentPrompter prompter;
  AppState state(prompter);  // the real clock and the system's time zone
  state.programFolder = SourceDataFolder();
  state.UserDate = state.now();
  QTemporaryDir dir;
  QTextStream out(stdout);

  const auto toPdf = [&](const QString& list, const QString& style) {
    PrintRequest request;
    request.documentPath = list;
    request.documentTitle = QStringLiteral("Bench");
    request.style = style;
    const std::unique_ptr<QPrinter> pdf = NewPrinter(SaveAsPdfChoice());
    pdf->setOutputFileName(dir.filePath(QStringLiteral("out.pdf")));
    PrintToDevice(state, request, *pdf, PainterPrintSurface::Documents::OneFile,
                  AppError::of(ErrNo::PathFileAccess));
  };
  const auto readRows = [&](const QString& list) {
    Recordset rs(Database::open(list, Database::Mode::ReadOnly), QStringLiteral("Objects"));
    qint64 chars = 0;
    for (rs.MoveFirst(); !rs.isEOF(); rs.MoveNext())
      for (int f = 0; f < rs.fieldCount(); ++f) chars += rs.text(f).size();
    return chars;
  };

  const QString compact = makeList(state, dir, 500, false);
  const double compactMs = bestOf(5, [&] { toPdf(compact, PrintStyleCompact()); });
  const double compactFloor = bestOf(5, [&] { readRows(compact); });
  out << QStringLiteral("Compact list, 500 objects, to PDF: %1 ms (target < 1000 ms); floor, "
                        "reading the same rows: %2 ms\n")
             .arg(compactMs, 0, 'f', 1)
             .arg(compactFloor, 0, 'f', 1);

  const QString chart = makeList(state, dir, 300, true);
  const double chartMs = bestOf(5, [&] { toPdf(chart, PrintStyleChart()); });
  const double chartFloor = bestOf(5, [&] {
    Recordset objects(Database::open(chart, Database::Mode::ReadOnly), QStringLiteral("Objects"));
    Recordset stars(Database::open(state.catalogPath(), Database::Mode::ReadOnly),
                    QStringLiteral("MapStars to 4_5"));
    double sum = 0;
    for (Recordset* rs : {&objects, &stars})
      for (rs->MoveFirst(); !rs->isEOF(); rs->MoveNext())
        sum += AltitudeAtUserDate(state, RowPosition(*rs));
    return sum;
  });
  out << QStringLiteral("Chart page, 300 objects, to PDF: %1 ms (target < 300 ms); floor, "
                        "the altitudes of the same objects and stars: %2 ms\n")
             .arg(chartMs, 0, 'f', 1)
             .arg(chartFloor, 0, 'f', 1);
  return 0;
}
