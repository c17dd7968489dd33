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
    connect(&timer_, &QTimer::timeout, this, [this] { poll(); });
    timer_.start(5);
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
      if (note.endsWith(QLatin1String("Wait")))
        note += QLatin1Char(':') + w->findChild<QPlainTextEdit*>()->toPlainText();
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
  // Each entry on the list's data: the windows it walks through, what it says, the file it
  // writes (its first bytes tell the format) and the list's rows after it. A tag starting with
  // "compact" uses the small list window; %1 is the lists folder.
  void menuEntries_data() {
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QByteArray>("importFile");  // what the import's file dialog picks
    QTest::addColumn<QStringList>("windows");
    QTest::addColumn<QStringList>("messages");
    QTest::addColumn<QString>("outFile");
    QTest::addColumn<QByteArray>("outStart");
    QTest::addColumn<int>("listRows");
    auto row = [](const char* tag, const char* entry, const QByteArray& importFile,
                  const QStringList& windows, const QStringList& messages,
                  const QString& outFile = {}, const QByteArray& outStart = {}, int rows = 8) {
      QTest::newRow(tag) << QString::fromLatin1(entry) << importFile << windows << messages
                         << outFile << outStart << rows;
    };
    const QString beside = QStringLiteral(
        "hcTourWait:The file 'Deep.hct' has been placed in the folder '%1'.  You must move the hct "
        "file to the Tour directory then you can select it as a Tour in NexRemote/hcAnywhere.  "
        "Refer to the instuctions of this program and NexRemote/hcAnywhere for further details.");
    const QByteArray csvRow = "\"M\",\"1\",\"\",\"\",\"\",\"\",1,2,\"+\",3,4,\"\"\r\n";
    const QString done = QStringLiteral("Import to current list is complete.");
    for (const char* tag : {"tour export", "compact tour export"})
      row(tag, "mnuExporthcTour", {}, {"hcTourExport", beside}, {}, "lists/Deep.hct", "00:42:44");
    row("palm export", "mnuExportPlanetarium", {}, {"PalmExport", "ExportComplete"}, {},
        "lists/Deep.txt", "\"Deep.txt\r\n");
    row("csv export", "mnuExportCSV", {}, {"CSVExport", "ExportComplete"}, {}, "lists/Deep.csv",
        "\"Category\",");
    row("brillet export", "mnuExportBRLT", {}, {"BRLTExport", "ExportComplete"}, {},
        "lists/Deep.csv", "\"BRLT\",");
    for (const char* tag : {"csv import", "compact csv import"})
      row(tag, "mnuImportCurrent", csvRow, {"frmImportCurrent"}, {done}, {}, {}, 9);
    row("tour import", "mnuImporthcTour", "00:42:44.4#+41:16:00#NGC 224#d####34####4#######\r\n",
        {}, {done}, {}, {}, 9);
    row("tour into NexRemote's folder", "mnuExporthcTour", {},
        {"hcTourExport",
         "hcTourWait:The file 'Deep.hct' has been placed in the NexRemote Tour folder.  You can "
         "now select it as a Tour in NexRemote.  Refer to the instuctions of NexRemote for "
         "further details."},
        {}, "c/Program Files (x86)/Celestron/NexRemote/Tours/Deep.hct", "00:42:44");
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
    QFETCH(QStringList, windows);
    QFETCH(QStringList, messages);
    QFETCH(QString, outFile);
    QFETCH(QByteArray, outStart);
    const QString tag = QString::fromLatin1(QTest::currentDataTag());
    const bool compact = tag.startsWith(QLatin1String("compact"));
    Rig rig(compact);
    QCOMPARE(rig.list()->objectName(), compact ? "CurrentListFixed" : "CurrentList");
    if (outFile.startsWith(QLatin1String("c/"))) {
      rig.env.state->windowsDriveC = rig.env.path(QStringLiteral("c"));
      QDir().mkpath(rig.env.path(outFile.section(QLatin1Char('/'), 0, -2)));
    }
    if (tag.contains(QLatin1String("cannot be written")))
      QDir().mkpath(rig.env.path(QStringLiteral("lists/Deep.csv")));
    rig.env.writeFile(QStringLiteral("import.txt"), importFile);
    const QString picked = importFile.isEmpty() ? QString() : rig.env.path(QStringLiteral("import.txt"));
    rig.main->exchange().chooseFile = [&](const QString&, const QString&, const QString&) {
      return picked;
    };
    rig.env.prompter.clear();
    ModalClicker clicker;
    rig.main->findChild<QAction*>(entry)->trigger();
    const QString lists = rig.env.path(QStringLiteral("lists/"));
    QCOMPARE(clicker.seen, windows.replaceInStrings(QStringLiteral("%1"), lists));
    QCOMPARE(rig.env.prompter.texts(), messages.replaceInStrings(QStringLiteral("%1"), lists));
    if (!outFile.isEmpty()) QVERIFY(rig.env.readFile(outFile).startsWith(outStart));
    QTEST(rig.list()->datPrimary()->RecordCount(), "listRows");
    if (entry == QLatin1String("mnuImportUser")) {
      const auto user = Database::open(rig.env.state->userListPath(), Database::Mode::ReadOnly);
      QCOMPARE(Recordset(user, QStringLiteral("UserObjects")).RecordCount(), 2);
    }
    QVERIFY(rig.list()->timerAltitude()->isActive());
    QVERIFY(!QApplication::overrideCursor());
  }
};

QTEST_MAIN(TestExchangeWindows)
#include "tst_exchangewindows.moc"
