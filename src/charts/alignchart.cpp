#include "charts/alignchart.h"

#include <algorithm>

#include "catalog/database.h"
#include "catalog/recordset.h"

namespace {

bool flag(const QVariant& v) { return !v.isNull() && v.toLongLong() != 0; }

}  // namespace

std::vector<MapStar> LoadAlignmentStars(const Database& catalog, const QString& source) {
  std::vector<MapStar> stars;
  Statement st = catalog.prepare(
      QStringLiteral("SELECT RAHour, RAMinute, DecSign, DecDeg, DecMinute, Alignment, "
                     "AlignmentName, autoalignment FROM \"%1\"")
          .arg(QString(source).replace(QLatin1Char('"'), QLatin1String("\"\""))));
  while (st.step()) {
    stars.push_back(
        {SkyCoordinates::of(st.value(0), st.value(1), st.value(2), st.value(3), st.value(4)),
         flag(st.value(5)), FieldText(st.value(6)), flag(st.value(7))});
  }
  return stars;
}

std::vector<AlignmentCandidate> DrawAlignmentChart(ChartSurface& surface,
                                                   const std::vector<MapStar>& stars,
                                                   const StarAltAz& altitude,
                                                   const StarAltAz& azimuth,
                                                   const AlignChartOptions& options) {
  const ChartConstants& c = ChartConstantsFor(ChartWindow::AlignStars);
  std::vector<AlignmentCandidate> candidates;
  surface.clear();
  surface.circle(float(c.cx), float(c.cy), float(c.radius), SystemColour3DHighlight, 1);
  // The band between 20 and 70 degrees shows as a dotted ring.
  surface.setLineStyle(2);
  surface.circle(float(c.cx), float(c.cy), float(70.0 / 90 * c.radius), SystemColour3DFace, 1);
  surface.circle(float(c.cx), float(c.cy), float(20.0 / 90 * c.radius), SystemColour3DFace, 1);
  surface.setLineStyle(0);
  for (const MapStar& star : stars) {
    const double alt = altitude(star);
    if (!(alt > 0)) continue;
    const QPointF p = ProjectSky(c, alt, azimuth(star));
    const float x = float(p.x()), y = float(p.y());
    const bool large = star.alignment && (!options.autoOnly || star.autoAlignment);
    if (!large) {
      surface.setLineWidth(1);
      surface.point(x, y, ChartWhite);
      continue;
    }
    if (options.showNames) {
      surface.setTextPosition(x + 40, y);
      surface.text(star.alignmentName, AlignNameColour);
    }
    surface.setLineWidth(2);
    surface.point(x, y, options.objectColour);
    surface.setLineWidth(1);
    if (InAlignmentBand(alt))
      candidates.push_back({star.alignmentName, star.position, star.autoAlignment});
  }
  return candidates;
}

std::vector<PlacedText> BestPairsScreenText(const BestPairs& pairs, int lineHeight) {
  std::vector<PlacedText> out{{6970, 200, QStringLiteral("Best Alignment Pairs"), true},
                              {6500, 600, QStringLiteral("Auto/GPS Align"), true},
                              {8650, 600, QStringLiteral("Sep"), true}};
  auto rows = [&](const std::vector<AlignmentPair>& table, int top) {
    for (size_t i = 0; i < table.size(); ++i) {
      const int y = top + 220 * int(i + 1);
      out.push_back({6500, y, table[i].name, false});
      out.push_back({8600, y, SeparationText(table[i].separation), false});
    }
  };
  rows(pairs.autoRows, 650);
  if (pairs.twoStarTable) {
    out.push_back({6500, 2200, QStringLiteral("Two Star Align"), true});
    out.push_back({8650, 2200, QStringLiteral("Sep"), true});
    rows(pairs.twoStarRows, 2250);
  }
  if (pairs.polarisNote) {
    const int y = out.back().y + lineHeight + 300;
    out.push_back({6500, y, QStringLiteral("NOTE: Do NOT use Polaris in"), true});
    out.push_back({7140, y + lineHeight, QStringLiteral("EQ mode."), true});
  }
  return out;
}

AlignStarsSize AlignStarsResize(bool maximized, int areaWidth, int areaHeight, int width,
                                int height) {
  AlignStarsSize s;
  s.restoreNormal = maximized && (areaWidth < 9180 || areaHeight < 6825);
  s.width = std::max(width, AlignStarsWidth);
  s.height = std::max(height, AlignStarsHeight);
  return s;
}
