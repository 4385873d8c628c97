#include "qvtools/system/internal/pages.h"

#include <sys/mman.h>

#include <cstdint>

namespace qv::detail {

constexpr std::size_t kStretchSize = std::size_t{1} << 21;  // the usual large page

void* map_stretch(bool large) noexcept {
  // A stretch of that size begins somewhere within one of twice the size.
  void* const mapped = mmap(nullptr, 2 * kStretchSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapped == MAP_FAILED) return nullptr;
  const std::size_t before = -reinterpret_cast<std::uintptr_t>(mapped) & (kStretchSize - 1);
  char* const stretch = static_cast<char*>(mapped) + before;
  if (before > 0) munmap(mapped, before);
  munmap(stretch + kStretchSize, kStretchSize - before);
#if defined(MADV_HUGEPAGE)
  if (large) madvise(stretch, kStretchSize, MADV_HUGEPAGE);  // a wish: without it the pages are small ones
#endif
  return stretch;
}

// A hole among mapped pages may need an entry more in the system's tables, which have a limit.
bool unmap_stretch(void* stretch) noexcept {
  return munmap(stretch, kStretchSize) == 0;
}

void wish_large_pages(void* memory, std::size_t size) noexcept {
#if defined(MADV_HUGEPAGE)
  const std::size_t before = -reinterpret_cast<std::uintptr_t>(memory) & (kStretchSize - 1);
  if (size > before + kStretchSize)
    madvise(static_cast<char*>(memory) + before, (size - before) & ~(kStretchSize - 1), MADV_HUGEPAGE);
#else
  static_cast<void>(memory);
  static_cast<void>(size);
#endif
}

}  // namespace qv::detail
