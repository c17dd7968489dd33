#pragma once

#include <QString>
#include <array>

#include "catalog/columnlayout.h"

class AppState;

// The eight catalog pages of the list editor and the hand control window, with everything in
// which they differ. Pages have two numbers: the tab index (their place on the tabs) and the
// query set number (their set of PageOrderBy, PageWhere, PageFilter, PageSortField).
struct CatalogPage {
  enum class Source { Catalog, UserList };

  int tab = 0;
  int querySet = 0;
  QString caption;
  QString table;
  Source source = Source::Catalog;
  QString selectLiteral;  // "SELECT ... From <table> "
  bool categoryFirst = false;

  // Control names.
  QString dataControl, grid, searchBox;
  QString numberOption, nameOption;
  QString numberOptionCaption, nameOptionCaption;
  QString searchFrameCaption;
  QString findFirst, findNext, findPrev;
  QString addButton;

  ColumnLayouts editListColumns;
  ColumnLayouts hhcColumns;

  // The grid's current column after a find by the number option and by the name option.
  int findColumnNumber = 0;
  int findColumnName = 1;

  bool isDoubleStars() const { return querySet == 1; }
};

// By tab index.
const std::array<CatalogPage, 8>& CatalogPages();
const CatalogPage& PageByTab(int tab);
const CatalogPage& PageByQuerySet(int querySet);

// The record source of a catalog page: its SELECT literal, PageWhere, a blank, PageOrderBy, ";".
QString PageRecordSource(const AppState& state, int querySet);

// The path of the database a page reads.
QString PageDatabasePath(const AppState& state, const CatalogPage& page);

// Copies the empty user table (TavorineUserList.tmp of the program folder) to the user's list
// path when no such file is there yet. Raises AppError when the copy fails.
void EnsureUserList(AppState& state);
