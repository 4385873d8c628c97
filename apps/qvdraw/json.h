#pragma once

#include <string>

namespace qvdraw {

/// A text as JSON has it, in quotes and escaped.
std::string quoted(const std::string& text);

}  // namespace qvdraw
