#include "platform/record_memory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <random>
#include <thread>
#include <vector>

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kPooled = false;  // every record is an allocation of its own
#else
constexpr bool kPooled = true;
#endif

/// A record of any size, filled with a pattern of its own, which must be there when it goes.
struct Record : qv::PooledRecord {
  virtual ~Record() = default;
  virtual bool is_whole() const = 0;
};
template <std::size_t n, std::size_t alignment = 8>
struct alignas(alignment) Sized : Record {
  explicit Sized(unsigned char pattern) { bytes.fill(pattern); }
  bool is_whole() const override {
    return reinterpret_cast<std::uintptr_t>(this) % alignment == 0 &&
           std::memcmp(bytes.data(), bytes.data() + 1, n - 1) == 0;
  }
  std::array<unsigned char, n> bytes;
};

std::unique_ptr<Record> any_record(unsigned kind, unsigned char pattern) {
  switch (kind % 8) {
    case 0:
      return std::make_unique<Sized<2>>(pattern);
    case 1:
      return std::make_unique<Sized<88>>(pattern);  // a line
    case 2:
      return std::make_unique<Sized<56, 64>>(pattern);
    case 3:
      return std::make_unique<Sized<1016>>(pattern);  // the largest that share a slab
    case 4:
      return std::make_unique<Sized<1017>>(pattern);
    case 5:
      return std::make_unique<Sized<300, 16>>(pattern);
    case 6:
      return std::make_unique<Sized<3000000>>(pattern);
    default:
      return std::make_unique<Sized<88>>(pattern);
  }
}

TEST(PooledRecord, RecordsOfAnySizeStayWholeAmongOthers) {
  std::mt19937 random{3};
  std::vector<std::unique_ptr<Record>> records;
  for (int step = 0; step < 60000; ++step) {
    // Grows for a while, then shrinks, now and then to nothing.
    const bool grows = random() % 10 < (step / 10000 % 2 == 0 ? 7U : 3U);
    if (grows || records.empty()) {
      const auto kind = static_cast<unsigned>(random() % 500 == 0 ? 6 : random() % 6);
      records.push_back(any_record(kind, static_cast<unsigned char>(step)));
    } else {
      std::swap(records[random() % records.size()], records.back());
      ASSERT_TRUE(records.back()->is_whole());
      records.pop_back();
    }
    if (step % 20000 == 19999) records.clear();
  }
  for (const auto& record : records) ASSERT_TRUE(record->is_whole());
}

TEST(PooledRecord, ThreadsMayDeleteWhatOthersMade) {
  constexpr int kThreads = 4;
  constexpr int kEach = 20000;
  std::array<std::vector<std::unique_ptr<Record>>, kThreads> made;
  const auto in_threads = [](const auto& work) {
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < kThreads; ++i) threads.emplace_back(work, i);
    for (std::thread& thread : threads) thread.join();
  };
  in_threads([&](unsigned i) {
    for (int k = 0; k < kEach; ++k) made[i].push_back(any_record(1 + i % 2, static_cast<unsigned char>(i)));
  });
  std::array<int, kThreads> whole{};
  in_threads([&](unsigned i) {
    auto& others = made[(i + 1) % kThreads];
    for (auto& record : others) {
      whole[i] += record->is_whole();
      record = any_record(i, static_cast<unsigned char>(i));
      whole[i] += record->is_whole();
    }
    others.clear();
  });
  for (const int n : whole) EXPECT_EQ(n, 2 * kEach);
}

TEST(PooledRecord, LieInTheOrderOfTheirMakingOnceAllWereGone) {
  if (!kPooled) GTEST_SKIP();
  using Line = Sized<888>;  // a size of this test alone
  const auto fill = [] {
    std::vector<std::unique_ptr<Line>> records;
    for (int i = 0; i < 10000; ++i) records.push_back(std::make_unique<Line>('x'));
    return records;
  };
  for (int round = 0; round < 3; ++round) {
    std::vector<std::unique_ptr<Line>> records = fill();
    int following = 0;
    for (std::size_t i = 1; i < records.size(); ++i)
      following +=
          reinterpret_cast<char*>(records[i].get()) - reinterpret_cast<char*>(records[i - 1].get()) == sizeof(Line);
    EXPECT_GT(following, 9800) << "round " << round;  // slabs end between
    // Gone in any order.
    std::shuffle(records.begin(), records.end(), std::mt19937{5});
  }
}

TEST(PooledRecord, NothingTakesAPlaceToo) {
  void* const one = qv::PooledRecord::operator new(0);
  void* const other = qv::PooledRecord::operator new(0);
  EXPECT_NE(one, other);
  qv::PooledRecord::operator delete(one);
  qv::PooledRecord::operator delete(other);
}

TEST(PooledRecord, WithoutMemoryThereIsNone) {
  if (!kPooled) GTEST_SKIP();
  EXPECT_EQ(qv::PooledRecord::operator new(SIZE_MAX, std::nothrow), nullptr);
  EXPECT_EQ(qv::PooledRecord::operator new(SIZE_MAX / 4, std::nothrow), nullptr);
  EXPECT_THROW(qv::PooledRecord::operator new(SIZE_MAX - 8), std::bad_alloc);
  qv::PooledRecord::operator delete(nullptr);
}

struct Refusing : Sized<200> {
  Refusing() : Sized(0) { throw 1; }
};

TEST(PooledRecord, AConstructorThatThrowsGivesTheMemoryBack) {
  const auto place_of = [](const auto& record) { return reinterpret_cast<std::uintptr_t>(record.get()); };
  const std::uintptr_t first = place_of(std::make_unique<Sized<200>>(1));
  EXPECT_THROW(new (std::nothrow) Refusing, int);
  EXPECT_THROW(new Refusing, int);
  const auto again = std::make_unique<Sized<200>>(2);
  EXPECT_TRUE(!kPooled || place_of(again) == first);
  alignas(Sized<200>) unsigned char place[sizeof(Sized<200>)];
  auto* const placed = new (place) Sized<200>(3);
  EXPECT_TRUE(placed->is_whole());
  placed->~Sized();
}

}  // namespace
