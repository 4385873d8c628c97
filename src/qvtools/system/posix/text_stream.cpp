#include "qvtools/system/internal/text_stream.h"

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <new>

namespace qv::detail {
namespace {

bool write_all(int fd, const char* data, std::size_t size) {
  while (size > 0) {
    const ssize_t n = ::write(fd, data, size);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    data += n;
    size -= static_cast<std::size_t>(n);
  }
  return true;
}

/// The file behind a stream whose written "\n" become CR LF.
struct Translator {
  int fd;
  char block[16384];

  bool write(const char* data, std::size_t size) {
    std::size_t used = 0;
    const char* const end = data + size;
    for (; data != end; ++data) {
      if (used + 2 > sizeof block) {
        if (!write_all(fd, block, used)) return false;
        used = 0;
      }
      if (*data == '\n') block[used++] = '\r';
      block[used++] = *data;
    }
    return write_all(fd, block, used);
  }
};

ssize_t cookie_read(void* cookie, char* buffer, std::size_t size) {
  return ::read(static_cast<Translator*>(cookie)->fd, buffer, size);
}

ssize_t cookie_write(void* cookie, const char* data, std::size_t size) {
  return static_cast<Translator*>(cookie)->write(data, size) ? static_cast<ssize_t>(size) : 0;
}

int cookie_seek(void* cookie, off64_t* offset, int whence) {
  const off_t at = ::lseek(static_cast<Translator*>(cookie)->fd, static_cast<off_t>(*offset), whence);
  if (at < 0) return -1;
  *offset = at;
  return 0;
}

int cookie_close(void* cookie) {
  const std::unique_ptr<Translator> translator(static_cast<Translator*>(cookie));
  return ::close(translator->fd);
}

int open_flags(const char* mode) {
  const int access = std::strchr(mode, '+') ? O_RDWR : O_WRONLY;
  switch (mode[0]) {
    case 'w':
      return access | O_CREAT | O_TRUNC;
    case 'a':
      return access | O_CREAT | O_APPEND;
    default:
      return O_RDWR;
  }
}

}  // namespace

std::FILE* open_crlf_stream(const char* path, const char* mode) {
  std::unique_ptr<Translator> translator(new (std::nothrow) Translator);
  if (!translator) return errno = ENOMEM, nullptr;
  translator->fd = ::open(path, open_flags(mode) | O_CLOEXEC, 0666);
  if (translator->fd < 0) return nullptr;
  const char plain[] = {mode[0], std::strchr(mode, '+') ? '+' : '\0', '\0'};
  std::FILE* const file = fopencookie(translator.get(), plain, {cookie_read, cookie_write, cookie_seek, cookie_close});
  if (file) {
    translator.release();
  } else {
    ::close(translator->fd);
  }
  return file;
}

}  // namespace qv::detail
