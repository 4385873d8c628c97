#pragma once

#include <span>

#include "qvtools/display/appearance.h"

namespace qv::detail {

/// The pattern of a line type's elements; solid without both a gap and something to draw. Throws when memory runs out.
QV_API DashPattern dash_pattern(std::span<const float> elements);

}  // namespace qv::detail
