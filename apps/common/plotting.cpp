#include "common/plotting.h"

#include <charconv>
#include <cmath>

namespace qvapps {

namespace {

/// The empty value unless all of the text is a number above 0.
std::optional<double> positive(std::string_view text) {
  double value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end || !(value > 0) || !std::isfinite(value)) return std::nullopt;
  return value;
}

}  // namespace

std::optional<double> scale_of(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return std::nullopt;
  const std::optional<double> paper = positive(text.substr(0, colon));
  const std::optional<double> drawing = positive(text.substr(colon + 1));
  if (!paper || !drawing) return std::nullopt;
  return *drawing / *paper;
}

std::optional<qv::PenTable> pen_table(const std::string& name, std::string& problem) {
  if (std::optional<qv::PenTable> table = qv::PenTable::built_in(name)) return table;
  return qv::PenTable::read(name.c_str(), problem);
}

double unit_of(const qv::ImportReport& report) {
  constexpr double kMillimetres[] = {1, 25.4, 304.8, 1609344, 1, 10, 1000, 1e6};
  const bool converted = report.scale != 1;
  return converted ? 1 : kMillimetres[static_cast<int>(report.unit)];
}

std::string two_decimals(double v) {
  char digits[64];
  const double rounded = std::fabs(v) < 1e12 ? std::round(v * 100) / 100 : v;
  return std::string(digits, std::to_chars(digits, digits + sizeof digits, rounded).ptr);
}

}  // namespace qvapps
