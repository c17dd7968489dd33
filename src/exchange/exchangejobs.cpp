#include "exchange/exchangejobs.h"

#include <QScopeGuard>

#include "catalog/database.h"
#include "core/handler.h"
#include "core/recordfile.h"
#include "exchange/csvformat.h"
#include "exchange/exportvalues.h"
#include "exchange/palmformat.h"

ExportResult ExportList(ExportKind kind, const QString& dataSource, const QString& title,
                        const TourFolders& tourFolders) {
  // The list is read in its own order, through a connection of the export's own, in one read
  // transaction: one consistent picture of the list, and one file lock instead of one a row.
  const auto db = Database::open(dataSource, Database::Mode::ReadOnly);
  db->exec(QStringLiteral("BEGIN"));
  const auto end =
      qScopeGuard([&] { RunIgnoringErrors([&] { db->exec(QStringLiteral("COMMIT")); }); });
  ListRows list(*db);
  ExportResult result;
  switch (kind) {
    case ExportKind::Tour: {
      const TourTarget target = ChooseTourTarget(tourFolders, dataSource, title);
      WriteWholeFile(target.path, WriteTour(list));
      result.tourText = TourCompleteText(target);
      break;
    }
    case ExportKind::Palm: {
      const auto files = WritePalm(list, PathStem(dataSource), title);
      for (const PalmFile& f : files) WriteWholeFile(f.path, f.bytes);
      result.files = int(files.size());
      break;
    }
    case ExportKind::Csv:
    case ExportKind::Brillet:
      WriteWholeFile(
          PathStem(dataSource) + QStringLiteral(".csv"),
          WriteCsv(list, kind == ExportKind::Csv ? CsvVariant::General : CsvVariant::Brillet));
      break;
  }
  return result;
}

bool ImportFile(ImportFormat format, const QString& path, bool hasHeader,
                const std::shared_ptr<Database>& db, ImportTarget target) {
  const QByteArray bytes = ReadWholeFile(path);
  const ImportReading reading =
      format == ImportFormat::Csv ? ReadCsvImport(bytes, hasHeader) : ReadTour(bytes);
  if (!reading.wellFormed) return false;
  StoreImportedObjects(db, target, reading.objects);
  return true;
}
