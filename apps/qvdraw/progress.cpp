#include "progress.h"

#include <cstdio>

#include "common/system.h"

namespace qvdraw {

Progress::Progress(const std::string& what) {
  if (!qvapps::error_is_terminal()) return;
  const std::string line = what + " ...";
  width_ = line.size();
  std::fputs(line.c_str(), stderr);
  std::fflush(stderr);
}

Progress::~Progress() {
  if (width_ > 0) std::fprintf(stderr, "\r%*s\r", static_cast<int>(width_), "");
}

}  // namespace qvdraw
