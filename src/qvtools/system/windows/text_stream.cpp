#include "qvtools/system/internal/text_stream.h"

namespace qv::detail {

// The C library's own text mode does both.
std::FILE* open_crlf_stream(const char* path, const char* mode) {
  return std::fopen(path, mode);
}
std::FILE* open_lf_stream(const char* path) {
  return std::fopen(path, "rt");
}

}  // namespace qv::detail
