#pragma once

#include <QString>
#include <QStringList>
#include <vector>

#include "catalog/columnlayout.h"
#include "sky/skycalc.h"

class Database;
class Recordset;

// What a list window shows and does that is no drawing: the grid's column layout, the
// counter, the observed mark, clearing the GoTo marks and the arrangement of the two window
// forms.

// The star positions of the chart, read once from MapStars of the catalog database.
std::vector<SkyCoordinates> LoadMapStars(const Database& catalog);

// The fields shown in Text1 to Text12 of a detail panel, in that order.
const QStringList& ObjectDetailFields();

// The five position fields of a recordset (RAHour, RAMinute, DecSign, DecDeg, DecMinute),
// found by name once, read as numbers from a row or from the edit buffer.
class PositionColumns {
 public:
  explicit PositionColumns(const Recordset& rs);  // raises 3000 when a field is missing
  SkyCoordinates current(const Recordset& rs) const;

 private:
  int columns_[5];
};

// The position of the current row (or the edit buffer) of a recordset, as numbers to compute
// with.
SkyCoordinates RowPosition(const Recordset& rs);

// Captions, widths and alignment of the fifteen grid columns.
ColumnLayouts ListColumnLayouts();

// " Object: 3 of 12"; empty when the list has no rows.
QString RecordCounterText(int absolutePosition, int recordCount);

// The Observed flag after a press of the button: "Y" becomes one blank, anything else "Y".
QString ToggledObservedMark(const QString& current);

// The answers of the ClearGoto dialog, as stored in ClearGotoChoice.
QString ClearGotoThis();
QString ClearGotoAll();
QString ClearGotoNone();

// Writes one blank into Goto of the current row ("This") or of every row ("All"; the
// recordset ends on its first row). Any other choice changes nothing. Returns the rows written.
int ClearGotoMarks(Recordset& rs, const QString& choice);

// The two forms of the list window.
enum class ListVariant { CurrentList, CurrentListFixed };
QString ListVariantName(ListVariant variant);

// Sizes in twips. Width is the window's outer width, height the height of its client area.
struct ListFormLayout {
  int openWidth, openHeight;                  // size given when the document is opened
  int maximizedMinWidth, maximizedMinHeight;  // a maximized window goes back to normal below these
  int minWidth, minHeight;                    // smaller sizes are set back to these
  int gridWidthLess, gridHeightLess;          // grid size: width - a, height - b
  int skyRightOffset;  // Sky's left at width - this; 0: Sky stays where it is
  struct Follower {
    QString control;
    int bottomOffset;  // top at height - this
  };
  std::vector<Follower> followers;
};
const ListFormLayout& ListFormLayoutFor(ListVariant variant);

// What the resize rule decides for a window of the given size inside a child area of the given
// size (all twips).
struct ListResize {
  bool restoreNormal = false;  // maximized in too small an area: back to normal, nothing else
  bool setWidth = false, setHeight = false;  // set back to the smallest size
  int width = 0, height = 0;                 // the size the window ends with
  int gridWidth = 0, gridHeight = 0;
  int skyLeft = -1;                           // -1: not moved
  std::vector<std::pair<QString, int>> tops;  // control name, new top
};
ListResize ListResizeRule(ListVariant variant, bool maximized, int areaWidth, int areaHeight,
                          int width, int height);
