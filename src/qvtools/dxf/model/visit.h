#pragma once

#include <type_traits>
#include <typeinfo>

#include "qvtools/dxf/model/entity.h"

namespace qv {

namespace detail {

/// Calls f with the entity as the kind that its type names.
auto visit_kind(ACAD_Entity_Type type, ACAD_ENTITY& entity, const auto& f)
    -> decltype(f(static_cast<ACAD_LINE&>(entity))) {
  switch (type) {
#define QV_KIND(KEYWORD, member) \
  case ACAD_TYPE_##KEYWORD:      \
    return f(static_cast<ACAD_##KEYWORD&>(entity));
    QV_FOR_EACH_ENTITY_KIND(QV_KIND)
#undef QV_KIND
    case ACAD_TYPE_NONE:
    case ACAD_TYPE_END:
      break;
  }
  return decltype(f(static_cast<ACAD_LINE&>(entity)))();
}

}  // namespace detail

/// Calls f with the entity as its own kind, one of the nine, and returns what it returns. What is of no such kind (a
/// program's own class) is not visited; the answer is then a value-initialised one.
auto visit_entity(ACAD_ENTITY& entity, const auto& f) -> decltype(f(static_cast<ACAD_LINE&>(entity))) {
  return detail::visit_kind(entity.GetType(), entity, f);
}

namespace detail {

template <class Record>
bool is_exactly(const ACAD_ENTITY& entity) {
  return typeid(entity) == typeid(Record);
}

/// The same for what is drawn and measured: f for an entity of just one of the nine classes. Any other, one derived
/// from the nine included, answers by its own operations, so `own` is called with it.
template <class F, class Own>
auto visit_record(ACAD_ENTITY& entity, const F& f, const Own& own) {
  const ACAD_Entity_Type type = entity.GetType();
  if (type < ACAD_TYPE_POINT || type > ACAD_TYPE_INSERT) return own(entity);
  return visit_kind(type, entity, [&](auto& record) {
    return is_exactly<std::remove_reference_t<decltype(record)>>(entity) ? f(record) : own(entity);
  });
}

}  // namespace detail

}  // namespace qv
