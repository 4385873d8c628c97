#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>

#include "qvtools/system/filesystem.h"
#include "qvtools/system/internal/file_calls.h"

namespace qv {

PathKind path_kind(const char* path) {
  struct stat info;
  if (::stat(path, &info) != 0) return PathKind::Absent;
  if (S_ISDIR(info.st_mode)) return PathKind::Directory;
  return S_ISREG(info.st_mode) ? PathKind::File : PathKind::Other;
}

bool remove_file(const char* path) {
  return ::unlink(path) == 0;
}

bool create_directory(const char* path) {
  return ::mkdir(path, 0777) == 0;
}

std::string scratch_path(const char* name) {
  const char* const directory = std::getenv("TMPDIR");
  return std::string(directory && *directory ? directory : "/tmp") + '/' + name;
}

namespace detail {

std::vector<std::string> list_names(const std::string& directory) {
  std::vector<std::string> names;
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(::opendir(directory.empty() ? "." : directory.c_str()), ::closedir);
  if (!stream) return names;
  while (const dirent* entry = ::readdir(stream.get())) names.emplace_back(entry->d_name);
  return names;
}

bool is_same_file(const char* a, const char* b) {
  struct stat first;
  struct stat second;
  return ::stat(a, &first) == 0 && ::stat(b, &second) == 0 && first.st_dev == second.st_dev &&
         first.st_ino == second.st_ino;
}

std::string link_target(const char* path) {
  const std::unique_ptr<char, void (*)(void*)> real(::realpath(path, nullptr), std::free);
  if (!real && errno == ENOMEM) throw std::bad_alloc();
  return real ? real.get() : path;
}

bool is_link(const char* path) {
  struct stat info;
  return ::lstat(path, &info) == 0 && S_ISLNK(info.st_mode);
}

bool is_ordinary(const std::string& path) {
  struct stat info;
  return ::stat(path.c_str(), &info) != 0 || S_ISREG(info.st_mode);
}

bool is_writable(const std::string& path) {
  return ::access(path.c_str(), F_OK) != 0 || ::access(path.c_str(), W_OK) == 0;
}

namespace {

/// Whether the open file still has that name.
bool has_name(int fd, const std::string& path) {
  struct stat open;
  struct stat named;
  return ::fstat(fd, &open) == 0 && ::lstat(path.c_str(), &named) == 0 && open.st_dev == named.st_dev &&
         open.st_ino == named.st_ino && S_ISREG(named.st_mode);
}

/// Nobody may lock a file that is in use: the lock belongs to the open file and goes with the process.
bool lock(int fd) {
  return ::flock(fd, LOCK_EX | LOCK_NB) == 0;
}

void make_like(int fd, const std::string& like) {
  struct stat wanted;
  struct stat made;
  if (::lstat(like.c_str(), &wanted) != 0 || !S_ISREG(wanted.st_mode) || ::fstat(fd, &made) != 0) return;
  // What the system refuses stays as it is for a new file.
  const bool owned = wanted.st_uid != made.st_uid || wanted.st_gid != made.st_gid;
  if (owned && ::fchown(fd, wanted.st_uid, wanted.st_gid) != 0) errno = 0;
  if (::fchmod(fd, wanted.st_mode & 0777) != 0) errno = 0;
}

}  // namespace

bool remove_left(const std::string& path) {
  const int fd = ::open(path.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return false;
  const bool removed = lock(fd) && has_name(fd, path) && ::unlink(path.c_str()) == 0;
  ::close(fd);
  return removed;
}

int create_new(const std::string& path, const std::string& like) {
  constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
  int fd = ::open(path.c_str(), kFlags, 0666);
  if (fd < 0 && errno == EEXIST) fd = remove_left(path) ? ::open(path.c_str(), kFlags, 0666) : (errno = EEXIST, -1);
  if (fd < 0) return -1;
  // Between its making and its locking another save may have taken it for one that was left.
  if (!lock(fd) && errno == EWOULDBLOCK) return ::close(fd), errno = EEXIST, -1;
  if (!has_name(fd, path)) return ::close(fd), errno = EEXIST, -1;
  make_like(fd, like);
  return fd;
}

int open_in_place(const std::string& path) {
  return ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
}

bool is_creation_refused() {
  return errno == EACCES || errno == EPERM || errno == EROFS || errno == ENAMETOOLONG;
}

int hold(int file) {
  return ::dup(file);
}

void let_go(int held) {
  if (held >= 0) ::close(held);
}

bool flush_to_disk(int file) {
  int failed;
  do failed = ::fsync(file);
  while (failed && errno == EINTR);
  return !failed || errno == EINVAL || errno == ENOTSUP || errno == EROFS;
}

// The file itself is on the disk: where this fails, a loss of power may bring the old name back, which is whole too.
void flush_folder_of(const char* path) {
  const std::string_view all(path);
  const std::size_t slash = all.rfind('/');
  char folder[4096] = ".";
  if (slash != all.npos && slash < sizeof folder - 1) folder[all.copy(folder, slash + 1)] = '\0';
  const int fd = ::open(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return;
  flush_to_disk(fd);
  ::close(fd);
}

bool replace_file(const std::string& from, const std::string& to) {
  return std::rename(from.c_str(), to.c_str()) == 0;
}

}  // namespace detail
}  // namespace qv
