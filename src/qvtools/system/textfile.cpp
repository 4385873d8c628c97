#include "qvtools/system/textfile.h"

#include <cerrno>
#include <cstring>

#include "qvtools/system/filesystem.h"
#include "qvtools/system/internal/text_stream.h"

namespace qv {
namespace {

/// Whether the path names what a text can be read from or written to: a pipe would keep its reader waiting, and a
/// device may never end. Some systems open a directory and fail only when it is read.
bool is_open_to(const char* path, bool reads) {
  const PathKind kind = path_kind(path);
  const bool refused = kind == PathKind::Directory || (reads && kind == PathKind::Other);
  if (refused) errno = kind == PathKind::Directory ? EISDIR : EINVAL;
  return !refused;
}

std::FILE* open_binary(const char* path, const char* mode) {
  char binary[8];
  std::size_t n = 0;
  for (const char* p = mode; *p && n < 5; ++p) {
    if (*p != 't' && *p != 'b') binary[n++] = *p;
  }
  binary[n++] = 'b';
  binary[n] = '\0';
  return std::fopen(path, binary);
}

}  // namespace

std::FILE* open_text(const char* path, const char* mode) {
  const bool writes = mode[0] == 'w' || mode[0] == 'a' || std::strchr(mode, '+');
  if (!std::strchr("rwa", mode[0]) || !mode[0]) return errno = EINVAL, nullptr;
  if (!is_open_to(path, mode[0] == 'r')) return nullptr;
  return writes && !std::strchr(mode, 'b') ? detail::open_crlf_stream(path, mode) : open_binary(path, mode);
}

std::FILE* open_text_to_read(const char* path) {
  return is_open_to(path, true) ? detail::open_lf_stream(path) : nullptr;
}

char* read_line(char* buffer, int size, std::FILE* file) {
  if (!std::fgets(buffer, size, file)) return nullptr;
  const std::size_t length = std::strlen(buffer);
  if (length >= 2 && buffer[length - 1] == '\n' && buffer[length - 2] == '\r') {
    buffer[length - 2] = '\n';
    buffer[length - 1] = '\0';
  } else if (length + 1 == static_cast<std::size_t>(size) && buffer[length - 1] == '\r') {
    const int next = std::getc(file);  // the buffer ends between CR and LF
    if (next == '\n') {
      buffer[length - 1] = '\n';
    } else {
      std::ungetc(next, file);
    }
  }
  return buffer;
}

}  // namespace qv
