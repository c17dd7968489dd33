#pragma once

#include <QCursor>
#include <QTabWidget>
#include <array>
#include <memory>

class AppState;
class Database;
class DataGrid;
class QLineEdit;
class QPushButton;
class Recordset;

// The windows that carry the catalog browser; they differ in column widths and in what a
// page's grid does with the mouse.
enum class BrowserHost { EditList, HHC };

// The catalog browser: the tab control SSTab1 with the eight catalog pages, each a grid on one
// catalog table with its search box, options and find buttons. The pages read their query
// state from AppState::Pages, so a sort or a filter set in one window holds in the other.
class CatalogBrowser : public QTabWidget {
  Q_OBJECT
 public:
  CatalogBrowser(AppState& state, BrowserHost host, QWidget* parent = nullptr);
  ~CatalogBrowser() override;

  // (Re)sets every page's record source from the shared query state and opens it, in the
  // order Messier, Caldwell, NGC, Double Stars, Deep-sky, User Supplied, SAO Stars, IC.
  void bindPages();
  // The column layout of all eight grids for this host.
  void applyLayouts();
  // Every page back on its number option, search boxes as they are.
  void resetSearchOptions();
  // Requeries one page (after the user objects were edited).
  void requeryPage(int tab);

  // By tab index 0..7. The recordset is null while a page could not be opened.
  Recordset* pageRecordset(int tab) const;
  DataGrid* pageGrid(int tab) const;
  QLineEdit* searchBox(int tab) const;
  // Puts a button of the host window (an add button) on a page, beside its find buttons.
  void addPageButton(int tab, QPushButton* button);

  // After the filter was switched or the observing date changed: with FilterOn the pages get
  // the altitude filter for the sidereal time (degrees) under the filter pointer, without it
  // every PageWhere becomes "WHERE True" under the hourglass; then all pages are bound again
  // and laid out.
  void refreshFilter(double siderealDegrees);

  // The pointer shown while filter queries are built and run.
  static QCursor filterBusyCursor();

  BrowserHost host() const { return host_; }
  // The search box of the page showing, for the hosts' tab change and focus rules.
  QLineEdit* currentSearchBox() const { return searchBox(currentIndex()); }

 signals:
  void pageRowChanged(int tab);  // a page grid changed row (after the selection rule)
  void pageClicked(int tab);
  void pageDoubleClicked(int tab);
  void pageEntered(int tab);  // a page grid got the focus

 private:
  struct Page;
  void buildPage(int tab);
  void bindPage(int tab);
  void openPage(int tab, const QString& recordSource);
  std::shared_ptr<Database> databaseFor(int tab);
  void setDefaultFind(int tab, QPushButton* button);
  void find(int tab, int which);
  void headerClick(int tab, int column);
  void rowChanged(int tab, const QVariant& lastBookmark);
  void editUserObjects();
  void applyLayout(int tab);
  bool eventFilter(QObject* watched, QEvent* event) override;

  AppState& state_;
  BrowserHost host_;
  std::array<std::unique_ptr<Page>, 8> pages_;
  std::shared_ptr<Database> catalogDb_;
  std::shared_ptr<Database> userDb_;
  // Mouse keys of the last press on a page grid (list editor only).
  bool ShiftHeld = false;
  bool CtrlHeld = false;
};
