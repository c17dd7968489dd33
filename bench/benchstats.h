#pragma once

// What every benchmark prints: a figure measured over several runs on the real clock, beside
// a floor measured in the same runs (a plain loop over the same rows doing the same work), so
// that the ratio reads true on a busy machine.
#include <QElapsedTimer>
#include <QString>
#include <QTextStream>
#include <algorithm>
#include <ctime>
#include <functional>
#include <vector>

namespace bench {

constexpr int Runs = 5;

struct Timings {
  std::vector<double> ms;

  double min() const { return *std::min_element(ms.begin(), ms.end()); }
  double median() const {
    std::vector<double> s = ms;
    std::sort(s.begin(), s.end());
    return s.size() % 2 ? s[s.size() / 2] : (s[s.size() / 2 - 1] + s[s.size() / 2]) / 2;
  }
};

inline double threadCpuMs() {
  timespec t{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
  return t.tv_sec * 1e3 + t.tv_nsec / 1e6;
}

// The wall-clock time of the work, and the processor time this thread spent on it (which the
// other programs on a busy machine do not stretch).
inline void timeIt(const std::function<void()>& work, Timings* wall, Timings* cpu) {
  const double cpu0 = threadCpuMs();
  QElapsedTimer t;
  t.start();
  work();
  wall->ms.push_back(t.nsecsElapsed() / 1e6);
  cpu->ms.push_back(threadCpuMs() - cpu0);
}

// Runs the work and its floor one after the other, Runs times; `prepare` (untimed) runs
// before each of them with the number of the run.
struct Measured {
  Timings figure, floor, figureCpu, floorCpu;
  bool showCpu = true;
};
inline Measured measure(const std::function<void(int)>& work, const std::function<void(int)>& floor,
                        const std::function<void(int)>& prepare = {}) {
  Measured m;
  for (int run = 0; run < Runs; ++run) {
    if (prepare) prepare(run);
    timeIt([&] { work(run); }, &m.figure, &m.figureCpu);
    if (prepare) prepare(run);
    timeIt([&] { floor(run); }, &m.floor, &m.floorCpu);
  }
  return m;
}

inline QString fixed(double v) { return QString::number(v, 'f', v < 10 ? 2 : 1); }

// One line: the figure (min and median), the floor, their ratios and the target. Returns
// whether the target holds (median below it).
inline bool report(QTextStream& out, const QString& what, const Measured& m, double targetMs,
                   const QString& unit = QStringLiteral("ms")) {
  const bool met = targetMs <= 0 || m.figure.median() < targetMs;
  out << what << ": min " << fixed(m.figure.min()) << ", median " << fixed(m.figure.median()) << ' '
      << unit << " | floor min " << fixed(m.floor.min()) << ", median " << fixed(m.floor.median())
      << " | ratio " << QString::number(m.figure.min() / m.floor.min(), 'f', 1) << " (min), "
      << QString::number(m.figure.median() / m.floor.median(), 'f', 1) << " (median)";
  if (targetMs > 0)
    out << " | target < " << fixed(targetMs) << ' ' << unit << (met ? ": met" : ": MISSED");
  if (m.showCpu)
    out << "\n    processor time: median " << fixed(m.figureCpu.median()) << " ms, floor "
        << fixed(m.floorCpu.median()) << " ms, ratio "
        << QString::number(m.figureCpu.median() / m.floorCpu.median(), 'f', 1);
  out << "\n";
  out.flush();
  return met;
}

}  // namespace bench
