#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <sys/stat.h>
#include <windows.h>

#include <algorithm>
#include <array>
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
bool is_device(const std::string& path) {
  constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE file = CreateFileA(path.c_str(), 0, kShared, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  const DWORD type = GetFileType(file);
  CloseHandle(file);
  return type != FILE_TYPE_DISK;
}

}  // namespace

PathKind path_kind(const char* path) {
  const DWORD attributes = GetFileAttributesA(path);
  if (attributes == INVALID_FILE_ATTRIBUTES) return PathKind::Absent;
  return attributes & FILE_ATTRIBUTE_DIRECTORY ? PathKind::Directory : PathKind::File;
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
  return path;
}

bool is_replaceable(const std::string& path) {
  return path_kind(path.c_str()) != PathKind::Directory && !is_device(path);
}

bool is_writable(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  return attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_READONLY);
}

std::FILE* create_new(const std::string& path, const std::string&) {
  const int fd = _open(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY, _S_IREAD | _S_IWRITE);
  return fd < 0 ? nullptr : _fdopen(fd, "wb");
}

// A name that is too long can be answered with "not found".
bool is_creation_refused() {
  constexpr unsigned long kRefusals[] = {ERROR_ACCESS_DENIED, ERROR_WRITE_PROTECT,  ERROR_FILENAME_EXCED_RANGE,
                                         ERROR_INVALID_NAME,  ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND};
  return std::find(std::begin(kRefusals), std::end(kRefusals), _doserrno) != std::end(kRefusals);
}

bool replace_file(const std::string& from, const std::string& to) {
  return MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING) != 0;
}

int process_id() {
  return _getpid();
}

}  // namespace detail
}  // namespace qv
