#include "arguments.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace qvdraw {

namespace {

bool is_in(const std::vector<std::string>& list, const std::string& word) {
  return std::find(list.begin(), list.end(), word) != list.end();
}

}  // namespace

void Arguments::expect(std::size_t operands, const std::vector<std::string>& options,
                       const std::vector<std::string>& flags) const {
  expect_between(operands, operands, options, flags);
}

void Arguments::expect_between(std::size_t least, std::size_t most, const std::vector<std::string>& options,
                               const std::vector<std::string>& flags) const {
  for (std::size_t i = 0; i < words_.size(); ++i) {
    const std::string& word = words_[i];
    if (word.size() < 2 || word[0] != '-' || (word[1] >= '0' && word[1] <= '9')) {
      operands_.push_back(word);
      continue;
    }
    const bool takesValue = is_in(options, word);
    if (!takesValue && !is_in(flags, word)) throw UsageError("there is no option \"" + word + "\" here");
    if (takesValue && i + 1 == words_.size()) throw UsageError(word + " needs a value");
    if (!values_.emplace(word, takesValue ? words_[++i] : "").second) throw UsageError(word + " is given twice");
  }
  if (operands_.size() < least) throw UsageError("a file name is missing");
  if (operands_.size() > most) throw UsageError("\"" + operands_[most] + "\" is one word too many");
}

std::string Arguments::value(const std::string& option, const std::string& otherwise) const {
  const auto found = values_.find(option);
  return found == values_.end() ? otherwise : found->second;
}

std::string Arguments::required(const std::string& option) const {
  if (!has(option)) throw UsageError(option + " is missing");
  return value(option);
}

std::vector<double> Arguments::numbers(const std::string& option, std::size_t count) const {
  const std::string text = value(option);
  std::vector<double> numbers;
  const char* at = text.data();
  const char* const end = at + text.size();
  while (at != end) {
    double number;
    const auto [next, error] = std::from_chars(at, end, number);
    if (error != std::errc() || !std::isfinite(number)) break;
    numbers.push_back(number);
    at = next;
    if (at == end) break;
    if (*at != ',' && *at != 'x') break;
    if (++at == end) break;
  }
  if (at != end || numbers.size() != count)
    throw UsageError(option + " wants " + std::to_string(count) + " numbers, not \"" + text + "\"");
  return numbers;
}

}  // namespace qvdraw
