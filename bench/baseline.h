#pragma once

/// The baseline that a benchmark states its ratio to, measured in the same run.

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>

namespace qvbench {

/// The shortest of three runs of `work`, in seconds.
template <class Work>
double seconds(Work&& work) {
  double best = 1e300;
  for (int i = 0; i < 3; ++i) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
  }
  return best;
}

/// The processor time of one run of work, in seconds: other programs on the machine do not count.
template <class Work>
double seconds_once(Work&& work) {
  const std::clock_t begin = std::clock();
  work();
  return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

/// The shortest run of each work, in turns, in seconds: what others on the machine add to a run does not count. Nine
/// turns, or as many as two seconds hold.
template <class... Work>
std::array<double, sizeof...(Work)> shortest(Work&&... work) {
  std::array<double, sizeof...(Work)> best;
  best.fill(1e300);
  const std::clock_t begin = std::clock();
  for (int turn = 0; turn < 9 || std::clock() - begin < 2 * CLOCKS_PER_SEC; ++turn) {
    std::size_t i = 0;
    (((best[i] = std::min(best[i], seconds_once(work))), ++i), ...);
  }
  return best;
}

}  // namespace qvbench
