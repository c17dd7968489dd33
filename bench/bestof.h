#pragma once

#include <QElapsedTimer>
#include <algorithm>

// The shortest of several runs of f, in milliseconds.
template <typename F>
double bestOf(int runs, F&& f) {
  double best = 1e18;
  for (int i = 0; i < runs; ++i) {
    QElapsedTimer t;
    t.start();
    f();
    best = std::min(best, t.nsecsElapsed() / 1e6);
  }
  return best;
}
