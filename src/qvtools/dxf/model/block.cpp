#include "qvtools/dxf/model/block.h"

#include <cstring>
#include <memory>
#include <type_traits>
#include <utility>

#include "qvtools/dxf/model/visit.h"
#include "qvtools/services/internal/out_of_memory.h"
#include "qvtools/text/gbk_text.h"

namespace qv {

namespace detail {

void delete_entities(CPtrList& list) {
  for (POSITION at = list.GetHeadPosition(); at;) delete static_cast<ACAD_ENTITY*>(list.GetNext(at));
  list.RemoveAll();
}

void delete_blocks(CPtrList& list) {
  for (POSITION at = list.GetHeadPosition(); at;) delete static_cast<ACAD_BLOCK*>(list.GetNext(at));
  list.RemoveAll();
}

}  // namespace detail

ACAD_ENTITY* WorkingRecords::Of(ACAD_Entity_Type type) {
#define QV_KIND(KEYWORD, member) &member,
  ACAD_ENTITY* const records[] = {QV_FOR_EACH_ENTITY_KIND(QV_KIND)};
#undef QV_KIND
  return type >= ACAD_TYPE_POINT && type <= ACAD_TYPE_INSERT ? records[type] : nullptr;
}

namespace {

using detail::unless_out_of_memory;

template <class Record>
ACAD_ENTITY* clone(const Record& record) {
  if constexpr (std::is_copy_constructible_v<Record>) {
    return new (std::nothrow) Record(record);
  } else {
    std::unique_ptr<Record> copy(new (std::nothrow) Record);
    if (!copy || !unless_out_of_memory([&] { return *copy = record, true; }, false)) return nullptr;
    return copy.release();
  }
}

}  // namespace

ACAD_ENTITY* CloneEntity(ACAD_ENTITY& entity) {
  return visit_entity(entity, [](const auto& record) { return clone(record); });
}

std::shared_ptr<WorkingRecords> detail::records_of_kept_blocks() {
  try {
    return std::make_shared<WorkingRecords>();
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace qv

ACAD_BLOCK::ACAD_BLOCK() : ACAD_BLOCK(std::make_shared<qv::WorkingRecords>()) {}

ACAD_BLOCK::ACAD_BLOCK(std::shared_ptr<qv::WorkingRecords> records) noexcept : records_(std::move(records)) {}

ACAD_BLOCK::~ACAD_BLOCK() {
  qv::detail::delete_entities(m_EntityList);
}

void ACAD_BLOCK::Ini() {
  qv::detail::delete_entities(m_EntityList);
  m_fScale = 1;
  m_fRotation = 0;
  qv::copy_text(m_szLayer, "0");
  qv::copy_text(m_szName, "0");
  m_nFlags = 0;
  m_nColor = qv::kByLayer;
  m_Base = {};
}

int ACAD_BLOCK::Copy(const ACAD_BLOCK* other) {
  if (this == other) return 1;
  CPtrList copies;
  for (POSITION at = other->m_EntityList.GetHeadPosition(); at;) {
    auto* const entity = static_cast<ACAD_ENTITY*>(other->m_EntityList.GetNext(at));
    if (entity->GetType() > ACAD_TYPE_3DFACE) continue;
    ACAD_ENTITY* const copy = qv::CloneEntity(*entity);
    if (copy && copies.AddTail(copy)) continue;
    delete copy;
    qv::detail::delete_entities(copies);
    return 0;
  }
  Ini();
  m_EntityList.TakeAll(copies);
  std::memcpy(m_szLayer, other->m_szLayer, sizeof m_szLayer);
  std::memcpy(m_szName, other->m_szName, sizeof m_szName);
  m_nFlags = other->m_nFlags;
  m_nColor = other->m_nColor;
  m_Base = other->m_Base;
  return 1;
}

ACAD_BLOCK& ACAD_BLOCK::operator=(const ACAD_BLOCK& other) {
  if (!Copy(&other)) tell_error(301, "Out of memery in Copy Block !");
  return *this;
}
