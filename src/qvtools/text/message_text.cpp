#include "qvtools/text/message_text.h"

#include <algorithm>

namespace qv {

int MessageText::LineCount() const {
  return 1 + static_cast<int>(std::count(bytes_.begin(), bytes_.end(), '\n'));
}

int MessageText::LineStart(int line) const {
  std::size_t start = 0;
  for (; line > 0; --line) {
    const std::size_t end = bytes_.find('\n', start);
    if (end == std::string::npos) return -1;
    start = end + 1;
  }
  return static_cast<int>(start);
}

void MessageText::Select(int from, int to) {
  const auto limit = [&](int at) { return std::min(static_cast<std::size_t>(std::max(at, 0)), bytes_.size()); };
  from_ = limit(std::min(from, to));
  to_ = limit(std::max(from, to));
}

void MessageText::Replace(const char* text) {
  const std::string inserted = text;
  bytes_.replace(from_, to_ - from_, inserted);
  from_ = to_ = from_ + inserted.size();
}

}  // namespace qv
