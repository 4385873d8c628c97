#pragma once

#include <cstdio>

namespace qv::detail {

/// Opens a stream for writing, with a mode of `fopen`, that turns each "\n" into CR LF on its way to the disk. Null,
/// with `errno` set, when the file cannot be opened.
std::FILE* open_crlf_stream(const char* path, const char* mode);

/// Opens a text file to be read: CR LF on disk is handed on as "\n", and positions are byte offsets on disk.
std::FILE* open_lf_stream(const char* path);

}  // namespace qv::detail
