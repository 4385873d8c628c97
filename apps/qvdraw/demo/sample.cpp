#include "demo/sample.h"

#include <cmath>
#include <cstdio>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "qvtools/system/textfile.h"
#include "qvtools/text/code_page.h"
#include "qvtools/text/numbers.h"

namespace qvdraw {

namespace {

std::string trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t\r");
  if (first == text.npos) return "";
  return text.substr(first, text.find_last_not_of(" \t\r") + 1 - first);
}

std::vector<std::string> split(const std::string& text) {
  std::vector<std::string> fields;
  std::size_t from = 0;
  for (std::size_t at = text.find(','); at != text.npos; at = text.find(',', from)) {
    fields.push_back(trimmed(text.substr(from, at - from)));
    from = at + 1;
  }
  fields.push_back(trimmed(text.substr(from)));
  return fields;
}

/// GBK, with bar texts in braces set by their signs.
std::string field(const std::string& utf8) {
  std::string text;
  std::size_t from = 0;
  for (std::size_t open = utf8.find('{'); open != utf8.npos; open = utf8.find('{', from)) {
    const std::size_t close = utf8.find('}', open);
    if (close == utf8.npos) break;
    text += qv::to_gbk(utf8.substr(from, open - from)) + bar_text(utf8.substr(open + 1, close - open - 1));
    from = close + 1;
  }
  return text + qv::to_gbk(utf8.substr(from));
}

std::string contents(const std::string& path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(qv::open_text(path.c_str(), "rb"), std::fclose);
  if (!file) throw std::runtime_error(path + ": no such file");
  std::string all;
  char block[4096];
  while (const std::size_t n = std::fread(block, 1, sizeof block, file.get())) all.append(block, n);
  return all;
}

/// A length, a count or a level: what has digits, and is not beyond all measure.
float to_number(const std::string& text) {
  constexpr double kMost = 1e6;
  const bool hasDigits =
      text.find_first_of("0123456789") != text.npos && text.find_first_not_of("+-.0123456789") == text.npos;
  const double value = hasDigits ? qv::parse_real(text) : 2 * kMost;
  if (std::fabs(value) > kMost) throw std::runtime_error("\"" + text + "\" is no number for a drawing");
  return static_cast<float>(value);
}

}  // namespace

float axis(const std::vector<float>& axes, float number) {
  const bool there = number >= 0 && number < static_cast<float>(axes.size());
  if (!there) throw std::runtime_error("there is no axis " + std::to_string(std::lround(number) + 1));
  return axes[static_cast<std::size_t>(number)];
}

std::string bar_text(const std::string& text) {
  constexpr char kSigns[] = {'\x82', '\x83', '\x8B'};
  std::string signs = text;
  for (std::size_t i = 0; i < signs.size(); ++i) {
    const bool counts = i + 1 < signs.size() ? signs[i + 1] >= '0' && signs[i + 1] <= '9' : signs.size() == 1;
    if (signs[i] >= 'A' && signs[i] <= 'C' && counts) signs[i] = kSigns[signs[i] - 'A'];
  }
  return signs;
}

const std::string& Sample::Row::text(std::size_t i) const {
  if (i >= fields.size()) throw std::runtime_error("\"" + whole + "\" has too few fields");
  return fields[i];
}

float Sample::Row::number(std::size_t i) const {
  return to_number(text(i));
}

Sample::Sample(const std::string& path) : path_(path) {
  std::istringstream file(contents(path));
  std::vector<Row>* section = nullptr;
  for (std::string line; std::getline(file, line);) {
    line = trimmed(line.substr(0, line.find('#')));
    if (line.empty()) continue;
    if (line.front() == '[') {
      section = &sections_[line.substr(1, line.find(']') - 1)];
      continue;
    }
    if (!section) throw std::runtime_error(path + ": \"" + line + "\" stands in no section");
    Row row;
    const std::size_t equals = line.find(" = ");
    if (equals != line.npos) {
      row.key = field(trimmed(line.substr(0, equals)));
      line = trimmed(line.substr(equals + 3));
    }
    row.whole = field(line);
    for (const std::string& part : split(line)) row.fields.push_back(field(part));
    section->push_back(std::move(row));
  }
}

const std::vector<Sample::Row>& Sample::rows(const std::string& section) const {
  const auto found = sections_.find(section);
  if (found == sections_.end()) throw std::runtime_error(path_ + ": it has no section [" + section + "]");
  return found->second;
}

const Sample::Row& Sample::row(const std::string& section, const std::string& key) const {
  for (const Row& row : rows(section))
    if (row.key == key) return row;
  throw std::runtime_error(path_ + ": [" + section + "] has no \"" + key + "\"");
}

std::vector<float> Sample::numbers(const std::string& section, const std::string& key, std::size_t least) const {
  constexpr std::size_t kMost = 100;
  std::vector<float> numbers;
  for (const std::string& text : row(section, key).fields) {
    const std::size_t times = text.find('*');
    const auto count =
        times == text.npos ? std::size_t{1} : static_cast<std::size_t>(std::fabs(to_number(text.substr(0, times))));
    if (count > kMost || numbers.size() > kMost) throw std::runtime_error("\"" + key + "\" has too many numbers");
    for (std::size_t i = 0; i < count; ++i)
      numbers.push_back(to_number(times == text.npos ? text : text.substr(times + 1)));
  }
  if (numbers.size() < least) throw std::runtime_error("\"" + key + "\" has too few numbers");
  return numbers;
}

std::vector<std::string> Sample::lines(const std::string& section) const {
  std::vector<std::string> lines;
  for (const Row& row : rows(section)) lines.push_back(row.whole);
  return lines;
}

}  // namespace qvdraw
