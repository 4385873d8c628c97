#pragma once

#include <stdexcept>
#include <string>

namespace qvdraw {

/// Why a file was not taken: what lies at its path instead of a file or, for a file that opens, `wrong`, such as
/// "is no slide file".
std::runtime_error failure(const std::string& path, const char* wrong);

}  // namespace qvdraw
