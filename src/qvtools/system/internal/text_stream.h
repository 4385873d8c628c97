#pragma once

#include <cstdio>

namespace qv::detail {

/// Opens a stream for writing, with a mode of `fopen`, that turns each "\n" into CR LF on its way to the disk. Null,
/// with `errno` set, when the file cannot be opened.
std::FILE* open_crlf_stream(const char* path, const char* mode);

/// The same for a file in a folder that everybody may write to: a link or a pipe in its place is not opened.
std::FILE* open_crlf_stream_nowhere_else(const char* path, const char* mode);

/// A stream for writing on an open file, which it closes with itself; with `crLf`, each "\n" becomes CR LF. Null for no
/// file and when memory runs out; the file is closed then.
std::FILE* stream_of(int file, bool crLf);

/// Opens a text file to be read: CR LF on disk is handed on as "\n", and positions are byte offsets on disk.
std::FILE* open_lf_stream(const char* path);

}  // namespace qv::detail
