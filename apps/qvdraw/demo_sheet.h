#pragma once

/// What the sample sheets share.

#include <memory>
#include <string>

#include "qvtools.h"

namespace qvdraw {

/// Signs of the text fonts.
inline constexpr char kGrade1[] = "\x82";
inline constexpr char kGrade2[] = "\x83";
inline constexpr char kGrade3[] = "\x8B";
inline constexpr char kDegree[] = "\x7F";

/// The user's entries in the title block.
struct TitleEntries {
  const char* name;
  const char* number;
};

/// A sheet of size A0 to A3 (0 to 3) at a scale, its lower left corner at (0, 0), with its frame, filled title block,
/// layers and line types, whose dashes are so many millimetres long. Null when memory runs out.
std::unique_ptr<CBase_SGT> new_sheet(int size, float scale, const TitleEntries& entries, float dash = 3);

/// Layer, colour and line type of what is drawn next.
void use_pen(CBase_SGT& sgt, const char* layer, const char* color, const char* ltype = "BYLAYER");

/// A text in the style of Chinese texts.
void draw_text(CBase_SGT& sgt, float x, float y, float height, const std::string& text);

}  // namespace qvdraw
