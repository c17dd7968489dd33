#include "support/testenv.h"

#include "core/paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

TestEnv::TestEnv() {
  state = std::make_unique<AppState>(prompter);
  state->programFolder = SourceDataFolder();
  state->configFolder = dir.filePath(QStringLiteral("config"));
  state->defaultDataDir = dir.filePath(QStringLiteral("data/Data"));
  state->settings.DataDir = state->defaultDataDir;
  QDir().mkpath(state->configFolder);
  state->clock = [this] { return fixedNow; };
  state->systemUtcOffsetHours = [this]() -> std::optional<double> { return fixedOffsetHours; };
}

QString TestEnv::path(const QString& name) const { return dir.filePath(name); }

void TestEnv::setSite(const QStringList& f) const {
  ProgramSettings& s = state->settings;
  s.LongHemi = f.value(0);
  s.LongDeg = qint16(f.value(1).toInt());
  s.LongMin = qint16(f.value(2).toInt());
  s.LatHemi = f.value(3);
  s.LatDeg = qint16(f.value(4).toInt());
  s.LatMin = qint16(f.value(5).toInt());
}

void TestEnv::writeFile(const QString& relPath, const QByteArray& bytes) const {
  const QString p = path(relPath);
  QDir().mkpath(QFileInfo(p).absolutePath());
  QFile f(p);
  f.open(QIODevice::WriteOnly);
  f.write(bytes);
}

QByteArray TestEnv::readFile(const QString& relPath) const {
  QFile f(path(relPath));
  f.open(QIODevice::ReadOnly);
  return f.readAll();
}
