#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

class ListRows;

// Files for Planetarium for Palm: one comma record of three values, the first a quoted text of
// a title line and one line an object, then "0" and "Unfiled". In Windows-1252 with CR LF.
//   "Deep.txt
//   NGC 224, Andromeda Galaxy;Galaxy, Sb;.71;+41.27;1;6;3.4;0
//   ","0","Unfiled"

// A file holds at most this many objects; a longer list is split over numbered files.
constexpr int PalmObjectsPerFile = 40;

QString PalmIdentifier(const QString& category, const QString& objectNum);
QString PalmTypeCode(const QString& type, const QString& category);

// The object line of the current row of a list, without its line end.
QString PalmLine(const ListRows& list);

struct PalmFile {
  QString path;
  QByteArray bytes;
};
// The files of a list, from its first row: pathStem.txt and a title line title.txt, or for
// more than PalmObjectsPerFile objects "pathStem 1.txt", "pathStem 2.txt"... with the number
// in the title line too. An empty list gives one file with the title line alone.
std::vector<PalmFile> WritePalm(ListRows& list, const QString& pathStem, const QString& title);
