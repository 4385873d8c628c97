#pragma once

#include <string>
#include <vector>

#include "qvtools.h"

namespace qvapps {

/// The files of the shape fonts in use; empty where none is.
struct FontFiles {
  std::string text;  ///< of single bytes: texts and bar labels
  std::string big;   ///< of Chinese characters

  friend bool operator==(const FontFiles&, const FontFiles&) = default;
};

/// Where shape files are looked for, each folder with a separator at its end: $QVTOOLS_FONTS, "fonts" beside the
/// program, and where an installation has them.
std::vector<std::string> font_folders(const std::string& programDirectory);

/// Where the shapes are looked for that a drawing places: its own folder, then those of the fonts.
std::vector<std::string> shape_folders(const std::string& drawing, const std::string& programDirectory);

/// Loads the shape fonts into `G_ShapeFont`, of any kind of shape file: those that are named ("TXT.shx" or
/// "TXT.shx,BIG.shx", files or names in the folders), else the free ones. Says on standard error, under the program's
/// name, which of them is missing. Returns what was loaded.
FontFiles load_fonts(const char* program, const std::string& programDirectory, const std::string& named = "");

/// Loads these fonts into `G_ShapeFont` instead of the present ones. Returns false and keeps the present ones when
/// one of the named files is not a font of its kind.
bool change_fonts(const FontFiles& files);

/// The fonts of the style that most texts of the document have, where $QVTOOLS_FONTS has them, else the usual ones.
/// `replaced` gets the names of all fonts that styles of texts name and that will not draw them.
FontFiles fonts_for(DXF& document, const FontFiles& usual, std::vector<std::string>& replaced);

/// Names as a text: "a, b, c".
std::string listed(const std::vector<std::string>& names);

/// What is drawn in which fonts instead, by their names: "simplex.shx -> txt.shx, hztxt.shx".
std::string replacement(const std::vector<std::string>& replaced, const FontFiles& by);

}  // namespace qvapps
