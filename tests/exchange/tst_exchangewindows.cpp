#include <QtTest>

#include <QAction>
#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QPushButton>

#include "catalog/recordset.h"
#include "core/mainwindow.h"
#include "core/settings.h"
#include "exchange/exchangecommands.h"
#include "exchangefixture.h"
#include "lists/listwindow.h"
#include "support/testenv.h"

class TestExchangeWindows : public QObject {
  Q_OBJECT
 private slots:
  // Each Export and Import entry in turn on a list window of the list "Deep": the windows it
  // walks through, what it says, and the file it writes (its first bytes tell the format).
  void menuEntries() {
    TestEnv env;
    const QString lists = env.path(QStringLiteral("lists/"));
    ProgramSettings s;
    s.FirstRun = 0;
    s.DataDir = lists;
    env.writeFile(QStringLiteral("config/TavorineList.ini"), SettingsRecord(s, true));
    QDir().mkpath(lists);
    MakeExchangeList(*env.state, lists + QStringLiteral("Deep.tlf"), AwkwardObjects());
    TavorineListMain main(*env.state);
    main.start();
    main.chooseListFile = [&](bool, const QString&, const QString&) {
      return lists + QStringLiteral("Deep.tlf");
    };
    main.findChild<QAction*>(QStringLiteral("mnuOpen"))->trigger();
    auto* list = qobject_cast<CurrentList*>(main.mdiArea()->currentSubWindow()->widget());
    // Triggers a menu entry, the import's file dialog picking a file of these bytes (none when
    // empty), and presses OK (or Import) in each modal window as it comes up. Returns the
    // windows' names (a tour's worker with the text it shows), then the messages, then what the
    // entry failed to put back.
    const auto run = [&](const char* entry, const QByteArray& importFile = {}) {
      env.writeFile(QStringLiteral("import.txt"), importFile);
      const QString picked =
          importFile.isEmpty() ? QString() : env.path(QStringLiteral("import.txt"));
      main.exchange().chooseFile = [&](const QString&, const QString&, const QString&) {
        return picked;
      };
      env.prompter.clear();
      QStringList seen;
      QPointer<QPushButton> pending;
      QTimer clicker;
      QObject::connect(&clicker, &QTimer::timeout, [&] {
        QWidget* w = QApplication::activeModalWidget();
        if (!w || !w->isVisible()) return;
        auto* b = w->findChild<QPushButton*>(QStringLiteral("OKButton"));
        if (!b) b = w->findChild<QPushButton*>(QStringLiteral("cmdOK"));
        if (!b || !b->isVisible() || b == pending) return;
        QString note = w->objectName();
        if (note.endsWith(QLatin1String("Wait")))
          note += QLatin1Char(':') + w->findChild<QPlainTextEdit*>()->toPlainText();
        seen << note;
        // The click runs the window's own loops, so it must not run inside this timer's slot.
        pending = b;
        QTimer::singleShot(0, b, &QPushButton::click);
      });
      clicker.start(5);
      main.findChild<QAction*>(QLatin1String(entry))->trigger();
      seen += env.prompter.texts();
      if (!list->timerAltitude()->isActive()) seen << QStringLiteral("altitude timer stopped");
      if (QApplication::overrideCursor()) seen << QStringLiteral("busy pointer left");
      return seen;
    };
    const QString beside = QStringLiteral(
        "hcTourWait:The file 'Deep.hct' has been placed in the folder '%1'.  You must move the hct "
        "file to the Tour directory then you can select it as a Tour in NexRemote/hcAnywhere.  "
        "Refer to the instuctions of this program and NexRemote/hcAnywhere for further details.");
    QCOMPARE(run("mnuExporthcTour"), (QStringList{"hcTourExport", beside.arg(lists)}));
    QVERIFY(env.readFile(QStringLiteral("lists/Deep.hct")).startsWith("00:42:44"));
    QCOMPARE(run("mnuExportPlanetarium"), (QStringList{"PalmExport", "ExportComplete"}));
    QVERIFY(env.readFile(QStringLiteral("lists/Deep.txt")).startsWith("\"Deep.txt\r\n"));
    QCOMPARE(run("mnuExportCSV"), (QStringList{"CSVExport", "ExportComplete"}));
    QVERIFY(env.readFile(QStringLiteral("lists/Deep.csv")).startsWith("\"Category\","));
    QCOMPARE(run("mnuExportBRLT"), (QStringList{"BRLTExport", "ExportComplete"}));
    QVERIFY(env.readFile(QStringLiteral("lists/Deep.csv")).startsWith("\"BRLT\","));

    const QByteArray csvRow = "\"M\",\"1\",\"\",\"\",\"\",\"\",1,2,\"+\",3,4,\"\"\r\n";
    const QString done = QStringLiteral("Import to current list is complete.");
    QCOMPARE(run("mnuImportCurrent", csvRow), (QStringList{"frmImportCurrent", done}));
    QCOMPARE(run("mnuImporthcTour", "00:42:44.4#+41:16:00#NGC 224#d####34####4#######\r\n"),
             QStringList{done});
    QCOMPARE(run("mnuImportCurrent", csvRow + "\"extra\"\r\n"),
             (QStringList{"frmImportCurrent", IncorrectFileFormatText()}));
    QCOMPARE(run("mnuImportCurrent"), QStringList());  // the file dialog cancelled
    QCOMPARE(list->datPrimary()->RecordCount(), 9);
    QCOMPARE(run("mnuImportUser", csvRow + csvRow),
             (QStringList{"frmImportUserList", "Import to User Supplied List is complete."}));
    const auto user = Database::open(env.state->userListPath(), Database::Mode::ReadOnly);
    QCOMPARE(Recordset(user, QStringLiteral("UserObjects")).RecordCount(), 2);

    QFile::remove(lists + QStringLiteral("Deep.csv"));
    QDir().mkpath(lists + QStringLiteral("Deep.csv"));
    QCOMPARE(run("mnuExportCSV"),
             (QStringList{"CSVExport", QStringLiteral("Path/File access error: %1Deep.csv "
                                                      "(Filename refers to a directory) - 75")
                                           .arg(lists)}));
    const QString tours = QStringLiteral("c/Program Files (x86)/Celestron/NexRemote/Tours/");
    env.state->windowsDriveC = env.path(QStringLiteral("c"));
    QDir().mkpath(env.path(tours));
    QCOMPARE(run("mnuExporthcTour"),
             (QStringList{"hcTourExport",
                          "hcTourWait:The file 'Deep.hct' has been placed in the NexRemote Tour "
                          "folder.  You can now select it as a Tour in NexRemote.  Refer to the "
                          "instuctions of NexRemote for further details."}));
    QVERIFY(env.readFile(tours + QStringLiteral("Deep.hct")).startsWith("00:42:44"));
  }
};

QTEST_MAIN(TestExchangeWindows)
#include "tst_exchangewindows.moc"
