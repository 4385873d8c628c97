#pragma once

/// How a drawing is shown: what the display, prepared drawings, viewers and pictures take beside a device and a
/// transform.

#include <array>

#include "qvtools/platform/device.h"

namespace qv {

/// The colours of the numbers 0 to 255 on a device.
using Palette = std::array<COLORREF, 256>;

/// The palette of 256 colours that drawings of other programs are made for: 1 red, 2 yellow, 3 green, 4 cyan, 5 blue,
/// 6 magenta, 7 white, two greys, 24 hues in ten shades each from 10 on, six greys from 250 on.
QV_API const Palette& StandardPalette();

/// The default value shows what `DXF::Draw` has always shown.
struct Appearance {
  /// The colours of the numbers 0 to 255, not owned; null, and any other number, for `ACAD_ENTITY::GetColor`.
  const Palette* palette = nullptr;
};

}  // namespace qv
