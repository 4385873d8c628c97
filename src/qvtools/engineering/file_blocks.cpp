#include "qvtools/engineering/internal/file_blocks.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>

#include "qvtools/services/messages.h"

namespace qv::detail {

namespace {

// A position has 12 digits in a database's trailer, and fseek takes it as a long.
constexpr std::int64_t kLastPosition = std::min<std::int64_t>(999999999999, LONG_MAX);
// Bytes that are read at once: where each view follows the last one, and where views come in any order.
constexpr std::int64_t kAhead = 1 << 18;
constexpr std::int64_t kAlone = 1 << 12;

}  // namespace

bool BlockWriter::attach(std::FILE* file) {
  file_ = file;
  if (!block_) block_.reset(new (std::nothrow) char[kBlock + kRoom]);
  used_ = 0;
  flushed_ = std::max(std::ftell(file), 0L);
  good_ = true;
  return block_ != nullptr;
}

void BlockWriter::put(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = std::min(text.size(), kRoom);
    char* const at = room();
    std::memcpy(at, text.data(), length);
    take(at + length);
    text.remove_prefix(length);
  }
}

void BlockWriter::empty() {
  if (good_ && std::fwrite(block_.get(), 1, used_, file_) != used_) good_ = false;
  flushed_ += static_cast<std::int64_t>(used_);
  used_ = 0;
  if (flushed_ > kLastPosition) good_ = false;
}

bool BlockWriter::flush() {
  empty();
  if (std::fflush(file_) != 0) good_ = false;
  return good_;
}

void FileWindow::attach(std::FILE* file) {
  file_ = file;
  used_ = 0;
  start_ = 0;
  failed_ = false;
  size_ = std::fseek(file, 0, SEEK_END) == 0 ? std::max(std::ftell(file), 0L) : 0;
}

std::string_view FileWindow::view(std::int64_t start, std::int64_t end) {
  end = std::min(end, size_);
  if (start < 0 || start >= end) return {};
  const std::int64_t last = start_ + static_cast<std::int64_t>(used_);
  if (start < start_ || end > last) {
    const bool follows = start >= start_ && start <= last;
    load(start, std::min(std::max(end - start, follows ? kAhead : kAlone), size_ - start));
  }
  const auto offset = static_cast<std::size_t>(start - start_);
  const std::size_t length = std::min(static_cast<std::size_t>(end - start), used_ - offset);
  return {block_.get() + offset, length};
}

void FileWindow::load(std::int64_t start, std::int64_t size) {
  const auto wanted = static_cast<std::size_t>(size);
  if (wanted > capacity_) {
    block_ = std::make_unique_for_overwrite<char[]>(wanted);
    capacity_ = wanted;
  }
  start_ = start;
  used_ = 0;
  std::clearerr(file_);
  const bool there = std::fseek(file_, static_cast<long>(start), SEEK_SET) == 0;
  const std::size_t got = there ? std::fread(block_.get(), 1, wanted, file_) : 0;
  failed_ = !there || std::ferror(file_);
  if (failed_)
    tell_error(301, "Read Error in Data Base !");
  else
    used_ = got;
}

}  // namespace qv::detail
