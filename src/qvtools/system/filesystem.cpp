#include "qvtools/system/filesystem.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "qvtools/system/textfile.h"
#include "qvtools/text/gbk_text.h"

#if defined(_WIN32)
#include <direct.h>
#include <windows.h>
#else
#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace qv {
namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

#if defined(_WIN32)

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

std::string full_path(const char* path) {
  std::array<char, 32768> full;
  const DWORD n = GetFullPathNameA(path, static_cast<DWORD>(full.size()), full.data(), nullptr);
  return n > 0 && n < full.size() ? std::string(full.data(), n) : path;
}

bool same_file(const char* a, const char* b) {
  return lstrcmpiA(full_path(a).c_str(), full_path(b).c_str()) == 0;
}

#else

std::vector<std::string> list_names(const std::string& directory) {
  std::vector<std::string> names;
  DIR* const stream = ::opendir(directory.empty() ? "." : directory.c_str());
  if (!stream) return names;
  while (const dirent* entry = ::readdir(stream)) names.emplace_back(entry->d_name);
  ::closedir(stream);
  return names;
}

bool same_file(const char* a, const char* b) {
  struct stat first;
  struct stat second;
  return ::stat(a, &first) == 0 && ::stat(b, &second) == 0 && first.st_dev == second.st_dev &&
         first.st_ino == second.st_ino;
}

#endif

bool is_dot_entry(const std::string& name) {
  return name == "." || name == "..";
}

char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// Whether the characters of n bytes at both places are the same but for the case of an ASCII letter.
bool same_character(const char* a, const char* b, std::size_t n) {
  return n == 1 ? upper(*a) == upper(*b) : std::memcmp(a, b, n) == 0;
}

}  // namespace

bool matches_pattern(const char* name, const char* pattern) {
  if (std::strcmp(pattern, "*.*") == 0) return true;
  const char* star = nullptr;  // behind the last star met, with the place in the name to which it reaches
  const char* reached = nullptr;
  while (*name) {
    const std::size_t n = char_length(name);
    if (*pattern == '*') {
      star = ++pattern;
      reached = name;
    } else if (*pattern == '?') {
      name += n;
      ++pattern;
    } else if (*pattern && char_length(pattern) == n && same_character(name, pattern, n)) {
      name += n;
      pattern += n;
    } else if (star) {
      reached += char_length(reached);
      name = reached;
      pattern = star;
    } else {
      return false;
    }
  }
  while (*pattern == '*') ++pattern;
  return !*pattern;
}

std::vector<std::string> list_matches(const std::string& pattern) {
  const PathParts parts = split_path(pattern.c_str());
  const std::string directory = std::string(parts.drive) + std::string(parts.directory);
  const std::string wanted = pattern.substr(directory.size());
  std::vector<std::string> names = list_names(directory);
  std::erase_if(names, [&](const std::string& name) {
    return is_dot_entry(name) || !matches_pattern(name.c_str(), wanted.c_str());
  });
  std::sort(names.begin(), names.end());
  return names;
}

bool copy_file(const char* from, const char* to, bool replace) {
  if (path_kind(from) != PathKind::File || same_file(from, to)) return false;
  if (path_kind(to) == PathKind::Directory || (!replace && path_kind(to) != PathKind::Absent)) return false;
  const std::unique_ptr<std::FILE, CloseFile> source(std::fopen(from, "rb"));
  if (!source) return false;
  SavedFile target(to);
  if (!target.is_open()) return false;
  std::array<char, 65536> block;
  while (const std::size_t n = std::fread(block.data(), 1, block.size(), source.get())) {
    if (!target.write(block.data(), n)) return false;
  }
  return !std::ferror(source.get()) && target.commit();
}

bool rename_file(const char* from, const char* to) {
  return path_kind(to) == PathKind::Absent && std::rename(from, to) == 0;
}

#if defined(_WIN32)

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

#else

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

#endif

}  // namespace qv
