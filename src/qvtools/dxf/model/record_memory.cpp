#include "qvtools/dxf/model/record_memory.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <mutex>
#include <utility>

#include "qvtools/system/internal/pages.h"
#include "qvtools/system/internal/sanitizer.h"

namespace qv {
namespace {

using detail::kStretchSize;

constexpr std::size_t kAlignment = 64;
constexpr std::size_t kStep = 16;       // sizes are rounded up to multiples of it
constexpr std::size_t kLargest = 8192;  // larger records are allocated by themselves

/// The head of a stretch of memory that holds records of one size. Records take their places behind it in order, and
/// then the places that others gave back.
struct Chunk {
  struct FreePlace {
    FreePlace* next;
  };

  Chunk* next = nullptr;  // among the chunks of its size that have room
  Chunk* previous = nullptr;
  FreePlace* free = nullptr;
  std::size_t placeSize;
  std::size_t used = kHead;  // bytes that were ever handed out
  std::size_t living = 0;

  static constexpr std::size_t kHead = kAlignment;  // a type's size is a multiple of its alignment

  bool is_full() const { return !free && used + placeSize > kStretchSize; }
  void* take() {
    ++living;
    if (free) return std::exchange(free, free->next);
    return reinterpret_cast<char*>(this) + std::exchange(used, used + placeSize);
  }
  void give_back(void* record) {
    free = new (record) FreePlace{free};
    if (--living > 0) return;
    free = nullptr;  // the next records lie in order again
    used = kHead;
  }
};
static_assert(sizeof(Chunk) <= Chunk::kHead);

/// All records of one size.
class Chunks {
 public:
  void* take(std::size_t placeSize) noexcept {
    const std::lock_guard lock(mutex_);
    if (!withRoom_) {
      // Drawings of few records stay in small pages.
      void* const stretch = detail::map_stretch(count_ > 0);
      if (!stretch) return nullptr;
      link(new (stretch) Chunk{.placeSize = placeSize});
      ++count_;
    }
    Chunk* const chunk = withRoom_;
    void* const record = chunk->take();
    if (chunk->is_full()) unlink(chunk);
    return record;
  }
  void give_back(Chunk* chunk, void* record) noexcept {
    const std::lock_guard lock(mutex_);
    if (chunk->is_full()) link(chunk);
    chunk->give_back(record);
    if (chunk->living > 0 || count_ == 1) return;
    unlink(chunk);
    if (detail::unmap_stretch(chunk)) {
      --count_;
    } else {
      link(chunk);
    }
  }

 private:
  void link(Chunk* chunk) {
    chunk->previous = nullptr;
    chunk->next = withRoom_;
    if (withRoom_) withRoom_->previous = chunk;
    withRoom_ = chunk;
  }
  void unlink(Chunk* chunk) {
    (chunk->previous ? chunk->previous->next : withRoom_) = chunk->next;
    if (chunk->next) chunk->next->previous = chunk->previous;
  }

  std::mutex mutex_;
  Chunk* withRoom_ = nullptr;
  std::size_t count_ = 0;
};

/// The chunks of records of a size, a multiple of the step. They are made at the first record and never destroyed:
/// records may outlive all other objects.
Chunks& chunks_of(std::size_t size) {
  union Immortal {
    Chunks chunks[kLargest / kStep + 1];
    Immortal() : chunks{} {}
    ~Immortal() {}
  };
  static Immortal immortal;
  return immortal.chunks[size / kStep];
}

/// How a record that is allocated by itself is aligned: where a chunk would begin, which is no record's place; under an
/// address sanitizer, which watches each record, as any other.
std::align_val_t alignment_alone() {
  return std::align_val_t{QV_ADDRESS_SANITIZER ? kAlignment : kStretchSize};
}

void* allocate(std::size_t size) noexcept {
  if (QV_ADDRESS_SANITIZER || size > kLargest) {
    constexpr std::size_t kMost = std::numeric_limits<std::size_t>::max() / 2;
    return size < kMost ? ::operator new(size, alignment_alone(), std::nothrow) : nullptr;
  }
  const std::size_t rounded = (std::max(size, std::size_t{1}) + kStep - 1) / kStep * kStep;
  return chunks_of(rounded).take(rounded);
}

void release(void* record) noexcept {
  const auto offset = reinterpret_cast<std::uintptr_t>(record) & (kStretchSize - 1);
  if (QV_ADDRESS_SANITIZER || offset == 0) return ::operator delete(record, alignment_alone());
  auto* const chunk = reinterpret_cast<Chunk*>(static_cast<char*>(record) - offset);
  chunks_of(chunk->placeSize).give_back(chunk, record);
}

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
