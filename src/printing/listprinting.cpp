#include "printing/listprinting.h"

#include <algorithm>
#include <vector>

#include "catalog/recordset.h"
#include "core/appstate.h"
#include "core/numtext.h"
#include "lists/listview.h"
#include "printing/printedchart.h"
#include "printing/printsurface.h"
#include "sky/skycalc.h"

QString PrintStyleCompact() { return QStringLiteral("Compact"); }
QString PrintStyleComments() { return QStringLiteral("Comments"); }
QString PrintStyleChart() { return QStringLiteral("Chart"); }
QString PrintStyleChartNoLabels() { return QStringLiteral("ChartNoLabels"); }

bool IsChartStyle(const QString& style) {
  return style == PrintStyleChart() || style == PrintStyleChartNoLabels();
}

QString PrintStyleOf(bool compact, bool comments, bool chart) {
  if (compact) return PrintStyleCompact();
  if (comments) return PrintStyleComments();
  if (chart) return PrintStyleChart();
  return PrintStyleChartNoLabels();
}

PrintingJob::PrintingJob(const AppState& state, PrintSurface& surface, Recordset& datPrint,
                         Recordset& datMapStars, const QString& title)
    : state_(state), s_(surface), datPrint_(datPrint), datMapStars_(datMapStars), title_(title) {}

void PrintingJob::Run(const QString& style, int copies) {
  for (int copy = 1; copy <= copies; ++copy) {
    PageNumber = 1;
    if (style == PrintStyleCompact()) printList(15, false);
    else if (style == PrintStyleComments()) printList(5, true);
    else printChart(style == PrintStyleChart());
    s_.endDocument();
  }
}

void PrintingJob::PrintListHeader() {
  const int P = s_.printableWidth();
  PrintPageTitle(s_, title_);

  s_.setFontSize(12);
  s_.setCurrentX(LeftMargin);
  s_.print(ShortDate(state_.now().date()), false);
  const QString page = QStringLiteral("Page: ") + PlainNumber(PageNumber);
  s_.setCurrentX(P - s_.textWidth(page) - LeftMargin);
  s_.print(page);
  s_.newLine();

  const int typeX = LeftMargin + ColumnWidth1;
  const int headings[] = {0, typeX, typeX + ColumnWidth2, typeX + ColumnWidth2 + ColumnWidth3,
                          typeX + ColumnWidth2 + ColumnWidth3 + ColumnWidth4};
  const char* captions[] = {"Object", "Type", "Magnitude", "RA/Dec", "Info/Constellation"};
  for (int i = 0; i < 5; ++i) {
    if (i > 0) s_.setCurrentX(headings[i]);
    s_.print(QString::fromLatin1(captions[i]), i == 4);
  }
  s_.newLine();
  s_.setFontBold(false);
}

void PrintingJob::printList(int objectsPerPage, bool notes) {
  PrintListHeader();
  if (datPrint_.RecordCount() == 0) return;
  int onPage = 0;
  for (datPrint_.MoveFirst(); !datPrint_.isEOF(); datPrint_.MoveNext()) {
    if (onPage == objectsPerPage) {
      s_.newPage();
      ++PageNumber;
      PrintListHeader();
      onPage = 0;
    }
    printObjectBlock();
    if (notes) {
      s_.print(QStringLiteral("Observation Notes:"));
      for (int i = 0; i < 6; ++i) s_.newLine();
    } else {
      s_.newLine();
    }
    ++onPage;
  }
}

void PrintingJob::printObjectBlock() {
  const auto field = [this](const char* name) {
    return datPrint_.text(QString::fromLatin1(name)).trimmed();
  };
  const int typeX = LeftMargin + ColumnWidth1;
  const int magnitudeX = typeX + ColumnWidth2;
  const int raDecX = magnitudeX + ColumnWidth3;
  const int infoX = raDecX + ColumnWidth4;

  const QString category = field("Category");
  const QString number = field("ObjectNum");
  s_.print(category.left(6) == QLatin1String("Double") ? QStringLiteral("Dbl * ") + number
                                                       : category + QLatin1Char(' ') + number,
           false);
  s_.setCurrentX(typeX);
  s_.print(field("Type").left(20), false);
  s_.setCurrentX(magnitudeX);
  s_.print(field("Magnitude").left(16), false);
  s_.setCurrentX(raDecX);
  s_.print(field("RAHour") + QStringLiteral("h ") + field("RAMinute") + QLatin1Char('m'), false);
  s_.setCurrentX(infoX);
  s_.print(field("Info").left(35));

  s_.print(field("Name"), false);
  s_.setCurrentX(raDecX);
  s_.print(field("DecSign") + field("DecDeg") + QStringLiteral("d ") + field("DecMinute") +
               QLatin1Char('m'),
           false);
  s_.setCurrentX(infoX);
  s_.print(field("Constellation"));
}

void PrintingJob::printChart(bool labels) {
  const int P = s_.printableWidth();
  PrintChartHeading(s_, state_, title_, LeftMargin);
  PrintChartStars(s_, state_, datMapStars_);

  // Every object above the horizon is plotted; the list below the chart has room for 180.
  struct Plotted {
    QString key, label;
  };
  std::vector<Plotted> plotted;
  if (datPrint_.RecordCount() > 0) {
    for (datPrint_.MoveFirst(); !datPrint_.isEOF(); datPrint_.MoveNext()) {
      const SkyCoordinates position = RowPosition(datPrint_);
      const double alt = AltitudeAtUserDate(state_, position);
      if (!(alt > 0)) continue;
      const QPointF at = PrintedChartPoint(alt, AzimuthAtUserDate(state_, position));
      s_.setLineWidth(PageShareWidth(P, 0.0004));
      s_.circle(at.x(), at.y(), P * 0.006, 0.5);
      const QString initial = datPrint_.text(QStringLiteral("Category")).left(1);
      const QString number = datPrint_.text(QStringLiteral("ObjectNum"));
      const QString label = initial + QLatin1Char(' ') + number;
      if (labels) {
        s_.setPosition(at.x(), at.y() + 25);
        s_.print(label);
      }
      // The padded number sorts the numbers of one catalog in numeric order.
      plotted.push_back({initial + PadLeft(number, 11), label});
    }
  }

  PrintChartLegend(s_, LeftMargin);

  std::stable_sort(plotted.begin(), plotted.end(),
                   [](const Plotted& a, const Plotted& b) { return a.key < b.key; });

  // From here on the margin stays moved in: a second copy stands 100 twips further right.
  LeftMargin = 100;
  ColumnWidth1 = 1150;

  s_.setFontBold(true);
  s_.newLine();
  s_.setFontSize(10);
  s_.setPosition(LeftMargin + ColumnWidth1, 11250);
  s_.print(QStringLiteral("Objects Plotted"));
  s_.setFontBold(false);
  s_.newLine();
  s_.setFontSize(8);

  const int listed = std::min<int>(int(plotted.size()), 180);
  for (int i = 0; i < listed; ++i) {
    if (i % 18 == 0) s_.setCurrentY(11600);
    s_.setCurrentX(LeftMargin + (i / 18) * ColumnWidth1);
    s_.print(plotted[size_t(i)].label);
  }
}
