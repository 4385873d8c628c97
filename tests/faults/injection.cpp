#include "faults/injection.h"

#include <execinfo.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
void __libc_free(void*);
}

namespace faults {
namespace {

bool g_armed = false;
bool g_struck = false;
Plan g_plan;
long g_calls = 0;
Balance g_balance = {0, 0};

/// Whether a call is struck; one that is to kill does not return.
bool strikes(Call call) {
  if (!g_armed || call != g_plan.call) return false;
  ++g_calls;
  if (g_plan.forGood ? g_calls < g_plan.at : g_calls != g_plan.at) return false;
  if (g_plan.blow == Blow::Kill) ::kill(::getpid(), SIGKILL);
  if (!g_struck && std::getenv("QV_FAULTS_TRACE")) {  // where the first blow fell, for whoever looks for a fault
    g_armed = false;
    void* frames[40];
    backtrace_symbols_fd(frames, backtrace(frames, 40), STDERR_FILENO);
    g_armed = true;
  }
  g_struck = true;
  errno = g_plan.blow == Blow::Error ? g_plan.error : 0;
  return true;
}

void* counted(void* block) {
  if (block) ++g_balance.blocks;
  return block;
}

template <class Take>
void* allocate(const Take& take) {
  if (strikes(Call::Allocate)) return errno = ENOMEM, nullptr;
  return counted(take());
}

/// A call that moves bytes, all of them or, when it is struck so, a part.
template <class Move>
ssize_t transfer(Call call, std::size_t size, const Move& move) {
  if (!strikes(call)) return move(size);
  return g_plan.blow == Blow::Part ? move(size > 1 ? size / 2 : size) : -1;
}

template <class Do>
int attempt(Call call, const Do& act) {
  return strikes(call) && g_plan.blow == Blow::Error ? -1 : act();
}

int counted_file(int fd) {
  if (fd >= 0) ++g_balance.files;
  return fd;
}

int open_file(const char* path, int flags, mode_t mode) {
  return attempt(Call::Open,
                 [&] { return counted_file(static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode))); });
}

int close_file(int fd) {
  const bool struck = strikes(Call::Close);  // the file is closed all the same, as the system does
  const int error = errno;
  --g_balance.files;
  const int result = static_cast<int>(syscall(SYS_close, fd));
  return struck ? errno = error, -1 : result;
}

ssize_t cookie_read(void* cookie, char* buffer, std::size_t size) {
  return ::read(static_cast<int>(reinterpret_cast<std::ptrdiff_t>(cookie)), buffer, size);
}
ssize_t cookie_write(void* cookie, const char* data, std::size_t size) {
  const ssize_t n = ::write(static_cast<int>(reinterpret_cast<std::ptrdiff_t>(cookie)), data, size);
  return n < 0 ? 0 : n;
}
int cookie_seek(void* cookie, off64_t* offset, int whence) {
  const off_t at = ::lseek(static_cast<int>(reinterpret_cast<std::ptrdiff_t>(cookie)), *offset, whence);
  return at < 0 ? -1 : (*offset = at, 0);
}
int cookie_close(void* cookie) {
  return ::close(static_cast<int>(reinterpret_cast<std::ptrdiff_t>(cookie)));
}

/// A stream over the functions below: the C library's own streams reach the system past them.
std::FILE* stream_of(int fd, const char* mode) {
  return fopencookie(reinterpret_cast<void*>(static_cast<std::ptrdiff_t>(fd)), mode,
                     {cookie_read, cookie_write, cookie_seek, cookie_close});
}

}  // namespace

void arm(const Plan& plan) {
  g_plan = plan;
  g_calls = 0;
  g_struck = false;
  g_armed = true;
}

bool disarm() {
  g_armed = false;
  return g_struck;
}

Balance balance() {
  return g_balance;
}

}  // namespace faults

using namespace faults;

extern "C" {

void* malloc(std::size_t size) noexcept {
  return allocate([&] { return __libc_malloc(size); });
}
void* calloc(std::size_t count, std::size_t size) noexcept {
  return allocate([&] { return __libc_calloc(count, size); });
}
void* realloc(void* block, std::size_t size) noexcept {
  if (!block) return malloc(size);
  return strikes(Call::Allocate) ? nullptr : __libc_realloc(block, size);
}
void* memalign(std::size_t alignment, std::size_t size) noexcept {
  return allocate([&] { return __libc_memalign(alignment, size); });
}
void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
  return memalign(alignment, size);
}
int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept {
  *block = memalign(alignment, size);
  return *block ? 0 : ENOMEM;
}
void free(void* block) noexcept {
  if (block) --g_balance.blocks;
  __libc_free(block);
}
void* mmap(void* at, std::size_t size, int protection, int flags, int fd, off_t offset) noexcept {
  if (strikes(Call::Allocate)) return MAP_FAILED;
  return reinterpret_cast<void*>(syscall(SYS_mmap, at, size, protection, flags, fd, offset));
}

int open(const char* path, int flags, ...) {
  std::va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = flags & O_CREAT ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return open_file(path, flags, mode);
}
int close(int fd) {
  return close_file(fd);
}
int dup(int fd) noexcept {
  return counted_file(static_cast<int>(syscall(SYS_dup, fd)));
}
ssize_t read(int fd, void* buffer, std::size_t size) {
  return transfer(Call::Read, size, [&](std::size_t n) { return syscall(SYS_read, fd, buffer, n); });
}
ssize_t write(int fd, const void* data, std::size_t size) {
  return transfer(Call::Write, size, [&](std::size_t n) { return syscall(SYS_write, fd, data, n); });
}
int fsync(int fd) {
  return attempt(Call::Sync, [&] { return fd < 0 ? -1 : 0; });  // nothing that is killed here loses what it wrote
}
int rename(const char* from, const char* to) noexcept {
  return attempt(Call::Rename,
                 [&] { return static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0)); });
}
std::FILE* fopen(const char* path, const char* mode) {
  const int access = std::strchr(mode, '+') ? O_RDWR : mode[0] == 'r' ? O_RDONLY : O_WRONLY;
  const int create = mode[0] == 'r' ? 0 : O_CREAT | (mode[0] == 'w' ? O_TRUNC : O_APPEND);
  const int fd = open_file(path, access | create, 0666);
  if (fd < 0) return nullptr;
  std::FILE* const file = stream_of(fd, mode);
  if (!file) ::close(fd);
  return file;
}
std::FILE* fdopen(int fd, const char* mode) noexcept {
  return stream_of(fd, mode);
}
}
