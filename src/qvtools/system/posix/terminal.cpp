#include "qvtools/system/internal/terminal.h"

#include <iconv.h>
#include <langinfo.h>
#include <locale.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace qv {
namespace {

/// The encoding that the environment names; the program itself may never have set a locale.
std::string terminal_encoding() {
  const locale_t locale = newlocale(LC_CTYPE_MASK, "", locale_t{});
  if (!locale) return "UTF-8";
  const std::string name = nl_langinfo_l(CODESET, locale);
  freelocale(locale);
  return name == "ANSI_X3.4-1968" ? "UTF-8" : name;
}

std::string converted(const std::string& text, iconv_t converter) {
  std::string result;
  char* from = const_cast<char*>(text.data());
  std::size_t left = text.size();
  while (left > 0) {
    char block[256];
    char* to = block;
    std::size_t room = sizeof block;
    const bool done = iconv(converter, &from, &left, &to, &room) != static_cast<std::size_t>(-1);
    const int error = errno;
    result.append(block, to);
    if (done || error == E2BIG) continue;
    result += '?';
    ++from;
    --left;
  }
  return result;
}

}  // namespace

void print_to_terminal(const std::string& text) {
  const iconv_t converter = iconv_open(terminal_encoding().c_str(), "GBK");
  if (converter == reinterpret_cast<iconv_t>(-1)) {
    std::fputs(text.c_str(), stderr);
    return;
  }
  std::fputs(converted(text, converter).c_str(), stderr);
  iconv_close(converter);
}

bool input_is_terminal() {
  return isatty(STDIN_FILENO) == 1;
}

}  // namespace qv
