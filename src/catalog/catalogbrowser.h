#pragma once

#include <QTabWidget>
#include <array>
#include <memory>

class AppState;
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

 signals:
  void pageRowChanged(int tab);     // a page grid changed row (after the selection rule)
  void pageClicked(int tab);
  void pageDoubleClicked(int tab);
  void pageEntered(int tab);        // a page grid got the focus

 private:
  struct Page;
  AppState& state_;
  BrowserHost host_;
  std::array<std::unique_ptr<Page>, 8> pages_;
};
