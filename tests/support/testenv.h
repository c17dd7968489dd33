#pragma once

#include <QDateTime>
#include <QTemporaryDir>
#include <memory>

#include "core/appstate.h"
#include "support/scriptedprompter.h"

// An AppState whose folders live in a temporary directory, with a scripted prompter, a fixed
// clock and a fixed time zone. The program folder is the source tree's data/ unless a test
// says otherwise.
struct TestEnv {
  TestEnv();

  QString path(const QString& name) const;  // a file in the temporary directory
  void writeFile(const QString& relPath, const QByteArray& bytes) const;
  QByteArray readFile(const QString& relPath) const;
  // Sets the observer's site from its six fields: "E 127 40 N 26 20".
  void setSite(const QStringList& fields) const;

  QTemporaryDir dir;
  ScriptedPrompter prompter;
  std::unique_ptr<AppState> state;
  QDateTime fixedNow{QDate(2026, 11, 21), QTime(20, 30)};
  double fixedOffsetHours = 0;
};
