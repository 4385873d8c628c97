#include "shape_source.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <set>
#include <sstream>
#include <string_view>
#include <utility>

namespace shpc {
namespace {

constexpr int kMostBytes = 65535;

std::string_view trimmed(std::string_view text) {
  const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
  while (!text.empty() && blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && blank(text.back())) text.remove_suffix(1);
  return text;
}

/// The fields between the commas, trimmed.
std::vector<std::string_view> split(std::string_view text) {
  std::vector<std::string_view> fields;
  for (;;) {
    const std::size_t comma = text.find(',');
    fields.push_back(trimmed(text.substr(0, comma)));
    if (comma == std::string_view::npos) return fields;
    text.remove_prefix(comma + 1);
  }
}

int digit_value(char c) {
  const char* const digits = "0123456789abcdef";
  const auto found = std::string_view(digits).find(static_cast<char>(std::tolower(static_cast<unsigned char>(c))));
  return found == std::string_view::npos ? 99 : static_cast<int>(found);
}

/// The number that a text is, from -65535 to 65535; empty for any other text.
std::optional<int> parse_number(std::string_view text) {
  const bool negative = !text.empty() && text.front() == '-';
  if (negative) text.remove_prefix(1);
  if (text.empty()) return std::nullopt;
  const int base = text.size() > 1 && text.front() == '0' ? 16 : 10;
  int value = 0;
  for (const char c : text) {
    const int digit = digit_value(c);
    if (digit >= base) return std::nullopt;
    value = value * base + digit;
    if (value > kMostBytes) return std::nullopt;
  }
  return negative ? -value : value;
}

/// What is wrong with a shape that is all read; empty when nothing is.
std::string fault_of(const Shape& shape, int declared) {
  if (static_cast<int>(shape.bytes.size()) != declared) {
    return "states " + std::to_string(declared) + " bytes and has " + std::to_string(shape.bytes.size());
  }
  if (shape.bytes.back() != 0) return "does not end in 0";
  if (shape.code == 0 && declared != 4) return "must consist of four bytes: above, below, modes and 0";
  if (shape.name.size() + shape.bytes.size() >= kMostBytes) return "is too long";
  return {};
}

class Parser {
 public:
  explicit Parser(std::vector<Error>& errors) : errors_(errors) {}

  void take_line(std::string_view text, int line) {
    line_ = line;
    text = trimmed(text.substr(0, text.find(';')));
    if (text.empty()) return;
    if (text.front() != '*') {
      take_codes(text);
      return;
    }
    finish_shape();
    text.remove_prefix(1);
    if (text.substr(0, 7) == "BIGFONT") {
      take_range(text.substr(7));
    } else {
      begin_shape(split(text));
    }
  }

  Font finish() {
    finish_shape();
    auto& shapes = font_.shapes;
    fill_ranges();
    std::stable_sort(shapes.begin(), shapes.end(), [](const Shape& a, const Shape& b) { return a.code < b.code; });
    for (std::size_t i = 1; i < shapes.size(); ++i) {
      if (shapes[i].code == shapes[i - 1].code) {
        line_ = std::max(shapes[i].line, shapes[i - 1].line);
        fail("shape " + std::to_string(shapes[i].code) + " stands here a second time");
      }
    }
    if (shapes.empty() || shapes.front().code != 0) fail("shape 0, which describes the font, is missing");
    return std::move(font_);
  }

 private:
  /// Shapes of ranges stand for the codes that have none.
  void fill_ranges() {
    std::vector<Shape> ranges;
    std::set<int> own;
    for (Shape& shape : std::exchange(font_.shapes, {})) {
      if (shape.code == shape.lastCode) own.insert(shape.code);
      (shape.code == shape.lastCode ? font_.shapes : ranges).push_back(std::move(shape));
    }
    for (const Shape& range : ranges) {
      for (int code = range.code; code <= range.lastCode; ++code) {
        if (own.contains(code)) continue;
        font_.shapes.push_back(range);
        font_.shapes.back().code = font_.shapes.back().lastCode = code;
      }
    }
  }

  void fail(const std::string& text) { errors_.push_back({line_, text}); }

  void take_range(std::string_view text) {
    const auto fields = split(text);
    std::optional<int> numbers[4];
    bool good = fields.size() == 4 && font_.shapes.empty();
    for (std::size_t i = 0; good && i < 4; ++i) good = (numbers[i] = parse_number(fields[i])).has_value();
    if (!good || *numbers[1] != 1 || *numbers[2] < 1 || *numbers[3] > 255 || *numbers[2] > *numbers[3]) {
      fail("a big font begins with *BIGFONT shapes,1,first,last");
      return;
    }
    font_.firstLead = *numbers[2];
    font_.lastLead = *numbers[3];
  }

  void begin_shape(const std::vector<std::string_view>& fields) {
    const std::size_t dash = fields[0].find('-', 1);
    const auto code = parse_number(fields[0].substr(0, dash));
    const auto last = dash == std::string_view::npos ? code : parse_number(fields[0].substr(dash + 1));
    const auto bytes = fields.size() >= 2 ? parse_number(fields[1]) : std::nullopt;
    if (fields.size() != 3 || !code || !last || !bytes || *code < 0 || *last < *code || *bytes < 1) {
      fail("a shape begins with *code,bytes,name");
      open_ = false;
      skip_ = true;
      return;
    }
    declared_ = *bytes;
    open_ = true;
    skip_ = false;
    shape_ = {line_, *code, *last, std::string(fields[2]), {}};
  }

  void take_codes(std::string_view text) {
    if (skip_) return;
    if (!open_) {
      fail("codes stand before the first shape");
      skip_ = true;
      return;
    }
    std::string plain(text);
    std::erase_if(plain, [](char c) { return c == '(' || c == ')' || c == ' ' || c == '\t'; });
    if (!plain.empty() && plain.back() == ',') plain.pop_back();
    if (!plain.empty() && plain.front() == ',') plain.erase(0, 1);
    for (const std::string_view field : split(plain)) {
      const auto value = parse_number(field);
      if (!value || *value < -128 || *value > 255) {
        fail(std::string(1, '"').append(field).append("\" is no code from -128 to 255"));
        skip_ = true;
        open_ = false;
        return;
      }
      shape_.bytes.push_back(static_cast<unsigned char>(*value & 255));
    }
  }

  void finish_shape() {
    if (!open_) return;
    open_ = false;
    if (const std::string fault = fault_of(shape_, declared_); !fault.empty()) {
      errors_.push_back({shape_.line, "shape " + std::to_string(shape_.code) + ' ' + fault});
    }
    font_.shapes.push_back(std::move(shape_));
  }

  std::vector<Error>& errors_;
  Font font_;
  Shape shape_;
  int declared_ = 0;
  int line_ = 1;
  bool open_ = false;  // a shape takes codes
  bool skip_ = false;  // the codes of a faulty shape are passed over
};

}  // namespace

Font parse(const std::string& source, std::vector<Error>& errors) {
  Parser parser(errors);
  std::istringstream lines(source);
  std::string text;
  for (int line = 1; std::getline(lines, text); ++line) parser.take_line(text, line);
  return parser.finish();
}

}  // namespace shpc
