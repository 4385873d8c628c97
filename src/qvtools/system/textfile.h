#pragma once

/// Text files whose lines end in CR LF on disk on every system, and files that are replaced only by complete ones.

#include <cstdio>
#include <string>

#include "qvtools/api.h"

namespace qv {

/// Opens a text file as `fopen` does, with the modes "rt", "wt", "at" and their kin. Written "\n" becomes CR LF on
/// disk on every system; reading is binary, so readers take LF and CR LF alike (`read_line`). Positions are byte
/// offsets on disk: call `fflush` on a stream that writes before asking `ftell`. A directory does not open. Returns
/// null with `errno` set when the file cannot be opened; the caller closes it with `fclose`.
QV_API std::FILE* open_text(const char* path, const char* mode);

/// Reads a line of at most size - 1 bytes as `fgets` does, and hands CR LF on as "\n". Returns `buffer`, or null at the
/// end of the file, with nothing read. `size` is at least 2.
QV_API char* read_line(char* buffer, int size, std::FILE* file);

/// A file that is to replace another only when it is complete: written beside the target, and renamed over it by
/// `commit`. Where nothing can be written beside it, the target is written in place. Bytes are written as they are.
class QV_API SavedFile {
 public:
  explicit SavedFile(const char* path);
  /// Without `commit`, the file beside the target is removed and the target stays as it was.
  ~SavedFile();
  SavedFile(const SavedFile&) = delete;
  SavedFile& operator=(const SavedFile&) = delete;

  /// False when the file could not be opened for writing.
  bool is_open() const { return file_ != nullptr; }
  /// False when this or an earlier write failed.
  bool write(const char* data, std::size_t size);
  /// Flushes, closes and renames; false when anything failed, and then the target is as it was (unless it was
  /// written in place).
  bool commit();

 private:
  std::string target_;
  std::string beside_;  // empty: written in place
  std::FILE* file_ = nullptr;
  bool good_ = true;
};

}  // namespace qv
