#pragma once

/// The operations on files that the portable sources of this folder need of each system. Paths are as in
/// `filesystem.h`. Files are numbers here, below 0 for none.

#include <string>
#include <vector>

namespace qv::detail {

/// The bare names in a directory, "." and ".." included; `directory` ends in its separator, or is empty for the current
/// one.
std::vector<std::string> list_names(const std::string& directory);

/// Whether both paths name one existing file.
bool is_same_file(const char* a, const char* b);

/// The whole path of the file that a path means: symbolic links are followed, so that a link stays one when its file is
/// replaced.
std::string link_target(const char* path);

/// Whether the path names a symbolic link.
bool is_link(const char* path);

/// Whether the path names an ordinary file, or nothing yet: no folder, device or pipe.
bool is_ordinary(const std::string& path);

/// Whether the path names nothing yet, or a file that this user may write.
bool is_writable(const std::string& path);

/// Creates a file for writing with the permissions and, where that is allowed, the owner of another one, if that
/// exists. While it is open it is known as a file in use. `errno` is EEXIST when there is one of that name in use; one
/// that nobody uses is replaced.
int create_new(const std::string& path, const std::string& like);

/// Removes a file that `create_new` made and that nobody uses any more; false when the next name is free.
bool remove_left(const std::string& path);

/// Opens a file for writing, without its bytes of before.
int open_in_place(const std::string& path);

/// Whether the failure of the `create_new` just called is one that will not pass: a folder that refuses files, but not
/// a full disk.
bool is_creation_refused();

/// Keeps a file known as one in use when it is closed, until it is let go.
int hold(int file);
void let_go(int held);

/// Hands the bytes that were written to the disk itself; true as well for what has no disk.
bool flush_to_disk(int file);

/// The same for the names in the folder of a path, where the system knows that.
void flush_folder_of(const char* path);

/// Renames a file over another one.
bool replace_file(const std::string& from, const std::string& to);

}  // namespace qv::detail
