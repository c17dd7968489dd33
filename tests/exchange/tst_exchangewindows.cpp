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

namespace {

// The main window with one list window, of either form, on the list "Deep".
struct Rig {
  TestEnv env;
  std::unique_ptr<TavorineListMain> main;
  QString path = env.path(QStringLiteral("lists/Deep.tlf"));

  explicit Rig(bool compact) {
    ProgramSettings s;
    s.FirstRun = 0;
    s.DataDir = env.path(QStringLiteral("lists/"));
    env.writeFile(QStringLiteral("config/TavorineList.ini"), SettingsRecord(s, true));
    QDir().mkpath(env.path(QStringLiteral("lists")));
    MakeExchangeList(*env.state, path, AwkwardObjects());
    main = std::make_unique<TavorineListMain>(*env.state);
    main->start();
    main->chooseListFile = [this](bool, const QString&, const QString&) { return path; };
    main->screenHeightTwips = [compact] { return compact ? 8000 : 15000; };
    main->findChild<QAction*>(QStringLiteral("mnuOpen"))->trigger();
  }
  CurrentList* list() const {
    return qobject_cast<CurrentList*>(main->mdiArea()->currentSubWindow()->widget());
  }
};

// Presses OK (or Import) in each modal window as it comes up and notes the windows' names;
// a tour's worker is noted with the text it shows.
class ModalClicker : public QObject {
 public:
  ModalClicker() {
    timer_.setInterval(5);
    connect(&timer_, &QTimer::timeout, this, [this] { poll(); });
    timer_.start();
  }
  QStringList seen;

 private:
  void poll() {
    QWidget* w = QApplication::activeModalWidget();
    if (!w || !w->isVisible()) return;
    for (const char* name : {"OKButton", "cmdOK"}) {
      auto* b = w->findChild<QPushButton*>(QString::fromLatin1(name));
      if (!b || !b->isVisible() || b == pending_) continue;
      QString note = w->objectName();
      if (auto* text = w->findChild<QPlainTextEdit*>(QStringLiteral("Text1"));
          text && note.endsWith(QLatin1String("Wait")))
        note += QLatin1Char(':') + text->toPlainText();
      seen << note;
      // The click runs the window's own loops, so it must not run inside this timer's slot.
      pending_ = b;
      QTimer::singleShot(0, b, &QPushButton::click);
      return;
    }
  }
  QTimer timer_;
  QPointer<QPushButton> pending_;
};

}  // namespace

class TestExchangeWindows : public QObject {
  Q_OBJECT
 private slots:
  void menuEntries_data() {
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QByteArray>("importFile");     // what the import's file dialog picks
    QTest::addColumn<QString>("windowsDrive");      // a folder made as the Wine drive C:
    QTest::addColumn<QStringList>("windows");       // the modal windows, in order
    QTest::addColumn<QStringList>("messages");
    QTest::addColumn<QString>("outFile");           // written, relative to the temporary folder
    QTest::addColumn<QByteArray>("outStart");
    QTest::addColumn<int>("listRows");

    auto row = [](const QByteArray& tag, const char* entry, const QByteArray& importFile,
                  const QStringList& windows, const QStringList& messages,
                  const QString& outFile = {}, const QByteArray& outStart = {}, int listRows = 8,
                  const QString& windowsDrive = {}) {
      QTest::newRow(tag) << QString::fromLatin1(entry) << importFile << windowsDrive << windows
                         << messages << outFile << outStart << listRows;
    };
    const QString beside = QStringLiteral(
        "hcTourWait:The file 'Deep.hct' has been placed in the folder '%1'.  You must move the hct "
        "file to the Tour directory then you can select it as a Tour in NexRemote/hcAnywhere.  "
        "Refer to the instuctions of this program and NexRemote/hcAnywhere for further details.");
    const QByteArray csvRow = "\"M\",\"1\",\"\",\"\",\"\",\"\",1,2,\"+\",3,4,\"\"\r\n";
    const QString done = QStringLiteral("Import to current list is complete.");
    for (const QByteArray form : {"", "compact "}) {
      row(form + "tour export", "mnuExporthcTour", {}, {"hcTourExport", beside}, {},
          "lists/Deep.hct", "00:42:44.4#+41:16:00#NGC 224#");
      row(form + "palm export", "mnuExportPlanetarium", {}, {"PalmExport", "ExportComplete"}, {},
          "lists/Deep.txt", "\"Deep.txt\r\nNGC 224,");
      row(form + "csv export", "mnuExportCSV", {}, {"CSVExport", "ExportComplete"}, {},
          "lists/Deep.csv", "\"Category\",");
      row(form + "brillet export", "mnuExportBRLT", {}, {"BRLTExport", "ExportComplete"}, {},
          "lists/Deep.csv", "\"BRLT\",\"8\",");
      row(form + "csv import", "mnuImportCurrent", csvRow, {"frmImportCurrent"}, {done}, {}, {}, 9);
      row(form + "tour import", "mnuImporthcTour",
          "00:42:44.4#+41:16:00#NGC 224#d####34####4#######\r\n", {}, {done}, {}, {}, 9);
    }
    row("tour into NexRemote's folder", "mnuExporthcTour", {},
        {"hcTourExport",
         "hcTourWait:The file 'Deep.hct' has been placed in the NexRemote Tour folder.  You can "
         "now select it as a Tour in NexRemote.  Refer to the instuctions of NexRemote for "
         "further details."},
        {}, "c/Program Files (x86)/Celestron/NexRemote/Tours/Deep.hct", "00:42:44.4#", 8,
        "Program Files (x86)/Celestron/NexRemote/Tours");
    row("export that cannot be written", "mnuExportCSV", {}, {"CSVExport"},
        {"Path/File access error: %1Deep.csv (Filename refers to a directory) - 75"});
    row("malformed csv leaves the list alone", "mnuImportCurrent", csvRow + "\"extra\"\r\n",
        {"frmImportCurrent"}, {IncorrectFileFormatText()});
    row("cancelled file dialog", "mnuImportCurrent", {}, {}, {});
    row("csv into the user's objects", "mnuImportUser", csvRow + csvRow, {"frmImportUserList"},
        {"Import to User Supplied List is complete."});
  }
  void menuEntries() {
    QFETCH(QString, entry);
    QFETCH(QByteArray, importFile);
    QFETCH(QString, windowsDrive);
    QFETCH(QStringList, windows);
    QFETCH(QStringList, messages);
    QFETCH(QString, outFile);
    QFETCH(QByteArray, outStart);
    QFETCH(int, listRows);
    const bool compact = QByteArray(QTest::currentDataTag()).startsWith("compact");
    Rig rig(compact);
    QCOMPARE(rig.list()->objectName(), compact ? "CurrentListFixed" : "CurrentList");
    if (!windowsDrive.isEmpty()) {
      rig.env.state->windowsDriveC = rig.env.path(QStringLiteral("c"));
      QDir().mkpath(rig.env.path(QStringLiteral("c/") + windowsDrive));
    }
    if (messages.value(0).startsWith(QLatin1String("Path/File")))
      QDir().mkpath(rig.env.path(QStringLiteral("lists/Deep.csv")));
    QString picked;
    if (!importFile.isEmpty()) {
      rig.env.writeFile(QStringLiteral("import.txt"), importFile);
      picked = rig.env.path(QStringLiteral("import.txt"));
    }
    rig.main->exchange().chooseFile = [&](const QString&, const QString&, const QString&) {
      return picked;
    };
    rig.env.prompter.clear();
    ModalClicker clicker;
    rig.main->findChild<QAction*>(entry)->trigger();
    QCOMPARE(clicker.seen, QStringList(windows).replaceInStrings(
                               QStringLiteral("%1"), rig.env.path(QStringLiteral("lists/"))));
    QCOMPARE(rig.env.prompter.texts(), QStringList(messages).replaceInStrings(
                                            QStringLiteral("%1"), rig.env.path(QStringLiteral("lists/"))));
    if (!outFile.isEmpty()) QVERIFY(rig.env.readFile(outFile).startsWith(outStart));
    QCOMPARE(rig.list()->datPrimary()->RecordCount(), listRows);
    if (entry == QLatin1String("mnuImportUser"))
      QCOMPARE(TableRows(rig.env.state->userListPath(), QStringLiteral("UserObjects")).size(), 2);
    QVERIFY(rig.list()->timerAltitude()->isActive());
    QVERIFY(!QApplication::overrideCursor());
  }
};

QTEST_MAIN(TestExchangeWindows)
#include "tst_exchangewindows.moc"
