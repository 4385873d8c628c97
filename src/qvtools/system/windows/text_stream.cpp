#include "qvtools/system/internal/text_stream.h"

namespace qv::detail {

// The C library's own text mode does it.
std::FILE* open_crlf_stream(const char* path, const char* mode) {
  return std::fopen(path, mode);
}

}  // namespace qv::detail
