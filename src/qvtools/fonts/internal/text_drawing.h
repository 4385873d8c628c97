#pragma once

/// Texts through a clipping context that is there already. The arguments are those of `CShx`'s drawing calls.

#include "qvtools/display/safe_dc.h"
#include "qvtools/fonts/shx.h"

namespace qv::detail {

void draw_txt(const CShx& font, CSafeDC& safe, CPoint at, const char* text, float height, float angle, float width,
              int mirror);
void draw_hz(const CShx& font, CSafeDC& safe, CPoint at, const char* text, float height, float angle, float width,
             int mirror);

}  // namespace qv::detail
