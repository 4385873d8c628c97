#pragma once

/// Tells the processor that memory is about to be read. An address is a number here: nothing need lie there.

#include <cstdint>

namespace qv::detail {

inline void prefetch(std::uintptr_t address) {
  __builtin_prefetch(reinterpret_cast<const void*>(address));
}
inline void prefetch(const void* address) {
  __builtin_prefetch(address);
}

}  // namespace qv::detail
