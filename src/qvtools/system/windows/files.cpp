#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <iterator>

#include "qvtools/system/filesystem.h"
#include "qvtools/system/internal/file_calls.h"

namespace qv {
namespace {

std::string full_path(const char* path) {
  std::array<char, 32768> full;
  const DWORD n = GetFullPathNameA(path, static_cast<DWORD>(full.size()), full.data(), nullptr);
  return n > 0 && n < full.size() ? std::string(full.data(), n) : path;
}

/// Whether the path names a device such as NUL. Its attributes can be those of a file: only an open one tells.
bool is_device(const char* path) {
  constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE file = CreateFileA(path, 0, kShared, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  const DWORD type = GetFileType(file);
  CloseHandle(file);
  return type != FILE_TYPE_DISK;
}

}  // namespace

PathKind path_kind(const char* path) {
  const DWORD attributes = GetFileAttributesA(path);
  if (attributes == INVALID_FILE_ATTRIBUTES) return PathKind::Absent;
  if (attributes & FILE_ATTRIBUTE_DIRECTORY) return PathKind::Directory;
  return is_device(path) ? PathKind::Other : PathKind::File;
}

bool remove_file(const char* path) {
  return DeleteFileA(path) != 0;
}

bool create_directory(const char* path) {
  return CreateDirectoryA(path, nullptr) != 0;
}

std::string scratch_path(const char* name) {
  return std::string("c:\\") + name;
}

namespace detail {

std::vector<std::string> list_names(const std::string& directory) {
  std::vector<std::string> names;
  WIN32_FIND_DATAA entry;
  const HANDLE search = FindFirstFileA((directory + "*").c_str(), &entry);
  if (search == INVALID_HANDLE_VALUE) return names;
  do {
    names.emplace_back(entry.cFileName);
  } while (FindNextFileA(search, &entry));
  FindClose(search);
  return names;
}

bool is_same_file(const char* a, const char* b) {
  return lstrcmpiA(full_path(a).c_str(), full_path(b).c_str()) == 0;
}

std::string link_target(const char* path) {
  return full_path(path);
}

bool is_link(const char* path) {
  const DWORD attributes = GetFileAttributesA(path);
  return attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_REPARSE_POINT;
}

bool is_ordinary(const std::string& path) {
  const PathKind kind = path_kind(path.c_str());
  return kind == PathKind::File || (kind == PathKind::Absent && !is_device(path.c_str()));
}

bool is_writable(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  return attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_READONLY);
}

namespace {

constexpr int kPermissions = _S_IREAD | _S_IWRITE;

}  // namespace

// A file that is open cannot be removed: no other mark of use is needed.
bool remove_left(const std::string& path) {
  return DeleteFileA(path.c_str()) != 0;
}

int create_new(const std::string& path, const std::string&) {
  constexpr int kFlags = _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT;
  const int fd = _open(path.c_str(), kFlags, kPermissions);
  if (fd >= 0 || errno != EEXIST) return fd;
  return remove_left(path) ? _open(path.c_str(), kFlags, kPermissions) : (errno = EEXIST, -1);
}

int open_in_place(const std::string& path) {
  return _open(path.c_str(), _O_WRONLY | _O_CREAT | _O_TRUNC | _O_BINARY | _O_NOINHERIT, kPermissions);
}

// A name that is too long can be answered with "not found".
bool is_creation_refused() {
  constexpr unsigned long kRefusals[] = {ERROR_ACCESS_DENIED, ERROR_WRITE_PROTECT,  ERROR_FILENAME_EXCED_RANGE,
                                         ERROR_INVALID_NAME,  ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND};
  return std::find(std::begin(kRefusals), std::end(kRefusals), _doserrno) != std::end(kRefusals);
}

// A file is renamed when it is closed.
int hold(int) {
  return -1;
}

void let_go(int) {}

bool flush_to_disk(int file) {
  const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(file));
  return FlushFileBuffers(handle) || GetFileType(handle) != FILE_TYPE_DISK;
}

// The system writes the names of a folder with the file.
void flush_folder_of(const char*) {}

bool replace_file(const std::string& from, const std::string& to) {
  return MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING) != 0;
}

}  // namespace detail
}  // namespace qv
