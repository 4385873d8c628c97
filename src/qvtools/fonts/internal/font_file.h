#pragma once

/// The binary forms of plain SHX fonts, all numbers little-endian.
///
/// Text font: a header text of 24 bytes, the first and the last code (2 bytes each), the number of entries (2); for
/// each shape its code and length (2 bytes each), shape 0 first; then the records in the same order.
///
/// Big font: a header text of 25 bytes, the size of an entry (2), the number of entries (2), the number of lead byte
/// ranges, which is 1 (2), its first and last byte (2 bytes each); for each shape its two code bytes, its length (2)
/// and the offset of its record in the file (4), shape 0 first; then the records.
///
/// A record is the shape's name ended by 0, then its codes.

#include <string>
#include <string_view>
#include <vector>

namespace qv::detail {

inline constexpr std::string_view kShapesMark = "AutoCAD-86 shapes 1.";
inline constexpr std::string_view kBigFontMark = "AutoCAD-86 bigfont 1.";
inline constexpr std::string_view kUnifontMark = "AutoCAD-86 unifont 1.";

struct FontShape {
  int code;
  std::string record;
};

/// The file of these shapes: shape 0 first, the others by rising code.
std::string text_font_file(const std::vector<FontShape>& shapes);
/// The same with the range of lead bytes.
std::string big_font_file(const std::vector<FontShape>& shapes, int firstLead, int lastLead);

}  // namespace qv::detail
