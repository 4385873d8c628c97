#include "support/failing_allocations.h"

#include <climits>
#include <new>

namespace {

int g_left = INT_MAX;

}  // namespace

namespace qvtest {

FailingAllocations::FailingAllocations(int successes) {
  g_left = successes;
}
FailingAllocations::~FailingAllocations() {
  g_left = INT_MAX;
}

}  // namespace qvtest

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  if (g_left != INT_MAX && g_left-- <= 0) return nullptr;
  try {
    return ::operator new(size);
  } catch (...) {
    return nullptr;
  }
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  if (g_left != INT_MAX && g_left-- <= 0) return nullptr;
  try {
    return ::operator new[](size);
  } catch (...) {
    return nullptr;
  }
}
