#include "qvtools/system/filesystem.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <memory>

#include "qvtools/system/internal/file_calls.h"
#include "qvtools/system/saved_file.h"
#include "qvtools/text/gbk_text.h"

namespace qv {
namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

bool is_separator(char c) {
  return c == '/' || c == '\\';
}

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

PathParts split_path(const char* path) {
  const std::size_t drive = path[0] && path[1] == ':' ? 2 : 0;
  std::size_t name = drive;
  std::size_t dot = std::string_view::npos;
  std::size_t at = drive;
  while (const std::size_t n = char_length(path + at)) {
    if (is_separator(path[at]) && n == 1) {
      name = at + 1;
      dot = std::string_view::npos;
    } else if (path[at] == '.') {
      dot = at;
    }
    at += n;
  }
  const std::string_view all(path, at);
  if (dot == std::string_view::npos) dot = at;
  return {all.substr(0, drive), all.substr(drive, name - drive), all.substr(name, dot - name), all.substr(dot)};
}

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
  std::vector<std::string> names = detail::list_names(directory);
  std::erase_if(names, [&](const std::string& name) {
    return is_dot_entry(name) || !matches_pattern(name.c_str(), wanted.c_str());
  });
  std::sort(names.begin(), names.end());
  return names;
}

bool copy_file(const char* from, const char* to, bool replace) {
  if (path_kind(from) != PathKind::File || detail::is_same_file(from, to)) return false;
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

}  // namespace qv
