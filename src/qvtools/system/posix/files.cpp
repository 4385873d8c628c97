#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "qvtools/system/filesystem.h"
#include "qvtools/system/internal/file_calls.h"

namespace qv {

PathKind path_kind(const char* path) {
  struct stat info;
  if (::stat(path, &info) != 0) return PathKind::Absent;
  return S_ISDIR(info.st_mode) ? PathKind::Directory : PathKind::File;
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
  DIR* const stream = ::opendir(directory.empty() ? "." : directory.c_str());
  if (!stream) return names;
  while (const dirent* entry = ::readdir(stream)) names.emplace_back(entry->d_name);
  ::closedir(stream);
  return names;
}

bool is_same_file(const char* a, const char* b) {
  struct stat first;
  struct stat second;
  return ::stat(a, &first) == 0 && ::stat(b, &second) == 0 && first.st_dev == second.st_dev &&
         first.st_ino == second.st_ino;
}

std::string link_target(const char* path) {
  char* const real = ::realpath(path, nullptr);
  std::string target = real ? real : path;
  std::free(real);
  return target;
}

bool is_replaceable(const std::string& path) {
  struct stat info;
  return ::stat(path.c_str(), &info) != 0 || S_ISREG(info.st_mode);
}

bool is_writable(const std::string& path) {
  return ::access(path.c_str(), F_OK) != 0 || ::access(path.c_str(), W_OK) == 0;
}

std::FILE* create_new(const std::string& path, const std::string& permissionsOf) {
  const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (fd < 0) return nullptr;
  struct stat info;
  // Where the file system refuses the permissions, the file keeps the default ones.
  if (::stat(permissionsOf.c_str(), &info) == 0 && ::fchmod(fd, info.st_mode & 0777) != 0) errno = 0;
  return ::fdopen(fd, "wb");
}

bool is_creation_refused() {
  return errno == EACCES || errno == EPERM || errno == EROFS || errno == ENAMETOOLONG;
}

bool replace_file(const std::string& from, const std::string& to) {
  return std::rename(from.c_str(), to.c_str()) == 0;
}

int process_id() {
  return static_cast<int>(::getpid());
}

}  // namespace detail
}  // namespace qv
