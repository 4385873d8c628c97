#pragma once

/// Text files whose lines end in CR LF on disk on every system.

#include <cstdio>

#include "qvtools/api.h"

namespace qv {

/// Opens a text file as `fopen` does, with the modes "rt", "wt", "at" and their kin. Written "\n" becomes CR LF on
/// disk on every system; reading is binary, so readers take LF and CR LF alike (`read_line`). Positions are byte
/// offsets on disk: call `fflush` on a stream that writes before asking `ftell`. A directory does not open, and for
/// reading no device or pipe does. Returns null with `errno` set when the file cannot be opened; the caller closes it
/// with `fclose`. The file is written under its own name: for one that is whole or absent there is `SavedFile`.
QV_API std::FILE* open_text(const char* path, const char* mode);

/// Opens a text file to be read in a program's own way: CR LF on disk is handed on as "\n" on every system. Positions
/// are byte offsets on disk; on Windows, where the C library does it, only while all lines end in CR LF. Otherwise as
/// `open_text`.
QV_API std::FILE* open_text_to_read(const char* path);

/// Reads a line of at most size - 1 bytes as `fgets` does, and hands CR LF on as "\n". Returns `buffer`, or null at the
/// end of the file, with nothing read. `size` is at least 2.
QV_API char* read_line(char* buffer, int size, std::FILE* file);

}  // namespace qv
