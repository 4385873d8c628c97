#include <algorithm>
#include <cmath>

#include "qvtools/display/appearance.h"
#include "qvtools/display/internal/dash_pattern.h"
#include "qvtools/services/internal/out_of_memory.h"

namespace qv {

DashPattern detail::dash_pattern(std::span<const float> elements) {
  DashPattern pattern;
  bool gaps = false;
  bool ink = false;
  for (const float element : elements) {
    pattern.elements.push_back(element);
    pattern.length += std::fabs(static_cast<double>(element));
    gaps = gaps || element < 0;
    ink = ink || element >= 0;
  }
  return gaps && ink && std::isfinite(pattern.length) ? pattern : DashPattern();
}

void LinePatterns::add(const char* name, std::span<const float> elements) {
  detail::unless_out_of_memory([&] {
    Entry entry{name, detail::dash_pattern(elements)};
    const auto at = std::lower_bound(entries_.begin(), entries_.end(), entry.name,
                                     [](const Entry& e, const std::string& key) { return e.name < key; });
    if (at == entries_.end() || at->name != entry.name) entries_.insert(at, std::move(entry));
  });
}

const LinePatterns& SolidLines() {
  static const LinePatterns none;
  return none;
}

const DashPattern* LinePatterns::find(std::string_view name) const {
  const auto at = std::lower_bound(entries_.begin(), entries_.end(), name,
                                   [](const Entry& e, std::string_view key) { return e.name < key; });
  return at != entries_.end() && at->name == name && at->pattern.length > 0 ? &at->pattern : nullptr;
}

}  // namespace qv
