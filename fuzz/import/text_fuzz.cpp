// Any bytes as a drawing of any program, in text.

#include <cstddef>
#include <cstdint>

#include "import_case.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qvfuzz::import_case({reinterpret_cast<const char*>(data), size});
  return 0;
}
