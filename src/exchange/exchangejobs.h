#pragma once

#include <QString>
#include <memory>

#include "exchange/exchangeobject.h"
#include "exchange/tourformat.h"

class Database;

// The work behind the Export and Import commands, without their windows.

enum class ExportKind { Tour, Palm, Csv, Brillet };

struct ExportResult {
  int files = 1;     // how many files were written
  QString tourText;  // for a tour: where it went and what to do next
};

// Writes the export of the list document at dataSource, whose title is title. Files already
// there are replaced; a file is only replaced once its new content is complete. Raises
// AppError on failure.
ExportResult ExportList(ExportKind kind, const QString& dataSource, const QString& title,
                        const TourFolders& tourFolders);

enum class ImportFormat { Csv, Tour };

// Reads an import file and adds its objects to the target table of db, all or nothing.
// Returns false, having stored nothing, when the file is malformed. Raises AppError when the
// file or the database cannot be read or written.
bool ImportFile(ImportFormat format, const QString& path, bool hasHeader,
                const std::shared_ptr<Database>& db, ImportTarget target);
