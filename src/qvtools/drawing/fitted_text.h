#pragma once

/// Texts that are placed by what they measure, in the style "HZ" (text font and big font), which `NewMemDxf` adds; in a
/// document without it they are reported (301) and left out. Texts are GBK bytes; an empty one leaves no record.
/// Nothing is measured while no font is loaded: texts then begin where their middle or end should be.

#include "qvtools/drawing/base_sgt.h"

namespace qv {

/// Which side of its box a text stands on.
enum class Across { Left, Center, Right };

/// The width of a text of both fonts, in the unit of the height, with the width factor of the composer's styles, 0.75.
/// "\U+XXXX", which `to_gbk` makes of what GBK lacks, counts as the sign that is drawn.
QV_API float SheetTextWidth(const char* text, float height);

/// Writes a text from (x, y) on its base line: its left end, its middle or its right end there. The height is in model
/// units (`m_fZiGao`); the text is turned by an angle in degrees about (x, y). Colour, layer and placement are the
/// current ones.
QV_API void DrawSheetText(CBase_SGT& sgt, float x, float y, float height, const char* text,
                          Across across = Across::Left, float angle = 0);

/// Writes a text into a box of the caller's frame: between its upper and lower side in the middle, `gap` (model units)
/// off its left and right side. A text that is too long is made narrower, down to 0.6 of its usual width, and, longer
/// still, lower, so that it never passes the box. With `upright` the text runs from the bottom of the box to its top.
/// A box that is no wider than its gaps is left empty.
QV_API void DrawFittedText(CBase_SGT& sgt, const CFRect& box, Across across, float height, const char* text, float gap,
                           bool upright = false);

}  // namespace qv
