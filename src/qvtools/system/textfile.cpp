#include "qvtools/system/textfile.h"

#include <cerrno>
#include <cstring>

#include "qvtools/system/filesystem.h"
#include "qvtools/system/internal/text_stream.h"

namespace qv {
namespace {

/// The file, unless it is a directory: some systems open one and fail only when it is read.
std::FILE* no_directory(std::FILE* file, const char* path) {
  if (!file || path_kind(path) != PathKind::Directory) return file;
  std::fclose(file);
  errno = EISDIR;
  return nullptr;
}

std::FILE* open_binary(const char* path, const char* mode) {
  char binary[8];
  std::size_t n = 0;
  for (const char* p = mode; *p && n < 5; ++p) {
    if (*p != 't' && *p != 'b') binary[n++] = *p;
  }
  binary[n++] = 'b';
  binary[n] = '\0';
  return no_directory(std::fopen(path, binary), path);
}

}  // namespace

std::FILE* open_text(const char* path, const char* mode) {
  const bool writes = mode[0] == 'w' || mode[0] == 'a' || std::strchr(mode, '+');
  if (!std::strchr("rwa", mode[0]) || !mode[0]) return errno = EINVAL, nullptr;
  return writes && !std::strchr(mode, 'b') ? detail::open_crlf_stream(path, mode) : open_binary(path, mode);
}

std::FILE* open_text_to_read(const char* path) {
  return no_directory(detail::open_lf_stream(path), path);
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
