#pragma once

/// Walking a drawing's records.

#include "qvtools.h"

namespace qv::viewer {

/// Calls f with each record of a list.
template <class Record, class F>
void for_each(const CPtrList& list, const F& f) {
  for (POSITION at = list.GetHeadPosition(); at;) f(*static_cast<Record*>(list.GetNext(at)));
}

/// The layer of an entity.
inline const char* layer_of(ACAD_ENTITY& entity) {
  const char* layer = "";
  qv::visit_entity(entity, [&](auto& record) { layer = record.m_szLayer; });
  return layer;
}

}  // namespace qv::viewer
