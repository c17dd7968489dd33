#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <vector>

#include "catalog/columnlayout.h"
#include "sky/skycalc.h"

class AppState;
class Recordset;

// What the list editor decides, apart from its window.

// "Edit - " and the list window's caption from its 11th character on (which drops
// "Objects - "), trimmed.
QString EditListCaption(const QString& listWindowCaption);

// " Obj: n of m" for the list's current row; empty for a list without rows.
QString ListCounterText(const Recordset& list);

// The observing date as the editor shows it: short date, a blank, short time.
QString UserDateLabel(const QDateTime& userDate);

// ---- adding rows

// The DisplayOrder of a new row: the leading number of the current row's DisplayOrder text
// plus one ("" gives 1).
qint32 NextDisplayOrder(const QString& currentDisplayOrderText);

// The twelve object columns in the order they are copied into a new list row.
const QStringList& CopiedObjectColumns();

// The text written into a new list row for a source cell: the source text, or for an empty
// one " " (text columns), "0" (position numbers) or "+" (DecSign).
QString CopiedColumnText(const QString& column, const QString& sourceText);

// Adds the page's current row to the list as a new row after the list's current row (or the
// row added just before); the new row stays in the edit buffer until the list moves.
void AddObjectRow(const Recordset& page, Recordset& list);

// Adds the selected rows of a page (bookmarks, in the order they were selected), or the
// page's current row when nothing is selected, behind the last row of the list, in one
// transaction. Ends on the list's last row. Nothing happens when the page is at BOF or EOF.
// Returns the number of rows added.
int AddSelectedRows(Recordset& page, Recordset& list, const QList<qint64>& selection);

// ---- changing the list

// Deletes the current row and goes to the row after it (the last row when it was the last).
// DisplayOrder keeps its gap. Nothing happens in an empty list.
void DeleteListRow(Recordset& list);

// Swaps the DisplayOrder of the current row with that of its neighbour, requeries, and goes
// back to the moved row. At the end of the list (and in an empty one) nothing changes.
// Returns whether the rows were swapped.
enum class MoveDirection { Up, Down };
bool MoveListRow(Recordset& list, MoveDirection direction);

// Rewrites DisplayOrder 1..N as the sweep of the sky at the observing date, in one
// transaction, then requeries and goes to the first row. An empty list stays as it is.
void AutoSortList(const AppState& state, Recordset& list);

// ---- the window's tables

// The list grid of the editor: DisplayOrder and the two marks hidden, the twelve object
// columns with their captions, widths and alignment.
ColumnLayouts EditorColumnLayouts();

// The smallest outer size of the editor, in twips.
constexpr int EditListMinWidth = 9375;
constexpr int EditListMinHeight = 7245;

// Where the controls go for a client area of W × H twips.
struct EditListLayout {
  int gridHeight;           // grdDataGrid
  int moveTop;              // cmdMoveUp, cmdMoveDown (and the counter beside them)
  int buttonTop;            // cmdClose, cmdAutoSort, cmdDelete, cmdFilterAlt
  int filterLabelTop;       // lblFilter
  int tabWidth, tabHeight;  // SSTab1
  int pageGridWidth, pageGridHeight;
};
EditListLayout EditListLayoutFor(int clientWidth, int clientHeight);

// Ctrl+Tab and Ctrl+Shift+Tab: the next or previous of the eight tabs, round the ends.
int NeighbourTab(int tab, bool backwards);

// The add button of the current page carries the access key.
QString AddButtonCaption(bool onCurrentPage);

// MarkerSource 1 marks a list row in the object colour, anything else a catalog row in yellow.
quint32 EditListMarkerColour(int markerSource, qint32 objectColor);

// Where the Filter dialog goes: the editor's top plus its height less 5800 twips.
int FilterFormTopFor(int windowTopTwips, int windowHeightTwips);
