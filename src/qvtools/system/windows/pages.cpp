#include "qvtools/system/internal/pages.h"

#include <windows.h>

namespace qv::detail {

constexpr std::size_t kStretchSize = std::size_t{1} << 16;  // the system aligns what it gives to this size

void* map_stretch(bool) noexcept {
  return VirtualAlloc(nullptr, kStretchSize, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}

bool unmap_stretch(void* stretch) noexcept {
  return VirtualFree(stretch, 0, MEM_RELEASE) != 0;
}

void wish_large_pages(void*, std::size_t) noexcept {}

}  // namespace qv::detail
