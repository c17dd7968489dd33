#pragma once

#include <QList>
#include <QString>
#include <Qt>
#include <array>

class AppState;
class Recordset;

// ---- catalog browser

// The tab indexes of the pages in the order they are bound: Messier, Caldwell, NGC,
// Double Stars, Deep-sky, User Supplied, SAO Stars, IC.
const std::array<int, 8>& PageBindOrder();

// The header click of the User Supplied page on a user table of an older form.
QString UserListOutdatedTitle();    // "Alert!"
QString UserListOutdatedMessage();  // two sentences, "\n" between them
QString UserObjectsTable();         // the bare table name the page falls back to

// PageWhere of all eight pages for the filter state: with FilterOn, BuildAltitudeWhere for the
// sidereal time; without, "WHERE True" everywhere (PageFilter keeps its text).
void SetPageWheres(AppState& state, double siderealDegrees);

// Shift+click: the rows from the last current row through the clicked one, both included,
// walked on the recordset (which ends on the clicked row). The direction follows the rows'
// places in the recordset, so upward and downward give the same rows. A last row that is not
// in the set counts as the clicked one.
QList<qint64> ShiftSelection(Recordset& rs, qint64 lastBookmark, qint64 currentBookmark);

// ---- filter dialog

QString FilterFileFilter();      // "Filter Settings Files (*.flt)"
QString FilterOpenTitle();       // "Open filter settings file..."
QString FilterSaveTitle();       // "Name filter settings file..."
QString FilterOverwriteTitle();  // "Confirm"
QString FilterOverwriteQuestion(const QString& fileName);
// The minimum altitude after a step of the spin button: Val of the text plus the step,
// kept within 0 to 80, as plain number text.
QString FilterUpDownStep(const QString& text, int delta);

// ---- user objects editor

// The editor's keys, seen before its controls. Ctrl counts only as the exact shift state.
enum class UserEditorKey { None, FocusFirst, FocusLast, Previous, First, Next, Last };
UserEditorKey UserEditorKeyAction(int key, Qt::KeyboardModifiers modifiers);
// Moves the recordset for a key: Previous and Next stop on the first and the last row.
void ApplyUserEditorMove(Recordset& rs, UserEditorKey key);

// cmdDelete after Yes: the current row goes, the next one becomes current, or the last one when
// the deleted row was the last.
void DeleteUserRecord(Recordset& rs);
// After Re-Sort and Save: the count made exact, back on the first row.
void CountAndGoFirst(Recordset& rs);

QString UserDeleteTitle();     // "Confirm"
QString UserDeleteQuestion();  // "Delete this object?"
QString UserObjectsSelect();   // the record source of datUserRS
