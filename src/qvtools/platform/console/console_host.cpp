#include "qvtools/platform/console/console_host.h"

#include <cstdio>

#include "qvtools/system/internal/terminal.h"

namespace qv {
namespace {

constexpr const char* kPrefixes[] = {"", "note: ", "error: ", ""};

Answer ask() {
  print_to_terminal(" [OK: Enter, Cancel: c] ");
  char line[16];
  if (!std::fgets(line, sizeof line, stdin)) return Answer::Cancel;
  const char first = line[0];
  return first == 'c' || first == 'C' || first == 'n' || first == 'N' ? Answer::Cancel : Answer::Ok;
}

}  // namespace

ConsoleHost::ConsoleHost(CSize screen) : screen_(screen) {}
ConsoleHost::~ConsoleHost() = default;

Answer ConsoleHost::ShowBox(const char* text, BoxKind kind) {
  print_to_terminal(kPrefixes[static_cast<int>(kind)] + std::string(text));
  if (kind == BoxKind::Question && input_is_terminal()) return ask();
  print_to_terminal("\n");
  return Answer::Ok;
}

}  // namespace qv
