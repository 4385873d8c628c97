#pragma once

#include <cstdio>

namespace qv::detail {

/// Opens a stream for writing, with a mode of `fopen`, that turns each "\n" into CR LF on its way to the disk. Null,
/// with `errno` set, when the file cannot be opened.
std::FILE* open_crlf_stream(const char* path, const char* mode);

}  // namespace qv::detail
