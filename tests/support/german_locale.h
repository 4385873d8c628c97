#pragma once

/// A locale whose decimal mark is a comma, for as long as the object lives. Where the system has none installed, it is
/// made in a temporary directory.

#include <clocale>
#include <cstdlib>
#include <string>

#include "support/temporary_directory.h"

namespace qvtest {

class GermanLocale {
 public:
  GermanLocale() : before_(std::setlocale(LC_ALL, nullptr)) {
    available_ = set("de_DE.UTF-8") || set("de_DE.utf8") || set("German") || (make() && set("de_DE.UTF-8"));
  }
  ~GermanLocale() {
    std::setlocale(LC_ALL, before_.c_str());
#if !defined(_WIN32)
    if (made_) unsetenv("LOCPATH");  // the folder goes away, and other tests look locales up
#endif
  }
  /// False where the machine has no such locale and cannot make one: the test is then to be skipped.
  bool available() const {
    return available_;
  }

 private:
  static bool set(const char* name) {
    return std::setlocale(LC_ALL, name) && *std::localeconv()->decimal_point == ',';
  }
  bool make() {
#if defined(_WIN32)
    return false;
#else
    const std::string command = "localedef -i de_DE -f UTF-8 '" + directory_.path("de_DE.UTF-8") + "' >/dev/null 2>&1";
    made_ = std::system(command.c_str()) == 0 && setenv("LOCPATH", directory_.prefix().c_str(), 1) == 0;
    return made_;
#endif
  }

  TemporaryDirectory directory_;
  std::string before_;
  bool available_ = false;
  bool made_ = false;
};

}  // namespace qvtest
