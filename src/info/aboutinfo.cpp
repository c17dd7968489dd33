#include "info/aboutinfo.h"

#include <sqlite3.h>
#include <QFile>
#include <QSysInfo>
#include <QtGlobal>

#include "core/appstate.h"

QList<QPair<QString, QString>> ReadCatalogInfo(const QString& databasePath) {
  QList<QPair<QString, QString>> rows;
  if (!QFile::exists(databasePath)) return rows;
  sqlite3* db = nullptr;
  if (sqlite3_open_v2(databasePath.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) !=
      SQLITE_OK) {
    sqlite3_close(db);
    return rows;
  }
  sqlite3_stmt* stmt = nullptr;
  if (sqlite3_prepare_v2(db, "SELECT Key, Value FROM CatalogInfo ORDER BY rowid", -1, &stmt,
                         nullptr) == SQLITE_OK) {
    while (sqlite3_step(stmt) == SQLITE_ROW) {
      auto column = [&](int i) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, i));
        return text ? QString::fromUtf8(text) : QString();
      };
      rows.append({column(0), column(1)});
    }
  }
  sqlite3_finalize(stmt);
  sqlite3_close(db);
  return rows;
}

AboutInfo CollectAboutInfo(const AppState& state) {
  AboutInfo info;
  info.programName = QStringLiteral("Tavorine");
  info.version = QStringLiteral(TAVORINE_VERSION);
  info.qtVersion = QString::fromLatin1(qVersion());
  info.sqliteVersion = QString::fromLatin1(sqlite3_libversion());
  info.operatingSystem = QSysInfo::prettyProductName();
  info.catalogInfo = ReadCatalogInfo(state.catalogPath());
  info.licence = QStringLiteral("GNU General Public License v3.0 or later");
  return info;
}

QStringList AboutLines(const AboutInfo& info) {
  QStringList lines;
  lines << info.programName << QStringLiteral("Version ") + info.version
        << QStringLiteral("Observing lists and telescope control for amateur astronomers")
        << QString() << QStringLiteral("Qt ") + info.qtVersion
        << QStringLiteral("SQLite ") + info.sqliteVersion
        << QStringLiteral("Operating system: ") + info.operatingSystem;
  if (!info.catalogInfo.isEmpty()) {
    lines << QString() << QStringLiteral("Catalog database:");
    for (const auto& row : info.catalogInfo)
      lines << QStringLiteral("  ") + row.first + QStringLiteral(": ") + row.second;
  }
  lines << QString() << QStringLiteral("Licence: ") + info.licence;
  return lines;
}

QStringList SupportLines() {
  return {
      QStringLiteral("Tavorine is free software, supported by its project."),
      QStringLiteral("Please report problems and ask questions on the Tavorine project's issue "
                     "tracker, where this copy of the program was published."),
      QStringLiteral("When you report a problem, please say which version you use (Help, About "
                     "Tavorine...), your telescope type and Comm Port from Setup, and the exact "
                     "text of any message you saw."),
  };
}

QString LicenseText(const QString& path) {
  QFile f(path);
  if (!f.open(QIODevice::ReadOnly))
    return QStringLiteral("The licence text was not found at ") + path +
           QStringLiteral(
               ".\nTavorine is released under the GNU General Public License v3.0 "
               "or later.");
  return QString::fromUtf8(f.readAll());
}
