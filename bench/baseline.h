#pragma once

/// The baseline that a benchmark states its ratio to, measured in the same run.

#include <algorithm>
#include <chrono>

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

}  // namespace qvbench
