#pragma once

#include <vector>

#include "charts/bestpairs.h"

class AppState;
class PrintSurface;
class Recordset;

// The print-out of the alignment star chart (AlignPrintingWait's job): the chart of the
// observing date with every alignment star named, and the two tables of best pairs under it.
// datMapStars is the bright stars; the candidates are the alignment stars among them.
class AlignPrintingJob {
 public:
  AlignPrintingJob(const AppState& state, PrintSurface& surface, Recordset& datMapStars);

  // Prints every copy, each a document of its own.
  void Run(int copies);

  // The tables under the chart.
  void PrintBestPairs(const std::vector<AlignmentCandidate>& candidates);

  // Page layout, twips. The tables move the left margin in for the copies after them.
  int LeftMargin = 0;
  int ColumnWidth2 = 2400;

 private:
  const AppState& state_;
  PrintSurface& s_;
  Recordset& datMapStars_;
};
