#include "qvtools/system/saved_file.h"

#include <atomic>
#include <cerrno>

#include "qvtools/system/internal/file_calls.h"

namespace qv {
namespace {

/// A name beside the target that no other file of this process takes.
std::string temporary_name(const std::string& target) {
  static std::atomic<unsigned> count{0};
  return target + '.' + std::to_string(detail::process_id()) + '-' + std::to_string(count++) + ".tmp";
}

}  // namespace

SavedFile::SavedFile(const char* path) : target_(detail::link_target(path)) {
  if (!detail::is_writable(target_)) return;
  if (detail::is_replaceable(target_)) {
    do {
      beside_ = temporary_name(target_);
      file_ = detail::create_new(beside_, target_);
    } while (!file_ && errno == EEXIST);
    if (file_) return;
    beside_.clear();
    // A full disk passes, and writing in place would lose the old file on it: then nothing is opened.
    if (!detail::is_creation_refused()) return;
  }
  file_ = std::fopen(target_.c_str(), "wb");
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
  if (std::fflush(file_) != 0) good_ = false;
  if (std::fclose(file_) != 0) good_ = false;
  file_ = nullptr;
  if (!good_ || beside_.empty()) return good_;
  if (!detail::replace_file(beside_, target_)) return good_ = false;
  beside_.clear();
  return true;
}

bool save_bytes(const char* path, const void* bytes, std::size_t size) {
  SavedFile file(path);
  return size > 0 && file.write(static_cast<const char*>(bytes), size) && file.commit();
}

}  // namespace qv
