#include "failure.h"

#include "common/unreadable.h"

namespace qvdraw {

std::runtime_error failure(const std::string& path, const char* wrong) {
  // By the kinds of `qvapps::Unreadable`.
  const char* const reasons[] = {"there is no such file", "is a directory", "is a device or a pipe, no file",
                                 "cannot be opened", wrong};
  return std::runtime_error(path + ": " + reasons[static_cast<int>(qvapps::diagnose(path))]);
}

}  // namespace qvdraw
