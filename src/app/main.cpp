#include <QApplication>
#include <cstdio>

#include "core/appstate.h"
#include "core/commandline.h"
#include "core/mainwindow.h"
#include "core/paths.h"
#include "core/widgetprompter.h"

namespace {

void NameTheProgram() {
  QCoreApplication::setApplicationName(QStringLiteral("tavorine"));
  QCoreApplication::setApplicationVersion(QStringLiteral(TAVORINE_VERSION));
}

int Print(const CommandLineAnswer& answer) {
  std::fputs(answer.out.toLocal8Bit().constData(), stdout);
  std::fputs(answer.err.toLocal8Bit().constData(), stderr);
  return answer.exitCode;
}

}  // namespace

int main(int argc, char* argv[]) {
  WidgetPrompter prompter;
  AppState state(prompter);
  {
    // --help and --version are answered before the window system is reached, so they work
    // without a display.
    QCoreApplication plain(argc, argv);
    NameTheProgram();
    SetStandardFolders(state);
    if (const auto answer = AnswerCommandLine(plain.arguments(), state, false))
      return Print(*answer);
  }

  QApplication app(argc, argv);
  NameTheProgram();
  QApplication::setApplicationDisplayName(QStringLiteral("Tavorine"));
  QGuiApplication::setDesktopFileName(QStringLiteral("io.github.tavorine.Tavorine"));
  // The window system has taken its own options (-platform, -style...) off by now.
  if (const auto answer = AnswerCommandLine(QCoreApplication::arguments(), state, true))
    return Print(*answer);

  TavorineListMain window(state);
  window.start();
  return app.exec();
}
