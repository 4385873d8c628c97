#pragma once

/// Files for the readers that take a name.

#include <cstdint>
#include <string>

#include "../harness.h"

namespace qvfuzz {

inline std::string scratch_file(const std::uint8_t* data, std::size_t size) {
  return scratch().write("in.dxf", {reinterpret_cast<const char*>(data), size});
}

}  // namespace qvfuzz
