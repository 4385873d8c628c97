// Any bytes as the groups of a binary drawing.

#include <cstddef>
#include <cstdint>

#include "import_case.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr char kMark[] = "AutoCAD Binary DXF\r\n\x1A";  // its zero is the mark's last byte
  qvfuzz::import_case(std::string(kMark, sizeof kMark) + std::string(reinterpret_cast<const char*>(data), size));
  return 0;
}
