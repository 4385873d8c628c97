#pragma once

/// Files written and read in large blocks, with positions that are known without asking the stream.

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string_view>

#include "qvtools/api.h"

namespace qv::detail {

/// Writes bytes to a stream in large blocks.
class QV_API BlockWriter {
 public:
  /// The bytes that `room` offers at least.
  static constexpr std::size_t kRoom = 1 << 14;

  /// Writes to the stream, which it does not own, from where that stands; false without memory.
  bool attach(std::FILE* file);
  /// Where the next byte goes in the file.
  std::int64_t position() const { return flushed_ + static_cast<std::int64_t>(used_); }
  /// Whether all that left memory was written, and lies where a position of 12 digits and a `long` reach.
  bool good() const { return good_; }
  /// Says that something is missing in what was written.
  void fail() { good_ = false; }

  /// The place for at most `kRoom` bytes; `take` then says where they end.
  char* room() {
    if (used_ >= kBlock) empty();
    return block_.get() + used_;
  }
  void take(const char* end) { used_ = static_cast<std::size_t>(end - block_.get()); }
  void put(std::string_view text);
  /// Hands everything to the disk; returns `good`.
  bool flush();

 private:
  static constexpr std::size_t kBlock = 1 << 18;

  void empty();

  std::FILE* file_ = nullptr;
  std::unique_ptr<char[]> block_;
  std::size_t used_ = 0;
  std::int64_t flushed_ = 0;
  bool good_ = true;
};

/// The part of a file that is in memory.
class QV_API FileWindow {
 public:
  /// Reads from the stream, which it does not own.
  void attach(std::FILE* file);
  std::int64_t size() const { return size_; }
  /// Whether the disk failed when the last view was read (told with report 301); the view is empty then.
  bool failed() const { return failed_; }
  /// The bytes of the file from start to end, less when it ends before; valid until the next call.
  std::string_view view(std::int64_t start, std::int64_t end);

 private:
  void load(std::int64_t start, std::int64_t size);

  std::FILE* file_ = nullptr;
  std::unique_ptr<char[]> block_;
  std::size_t capacity_ = 0;
  std::size_t used_ = 0;
  std::int64_t start_ = 0;
  std::int64_t size_ = 0;
  bool failed_ = false;
};

}  // namespace qv::detail
