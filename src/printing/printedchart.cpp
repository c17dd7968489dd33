#include "printing/printedchart.h"

#include "catalog/recordset.h"
#include "charts/skychart.h"
#include "core/appstate.h"
#include "core/numtext.h"
#include "lists/listview.h"
#include "printing/printsurface.h"
#include "sky/skycalc.h"

int PageShareWidth(int printableWidth, double share) {
  return int(RoundHalfEven(printableWidth * share));
}

int StarDotWidth(int printableWidth, double magnitude) {
  double share = 0.0007;
  if (magnitude <= 0) share = 0.002;
  else if (magnitude <= 1) share = 0.0017;
  else if (magnitude <= 2) share = 0.0013;
  else if (magnitude <= 3) share = 0.001;
  return PageShareWidth(printableWidth, share);
}

QPointF PrintedChartPoint(double altitude, double azimuth) {
  return ProjectSky(PrintedChartCx, PrintedChartCy, PrintedChartRadius, altitude, azimuth);
}

void PrintPageTitle(PrintSurface& s, const QString& title) {
  s.setFontName(QStringLiteral("Arial"));
  s.setFontBold(true);
  s.newLine();
  s.setFontSize(18);
  s.setCurrentX((s.printableWidth() - s.textWidth(title)) / 2);
  s.print(title);
}

void PrintChartHeading(PrintSurface& s, const AppState& state, const QString& title,
                       int leftMargin) {
  const int P = s.printableWidth();
  s.setLineWidth(PageShareWidth(P, 0.0004));
  PrintPageTitle(s, title);

  s.setFontSize(12);
  s.print(ShortDate(state.UserDate.date()) + QLatin1Char(' ') + ShortTime(state.UserDate.time()),
          false);
  const ProgramSettings& site = state.settings;
  const QString location = QStringLiteral("Long: ") + site.LongHemi + PlainNumber(site.LongDeg) +
                           QStringLiteral("° ") + PlainNumber(site.LongMin) +
                           QStringLiteral("'   Lat: ") + site.LatHemi + PlainNumber(site.LatDeg) +
                           QStringLiteral("° ") + PlainNumber(site.LatMin) + QLatin1Char('\'');
  s.setCurrentX(P - s.textWidth(location) - leftMargin);
  s.print(location);

  const int middle = P / 2 - 5;
  const struct {
    const char* letter;
    int x, y;
  } compass[] = {{"N", middle, 960}, {"E", 600, 6200}, {"W", 10830, 6200}, {"S", middle, 11210}};
  for (const auto& c : compass) {
    s.setPosition(c.x, c.y);
    s.print(QString::fromLatin1(c.letter));
  }

  s.setFontBold(false);
  s.newLine();
  s.setFontSize(8);
  s.circle(PrintedChartCx, PrintedChartCy, PrintedChartRadius);
}

void PrintChartStars(PrintSurface& s, const AppState& state, Recordset& stars,
                     const StarDrawn& starDrawn) {
  const int P = s.printableWidth();
  if (stars.RecordCount() == 0) return;
  for (stars.MoveFirst(); !stars.isEOF(); stars.MoveNext()) {
    const SkyCoordinates position = RowPosition(stars);
    const double alt = AltitudeAtUserDate(state, position);
    if (!(alt > 0)) continue;
    const QPointF at = PrintedChartPoint(alt, AzimuthAtUserDate(state, position));
    s.setLineWidth(StarDotWidth(P, Val(stars.text(QStringLiteral("Magnitude")))));
    s.point(at.x(), at.y());
    if (starDrawn) starDrawn(stars, alt, at);
  }
}

void PrintChartLegend(PrintSurface& s, int leftMargin) {
  const int P = s.printableWidth();
  const int L = leftMargin;
  s.setPosition(L + 40, 9990);
  s.print(QStringLiteral("Star Magnitudes"));
  s.setLineWidth(PageShareWidth(P, 0.0005));
  s.line(L + 30, 10200, L + 1230, 10200);
  // The ends mean brighter than and fainter than.
  const struct {
    const char* text;
    int textX, dotX;
    double magnitude;
  } scale[] = {{">=0", 0, 150, 0},
               {"1", 400, 450, 1},
               {"2", 600, 650, 2},
               {"3", 800, 850, 3},
               {"<=4", 1000, 1150, 4}};
  for (const auto& m : scale) {
    s.setPosition(L + m.textX, 10240);
    s.print(QString::fromLatin1(m.text));
  }
  for (const auto& m : scale) {
    s.setLineWidth(StarDotWidth(P, m.magnitude));
    s.point(L + m.dotX, 10500);
  }
}
