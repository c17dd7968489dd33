#include <QtTest>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
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
  AppState& state() { return *env.state; }
  // A list document in lists/ with this many rows.
  QString list(const QString& name, int rows = 2) {
    const QString p = env.path(QStringLiteral("lists/") + name + QStringLiteral(".tlf"));
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
  void open(const QString& path, const QString& command = "mnuOpen") {
    answers << path;
    trigger(command);
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

void click(QWidget& w, const char* button) {
  QTest::mouseClick(child<QPushButton>(w, button), Qt::LeftButton);
}

// Check boxes and options answer clicks on their indicator and text, not on the empty space
// the layout gives them: click near the left edge.
void clickBox(QAbstractButton* b) {
  QTest::mouseClick(b, Qt::LeftButton, {}, QPoint(6, b->height() / 2));
}

}  // namespace

class TestMainWindow : public QObject {
  Q_OBJECT
 private slots:
  // Start-up: the list commands wait for a list, the recent lists are in the File menu, the
  // window fits the screen, the sign button flips the Quick GoTo sign.
  void startUp() {
    Rig m("\"Tonight\",\"/l/a.tlf\"\r\n\"Globulars\",\"/l/b.tlf\"\r\n");
    for (const char* name : {"mnuExport", "mnuImportCurrent", "mnuImporthcTour", "mnuPrint"})
      QVERIFY2(!m.action(name)->isEnabled(), name);
    QVERIFY(!m.button("cmdPrint")->isEnabled() && m.action("mnuImportUser")->isEnabled());
    QVERIFY(!m.action("mnuExportHC")->isVisible());
    m.trigger("mnuExportHC");
    QCOMPARE(m.env.prompter.texts(), QStringList{QStringLiteral("For future developments.")});
    QVERIFY(m.action("mnuSepMRU")->isVisible());
    QCOMPARE(m.action("mnuMRU1")->text(), QStringLiteral("Globulars"));
    QVERIFY(m.action("mnuMRU1")->isVisible() && !m.action("mnuMRU2")->isVisible());
    QVERIFY(m.main->screen()->availableGeometry().contains(m.main->geometry()));
    auto* sign = m.main->findChild<QPushButton*>(QStringLiteral("cmdDecSign"));
    sign->click();
    QCOMPARE(m.main->findChild<QLineEdit*>("txtGotoDecSign")->text() + sign->text(), "--");
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
  }

  // Frames are fitted to the free area, here 1024 x 570 below a 30 pixel panel: a tall one is
  // shrunk with its top on the area, one off the right and bottom is moved back, and one whose
  // smallest size is larger than the area keeps its title bar on it.
  void fit() {
    const QRect area(0, 30, 1024, 570);
    QCOMPARE(FitFrame(QRect(12, 20, 1000, 720), {}, area), QRect(12, 30, 1000, 570));
    QCOMPARE(FitFrame(QRect(900, 500, 300, 200), {}, area), QRect(724, 400, 300, 200));
    QCOMPARE(FitFrame(QRect(100, 100, 1100, 800), {1050, 600}, area), QRect(0, 30, 1050, 600));
  }

  // Red Screen on and off again from the toolbar: the workspace turns black and the palette
  // red, our own style sheet stays with the tip colours added, dialogs are our own, the buttons
  // lose their tips and take a dark red face, and no picture shines, not even disabled Print's.
  // After, every tip, style and picture is back, none left pink. Exit while off leaves what the
  // desktop did since start-up.
  void redScreenRoundTrip() {
    const QString startSheet = QStringLiteral("QLabel#lblNote { color: blue; }");
    qApp->setStyleSheet(startSheet);
    Rig m;
    QToolButton* print = m.button("cmdPrint");
    QToolButton* hhc = m.button("cmdHHC");
    const auto picture = [](QAbstractButton* button, QIcon::Mode mode) {
      const QPixmap p = button->icon().pixmap(QSize(16, 16), 1.0, mode);
      return p.toImage().convertToFormat(QImage::Format_RGB32);
    };
    const QImage normal = picture(hhc, QIcon::Normal);
    const QImage disabled = picture(print, QIcon::Disabled);
    const QString printStyle = print->styleSheet();
    const QPalette startPalette = QApplication::palette();
    QPalette changed = startPalette;
    changed.setColor(QPalette::Window, QColor(1, 2, 3));
    QApplication::setPalette(changed);
    m.trigger("mnuExit");
    QCOMPARE(QApplication::palette().color(QPalette::Window), QColor(1, 2, 3));
    QApplication::setPalette(startPalette);
    const auto workspace = [&] { return m.main->mdiArea()->grab().toImage().pixel(10, 10); };
    const QRgb day = workspace();
    m.button("cmdRedScreen")->click();
    QCOMPARE(QColor(workspace()), QColor(0, 0, 0));
    QCOMPARE(QApplication::palette().color(QPalette::Window), QColor(128, 0, 0));
    QVERIFY(qApp->styleSheet().startsWith(startSheet));
    QVERIFY(qApp->styleSheet().contains(QLatin1String("QToolTip")));
    QVERIFY(QCoreApplication::testAttribute(Qt::AA_DontUseNativeDialogs));
    QVERIFY(hhc->toolTip().isEmpty() && print->toolTip().isEmpty());
    QVERIFY(hhc->styleSheet().contains(QLatin1String("rgb(127, 0, 0)")));
    for (QIcon::Mode mode : {QIcon::Normal, QIcon::Disabled}) {
      const QImage image = picture(print, mode);
      QCOMPARE(mostGreenOrBlue(image), 0);
      for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
          QVERIFY2(image.pixelColor(x, y).red() <= 0xC0, qPrintable(image.pixelColor(x, y).name()));
    }
    m.button("cmdRedScreen")->click();
    QCOMPARE(workspace(), day);
    QVERIFY(QApplication::palette() == startPalette);
    QCOMPARE(qApp->styleSheet(), startSheet);
    QVERIFY(!QCoreApplication::testAttribute(Qt::AA_DontUseNativeDialogs));
    QCOMPARE(hhc->toolTip(), QStringLiteral("Hyper Hand Control"));
    QCOMPARE(print->toolTip() + print->styleSheet(), "Print" + printStyle);
    QCOMPARE(picture(hhc, QIcon::Normal), normal);
    QCOMPARE(picture(print, QIcon::Disabled), disabled);
    QVERIFY(m.env.prompter.entries.isEmpty());
    qApp->setStyleSheet(QString());
  }

  void titleBarsFollowRedScreen_data() {
    QTest::addColumn<bool>("maximised");
    QTest::addColumn<bool>("openedWhileOn");
    QTest::newRow("side by side") << false << false;
    QTest::newRow("side by side, opened while on") << false << true;
    QTest::newRow("maximised") << true << false;
    QTest::newRow("maximised, opened while on") << true << true;
  }
  // While on, no pixel of a title bar, active or not, nor of a maximised list's buttons in the
  // menu bar, has more than a trace of green or blue; after, once the list windows are done with
  // the title bars they noted while the styles changed, each looks exactly as before.
  void titleBarsFollowRedScreen() {
    QFETCH(bool, maximised);
    QFETCH(bool, openedWhileOn);
    Rig m;
    QPixmap picture(16, 16);
    picture.fill(QColor(40, 90, 255));
    const QIcon own(picture);
    if (openedWhileOn) m.trigger("mnuRedScreen");
    QList<QMdiSubWindow*> frames;
    for (int i = 0; i < 2; ++i) {
      auto* frame = new QMdiSubWindow;
      frame->setWidget(new QWidget);
      frame->setWindowTitle(QStringLiteral("List %1").arg(i));
      frame->setWindowIcon(own);
      m.main->mdiArea()->addSubWindow(frame);
      frame->setGeometry(i * 200, i * 100, 300, 200);
      frame->show();
      frames << frame;
    }
    if (maximised) frames[1]->showMaximized();
    const auto bars = [&] {
      QTest::qWait(RedScreen::kTitleBarPauseMs);
      QList<QImage> out;
      for (QMdiSubWindow* frame : frames) {
        const int bar = frame->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, frame);
        out << (maximised ? m.main->menuBar()->grab().toImage()
                          : frame->grab(QRect(0, 0, frame->width(), bar)).toImage());
      }
      return out;
    };
    QList<QImage> before;
    if (!openedWhileOn) {
      before = bars();
      m.trigger("mnuRedScreen");
    }
    for (const QImage& image : bars()) QCOMPARE_LE(mostGreenOrBlue(image), 8);
    m.trigger("mnuRedScreen");
    const QList<QImage> after = bars();
    for (QMdiSubWindow* frame : frames) QCOMPARE(frame->windowIcon().cacheKey(), own.cacheKey());
    if (!openedWhileOn) QVERIFY(after == before);
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

  // The hand control and alignment windows open once, from the menu or the button, and come
  // back. F1 twice in the hand control window shows the one help window, whose headings follow
  // Red Screen switched by Ctrl+R there or by the menu. Red Screen from the toolbar turns the
  // toolbar's Print button red, not the chart's; the chart's Print opens "Print Alignment
  // Chart" beside it, without blocking it, and once. Exit while on puts the colours back.
  void chartAndHelpWindows() {
    Rig m;
    const QPalette before = QApplication::palette();
    QAction* menu = m.action("mnuRedScreen");
    m.trigger("mnuHHC");
    m.button("cmdHHC")->click();
    QCOMPARE(m.main->findChildren<HHC*>().size(), 1);
    HHC* hhc = m.main->findChild<HHC*>();
    QVERIFY(hhc->isVisible() && !hhc->firstActivatePending());
    QTest::keyClick(hhc->browser()->currentSearchBox(), Qt::Key_F1);
    QTest::keyClick(hhc->browser()->currentSearchBox(), Qt::Key_F1);
    QCOMPARE(visibleWindows(QStringLiteral("Tavorine Online Help")), 1);
    auto* help = m.main->findChild<QWidget*>(QStringLiteral("HelpWindow"));
    QVERIFY(help && QTest::qWaitForWindowActive(help));
    auto* page = help->findChild<QTextBrowser*>(QStringLiteral("txtHelp"));
    const auto headingColour = [&] {
      const QTextCursor at = page->document()->find(QStringLiteral("Tavorine Help"));
      return at.charFormat().foreground().color();
    };
    const QColor dayHeading = headingColour();
    QTest::keyClick(page, Qt::Key_R, Qt::ControlModifier);
    QVERIFY(m.env.state->RedScreenOn && menu->isChecked());
    QCOMPARE(headingColour(), QColor(255, 0, 0));
    menu->trigger();
    QVERIFY(!m.env.state->RedScreenOn && !menu->isChecked());
    QCOMPARE(headingColour(), dayHeading);
    QCOMPARE(QApplication::palette(), before);
    QTest::keyClick(help, Qt::Key_Escape);
    QVERIFY(!help->isVisible());

    m.button("cmdAlignStars")->click();
    m.trigger("mnuAlignStars");
    QCOMPARE(m.main->findChildren<AlignStars*>().size(), 1);
    auto* chart = m.main->findChild<AlignStars*>();
    QCOMPARE(m.main->mdiArea()->activeSubWindow()->widget(), chart);
    QVERIFY(!chart->candidates().empty() || !chart->bestPairsText().empty());
    auto* print = chart->findChild<QPushButton*>("cmdPrint");
    m.button("cmdRedScreen")->click();
    QVERIFY(m.env.state->RedScreenOn && menu->isChecked());
    QVERIFY(m.button("cmdPrint")->toolTip().isEmpty() && print->styleSheet().isEmpty());
    print->click();
    print->click();
    QCOMPARE(visibleWindows(QStringLiteral("Print Alignment Chart")), 1);
    QVERIFY(m.env.prompter.entries.isEmpty());
    m.trigger("mnuExit");
    QCOMPARE(m.quits, 1);
    QCOMPARE(QApplication::palette(), before);
    QCOMPARE(qApp->styleSheet(), QString());
  }

  // New and Open, cancelled, refused and done. The short name "t" also stands earlier in the
  // path, and the dialog still starts in the list's folder. Exit (Ctrl+Q) quits and leaves the
  // lists to the end of the process.
  void newAndOpen() {
    Rig rig;
    const QString folder = rig.env.path("lists/");
    rig.state().LastListFolder = folder;
    rig.trigger("mnuNew");
    rig.button("cmdOpen")->click();
    QCOMPARE(rig.dialogs, 2);
    QCOMPARE(rig.lastDialog, "open|Open existing list...|" + folder);
    QVERIFY(rig.windows().isEmpty() && !rig.commandsEnabled());
    QVERIFY(folder.contains(QLatin1Char('t'), Qt::CaseInsensitive));
    rig.open(folder + "t", "mnuNew");
    QCOMPARE(rig.lastDialog, "save|Name new file...|" + folder);
    const QString t = folder + "t.tlf";
    QVERIFY(rig.window(t) && rig.commandsEnabled());
    QCOMPARE(rig.window(t)->windowTitle(), QStringLiteral("Objects - t"));
    auto* menu = rig.main->findChild<QMenu*>(QStringLiteral("mnuWindow"));
    QMetaObject::invokeMethod(menu, "aboutToShow");
    QCOMPARE(menu->actions().last()->text(), QStringLiteral("&1 Objects - t"));

    // New over an old list asks first; over an open one it refuses.
    const QString old = rig.list("old", 3), older = rig.list("older", 3);
    for (auto answer : {Prompter::Answer::No, Prompter::Answer::Yes, Prompter::Answer::Yes})
      rig.env.prompter.answer(answer);
    for (const QString& path : {old, t, older}) rig.open(path, "mnuNew");
    const QString overwrite = QStringLiteral("Confirm: This file\n%1\nalready exists.  Overwrite?");
    QCOMPARE(rig.said(), QStringList({overwrite.arg(old), overwrite.arg(t),
                                      "Oops: Unable to overwrite - the file\n" + t +
                                          "\nis already open",
                                      overwrite.arg(older)}));
    QCOMPARE(ListColumn(old, "Name").size(), 3);
    QCOMPARE(ListColumn(older, "Name").size(), 0);
    QCOMPARE(rig.windows().size(), 2);
    rig.env.prompter.clear();

    // A file that is no list document: one box, no window, nothing held.
    rig.env.writeFile("lists/broken.tlf", "not a database at all, not even close to one");
    rig.open(rig.env.path("lists/broken.tlf"));
    QCOMPARE(rig.windows().size(), 2);
    QCOMPARE(rig.env.prompter.entries.size(), 1);
    QCOMPARE(rig.state().OpenFileCount, qint16(2));
    rig.env.prompter.clear();
    rig.state().LastListFolder.clear();
    rig.open(old);
    QCOMPARE(rig.window(old)->datPrimary()->RecordCount(), 3);
    QCOMPARE(rig.state().LastListFolder, folder);
    rig.open(old);
    QCOMPARE(rig.said(), QStringList("Oops: This file:\n" + old + "\nis already open"));
    // Another spelling of the same file is another document.
    rig.open(rig.env.path("lists/../lists/old.tlf"));
    QCOMPARE(rig.windows().size(), 4);
    QVERIFY(QTest::qWaitForWindowActive(rig.main.get()));
    QTest::keyClick(rig.main.get(), Qt::Key_Q, Qt::ControlModifier);
    QCOMPARE(rig.quits, 1);
    QCOMPARE(rig.state().OpenFileCount, qint16(4));
    QCOMPARE(rig.state().MRUFiles[0].title, QString());
  }

  // Nine lists open refuse a tenth without asking for its name; with one closed, the tenth
  // takes its slot.
  void nineOpen() {
    Rig rig;
    for (int i = 1; i <= 9; ++i) rig.open(rig.list(QStringLiteral("list%1").arg(i)));
    const QString tenth = rig.list("tenth");
    rig.state().MRUFiles[0] = FileEntry{"tenth", tenth};
    rig.dialogs = 0;
    for (const char* command : {"mnuNew", "mnuOpen", "mnuMRU0"}) rig.trigger(command);
    QCOMPARE(rig.dialogs, 0);
    QCOMPARE(rig.said(), QStringList(3, "Tavorine: Sorry, you can only open 9 files!"));
    QCOMPARE(rig.windows().size(), 9);
    rig.close(rig.env.path("lists/list3.tlf"));
    rig.open(tenth);
    QCOMPARE(rig.window(tenth)->slot(), 3);
  }

  // Closing a list records it among the recent files; a recent entry opens its list without a
  // dialog, says so when the file is gone (and keeps the entry), and refuses an open list. A
  // small screen gets the compact window, whose Close button closes it. The close box closes
  // every list before the program ends.
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
    QVERIFY(rig.action("mnuMRU0")->isVisible());
    QCOMPARE(rig.window(b)->objectName(), QStringLiteral("CurrentListFixed"));
    rig.window(b)->findChild<QPushButton*>("cmdClose")->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(rig.windows().isEmpty() && !rig.commandsEnabled());
    QCOMPARE(rig.state().OpenFileCount, qint16(0));
    QCOMPARE(rig.state().MRUFiles[0].title + rig.state().MRUFiles[1].title, "betaalpha");
    QVERIFY(QFile::remove(b));
    rig.trigger("mnuMRU0");
    QCOMPARE(rig.said(), QStringList("Error: This file\nbeta\nno longer exists or has been moved."));
    QVERIFY(rig.action("mnuMRU0")->isVisible());
    rig.dialogs = 0;
    rig.trigger("mnuMRU1");
    QCOMPARE(rig.dialogs, 0);
    QCOMPARE(rig.window(a)->windowTitle(), QStringLiteral("Objects - alpha"));
    QVERIFY(rig.commandsEnabled());
    rig.trigger("mnuMRU1");
    QCOMPARE(rig.said().last(), "Oops: This file:\n" + a + "\nis already open");
    QCOMPARE(rig.windows().size(), 1);
    rig.open(rig.list("gamma"));
    QVERIFY(rig.main->close());
    QCOMPARE(rig.quits, 1);
    QCOMPARE(rig.state().OpenFileCount, qint16(0));
    QCOMPARE(QSet<QString>({rig.state().MRUFiles[0].title, rig.state().MRUFiles[1].title}),
             QSet<QString>({"alpha", "gamma"}));
  }

  // One walk through the dialog. The routes enable their fields and the arrows step the port;
  // the buttons and boxes change the live settings at once; Escape leaves as Cancel does (a
  // typed field does not reach the settings without OK), and a second time writes nothing.
  // OK refused keeps the dialog open with the box (an error raised or a box of its own) and
  // writes nothing; put right, the same OK closes it.
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
    qint32 offered = -2, answer = 0x123456;
    dlg.setColorChooser([&](QWidget*, qint32 initial) {
      offered = initial;
      return answer;
    });
    dlg.show();
    // The port in use, a proxy address, is none of those found.
    auto* found = child<QComboBox>(dlg, "cmbFoundPorts");
    QVERIFY(found->currentIndex() == -1 || found->itemData(0).toString().isEmpty());
    auto* port = child<QLineEdit>(dlg, "txtCommPort");
    QCOMPARE(port->text(), QStringLiteral("HCD 192.168.1.9:2000"));
    QVERIFY(!port->isEnabled());
    clickBox(child<QRadioButton>(dlg, "optCommPort"));
    QVERIFY(port->isEnabled());
    QCOMPARE(port->text(), QStringLiteral("1"));
    auto* upDown = child<QWidget>(dlg, "UpDown1");
    QTest::mouseClick(upDown->findChildren<QToolButton*>().value(0), Qt::LeftButton);
    QCOMPARE(port->text(), QStringLiteral("2"));
    clickBox(child<QRadioButton>(dlg, "optHCD"));
    QVERIFY(!port->isEnabled() && !upDown->isEnabled() && !dlg.fields().commPortSelected);
    auto* indiHost = child<QLineEdit>(dlg, "txtIndiHost");
    QVERIFY(!indiHost->isEnabled());
    clickBox(child<QRadioButton>(dlg, "optIndi"));
    QVERIFY(indiHost->isEnabled() && child<QComboBox>(dlg, "cmbIndiDevice")->isEnabled());
    QVERIFY(!port->isEnabled() && dlg.fields().indiSelected);
    auto* deg = child<QLineEdit>(dlg, "txtLatDeg");
    dlg.activateWindow();
    deg->setFocus(Qt::TabFocusReason);
    QTRY_COMPARE(deg->selectedText(), QStringLiteral("26"));

    auto* ew = child<QPushButton>(dlg, "cmdEastWest");
    QTest::mouseClick(ew, Qt::LeftButton);
    QCOMPARE(ew->text() + env.state->settings.LongHemi, QStringLiteral("WestW"));
    auto* ns = child<QPushButton>(dlg, "cmdNorthSouth");
    QTest::mouseClick(ns, Qt::LeftButton);
    QCOMPARE(ns->text() + env.state->settings.LatHemi, QStringLiteral("SouthS"));
    clickBox(child<QCheckBox>(dlg, "chkUseWindowsTimeZone"));
    QVERIFY(child<QLineEdit>(dlg, "txtMyTimeZone")->isEnabled());
    clickBox(child<QCheckBox>(dlg, "chkUseAltLimit"));
    QVERIFY(!env.state->settings.UseAltLimit);
    for (const char* n : {"lblMinAlt", "txtMinAlt", "lblMaxAlt", "txtMaxAlt"})
      QVERIFY2(!child<QWidget>(dlg, n)->isEnabled(), n);
    click(dlg, "cmdColor");
    QCOMPARE(offered, 200);
    QCOMPARE(env.state->settings.ObjectColor, 0x123456);
    QVERIFY(child<QWidget>(dlg, "shpObjectColor")->styleSheet().contains(QLatin1String("#563412")));
    answer = -1;  // cancelled
    click(dlg, "cmdColor");
    QCOMPARE(env.state->settings.ObjectColor, 0x123456);

    child<QLineEdit>(dlg, "txtLongDeg")->setText(QStringLiteral("3"));
    QTest::keyClick(&dlg, Qt::Key_Escape);
    QVERIFY(!dlg.isVisible());
    QCOMPARE(env.state->settings.LongDeg, qint16(127));
    const QByteArray file = env.readFile(QStringLiteral("config/TavorineList.ini"));
    QCOMPARE(file, QByteArray("\"GT\",\"HCD 192.168.1.9:2000\",\"/srv/lists/\",1,#FALSE#,0,\"W\","
                              "127,40,\"S\",26,20,20,90,#FALSE#\r\n"));
    dlg.show();
    QTest::mouseClick(ew, Qt::LeftButton);
    QTest::keyClick(&dlg, Qt::Key_Escape);
    QCOMPARE(env.readFile(QStringLiteral("config/TavorineList.ini")), file);

    dlg.show();
    click(dlg, "cmmdBrowse");
    QCOMPARE(startedAt, QStringLiteral("/srv/lists/"));
    // Each step of OK keeps what it stored before a later one fails.
    const QString held =
        R"("GT","INDI","/srv/lists/",1,#FALSE#,0,"E",3,40,"S",26,%1,20,90,#FALSE#)";
    child<QLineEdit>(dlg, "txtLatMin")->setText(QStringLiteral("twenty"));
    click(dlg, "OKButton");
    QCOMPARE(SettingsRecord(env.state->settings, false), held.arg(20).toUtf8() + "\r\n");
    child<QLineEdit>(dlg, "txtLatMin")->setText(QStringLiteral("21"));
    click(dlg, "OKButton");
    QCOMPARE(SettingsRecord(env.state->settings, false), held.arg(21).toUtf8() + "\r\n");
    QCOMPARE(child<QLineEdit>(dlg, "txtDataDir")->text(), gone);
    QStringList said;
    for (const auto& e : env.prompter.entries) said << e.title + ": " + e.text;
    QCOMPARE(said, QStringList({AppTitle() + ": Type mismatch - 13",
                                "Problem: This folder: \n" + gone + "\ndoes not exist."}));
    QVERIFY(dlg.isVisible());
    QCOMPARE(env.state->settings.FirstRun, qint16(1));
    QCOMPARE(env.readFile(QStringLiteral("config/TavorineList.ini")), file);
    QDir().mkpath(gone);
    click(dlg, "OKButton");
    QVERIFY(!dlg.isVisible());
    QCOMPARE(dlg.result(), int(QDialog::Accepted));
    QCOMPARE(child<QLineEdit>(dlg, "txtDataDir")->text(), gone + '/');
    QCOMPARE(env.state->settings.FirstRun, qint16(0));
    QCOMPARE(env.readFile(QStringLiteral("config/TavorineINDI.ini")),
             QByteArray("\"localhost\",7624,\"Telescope Simulator\"\r\n"));
  }

  // A first run whose settings folder cannot be made: OK and Cancel say which file and why; OK
  // stays open, Cancel closes.
  void dialogUnwritableConfigFolder() {
    TestEnv env;
    env.writeFile(QStringLiteral("blocker"), "a file where the folder should be");
    env.state->configFolder = env.path(QStringLiteral("blocker/config"));
    env.state->settings.DataDir = env.dir.path();
    Setup dlg(*env.state);
    dlg.show();
    child<QPushButton>(dlg, "OKButton")->click();
    QVERIFY(dlg.isVisible());
    child<QPushButton>(dlg, "CancelButton")->click();
    QVERIFY(!dlg.isVisible());
    const QString text = QStringLiteral("Path/File access error: %1/TavorineList.ini (the folder %1 "
                                        "cannot be made) - 75")
                             .arg(env.state->configFolder);
    QCOMPARE(env.prompter.texts(), QStringList({text, text}));
  }
};

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
