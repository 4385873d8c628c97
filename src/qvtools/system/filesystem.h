#pragma once

/// Files and directories by their paths, which are GBK bytes on Windows and whatever the system takes elsewhere. The
/// one header whose functions throw: what returns names, when memory runs out. The library catches it.

#include <string>
#include <string_view>
#include <vector>

#include "qvtools/api.h"

namespace qv {

/// A path taken apart: the views lie in it. `drive` ends in its colon and `directory` in its separator, `extension`
/// begins with its dot; each is empty when absent. Separators are slash and backslash.
struct PathParts {
  std::string_view drive;
  std::string_view directory;
  std::string_view base;
  std::string_view extension;
};
/// Takes a path apart, by the rules of both systems.
QV_API PathParts split_path(const char* path);

/// `Other` are devices, pipes and the like.
enum class PathKind { Absent, File, Directory, Other };

/// What lies at the path.
QV_API PathKind path_kind(const char* path);

/// The bare names in a directory that match a pattern, sorted; `pattern` is the directory, ended by its separator or
/// empty for the current one, and behind it a name with the wildcards * and ?. Letters match in either case, "*.*"
/// matches names without a dot too, and "." and ".." are never listed.
QV_API std::vector<std::string> list_matches(const std::string& pattern);

/// Copies a file. An existing target is replaced, by a complete copy only, or is a failure when `replace` is false.
/// Returns false, with the target as it was, when the source is no file that can be read, or is the target itself, and
/// when memory runs out.
QV_API bool copy_file(const char* from, const char* to, bool replace);

/// Renames; false when the target exists already or anything else stands against it.
QV_API bool rename_file(const char* from, const char* to);

/// Removes a file; a directory is never removed.
QV_API bool remove_file(const char* path);

/// Creates one directory, whose parent must exist.
QV_API bool create_directory(const char* path);

/// Whether `name` matches a pattern with * (any run) and ? (any one character), as `list_matches` says.
QV_API bool matches_pattern(const char* name, const char* pattern);

/// The path of a file of this name that the library may write without being told where: at the root of drive C on
/// Windows, in the temporary directory elsewhere.
QV_API std::string scratch_path(const char* name);

}  // namespace qv
