#pragma once

/// The binary forms of SHX fonts, all numbers little-endian.
///
/// Text font: a header text of 24 bytes, the first and the last code (2 bytes each), the number of entries (2); for
/// each shape its code and length (2 bytes each), shape 0 first; then the records in the same order.
///
/// Big font: a header text of 25 bytes, the size of an entry (2), the number of entries (2), the number of lead byte
/// ranges, which is 1 (2), its first and last byte (2 bytes each); for each shape its two code bytes, its length (2)
/// and the offset of its record in the file (4), shape 0 first; then the records.
///
/// A record is the name ended by 0, then the codes. A name is kept only for shape 0 and where it has no small letter.

#include <string>
#include <vector>

#include "shape_source.h"

namespace shpc {

/// The file's bytes. Codes that the form has no room for are errors.
std::string text_font(const Font& font, std::vector<Error>& errors);
std::string big_font(const Font& font, std::vector<Error>& errors);

}  // namespace shpc
