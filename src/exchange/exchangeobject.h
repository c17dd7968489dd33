#pragma once

#include <QString>
#include <QVariant>
#include <array>
#include <memory>
#include <vector>

class Database;

// The twelve columns of an object as the exchange files carry it, in the column order of the
// CSV files (which the CSV imports expect too).
enum ExchangeColumn {
  ColCategory,
  ColObjectNum,
  ColName,
  ColType,
  ColMagnitude,
  ColConstellation,
  ColRAHour,
  ColRAMinute,
  ColDecSign,
  ColDecDeg,
  ColDecMinute,
  ColInfo,
  ExchangeColumnCount
};

struct ExchangeColumnInfo {
  QString field;   // the table column
  QString header;  // its caption in a CSV header line
  bool trimmed;    // written trimmed, as text
  bool number;     // one of the four position numbers
};
const std::array<ExchangeColumnInfo, ExchangeColumnCount>& ExchangeColumns();

// One object an import stores: texts for the text columns, doubles for the four numbers.
using ImportedObject = std::array<QVariant, ExchangeColumnCount>;

// What a reader makes of a file: the objects it found, and whether the file was well formed.
// A reader never stores anything, so a malformed file leaves the table as it was.
struct ImportReading {
  std::vector<ImportedObject> objects;
  bool wellFormed = true;
};

enum class ImportTarget { CurrentList, UserList };

// Adds the objects to the table of the target (Objects of a list document or UserObjects of
// the user's list) in one transaction. A list gives them DisplayOrder values after the last
// row's: the first gets that value plus 1, or 2 when the list is empty. Returns the rows added.
int StoreImportedObjects(const std::shared_ptr<Database>& db, ImportTarget target,
                         const std::vector<ImportedObject>& objects);

// The one message of a file an import cannot read.
QString IncorrectFileFormatText();
// The message at the end of an import.
QString ImportCompleteText(ImportTarget target);

// A path less its extension: the stem the export files are named from.
QString PathStem(const QString& path);
