#pragma once

/// Walking a drawing's records.

#include "qvtools.h"

namespace qvapps {

/// Calls f with each record of a list.
template <class Record, class F>
void for_each(const CPtrList& list, const F& f) {
  for (POSITION at = list.GetHeadPosition(); at;) f(*static_cast<Record*>(list.GetNext(at)));
}

/// Calls f with the entity as its own kind; without a call for what is no entity.
template <class F>
void visit(ACAD_ENTITY& entity, const F& f) {
  switch (entity.GetType()) {
    case ACAD_TYPE_POINT:
      return f(static_cast<ACAD_POINT&>(entity));
    case ACAD_TYPE_LINE:
      return f(static_cast<ACAD_LINE&>(entity));
    case ACAD_TYPE_TEXT:
      return f(static_cast<ACAD_TEXT&>(entity));
    case ACAD_TYPE_CIRCLE:
      return f(static_cast<ACAD_CIRCLE&>(entity));
    case ACAD_TYPE_ARC:
      return f(static_cast<ACAD_ARC&>(entity));
    case ACAD_TYPE_POLYLINE:
      return f(static_cast<ACAD_POLYLINE&>(entity));
    case ACAD_TYPE_SOLID:
      return f(static_cast<ACAD_SOLID&>(entity));
    case ACAD_TYPE_3DFACE:
      return f(static_cast<ACAD_3DFACE&>(entity));
    case ACAD_TYPE_INSERT:
      return f(static_cast<ACAD_INSERT&>(entity));
    case ACAD_TYPE_NONE:
    case ACAD_TYPE_END:
      break;
  }
}

/// The layer of an entity.
inline const char* layer_of(ACAD_ENTITY& entity) {
  const char* layer = "";
  visit(entity, [&](auto& record) { layer = record.m_szLayer; });
  return layer;
}

}  // namespace qvapps
