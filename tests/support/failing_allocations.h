#pragma once

namespace qvtest {

/// Makes allocations fail, for as long as the object lives: those that may fail (`new (std::nothrow)`), or also those
/// that throw.
class FailingAllocations {
 public:
  enum class Which { Nothrow, All };
  /// Lets the first `successes` of them pass.
  explicit FailingAllocations(int successes = 0, Which which = Which::Nothrow);
  ~FailingAllocations();
  FailingAllocations(const FailingAllocations&) = delete;
  FailingAllocations& operator=(const FailingAllocations&) = delete;
  /// Whether one has failed.
  bool failed() const;
};

}  // namespace qvtest
