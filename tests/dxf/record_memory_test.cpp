#include "qvtools/dxf/model/record_memory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <memory>
#include <random>
#include <thread>
#include <vector>

#include "qvtools/system/internal/sanitizer.h"

namespace {

// Under an address sanitizer every record is an allocation of its own.
constexpr bool kPooled = !QV_ADDRESS_SANITIZER;

/// A record of any size, filled with a pattern.
struct Record : qv::PooledRecord {
  virtual ~Record() = default;
  virtual bool holds(unsigned char pattern) const = 0;
};
template <std::size_t n, std::size_t alignment = 8>
struct alignas(alignment) Sized : Record {
  explicit Sized(unsigned char pattern) { bytes.fill(pattern); }
  bool holds(unsigned char pattern) const override {
    return reinterpret_cast<std::uintptr_t>(this) % alignment == 0 &&
           std::ranges::all_of(bytes, [&](unsigned char byte) { return byte == pattern; });
  }
  std::array<unsigned char, n> bytes;
};

/// A record with the pattern that it must hold as long as it lives.
struct Kept {
  std::unique_ptr<Record> record;
  unsigned char pattern;
  bool is_whole() const { return record->holds(pattern); }
};

constexpr unsigned kKinds = 8;
Kept any_record(unsigned kind, unsigned char pattern) {
  static constexpr std::array<std::unique_ptr<Record> (*)(unsigned char), kKinds> kMake = {
      [](unsigned char p) -> std::unique_ptr<Record> { return std::make_unique<Sized<2>>(p); },
      [](unsigned char p) -> std::unique_ptr<Record> { return std::make_unique<Sized<88>>(p); },  // a line
      [](unsigned char p) -> std::unique_ptr<Record> { return std::make_unique<Sized<56, 64>>(p); },
      [](unsigned char p) -> std::unique_ptr<Record> { return std::make_unique<Sized<1016>>(p); },
      [](unsigned char p) -> std::unique_ptr<Record> { return std::make_unique<Sized<1017>>(p); },
      [](unsigned char p) -> std::unique_ptr<Record> { return std::make_unique<Sized<300, 16>>(p); },
      [](unsigned char p) -> std::unique_ptr<Record> { return std::make_unique<Sized<8180>>(p); },
      [](unsigned char p) -> std::unique_ptr<Record> { return std::make_unique<Sized<300000>>(p); }};
  return {kMake[kind](pattern), pattern};
}

TEST(PooledRecord, RecordsOfAnySizeStayWholeAmongOthers) {
  std::mt19937 random{3};
  std::vector<Kept> records;
  for (int step = 0; step < 60000; ++step) {
    // Grows for a while, then shrinks, now and then to nothing.
    const bool grows = random() % 10 < (step / 10000 % 2 == 0 ? 7U : 3U);
    if (grows || records.empty()) {
      const auto kind = static_cast<unsigned>(random() % 100 == 0 ? kKinds - 1 : random() % (kKinds - 1));
      records.push_back(any_record(kind, static_cast<unsigned char>(step)));
    } else {
      std::swap(records[random() % records.size()], records.back());
      ASSERT_TRUE(records.back().is_whole());
      records.pop_back();
    }
    if (step % 20000 != 19999) continue;
    for (const Kept& kept : records) ASSERT_TRUE(kept.is_whole());
    records.clear();
  }
}

TEST(PooledRecord, ThreadsMayDeleteWhatOthersMade) {
  constexpr unsigned kThreads = 4;
  constexpr int kEach = 20000;
  std::array<std::vector<Kept>, kThreads> made;
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
    for (Kept& kept : others) {
      whole[i] += kept.is_whole();
      kept = any_record(i, static_cast<unsigned char>(i + 10));
      whole[i] += kept.is_whole();
    }
    others.clear();
  });
  for (const int n : whole) EXPECT_EQ(n, 2 * kEach);
}

#if defined(__linux__)
/// Megabytes of addresses that the process holds.
double mapped_megabytes() {
  double pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  return pages * 4096 / (1 << 20);
}

TEST(PooledRecord, FillTheGapsThatOthersLeftAndGiveTheirMemoryBack) {
  if (!kPooled) GTEST_SKIP();
  using Line = Sized<920>;
  const double before = mapped_megabytes();
  {
    std::vector<std::unique_ptr<Record>> records;
    for (int i = 0; i < 50000; ++i) records.push_back(std::make_unique<Line>('x'));
    for (int i = 0; i < 2000; ++i) records.push_back(std::make_unique<Sized<5000>>('y'));
    const double full = mapped_megabytes();
    EXPECT_GT(full, before + 54);
    for (std::size_t i = 0; i < 50000; i += 2) records[i].reset();
    for (std::size_t i = 0; i < 50000; i += 2) records[i] = std::make_unique<Line>('z');
    EXPECT_LT(mapped_megabytes(), full + 4);
  }
  EXPECT_LT(mapped_megabytes(), before + 8);  // one stretch of each size stays
}
#endif

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
  EXPECT_THROW(qv::PooledRecord::operator new(SIZE_MAX - 8), std::bad_alloc);
  qv::PooledRecord::operator delete(nullptr);
}

struct Refusing : Sized<200> {
  Refusing() : Sized(0) { throw 1; }
};

TEST(PooledRecord, ConstructorsMayThrowAndRecordsMayLieElsewhere) {
  EXPECT_THROW(new (std::nothrow) Refusing, int);
  EXPECT_THROW(new Refusing, int);
  alignas(Sized<200>) unsigned char place[sizeof(Sized<200>)];
  auto* const placed = new (place) Sized<200>(3);
  EXPECT_TRUE(placed->holds(3));
  placed->~Sized();
}

}  // namespace
