#include <QtTest>
#include <QTextBrowser>
#include <QTextDocument>

#include <QAction>
#include <QFile>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QToolBar>
#include <QToolButton>

#include "catalog/catalogbrowser.h"
#include "catalog/recordset.h"
#include "charts/alignstars.h"
#include "charts/hhc.h"
#include "core/listdocuments.h"
#include "core/mainwindow.h"
#include "core/opendocuments.h"
#include "core/settings.h"
#include "core/windowfit.h"
#include "core/windowplacement.h"
#include "lists/listwindow.h"
#include "support/listdocument.h"
#include "support/testenv.h"

namespace {

// A started main window over settings that exist (so start-up does not open Setup), whose
// file dialog answers from a queue and counts its calls.
struct Rig {
  TestEnv env;
  std::unique_ptr<TavorineListMain> main;
  QStringList answers;
  int dialogs = 0;
  QString lastTitle, lastFolder;
  bool lastSave = false;

  explicit Rig(const QByteArray& recent = {}) {
    ProgramSettings s;
    s.FirstRun = 0;
    s.DataDir = env.path("lists/");
    env.writeFile("config/TavorineList.ini", SettingsRecord(s, true));
    if (!recent.isEmpty()) env.writeFile("config/TVRNMRU.dat", recent);
    main = std::make_unique<TavorineListMain>(*env.state);
    main->quitApplication = [] {};
    main->screenHeightTwips = [] { return 15000; };
    main->chooseListFile = [this](bool save, const QString& title, const QString& folder) {
      ++dialogs;
      lastSave = save;
      lastTitle = title;
      lastFolder = folder;
      return answers.isEmpty() ? QString() : answers.takeFirst();
    };
    main->start();
  }
  AppState& state() { return *env.state; }
  // A list document in lists/ with this many rows.
  QString list(const QString& name, int rows = 2) {
    const QString p = env.path(QStringLiteral("lists/") + name + QStringLiteral(".tlf"));
    QDir().mkpath(env.path(QStringLiteral("lists")));
    std::vector<ListRow> content;
    for (int i = 0; i < rows; ++i)
      content.push_back(NamedRow(QStringLiteral("Object %1").arg(i + 1),
                                 SkyPosition::of(i, 0, "+", 10, 0)));
    MakeListDocument(state(), p, content);
    return p;
  }
  QAction* action(const QString& name) const { return main->findChild<QAction*>(name); }
  QToolButton* button(const QString& name) const { return main->findChild<QToolButton*>(name); }
  void trigger(const QString& name) { action(name)->trigger(); }
  void open(const QString& path) {
    answers << path;
    trigger("mnuOpen");
  }
  QList<CurrentList*> windows() const {
    QList<CurrentList*> out;
    for (QMdiSubWindow* f : main->mdiArea()->subWindowList())
      if (auto* w = qobject_cast<CurrentList*>(f->widget())) out << w;
    return out;
  }
  CurrentList* window(const QString& path) const {
    for (CurrentList* w : windows())
      if (w->documentPath() == path) return w;
    return nullptr;
  }
  void close(const QString& path) {
    qobject_cast<QMdiSubWindow*>(window(path)->parentWidget())->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  bool commandsEnabled() const {
    return action("mnuPrint")->isEnabled() && button("cmdPrint")->isEnabled() &&
           action("mnuExport")->isEnabled();
  }
  // The boxes shown, each as "title: text".
  QStringList said() const {
    QStringList out;
    for (const auto& e : env.prompter.entries) out << e.title + QStringLiteral(": ") + e.text;
    return out;
  }
};

void commandRows() {
  QTest::addColumn<QString>("command");
  QTest::newRow("new") << "mnuNew";
  QTest::newRow("open") << "mnuOpen";
}

int visibleWindows(const QString& title) {
  int n = 0;
  for (QWidget* top : QApplication::topLevelWidgets()) n += top->windowTitle() == title && top->isVisible();
  return n;
}

}  // namespace

class TestMainWindow : public QObject {
  Q_OBJECT
 private slots:
  // Start-up: the list commands wait for a list, the recent lists are in the File menu, the
  // window fits the screen however small.
  void startUp() {
    Rig m("\"Tonight\",\"/l/a.tlf\"\r\n\"Globulars\",\"/l/b.tlf\"\r\n");
    const char* listCommands[] = {"mnuExport", "mnuImportCurrent", "mnuImporthcTour", "mnuPrint"};
    for (bool on : {false, true}) {
      if (on) m.main->setListCommandsEnabled(true);
      for (const char* name : listCommands) QVERIFY2(m.action(name)->isEnabled() == on, name);
      QCOMPARE(m.button("cmdPrint")->isEnabled(), on);
    }
    QVERIFY(m.action("mnuImport")->isEnabled() && m.action("mnuImportUser")->isEnabled());
    QVERIFY(!m.action("mnuExportHC")->isVisible());
    m.action("mnuExportHC")->trigger();
    QCOMPARE(m.env.prompter.texts(), QStringList{QStringLiteral("For future developments.")});

    QVERIFY(m.action("mnuSepMRU")->isVisible());
    QCOMPARE(m.action("mnuMRU0")->text(), QStringLiteral("Tonight"));
    QCOMPARE(m.action("mnuMRU1")->text(), QStringLiteral("Globulars"));
    QVERIFY(m.action("mnuMRU1")->isVisible());
    QVERIFY(!m.action("mnuMRU2")->isVisible());

    const QRect area = m.main->screen()->availableGeometry();
    QVERIFY2(area.contains(m.main->geometry()),
             qPrintable(QStringLiteral("%1x%2 in %3x%4")
                            .arg(m.main->width()).arg(m.main->height()).arg(area.width()).arg(area.height())));
  }

  void decSignFlips() {
    Rig m;
    auto* button = m.main->findChild<QPushButton*>(QStringLiteral("cmdDecSign"));
    auto* sign = m.main->findChild<QLineEdit*>(QStringLiteral("txtGotoDecSign"));
    button->click();
    QCOMPARE(sign->text() + button->text(), QStringLiteral("--"));
    sign->setText(QStringLiteral("x"));
    button->click();
    QCOMPARE(sign->text(), QStringLiteral("+"));
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
    Rig m;
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

    // Help headings follow the mode; the help window is opened once.
    m.action("mnuHelpTopics")->trigger();
    m.action("mnuHelpTopics")->trigger();
    QCOMPARE(visibleWindows(QStringLiteral("Tavorine Online Help")), 1);
    auto* help = m.main->findChild<QWidget*>(QStringLiteral("HelpWindow"));
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
    QTest::keyClick(help, Qt::Key_Escape);
    QVERIFY(!help->isVisible());
    // Exit while on puts the colours back.
    red->click();
    m.main->quitApplication = [] {};
    m.action("mnuExit")->trigger();
    QCOMPARE(QApplication::palette(), before);
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
    Rig m;
    for (int i = 0; i < 2; ++i) {
      if (QAction* a = m.main->findChild<QAction*>(command)) a->trigger();
      else m.main->findChild<QToolButton*>(command)->click();
    }
    if (command.endsWith(QLatin1String("HHC"))) {
      QCOMPARE(m.main->findChildren<HHC*>().size(), 1);
      HHC* hhc = m.main->findChild<HHC*>();
      QVERIFY(hhc->isVisible() && !hhc->firstActivatePending());
      QTest::keyClick(hhc->browser()->currentSearchBox(), Qt::Key_F1);
      QTest::keyClick(hhc->browser()->currentSearchBox(), Qt::Key_F1);
      QCOMPARE(visibleWindows(QStringLiteral("Tavorine Online Help")), 1);
    } else {
      QCOMPARE(m.main->findChildren<AlignStars*>().size(), 1);
      auto* chart = m.main->findChild<AlignStars*>();
      auto* print = chart->findChild<QPushButton*>("cmdPrint");
      // Red Screen turns the toolbar's Print button red, not the chart's.
      m.action("mnuRedScreen")->trigger();
      QVERIFY(m.main->findChild<QToolBar*>()->findChild<QToolButton*>("cmdPrint")->toolTip().isEmpty());
      QVERIFY(print->styleSheet().isEmpty());
      m.action("mnuRedScreen")->trigger();
      QCOMPARE(m.main->mdiArea()->activeSubWindow()->widget(), chart);
      QVERIFY(!chart->candidates().empty() || !chart->bestPairsText().empty());
      // Print opens "Print Alignment Chart" beside the chart, without blocking it, and once.
      print->click();
      print->click();
      QCOMPARE(visibleWindows(QStringLiteral("Print Alignment Chart")), 1);
    }
    QVERIFY(m.env.prompter.entries.isEmpty());
  }

  // Cancelled, New and Open do nothing; New makes an empty list from the template, its window
  // named in the Window menu.
  void newListFromTemplate() {
    Rig rig;
    rig.trigger("mnuNew");
    rig.trigger("mnuOpen");
    QCOMPARE(rig.dialogs, 2);
    QVERIFY(rig.windows().isEmpty());
    QCOMPARE(rig.state().OpenFileCount, qint16(0));
    QDir().mkpath(rig.env.path("lists"));
    rig.state().LastListFolder = rig.env.path("lists/");
    QVERIFY(!rig.commandsEnabled());
    const QString chosen = rig.env.path("lists/galaxies");
    rig.answers << chosen;
    rig.trigger("mnuNew");
    QVERIFY(rig.lastSave);
    QCOMPARE(rig.lastTitle, QStringLiteral("Name new file..."));
    QCOMPARE(rig.lastFolder, rig.env.path("lists/"));
    const QString path = chosen + ".tlf";
    QCOMPARE(ListColumn(path, "Name"), QStringList());
    CurrentList* w = rig.window(path);
    QVERIFY(w);
    QCOMPARE(w->windowTitle(), QStringLiteral("Objects - galaxies"));
    auto* menu = rig.main->findChild<QMenu*>(QStringLiteral("mnuWindow"));
    QMetaObject::invokeMethod(menu, "aboutToShow");
    QStringList texts;
    for (QAction* a : menu->actions()) texts << a->text();
    for (const char* t : {"&Cascade", "&Tile", "&1 Objects - galaxies"})
      QVERIFY2(texts.contains(QLatin1String(t)), t);
    QCOMPARE(w->slot(), 1);
    QCOMPARE(rig.state().LastListFolder, rig.env.path("lists/"));
    QCOMPARE(rig.main->findChild<QLineEdit*>("txtFileName")->text(), path);
    QCOMPARE(rig.main->findChild<QLineEdit*>("txtFileTitle")->text(), QStringLiteral("galaxies"));
    QVERIFY(rig.commandsEnabled());
    QVERIFY(rig.env.prompter.entries.isEmpty());
  }

  // A name whose letters also stand earlier in the path still leaves the dialog in its folder.
  void folderOfAShortName_data() { commandRows(); }
  void folderOfAShortName() {
    QFETCH(QString, command);
    Rig rig;
    const QString path = rig.list(QStringLiteral("t"));
    QVERIFY(rig.env.path("lists/").contains(QLatin1Char('t'), Qt::CaseInsensitive));
    rig.answers << path;
    rig.env.prompter.answer(Prompter::Answer::Yes);  // New asks before it overwrites
    rig.trigger(command);
    QVERIFY(rig.window(path));
    QCOMPARE(rig.state().LastListFolder, rig.env.path("lists/"));
  }

  // New over an existing list asks first, and never overwrites an open one.
  void newListOverAnOldOne_data() {
    QTest::addColumn<bool>("open");
    QTest::addColumn<bool>("yes");
    QTest::newRow("yes") << false << true;
    QTest::newRow("no") << false << false;
    QTest::newRow("already open") << true << true;
  }
  void newListOverAnOldOne() {
    QFETCH(bool, open);
    QFETCH(bool, yes);
    Rig rig;
    const QString path = rig.list("old", 3);
    if (open) rig.open(path);
    rig.env.prompter.answer(yes ? Prompter::Answer::Yes : Prompter::Answer::No);
    rig.answers << path;
    rig.trigger("mnuNew");
    if (open)
      QCOMPARE(rig.said().last(), "Oops: Unable to overwrite - the file\n" + path + "\nis already open");
    else
      QCOMPARE(rig.said(), QStringList("Confirm: This file\n" + path + "\nalready exists.  Overwrite?"));
    QCOMPARE(ListColumn(path, "Name").size(), yes && !open ? 0 : 3);
    QCOMPARE(rig.windows().size(), yes || open ? 1 : 0);
  }

  void openAndAlreadyOpen() {
    Rig rig;
    const QString path = rig.list("tonight");
    rig.main->findChild<QToolButton*>("cmdOpen")->click();
    QCOMPARE(rig.dialogs, 1);
    // A file that is no list document: one box, no window, nothing held.
    rig.env.writeFile("lists/broken.tlf", "not a database at all, not even close to one");
    rig.open(rig.env.path("lists/broken.tlf"));
    QVERIFY(rig.windows().isEmpty());
    QCOMPARE(rig.env.prompter.entries.size(), 1);
    QCOMPARE(rig.state().OpenFileCount, qint16(0));
    QCOMPARE(rig.state().OpenSlotFile[1], QString());
    QVERIFY(!rig.commandsEnabled());
    rig.env.prompter.clear();
    rig.open(path);
    QVERIFY(!rig.lastSave);
    QCOMPARE(rig.lastTitle, QStringLiteral("Open existing list..."));
    QCOMPARE(rig.window(path)->datPrimary()->RecordCount(), 2);
    rig.open(path);
    QCOMPARE(rig.windows().size(), 1);
    QCOMPARE(rig.said(), QStringList("Oops: This file:\n" + path + "\nis already open"));
    // Another spelling of the same file is another document.
    rig.open(rig.env.path("lists/../lists/tonight.tlf"));
    QCOMPARE(rig.windows().size(), 2);
  }

  void nineOpen_data() {
    commandRows();
    QTest::newRow("recent") << "mnuMRU0";
  }
  // Nine lists open refuse a tenth without asking for its name.
  void nineOpen() {
    QFETCH(QString, command);
    Rig rig;
    for (int i = 1; i <= 9; ++i) rig.open(rig.list(QStringLiteral("list%1").arg(i)));
    QCOMPARE(rig.windows().size(), 9);
    const QString tenth = rig.list("tenth");
    rig.state().MRUFiles[0] = FileEntry{"tenth", tenth};
    rig.dialogs = 0;
    rig.answers << tenth;
    rig.trigger(command);
    QCOMPARE(rig.dialogs, 0);
    QCOMPARE(rig.env.prompter.texts(), QStringList{"Sorry, you can only open 9 files!"});
    QCOMPARE(rig.windows().size(), 9);
    // With one closed, the tenth takes its slot.
    rig.answers.clear();
    rig.close(rig.env.path("lists/list3.tlf"));
    rig.open(tenth);
    QCOMPARE(rig.window(tenth)->slot(), 3);
  }

  // Closing a list records it among the recent files; a recent entry opens its list without a
  // dialog, says so when the file is gone (and keeps the entry), and refuses an open list.
  void recentFiles() {
    Rig rig;
    const QString a = rig.list("alpha"), b = rig.list("beta");
    rig.open(a);
    rig.open(b);
    rig.close(a);
    QVERIFY(rig.commandsEnabled());
    QCOMPARE(rig.state().MRUFiles[0].path, a);
    QCOMPARE(rig.action("mnuMRU0")->text(), QStringLiteral("alpha"));
    QVERIFY(rig.action("mnuMRU0")->isVisible());
    QVERIFY(rig.env.readFile("config/TVRNMRU.dat").contains("alpha"));
    rig.close(b);
    QVERIFY(!rig.commandsEnabled());
    QCOMPARE(rig.state().OpenFileCount, qint16(0));
    QCOMPARE(rig.state().MRUFiles[0].title + rig.state().MRUFiles[1].title,
             QStringLiteral("betaalpha"));
    QVERIFY(QFile::remove(b));
    rig.trigger("mnuMRU0");
    QCOMPARE(rig.said(), QStringList("Error: This file\nbeta\nno longer exists or has been moved."));
    QVERIFY(rig.action("mnuMRU0")->isVisible());
    QCOMPARE(rig.state().MRUFiles[0].title, QStringLiteral("beta"));
    rig.dialogs = 0;
    rig.trigger("mnuMRU1");
    QCOMPARE(rig.dialogs, 0);
    QCOMPARE(rig.window(a)->windowTitle(), QStringLiteral("Objects - alpha"));
    QVERIFY(rig.commandsEnabled());
    rig.trigger("mnuMRU1");
    QCOMPARE(rig.said().last(), "Oops: This file:\n" + a + "\nis already open");
    QCOMPARE(rig.windows().size(), 1);
  }

  // Exit (Ctrl+Q) quits and leaves the lists to the end of the process; the close box closes
  // them first, each recorded.
  void exitAndCloseBox_data() {
    QTest::addColumn<bool>("exit");
    QTest::newRow("exit") << true;
    QTest::newRow("close box") << false;
  }
  void exitAndCloseBox() {
    QFETCH(bool, exit);
    Rig rig;
    rig.open(rig.list("alpha"));
    rig.open(rig.list("beta"));
    int quits = 0;
    rig.main->quitApplication = [&] { ++quits; };
    if (exit) {
      QVERIFY(QTest::qWaitForWindowActive(rig.main.get()));
      QTest::keyClick(rig.main.get(), Qt::Key_Q, Qt::ControlModifier);
    } else {
      QVERIFY(rig.main->close());
    }
    QCOMPARE(quits, 1);
    QCOMPARE(rig.state().OpenFileCount, qint16(exit ? 2 : 0));
    const QString first = rig.state().MRUFiles[1].title, last = rig.state().MRUFiles[0].title;
    if (exit) {
      QCOMPARE(last, QString());
      return;
    }
    QCOMPARE(QSet<QString>({first, last}), QSet<QString>({"alpha", "beta"}));
    QVERIFY(rig.env.readFile("config/TVRNMRU.dat").startsWith("\"" + last.toLatin1()));
  }

  void compactWindowOnSmallScreen() {
    Rig rig;
    rig.main->screenHeightTwips = [] { return 9000; };
    const QString path = rig.list("small");
    rig.open(path);
    CurrentList* w = rig.window(path);
    QCOMPARE(w->objectName(), QStringLiteral("CurrentListFixed"));
    w->findChild<QPushButton*>("cmdClose")->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(rig.windows().isEmpty());
    QCOMPARE(rig.state().OpenFileCount, qint16(0));
    QCOMPARE(rig.state().MRUFiles[0].title, QStringLiteral("small"));
  }
};

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
