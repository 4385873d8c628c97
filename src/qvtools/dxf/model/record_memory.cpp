#include "qvtools/dxf/model/record_memory.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>
#include <mutex>
#include <utility>

#include "qvtools/system/internal/sanitizer.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/mman.h>
#endif

namespace qv {

namespace {

constexpr std::size_t kAlignment = 64;

#if QV_ADDRESS_SANITIZER

void* allocate(std::size_t size) noexcept {
  return ::operator new (size, std::align_val_t{kAlignment}, std::nothrow);
}
void release(void* record) noexcept {
  ::operator delete (record, std::align_val_t{kAlignment});
}

#else

#if defined(_WIN32)

constexpr std::size_t kSlabSize = std::size_t{1} << 16;  // the system's allocations are aligned so

void* map_pages(std::size_t bytes, bool) {
  return VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}
/// False when the system cannot take them back now.
bool unmap_pages(void* pages, std::size_t) {
  return VirtualFree(pages, 0, MEM_RELEASE) != 0;
}

#else

constexpr std::size_t kSlabSize = std::size_t{1} << 21;  // a large page

/// Pages that begin at a multiple of the slab's size; null when there are none.
void* map_pages(std::size_t bytes, bool large) {
  void* const mapped = mmap(nullptr, bytes + kSlabSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapped == MAP_FAILED) return nullptr;
  char* const begin = static_cast<char*>(mapped);
  const std::size_t before = -reinterpret_cast<std::uintptr_t>(mapped) & (kSlabSize - 1);
  if (before > 0) munmap(begin, before);
  munmap(begin + before + bytes, kSlabSize - before);
#if defined(MADV_HUGEPAGE)
  if (large) madvise(begin + before, bytes, MADV_HUGEPAGE);  // a wish: without it the pages are small ones
#endif
  return begin + before;
}
/// False when the system cannot take them back now: a hole may need room in its tables.
bool unmap_pages(void* pages, std::size_t bytes) {
  return munmap(pages, bytes) == 0;
}

#endif

/// The head of a slab: a stretch of memory at a multiple of the slab's size, cut into blocks of one size.
struct Slab {
  struct FreeBlock {
    FreeBlock* next;
  };
  Slab* next;  // among the slabs of its size that have room
  Slab* before;
  FreeBlock* free;  // blocks that were given back
  std::size_t blockSize;
  std::size_t used;  // bytes from the head on that were ever handed out
  std::size_t living;

  void reset() {
    free = nullptr;
    used = kHeadSize;
  }
  bool is_full() const { return !free && used + blockSize > kSlabSize; }
  void* take() {
    ++living;
    if (free) return std::exchange(free, free->next);
    return reinterpret_cast<char*>(this) + std::exchange(used, used + blockSize);
  }
  void give_back(void* block) {
    --living;
    free = new (block) FreeBlock{free};
  }

  static constexpr std::size_t kHeadSize = kAlignment;  // a type's size is a multiple of its alignment
  static Slab* Of(void* block) {
    return reinterpret_cast<Slab*>(reinterpret_cast<std::uintptr_t>(block) & ~(kSlabSize - 1));
  }
};
static_assert(sizeof(Slab) <= Slab::kHeadSize);

class Pool {
 public:
  void* Allocate(std::size_t size) noexcept;
  void Release(void* block) noexcept;

 private:
  // Blocks share slabs in steps of 16 bytes up to a thousand, then in powers of two.
  static constexpr std::size_t kStep = 16;
  static constexpr std::size_t kStepped = 1024;
  static constexpr std::size_t kLargest = 8192;
  static constexpr std::size_t kSteps = kStepped / kStep;
  /// The number of a size's slabs, and the size of their blocks.
  static std::size_t number_of(std::size_t size) {
    if (size <= kStepped) return (std::max(size, std::size_t{1}) + kStep - 1) / kStep;
    return kSteps + static_cast<std::size_t>(std::bit_width((size - 1) / kStepped));
  }
  static std::size_t block_size(std::size_t number) {
    return number <= kSteps ? number * kStep : kStepped << (number - kSteps);
  }

  /// The slabs of blocks of one size.
  struct Size {
    Slab* withRoom = nullptr;
    bool several = false;  // more than one slab was needed
    void link(Slab* slab) {
      slab->before = nullptr;
      slab->next = withRoom;
      if (withRoom) withRoom->before = slab;
      withRoom = slab;
    }
    void unlink(Slab* slab) {
      (slab->before ? slab->before->next : withRoom) = slab->next;
      if (slab->next) slab->next->before = slab->before;
    }
  };

  static Slab* new_slab(std::size_t bytes, std::size_t blockSize, bool large) noexcept;
  static void* allocate_alone(std::size_t size) noexcept;
  /// The bytes of a slab for one block alone: whole pages, however large the system's are.
  static std::size_t size_alone(std::size_t size) {
    constexpr std::size_t kPages = std::size_t{1} << 16;
    return (Slab::kHeadSize + size + kPages - 1) & ~(kPages - 1);
  }

  std::mutex mutex_;
  Size sizes_[kSteps + 4];  // the last for blocks of kLargest
};

Slab* Pool::new_slab(std::size_t bytes, std::size_t blockSize, bool large) noexcept {
  void* const pages = map_pages(bytes, large);
  if (!pages) return nullptr;
  auto* const slab = new (pages) Slab{};
  slab->blockSize = blockSize;
  slab->reset();
  return slab;
}

/// A block too large to share a slab.
void* Pool::allocate_alone(std::size_t size) noexcept {
  if (size > std::numeric_limits<std::size_t>::max() / 2) return nullptr;
  Slab* const slab = new_slab(size_alone(size), size, false);
  return slab ? slab->take() : nullptr;
}

void* Pool::Allocate(std::size_t size) noexcept {
  if (size > kLargest) return allocate_alone(size);
  const std::size_t number = number_of(size);
  Size& slabs = sizes_[number];
  const std::lock_guard lock(mutex_);
  if (!slabs.withRoom) {
    // Drawings of few records stay in small pages, taken one by one.
    Slab* const slab = new_slab(kSlabSize, block_size(number), slabs.several);
    if (!slab) return nullptr;
    slabs.several = true;
    slabs.link(slab);
  }
  Slab* const slab = slabs.withRoom;
  void* const block = slab->take();
  if (slab->is_full()) slabs.unlink(slab);
  return block;
}

void Pool::Release(void* block) noexcept {
  Slab* const slab = Slab::Of(block);
  if (slab->blockSize > kLargest) {
    unmap_pages(slab, size_alone(slab->blockSize));
    return;
  }
  Size& slabs = sizes_[number_of(slab->blockSize)];
  const std::lock_guard lock(mutex_);
  if (slab->is_full()) slabs.link(slab);
  slab->give_back(block);
  if (slab->living > 0) return;
  slab->reset();  // the next records lie in order again
  if (!slab->next && !slab->before) return;
  slabs.unlink(slab);
  if (!unmap_pages(slab, kSlabSize)) slabs.link(slab);
}

/// The program's pool. It is never destroyed: records that outlive all else are given back to it.
Pool& pool() {
  union Immortal {
    Pool pool;
    Immortal() : pool() {}
    ~Immortal() {}
  };
  static Immortal immortal;
  return immortal.pool;
}

void* allocate(std::size_t size) noexcept {
  return pool().Allocate(size);
}
void release(void* record) noexcept {
  pool().Release(record);
}

#endif

}  // namespace

void* PooledRecord::operator new(std::size_t size) {
  void* const record = allocate(size);
  if (!record) throw std::bad_alloc();
  return record;
}
void* PooledRecord::operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return allocate(size);
}
void PooledRecord::operator delete(void* record) noexcept {
  if (record) release(record);
}
void PooledRecord::operator delete(void* record, const std::nothrow_t&) noexcept {
  operator delete(record);
}

}  // namespace qv
