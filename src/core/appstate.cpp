#include "core/appstate.h"

#include <QDir>

#include "sky/systemzone.h"

AppState::AppState(Prompter& prompter) : prompter_(&prompter) {
  clock = [] { return SystemZone::instance().localNow(); };
  systemUtcOffsetHours = []() -> std::optional<double> {
    // An unknown zone (TZ naming no zone) leaves the offset undetermined.
    const std::optional<int> seconds =
        SystemZone::instance().offsetSecondsAt(QDateTime::currentMSecsSinceEpoch());
    if (!seconds) return std::nullopt;
    return *seconds / 3600.0;
  };
  resetPages();
}

void AppState::resetPages() {
  for (int i = 0; i < 8; ++i) {
    Pages[i].OrderBy = (i == 2 || i == 7) ? QStringLiteral("ORDER BY Category, ObjectNum")
                                          : QStringLiteral("ORDER BY ObjectNum");
    Pages[i].Where = QStringLiteral("WHERE True");
    Pages[i].Filter.clear();
    Pages[i].SortField = QStringLiteral("ObjectNum");
  }
}

static QString join(const QString& folder, const char* name) {
  return QDir(folder).filePath(QString::fromLatin1(name));
}

QString AppState::settingsPath() const { return join(configFolder, "TavorineList.ini"); }
QString AppState::filterPath() const { return join(configFolder, "Filter.ini"); }
QString AppState::recentFilesPath() const { return join(configFolder, "TVRNMRU.dat"); }
QString AppState::indiPath() const { return join(configFolder, "TavorineINDI.ini"); }
QString AppState::catalogPath() const { return join(programFolder, "TavorineList.mdb"); }
QString AppState::templatePath() const { return join(programFolder, "TavorineTemplate.tmp"); }
QString AppState::helpPath() const { return join(programFolder, "help.htm"); }
QString AppState::licensePath() const { return join(programFolder, "LICENSE"); }

// DataDir is used as it stands, with or without its closing separator.
QString AppState::userListPath() const {
  QString dir = settings.DataDir;
  if (!dir.endsWith(QLatin1Char('/'))) dir += QLatin1Char('/');
  return dir + QStringLiteral("TavorineUserList.mdb");
}
