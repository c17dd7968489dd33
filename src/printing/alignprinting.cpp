#include "printing/alignprinting.h"

#include "catalog/recordset.h"
#include "core/numtext.h"
#include "lists/listview.h"
#include "printing/printedchart.h"
#include "printing/printsurface.h"

namespace {

bool flag(const Recordset& rs, const char* field) {
  return Val(rs.text(QString::fromLatin1(field))) != 0;
}

}  // namespace

AlignPrintingJob::AlignPrintingJob(const AppState& state, PrintSurface& surface,
                                   Recordset& datMapStars)
    : state_(state), s_(surface), datMapStars_(datMapStars) {}

void AlignPrintingJob::Run(int copies) {
  for (int copy = 1; copy <= copies; ++copy) {
    PrintChartHeading(s_, state_, QStringLiteral("NexStar Alignment Star Chart"), LeftMargin);
    // The band between 20 and 70 degrees, as on the screen.
    s_.setLineWidth(1);
    s_.setLineStyle(2);
    s_.circle(PrintedChartCx, PrintedChartCy, 70.0 / 90 * PrintedChartRadius);
    s_.circle(PrintedChartCx, PrintedChartCy, 20.0 / 90 * PrintedChartRadius);
    s_.setLineStyle(0);

    // Every alignment star is named, whatever the window shows.
    std::vector<AlignmentCandidate> candidates;
    PrintChartStars(s_, state_, datMapStars_, [&](const Recordset& star, double alt, QPointF at) {
      if (!flag(star, "Alignment")) return;
      const QString name = star.text(QStringLiteral("AlignmentName"));
      s_.setPosition(at.x() + 40, at.y());
      s_.print(name);
      if (InAlignmentBand(alt))
        candidates.push_back({name, RowPosition(star), flag(star, "autoalignment")});
    });
    PrintChartLegend(s_, LeftMargin);
    PrintBestPairs(candidates);
    s_.endDocument();
  }
}

void AlignPrintingJob::PrintBestPairs(const std::vector<AlignmentCandidate>& candidates) {
  const BestPairs pairs = MakeBestPairs(state_, candidates, true);
  LeftMargin = 100;
  ColumnWidth2 = 3000;

  s_.setFontBold(true);
  s_.newLine();
  s_.setFontSize(10);
  s_.setPosition(LeftMargin + 1800, 11800);
  s_.print(QStringLiteral("Best Alignment Pairs"));

  s_.setFontSize(8);
  const int twoStarX = LeftMargin + ColumnWidth2;
  const struct {
    const char* text;
    int x;
  } headings[] = {{"Auto/GPS Align", LeftMargin},
                  {"Sep", LeftMargin + 1850},
                  {"Two Star Align", twoStarX},
                  {"Sep", twoStarX + 1850}};
  for (const auto& h : headings) {
    s_.setPosition(h.x, 12300);
    s_.print(QString::fromLatin1(h.text), h.x == twoStarX + 1850);
  }
  s_.setFontBold(false);
  s_.newLine();

  const auto printRows = [&](const std::vector<AlignmentPair>& rows, int x) {
    for (size_t i = 0; i < rows.size(); ++i) {
      s_.setPosition(x, 12300 + 220 * double(i + 1));
      s_.print(rows[i].name, false);
      s_.setCurrentX(x + 1800);
      s_.print(SeparationText(rows[i].separation));
    }
  };
  printRows(pairs.autoRows, LeftMargin);
  printRows(pairs.twoStarRows, twoStarX);

  if (pairs.polarisNote) {
    s_.setFontBold(true);
    s_.newLine();
    s_.setCurrentX(LeftMargin + 1800);
    s_.print(QStringLiteral("NOTE: Do NOT use Polaris in"));
    s_.setCurrentX(LeftMargin + 2340);
    s_.print(QStringLiteral("EQ mode."));
  }
}
