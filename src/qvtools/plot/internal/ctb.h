#pragma once

/// Tables of pens by colour as CAD programs keep them in CTB files: ASCII within zlib, behind a head of 60 bytes.

#include <string>
#include <string_view>
#include <vector>

#include "qvtools/plot/pens.h"

namespace qv::detail {

/// Whether the bytes begin as such a file does.
bool is_ctb(std::string_view bytes);

/// Appends a rule for each of the colours 1 to 255; false, with the problem, when the file is broken.
bool read_ctb(std::string_view bytes, std::vector<PenRule>& rules, std::string& problem);

}  // namespace qv::detail
