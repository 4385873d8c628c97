#pragma once

#include <string>

namespace qvdraw {

/// Loads the shape fonts into `G_ShapeFont`: from $QVTOOLS_FONTS, from "fonts" beside the program, or from where an
/// installation has them. Says on standard error which are missing.
void load_fonts(const std::string& programDirectory);

}  // namespace qvdraw
