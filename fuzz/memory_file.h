#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <string>

/// A file in memory that can be opened by its path.
class MemoryFile {
 public:
  MemoryFile(const std::uint8_t* data, std::size_t size) : fd_(memfd_create("input", 0)) {
    good_ = write(fd_, data, size) == static_cast<ssize_t>(size);
  }
  ~MemoryFile() { close(fd_); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  bool good() const { return good_; }
  std::string path() const { return "/proc/self/fd/" + std::to_string(fd_); }

 private:
  int fd_;
  bool good_;
};
