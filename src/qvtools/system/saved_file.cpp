#include "qvtools/system/saved_file.h"

#include <atomic>
#include <cerrno>
#include <cstdint>

#include "qvtools/system/filesystem.h"
#include "qvtools/system/internal/file_calls.h"
#include "qvtools/system/internal/out_of_memory.h"
#include "qvtools/system/internal/text_stream.h"
#include "qvtools/text/gbk_text.h"
#include "qvtools/text/numbers.h"

namespace qv {
namespace {

std::atomic<bool> g_flushToDisk{true};

/// The names beside a target, which are the same for every save: what a killed program left is found by them. They are
/// no longer than file systems take; of a long name its beginning and a hash.
class NamesBeside {
 public:
  explicit NamesBeside(const std::string& target) {
    const PathParts parts = split_path(target.c_str());
    const std::size_t folder = parts.drive.size() + parts.directory.size();
    const std::string name = target.substr(folder);
    constexpr std::size_t kLongest = 200;
    stem_ = target.substr(0, folder) +
            name.substr(0, name.size() > kLongest ? cut_length(name.data(), kLongest) : kLongest);
    if (name.size() <= kLongest) return;
    std::uint32_t hash = 0x811C9DC5;  // FNV-1a
    for (const char c : name) hash = (hash ^ static_cast<unsigned char>(c)) * 0x01000193;
    stem_ += FormattedText<16>("-%08x", hash);
  }
  std::string operator()(int number) const {
    return stem_ + static_cast<const char*>(FormattedText<32>(".qv%d.tmp", number));
  }

 private:
  std::string stem_;
};

}  // namespace

SavedFile::SavedFile(const char* path, Lines lines, Links links) {
  detail::unless_silently_out_of_memory([&] { return open(path, lines, links), true; }, false);
}

void SavedFile::open(const char* path, Lines lines, Links links) {
  if (links == Links::Replaced) {
    target_ = path;
    if (detail::is_link(path) || (detail::is_ordinary(target_) && detail::is_writable(target_))) open_beside(lines);
    return;
  }
  target_ = detail::link_target(path);
  if (!detail::is_writable(target_)) return;
  if (detail::is_ordinary(target_)) {
    if (open_beside(lines)) return;
    // A full disk passes, and writing in place would lose the old file on it: then nothing is opened.
    if (!detail::is_creation_refused()) return;
  }
  descriptor_ = detail::open_in_place(target_);
  file_ = detail::stream_of(descriptor_, lines == Lines::CrLf);
}

bool SavedFile::open_beside(Lines lines) {
  constexpr int kMostAtOnce = 1000;
  const NamesBeside name(target_);
  int number = 0;
  do {
    beside_ = name(number++);
    descriptor_ = detail::create_new(beside_, target_);
  } while (descriptor_ < 0 && errno == EEXIST && number < kMostAtOnce);
  if (descriptor_ < 0) return beside_.clear(), false;
  file_ = detail::stream_of(descriptor_, lines == Lines::CrLf);
  if (!file_) {
    remove_file(beside_.c_str());
    beside_.clear();
    errno = ENOMEM;
    return false;
  }
  while (detail::remove_left(name(number))) ++number;
  return true;
}

SavedFile::~SavedFile() {
  if (file_) std::fclose(file_);
  if (!beside_.empty()) std::remove(beside_.c_str());
}

bool SavedFile::write(const char* data, std::size_t size) {
  if (!file_ || (size > 0 && std::fwrite(data, 1, size, file_) != size)) good_ = false;
  return good_;
}

bool SavedFile::commit() {
  if (!file_) return false;
  const bool flushed = g_flushToDisk.load(std::memory_order_relaxed);
  if (std::fflush(file_) != 0 || std::ferror(file_)) good_ = false;
  if (good_ && flushed && !detail::flush_to_disk(descriptor_)) good_ = false;
  const int held = beside_.empty() ? -1 : detail::hold(descriptor_);
  if (std::fclose(file_) != 0) good_ = false;
  file_ = nullptr;
  if (good_ && !beside_.empty()) {
    good_ = detail::replace_file(beside_, target_);
    if (good_) beside_.clear();
    if (good_ && flushed) detail::flush_folder_of(target_.c_str());
  }
  detail::let_go(held);
  return good_;
}

void SavedFile::SetFlushToDisk(bool flush) {
  g_flushToDisk.store(flush, std::memory_order_relaxed);
}

bool save_bytes(const char* path, const void* bytes, std::size_t size) {
  SavedFile file(path);
  return size > 0 && file.write(static_cast<const char*>(bytes), size) && file.commit();
}

}  // namespace qv
