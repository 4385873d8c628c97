#pragma once

#include <cstdint>

#include "qvtools/platform/device.h"

namespace qv::detail {

/// The pattern of a pen style: lengths in pixels, drawn and left out in turn; none for a style without gaps.
struct PenPattern {
  std::uint32_t runs[6];
  int count;
  std::uint32_t period;
};
inline constexpr PenPattern kPenPatterns[] = {
    {{}, 0, 0}, {{18, 6}, 2, 24}, {{3, 3}, 2, 6}, {{9, 6, 3, 6}, 4, 24}, {{9, 3, 3, 3, 3, 3}, 6, 24}, {{}, 0, 0}};

}  // namespace qv::detail
