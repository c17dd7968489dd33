#include "core/mainwindow.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

#include "catalog/catalogdialogs.h"
#include "charts/alignstars.h"
#include "charts/hhc.h"
#include "core/appstate.h"
#include "core/handler.h"
#include "core/hourglass.h"
#include "core/icons.h"
#include "core/listdocuments.h"
#include "core/opendocuments.h"
#include "core/prompter.h"
#include "core/selectall.h"
#include "core/settings.h"
#include "core/setupdialog.h"
#include "core/twips.h"
#include "core/windowplacement.h"
#include "exchange/exchangecommands.h"
#include "info/frmabout.h"
#include "info/frmlicense.h"
#include "info/frmsupport.h"
#include "info/helpwindow.h"
#include "lists/editlist.h"
#include "lists/listwindow.h"
#include "printing/printoptions.h"
#include "scope/gotoflow.h"
#include "scope/positionpanel.h"
#include "scope/waitcursor.h"

namespace {

QLineEdit* field(QWidget* parent, const char* name, int width, bool readOnly = false) {
  auto* e = new QLineEdit(parent);
  e->setObjectName(QString::fromLatin1(name));
  e->setFixedWidth(width);
  e->setReadOnly(readOnly);
  e->setAlignment(Qt::AlignRight);
  return e;
}

QLabel* label(QWidget* parent, const QString& text) {
  auto* l = new QLabel(text, parent);
  l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  return l;
}

}  // namespace

TavorineListMain::TavorineListMain(AppState& state, QWidget* parent)
    : QMainWindow(parent), state_(state), redScreen_(state) {
  InitIconResources();
  setObjectName(QStringLiteral("TavorineListMain"));
  KeepWindowPlacement(this, state);
  setWindowTitle(QStringLiteral("Tavorine"));
  setWindowIcon(QIcon(QStringLiteral(":/icons/tavorine.svg")));
  UseWaitCursor(link_);
  quitApplication = [] { QCoreApplication::exit(0); };
  chooseListFile = [this](bool save, const QString& title, const QString& folder) {
    return runListFileDialog(save, title, folder);
  };
  screenHeightTwips = [this] {
    const QScreen* s = screen();
    if (!s) return 15000;
    return ScreenHeightTwips(s->geometry().height(), s->logicalDotsPerInchY());
  };

  mdi_ = new QMdiArea(this);
  mdi_->setObjectName(QStringLiteral("mdiArea"));
  setCentralWidget(mdi_);
  exchange_ = std::make_unique<ExchangeCommands>(state_, *mdi_, *this);

  buildMenus();
  buildToolbar();

  // Hand-over fields through which an opening command tells a new list window its document.
  for (const char* name : {"txtFileName", "txtFileTitle"}) {
    auto* hidden = new QLineEdit(this);
    hidden->setObjectName(QString::fromLatin1(name));
    hidden->hide();
  }
  // Two timers kept from the old read-back; they have no action and never start by themselves.
  timerGetRADec = new QTimer(this);
  timerGetRADec->setObjectName(QStringLiteral("timerGetRADec"));
  timerGetRADec->setInterval(10000);
  timerRestartGetRADec = new QTimer(this);
  timerRestartGetRADec->setObjectName(QStringLiteral("timerRestartGetRADec"));
  timerRestartGetRADec->setInterval(60000);

  resize(1000, 720);
}

TavorineListMain::~TavorineListMain() = default;

QAction* TavorineListMain::addAction(QMenu* menu, const char* name, const QString& caption,
                                     const QKeySequence& shortcut,
                                     void (TavorineListMain::*slot)()) {
  QAction* a = menu->addAction(caption);
  a->setObjectName(QString::fromLatin1(name));
  if (!shortcut.isEmpty()) a->setShortcut(shortcut);
  if (slot) connect(a, &QAction::triggered, this, [this, slot] { (this->*slot)(); });
  return a;
}

void TavorineListMain::buildMenus() {
  QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
  file->setObjectName(QStringLiteral("mnuFile"));
  addAction(file, "mnuNew", QStringLiteral("&New List"), QKeySequence(Qt::CTRL | Qt::Key_N),
            &TavorineListMain::mnuNew_Click);
  addAction(file, "mnuOpen", QStringLiteral("&Open Existing List"),
            QKeySequence(Qt::CTRL | Qt::Key_O), &TavorineListMain::mnuOpen_Click);
  file->addSeparator()->setObjectName(QStringLiteral("mnuSep5"));

  QMenu* import = file->addMenu(QStringLiteral("&Import"));
  import->menuAction()->setObjectName(QStringLiteral("mnuImport"));
  mnuImporthcTour = addAction(import, "mnuImporthcTour",
                              QStringLiteral("from &NexTour/hcTour File to Current List"), {},
                              &TavorineListMain::mnuImporthcTour_Click);
  mnuImportCurrent =
      addAction(import, "mnuImportCurrent", QStringLiteral("from &CSV File to Current List"), {},
                &TavorineListMain::mnuImportCurrent_Click);
  addAction(import, "mnuImportUser", QStringLiteral("from CSV File to &User Supplied List"), {},
            &TavorineListMain::mnuImportUser_Click);

  QMenu* exportMenu = file->addMenu(QStringLiteral("&Export to"));
  mnuExport = exportMenu->menuAction();
  mnuExport->setObjectName(QStringLiteral("mnuExport"));
  addAction(exportMenu, "mnuExportBRLT", QStringLiteral("&Brillet"), {},
            &TavorineListMain::mnuExportBRLT_Click);
  QAction* hc = addAction(exportMenu, "mnuExportHC", QStringLiteral("NexStar &Hand Control"), {},
                          &TavorineListMain::mnuExportHC_Click);
  hc->setVisible(false);  // a planned export that never came; the entry stays hidden
  addAction(exportMenu, "mnuExportPlanetarium", QStringLiteral("P&lanetarium for Palm"), {},
            &TavorineListMain::mnuExportPlanetarium_Click);
  addAction(exportMenu, "mnuExporthcTour", QStringLiteral("&NexRemote/hcAnywhere"), {},
            &TavorineListMain::mnuExporthcTour_Click);
  addAction(exportMenu, "mnuExportCSV", QStringLiteral("&CSV (Spreadsheet) File"), {},
            &TavorineListMain::mnuExportCSV_Click);
  file->addSeparator()->setObjectName(QStringLiteral("mnuSep3"));
  mnuPrint = addAction(file, "mnuPrint", QStringLiteral("&Print"),
                       QKeySequence(Qt::CTRL | Qt::Key_P), &TavorineListMain::mnuPrint_Click);
  mnuPrint->setEnabled(false);
  mnuSepMRU = file->addSeparator();
  mnuSepMRU->setObjectName(QStringLiteral("mnuSepMRU"));
  mnuSepMRU->setVisible(false);
  for (int i = 0; i < 5; ++i) {
    QAction* a = file->addAction(QStringLiteral("File"));
    a->setObjectName(QStringLiteral("mnuMRU%1").arg(i));
    a->setVisible(false);
    connect(a, &QAction::triggered, this, [this, i] { mnuMRU_Click(i); });
    mnuMRU[i] = a;
  }
  file->addSeparator()->setObjectName(QStringLiteral("mnuSep1"));
  addAction(file, "mnuExit", QStringLiteral("E&xit"), QKeySequence(Qt::CTRL | Qt::Key_Q),
            &TavorineListMain::mnuExit_Click);

  QMenu* tools = menuBar()->addMenu(QStringLiteral("&Tools"));
  tools->setObjectName(QStringLiteral("mnuTools"));
  addAction(tools, "mnuHHC", QStringLiteral("&Hyper Hand Control"),
            QKeySequence(Qt::CTRL | Qt::Key_H), &TavorineListMain::mnuHHC_Click);
  addAction(tools, "mnuEditUserList", QStringLiteral("&Edit User Supplied Objects"), {},
            &TavorineListMain::mnuEditUserList_Click);
  addAction(tools, "mnuAlignStars", QStringLiteral("&Alignment Star Chart"), {},
            &TavorineListMain::mnuAlignStars_Click);
  mnuRedScreen =
      addAction(tools, "mnuRedScreen", QStringLiteral("&Red Screen"),
                QKeySequence(Qt::CTRL | Qt::Key_R), &TavorineListMain::mnuRedScreen_Click);
  mnuRedScreen->setCheckable(true);
  // At the telescope Ctrl+R must work from whichever window has the focus (the help too).
  mnuRedScreen->setShortcutContext(Qt::ApplicationShortcut);
  tools->addSeparator()->setObjectName(QStringLiteral("mnuSep"));
  addAction(tools, "mnuSetup", QStringLiteral("&Setup"), {}, &TavorineListMain::mnuSetup_Click);

  windowMenu_ = menuBar()->addMenu(QStringLiteral("&Window"));
  windowMenu_->setObjectName(QStringLiteral("mnuWindow"));
  connect(windowMenu_, &QMenu::aboutToShow, this, &TavorineListMain::fillWindowMenu);
  fillWindowMenu();

  QMenu* help = menuBar()->addMenu(QStringLiteral("&Help"));
  help->setObjectName(QStringLiteral("mnuHelp"));
  addAction(help, "mnuHelpTopics", QStringLiteral("&Help Topics"), QKeySequence(Qt::Key_F1),
            &TavorineListMain::mnuHelpTopics_Click);
  help->addSeparator()->setObjectName(QStringLiteral("mnuSep2"));
  addAction(help, "mnuTechSupport", QStringLiteral("&Technical Support"), {},
            &TavorineListMain::mnuTechSupport_Click);
  addAction(help, "mnuLicense", QStringLiteral("Software &License"), {},
            &TavorineListMain::mnuLicense_Click);
  help->addSeparator()->setObjectName(QStringLiteral("mnuSep4"));
  addAction(help, "mnuAbout", QStringLiteral("&About Tavorine..."), {},
            &TavorineListMain::mnuAbout_Click);
}

void TavorineListMain::fillWindowMenu() {
  windowMenu_->clear();
  addAction(windowMenu_, "mnuCascade", QStringLiteral("&Cascade"), {},
            &TavorineListMain::mnuCascade_Click);
  addAction(windowMenu_, "mnuTile", QStringLiteral("&Tile"), {}, &TavorineListMain::mnuTile_Click);
  const QList<QMdiSubWindow*> children = mdi_->subWindowList();
  if (!children.isEmpty()) windowMenu_->addSeparator();
  int n = 1;
  for (QMdiSubWindow* child : children) {
    QAction* a =
        windowMenu_->addAction(QStringLiteral("&%1 %2").arg(n++).arg(child->windowTitle()));
    a->setCheckable(true);
    a->setChecked(child == mdi_->activeSubWindow());
    connect(a, &QAction::triggered, this, [this, child] { mdi_->setActiveSubWindow(child); });
  }
}

void TavorineListMain::buildToolbar() {
  QToolBar* bar = addToolBar(QStringLiteral("Toolbar"));
  bar->setObjectName(QStringLiteral("tbToolbar"));
  bar->setMovable(false);
  bar->setIconSize(QSize(28, 28));

  struct Button {
    const char* name;
    const char* tip;
    const char* icon;
    void (TavorineListMain::*slot)();
  };
  const Button buttons[] = {
      {"cmdNew", "New List", "new", &TavorineListMain::mnuNew_Click},
      {"cmdOpen", "Open Existing List", "open", &TavorineListMain::mnuOpen_Click},
      {"cmdPrint", "Print", "print", &TavorineListMain::mnuPrint_Click},
      {"cmdHHC", "Hyper Hand Control", "hhc", &TavorineListMain::mnuHHC_Click},
      {"cmdAlignStars", "Alignment Star Chart", "align", &TavorineListMain::mnuAlignStars_Click},
      {"cmdRedScreen", "Red Screen", "redscreen", nullptr},
  };
  for (const Button& b : buttons) {
    auto* button = new QToolButton(bar);
    button->setObjectName(QString::fromLatin1(b.name));
    button->setToolTip(QString::fromLatin1(b.tip));
    button->setText(QString::fromLatin1(b.tip));
    button->setIcon(QIcon(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(b.icon))));
    button->setAutoRaise(true);
    button->setToolButtonStyle(Qt::ToolButtonIconOnly);
    if (b.slot) {
      auto slot = b.slot;
      connect(button, &QToolButton::clicked, this, [this, slot] { (this->*slot)(); });
    } else {
      // The Red Screen button goes through the menu entry, which keeps the check mark.
      connect(button, &QToolButton::clicked, mnuRedScreen, &QAction::trigger);
    }
    bar->addWidget(button);
    if (QByteArray(b.name) == "cmdPrint") {
      cmdPrint = button;
      button->setEnabled(false);
    }
  }
  bar->addSeparator();
  bar->addWidget(buildPositionPanel());
}

QWidget* TavorineListMain::buildPositionPanel() {
  auto* panel = new QWidget(this);
  panel->setObjectName(QStringLiteral("picPosition"));
  auto* grid = new QGridLayout(panel);
  grid->setContentsMargins(6, 0, 6, 0);
  grid->setHorizontalSpacing(4);
  grid->setVerticalSpacing(2);

  // Last read position.
  grid->addWidget(label(panel, QStringLiteral("RA")), 0, 0);
  grid->addWidget(field(panel, "txtRAHour", 32, true), 0, 1);
  grid->addWidget(field(panel, "txtRAMin", 44, true), 0, 2);
  grid->addWidget(label(panel, QStringLiteral("Dec")), 0, 4);
  grid->addWidget(field(panel, "txtDecSign", 22, true), 0, 5);
  grid->addWidget(field(panel, "txtDecDeg", 32, true), 0, 6);
  grid->addWidget(field(panel, "txtDecMin", 32, true), 0, 7);
  auto* getRA = new QPushButton(QStringLiteral("Get Scope &Position"), panel);
  getRA->setObjectName(QStringLiteral("cmdGetRA"));
  connect(getRA, &QPushButton::clicked, this, [this] { cmdGetRA_Click(); });
  grid->addWidget(getRA, 0, 9);

  // Quick GoTo target.
  grid->addWidget(label(panel, QStringLiteral("RA")), 1, 0);
  QLineEdit* raHour = field(panel, "txtGotoRAHour", 32);
  QLineEdit* raMin = field(panel, "txtGotoRAMin", 44);
  QLineEdit* raSec = field(panel, "txtGoToRASec", 32);
  grid->addWidget(raHour, 1, 1);
  grid->addWidget(raMin, 1, 2);
  grid->addWidget(raSec, 1, 3);
  grid->addWidget(label(panel, QStringLiteral("Dec")), 1, 4);
  auto* sign = new QPushButton(QStringLiteral("+"), panel);
  sign->setObjectName(QStringLiteral("cmdDecSign"));
  sign->setFixedWidth(24);
  connect(sign, &QPushButton::clicked, this, [this] { cmdDecSign_Click(); });
  grid->addWidget(sign, 1, 5);
  QLineEdit* decSign = field(panel, "txtGotoDecSign", 22);
  decSign->setText(QStringLiteral("+"));
  decSign->hide();  // the button shows the sign it holds
  QLineEdit* decDeg = field(panel, "txtGotoDecDeg", 32);
  QLineEdit* decMin = field(panel, "txtGotoDecMin", 32);
  QLineEdit* decSec = field(panel, "txtGotoDecSec", 32);
  grid->addWidget(decDeg, 1, 6);
  grid->addWidget(decMin, 1, 7);
  grid->addWidget(decSec, 1, 8);
  for (QLineEdit* e : {raHour, raMin, decDeg, decMin, decSec}) SelectAllOnFocus(e);
  auto* quick = new QPushButton(QStringLiteral("&Quick GoTo"), panel);
  quick->setObjectName(QStringLiteral("cmdQuickGoto"));
  connect(quick, &QPushButton::clicked, this, [this] { cmdQuickGoto_Click(); });
  grid->addWidget(quick, 1, 9);
  grid->setColumnStretch(10, 1);
  return panel;
}

void TavorineListMain::start() {
  LoadStartupState(state_);
  redScreen_.snapshot();
  refreshRecentMenu();
  show();
  if (state_.settings.FirstRun == 1) mnuSetup_Click();
  setListCommandsEnabled(state_.OpenFileCount > 0);
}

void TavorineListMain::setListCommandsEnabled(bool enabled) {
  mnuPrint->setEnabled(enabled);
  cmdPrint->setEnabled(enabled);
  mnuExport->setEnabled(enabled);
  mnuImportCurrent->setEnabled(enabled);
  mnuImporthcTour->setEnabled(enabled);
}

void TavorineListMain::refreshRecentMenu() {
  mnuSepMRU->setVisible(state_.MRUSeparatorShown);
  for (int i = 0; i < 5; ++i) {
    if (state_.MRUShown[i]) mnuMRU[i]->setText(state_.MRUFiles[i].title);
    mnuMRU[i]->setVisible(state_.MRUShown[i]);
  }
}

// Exit ends the process at once: open lists are not closed one by one, so they do not enter
// the recent-file table (the close box does that).
void TavorineListMain::mnuExit_Click() {
  RunGuarded(state_.prompter(), [&] {
    redScreen_.restoreForExit();
    quitApplication();
  });
}

void TavorineListMain::closeEvent(QCloseEvent* event) {
  mdi_->closeAllSubWindows();
  if (!mdi_->subWindowList().isEmpty()) {
    event->ignore();
    return;
  }
  event->accept();
  mnuExit_Click();
}

QString TavorineListMain::runListFileDialog(bool save, const QString& title,
                                            const QString& folder) {
  QFileDialog dialog(this, title, folder, ListFileFilter());
  dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  dialog.setOption(QFileDialog::DontConfirmOverwrite);  // the program asks its own question
  dialog.setOption(QFileDialog::ReadOnly, false);
  if (save) dialog.setDefaultSuffix(QStringLiteral("tlf"));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return QString();
  return dialog.selectedFiles().constFirst();
}

void TavorineListMain::mnuNew_Click() {
  if (const auto request = NewListRequest(state_, chooseListFile)) openListWindow(*request);
}

void TavorineListMain::mnuOpen_Click() {
  if (const auto request = OpenListRequest(state_, chooseListFile)) openListWindow(*request);
}

void TavorineListMain::mnuMRU_Click(int index) {
  if (const auto request = RecentListRequest(state_, index)) openListWindow(*request);
}

void TavorineListMain::openListWindow(const ListDocumentRequest& request) {
  setText("txtFileName", request.path);
  setText("txtFileTitle", request.title);
  const int slot = RegisterOpen(state_, request.title, request.path);
  const Hourglass hourglass;
  const ListVariant variant = UseCompactListWindow(screenHeightTwips())
                                  ? ListVariant::CurrentListFixed
                                  : ListVariant::CurrentList;
  CurrentList* child = nullptr;
  const bool loaded =
      RunGuarded(state_.prompter(), [&] { child = new CurrentList(variant, state_, *this); });
  if (!loaded) {
    // A document that cannot be shown does not keep one of the nine places.
    RegisterClose(state_, request.path, slot);
    return;
  }
  child->setSlot(slot);
  child->openEditor = [this](CurrentList& list) {
    ShowEditList(state_, *this, list.documentPath(), list.windowTitle(), this);
  };
  if (listWindowOpened) listWindowOpened(*child);
  auto* frame = new QMdiSubWindow;
  frame->setAttribute(Qt::WA_DeleteOnClose);
  frame->setWidget(child);
  frame->setWindowTitle(child->windowTitle());
  frame->setWindowIcon(windowIcon());
  mdi_->addSubWindow(frame);
  frame->show();
  const ListFormLayout& form = ListFormLayoutFor(variant);
  const int clientHeight = TwipsToPixels(form.openHeight, child);
  frame->resize(TwipsToPixels(form.openWidth, child),
                frame->height() - child->height() + clientHeight);
  frame->move(0, frame->y());
  mdi_->setActiveSubWindow(frame);
  if (child->firstActivatePending()) child->Form_Activate();
  setListCommandsEnabled(true);
}
void TavorineListMain::mnuImporthcTour_Click() {
  exchange_->importIntoList(ImportKind::TourIntoList);
}
void TavorineListMain::mnuImportCurrent_Click() {
  exchange_->importIntoList(ImportKind::CsvIntoList);
}
void TavorineListMain::mnuImportUser_Click() { exchange_->importIntoUserList(); }
void TavorineListMain::mnuExportBRLT_Click() { exchange_->exportList(ExportKind::Brillet); }
void TavorineListMain::mnuExportHC_Click() {
  state_.prompter().message(AppTitle(), QStringLiteral("For future developments."));
}
void TavorineListMain::mnuExportPlanetarium_Click() { exchange_->exportList(ExportKind::Palm); }
void TavorineListMain::mnuExporthcTour_Click() { exchange_->exportList(ExportKind::Tour); }
void TavorineListMain::mnuExportCSV_Click() { exchange_->exportList(ExportKind::Csv); }
// The list of the active list window, found through its hidden document fields.
void TavorineListMain::mnuPrint_Click() {
  RunGuarded(state_.prompter(), [&] {
    QMdiSubWindow* child = mdi_->currentSubWindow();
    if (!child || !child->widget()) return;
    const auto* source = child->widget()->findChild<QLineEdit*>(QStringLiteral("txtDataSource"));
    const auto* title = child->widget()->findChild<QLineEdit*>(QStringLiteral("txtObserverTitle"));
    if (!source || !title) return;
    ShowPrintOptions(state_, source->text(), title->text(), this);
  });
}
// One hand control window beside the frame; closing it unloads it.
void TavorineListMain::mnuHHC_Click() {
  RunGuarded(state_.prompter(), [&] {
    Hourglass hourglass;
    if (!hhc_) {
      hhc_ = new HHC(state_, link_, this);
      hhc_->showHelp = [this] { mnuHelpTopics_Click(); };
    }
    hhc_->show();
    hhc_->raise();
    hhc_->activateWindow();
    if (hhc_->firstActivatePending()) hhc_->Form_Activate();
  });
}
void TavorineListMain::mnuEditUserList_Click() {
  state_.EditUserListCaller = QStringLiteral("Menu");
  RunGuarded(state_.prompter(), [&] { ShowEditUserList(state_, this); });
}
// One alignment chart, a child window like the lists; closing it unloads it.
void TavorineListMain::mnuAlignStars_Click() {
  RunGuarded(state_.prompter(), [&] {
    if (alignStars_) {
      mdi_->setActiveSubWindow(qobject_cast<QMdiSubWindow*>(alignStars_->parentWidget()));
      return;
    }
    auto* chart = new AlignStars(state_);
    alignStars_ = chart;
    chart->printRequested = [this, chart] { ShowAlignPrintOptions(state_, chart); };
    auto* frame = new QMdiSubWindow;
    frame->setAttribute(Qt::WA_DeleteOnClose);
    frame->setWidget(chart);
    frame->setWindowTitle(chart->windowTitle());
    frame->setWindowIcon(windowIcon());
    mdi_->addSubWindow(frame);
    connect(mdi_, &QMdiArea::subWindowActivated, chart, [chart, frame](QMdiSubWindow* w) {
      if (w == frame) chart->Form_Activate();
    });
    frame->resize(TwipsToPixels(AlignStarsWidth, chart), TwipsToPixels(AlignStarsHeight, chart));
    frame->show();
    mdi_->setActiveSubWindow(frame);
  });
}
// Looked for in the toolbar alone: the alignment chart has a Print button of the same name.
QList<QAbstractButton*> TavorineListMain::toolbarButtons() const {
  const auto* bar = findChild<QToolBar*>(QStringLiteral("tbToolbar"));
  QList<QAbstractButton*> out;
  for (const char* name :
       {"cmdNew", "cmdOpen", "cmdPrint", "cmdHHC", "cmdAlignStars", "cmdRedScreen"})
    out << bar->findChild<QAbstractButton*>(QString::fromLatin1(name));
  return out;
}

// The menu entry keeps its own check mark; it and the mode start cleared together.
void TavorineListMain::mnuRedScreen_Click() {
  RunGuarded(state_.prompter(), [&] { redScreen_.toggle(toolbarButtons()); });
}

void TavorineListMain::mnuSetup_Click() {
  RunGuarded(state_.prompter(), [&] {
    Setup dialog(state_, this);
    dialog.exec();
  });
}
void TavorineListMain::mnuCascade_Click() { mdi_->cascadeSubWindows(); }
// Horizontal tiles: the children stacked one above the other, each the full width.
void TavorineListMain::mnuTile_Click() {
  const QList<QMdiSubWindow*> children = mdi_->subWindowList();
  if (children.isEmpty()) return;
  const QRect area = mdi_->viewport()->rect();
  const int height = area.height() / children.size();
  int top = 0;
  for (QMdiSubWindow* child : children) {
    if (child->isMaximized() || child->isMinimized()) child->showNormal();
    child->setGeometry(0, top, area.width(), height);
    top += height;
  }
}
// One help window: raised again when it is already open.
void TavorineListMain::mnuHelpTopics_Click() {
  RunGuarded(state_.prompter(), [&] {
    if (!help_) help_ = new HelpWindow(state_, this);
    help_->showAndRaise();
  });
}

void TavorineListMain::mnuTechSupport_Click() {
  RunGuarded(state_.prompter(), [&] { frmSupport(this).exec(); });
}

void TavorineListMain::mnuLicense_Click() {
  RunGuarded(state_.prompter(), [&] { frmLicense(state_, this).exec(); });
}

void TavorineListMain::mnuAbout_Click() {
  RunGuarded(state_.prompter(), [&] { frmAbout(state_, this).exec(); });
}

QString TavorineListMain::text(const char* name) const {
  return findChild<QLineEdit*>(QString::fromLatin1(name))->text();
}

void TavorineListMain::setText(const char* name, const QString& value) {
  findChild<QLineEdit*>(QString::fromLatin1(name))->setText(value);
}

void TavorineListMain::switchPositionTimers() {
  timerGetRADec->stop();
  timerRestartGetRADec->start();
}

// The position panel's fields are looked for in the panel alone: the child windows have
// fields of the same names.
QWidget* TavorineListMain::positionPanel() const {
  return findChild<QWidget*>(QStringLiteral("picPosition"));
}

void TavorineListMain::cmdGetRA_Click() { ShowScopePosition(state_, link_, positionPanel()); }

void TavorineListMain::cmdQuickGoto_Click() {
  QuickGoto(state_, link_, QuickGotoFieldsOf(positionPanel()), GotoPanel::MainWindow,
            [this] { switchPositionTimers(); });
}

void TavorineListMain::cmdDecSign_Click() { FlipDecSignOf(positionPanel()); }
