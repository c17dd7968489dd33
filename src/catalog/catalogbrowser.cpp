#include "catalog/catalogbrowser.h"

#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "catalog/catalogpages.h"
#include "catalog/datagrid.h"
#include "catalog/recordset.h"
#include "core/appstate.h"

struct CatalogBrowser::Page {
  QWidget* widget = nullptr;
  DataGrid* grid = nullptr;
  QLineEdit* search = nullptr;
  std::unique_ptr<Recordset> recordset;
};

CatalogBrowser::CatalogBrowser(AppState& state, BrowserHost host, QWidget* parent)
    : QTabWidget(parent), state_(state), host_(host) {
  setObjectName(QStringLiteral("SSTab1"));
  for (int tab = 0; tab < 8; ++tab) {
    const CatalogPage& def = PageByTab(tab);
    auto page = std::make_unique<Page>();
    page->widget = new QWidget(this);
    auto* layout = new QVBoxLayout(page->widget);
    page->search = new QLineEdit(page->widget);
    page->search->setObjectName(def.searchBox);
    page->grid = new DataGrid(page->widget);
    page->grid->setObjectName(def.grid);
    layout->addWidget(page->search);
    layout->addWidget(page->grid);
    addTab(page->widget, def.caption);
    pages_[tab] = std::move(page);
  }
}

CatalogBrowser::~CatalogBrowser() = default;

void CatalogBrowser::bindPages() {}
void CatalogBrowser::applyLayouts() {}
void CatalogBrowser::resetSearchOptions() {}
void CatalogBrowser::requeryPage(int) {}
Recordset* CatalogBrowser::pageRecordset(int tab) const { return pages_[tab]->recordset.get(); }
DataGrid* CatalogBrowser::pageGrid(int tab) const { return pages_[tab]->grid; }
QLineEdit* CatalogBrowser::searchBox(int tab) const { return pages_[tab]->search; }
void CatalogBrowser::addPageButton(int tab, QPushButton* button) {
  pages_[tab]->widget->layout()->addWidget(button);
}
