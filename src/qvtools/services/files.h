#pragma once

/// Files relative to the work directory. Paths are joined by plain concatenation, so a directory is stored with its
/// separator at the end; both separators and a drive are accepted on every system.

#include <cstdio>

#include "qvtools/platform/framework.h"

/// The work directory and the directory of the program, each with its separator at the end. The host program sets them.
extern QV_API CString G_strWorkPath;
extern QV_API CString G_strExePath;

/// How many files are open through `open_file` and `open_file_no_comment`, which count it up. The code that closes such
/// a file counts it down.
extern QV_API int QV_OpenFileNum;

/// Opens a file of the work directory with an `fopen` mode; text files have CR LF line ends on disk on every system,
/// and are read with "\n"; positions are byte offsets on disk.
/// Returns null when it cannot be opened, after a stop box (code 301) that names it. A counter below 0 is reported by
/// a stop box too, and the file is opened all the same. The caller closes the stream.
QV_API std::FILE* open_file(const char* name, const char* mode);
/// The same without a box for a file that cannot be opened.
QV_API std::FILE* open_file_no_comment(const char* name, const char* mode);

/// Writes the work directory followed by `name` to `out`, which must hold both and the terminator.
QV_API void get_full_path_name(const char* name, char* out);

/// 1 when the path (taken as it is) is a file that can be read, 0 for anything else, a directory too.
QV_API int if_file_exist(const char* path);

/// Copies within the work directory, over an existing target too. Returns 0 when that failed; the target is then as it
/// was. No message.
QV_API int CopyFile_InWorkPath(const char* from, const char* to);

/// Removes a file of the work directory; failure is silent, and a directory is never removed.
QV_API void RemoveFile_InWorkPath(const char* name);

/// Renames within the work directory. Failure, an existing target too, is reported by a stop box (code 301).
QV_API void RenameFile_InWorkPath(const char* from, const char* to);

/// Removes what matches `dir` + `pattern` (* and ?, letters in either case). Returns 1, or 0 when nothing matched.
/// Quirk: the names found are removed in the current directory, not in `dir`; host programs change the directory first
/// or pass an empty `dir`.
QV_API int remove_files(CString dir, const char* pattern);

/// Copies each file that matches `from` + `pattern` to `to` + its name, unless that exists.
QV_API void copy_files(CString from, CString to, const char* pattern);

/// Creates a directory with all missing parents. Returns 1 when it is there in the end, 0 when it cannot be created or
/// a file is in the way. Separators at the end, and several in a row, count as one; a bare drive is taken to be there.
QV_API int MakeDirectory(CString path);

/// The path in upper case with its extension replaced by `ext`, which may come with its dot or without.
QV_API CString ConfirmFileExt(CString path, CString ext);
