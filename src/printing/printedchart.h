#pragma once

#include <QPointF>
#include <QString>
#include <functional>

class AppState;
class PrintSurface;
class Recordset;

// What the two chart print-outs (a list's sky chart and the alignment chart) share: the page
// heading, the disc, the stars sized by magnitude and the legend. The disc lies at a fixed
// place on the page, whatever its size.
constexpr double PrintedChartCx = 5800;
constexpr double PrintedChartCy = 6200;
constexpr double PrintedChartRadius = 5000;

// A width in print pixels as a share of the printable width P, rounded half to even.
int PageShareWidth(int printableWidth, double share);
// The dot of a star: brighter stars are wider.
int StarDotWidth(int printableWidth, double magnitude);

// The title at the top of every page: an empty line, then the title in Arial 18 bold, centred.
// Leaves the font bold.
void PrintPageTitle(PrintSurface& surface, const QString& title);

// The top of a chart page: the title centred, the observing date and the site, the compass
// letters round the disc, then the horizon. Ends in Arial 8, regular.
void PrintChartHeading(PrintSurface& surface, const AppState& state, const QString& title,
                       int leftMargin);

// A black dot for each star of the record source strictly above the horizon at the observing
// date, sized by its magnitude. After each dot, starDrawn gets the star's row (current),
// altitude and place on the page.
using StarDrawn = std::function<void(const Recordset& star, double altitude, QPointF at)>;
void PrintChartStars(PrintSurface& surface, const AppState& state, Recordset& stars,
                     const StarDrawn& starDrawn = {});

// The place on the page of a point of the sky.
QPointF PrintedChartPoint(double altitude, double azimuth);

// The magnitude scale at the lower left.
void PrintChartLegend(PrintSurface& surface, int leftMargin);
