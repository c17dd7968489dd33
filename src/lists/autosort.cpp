#include "lists/autosort.h"

#include <algorithm>
#include <cmath>
#include <numeric>

double AutoSortKey(double altitude, double azimuth) {
  const double a = altitude;
  double z = azimuth;
  if (z < 0) z += 360;
  if (a > 65) return 155 + z / 360;
  const double base = std::floor(z / 30) * 30;
  if (z <= 180) return base + a / 90;
  return base + 1 - a / 90;
}

std::vector<int> AutoSortOrder(const std::vector<double>& keys) {
  std::vector<int> order(keys.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&keys](int l, int r) { return keys[l] < keys[r]; });
  return order;
}

std::vector<int> BubbleSortOrder(const std::vector<double>& keys) {
  std::vector<double> key = keys;
  std::vector<int> row(keys.size());
  std::iota(row.begin(), row.end(), 0);
  const int n = static_cast<int>(key.size());
  for (int i = 0; i < n - 1; ++i)
    for (int j = n - 2; j >= i; --j)
      if (key[j] > key[j + 1]) {
        std::swap(key[j], key[j + 1]);
        std::swap(row[j], row[j + 1]);
      }
  return row;
}

std::vector<int> NewDisplayOrders(const std::vector<double>& keys) {
  const std::vector<int> order = AutoSortOrder(keys);
  std::vector<int> display(keys.size());
  for (int position = 0; position < static_cast<int>(order.size()); ++position)
    display[order[position]] = position + 1;
  return display;
}
