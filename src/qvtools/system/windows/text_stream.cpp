#include "qvtools/system/internal/text_stream.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cerrno>

namespace qv::detail {

// The C library's own text mode turns line ends, both ways.
std::FILE* open_crlf_stream(const char* path, const char* mode) {
  return std::fopen(path, mode);
}
std::FILE* open_crlf_stream_nowhere_else(const char* path, const char* mode) {
  const DWORD attributes = GetFileAttributesA(path);
  const bool elsewhere = attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_REPARSE_POINT;
  return elsewhere ? (errno = EACCES, nullptr) : std::fopen(path, mode);
}
std::FILE* stream_of(int file, bool crLf) {
  if (file < 0) return nullptr;
  if (crLf) _setmode(file, _O_TEXT);
  std::FILE* const stream = _fdopen(file, crLf ? "wt" : "wb");
  if (!stream) _close(file);
  return stream;
}
std::FILE* open_lf_stream(const char* path) {
  return std::fopen(path, "rt");
}

}  // namespace qv::detail
