#include "charts/bestpairs.h"

#include <algorithm>

#include "core/numtext.h"

namespace {

constexpr size_t kAutoRows = 5;
constexpr size_t kTwoStarRows = 8;

bool namesPolaris(const std::vector<AlignmentPair>& pairs, size_t row) {
  return row < pairs.size() && pairs[row].name.contains(QLatin1String("Polar"), Qt::CaseSensitive);
}

}  // namespace

bool InAlignmentBand(double altitude) { return altitude >= 20 && altitude <= 70; }

std::vector<AlignmentPair> AlignmentPairs(const std::vector<AlignmentCandidate>& candidates,
                                          bool autoOnly, const PairSeparation& separation) {
  std::vector<AlignmentPair> pairs;
  for (size_t i = 0; i < candidates.size(); ++i) {
    if (autoOnly && !candidates[i].autoAlignment) continue;
    for (size_t j = i + 1; j < candidates.size(); ++j) {
      if (autoOnly && !candidates[j].autoAlignment) continue;
      const double degrees = separation(candidates[i].position, candidates[j].position);
      pairs.push_back({candidates[i].name + QStringLiteral(" - ") + candidates[j].name,
                       RoundHalfEven(degrees, 1)});
    }
  }
  // Widest first; a stable sort keeps equal separations in the order they were built.
  std::stable_sort(pairs.begin(), pairs.end(), [](const AlignmentPair& a, const AlignmentPair& b) {
    return a.separation > b.separation;
  });
  return pairs;
}

BestPairs MakeBestPairs(const std::vector<AlignmentCandidate>& candidates, bool twoStarTable,
                        const PairSeparation& separation) {
  BestPairs out;
  const std::vector<AlignmentPair> autoPairs = AlignmentPairs(candidates, true, separation);
  for (size_t row = 0; row < std::min(kAutoRows, autoPairs.size()); ++row) {
    out.autoRows.push_back(autoPairs[row]);
    if (namesPolaris(autoPairs, row)) out.polarisNote = true;
  }
  out.twoStarTable = twoStarTable;
  if (!twoStarTable) return out;
  const std::vector<AlignmentPair> allPairs = AlignmentPairs(candidates, false, separation);
  for (size_t row = 0; row < std::min(kTwoStarRows, candidates.size()); ++row) {
    out.twoStarRows.push_back(row < allPairs.size() ? allPairs[row] : AlignmentPair{});
    // The note looks at the automatic pair of this row number, not at the row just made.
    if (namesPolaris(autoPairs, row)) out.polarisNote = true;
  }
  return out;
}

BestPairs MakeBestPairs(const AppState& state, const std::vector<AlignmentCandidate>& candidates,
                        bool twoStarTable) {
  return MakeBestPairs(candidates, twoStarTable,
                       [&state](const SkyCoordinates& a, const SkyCoordinates& b) {
                         return AngularSeparation(state, a, b);
                       });
}

QString SeparationText(double separation) { return PrintedNumber(separation); }
