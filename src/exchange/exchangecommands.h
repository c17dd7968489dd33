#pragma once

#include "exchange/exportwindows.h"
#include "exchange/importwindows.h"

class AppState;
class CurrentList;
class QMdiArea;

// The Export and Import entries of the main window's File menu. The exports and the imports
// into a list work on the active list window, of either form, whose text boxes txtDataSource
// and txtObserverTitle name its document.
class ExchangeCommands {
 public:
  ExchangeCommands(AppState& state, QMdiArea& area, QWidget& owner);

  // The file dialog of the imports; tests replace it.
  ImportFileChooser chooseFile;

  void exportList(ExportKind kind);
  // Stops the list window's altitude timer while the import window is up, then reads the
  // list again.
  void importIntoList(ImportKind kind);
  // Needs no open list.
  void importIntoUserList();

 private:
  CurrentList* activeList() const;

  AppState& state_;
  QMdiArea& area_;
  QWidget& owner_;
};
