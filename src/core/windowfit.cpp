#include "core/windowfit.h"

#include <QDir>
#include <QSettings>
#include <algorithm>

namespace {

QString GeometryFile(const QString& configFolder) {
  return QDir(configFolder).filePath(QStringLiteral("windows.ini"));
}

}  // namespace

QRect FitFrame(const QRect& frame, const QSize& minimum, const QRect& area) {
  QRect r = frame;
  r.setWidth(std::max(std::min(r.width(), area.width()), minimum.width()));
  r.setHeight(std::max(std::min(r.height(), area.height()), minimum.height()));
  r.moveLeft(std::max(std::min(r.left(), area.right() + 1 - r.width()), area.left()));
  r.moveTop(std::max(std::min(r.top(), area.bottom() + 1 - r.height()), area.top()));
  return r;
}

// Without a configuration folder there is nowhere to keep a window's place, and a relative
// file name would land in whatever folder the program was started from.
QByteArray ReadWindowGeometry(const QString& configFolder, const QString& window) {
  if (configFolder.isEmpty()) return {};
  const QSettings file(GeometryFile(configFolder), QSettings::IniFormat);
  return QByteArray::fromBase64(file.value(window).toString().toLatin1());
}

void WriteWindowGeometry(const QString& configFolder, const QString& window,
                         const QByteArray& geometry) {
  if (configFolder.isEmpty()) return;
  QDir().mkpath(configFolder);
  QSettings file(GeometryFile(configFolder), QSettings::IniFormat);
  file.setValue(window, QString::fromLatin1(geometry.toBase64()));
  file.sync();
}
