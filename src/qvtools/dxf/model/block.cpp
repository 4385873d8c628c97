#include "qvtools/dxf/model/block.h"

#include <type_traits>

#include "qvtools/text/gbk_text.h"

namespace qv {

ACAD_ENTITY* WorkingRecords::Of(ACAD_Entity_Type type) {
  ACAD_ENTITY* const records[] = {&m_Point,    &m_Line,  &m_Text,   &m_Circle, &m_Arc,
                                  &m_Polyline, &m_Solid, &m_3DFace, &m_Insert};
  return type >= ACAD_TYPE_POINT && type <= ACAD_TYPE_INSERT ? records[type] : nullptr;
}

namespace {

template <class Record>
ACAD_ENTITY* clone(ACAD_ENTITY& entity) {
  auto& record = static_cast<Record&>(entity);
  if constexpr (std::is_copy_constructible_v<Record>) {
    return new (std::nothrow) Record(record);
  } else {
    auto* const copy = new (std::nothrow) Record;
    if (copy) *copy = record;
    return copy;
  }
}

}  // namespace

ACAD_ENTITY* CloneEntity(ACAD_ENTITY& entity) {
  static constexpr decltype(&clone<ACAD_LINE>) kClone[] = {clone<ACAD_POINT>,  clone<ACAD_LINE>,   clone<ACAD_TEXT>,
                                                           clone<ACAD_CIRCLE>, clone<ACAD_ARC>,    clone<ACAD_POLYLINE>,
                                                           clone<ACAD_SOLID>,  clone<ACAD_3DFACE>, clone<ACAD_INSERT>};
  const int type = entity.GetType();
  return type >= ACAD_TYPE_POINT && type <= ACAD_TYPE_INSERT ? kClone[type](entity) : nullptr;
}

}  // namespace qv

ACAD_BLOCK::ACAD_BLOCK() = default;

ACAD_BLOCK::~ACAD_BLOCK() {
  delete_entities();
}

void ACAD_BLOCK::delete_entities() {
  for (POSITION at = m_EntityList.GetHeadPosition(); at;) delete static_cast<ACAD_ENTITY*>(m_EntityList.GetNext(at));
  m_EntityList.RemoveAll();
}

void ACAD_BLOCK::Ini() {
  delete_entities();
  m_fScale = 1;
  m_fRotation = 0;
  qv::copy_text(m_szLayer, "0");
  qv::copy_text(m_szName, "0");
  m_nFlags = 0;
  m_nColor = qv::kByLayer;
  m_Base = {};
}

ACAD_BLOCK& ACAD_BLOCK::operator=(const ACAD_BLOCK& other) {
  if (this == &other) return *this;
  Ini();
  std::memcpy(m_szLayer, other.m_szLayer, sizeof m_szLayer);
  std::memcpy(m_szName, other.m_szName, sizeof m_szName);
  m_nFlags = other.m_nFlags;
  m_nColor = other.m_nColor;
  m_Base = other.m_Base;
  for (POSITION at = other.m_EntityList.GetHeadPosition(); at;) {
    auto* entity = static_cast<ACAD_ENTITY*>(other.m_EntityList.GetNext(at));
    if (entity->GetType() > ACAD_TYPE_3DFACE) continue;
    ACAD_ENTITY* copy = qv::CloneEntity(*entity);
    if (copy) m_EntityList.AddTail(copy);
  }
  return *this;
}
