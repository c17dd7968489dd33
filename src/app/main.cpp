#include <QApplication>

#include "core/appstate.h"
#include "core/mainwindow.h"
#include "core/paths.h"
#include "core/widgetprompter.h"

int main(int argc, char* argv[]) {
  QApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("tavorine"));
  QApplication::setApplicationDisplayName(QStringLiteral("Tavorine"));
  QApplication::setApplicationVersion(QStringLiteral(TAVORINE_VERSION));

  WidgetPrompter prompter;
  AppState state(prompter);
  SetStandardFolders(state);

  TavorineListMain window(state);
  window.start();
  return app.exec();
}
