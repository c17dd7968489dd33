#include <QtTest>

#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QStyle>
#include <QTextBrowser>
#include <QTextDocument>
#include <QToolButton>

#include "catalog/catalogbrowser.h"
#include "catalog/recordset.h"
#include "charts/alignstars.h"
#include "charts/hhc.h"
#include "core/mainwindow.h"
#include "core/redscreen.h"
#include "core/settings.h"
#include "core/setupdialog.h"
#include "core/windowfit.h"
#include "lists/listwindow.h"
#include "support/listdocument.h"
#include "support/testenv.h"

namespace {

QMdiSubWindow* frame(QWidget* list) { return qobject_cast<QMdiSubWindow*>(list->parentWidget()); }

// A started main window over settings that exist (so start-up does not open Setup), whose
// file dialog answers from a queue and counts its calls.
struct Rig {
  TestEnv env;
  std::unique_ptr<TavorineListMain> main;
  QStringList answers;
  int dialogs = 0;
  QString lastDialog;  // "save|title|folder" or "open|title|folder"
  int quits = 0;

  explicit Rig(const QByteArray& recent = {}) {
    ProgramSettings s;
    s.FirstRun = 0;
    s.DataDir = env.path("lists/");
    env.writeFile("config/TavorineList.ini", SettingsRecord(s, true));
    if (!recent.isEmpty()) env.writeFile("config/TVRNMRU.dat", recent);
    QDir().mkpath(env.path(QStringLiteral("lists")));
    main = std::make_unique<TavorineListMain>(*env.state);
    main->quitApplication = [this] { ++quits; };
    main->screenHeightTwips = [] { return 15000; };
    main->chooseListFile = [this](bool save, const QString& title, const QString& folder) {
      ++dialogs;
      lastDialog = QStringList{save ? "save" : "open", title, folder}.join('|');
      return answers.isEmpty() ? QString() : answers.takeFirst();
    };
    main->start();
  }
  // A list document in lists/ with this many rows.
  QString list(const QString& name, int rows = 2) {
    const QString p = env.path(QStringLiteral("lists/") + name + QStringLiteral(".tlf"));
    std::vector<ListRow> content;
    for (int i = 0; i < rows; ++i)
      content.push_back(
          NamedRow(QStringLiteral("Object %1").arg(i + 1), SkyPosition::of(i, 0, "+", 10, 0)));
    MakeListDocument(*env.state, p, content);
    return p;
  }
  QAction* action(const QString& name) const { return main->findChild<QAction*>(name); }
  QToolButton* button(const QString& name) const { return main->findChild<QToolButton*>(name); }
  void trigger(const QString& name) { action(name)->trigger(); }
  void open(const QString& path, const QString& command = "mnuOpen") {
    answers << path;
    trigger(command);
  }
  QList<CurrentList*> windows() const { return main->findChildren<CurrentList*>(); }
  CurrentList* window(const QString& path) const {
    for (CurrentList* w : windows())
      if (w->documentPath() == path) return w;
    return nullptr;
  }
  void close(const QString& path) {
    frame(window(path))->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  bool commandsEnabled() const {
    return action("mnuPrint")->isEnabled() && button("cmdPrint")->isEnabled() &&
           action("mnuExport")->isEnabled();
  }
};

// The boxes shown, each as "title: text".
QStringList said(const TestEnv& env) {
  QStringList out;
  for (const auto& e : env.prompter.entries) out << e.title + QStringLiteral(": ") + e.text;
  return out;
}

// The largest green or blue of any pixel.
int mostGreenOrBlue(const QImage& image) {
  int most = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      most = qMax(most, qMax(image.pixelColor(x, y).green(), image.pixelColor(x, y).blue()));
  return most;
}

int visibleWindows(const QString& title) {
  int n = 0;
  for (QWidget* top : QApplication::topLevelWidgets())
    n += top->windowTitle() == title && top->isVisible();
  return n;
}

template <typename T>
T* child(QWidget& w, const char* name) {
  T* c = w.findChild<T*>(QLatin1String(name));
  if (!c) qFatal("no control %s", name);
  return c;
}

void click(QWidget& w, const char* button) { child<QAbstractButton>(w, button)->click(); }

}  // namespace

class TestMainWindow : public QObject {
  Q_OBJECT
 private slots:
  // One walk through the main window: start-up, the chart and help windows (each opens once,
  // the help headings follow Red Screen) and Red Screen from the toolbar. While on, the
  // workspace is black and the palette red, our style sheet stays with tip colours added,
  // dialogs are our own, the toolbar's buttons (not the chart's) lose their tips and take a dark
  // red face, and no picture, title bar (opened before or while on) or maximised list's buttons
  // show more than a trace of green or blue. After, once the lists are done with the title bars
  // they noted while the styles changed, every tip, style, picture and bar is back.
  void mainWindowWalk() {
    const QString startSheet = QStringLiteral("QLabel#lblNote { color: blue; }");
    qApp->setStyleSheet(startSheet);
    Rig m("\"Tonight\",\"/l/a.tlf\"\r\n\"Globulars\",\"/l/b.tlf\"\r\n");
    for (const char* name : {"mnuExport", "mnuImportCurrent", "mnuImporthcTour", "mnuPrint"})
      QVERIFY2(!m.action(name)->isEnabled(), name);
    QVERIFY(!m.button("cmdPrint")->isEnabled() && !m.action("mnuExportHC")->isVisible());
    m.trigger("mnuExportHC");
    QCOMPARE(m.env.prompter.texts(), QStringList{QStringLiteral("For future developments.")});
    QCOMPARE(m.action("mnuMRU1")->text(), QStringLiteral("Globulars"));
    QVERIFY(m.action("mnuMRU1")->isVisible() && !m.action("mnuMRU2")->isVisible());
    auto* sign = m.main->findChild<QPushButton*>(QStringLiteral("cmdDecSign"));
    sign->click();
    QCOMPARE(m.main->findChild<QLineEdit*>("txtGotoDecSign")->text() + sign->text(), "--");

    QAction* menu = m.action("mnuRedScreen");
    m.trigger("mnuHHC");
    m.button("cmdHHC")->click();
    QCOMPARE(m.main->findChildren<HHC*>().size(), 1);
    HHC* hhc = m.main->findChild<HHC*>();
    QVERIFY(!hhc->firstActivatePending());
    QTest::keyClick(hhc->browser()->currentSearchBox(), Qt::Key_F1);
    QTest::keyClick(hhc->browser()->currentSearchBox(), Qt::Key_F1);
    QCOMPARE(visibleWindows(QStringLiteral("Tavorine Online Help")), 1);
    auto* help = m.main->findChild<QWidget*>(QStringLiteral("HelpWindow"));
    QVERIFY(QTest::qWaitForWindowActive(help));
    auto* page = help->findChild<QTextBrowser*>(QStringLiteral("txtHelp"));
    const auto headingColour = [&] {
      const QTextCursor at = page->document()->find(QStringLiteral("Tavorine Help"));
      return at.charFormat().foreground().color();
    };
    const QColor dayHeading = headingColour();
    QTest::keyClick(page, Qt::Key_R, Qt::ControlModifier);
    QVERIFY(menu->isChecked());
    QCOMPARE(headingColour(), QColor(255, 0, 0));
    menu->trigger();
    QCOMPARE(headingColour(), dayHeading);
    QTest::keyClick(help, Qt::Key_Escape);
    QVERIFY(!help->isVisible());
    m.button("cmdAlignStars")->click();
    m.trigger("mnuAlignStars");
    QCOMPARE(m.main->findChildren<AlignStars*>().size(), 1);
    auto* chartPrint = m.main->findChild<AlignStars*>()->findChild<QPushButton*>("cmdPrint");

    m.open(m.list("one"));
    m.open(m.list("two"));
    QList<QMdiSubWindow*> frames{frame(m.windows()[0]), frame(m.windows()[1])};
    const auto bars = [&] {
      QTest::qWait(RedScreen::kTitleBarPauseMs);
      QList<QImage> out;
      for (QMdiSubWindow* frame : frames) {
        const int bar = frame->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, frame);
        out << frame->grab(QRect(0, 0, frame->width(), bar)).toImage();
      }
      return out;
    };
    const QList<QImage> dayBars = bars();
    QToolButton* print = m.button("cmdPrint");
    const auto picture = [](QAbstractButton* button, QIcon::Mode mode) {
      const QPixmap p = button->icon().pixmap(QSize(16, 16), 1.0, mode);
      return p.toImage().convertToFormat(QImage::Format_RGB32);
    };
    const QImage normal = picture(print, QIcon::Normal);
    const QImage disabled = picture(print, QIcon::Disabled);
    const QString printStyle = print->styleSheet();
    const QPalette startPalette = QApplication::palette();
    const QBrush workspace = m.main->mdiArea()->background();

    m.button("cmdRedScreen")->click();
    QCOMPARE(m.main->mdiArea()->background().color(), QColor(0, 0, 0));
    QCOMPARE(QApplication::palette().color(QPalette::Window), QColor(128, 0, 0));
    QVERIFY(qApp->styleSheet().startsWith(startSheet));
    QVERIFY(qApp->styleSheet().contains(QLatin1String("QToolTip")));
    QVERIFY(QCoreApplication::testAttribute(Qt::AA_DontUseNativeDialogs));
    QVERIFY(print->toolTip().isEmpty());
    QVERIFY(print->styleSheet().contains(QLatin1String("rgb(127, 0, 0)")));
    QVERIFY(chartPrint->styleSheet().isEmpty());
    for (QIcon::Mode mode : {QIcon::Normal, QIcon::Disabled}) {
      const QImage image = picture(print, mode);
      QCOMPARE(mostGreenOrBlue(image), 0);
      for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
          QVERIFY2(image.pixelColor(x, y).red() <= 0xC0, qPrintable(image.pixelColor(x, y).name()));
    }
    for (const QImage& image : bars()) QCOMPARE_LE(mostGreenOrBlue(image), 8);
    chartPrint->click();
    chartPrint->click();
    QCOMPARE(visibleWindows(QStringLiteral("Print Alignment Chart")), 1);
    m.button("cmdRedScreen")->click();
    QCOMPARE(m.main->mdiArea()->background(), workspace);
    QVERIFY(QApplication::palette() == startPalette);
    QCOMPARE(qApp->styleSheet(), startSheet);
    QVERIFY(!QCoreApplication::testAttribute(Qt::AA_DontUseNativeDialogs));
    QCOMPARE(print->toolTip() + print->styleSheet(), "Print" + printStyle);
    QCOMPARE(picture(print, QIcon::Normal), normal);
    QCOMPARE(picture(print, QIcon::Disabled), disabled);
    QVERIFY(bars() == dayBars);

    m.button("cmdRedScreen")->click();
    m.open(m.list("three"));
    frames << frame(m.window(m.env.path("lists/three.tlf")));
    for (const QImage& image : bars()) QCOMPARE_LE(mostGreenOrBlue(image), 8);
    frames.last()->showMaximized();
    QCOMPARE_LE(mostGreenOrBlue(m.main->menuBar()->grab().toImage()), 8);
    m.trigger("mnuRedScreen");
    for (QMdiSubWindow* f : frames)
      QCOMPARE(f->windowIcon().cacheKey(), m.main->windowIcon().cacheKey());
    QCOMPARE(m.env.prompter.entries.size(), 1);
    qApp->setStyleSheet(QString());
  }

  // A first run opens Setup. Where its settings folder cannot be made, OK and Cancel say which
  // file and why; OK stays open, Cancel closes.
  void firstRunOpensSetup() {
    TestEnv env;  // no settings file: a first run
    env.writeFile(QStringLiteral("blocker"), "a file where the folder should be");
    env.state->configFolder = env.path(QStringLiteral("blocker/config"));
    TavorineListMain w(*env.state);
    w.quitApplication = [] {};
    QString shown;
    QTimer::singleShot(0, [&] {
      QWidget* modal = QApplication::activeModalWidget();
      if (!modal) return;
      click(*modal, "OKButton");
      if (modal->isVisible()) shown = modal->objectName();
      click(*modal, "CancelButton");
    });
    w.start();
    QCOMPARE(shown, QStringLiteral("Setup"));
    const QString text = QStringLiteral(
                             "Path/File access error: %1/%2 (the folder %1 cannot be "
                             "made) - 75")
                             .arg(env.state->configFolder);
    const QString list = text.arg("TavorineList.ini");
    QCOMPARE(env.prompter.texts(), QStringList({text.arg("Filter.ini"), list, list}));
  }

  // Frames fit the free area below a panel: a tall one shrinks with its top on the area, one off
  // the right and bottom moves back, one larger at its smallest keeps its title bar on it.
  void fit() {
    const QRect area(0, 30, 1024, 570);
    QCOMPARE(FitFrame(QRect(12, 20, 1000, 720), {}, area), QRect(12, 30, 1000, 570));
    QCOMPARE(FitFrame(QRect(900, 500, 300, 200), {}, area), QRect(724, 400, 300, 200));
    QCOMPARE(FitFrame(QRect(100, 100, 1100, 800), {1050, 600}, area), QRect(0, 30, 1050, 600));
  }

  // New and Open, cancelled, refused and done. The short name "t" also stands earlier in the
  // path ("lists"), and the dialog still starts in the list's folder. Exit (Ctrl+Q) quits and
  // leaves the lists open to the end of the process.
  void newAndOpen() {
    Rig rig;
    const QString folder = rig.env.path("lists/");
    rig.trigger("mnuNew");
    rig.button("cmdOpen")->click();
    QCOMPARE(rig.lastDialog, "open|Open existing list...|" + folder);
    rig.open(folder + "t", "mnuNew");
    QCOMPARE(rig.lastDialog, "save|Name new file...|" + folder);
    const QString t = folder + "t.tlf";
    QVERIFY(rig.commandsEnabled());
    auto* menu = rig.main->findChild<QMenu*>(QStringLiteral("mnuWindow"));
    QMetaObject::invokeMethod(menu, "aboutToShow");
    QCOMPARE(menu->actions().last()->text(), QStringLiteral("&1 Objects - t"));

    // New over an old list asks first; over an open one it refuses.
    const QString old = rig.list("old", 3), older = rig.list("older", 3);
    for (auto answer : {Prompter::Answer::No, Prompter::Answer::Yes, Prompter::Answer::Yes})
      rig.env.prompter.answer(answer);
    for (const QString& path : {old, t, older}) rig.open(path, "mnuNew");
    const QString overwrite = QStringLiteral("Confirm: This file\n%1\nalready exists.  Overwrite?");
    QCOMPARE(said(rig.env),
             QStringList({overwrite.arg(old), overwrite.arg(t),
                          "Oops: Unable to overwrite - the file\n" + t + "\nis already open",
                          overwrite.arg(older)}));
    QCOMPARE(ListColumn(older, "Name").size(), 0);
    rig.env.prompter.clear();

    // A file that is no list document: one box, no window, nothing held.
    rig.env.writeFile("lists/broken.tlf", "not a database at all, not even close to one");
    rig.open(rig.env.path("lists/broken.tlf"));
    QCOMPARE(rig.env.prompter.entries.size(), 1);
    rig.env.prompter.clear();
    rig.env.state->LastListFolder.clear();
    rig.open(old);
    QCOMPARE(rig.window(old)->datPrimary()->RecordCount(), 3);
    QCOMPARE(rig.env.state->LastListFolder, folder);
    rig.open(old);
    QCOMPARE(said(rig.env), QStringList("Oops: This file:\n" + old + "\nis already open"));
    rig.env.prompter.clear();

    // Nine lists open refuse a tenth without asking for its name; with one closed, the tenth
    // takes its slot.
    for (int i = 1; i <= 6; ++i) rig.open(rig.list(QStringLiteral("list%1").arg(i)));
    const QString tenth = rig.list("tenth");
    rig.env.state->MRUFiles[0] = FileEntry{"tenth", tenth};
    const int dialogs = rig.dialogs;
    for (const char* command : {"mnuNew", "mnuOpen", "mnuMRU0"}) rig.trigger(command);
    QCOMPARE(rig.dialogs, dialogs);
    QCOMPARE(said(rig.env), QStringList(3, "Tavorine: Sorry, you can only open 9 files!"));
    QCOMPARE(rig.windows().size(), 9);
    rig.close(older);
    rig.open(tenth);
    QCOMPARE(rig.window(tenth)->slot(), 2);
    QVERIFY(QTest::qWaitForWindowActive(rig.main.get()));
    QTest::keyClick(rig.main.get(), Qt::Key_Q, Qt::ControlModifier);
    QCOMPARE(rig.quits, 1);
    QCOMPARE(rig.env.state->OpenFileCount, qint16(9));
    QCOMPARE(rig.env.state->MRUFiles[0].title, QStringLiteral("older"));
  }

  // Closing a list records it among the recent files; a recent entry opens its list without a
  // dialog, says so when the file is gone (and keeps the entry), and refuses an open list. A
  // small screen gets the compact window, with its Close button; the close box closes all.
  void recentFiles() {
    Rig rig;
    const QString a = rig.list("alpha");
    const QString b = rig.list("beta");
    rig.open(a);
    rig.main->screenHeightTwips = [] { return 9000; };
    rig.open(b);
    rig.close(a);
    QVERIFY(rig.commandsEnabled());
    QCOMPARE(rig.action("mnuMRU0")->text(), QStringLiteral("alpha"));
    QCOMPARE(rig.window(b)->objectName(), QStringLiteral("CurrentListFixed"));
    rig.window(b)->findChild<QPushButton*>("cmdClose")->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!rig.commandsEnabled());
    QVERIFY(QFile::remove(b));
    rig.trigger("mnuMRU0");
    QCOMPARE(said(rig.env),
             QStringList("Error: This file\nbeta\nno longer exists or has been moved."));
    QVERIFY(rig.action("mnuMRU0")->isVisible());
    rig.trigger("mnuMRU1");
    QCOMPARE(rig.dialogs, 2);
    QCOMPARE(rig.window(a)->windowTitle(), QStringLiteral("Objects - alpha"));
    rig.trigger("mnuMRU1");
    QCOMPARE(said(rig.env).last(), "Oops: This file:\n" + a + "\nis already open");
    rig.open(rig.list("gamma"));
    QVERIFY(rig.main->close());
    QCOMPARE(rig.quits, 1);
    QCOMPARE(QSet<QString>({rig.env.state->MRUFiles[0].title, rig.env.state->MRUFiles[1].title}),
             QSet<QString>({"alpha", "gamma"}));
  }

  // One walk through the dialog: the routes, the arrows, each button and box. Escape leaves as
  // Cancel does (a typed field does not reach the settings without OK), and a second time writes
  // nothing. OK refused keeps the dialog open with the box (an error raised or a box of its
  // own), keeps each step it stored before and writes nothing; put right, the same OK closes it.
  void dialogWalk() {
    TestEnv env;
    env.state->settings.CommPort = QStringLiteral("HCD 192.168.1.9:2000");
    env.state->settings.DataDir = QStringLiteral("/srv/lists/");
    Setup dlg(*env.state);
    const QString gone = env.path(QStringLiteral("gone"));
    QString startedAt;
    dlg.setFolderPicker([&](QWidget*, const QString& start) {
      startedAt = start;
      return gone;
    });
    QList<qint32> colours{0x123456, -1};  // the second is cancelled
    dlg.setColorChooser([&](QWidget*, qint32) { return colours.takeFirst(); });
    dlg.show();
    // The port in use, a proxy address, is none of those found.
    auto* found = child<QComboBox>(dlg, "cmbFoundPorts");
    QVERIFY(found->currentIndex() == -1 || found->itemData(0).toString().isEmpty());
    click(dlg, "optCommPort");
    QTest::mouseClick(child<QWidget>(dlg, "UpDown1")->findChild<QToolButton*>(), Qt::LeftButton);
    QCOMPARE(child<QLineEdit>(dlg, "txtCommPort")->text(), QStringLiteral("2"));
    click(dlg, "optIndi");
    QVERIFY(child<QLineEdit>(dlg, "txtIndiHost")->isEnabled());
    for (const char* name : {"cmdEastWest", "cmdNorthSouth", "chkUseWindowsTimeZone",
                             "chkUseAltLimit", "cmdColor", "cmdColor"})
      click(dlg, name);
    auto* ew = child<QPushButton>(dlg, "cmdEastWest");
    QCOMPARE(ew->text() + child<QPushButton>(dlg, "cmdNorthSouth")->text(), "WestSouth");
    QVERIFY(child<QLineEdit>(dlg, "txtMyTimeZone")->isEnabled());
    QVERIFY(child<QWidget>(dlg, "shpObjectColor")->styleSheet().contains(QLatin1String("#563412")));

    child<QLineEdit>(dlg, "txtLongDeg")->setText(QStringLiteral("3"));
    QTest::keyClick(&dlg, Qt::Key_Escape);
    const QByteArray file = env.readFile(QStringLiteral("config/TavorineList.ini"));
    QCOMPARE(file, QByteArray("\"GT\",\"HCD 192.168.1.9:2000\",\"/srv/lists/\",1,#FALSE#,0,\"W\","
                              "127,40,\"S\",26,20,20,90,#FALSE#\r\n"));
    dlg.show();
    ew->click();
    QTest::keyClick(&dlg, Qt::Key_Escape);
    QCOMPARE(env.readFile(QStringLiteral("config/TavorineList.ini")), file);

    dlg.show();
    click(dlg, "cmmdBrowse");
    QCOMPARE(startedAt, QStringLiteral("/srv/lists/"));
    const QString held =
        R"("GT","INDI","/srv/lists/",1,#FALSE#,0,"E",3,40,"S",26,%1,20,90,#FALSE#)";
    child<QLineEdit>(dlg, "txtLatMin")->setText(QStringLiteral("twenty"));
    click(dlg, "OKButton");
    QCOMPARE(SettingsRecord(env.state->settings, false), held.arg(20).toUtf8() + "\r\n");
    child<QLineEdit>(dlg, "txtLatMin")->setText(QStringLiteral("21"));
    click(dlg, "OKButton");
    QCOMPARE(SettingsRecord(env.state->settings, false), held.arg(21).toUtf8() + "\r\n");
    QCOMPARE(said(env), QStringList({AppTitle() + ": Type mismatch - 13",
                                     "Problem: This folder: \n" + gone + "\ndoes not exist."}));
    QVERIFY(dlg.isVisible());
    QCOMPARE(env.readFile(QStringLiteral("config/TavorineList.ini")), file);
    QDir().mkpath(gone);
    click(dlg, "OKButton");
    QCOMPARE(dlg.result(), int(QDialog::Accepted));
    QCOMPARE(child<QLineEdit>(dlg, "txtDataDir")->text(), gone + '/');
    QCOMPARE(env.readFile(QStringLiteral("config/TavorineList.ini")),
             R"("GT","INDI",")" + gone.toUtf8() +
                 R"(/",0,#FALSE#,0,"E",3,40,"S",26,21,20,90,#FALSE#,1193046)"
                 "\r\n");
  }
};

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
