#pragma once

/// Files that are replaced only by complete ones.

#include <cstddef>
#include <cstdio>
#include <string>

#include "qvtools/api.h"

namespace qv {

/// A file that is to replace another only when it is complete: written beside the target, as NAME.qv0.tmp, and renamed
/// over it by `commit`. Whenever the program or the machine stops, the target is the old file or the new one; the next
/// save to the target removes what a stopped one left beside it. Where the folder takes no file, and for devices and
/// pipes, the target is written in place.
///
/// The new file has the permissions of the old one, and its owner and group where the system
/// allows that; its extended attributes and access lists are those of a new file, and other names of the old file (hard
/// links) keep the old bytes.
class QV_API SavedFile {
 public:
  /// Bytes as they are written, or each "\n" as CR LF on disk.
  enum class Lines : char { AsWritten, CrLf };
  /// What becomes of a symbolic link at the path: the file that it names is replaced, or, in a folder that others may
  /// have written to, the link itself; nothing is written in place then.
  enum class Links : char { Followed, Replaced };
  explicit SavedFile(const char* path, Lines lines = Lines::AsWritten, Links links = Links::Followed);
  /// Without `commit`, the file beside the target is removed and the target stays as it was.
  ~SavedFile();
  SavedFile(const SavedFile&) = delete;
  SavedFile& operator=(const SavedFile&) = delete;

  /// False when the file could not be opened for writing, or memory ran out.
  bool is_open() const { return file_ != nullptr; }
  /// The stream, for what writes to one; it belongs to this object. Null when it is not open.
  std::FILE* stream() const { return file_; }
  /// False when this or an earlier write failed.
  bool write(const char* data, std::size_t size);
  /// Flushes the file to the disk, closes it and renames it; false when anything failed, writes to the stream included,
  /// and then the target is as it was (unless it was written in place).
  bool commit();

  /// Whether files are on the disk itself before they are renamed (the default), so that they survive the loss of power
  /// as well; a caller that writes thousands may do without. It holds for the whole process.
  static void SetFlushToDisk(bool flush);

 private:
  void open(const char* path, Lines lines, Links links);
  bool open_beside(Lines lines);

  std::string target_;
  std::string beside_;  // empty: written in place
  std::FILE* file_ = nullptr;
  int descriptor_ = -1;  // the stream's
  bool good_ = true;
};

/// Writes a whole file in this way; false when there are no bytes or anything failed.
QV_API bool save_bytes(const char* path, const void* bytes, std::size_t size);

}  // namespace qv
