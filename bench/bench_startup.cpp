// Start-up: from starting the process to the main window's first paint, and the memory the
// process holds then. Each run starts a new process (this program again, in the part that
// starts as main.cpp does); the floor is a process that shows a bare Qt main window. The
// settings live in a temporary folder, written once beforehand so that no run is a first run.
#include <sys/resource.h>

#include <QApplication>
#include <QDir>
#include <QMainWindow>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>
#include <cstdio>
#include <cstdlib>

#include "benchstats.h"
#include "core/appstate.h"
#include "core/mainwindow.h"
#include "core/paths.h"
#include "core/settings.h"
#include "core/widgetprompter.h"
#include "silentprompter.h"

namespace {

// Prints the peak memory once the window has painted, and ends the process at once.
class FirstPaint : public QObject {
 public:
  explicit FirstPaint(QWidget* window) { window->installEventFilter(this); }
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint && !seen_) {
      seen_ = true;
      QTimer::singleShot(0, [] {
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        std::printf("painted %ld\n", usage.ru_maxrss);  // KiB
        std::fflush(stdout);
        std::_Exit(0);
      });
    }
    return QObject::eventFilter(watched, event);
  }

 private:
  bool seen_ = false;
};

void nameApplication() {
  QApplication::setApplicationName(QStringLiteral("tavorine"));
  QApplication::setApplicationDisplayName(QStringLiteral("Tavorine"));
}

int runProgram(int argc, char** argv) {
  QApplication app(argc, argv);
  nameApplication();
  WidgetPrompter prompter;
  AppState state(prompter);
  SetStandardFolders(state);
  TavorineListMain window(state);
  FirstPaint watch(&window);
  window.start();
  return app.exec();
}

int runFloor(int argc, char** argv) {
  QApplication app(argc, argv);
  QMainWindow window;
  window.resize(800, 600);
  FirstPaint watch(&window);
  window.show();
  return app.exec();
}

int prepare(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  nameApplication();
  SilentPrompter quiet;
  AppState state(quiet);
  SetStandardFolders(state);
  LoadStartupState(state);
  state.settings.FirstRun = 0;
  QDir().mkpath(state.configFolder);
  QDir().mkpath(state.settings.DataDir);
  SaveSettings(state, true);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const QByteArray mode = argc > 1 ? QByteArray(argv[1]) : QByteArray();
  if (mode == "--program") return runProgram(argc, argv);
  if (mode == "--floor") return runFloor(argc, argv);
  if (mode == "--prepare") return prepare(argc, argv);

  QCoreApplication app(argc, argv);
  QTextStream out(stdout);
  QTemporaryDir home;
  QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
  env.insert(QStringLiteral("XDG_CONFIG_HOME"), home.filePath(QStringLiteral("config")));
  env.insert(QStringLiteral("XDG_DATA_HOME"), home.filePath(QStringLiteral("data")));
  if (env.value(QStringLiteral("QT_QPA_PLATFORM")).isEmpty())
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
  out << "platform: " << env.value(QStringLiteral("QT_QPA_PLATFORM")) << "\n";

  auto start = [&](const QString& which, double* mib) {
    QProcess p;
    p.setProcessEnvironment(env);
    p.start(QCoreApplication::applicationFilePath(), {which});
    p.waitForFinished(30000);
    const QByteArray said = p.readAllStandardOutput().trimmed();
    if (mib) *mib = said.startsWith("painted ") ? said.mid(8).toDouble() / 1024 : -1;
  };
  start(QStringLiteral("--prepare"), nullptr);
  bench::Measured memory;
  memory.showCpu = false;
  bench::Measured time = bench::measure(
      [&](int) {
        double mib = 0;
        start(QStringLiteral("--program"), &mib);
        memory.figure.ms.push_back(mib);
      },
      [&](int) {
        double mib = 0;
        start(QStringLiteral("--floor"), &mib);
        memory.floor.ms.push_back(mib);
      });
  time.showCpu = false;  // the runs are other processes
  bool met = bench::report(out, QStringLiteral("start-up to the first painted window"), time, 200);
  met &= bench::report(out, QStringLiteral("memory at the first paint"), memory, 60,
                       QStringLiteral("MiB"));
  return met ? 0 : 2;
}
