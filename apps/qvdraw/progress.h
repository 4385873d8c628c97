#pragma once

#include <string>

namespace qvdraw {

/// Says on standard error what is being done, while it lasts, when that is a terminal.
class Progress {
 public:
  explicit Progress(const std::string& what);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

 private:
  std::size_t width_ = 0;
};

}  // namespace qvdraw
