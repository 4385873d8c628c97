#pragma once

#include <memory>
#include <string>

namespace qvapps {

/// What a program without windows of its own needs running under it: made first in `main`, alive as long as that.
class System {
 public:
  System(int& argc, char** argv);
  ~System();
  System(const System&) = delete;
  System& operator=(const System&) = delete;

  /// Where the program's file lies, without a separator at the end.
  static std::string program_directory();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

/// Whether standard error is a terminal.
bool error_is_terminal();

/// GBK bytes as UTF-8.
std::string to_utf8(const char* text);

}  // namespace qvapps
