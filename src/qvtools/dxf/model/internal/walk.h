#pragma once

/// Walks the entities of a list. Those of one size lie side by side as they were made, but kinds lie apart, and lists
/// may hold them in any order: a walk waits for each record unless it asks for it ahead of time.

#include "qvtools/dxf/model/entity.h"
#include "qvtools/system/internal/prefetch.h"

namespace qv::detail {

/// Calls f(entity) for each entity of the list until it returns true; whether it did.
bool walk_until(const CPtrList& list, const auto& f) {
  constexpr int kAhead = 20;
  constexpr std::size_t kCacheLine = 64;      // a line or a circle takes two
  constexpr std::size_t kPagesAhead = 12288;  // of records side by side, those that take longest to come
  POSITION ahead = list.GetHeadPosition();
  for (int i = 0; i < kAhead && ahead; ++i) list.GetNext(ahead);
  for (POSITION at = list.GetHeadPosition(); at;) {
    if (ahead) {
      const auto record = reinterpret_cast<std::uintptr_t>(list.GetNext(ahead));
      prefetch(record);
      prefetch(record + kCacheLine);
      prefetch(record + kPagesAhead);
    }
    if (f(*static_cast<ACAD_ENTITY*>(list.GetNext(at)))) return true;
  }
  return false;
}

void walk(const CPtrList& list, const auto& f) {
  walk_until(list, [&](ACAD_ENTITY& entity) {
    f(entity);
    return false;
  });
}

}  // namespace qv::detail
