// Printing to PDF, as Save as PDF does it: a 500-object list in "Compact" (target under 1 s)
// and a chart page with 300 objects (target under 300 ms), each beside a plain loop over the
// same rows.
#include <QApplication>
#include <QPrinter>
#include <QTextStream>

#include "benchsetup.h"
#include "benchstats.h"
#include "lists/listview.h"
#include "printing/listprinting.h"
#include "printing/printoptions.h"
#include "sky/skycalc.h"

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  bench::Setup setup;
  AppState& state = setup.state;
  state.UserDate = state.now();
  const QTemporaryDir& dir = setup.dir;
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

  const QString compact = bench::catalogRowsList(state, dir, QStringLiteral("compact.tlf"), 500);
  bool met = bench::report(out, QStringLiteral("Compact list, 500 objects, to PDF"),
                           bench::measure([&](int) { toPdf(compact, PrintStyleCompact()); },
                                          [&](int) { readRows(compact); }),
                           1000);

  // Each object moved to the northern sky, where it stands above the horizon all night.
  const QString chart = bench::catalogRowsList(state, dir, QStringLiteral("chart.tlf"), 300);
  Database(chart, Database::Mode::ReadWrite)
      .exec(QStringLiteral("UPDATE Objects SET DecSign = '+', DecDeg = 65 + DisplayOrder % 24"));
  met &= bench::report(
      out, QStringLiteral("Chart page, 300 objects, to PDF"),
      bench::measure([&](int) { toPdf(chart, PrintStyleChart()); },
                     [&](int) {
                       Recordset objects(Database::open(chart, Database::Mode::ReadOnly),
                                         QStringLiteral("Objects"));
                       Recordset stars(
                           Database::open(state.catalogPath(), Database::Mode::ReadOnly),
                           QStringLiteral("MapStars to 4_5"));
                       double sum = 0;
                       for (Recordset* rs : {&objects, &stars})
                         for (rs->MoveFirst(); !rs->isEOF(); rs->MoveNext())
                           sum += AltitudeAtUserDate(state, RowPosition(*rs));
                       return sum;
                     }),
      300);
  out << "(floors: the same rows read; the altitudes of the same objects and stars)\n";
  return met ? 0 : 2;
}
