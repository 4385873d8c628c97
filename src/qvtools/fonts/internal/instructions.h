#pragma once

/// The instructions of shapes beyond those of plain fonts, and how many bytes each takes.
/// Source: the description of shape definition files in the manuals of CAD programs.

#include <string_view>

#include "qvtools/fonts/internal/shape_code.h"

namespace qv::detail {

namespace shape_code {
inline constexpr unsigned char kSubshape = 7;
inline constexpr unsigned char kOctants = 10;    // radius, octants
inline constexpr unsigned char kFractions = 11;  // two fractions of an octant, radius in two bytes, octants
inline constexpr unsigned char kBulge = 12;      // x, y, bulge
inline constexpr unsigned char kBulges = 13;     // the same until x and y are 0
}  // namespace shape_code

/// What follows the code of a subshape.
enum class SubshapeForm {
  Byte,       ///< a code of one byte
  Word,       ///< a code of two bytes, the high one first
  BigFont,    ///< a code of one byte; or 0, a code of two bytes, where to put it (x, y), and its width and height
  OldBigFont  ///< a code of one byte; or 0 and a code of two bytes
};

/// The bytes of an instruction that begins at `at`, its code counted; never past the end of the codes.
std::size_t instruction_size(std::string_view codes, std::size_t at, SubshapeForm form);

/// Whether a shape of a plain font's form has no instruction that those lack.
bool is_plain_shape(std::string_view codes);

}  // namespace qv::detail
