#pragma once

#include <QString>
#include <QStringList>
#include <optional>

class AppState;

// What the program prints and returns instead of opening its window.
struct CommandLineAnswer {
  int exitCode = 0;
  QString out;  // for standard output
  QString err;  // for standard error
};

// Tavorine takes two options, --help and --version, and no arguments. They are answered before
// any window exists (the help names the folders of `state`). With `refuseOthers` (once the
// window system has taken its own options off) anything else is refused. Nothing means: start.
std::optional<CommandLineAnswer> AnswerCommandLine(const QStringList& arguments,
                                                   const AppState& state, bool refuseOthers);
