#pragma once

/// Tells the processor that memory is about to be read. The address need not be valid.

#if defined(_MSC_VER) && !defined(__clang__)
#include <intrin.h>
#endif

namespace qv::detail {

inline void prefetch(const void* address) {
#if defined(__GNUC__) || defined(__clang__)
  __builtin_prefetch(address);
#elif defined(_M_X64) || defined(_M_IX86)
  _mm_prefetch(static_cast<const char*>(address), _MM_HINT_T0);
#else
  (void)address;
#endif
}

}  // namespace qv::detail
