#pragma once

#include <string>

namespace qvapps {

/// The files of the shape fonts in use; empty where none is.
struct FontFiles {
  std::string text;  ///< of single bytes: texts and bar labels
  std::string big;   ///< of Chinese characters
};

/// Loads the shape fonts into `G_ShapeFont`: from $QVTOOLS_FONTS, from "fonts" beside the program, or from where an
/// installation has them. Says on standard error, under the program's name, which of them is missing. Returns what was
/// loaded.
FontFiles load_fonts(const char* program, const std::string& programDirectory);

/// Loads these fonts into `G_ShapeFont` instead of the present ones. Returns false and keeps the present ones when
/// one of the named files is not a font of its kind.
bool change_fonts(const FontFiles& files);

}  // namespace qvapps
