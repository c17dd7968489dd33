#pragma once

#include <QByteArray>
#include <QString>

#include "exchange/exchangeobject.h"

class ListRows;

// Tours (.hct) of NexRemote's NexTour and hcAnywhere's hcTour: one object a line, fields
// separated by '#', in Windows-1252 with CR LF. Runs of '#' stand for fields this program
// leaves empty:
//   00:42:44.4#+41:16:00#NGC 224#       Andromeda Galaxy - Sb####34####4#######

// A tour holds at most this many objects; the rest of a longer list is left out.
constexpr int MaxTourObjects = 200;

// The identifier and type code a tour gives an object.
QString TourIdentifier(const QString& category, const QString& objectNum);
QString TourTypeCode(const QString& type, const QString& category);

// The line of the current row of a list, without its line end. A '#' or a line end inside a
// text would end its field early, so they become blanks.
QString TourLine(const ListRows& list);

// The tour of a list: its first MaxTourObjects rows in the list's order.
QByteArray WriteTour(ListRows& list);

// The objects of a tour file. The reader takes tours in general: it reads the category field
// that this program never writes and type codes it never uses. Fields come from fixed columns
// (right ascension), the third ':' (declination) and the '#' count; blank lines are skipped.
// A line without three ':' and 14 '#', or with seconds that are not numbers, makes the file
// malformed.
ImportReading ReadTour(const QByteArray& bytes);

// ---- where a tour goes

// The Tours folders of NexRemote and hcAnywhere when they are installed on the Windows drive
// C: of a compatibility layer (an empty drive: none); empty where a program is not installed.
struct TourFolders {
  QString nexRemote;
  QString hcAnywhere;
};
TourFolders FindTourFolders(const QString& windowsDriveC);

enum class TourPlace { NexRemote, HcAnywhere, BesideList };
struct TourTarget {
  TourPlace place;
  QString path;
};
// NexRemote's folder first, then hcAnywhere's, else beside the list document. title is the
// list's title, which names the tour in the programs' folders.
TourTarget ChooseTourTarget(const TourFolders& folders, const QString& dataSource,
                            const QString& title);
// What the export tells the user once the tour is written.
QString TourCompleteText(const TourTarget& target);
// Where the tour import's file dialog starts.
QString TourImportFolder(const TourFolders& folders, const QString& lastImportFolder);
