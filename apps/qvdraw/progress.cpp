#include "progress.h"

#include <cstdio>
#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace qvdraw {

namespace {

bool error_is_terminal() {
#if defined(_WIN32)
  return _isatty(_fileno(stderr)) != 0;
#else
  return isatty(fileno(stderr)) != 0;
#endif
}

}  // namespace

Progress::Progress(const std::string& what) {
  if (!error_is_terminal()) return;
  const std::string line = what + " ...";
  width_ = line.size();
  std::fputs(line.c_str(), stderr);
  std::fflush(stderr);
}

Progress::~Progress() {
  if (width_ > 0) std::fprintf(stderr, "\r%*s\r", static_cast<int>(width_), "");
}

}  // namespace qvdraw
