#include <algorithm>
#include <cmath>

#include "qvtools/display/appearance.h"
#include "qvtools/services/internal/out_of_memory.h"

namespace qv {

void LinePatterns::add(const char* name, std::span<const float> elements) {
  detail::unless_out_of_memory([&] {
    Entry entry;
    entry.name = name;
    bool gaps = false;
    bool ink = false;
    for (const float element : elements) {
      entry.pattern.elements.push_back(element);
      entry.pattern.length += std::fabs(static_cast<double>(element));
      gaps = gaps || element < 0;
      ink = ink || element >= 0;
    }
    if (!gaps || !ink || !std::isfinite(entry.pattern.length)) entry.pattern = {};
    const auto at = std::lower_bound(entries_.begin(), entries_.end(), entry.name,
                                     [](const Entry& e, const std::string& key) { return e.name < key; });
    if (at == entries_.end() || at->name != entry.name) entries_.insert(at, std::move(entry));
  });
}

const DashPattern* LinePatterns::find(std::string_view name) const {
  const auto at = std::lower_bound(entries_.begin(), entries_.end(), name,
                                   [](const Entry& e, std::string_view key) { return e.name < key; });
  return at != entries_.end() && at->name == name && at->pattern.length > 0 ? &at->pattern : nullptr;
}

}  // namespace qv
