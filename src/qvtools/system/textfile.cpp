#include "qvtools/system/textfile.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <memory>
#include <new>

#include "qvtools/text/gbk_text.h"

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <sys/stat.h>
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#endif

namespace qv {
namespace {

#if defined(_WIN32)

std::FILE* open_translating(const char* path, const char* mode) {
  return std::fopen(path, mode);
}

bool is_directory(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_DIRECTORY;
}

/// A device has attributes like a file's, or none: only an open one tells.
bool is_device(const std::string& path) {
  constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE file = CreateFileA(path.c_str(), 0, kShared, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  const DWORD type = GetFileType(file);
  CloseHandle(file);
  return type != FILE_TYPE_DISK;
}

bool is_replaceable(const std::string& target) {
  return !is_directory(target) && !is_device(target);
}

bool is_writable(const std::string& target) {
  const DWORD attributes = GetFileAttributesA(target.c_str());
  return attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_READONLY);
}

std::string resolved(const char* path) {
  return path;
}

/// Creates a file that must not exist yet.
std::FILE* create_new(const std::string& path, const std::string&) {
  const int fd = _open(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY, _S_IREAD | _S_IWRITE);
  return fd < 0 ? nullptr : _fdopen(fd, "wb");
}

/// Whether no file may ever be made where making one has just failed. What is too long can be "not found".
bool is_refusal() {
  constexpr unsigned long kRefusals[] = {ERROR_ACCESS_DENIED, ERROR_WRITE_PROTECT,  ERROR_FILENAME_EXCED_RANGE,
                                         ERROR_INVALID_NAME,  ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND};
  return std::find(std::begin(kRefusals), std::end(kRefusals), _doserrno) != std::end(kRefusals);
}

int process_id() {
  return _getpid();
}

bool replace_file(const std::string& from, const std::string& to) {
  return MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING) != 0;
}

#else

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

/// A file behind a stream that turns "\n" into CR LF on its way to the disk.
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

std::FILE* open_translating(const char* path, const char* mode) {
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

bool is_directory(std::FILE* file) {
  struct stat info;
  return ::fstat(::fileno(file), &info) == 0 && S_ISDIR(info.st_mode);
}

bool is_replaceable(const std::string& target) {
  struct stat info;
  return ::stat(target.c_str(), &info) != 0 || S_ISREG(info.st_mode);
}

bool is_writable(const std::string& target) {
  return ::access(target.c_str(), F_OK) != 0 || ::access(target.c_str(), W_OK) == 0;
}

/// The file that a path means, so that a symbolic link stays one.
std::string resolved(const char* path) {
  char* const real = ::realpath(path, nullptr);
  std::string target = real ? real : path;
  std::free(real);
  return target;
}

/// Creates a file that must not exist yet, with the permissions of the one it is to replace.
std::FILE* create_new(const std::string& path, const std::string& model) {
  const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (fd < 0) return nullptr;
  struct stat info;
  // Where the file system refuses the permissions, the file keeps the default ones.
  if (::stat(model.c_str(), &info) == 0 && ::fchmod(fd, info.st_mode & 0777) != 0) errno = 0;
  return ::fdopen(fd, "wb");
}

/// Whether no file may ever be made where making one has just failed.
bool is_refusal() {
  return errno == EACCES || errno == EPERM || errno == EROFS || errno == ENAMETOOLONG;
}

int process_id() {
  return static_cast<int>(::getpid());
}

bool replace_file(const std::string& from, const std::string& to) {
  return std::rename(from.c_str(), to.c_str()) == 0;
}

#endif

/// A name beside the target that no other file of this process takes.
std::string temporary_name(const std::string& target) {
  static std::atomic<unsigned> count{0};
  return target + '.' + std::to_string(process_id()) + '-' + std::to_string(count++) + ".tmp";
}

std::FILE* open_binary(const char* path, const char* mode) {
  char binary[8];
  std::size_t n = 0;
  for (const char* p = mode; *p && n < 5; ++p) {
    if (*p != 't' && *p != 'b') binary[n++] = *p;
  }
  binary[n++] = 'b';
  binary[n] = '\0';
  std::FILE* const file = std::fopen(path, binary);
#if !defined(_WIN32)
  if (file && is_directory(file)) {
    std::fclose(file);
    errno = EISDIR;
    return nullptr;
  }
#endif
  return file;
}

}  // namespace

std::FILE* open_text(const char* path, const char* mode) {
  const bool writes = mode[0] == 'w' || mode[0] == 'a' || std::strchr(mode, '+');
  if (!std::strchr("rwa", mode[0]) || !mode[0]) return errno = EINVAL, nullptr;
  return writes && !std::strchr(mode, 'b') ? open_translating(path, mode) : open_binary(path, mode);
}

char* read_line(char* buffer, int size, std::FILE* file) {
  if (!std::fgets(buffer, size, file)) return nullptr;
  const std::size_t length = std::strlen(buffer);
  if (length >= 2 && buffer[length - 1] == '\n' && buffer[length - 2] == '\r') {
    buffer[length - 2] = '\n';
    buffer[length - 1] = '\0';
  } else if (length + 1 == static_cast<std::size_t>(size) && buffer[length - 1] == '\r') {
    const int next = std::getc(file);
    if (next == '\n') {
      buffer[length - 1] = '\n';
    } else {
      std::ungetc(next, file);
    }
  }
  return buffer;
}

SavedFile::SavedFile(const char* path) : target_(resolved(path)) {
  if (!is_writable(target_)) return;
  if (is_replaceable(target_)) {
    do {
      beside_ = temporary_name(target_);
      file_ = create_new(beside_, target_);
    } while (!file_ && errno == EEXIST);
    if (file_) return;
    beside_.clear();
    // A disk that is full or a table that overflows refuses nothing for ever: writing in place would lose the old file.
    if (!is_refusal()) return;
  }
  file_ = std::fopen(target_.c_str(), "wb");
}

SavedFile::~SavedFile() {
  if (file_) std::fclose(file_);
  if (!beside_.empty()) std::remove(beside_.c_str());
}

bool SavedFile::write(const char* data, std::size_t size) {
  if (!file_ || std::fwrite(data, 1, size, file_) != size) good_ = false;
  return good_;
}

bool SavedFile::commit() {
  if (!file_) return false;
  if (std::fflush(file_) != 0) good_ = false;
  if (std::fclose(file_) != 0) good_ = false;
  file_ = nullptr;
  if (!good_ || beside_.empty()) return good_;
  if (!replace_file(beside_, target_)) return good_ = false;
  beside_.clear();
  return true;
}

}  // namespace qv
