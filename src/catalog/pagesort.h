#pragma once

#include <QString>
#include <optional>

#include "core/appstate.h"

// One sortable key of a grid: the state word of its first click with its clause, and the
// state word of its second click with that clause.
struct SortChoice {
  QString stateWord;
  QString firstClause;
  QString secondStateWord;
  QString secondClause;
};

// The toggling rule shared by the catalog pages and the list window: a state other than the
// key's word takes the first clause and that word; the key's own word takes the second clause
// and the second word. A third click therefore finds the second word and starts over.
QString ToggleSort(QString& sortField, const SortChoice& choice);

enum class PageSortKey { Number, Name, Type, Const, Mag, Info, RA, DEC };

// The key of a clicked column of a catalog page, by query set number; nothing for a column
// outside the table (the hidden Category of the one-category pages, for one).
std::optional<PageSortKey> PageSortKeyOfColumn(int querySet, int column);
SortChoice PageSortChoice(int querySet, PageSortKey key);

// A click on the head of a column of a catalog page: sets page.OrderBy and page.SortField by
// the toggling rule. A click outside the table changes nothing; returns whether it sorted.
// The page is rebuilt either way, and its Where stays as it was.
bool PageHeaderClick(PageQuery& page, int querySet, int column);
