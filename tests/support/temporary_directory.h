#pragma once

/// A directory of its own for a test's files, gone with all in it when the object ends.

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "qvtools/services/services.h"

namespace qvtest {

class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    static std::atomic<int> count{0};
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    path_ = std::filesystem::temp_directory_path() / ("qvtest-" + std::to_string(now) + "-" + std::to_string(count++));
    std::filesystem::create_directory(path_);
  }
  ~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  /// The directory with its separator at the end.
  std::string prefix() const { return path_.string() + '/'; }
  std::string path(const std::string& name) const { return prefix() + name; }
  bool has(const std::string& name) const { return std::filesystem::exists(path(name)); }
  /// Writes a file, bytes as they are, and returns its path.
  std::string write(const std::string& name, std::string_view bytes) const {
    std::ofstream(path(name), std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return path(name);
  }
  std::string read(const std::string& name) const {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  std::filesystem::path path_;
};

/// A temporary directory that is the library's work directory while it lives.
class WorkDirectory : public TemporaryDirectory {
 public:
  WorkDirectory() : before_(G_strWorkPath) { G_strWorkPath = prefix().c_str(); }
  ~WorkDirectory() { G_strWorkPath = before_; }

 private:
  CString before_;
};

}  // namespace qvtest
