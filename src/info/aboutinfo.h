#pragma once

#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

class AppState;

// What the information windows show, gathered without any window.
struct AboutInfo {
  QString programName;
  QString version;
  QString qtVersion;
  QString sqliteVersion;
  QString operatingSystem;
  QList<QPair<QString, QString>> catalogInfo;  // Key, Value rows of the catalog database
  QString licence;
};

// The rows of the table CatalogInfo(Key, Value) in a catalog database, in stored order. A
// missing file, a database without that table or an unreadable file give no rows.
QList<QPair<QString, QString>> ReadCatalogInfo(const QString& databasePath);

AboutInfo CollectAboutInfo(const AppState& state);

// The lines of the About window, in order.
QStringList AboutLines(const AboutInfo& info);

// The contact lines of the Technical Support window.
QStringList SupportLines();

// The text of the licence file, or a line saying where it was looked for.
QString LicenseText(const QString& path);
