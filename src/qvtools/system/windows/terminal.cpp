#include "qvtools/system/internal/terminal.h"

#include <io.h>
#include <windows.h>

#include <cstdio>

#include "qvtools/system/windows/code_page.h"

namespace qv {

void print_to_terminal(const std::string& text) {
  const std::wstring wide = wide_of(text.c_str());
  const HANDLE console = GetStdHandle(STD_ERROR_HANDLE);
  DWORD mode = 0;
  DWORD written = 0;
  if (GetConsoleMode(console, &mode)) {
    std::fflush(stderr);
    WriteConsoleW(console, wide.data(), static_cast<DWORD>(wide.size()), &written, nullptr);
  } else {
    const std::string bytes = narrowed(wide, GetConsoleOutputCP() ? GetConsoleOutputCP() : CP_UTF8);
    std::fwrite(bytes.data(), 1, bytes.size(), stderr);
  }
}

bool input_is_terminal() {
  return _isatty(_fileno(stdin)) != 0;
}

}  // namespace qv
