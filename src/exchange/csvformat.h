#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include "exchange/exchangeobject.h"

class ListRows;

// Comma files: the general export for spreadsheets, the Brillet export, and the reader of the
// CSV imports.
//
// A line is one comma record: texts in double quotes (a double quote inside doubled, as
// spreadsheets expect), numbers bare with a point, Null as #NULL#. Which form a value takes
// follows its field; the trimmed columns are texts whatever the field holds.

enum class CsvVariant { General, Brillet };

// The whole file for the list, from its first row to its last, in Windows-1252 with CR LF.
// General: a header line, then a line an object. Brillet: a count line, the header with "Ob"
// and "Go", then a line an object with "0" and "0" added.
QByteArray WriteCsv(ListRows& list, CsvVariant variant);

// One value of a comma file as the comma reader finds it.
struct CsvValue {
  QString text;
  bool quoted = false;
};

// The values of a comma file, separated by commas or line ends (CR LF, LF or CR); an empty
// line holds none. A value may stand in double quotes, with doubled quotes inside it and line
// ends that belong to it; blanks around an unquoted value are dropped.
QVector<CsvValue> ReadCsvValues(const QString& text);

// The objects of a CSV import file: twelve values an object, counted regardless of lines, in
// the general export's column order, each value brought to its field's form. With hasHeader the
// first twelve values are a header and are skipped, unless their four position values are all
// numbers, which makes them an object. A count of values that is not a whole number of objects
// is a malformed file.
ImportReading ReadCsvImport(const QByteArray& bytes, bool hasHeader);
