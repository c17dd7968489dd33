#pragma once

#include <vector>

// The sweep key of one object from its altitude and azimuth (degrees, azimuth from the south
// through the west) at the observing date: twelve 30-degree slices from south through west,
// north and east; low to high in the western half, high to low in the eastern; objects above
// 65 degrees between the slices at 150 and 180, by their own azimuth.
double AutoSortKey(double altitude, double azimuth);

// The old ranks (0-based) in their new order: ascending key, equal keys in their former
// relative order.
std::vector<int> AutoSortOrder(const std::vector<double>& keys);

// The same order by the exchange sort the list editor has always used; kept as the reference
// the fast one is checked against.
std::vector<int> BubbleSortOrder(const std::vector<double>& keys);

// For the row of each old rank (index 0 is the first row), its new DisplayOrder 1..N.
std::vector<int> NewDisplayOrders(const std::vector<double>& keys);
