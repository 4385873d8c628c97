#include "qvtools/plot/pens.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "qvtools/plot/internal/ctb.h"
#include "qvtools/system/textfile.h"

namespace qv {

namespace {

constexpr const char* kObject = "any -> 0.25 weight";
constexpr const char* kMono = "any -> 0.25 weight black";

/// The tables of GB/T 50001 (thick line b, 0.7b, 0.5b, thin line 0.25b) for each b.
constexpr struct {
  const char* name;
  const char* text;
} kBuiltIn[] = {
    {"object", kObject},
    {"mono", kMono},
    {"GB b=1.4",
     "color 6 -> 1.4 weight black\n color 4 -> 1.0 weight black\n color 8,254 -> 0.35 weight black 50%\n"
     "color 1,5,9,250-253 -> 0.35 weight black\n any -> 0.7 weight black"},
    {"GB b=1.0",
     "color 6 -> 1.0 weight black\n color 4 -> 0.7 weight black\n color 8,254 -> 0.25 weight black 50%\n"
     "color 1,5,9,250-253 -> 0.25 weight black\n any -> 0.5 weight black"},
    {"GB b=0.7",
     "color 6 -> 0.7 weight black\n color 4 -> 0.5 weight black\n color 8,254 -> 0.18 weight black 50%\n"
     "color 1,5,9,250-253 -> 0.18 weight black\n any -> 0.35 weight black"},
    {"GB b=0.5",
     "color 6 -> 0.5 weight black\n color 4 -> 0.35 weight black\n color 8,254 -> 0.13 weight black 50%\n"
     "color 1,5,9,250-253 -> 0.13 weight black\n any -> 0.25 weight black"},
};

constexpr struct {
  const char* name;
  int color;
} kColors[] = {{"black", 0x000000}, {"white", 0xFFFFFF},  {"grey", 0x808080},  {"gray", 0x808080},
               {"red", 0xFF0000},   {"yellow", 0xFFFF00}, {"green", 0x00FF00}, {"cyan", 0x00FFFF},
               {"blue", 0x0000FF},  {"magenta", 0xFF00FF}};

char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool same_letters(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return upper(x) == upper(y); });
}

/// Whether a name is what a pattern with "*" and "?" describes.
bool matches(std::string_view pattern, std::string_view name) {
  std::size_t p = 0, n = 0;
  std::size_t star = std::string_view::npos, from = 0;  // the last "*", and where the name goes on behind it
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      from = n;
    } else if (p < pattern.size() && (pattern[p] == '?' || upper(pattern[p]) == upper(name[n]))) {
      ++p;
      ++n;
    } else if (star != std::string_view::npos) {
      p = star + 1;
      n = ++from;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*') ++p;
  return p == pattern.size();
}

constexpr std::string_view kBlanks = " \t\r";

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// Takes the next word off a text.
std::string_view take_word(std::string_view& text) {
  text = trimmed(text);
  const std::size_t end = std::min(text.find_first_of(kBlanks), text.size());
  const std::string_view word = text.substr(0, end);
  text.remove_prefix(end);
  return word;
}

/// The whole word as a number from least to most.
template <class Number>
bool parse_number(std::string_view word, Number least, Number most, Number& value) {
  Number number{};
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (error != std::errc() || end != word.data() + word.size() || !(number >= least) || !(number <= most)) return false;
  value = number;
  return true;
}

/// "1-4,6,250-255".
bool parse_colors(std::string_view text, std::bitset<256>& colors) {
  while (!text.empty()) {
    const std::size_t comma = std::min(text.find(','), text.size());
    const std::string_view range = text.substr(0, comma);
    text.remove_prefix(std::min(comma + 1, text.size()));
    const std::size_t dash = std::min(range.find('-'), range.size());
    int first = 0, last = 0;
    if (!parse_number(range.substr(0, dash), 0, 255, first)) return false;
    last = first;
    if (dash < range.size() && !parse_number(range.substr(dash + 1), first, 255, last)) return false;
    for (int i = first; i <= last; ++i) colors.set(static_cast<std::size_t>(i));
  }
  return colors.any();
}

bool parse_color(std::string_view word, int& color) {
  if (word.size() == 7 && word[0] == '#') {
    const auto [end, error] = std::from_chars(word.data() + 1, word.data() + 7, color, 16);
    return error == std::errc() && end == word.data() + 7;
  }
  for (const auto& named : kColors) {
    if (!same_letters(word, named.name)) continue;
    color = named.color;
    return true;
  }
  return false;
}

/// What stands before the arrow.
bool parse_selection(std::string_view text, PenRule& rule) {
  const std::string_view kind = take_word(text);
  const std::string_view what = trimmed(text);
  rule.pattern = what;
  if (same_letters(kind, "any")) return what.empty();
  if (same_letters(kind, "color") || same_letters(kind, "colour")) {
    rule.by = PenRule::By::Color;
    return parse_colors(what, rule.colors);
  }
  rule.by = same_letters(kind, "layer") ? PenRule::By::Layer : PenRule::By::LineType;
  return !what.empty() && (rule.by == PenRule::By::Layer || same_letters(kind, "ltype"));
}

/// What stands behind it.
bool parse_pen(std::string_view text, PenRule& rule) {
  constexpr double kWidest = 20;
  bool any = false;
  for (std::string_view word; !(word = take_word(text)).empty(); any = true) {
    if (word.back() == '%') {
      if (!parse_number(word.substr(0, word.size() - 1), 0.0, 100.0, rule.screening)) return false;
    } else if (same_letters(word, "weight")) {
      rule.ownWidth = true;
    } else if (!parse_number(word, 0.0, kWidest, rule.width) && !parse_color(word, rule.color)) {
      return false;
    }
  }
  return any;
}

}  // namespace

std::span<const char* const> PenTable::built_in_names() {
  static constexpr const char* kNames[] = {kBuiltIn[0].name, kBuiltIn[1].name, kBuiltIn[2].name,
                                           kBuiltIn[3].name, kBuiltIn[4].name, kBuiltIn[5].name};
  return kNames;
}

std::optional<PenTable> PenTable::built_in(std::string_view name) {
  std::string problem;
  for (const auto& table : kBuiltIn)
    if (same_letters(name, table.name)) return parse(table.text, problem);
  return std::nullopt;
}

std::optional<PenTable> PenTable::parse(std::string_view text, std::string& problem) {
  PenTable table;
  for (int number = 1; !text.empty(); ++number) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = trimmed(text.substr(0, std::min(end, text.find(';'))));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.empty()) continue;
    const std::size_t arrow = line.find("->");
    PenRule rule;
    if (arrow == std::string_view::npos || !parse_selection(line.substr(0, arrow), rule) ||
        !parse_pen(line.substr(arrow + 2), rule)) {
      problem = "line " + std::to_string(number) + " is no pen: \"" + std::string(line) + "\"";
      return std::nullopt;
    }
    table.rules_.push_back(std::move(rule));
  }
  return table;
}

std::optional<PenTable> PenTable::read(const char* path, std::string& problem) {
  constexpr std::size_t kLargest = 1 << 20;
  std::FILE* const file = open_text(path, "rb");
  if (!file) {
    problem = "cannot be opened";
    return std::nullopt;
  }
  std::string bytes(kLargest + 1, '\0');
  bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file));
  const bool failed = std::ferror(file) != 0;
  std::fclose(file);
  if (failed || bytes.size() > kLargest) {
    problem = failed ? "cannot be read" : "is too large for a table of pens";
    return std::nullopt;
  }
  if (!detail::is_ctb(bytes)) return parse(bytes, problem);
  PenTable table;
  if (!detail::read_ctb(bytes, table.rules_, problem)) return std::nullopt;
  return table;
}

const PenRule* PenTable::find(int color, std::string_view layer, std::string_view ltype) const {
  const auto fits = [&](const PenRule& rule) {
    switch (rule.by) {
      case PenRule::By::Color:
        return color >= 0 && color < 256 && rule.colors.test(static_cast<std::size_t>(color));
      case PenRule::By::Layer:
        return matches(rule.pattern, layer);
      case PenRule::By::LineType:
        return matches(rule.pattern, ltype);
      case PenRule::By::Anything:
        break;
    }
    return true;
  };
  const auto found = std::find_if(rules_.begin(), rules_.end(), fits);
  return found == rules_.end() ? nullptr : &*found;
}

}  // namespace qv
