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
  void menuEntries_data();
  void menuEntries();
};

void TestExchangeWindows::menuEntries_data() {
  QTest::addColumn<QString>("entry");
  QTest::addColumn<QByteArray>("importFile");     // what the import's file dialog picks
  QTest::addColumn<QString>("windowsDrive");      // a folder made as the Wine drive C:
  QTest::addColumn<QStringList>("windows");       // the modal windows, in order
  QTest::addColumn<QStringList>("messages");
  QTest::addColumn<QString>("outFile");           // written, relative to the temporary folder
  QTest::addColumn<QByteArray>("outStart");
  QTest::addColumn<int>("listRows");

  const QString beside = QStringLiteral(
      "hcTourWait:The file 'Deep.hct' has been placed in the folder '%1'.  You must move the hct "
      "file to the Tour directory then you can select it as a Tour in NexRemote/hcAnywhere.  "
      "Refer to the instuctions of this program and NexRemote/hcAnywhere for further details.");
  const QByteArray csvRow = "\"M\",\"1\",\"\",\"\",\"\",\"\",1,2,\"+\",3,4,\"\"\r\n";
  const QString done = QStringLiteral("Import to current list is complete.");
  for (const bool compact : {false, true}) {
    const QByteArray form = compact ? "compact " : "";
    QTest::newRow(form + "tour export")
        << "mnuExporthcTour" << QByteArray() << QString()
        << QStringList{"hcTourExport", beside} << QStringList{} << "lists/Deep.hct"
        << QByteArray("00:42:44.4#+41:16:00#NGC 224#") << 8;
    QTest::newRow(form + "palm export")
        << "mnuExportPlanetarium" << QByteArray() << QString()
        << QStringList{"PalmExport", "ExportComplete"} << QStringList{} << "lists/Deep.txt"
        << QByteArray("\"Deep.txt\r\nNGC 224,") << 8;
    QTest::newRow(form + "csv export")
        << "mnuExportCSV" << QByteArray() << QString()
        << QStringList{"CSVExport", "ExportComplete"} << QStringList{} << "lists/Deep.csv"
        << QByteArray("\"Category\",") << 8;
    QTest::newRow(form + "brillet export")
        << "mnuExportBRLT" << QByteArray() << QString()
        << QStringList{"BRLTExport", "ExportComplete"} << QStringList{} << "lists/Deep.csv"
        << QByteArray("\"BRLT\",\"8\",") << 8;
    QTest::newRow(form + "csv import")
        << "mnuImportCurrent" << csvRow << QString() << QStringList{"frmImportCurrent"}
        << QStringList{done} << QString() << QByteArray() << 9;
    QTest::newRow(form + "tour import")
        << "mnuImporthcTour" << QByteArray("00:42:44.4#+41:16:00#NGC 224#d####34####4#######\r\n")
        << QString() << QStringList{} << QStringList{done} << QString() << QByteArray() << 9;
  }
  QTest::newRow("tour into NexRemote's folder")
      << "mnuExporthcTour" << QByteArray() << "Program Files (x86)/Celestron/NexRemote/Tours"
      << QStringList{"hcTourExport",
                     "hcTourWait:The file 'Deep.hct' has been placed in the NexRemote Tour folder.  "
                     "You can now select it as a Tour in NexRemote.  Refer to the instuctions of "
                     "NexRemote for further details."}
      << QStringList{} << "c/Program Files (x86)/Celestron/NexRemote/Tours/Deep.hct"
      << QByteArray("00:42:44.4#") << 8;
  QTest::newRow("export that cannot be written")
      << "mnuExportCSV" << QByteArray() << QString() << QStringList{"CSVExport"}
      << QStringList{"Path/File access error: %1Deep.csv (Filename refers to a directory) - 75"}
      << QString() << QByteArray() << 8;
  QTest::newRow("malformed csv leaves the list alone")
      << "mnuImportCurrent" << csvRow + "\"extra\"\r\n" << QString()
      << QStringList{"frmImportCurrent"} << QStringList{IncorrectFileFormatText()} << QString()
      << QByteArray() << 8;
  QTest::newRow("cancelled file dialog") << "mnuImportCurrent" << QByteArray() << QString()
                                         << QStringList{} << QStringList{} << QString()
                                         << QByteArray() << 8;
  QTest::newRow("csv into the user's objects")
      << "mnuImportUser" << csvRow + csvRow << QString() << QStringList{"frmImportUserList"}
      << QStringList{"Import to User Supplied List is complete."} << QString() << QByteArray()
      << 8;
}

void TestExchangeWindows::menuEntries() {
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

QTEST_MAIN(TestExchangeWindows)
#include "tst_exchangewindows.moc"
