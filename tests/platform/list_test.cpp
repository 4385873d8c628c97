#include <gtest/gtest.h>

#include <cstdint>
#include <deque>
#include <random>

#include "qvtools/platform/framework.h"
#include "support/failing_allocations.h"

namespace {

void* pointer(std::uintptr_t v) {
  return reinterpret_cast<void*>(v);
}

std::deque<void*> contents(const CPtrList& list) {
  std::deque<void*> found;
  for (POSITION at = list.GetHeadPosition(); at;) {
    found.push_back(list.GetAt(at));
    EXPECT_EQ(list.GetNext(at), found.back());
  }
  return found;
}

TEST(PtrList, KeepsItsOrderWhicheverEndGrows) {
  std::mt19937 random{7};
  for (const int block : {1, 2, 3, 10}) {
    CPtrList list(block);
    std::deque<void*> expected;
    for (int step = 0; step < 600; ++step) {
      void* const value = pointer(random() % 5);  // null among them
      // Grows at one end or the other for a while, then empties.
      const auto action = random() % 10 + (step / 100 % 2 ? 4U : 0U);
      if (action < 5) {
        EXPECT_EQ(list.GetAt(list.AddTail(value)), value);
        expected.push_back(value);
      } else if (action < 9) {
        EXPECT_EQ(list.GetAt(list.AddHead(value)), value);
        expected.push_front(value);
      } else if (!expected.empty()) {
        EXPECT_EQ(list.RemoveHead(), expected.front());
        expected.pop_front();
      }
      ASSERT_EQ(list.GetCount(), static_cast<int>(expected.size()));
      ASSERT_EQ(contents(list), expected) << "block " << block << " step " << step;
      if (expected.empty()) continue;
      EXPECT_EQ(list.GetHead(), expected.front());
      EXPECT_EQ(list.GetTail(), expected.back());
      EXPECT_EQ(list.GetAt(list.GetTailPosition()), expected.back());
    }
    list.RemoveAll();
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(list.GetHeadPosition(), nullptr);
  }
}

TEST(PtrList, StaysAsItIsWithoutMemory) {
  CPtrList list(1);
  std::deque<void*> expected;
  const qvtest::FailingAllocations few(2);
  for (int i = 0; i < 100; ++i) {
    if (list.AddTail(pointer(1))) expected.push_back(pointer(1));
    if (list.AddHead(pointer(2))) expected.push_front(pointer(2));
  }
  EXPECT_GE(expected.size(), 2u);
  EXPECT_LT(expected.size(), 100u);
  EXPECT_EQ(contents(list), expected);
}

}  // namespace
