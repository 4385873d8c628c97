#pragma once

/// Files that are replaced only by complete ones.

#include <cstddef>
#include <cstdio>
#include <string>

#include "qvtools/api.h"

namespace qv {

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

/// Writes a whole file in this way; false when there are no bytes or anything failed.
QV_API bool save_bytes(const char* path, const void* bytes, std::size_t size);

}  // namespace qv
