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
#include <QToolBar>
#include <QToolButton>

#include "catalog/catalogbrowser.h"
#include "charts/alignstars.h"
#include "charts/hhc.h"
#include "core/mainwindow.h"
#include "core/settings.h"
#include "core/windowfit.h"
#include "core/windowplacement.h"
#include "support/testenv.h"

namespace {

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

// A main window over settings that exist, so start-up does not open Setup.
struct Main {
  explicit Main(const QByteArray& recent = {}) {
    ProgramSettings s;
    s.FirstRun = 0;
    s.DataDir = env.path("lists/");
    env.writeFile("config/TavorineList.ini", SettingsRecord(s, true));
    if (!recent.isEmpty()) env.writeFile("config/TVRNMRU.dat", recent);
  }
  QAction* action(const char* name) { return w.findChild<QAction*>(QLatin1String(name)); }
  QToolButton* button(const char* name) { return w.findChild<QToolButton*>(QLatin1String(name)); }
  TestEnv env;
  TavorineListMain w{*env.state};
};

int visibleWindows(const QString& title) {
  int n = 0;
  for (QWidget* top : QApplication::topLevelWidgets()) n += top->windowTitle() == title && top->isVisible();
  return n;
}

}  // namespace

class TestMainWindow : public QObject {
  Q_OBJECT
 private slots:
  void listCommandsStartDisabled() {
    Main m;
    m.w.start();
    const char* listCommands[] = {"mnuExport", "mnuImportCurrent", "mnuImporthcTour", "mnuPrint"};
    for (bool on : {false, true}) {
      if (on) m.w.setListCommandsEnabled(true);
      for (const char* name : listCommands) QVERIFY2(m.action(name)->isEnabled() == on, name);
      QCOMPARE(m.button("cmdPrint")->isEnabled(), on);
    }
    QVERIFY(m.action("mnuImport")->isEnabled() && m.action("mnuImportUser")->isEnabled());
    QVERIFY(!m.action("mnuExportHC")->isVisible());
  }

  void recentMenu() {
    Main m("\"Tonight\",\"/l/a.tlf\"\r\n\"Globulars\",\"/l/b.tlf\"\r\n");
    m.w.start();
    QVERIFY(m.action("mnuSepMRU")->isVisible());
    QCOMPARE(m.action("mnuMRU0")->text(), QStringLiteral("Tonight"));
    QCOMPARE(m.action("mnuMRU1")->text(), QStringLiteral("Globulars"));
    QVERIFY(m.action("mnuMRU1")->isVisible());
    QVERIFY(!m.action("mnuMRU2")->isVisible());
  }

  // Exit (Ctrl+Q) quits and leaves the children to the end of the process; the close box
  // closes them first.
  void exitAndCloseBox_data() {
    QTest::addColumn<bool>("exit");
    QTest::addColumn<int>("closed");
    QTest::newRow("exit") << true << 0;
    QTest::newRow("close box") << false << 2;
  }
  void exitAndCloseBox() {
    QFETCH(bool, exit);
    Main m;
    int quits = 0, closed = 0;
    m.w.quitApplication = [&] { ++quits; };
    m.w.start();
    m.w.mdiArea()->addSubWindow(new ClosingChild(&closed))->show();
    m.w.mdiArea()->addSubWindow(new ClosingChild(&closed))->show();
    if (exit) {
      QVERIFY(QTest::qWaitForWindowActive(&m.w));
      QTest::keyClick(&m.w, Qt::Key_Q, Qt::ControlModifier);
    } else {
      m.w.close();
    }
    QCOMPARE(quits, 1);
    QTEST(closed, "closed");
  }

  void windowMenuListsChildren() {
    Main m;
    m.w.start();
    auto* child = new QWidget;
    child->setWindowTitle(QStringLiteral("Objects - Tonight"));
    m.w.mdiArea()->addSubWindow(child)->show();
    auto* menu = m.w.findChild<QMenu*>(QStringLiteral("mnuWindow"));
    QMetaObject::invokeMethod(menu, "aboutToShow");
    QStringList texts;
    for (QAction* a : menu->actions()) texts << a->text();
    for (const char* t : {"&Cascade", "&Tile", "&1 Objects - Tonight"})
      QVERIFY2(texts.contains(QLatin1String(t)), t);
  }

  void decSignFlips() {
    Main m;
    auto* button = m.w.findChild<QPushButton*>(QStringLiteral("cmdDecSign"));
    auto* sign = m.w.findChild<QLineEdit*>(QStringLiteral("txtGotoDecSign"));
    button->click();
    QCOMPARE(sign->text() + button->text(), QStringLiteral("--"));
    sign->setText(QStringLiteral("x"));
    button->click();
    QCOMPARE(sign->text(), QStringLiteral("+"));
  }

  void futureExportSaysSo() {
    Main m;
    m.action("mnuExportHC")->trigger();
    QCOMPARE(m.env.prompter.texts(), QStringList{QStringLiteral("For future developments.")});
  }

  void firstRunOpensSetup() {
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

  // The toolbar button, the menu and Ctrl+R in the help window switch the one mode.
  void redScreenRoundTrip() {
    Main m;
    m.w.start();
    QToolButton* red = m.button("cmdRedScreen");
    QAction* menu = m.action("mnuRedScreen");
    const QPalette before = QApplication::palette();
    red->click();
    QVERIFY(m.env.state->RedScreenOn && menu->isChecked());
    for (const char* name : {"cmdNew", "cmdOpen", "cmdPrint", "cmdHHC", "cmdAlignStars",
                             "cmdRedScreen"})
      QVERIFY2(m.button(name)->toolTip().isEmpty(), name);
    QVERIFY(QApplication::palette() != before);
    menu->trigger();
    QVERIFY(!m.env.state->RedScreenOn && !menu->isChecked());
    QCOMPARE(QApplication::palette(), before);
    QCOMPARE(m.button("cmdNew")->toolTip(), QStringLiteral("New List"));
    QCOMPARE(red->toolTip(), QStringLiteral("Red Screen"));

    // Help headings follow the mode.
    m.action("mnuHelpTopics")->trigger();
    auto* help = m.w.findChild<QWidget*>(QStringLiteral("HelpWindow"));
    QVERIFY(help && QTest::qWaitForWindowActive(help));
    auto* page = help->findChild<QTextBrowser*>(QStringLiteral("txtHelp"));
    const auto headingColour = [&] {
      return page->document()->find(QStringLiteral("Tavorine Help")).charFormat().foreground().color();
    };
    const QColor dayHeading = headingColour();
    for (bool on : {true, false}) {
      QTest::keyClick(page, Qt::Key_R, Qt::ControlModifier);
      QCOMPARE(m.env.state->RedScreenOn, on);
      QCOMPARE(menu->isChecked(), on);
      QCOMPARE(headingColour(), on ? QColor(255, 0, 0) : dayHeading);
    }
    // Exit while on puts the colours back.
    red->click();
    m.w.quitApplication = [] {};
    m.action("mnuExit")->trigger();
    QCOMPARE(QApplication::palette(), before);
  }

  void helpWindowIsReused() {
    Main m;
    m.w.start();
    m.action("mnuHelpTopics")->trigger();
    m.action("mnuHelpTopics")->trigger();
    QCOMPARE(visibleWindows(QStringLiteral("Tavorine Online Help")), 1);
    auto* help = m.w.findChild<QWidget*>(QStringLiteral("HelpWindow"));
    QVERIFY(QTest::qWaitForWindowActive(help));
    QTest::keyClick(help, Qt::Key_Escape);
    QVERIFY(!help->isVisible());
  }

  // However small the screen, the main window opens inside it.
  void fitsTheScreenOnFirstStart() {
    Main m;
    m.w.start();
    const QRect area = m.w.screen()->availableGeometry();
    QVERIFY2(area.contains(m.w.geometry()),
             qPrintable(QStringLiteral("%1x%2 in %3x%4")
                            .arg(m.w.width()).arg(m.w.height()).arg(area.width()).arg(area.height())));
  }

  void fit_data() {
    QTest::addColumn<QRect>("frame");
    QTest::addColumn<QSize>("minimum");
    QTest::addColumn<QRect>("fitted");
    // The free area is 1024 x 570 below a 30 pixel panel.
    QTest::newRow("too tall: shrunk, top on the area")
        << QRect(12, 20, 1000, 720) << QSize(0, 0) << QRect(12, 30, 1000, 570);
    QTest::newRow("off the right and bottom: moved back")
        << QRect(900, 500, 300, 200) << QSize(0, 0) << QRect(724, 400, 300, 200);
    QTest::newRow("smallest size larger than the area: title bar stays on")
        << QRect(100, 100, 1100, 800) << QSize(1050, 600) << QRect(0, 30, 1050, 600);
  }
  void fit() {
    QFETCH(QRect, frame);
    QFETCH(QSize, minimum);
    QTEST(FitFrame(frame, minimum, QRect(0, 30, 1024, 570)), "fitted");
  }

  // A window comes back where it was left; each window has its own place.
  void placementRemembered() {
    TestEnv env;
    const QRect left(40, 60, 320, 200);
    QWidget first, again, other;
    for (auto [w, name] : {std::pair{&first, "Probe"}, {&again, "Probe"}, {&other, "Other"}}) {
      w->setObjectName(QString::fromLatin1(name));
      w->resize(300, 150);
      KeepWindowPlacement(w, *env.state);
    }
    first.show();
    first.setGeometry(left);
    first.hide();
    again.show();
    other.show();
    QCOMPARE(again.geometry(), left);
    QCOMPARE(other.size(), QSize(300, 150));
  }

  void chartWindowsOpenOnce_data() {
    QTest::addColumn<QString>("command");
    QTest::newRow("menu, hand control") << "mnuHHC";
    QTest::newRow("button, hand control") << "cmdHHC";
    QTest::newRow("menu, alignment") << "mnuAlignStars";
    QTest::newRow("button, alignment") << "cmdAlignStars";
  }
  // Each opens its one window, or brings it back; F1 in the hand control window shows the one
  // help window.
  void chartWindowsOpenOnce() {
    QFETCH(QString, command);
    Main m;
    m.w.start();
    for (int i = 0; i < 2; ++i) {
      if (QAction* a = m.w.findChild<QAction*>(command)) a->trigger();
      else m.w.findChild<QToolButton*>(command)->click();
    }
    if (command.endsWith(QLatin1String("HHC"))) {
      QCOMPARE(m.w.findChildren<HHC*>().size(), 1);
      HHC* hhc = m.w.findChild<HHC*>();
      QVERIFY(hhc->isVisible() && !hhc->firstActivatePending());
      QTest::keyClick(hhc->browser()->currentSearchBox(), Qt::Key_F1);
      QTest::keyClick(hhc->browser()->currentSearchBox(), Qt::Key_F1);
      QCOMPARE(visibleWindows(QStringLiteral("Tavorine Online Help")), 1);
    } else {
      QCOMPARE(m.w.findChildren<AlignStars*>().size(), 1);
      auto* chart = m.w.findChild<AlignStars*>();
      auto* print = chart->findChild<QPushButton*>("cmdPrint");
      // Red Screen turns the toolbar's Print button red, not the chart's.
      m.action("mnuRedScreen")->trigger();
      QVERIFY(m.w.findChild<QToolBar*>()->findChild<QToolButton*>("cmdPrint")->toolTip().isEmpty());
      QVERIFY(print->styleSheet().isEmpty());
      m.action("mnuRedScreen")->trigger();
      QCOMPARE(m.w.mdiArea()->activeSubWindow()->widget(), chart);
      QVERIFY(!chart->candidates().empty() || !chart->bestPairsText().empty());
      // Print opens "Print Alignment Chart" beside the chart, without blocking it, and once.
      print->click();
      print->click();
      QCOMPARE(visibleWindows(QStringLiteral("Print Alignment Chart")), 1);
    }
    QVERIFY(m.env.prompter.entries.isEmpty());
  }
};

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
