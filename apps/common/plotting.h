#pragma once

/// What programs that plot ask of their users, and know of a drawing.

#include <optional>
#include <string>
#include <string_view>

#include "qvtools.h"
#include "qvtools/plot/pens.h"

namespace qvapps {

/// N of a scale "1:N", or of "2:1"; the empty value for anything else.
std::optional<double> scale_of(std::string_view text);

/// A built-in table of pens, or that of a file. The empty value when there is none; `problem` says why.
std::optional<qv::PenTable> pen_table(const std::string& name, std::string& problem);

/// Millimetres to a drawing's unit once it was imported.
double unit_of(const qv::ImportReport& report);

/// A number with at most two decimals.
std::string two_decimals(double v);

}  // namespace qvapps
