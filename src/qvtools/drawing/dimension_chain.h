#pragma once

/// Chains of dimensions whose lines stand where they are wanted.

#include <span>

#include "qvtools/drawing/base_sgt.h"

namespace qv {

/// On which side of what is measured a chain stands. Texts read from below, or from the right.
enum class ChainSide { Below, Above, Left, Right };

/// Draws the dimensions between positions along a level chain (x for `Below` and `Above`) or an upright one (y), in
/// ascending order; others are put in order, and positions less than 0.5 apart are one. `line` is where the dimension
/// line stands (y of a level chain, x of an upright one), in the caller's frame; the values are the true lengths there.
/// The extension lines run `extension` drawing mm toward what is measured, 2 mm beyond the line. Texts that do not fit
/// between their ticks stand outside at the ends of the chain, else beyond the lines' ends, 5 mm off the chain. Draws
/// in `m_szBZColor`.
QV_API void DrawDimensionChain(CBase_SGT& sgt, ChainSide side, std::span<const float> positions, float line,
                               double extension = 8);

}  // namespace qv
