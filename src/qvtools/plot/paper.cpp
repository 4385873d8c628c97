#include "qvtools/plot/paper.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace qv {

namespace {

constexpr PaperFormat kFormats[] = {
    {"A0", {1189, 841}},     {"A0+1/4", {1486, 841}}, {"A0+3/8", {1635, 841}}, {"A0+1/2", {1783, 841}},
    {"A0+5/8", {1932, 841}}, {"A0+3/4", {2080, 841}}, {"A0+7/8", {2230, 841}}, {"A0+1", {2378, 841}},
    {"A1", {841, 594}},      {"A1+1/4", {1051, 594}}, {"A1+1/2", {1261, 594}}, {"A1+3/4", {1471, 594}},
    {"A1+1", {1682, 594}},   {"A1+5/4", {1892, 594}}, {"A1+3/2", {2102, 594}}, {"A2", {594, 420}},
    {"A2+1/4", {743, 420}},  {"A2+1/2", {891, 420}},  {"A2+3/4", {1041, 420}}, {"A2+1", {1189, 420}},
    {"A2+5/4", {1338, 420}}, {"A2+3/2", {1486, 420}}, {"A2+7/4", {1635, 420}}, {"A2+2", {1783, 420}},
    {"A2+9/4", {1932, 420}}, {"A2+5/2", {2080, 420}}, {"A3", {420, 297}},      {"A3+1/2", {630, 297}},
    {"A3+1", {841, 297}},    {"A3+3/2", {1051, 297}}, {"A3+2", {1261, 297}},   {"A3+5/2", {1471, 297}},
    {"A3+3", {1682, 297}},   {"A3+7/2", {1892, 297}}, {"A4", {297, 210}},
};

constexpr double kLeast = 10;
constexpr double kMost = 5000;

bool same_letters(std::string_view a, std::string_view b) {
  const auto upper = [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&](char x, char y) { return upper(x) == upper(y); });
}

/// A side from the head of the text, which is taken off; 0 where there is none.
double take_side(std::string_view& text) {
  double side = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), side);
  if (error != std::errc() || !(side >= kLeast) || !(side <= kMost)) return 0;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return side;
}

}  // namespace

std::span<const PaperFormat> paper_formats() {
  return kFormats;
}

std::optional<PaperSize> paper_named(std::string_view name) {
  for (const PaperFormat& format : kFormats)
    if (same_letters(name, format.name)) return format.size;
  PaperSize size;
  size.width = take_side(name);
  if (size.width == 0 || name.empty() || (name[0] != 'x' && name[0] != 'X')) return std::nullopt;
  name.remove_prefix(1);
  size.height = take_side(name);
  if (size.height == 0 || !name.empty()) return std::nullopt;
  return size;
}

std::string paper_name(const PaperSize& size) {
  constexpr double kTolerance = 0.5;
  const PaperSize landscape = size.landscape();
  for (const PaperFormat& format : kFormats)
    if (std::fabs(format.size.width - landscape.width) <= kTolerance &&
        std::fabs(format.size.height - landscape.height) <= kTolerance)
      return format.name;
  const auto text = [](double side) {
    char digits[32];
    const double tenths = std::round(side * 10) / 10;
    return std::string(digits, std::to_chars(digits, digits + sizeof digits, tenths).ptr);
  };
  return text(size.width) + "x" + text(size.height);
}

}  // namespace qv
