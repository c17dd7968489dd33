#pragma once

#include <QDateTime>
#include <QString>
#include <vector>

#include "charts/bestpairs.h"
#include "charts/skychart.h"

class Database;

// The alignment chart: the whole sky of the observing date with the alignment stars named and
// picked out, and the best pairs printed beside it.

// A star of MapStars with what the alignment chart reads of it. A null flag counts as false.
struct MapStar {
  SkyCoordinates position;     // read once with the row
  bool alignment = false;      // Alignment
  QString alignmentName;       // AlignmentName
  bool autoAlignment = false;  // autoalignment
};

// Every row of a MapStars table or query, in the order it gives them.
std::vector<MapStar> LoadAlignmentStars(const Database& catalog,
                                        const QString& source = QStringLiteral("MapStars"));

constexpr quint32 AlignNameColour = 0x00C0FFFFu;  // the pale yellow of the names

struct AlignChartOptions {
  bool autoOnly = false;       // chkAutoAlignment: automatic alignment stars only
  bool showNames = true;       // ShowNames
  quint32 objectColour = 200;  // ObjectColor: the large dots
};

// DrawAlignmentChart: clears the surface, draws the horizon and the dotted 20 and 70 degree
// circles, then every star strictly above the horizon, an alignment star as a large dot with
// its name, any other as a plain dot. Returns the candidates: the alignment stars shown large
// that stand in the band from 20 to 70 degrees, in the order of the stars. All of them are
// kept, however many there are.
using StarAltAz = std::function<double(const MapStar&)>;
std::vector<AlignmentCandidate> DrawAlignmentChart(ChartSurface& surface,
                                                   const std::vector<MapStar>& stars,
                                                   const StarAltAz& altitude,
                                                   const StarAltAz& azimuth,
                                                   const AlignChartOptions& options);

// A line of text the window prints beside its chart, in twips from the window's top left.
struct PlacedText {
  int x = 0, y = 0;
  QString text;
  bool bold = false;
};

// The best pairs as the window prints them: heading, the "Auto/GPS Align" table, the "Two
// Star Align" table when there is one, and the Polaris note below the last line printed
// (lineHeight, in twips, is the height of a printed line in the window's font).
std::vector<PlacedText> BestPairsScreenText(const BestPairs& pairs, int lineHeight);

// The window's size rule, sizes in twips: a maximised window goes back to normal in a main
// window whose inner area is smaller than 9180 × 6825; then a smaller width or height is set
// back to 9300 or 7300.
struct AlignStarsSize {
  bool restoreNormal = false;
  int width = 0, height = 0;
};
AlignStarsSize AlignStarsResize(bool maximized, int areaWidth, int areaHeight, int width,
                                int height);
constexpr int AlignStarsWidth = 9300;
constexpr int AlignStarsHeight = 7300;
