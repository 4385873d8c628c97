#include <cmath>
#include <memory>

#include "qvtools/dxf/model/internal/name_index.h"
#include "qvtools/services/services.h"
#include "qvtools/text/gbk_text.h"

using qv::detail::NameIndex;

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

namespace {

/// Makes room for as many entries; false when memory runs out.
template <class Entry>
bool grow(std::unique_ptr<Entry[]>& table, int count, int& room, int wanted) {
  std::unique_ptr<Entry[]> larger(new (std::nothrow) Entry[static_cast<std::size_t>(wanted)]);
  if (!larger) return false;
  if (table) std::copy_n(table.get(), count, larger.get());
  table = std::move(larger);
  room = wanted;
  return true;
}

}  // namespace

/// A read document's table becomes as large as needed; a written one's keeps its capacity, and what is over is
/// reported.
template <class Entry>
bool DXF::merge_table(std::unique_ptr<Entry[]>& table, int& count, int& room, const Entry* other, int otherCount,
                      const char* overflow) {
  if (!table) count = room = 0;
  NameIndex<const Entry> present(static_cast<std::size_t>(count) + static_cast<std::size_t>(otherCount));
  if (!present.is_ready()) return false;
  for (int i = 0; i < count; ++i) present.add(table[static_cast<std::size_t>(i)]);
  const std::unique_ptr<bool[]> missing(new (std::nothrow) bool[static_cast<std::size_t>(otherCount)]);
  if (!missing) return false;
  int wanted = count;
  for (int i = 0; i < otherCount; ++i) {
    const bool added = present.add(other[i]);
    missing[static_cast<std::size_t>(i)] = added;
    wanted += added;
  }
  if (m_nOpenMode == 1 && wanted > room && !grow(table, count, room, wanted)) return false;
  for (int i = 0; i < otherCount; ++i) {
    if (!missing[static_cast<std::size_t>(i)]) continue;
    if (count < room)
      table[static_cast<std::size_t>(count++)] = other[i];
    else
      tell_error(301, overflow);
  }
  return true;
}

bool DXF::merge_blocks(const DXF& other) {
  const int n = other.m_BlockList.GetCount();
  NameIndex<const ACAD_BLOCK> present(static_cast<std::size_t>(m_BlockList.GetCount()) + static_cast<std::size_t>(n));
  if (!present.is_ready()) return false;
  for (POSITION at = m_BlockList.GetHeadPosition(); at;)
    present.add(*static_cast<const ACAD_BLOCK*>(m_BlockList.GetNext(at)));
  POSITION at = other.m_BlockList.GetHeadPosition();
  for (int i = 0; i < n; ++i) {
    const auto& block = *static_cast<const ACAD_BLOCK*>(other.m_BlockList.GetNext(at));
    if (!present.add(block)) continue;
    std::unique_ptr<ACAD_BLOCK> copy(new (std::nothrow) ACAD_BLOCK);
    if (!copy || !copy->Copy(&block)) return false;
    if (!m_BlockList.AddTail(copy.get())) return false;
    copy.release();
  }
  return true;
}

int DXF::InsertDxf(DXF* other, const float* offset, const float* matrix) {
  if (!m_nMemFlag || !other->m_nMemFlag) return 0;
  if (other != this) {
    const bool merged = merge_table(m_pLType, m_nLType, roomLType_, other->m_pLType.get(),
                                    other->m_pLType ? other->m_nLType : 0, "Num_LType Over Flow !") &&
                        merge_table(m_pLayer, m_nLayer, roomLayer_, other->m_pLayer.get(),
                                    other->m_pLayer ? other->m_nLayer : 0, "Num_Layer Over Flow !") &&
                        merge_table(m_pStyle, m_nStyle, roomStyle_, other->m_pStyle.get(),
                                    other->m_pStyle ? other->m_nStyle : 0, "Num_Style Over Flow !") &&
                        merge_blocks(*other);
    if (!merged) return 0;
  }
  // The copies come in together, or, when memory runs out, none of them.
  CPtrList copies(kListBlock);
  for (POSITION at = other->m_EntityList.GetHeadPosition(); at;) {
    ACAD_ENTITY* const copy = qv::CloneEntity(*static_cast<ACAD_ENTITY*>(other->m_EntityList.GetNext(at)));
    if (!copy || !copies.AddTail(copy)) {
      delete copy;
      qv::detail::delete_entities(copies);
      return 0;
    }
    copy->Transfer(matrix, offset);
  }
  m_EntityList.TakeAll(copies);
  return 1;
}
