#pragma once

#include <QFile>
#include <QList>
#include <QStringList>

// The rows of a comma-separated data file made by a script in tools/: '#' lines are comments,
// the first other line is the header. Empty when the file cannot be read.
inline QList<QStringList> CsvRows(const QString& path) {
  QList<QStringList> rows;
  QFile f(path);
  if (!f.open(QIODevice::ReadOnly | QIODevice::Text)) return rows;
  bool header = true;
  while (!f.atEnd()) {
    const QString line = QString::fromUtf8(f.readLine()).trimmed();
    if (line.isEmpty() || line.startsWith(QLatin1Char('#'))) continue;
    if (!header) rows << line.split(QLatin1Char(','));
    header = false;
  }
  return rows;
}
