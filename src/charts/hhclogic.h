#pragma once

#include <QStringList>
#include <QtGlobal>

class Recordset;

// What the Hyper Hand Control window decides, apart from its window.

// Text1 to Text12 from the current row of the page on tab `tab`. On every page but Messier
// (tab 0) a null Name, Type, Constellation, Magnitude or Info shows as an empty box; any other
// null raises "Invalid use of Null" (94), which the window's trap shows.
QStringList HHCDetailTexts(const Recordset& page, int tab);

// AltitudeTicks at a tick of the minute timer: below 20 it counts on and false is returned;
// at 20 (or above) the pages are to be queried again, and it starts from 0.
bool AltitudeTickRequery(qint16& altitudeTicks);

// The smallest window, and the places the resize rule moves, in twips of the inner area W × H.
constexpr int HHCMinWidth = 9525;
constexpr int HHCMinHeight = 7335;
struct HHCLayout {
  int tabWidth, tabHeight;              // SSTab1
  int gridWidth, gridHeight;            // every page grid but the User Supplied one
  int userGridHeight;                   // DBUser, which has cmdEditUser under it
  int getRATop;                         // cmdGetRA
  int readBackTop, readBackLabelTop;    // txtRAHour..txtDecMin, their "RA" and "Dec"
  int manualTop, manualLabelTop;        // cmdQuickGoto and the manual boxes, their "RA" and "Dec"
  int decSignBoxTop, decSignButtonTop;  // txtGotoDecSign, cmdDecSign
  int lineY;                            // the line above the manual row
  int closeTop, filterLabelTop;         // cmdClose and cmdFilterAlt, lblFilter
};
HHCLayout HHCLayoutFor(int innerWidth, int innerHeight);
