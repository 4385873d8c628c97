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

ssize_t read_some(int fd, char* buffer, std::size_t size) {
  ssize_t n;
  do n = ::read(fd, buffer, size);
  while (n < 0 && errno == EINTR);
  return n;
}

/// Closes the file of a stream, whose state goes.
template <class State>
int close_file(void* cookie) {
  const std::unique_ptr<State> state(static_cast<State*>(cookie));
  return ::close(state->fd);
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
  return read_some(static_cast<Translator*>(cookie)->fd, buffer, size);
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

/// The file behind a stream that is read without its CRs before LF. The stream itself is unbuffered, so that it knows
/// no other position than the one on disk that is kept here.
struct LineReader {
  explicit LineReader(int file) : fd(file) {}

  int fd;
  off_t next = 0;  // the place on disk behind the block
  std::size_t at = 0;
  std::size_t end = 0;
  bool failed = false;
  char block[16384];

  bool fill() {
    const ssize_t n = read_some(fd, block, sizeof block);
    at = 0;
    end = n > 0 ? static_cast<std::size_t>(n) : 0;
    next += static_cast<off_t>(end);
    failed = n < 0;
    return end > 0;
  }
  off_t position() const { return next - static_cast<off_t>(end - at); }
  /// The next byte as it is on disk; -1 at the end.
  int take() { return at < end || fill() ? static_cast<unsigned char>(block[at++]) : -1; }
  /// The next byte that is handed on.
  int take_translated() {
    const int c = take();
    return c == '\r' && (at < end || fill()) && block[at] == '\n' ? take() : c;
  }
};

ssize_t line_read(void* cookie, char* buffer, std::size_t size) {
  auto& reader = *static_cast<LineReader*>(cookie);
  std::size_t n = 0;
  for (int c; n < size && (c = reader.take_translated()) >= 0;) buffer[n++] = static_cast<char>(c);
  return n == 0 && reader.failed ? -1 : static_cast<ssize_t>(n);
}

int line_seek(void* cookie, off64_t* offset, int whence) {
  auto& reader = *static_cast<LineReader*>(cookie);
  const off_t base = whence == SEEK_CUR ? reader.position() : 0;
  const off_t wanted = base + static_cast<off_t>(*offset);
  if (whence == SEEK_CUR && *offset == 0) return *offset = wanted, 0;
  const off_t found = ::lseek(reader.fd, whence == SEEK_END ? static_cast<off_t>(*offset) : wanted,
                              whence == SEEK_END ? SEEK_END : SEEK_SET);
  if (found < 0) return -1;
  reader.at = reader.end = 0;
  *offset = reader.next = found;
  return 0;
}

/// The stream on an open file, with a mode that `fopencookie` knows; null, with the file as it is, without memory.
std::FILE* crlf_stream(int fd, const char* mode) {
  std::unique_ptr<Translator> translator(new (std::nothrow) Translator);
  if (!translator) return nullptr;
  translator->fd = fd;
  std::FILE* const file =
      fopencookie(translator.get(), mode, {cookie_read, cookie_write, cookie_seek, close_file<Translator>});
  if (file) translator.release();
  return file;
}

std::FILE* open_crlf_stream(const char* path, const char* mode, int flags) {
  const int fd = ::open(path, open_flags(mode) | O_CLOEXEC | flags, 0666);
  if (fd < 0) return nullptr;
  const char plain[] = {mode[0], std::strchr(mode, '+') ? '+' : '\0', '\0'};
  std::FILE* const file = crlf_stream(fd, plain);
  if (!file) ::close(fd), errno = ENOMEM;
  return file;
}

}  // namespace

std::FILE* open_lf_stream(const char* path) {
  const int fd = ::open(path, O_RDONLY | O_CLOEXEC);
  if (fd < 0) return nullptr;
  std::unique_ptr<LineReader> reader(new (std::nothrow) LineReader(fd));
  std::FILE* const file =
      reader ? fopencookie(reader.get(), "r", {line_read, nullptr, line_seek, close_file<LineReader>}) : nullptr;
  if (!file) return ::close(fd), errno = ENOMEM, nullptr;
  reader.release();
  std::setvbuf(file, nullptr, _IONBF, 0);
  return file;
}

std::FILE* stream_of(int fd, bool crLf) {
  if (fd < 0) return nullptr;
  std::FILE* const file = crLf ? crlf_stream(fd, "w") : ::fdopen(fd, "wb");
  if (!file) ::close(fd), errno = ENOMEM;
  return file;
}

std::FILE* open_crlf_stream(const char* path, const char* mode) {
  return open_crlf_stream(path, mode, 0);
}

std::FILE* open_crlf_stream_nowhere_else(const char* path, const char* mode) {
  return open_crlf_stream(path, mode, O_NOFOLLOW | O_NONBLOCK);
}

}  // namespace qv::detail
