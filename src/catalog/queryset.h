#pragma once

// The eight catalog pages by the number of their query set (the index into AppState::Pages).
// The tab index of a page is another numbering; these are the ones the query state uses.
namespace QuerySet {
constexpr int Caldwell = 0;
constexpr int DoubleStars = 1;
constexpr int DeepSky = 2;
constexpr int IC = 3;
constexpr int Messier = 4;
constexpr int NGC = 5;
constexpr int SAO = 6;
constexpr int User = 7;
constexpr int Count = 8;

// Deep-sky and User Supplied hold several categories in one table and show Category first.
constexpr bool HasCategoryColumn(int set) { return set == DeepSky || set == User; }
}  // namespace QuerySet
