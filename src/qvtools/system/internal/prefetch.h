#pragma once

/// Tells the processor that memory is about to be read. An address is a number here: it need not be one of anything.

#include <cstdint>

#if defined(_MSC_VER) && !defined(__clang__)
#include <intrin.h>
#endif

namespace qv::detail {

inline void prefetch(std::uintptr_t number) {
  const auto* const address = reinterpret_cast<const char*>(number);
#if defined(__GNUC__) || defined(__clang__)
  __builtin_prefetch(address);
#elif defined(_M_X64) || defined(_M_IX86)
  _mm_prefetch(address, _MM_HINT_T0);
#else
  (void)address;
#endif
}
inline void prefetch(const void* address) {
  prefetch(reinterpret_cast<std::uintptr_t>(address));
}

}  // namespace qv::detail
