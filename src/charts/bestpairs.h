#pragma once

#include <QString>
#include <functional>
#include <vector>

#include "sky/skycalc.h"

class AppState;

// The best pairs of alignment stars: of the alignment stars that stand between 20 and 70
// degrees (the candidates), the pairs that lie farthest apart, first among the stars the hand
// controller's automatic alignment offers, then among all of them. The window chart and the
// printed chart use the same tables.

// One alignment star of the favourable altitude band, as MapStars gives it.
struct AlignmentCandidate {
  QString name;                // AlignmentName
  SkyCoordinates position;     // RAHour, RAMinute, DecSign, DecDeg, DecMinute
  bool autoAlignment = false;  // autoalignment
};

// One row of a pair table. Rows past the last pair of the two star table are empty: no name,
// separation 0.
struct AlignmentPair {
  QString name;           // "Vega - Deneb"
  double separation = 0;  // degrees, rounded half to even to one decimal
};

struct BestPairs {
  std::vector<AlignmentPair> autoRows;     // "Auto/GPS Align": at most 5 rows
  bool twoStarTable = false;               // "Two Star Align" is shown at all
  std::vector<AlignmentPair> twoStarRows;  // at most 8 rows, and no more than candidates
  bool polarisNote = false;                // "NOTE: Do NOT use Polaris in" "EQ mode."
};

// The angle between two stars in degrees, not rounded.
using PairSeparation = std::function<double(const SkyCoordinates&, const SkyCoordinates&)>;

// True for an altitude inside the favourable band, both bounds included: 20 <= alt <= 70.
bool InAlignmentBand(double altitude);

// The pairs of the candidates (of those with autoAlignment alone when autoOnly), built for
// i < j in the candidates' order, each named "<i> - <j>" with its rounded separation, then
// ordered from the widest down; pairs of equal rounded separation keep the order they were
// built in.
std::vector<AlignmentPair> AlignmentPairs(const std::vector<AlignmentCandidate>& candidates,
                                          bool autoOnly, const PairSeparation& separation);

// Both tables and the Polaris note. The two star table is made only when twoStarTable is true
// (the window's "Auto Align/GPS Align Stars Only" is clear; paper always has it). Its rows run
// up to the number of candidates, not of pairs, so one or two candidates give an empty row.
// The note follows a name holding "Polar" among the rows of the automatic table shown, and,
// while the two star table is made, among the automatic pairs at the two star table's row
// numbers, shown or not; a Polaris pair in the two star table alone does not raise it.
BestPairs MakeBestPairs(const std::vector<AlignmentCandidate>& candidates, bool twoStarTable,
                        const PairSeparation& separation);
// The same with AngularSeparation.
BestPairs MakeBestPairs(const AppState& state, const std::vector<AlignmentCandidate>& candidates,
                        bool twoStarTable);

// A separation as the tables print it: a leading blank, no zero before the point (" 12.2").
QString SeparationText(double separation);
