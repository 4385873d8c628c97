#pragma once

/// Compiled shape sources as font files. A shape's name is kept only for shape 0 and where it has no small letter.

#include <string>
#include <vector>

#include "shape_source.h"

namespace shpc {

/// The file's bytes. Codes that the form has no room for are errors.
std::string text_font(const Font& font, std::vector<Error>& errors);
std::string big_font(const Font& font, std::vector<Error>& errors);

}  // namespace shpc
