#pragma once

#include <string>

namespace qvdraw {

/// Writes a slide library of standard details; throws `std::runtime_error` when it cannot be written.
void write_sample_library(const std::string& path);

}  // namespace qvdraw
