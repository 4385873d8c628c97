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

/// The medians of five runs of each work, in turns, in seconds: for work that takes long or drifts with the machine.
template <class... Work>
std::array<double, sizeof...(Work)> medians(Work&&... work) {
  constexpr std::size_t kRuns = 5;
  std::array<std::array<double, kRuns>, sizeof...(Work)> runs;
  for (std::size_t run = 0; run < kRuns; ++run) {
    std::size_t i = 0;
    ((runs[i++][run] = seconds_once(work)), ...);
  }
  std::array<double, sizeof...(Work)> result;
  for (std::size_t i = 0; i < result.size(); ++i) {
    std::sort(runs[i].begin(), runs[i].end());
    result[i] = runs[i][kRuns / 2];
  }
  return result;
}

}  // namespace qvbench
