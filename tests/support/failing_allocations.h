#pragma once

/// Makes allocations that may fail (`new (std::nothrow)`) fail, for as long as the object lives.

namespace qvtest {

class FailingAllocations {
 public:
  /// Lets the first `successes` of them pass.
  explicit FailingAllocations(int successes = 0);
  ~FailingAllocations();
  FailingAllocations(const FailingAllocations&) = delete;
  FailingAllocations& operator=(const FailingAllocations&) = delete;
};

}  // namespace qvtest
