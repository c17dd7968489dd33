#pragma once

#include <QMainWindow>
#include <QPointer>
#include <array>
#include <functional>
#include <memory>

#include "core/redscreen.h"
#include "scope/scopecontrol.h"

class AlignStars;
class AppState;
class CurrentList;
class ExchangeCommands;
struct ListDocumentRequest;
class HelpWindow;
class HHC;
class QAction;
class QLineEdit;
class QMdiArea;
class QMenu;
class QPushButton;
class QTimer;
class QToolButton;

// TavorineListMain: the frame of the program. Its menu, its toolbar and position panel, and
// the list windows inside its child area.
class TavorineListMain : public QMainWindow {
  Q_OBJECT
 public:
  explicit TavorineListMain(AppState& state, QWidget* parent = nullptr);
  ~TavorineListMain() override;

  // The load step: start-up state, the recent-file menu, Setup on a first run, the commands
  // that need a list disabled.
  void start();

  // Enables or disables the five commands that need an open list.
  void setListCommandsEnabled(bool enabled);
  // Shows the recent-file entries as the shared table says.
  void refreshRecentMenu();

  QMdiArea* mdiArea() const { return mdi_; }
  AppState& state() const { return state_; }
  ScopeLink& scopeLink() { return link_; }
  // The Export and Import commands (their file dialog is replaced by tests).
  ExchangeCommands& exchange() { return *exchange_; }

  // Stops the old position timers before a slew (they have no action of their own).
  void switchPositionTimers();

  // What ends the process; tests replace it.
  std::function<void()> quitApplication;

  // The file dialog of New (save) and Open; an empty answer is a cancelled dialog. Tests
  // replace it.
  std::function<QString(bool save, const QString& title, const QString& folder)> chooseListFile;
  // The screen's height in twips, which chooses the list window's form. Tests replace it.
  std::function<int()> screenHeightTwips;
  // Called with each list window as it opens (the list editor is wired here).
  std::function<void(CurrentList&)> listWindowOpened;

 public slots:
  void mnuExit_Click();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void buildMenus();
  void buildToolbar();
  QWidget* buildPositionPanel();
  QAction* addAction(QMenu* menu, const char* name, const QString& caption,
                     const QKeySequence& shortcut, void (TavorineListMain::*slot)());
  void fillWindowMenu();
  void openListWindow(const ListDocumentRequest& request);
  QString runListFileDialog(bool save, const QString& title, const QString& folder);

  // Menu handlers.
  void mnuNew_Click();
  void mnuOpen_Click();
  void mnuMRU_Click(int index);
  void mnuImporthcTour_Click();
  void mnuImportCurrent_Click();
  void mnuImportUser_Click();
  void mnuExportBRLT_Click();
  void mnuExportHC_Click();
  void mnuExportPlanetarium_Click();
  void mnuExporthcTour_Click();
  void mnuExportCSV_Click();
  void mnuPrint_Click();
  void mnuHHC_Click();
  void mnuEditUserList_Click();
  void mnuAlignStars_Click();
  void mnuRedScreen_Click();
  void mnuSetup_Click();
  void mnuCascade_Click();
  void mnuTile_Click();
  void mnuHelpTopics_Click();
  void mnuTechSupport_Click();
  void mnuLicense_Click();
  void mnuAbout_Click();
  void cmdGetRA_Click();
  void cmdQuickGoto_Click();
  void cmdDecSign_Click();

  QList<QAbstractButton*> toolbarButtons() const;
  QWidget* positionPanel() const;
  QString text(const char* name) const;
  void setText(const char* name, const QString& value);

  AppState& state_;
  ScopeLink link_;
  RedScreen redScreen_;
  QPointer<HelpWindow> help_;
  QPointer<AlignStars> alignStars_;
  QPointer<HHC> hhc_;
  std::unique_ptr<ExchangeCommands> exchange_;
  QMdiArea* mdi_ = nullptr;
  QMenu* windowMenu_ = nullptr;
  QAction* mnuExport = nullptr;
  QAction* mnuImportCurrent = nullptr;
  QAction* mnuImporthcTour = nullptr;
  QAction* mnuPrint = nullptr;
  QAction* mnuRedScreen = nullptr;
  QAction* mnuSepMRU = nullptr;
  std::array<QAction*, 5> mnuMRU{};
  QToolButton* cmdPrint = nullptr;
  QTimer* timerGetRADec = nullptr;
  QTimer* timerRestartGetRADec = nullptr;
};
