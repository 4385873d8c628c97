#include "platform/console/console_host.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "platform/console/terminal.h"

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

void ConsoleHost::CreateMessageWindow() {}

void ConsoleHost::ShowMessageWindow(bool visible) {
  visible_ = visible;
}

int ConsoleHost::MessageLineCount() const {
  return 1 + static_cast<int>(std::count(messages_.begin(), messages_.end(), '\n'));
}

int ConsoleHost::MessageLineStart(int line) const {
  std::size_t start = 0;
  for (; line > 0; --line) {
    const std::size_t end = messages_.find('\n', start);
    if (end == std::string::npos) return -1;
    start = end + 1;
  }
  return static_cast<int>(start);
}

void ConsoleHost::SelectMessage(int from, int to) {
  const auto limit = [&](int at) { return std::min(static_cast<std::size_t>(std::max(at, 0)), messages_.size()); };
  from_ = limit(std::min(from, to));
  to_ = limit(std::max(from, to));
}

void ConsoleHost::ReplaceMessageSelection(const char* text) {
  const std::string inserted = text;
  messages_.replace(from_, to_ - from_, inserted);
  from_ = to_ = from_ + inserted.size();
}

void ConsoleHost::DrainMessages() {}

}  // namespace qv
