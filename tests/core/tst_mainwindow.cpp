#include <QtTest>
#include <QTextBrowser>
#include <QTextDocument>

#include <QAction>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QToolButton>

#include "core/mainwindow.h"
#include "core/settings.h"
#include "support/testenv.h"

namespace {
QAction* action(QWidget* w, const QString& name) { return w->findChild<QAction*>(name); }

// A child window that notes when it is closed the usual way.
class ClosingChild : public QWidget {
 public:
  explicit ClosingChild(int* closed) : closed_(closed) {}
  void closeEvent(QCloseEvent* e) override {
    ++*closed_;
    e->accept();
  }
  int* closed_;
};

// An environment whose settings file exists, so start-up does not open Setup.
std::unique_ptr<TestEnv> configuredEnv() {
  auto env = std::make_unique<TestEnv>();
  ProgramSettings s;
  s.FirstRun = 0;
  s.DataDir = env->path("lists/");
  env->writeFile("config/TavorineList.ini", SettingsRecord(s, true));
  return env;
}
}  // namespace

class TestMainWindow : public QObject {
  Q_OBJECT
 private slots:
  void listCommandsStartDisabled();
  void recentMenu();
  void exitLeavesChildrenOpen();
  void closeBoxClosesChildrenFirst();
  void windowMenuListsChildren();
  void decSignFlips();
  void futureExportSaysSo();
  void firstRunOpensSetup();
  void redScreenRoundTrip();
  void helpWindowIsReused();
  void fitsTheScreenOnFirstStart();
};

void TestMainWindow::listCommandsStartDisabled() {
  auto env = configuredEnv();
  TavorineListMain w(*env->state);
  w.start();
  for (const char* off : {"mnuExport", "mnuImportCurrent", "mnuImporthcTour", "mnuPrint"})
    QVERIFY2(!action(&w, QString::fromLatin1(off))->isEnabled(), off);
  QVERIFY(!w.findChild<QToolButton*>(QStringLiteral("cmdPrint"))->isEnabled());
  QVERIFY(action(&w, QStringLiteral("mnuImport"))->isEnabled());
  QVERIFY(action(&w, QStringLiteral("mnuImportUser"))->isEnabled());
  QVERIFY(!action(&w, QStringLiteral("mnuExportHC"))->isVisible());
  w.setListCommandsEnabled(true);
  for (const char* on : {"mnuExport", "mnuImportCurrent", "mnuImporthcTour", "mnuPrint"})
    QVERIFY2(action(&w, QString::fromLatin1(on))->isEnabled(), on);
  QVERIFY(w.findChild<QToolButton*>(QStringLiteral("cmdPrint"))->isEnabled());
}

void TestMainWindow::recentMenu() {
  auto env = configuredEnv();
  env->writeFile("config/TVRNMRU.dat", "\"Tonight\",\"/l/a.tlf\"\r\n\"Globulars\",\"/l/b.tlf\"\r\n");
  TavorineListMain w(*env->state);
  w.start();
  QVERIFY(action(&w, QStringLiteral("mnuSepMRU"))->isVisible());
  QCOMPARE(action(&w, QStringLiteral("mnuMRU0"))->text(), QStringLiteral("Tonight"));
  QCOMPARE(action(&w, QStringLiteral("mnuMRU1"))->text(), QStringLiteral("Globulars"));
  QVERIFY(action(&w, QStringLiteral("mnuMRU1"))->isVisible());
  QVERIFY(!action(&w, QStringLiteral("mnuMRU2"))->isVisible());
}

void TestMainWindow::exitLeavesChildrenOpen() {
  auto env = configuredEnv();
  TavorineListMain w(*env->state);
  int quits = 0, closed = 0;
  w.quitApplication = [&] { ++quits; };
  w.start();
  w.mdiArea()->addSubWindow(new ClosingChild(&closed))->show();
  w.mdiArea()->addSubWindow(new ClosingChild(&closed))->show();
  QVERIFY(QTest::qWaitForWindowActive(&w));
  QTest::keyClick(&w, Qt::Key_Q, Qt::ControlModifier);  // Exit's shortcut
  QCOMPARE(quits, 1);
  QCOMPARE(closed, 0);
}

void TestMainWindow::closeBoxClosesChildrenFirst() {
  auto env = configuredEnv();
  TavorineListMain w(*env->state);
  int quits = 0, closed = 0;
  w.quitApplication = [&] { ++quits; };
  w.start();
  w.mdiArea()->addSubWindow(new ClosingChild(&closed))->show();
  w.mdiArea()->addSubWindow(new ClosingChild(&closed))->show();
  w.close();
  QCOMPARE(closed, 2);
  QCOMPARE(quits, 1);
}

void TestMainWindow::windowMenuListsChildren() {
  auto env = configuredEnv();
  TavorineListMain w(*env->state);
  w.start();
  auto* child = new QWidget;
  child->setWindowTitle(QStringLiteral("Objects - Tonight"));
  w.mdiArea()->addSubWindow(child)->show();
  auto* menu = w.findChild<QMenu*>(QStringLiteral("mnuWindow"));
  QMetaObject::invokeMethod(menu, "aboutToShow");
  QStringList texts;
  for (QAction* a : menu->actions()) texts << a->text();
  QVERIFY(texts.contains(QStringLiteral("&Cascade")));
  QVERIFY(texts.contains(QStringLiteral("&Tile")));
  QVERIFY(texts.contains(QStringLiteral("&1 Objects - Tonight")));
}

void TestMainWindow::decSignFlips() {
  auto env = configuredEnv();
  TavorineListMain w(*env->state);
  auto* button = w.findChild<QPushButton*>(QStringLiteral("cmdDecSign"));
  auto* sign = w.findChild<QLineEdit*>(QStringLiteral("txtGotoDecSign"));
  button->click();
  QCOMPARE(sign->text(), QStringLiteral("-"));
  QCOMPARE(button->text(), QStringLiteral("-"));
  sign->setText(QStringLiteral("x"));
  button->click();
  QCOMPARE(sign->text(), QStringLiteral("+"));
}

void TestMainWindow::futureExportSaysSo() {
  auto env = configuredEnv();
  TavorineListMain w(*env->state);
  action(&w, QStringLiteral("mnuExportHC"))->trigger();
  QCOMPARE(env->prompter.texts(), QStringList{QStringLiteral("For future developments.")});
}

void TestMainWindow::firstRunOpensSetup() {
  TestEnv env;  // no settings file: a first run
  TavorineListMain w(*env.state);
  w.quitApplication = [] {};
  QString shown;
  QTimer::singleShot(0, [&] {
    QWidget* modal = QApplication::activeModalWidget();
    if (!modal) return;
    shown = modal->objectName();
    modal->findChild<QPushButton*>(QStringLiteral("CancelButton"))->click();
  });
  w.start();
  QCOMPARE(shown, QStringLiteral("Setup"));
  // Cancel on a first run leaves the short settings file, FirstRun still 1.
  QCOMPARE(env.state->settings.FirstRun, qint16(1));
  QCOMPARE(env.readFile("config/TavorineList.ini").count(','), 14);
}

void TestMainWindow::redScreenRoundTrip() {
  auto env = configuredEnv();
  TavorineListMain w(*env->state);
  w.start();
  auto* red = w.findChild<QToolButton*>(QStringLiteral("cmdRedScreen"));
  auto* menu = action(&w, QStringLiteral("mnuRedScreen"));
  const QPalette before = QApplication::palette();
  red->click();
  QVERIFY(env->state->RedScreenOn);
  QVERIFY(menu->isChecked());
  for (const char* name : {"cmdNew", "cmdOpen", "cmdPrint", "cmdHHC", "cmdAlignStars",
                           "cmdRedScreen"})
    QVERIFY2(w.findChild<QToolButton*>(QString::fromLatin1(name))->toolTip().isEmpty(), name);
  QVERIFY(QApplication::palette() != before);
  menu->trigger();
  QVERIFY(!env->state->RedScreenOn);
  QVERIFY(!menu->isChecked());
  QCOMPARE(QApplication::palette(), before);
  QCOMPARE(red->toolTip(), QStringLiteral("Red Screen"));
  QCOMPARE(w.findChild<QToolButton*>(QStringLiteral("cmdNew"))->toolTip(),
           QStringLiteral("New List"));

  // Ctrl+R works from the help window too, and its headings follow the mode.
  action(&w, QStringLiteral("mnuHelpTopics"))->trigger();
  QWidget* help = nullptr;
  for (QWidget* top : QApplication::topLevelWidgets())
    if (top->windowTitle() == QLatin1String("Tavorine Online Help")) help = top;
  QVERIFY(help && QTest::qWaitForWindowActive(help));
  auto* page = help->findChild<QTextBrowser*>(QStringLiteral("txtHelp"));
  const auto headingColour = [&] {
    return page->document()->find(QStringLiteral("Tavorine Help")).charFormat().foreground().color();
  };
  const QColor dayHeading = headingColour();
  for (bool on : {true, false}) {
    QTest::keyClick(page, Qt::Key_R, Qt::ControlModifier);
    QCOMPARE(env->state->RedScreenOn, on);
    QCOMPARE(menu->isChecked(), on);
    QCOMPARE(headingColour(), on ? QColor(255, 0, 0) : dayHeading);
  }

  // Exit while on puts the colours back.
  red->click();
  w.quitApplication = [] {};
  action(&w, QStringLiteral("mnuExit"))->trigger();
  QCOMPARE(QApplication::palette(), before);
}

void TestMainWindow::helpWindowIsReused() {
  auto env = configuredEnv();
  TavorineListMain w(*env->state);
  w.start();
  action(&w, QStringLiteral("mnuHelpTopics"))->trigger();
  action(&w, QStringLiteral("mnuHelpTopics"))->trigger();
  int helpWindows = 0;
  for (QWidget* top : QApplication::topLevelWidgets())
    if (top->windowTitle() == QLatin1String("Tavorine Online Help") && top->isVisible())
      ++helpWindows;
  QCOMPARE(helpWindows, 1);
  auto* help = w.findChild<QWidget*>(QStringLiteral("HelpWindow"));
  QVERIFY(QTest::qWaitForWindowActive(help));
  QTest::keyClick(help, Qt::Key_Escape);
  QVERIFY(!help->isVisible());
}

// However small the screen, the main window opens inside it.
void TestMainWindow::fitsTheScreenOnFirstStart() {
  auto env = configuredEnv();
  TavorineListMain w(*env->state);
  w.start();
  const QRect area = w.screen()->availableGeometry();
  QVERIFY2(area.contains(w.geometry()),
           qPrintable(QStringLiteral("%1x%2 in %3x%4").arg(w.width()).arg(w.height())
                          .arg(area.width()).arg(area.height())));
}

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
