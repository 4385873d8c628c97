#include <cmath>
#include <memory>

#include "qvtools/dxf/model/internal/name_index.h"
#include "qvtools/services/internal/out_of_memory.h"
#include "qvtools/services/services.h"
#include "qvtools/text/gbk_text.h"

using namespace qv::detail;

int DXF::InsertDxf(DXF* other, float dx, float dy, float angle) {
  constexpr double kNothing = 0.00001;
  const float offset[3] = {dx, dy, 0};
  const double a = angle * 3.1415927 / 180;
  const auto c = static_cast<float>(std::cos(a));
  const auto s = static_cast<float>(std::sin(a));
  const float matrix[9] = {c, -s, 0, s, c, 0, 0, 0, 1};
  const bool shifted = std::fabs(dx) >= kNothing || std::fabs(dy) >= kNothing;
  return InsertDxf(other, shifted ? offset : nullptr, std::fabs(angle) >= kNothing ? matrix : nullptr);
}

/// A table with another one's entries that it has not: made aside, and taken when all of a drawing can come in. A read
/// document's table becomes as large as needed; a written one's keeps its capacity, and what is over is reported.
template <class Entry>
struct DXF::MergedTable {
  std::unique_ptr<Entry[]> table;  // null: the present one is large enough
  int room;
  std::unique_ptr<bool[]> missing;  // of the other table's entries, those to be added

  bool merge(const Entry* present, int count, const Entry* other, int otherCount, bool grows) {
    NameIndex<const Entry> names(static_cast<std::size_t>(count) + static_cast<std::size_t>(otherCount));
    missing.reset(new (std::nothrow) bool[static_cast<std::size_t>(otherCount)]);
    if (!names.is_ready() || !missing) return false;
    for (int i = 0; i < count; ++i) names.add(present[i]);
    int wanted = count;
    for (int i = 0; i < otherCount; ++i) wanted += missing[static_cast<std::size_t>(i)] = names.add(other[i]);
    if (!grows || wanted <= room) return true;
    table.reset(new (std::nothrow) Entry[static_cast<std::size_t>(wanted)]);
    room = wanted;
    if (table) std::copy_n(present, count, table.get());
    return table != nullptr;
  }
  void take(std::unique_ptr<Entry[]>& into, int& count, int& intoRoom, const Entry* other, int otherCount,
            const char* overflow) {
    if (table) into = std::move(table);
    intoRoom = room;
    for (int i = 0; i < otherCount; ++i) {
      if (!missing[static_cast<std::size_t>(i)]) continue;
      if (count < room)
        into[static_cast<std::size_t>(count++)] = other[i];
      else
        tell_error(301, overflow);
    }
  }
};

bool DXF::copy_blocks(const DXF& other, CPtrList& copies) const {
  const int n = other.m_BlockList.GetCount();
  NameIndex<const ACAD_BLOCK> present(static_cast<std::size_t>(m_BlockList.GetCount()) + static_cast<std::size_t>(n));
  const auto records = records_of_kept_blocks();
  if (!present.is_ready() || !records) return false;
  for (POSITION at = m_BlockList.GetHeadPosition(); at;)
    present.add(*static_cast<const ACAD_BLOCK*>(m_BlockList.GetNext(at)));
  for (POSITION at = other.m_BlockList.GetHeadPosition(); at;) {
    const auto& block = *static_cast<const ACAD_BLOCK*>(other.m_BlockList.GetNext(at));
    if (!present.add(block)) continue;
    std::unique_ptr<ACAD_BLOCK> copy(new (std::nothrow) ACAD_BLOCK(records));
    if (!copy || !copy->Copy(&block) || !copies.AddTail(copy.get())) return false;
    copy.release();
  }
  return true;
}

namespace {

bool copy_entities(const CPtrList& entities, const float* offset, const float* matrix, CPtrList& copies) {
  for (POSITION at = entities.GetHeadPosition(); at;) {
    auto& entity = *static_cast<ACAD_ENTITY*>(entities.GetNext(at));
    if (entity.GetType() > ACAD_TYPE_INSERT) continue;
    ACAD_ENTITY* const copy = qv::CloneEntity(entity);
    if (!copy || !copies.AddTail(copy)) return delete copy, false;
    copy->Transfer(matrix, offset);
  }
  return true;
}

}  // namespace

int DXF::InsertDxf(DXF* other, const float* offset, const float* matrix) {
  if (!m_nMemFlag || !other->m_nMemFlag) return 0;
  const bool grows = m_nOpenMode == 1;
  const auto count = [](const auto& table, int n) { return table ? n : 0; };
  const int ltypes = other == this ? 0 : count(other->m_pLType, other->m_nLType);
  const int layers = other == this ? 0 : count(other->m_pLayer, other->m_nLayer);
  const int styles = other == this ? 0 : count(other->m_pStyle, other->m_nStyle);
  if (!m_pLType) m_nLType = roomLType_ = 0;
  if (!m_pLayer) m_nLayer = roomLayer_ = 0;
  if (!m_pStyle) m_nStyle = roomStyle_ = 0;
  // Everything comes in together, or, when memory runs out, nothing.
  MergedTable<ACAD_LTYPE> ltype{nullptr, roomLType_, nullptr};
  MergedTable<ACAD_LAYER> layer{nullptr, roomLayer_, nullptr};
  MergedTable<ACAD_STYLE> style{nullptr, roomStyle_, nullptr};
  CPtrList blocks;
  CPtrList entities(kListBlock);
  const bool copied = ltype.merge(m_pLType.get(), m_nLType, other->m_pLType.get(), ltypes, grows) &&
                      layer.merge(m_pLayer.get(), m_nLayer, other->m_pLayer.get(), layers, grows) &&
                      style.merge(m_pStyle.get(), m_nStyle, other->m_pStyle.get(), styles, grows) &&
                      (other == this || copy_blocks(*other, blocks)) &&
                      copy_entities(other->m_EntityList, offset, matrix, entities);
  if (!copied) {
    delete_blocks(blocks);
    delete_entities(entities);
    tell_out_of_memory();
    return 0;
  }
  ltype.take(m_pLType, m_nLType, roomLType_, other->m_pLType.get(), ltypes, "Num_LType Over Flow !");
  layer.take(m_pLayer, m_nLayer, roomLayer_, other->m_pLayer.get(), layers, "Num_Layer Over Flow !");
  style.take(m_pStyle, m_nStyle, roomStyle_, other->m_pStyle.get(), styles, "Num_Style Over Flow !");
  m_BlockList.TakeAll(blocks);
  m_EntityList.TakeAll(entities);
  return 1;
}
