#pragma once

#include <QString>

class AppState;
class PrintSurface;
class Recordset;

// The print styles of a list, as PrintStyle holds them.
QString PrintStyleCompact();        // "Compact": 15 objects a page
QString PrintStyleComments();       // "Comments": 5 a page, with room for notes
QString PrintStyleChart();          // "Chart": a sky chart with labels
QString PrintStyleChartNoLabels();  // "ChartNoLabels"
bool IsChartStyle(const QString& style);
// The style of the options that are on, tested in the dialog's order; no option on is the
// label-less chart.
QString PrintStyleOf(bool compact, bool comments, bool chart);

// The print-out of one list document (PrintingWait's job). datPrint is the list's Objects in
// display order, datMapStars the bright stars for the charts; title is the list's title.
class PrintingJob {
 public:
  PrintingJob(const AppState& state, PrintSurface& surface, Recordset& datPrint,
              Recordset& datMapStars, const QString& title);

  // Prints every copy in the style, each copy a document of its own.
  void Run(const QString& style, int copies);

  // The page header of the list styles.
  void PrintListHeader();

  // Page layout, twips. A chart moves the left margin in for the copies after it.
  int PageNumber = 1;
  int LeftMargin = 0;
  int ColumnWidth1 = 2200, ColumnWidth2 = 2400, ColumnWidth3 = 1800, ColumnWidth4 = 1500,
      ColumnWidth5 = 2400;

 private:
  void printList(int objectsPerPage, bool notes);
  void printObjectBlock();
  void printChart(bool labels);

  const AppState& state_;
  PrintSurface& s_;
  Recordset& datPrint_;
  Recordset& datMapStars_;
  QString title_;
};
