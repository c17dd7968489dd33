#pragma once

#include <QString>
#include <optional>

#include "catalog/pagesort.h"

// The sort of one list window's view. It never touches DisplayOrder and is not stored: a
// window always opens in DisplayOrder.
struct ListSortState {
  QString ListSortKey = QStringLiteral("ORDER BY DisplayOrder");
  QString ListSortField = QStringLiteral("DisplayOrder");
};

// The key of a clicked grid column 0 to 14; a split column (RA minutes, Dec degrees and
// minutes, Number) acts as its first half. Nothing for a column outside the grid.
std::optional<SortChoice> ListSortChoice(int column);

// A click on the head of a column: sets ListSortKey and ListSortField by the toggling rule.
// Returns whether the column had a key.
bool ListHeaderClick(ListSortState& state, int column);

// The record source of the window's data control for a sort clause.
QString ListRecordSource(const QString& listSortKey);
