#pragma once

/// The operations on files that the portable sources of this folder need of each system. Paths are as in
/// `filesystem.h`.

#include <cstdio>
#include <string>
#include <vector>

namespace qv::detail {

/// The bare names in a directory, "." and ".." included; `directory` ends in its separator, or is empty for the current
/// one.
std::vector<std::string> list_names(const std::string& directory);

/// Whether both paths name one existing file.
bool is_same_file(const char* a, const char* b);

/// The file that a path means: symbolic links are followed, so that a link stays one when its file is replaced.
std::string link_target(const char* path);

/// Whether a new file may take the place of what the path names: an ordinary file, or nothing yet.
bool is_replaceable(const std::string& path);

/// Whether the path names nothing yet, or a file that this user may write.
bool is_writable(const std::string& path);

/// Creates a file for writing with the permissions of another one, if that exists. Null, with `errno` EEXIST, when
/// there is a file of that name already; null for any other failure.
std::FILE* create_new(const std::string& path, const std::string& permissionsOf);

/// Whether the failure of the `create_new` just called is one that will not pass: a folder that refuses files, or a
/// name that is too long, but not a full disk.
bool is_creation_refused();

/// Renames a file over another one.
bool replace_file(const std::string& from, const std::string& to);

int process_id();

}  // namespace qv::detail
