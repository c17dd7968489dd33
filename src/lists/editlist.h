#pragma once

#include <QDialog>
#include <array>
#include <functional>
#include <memory>
#include <vector>

#include "sky/skycalc.h"

class AppState;
class CatalogBrowser;
class Database;
class DataGrid;
class QAction;
class QLabel;
class QLineEdit;
class QPushButton;
class Recordset;
class SkyWidget;
class TavorineListMain;

// EditList: the modal window in which a list document is composed. On the left the sky chart
// of the observing date and the list; on the right the catalog browser, whose rows are added
// to the list. Every change goes straight to the document.
class EditList : public QDialog {
  Q_OBJECT
 public:
  EditList(AppState& state, TavorineListMain& main, const QString& documentPath,
           const QString& listWindowCaption, QWidget* parent = nullptr);
  ~EditList() override;

  // The dialogs the editor opens; tests replace them.
  std::function<void(QWidget*)> showUserDateDialog;
  std::function<void(QWidget*)> showFilterDialog;

  Recordset* listRecordset() const { return datPrimaryRS.get(); }
  CatalogBrowser* browser() const { return SSTab1; }
  SkyWidget* sky() const { return Sky; }
  int markerSource() const { return MarkerSource; }

  // The routines of the window, for the buttons and for whoever drives it.
  void Form_Activate();
  void PlotSelected();
  void DrawSkyChart();
  void ApplyEditorColumns();
  void AddSelectedObjects(int tab);

  void done(int result) override;

 protected:
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void load(const QString& documentPath, const QString& listWindowCaption);
  void buildControls();
  void layoutControls();
  void refreshPages();
  void writeCounter();
  void setPointer(int pointer);
  void setEditUserListEnabled(bool enabled);

  void grdDataGrid_RowColChange();
  void listSelected();
  void catalogSelected();
  void SSTab1_Click();
  void cmdDelete_Click();
  void cmdMove_Click(bool down);
  void cmdAutoSort_Click();
  void cmdUserDate_Click();
  void cmdFilterAlt_Click();
  void cmdClose_Click();

  AppState& state_;
  TavorineListMain& main_;

  bool FirstActivate = true;
  bool FirstCount = true;
  int MarkerSource = 2;
  bool quiet_ = false;  // a batch is running: no marker per row
  bool closed_ = false;
  int pointerDepth_ = 0;

  std::shared_ptr<Database> document_;
  std::shared_ptr<Database> catalog_;
  std::unique_ptr<Recordset> datPrimaryRS;
  std::vector<SkyCoordinates> mapStars_;  // MapStars, read at load

  SkyWidget* Sky = nullptr;
  QLabel* lblUserDate = nullptr;
  QPushButton* cmdUserDate = nullptr;
  QLabel* Label2 = nullptr;
  DataGrid* grdDataGrid = nullptr;
  QPushButton* cmdMoveUp = nullptr;
  QPushButton* cmdMoveDown = nullptr;
  QLineEdit* txtRecordCounter = nullptr;
  QPushButton* cmdDelete = nullptr;
  QPushButton* cmdAutoSort = nullptr;
  QPushButton* cmdClose = nullptr;
  QPushButton* cmdFilterAlt = nullptr;
  QLabel* lblFilter = nullptr;
  CatalogBrowser* SSTab1 = nullptr;
  std::array<QPushButton*, 8> addButtons_{};
};

// Opens the editor modally on a list window's document and returns when it is closed.
void ShowEditList(AppState& state, TavorineListMain& main, const QString& documentPath,
                  const QString& listWindowCaption, QWidget* parent);
