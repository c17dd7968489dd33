#include <QtTest>

#include <QAction>
#include <QFile>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QToolButton>

#include "catalog/recordset.h"
#include "core/listdocuments.h"
#include "core/mainwindow.h"
#include "core/opendocuments.h"
#include "core/settings.h"
#include "lists/listwindow.h"
#include "support/listdocument.h"
#include "support/testenv.h"

namespace {

// A started main window whose file dialog answers from a queue and counts its calls.
struct Rig {
  TestEnv env;
  std::unique_ptr<TavorineListMain> main;
  QStringList answers;
  int dialogs = 0;
  QString lastTitle, lastFolder;
  bool lastSave = false;

  Rig() {
    ProgramSettings s;
    s.FirstRun = 0;
    env.writeFile("config/TavorineList.ini", SettingsRecord(s, true));
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
  void trigger(const QString& name) { main->findChild<QAction*>(name)->trigger(); }
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
    return main->findChild<QAction*>(QStringLiteral("mnuPrint"))->isEnabled() &&
           main->findChild<QToolButton*>(QStringLiteral("cmdPrint"))->isEnabled() &&
           main->findChild<QAction*>(QStringLiteral("mnuExport"))->isEnabled();
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

}  // namespace

class TestListDocuments : public QObject {
  Q_OBJECT
 private slots:
  void newListFromTemplate() {
    Rig rig;
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
    QCOMPARE(w->slot(), 1);
    QCOMPARE(rig.state().LastListFolder, rig.env.path("lists/"));
    QCOMPARE(rig.main->findChild<QLineEdit*>("txtFileName")->text(), path);
    QCOMPARE(rig.main->findChild<QLineEdit*>("txtFileTitle")->text(), QStringLiteral("galaxies"));
    QVERIFY(rig.commandsEnabled());
    QVERIFY(rig.env.prompter.entries.isEmpty());
  }

  void newAndOpenCancelled() {
    Rig rig;
    rig.trigger("mnuNew");
    rig.trigger("mnuOpen");
    QCOMPARE(rig.dialogs, 2);
    QVERIFY(rig.windows().isEmpty());
    QVERIFY(rig.env.prompter.entries.isEmpty());
    QCOMPARE(rig.state().OpenFileCount, qint16(0));
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

  void newListOverwrite_data() {
    QTest::addColumn<bool>("yes");
    QTest::newRow("yes") << true;
    QTest::newRow("no") << false;
  }
  void newListOverwrite() {
    QFETCH(bool, yes);
    Rig rig;
    const QString path = rig.list("old", 3);
    rig.env.prompter.answer(yes ? Prompter::Answer::Yes : Prompter::Answer::No);
    rig.answers << path;
    rig.trigger("mnuNew");
    QCOMPARE(rig.said(), QStringList("Confirm: This file\n" + path + "\nalready exists.  Overwrite?"));
    QCOMPARE(ListColumn(path, "Name").size(), yes ? 0 : 3);
    QCOMPARE(rig.windows().size(), yes ? 1 : 0);
  }

  void newListOverAnOpenList() {
    Rig rig;
    const QString path = rig.list("tonight", 3);
    rig.open(path);
    rig.env.prompter.answer(Prompter::Answer::Yes);
    rig.answers << path;
    rig.trigger("mnuNew");
    QCOMPARE(rig.said().last(),
             "Oops: Unable to overwrite - the file\n" + path + "\nis already open");
    QCOMPARE(ListColumn(path, "Name").size(), 3);
    QCOMPARE(rig.windows().size(), 1);
  }

  void openAndAlreadyOpen() {
    Rig rig;
    const QString path = rig.list("tonight");
    rig.main->findChild<QToolButton*>("cmdOpen")->click();
    QCOMPARE(rig.dialogs, 1);
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
  }

  void slotOfAClosedWindowIsReused() {
    Rig rig;
    QStringList paths;
    for (int i = 1; i <= 5; ++i) {
      paths << rig.list(QStringLiteral("list%1").arg(i));
      rig.open(paths.last());
    }
    rig.close(paths[2]);
    const QString sixth = rig.list("list6");
    rig.open(sixth);
    QCOMPARE(rig.window(sixth)->slot(), 3);
  }

  void recentEntries() {
    Rig rig;
    const QString kept = rig.list("kept");
    rig.state().MRUFiles[0] = FileEntry{"gone", rig.env.path("lists/gone.tlf")};
    rig.state().MRUFiles[1] = FileEntry{"kept", kept};
    rig.state().MRUShown = {true, true, false, false, false};
    rig.main->refreshRecentMenu();
    rig.trigger("mnuMRU0");
    QCOMPARE(rig.said(), QStringList("Error: This file\ngone\nno longer exists or has been moved."));
    QVERIFY(rig.main->findChild<QAction*>("mnuMRU0")->isVisible());
    QCOMPARE(rig.state().MRUFiles[0].title, QStringLiteral("gone"));
    rig.trigger("mnuMRU1");
    QCOMPARE(rig.dialogs, 0);
    QCOMPARE(rig.window(kept)->windowTitle(), QStringLiteral("Objects - kept"));
    rig.trigger("mnuMRU1");
    QCOMPARE(rig.said().last(), "Oops: This file:\n" + kept + "\nis already open");
    QCOMPARE(rig.windows().size(), 1);
  }

  void closingRecordsRecentFiles() {
    Rig rig;
    const QString a = rig.list("alpha"), b = rig.list("beta");
    rig.open(a);
    rig.open(b);
    rig.close(a);
    QVERIFY(rig.commandsEnabled());
    QCOMPARE(rig.state().MRUFiles[0].path, a);
    QCOMPARE(rig.main->findChild<QAction*>("mnuMRU0")->text(), QStringLiteral("alpha"));
    QVERIFY(rig.main->findChild<QAction*>("mnuMRU0")->isVisible());
    QVERIFY(rig.env.readFile("config/TVRNMRU.dat").contains("alpha"));
    rig.close(b);
    QVERIFY(!rig.commandsEnabled());
    QCOMPARE(rig.state().OpenFileCount, qint16(0));
    QCOMPARE(rig.state().MRUFiles[0].title + rig.state().MRUFiles[1].title,
             QStringLiteral("betaalpha"));
    rig.open(a);
    QVERIFY(rig.commandsEnabled());
  }

  // The close box closes the lists first, each recorded; Exit leaves them.
  void closeBoxRecordsExitDoesNot_data() {
    QTest::addColumn<bool>("exit");
    QTest::newRow("exit") << true;
    QTest::newRow("close box") << false;
  }
  void closeBoxRecordsExitDoesNot() {
    QFETCH(bool, exit);
    Rig rig;
    rig.open(rig.list("alpha"));
    rig.open(rig.list("beta"));
    bool quit = false;
    rig.main->quitApplication = [&] { quit = true; };
    if (exit) rig.trigger("mnuExit");
    else QVERIFY(rig.main->close());
    QVERIFY(quit);
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

  void unreadableDocument() {
    Rig rig;
    rig.env.writeFile("lists/broken.tlf", "not a database at all, not even close to one");
    rig.open(rig.env.path("lists/broken.tlf"));
    QVERIFY(rig.windows().isEmpty());
    QCOMPARE(rig.env.prompter.entries.size(), 1);
    QCOMPARE(rig.state().OpenFileCount, qint16(0));
    QCOMPARE(rig.state().OpenSlotFile[1], QString());
    QVERIFY(!rig.commandsEnabled());
  }
};

QTEST_MAIN(TestListDocuments)
#include "tst_listdocuments.moc"
