#pragma once

#include <QDialog>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "lists/listsort.h"
#include "lists/listview.h"
#include "sky/skycalc.h"

class AppState;
class Database;
class DataGrid;
class QLabel;
class QLineEdit;
class QMdiSubWindow;
class QPushButton;
class QTimer;
class Recordset;
class SkyWidget;
class TavorineListMain;

// The small modal question of "Clear Go Marks": each button stores its word in
// ClearGotoChoice and closes the dialog. Closing it any other way is "None".
class ClearGoto : public QDialog {
  Q_OBJECT
 public:
  ClearGoto(AppState& state, QWidget* parent = nullptr);

 private:
  void choose(const QString& word);
  AppState& state_;
};

// The window on one open list document, in either of its two forms (the variant is also its
// objectName). It reads its document from the main window's hand-over fields when it is made.
class CurrentList : public QWidget {
  Q_OBJECT
 public:
  CurrentList(ListVariant variant, AppState& state, TavorineListMain& main,
              QWidget* parent = nullptr);
  ~CurrentList() override;

  ListVariant variant() const { return variant_; }
  QString documentPath() const;
  QString documentTitle() const;
  void setSlot(int slot) { slot_ = slot; }
  int slot() const { return slot_; }

  // Shows the list editor on this window (modal); the timer is stopped while it is up.
  std::function<void(CurrentList&)> openEditor;

  Recordset* datPrimary() const { return datPrimary_.get(); }
  DataGrid* grdDataGrid() const { return grid_; }
  SkyWidget* Sky() const { return sky_; }
  QTimer* timerAltitude() const { return timer_; }
  const ListSortState& sortState() const { return sort_; }
  const std::vector<SkyCoordinates>& mapStars() const { return stars_; }
  bool firstActivatePending() const { return FirstActivate_; }

  // The window's routines.
  void Form_Activate();
  void ApplyListColumns();
  void RefreshAltitude();
  void PlotObject();
  void GoToFirstRow();
  void GoToLastRow();
  void cmdGoto_Click();
  void cmdNext_Click();
  void cmdPrevious_Click();
  void cmdObserved_Click();
  void cmdClearGoto_Click();
  void cmdEdit_Click();
  // Reads the document again after another window changed it (the editor, an import): the
  // grid's layout, the first row and the counter.
  void RequeryList();
  void cmdCDC_Click();
  void grdDataGrid_HeadClick(int column);
  void timerAltitude_Timer();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void buildControls();
  QWidget* buildDetails();
  void bindPrimary();
  void refreshDetails();
  void writeCounter();
  void rowChanged();
  // The first row in the details, altitude, counter and chart; an empty counter for no rows.
  void showFirstRow();
  // The current row in the details, altitude, counter and chart; a cleared counter when empty.
  void showCurrentRow();
  void placeControls();
  QMdiSubWindow* frame() const;
  int twipsOf(int pixels) const;
  QLineEdit* text(int n) const { return texts_[size_t(n - 1)]; }

  ListVariant variant_;
  AppState& state_;
  TavorineListMain& main_;
  int slot_ = 0;
  bool closed_ = false;
  bool resizing_ = false;

  ListSortState sort_;
  bool FirstActivate_ = true;
  bool FirstCount_ = true;

  std::shared_ptr<Database> document_;
  std::unique_ptr<Recordset> datPrimary_;
  std::vector<SkyCoordinates> stars_;

  DataGrid* grid_ = nullptr;
  SkyWidget* sky_ = nullptr;
  QTimer* timer_ = nullptr;
  QWidget* details_ = nullptr;
  std::vector<QLineEdit*> texts_;  // Text1..Text13
  QLineEdit* txtRecordCounter = nullptr;
  QLineEdit* txtDataSource = nullptr;
  QLineEdit* txtObserverTitle = nullptr;
  QLineEdit* txtShortFileName = nullptr;
};
