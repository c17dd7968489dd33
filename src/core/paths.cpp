#include "core/paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include "core/appstate.h"

QString ResolveProgramFolder() {
  const QString appDir = QCoreApplication::applicationDirPath();
  const QString installed = QDir(appDir).absoluteFilePath(QStringLiteral("../share/tavorine"));
  if (QFileInfo::exists(installed + QStringLiteral("/TavorineList.mdb")))
    return QDir::cleanPath(installed);
  if (QFileInfo::exists(QStringLiteral(TAVORINE_INSTALL_DATA_DIR "/TavorineList.mdb")) &&
      !QFileInfo::exists(QStringLiteral(TAVORINE_SOURCE_DATA_DIR "/TavorineList.mdb")))
    return QStringLiteral(TAVORINE_INSTALL_DATA_DIR);
  return QStringLiteral(TAVORINE_SOURCE_DATA_DIR);
}

QString SourceDataFolder() { return QStringLiteral(TAVORINE_SOURCE_DATA_DIR); }

QString WineDriveC() {
  const QString prefix = qEnvironmentVariable("WINEPREFIX");
  return QDir(prefix.isEmpty() ? QDir::home().filePath(QStringLiteral(".wine")) : prefix)
      .filePath(QStringLiteral("drive_c"));
}

void SetStandardFolders(AppState& state) {
  state.programFolder = ResolveProgramFolder();
  state.configFolder = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
  state.defaultDataDir =
      QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/Data");
  state.windowsDriveC = WineDriveC();
}
