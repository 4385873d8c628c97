#include <cmath>

#include "qvtools/dxf/model/document.h"
#include "qvtools/services/services.h"
#include "qvtools/text/gbk_text.h"

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

bool is_present(const auto& table, int count, const char* name) {
  for (int i = 0; i < count; ++i)
    if (std::strcmp(table[static_cast<std::size_t>(i)].m_szName, name) == 0) return true;
  return false;
}

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
  int missing = 0;
  for (int i = 0; i < otherCount; ++i) missing += !is_present(table, count, other[i].m_szName);
  if (m_nOpenMode == 1 && count + missing > room && !grow(table, count, room, count + missing)) return false;
  for (int i = 0; i < otherCount; ++i) {
    if (is_present(table, count, other[i].m_szName)) continue;
    if (count < room)
      table[static_cast<std::size_t>(count++)] = other[i];
    else
      tell_error(301, overflow);
  }
  return true;
}

bool DXF::merge_blocks(const DXF& other) {
  int n = other.m_BlockList.GetCount();
  for (POSITION at = other.m_BlockList.GetHeadPosition(); at && n > 0; --n) {
    const auto& block = *static_cast<ACAD_BLOCK*>(other.m_BlockList.GetNext(at));
    ACAD_INSERT named;
    qv::copy_text(named.m_szBlock, block.m_szName);
    if (GetBlock(&named)) continue;
    auto* copy = new (std::nothrow) ACAD_BLOCK;
    if (!copy) return false;
    *copy = block;
    if (!m_BlockList.AddTail(copy)) {
      delete copy;
      return false;
    }
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
  // The count is taken first: a document inserted into itself is doubled once.
  int n = other->m_EntityList.GetCount();
  for (POSITION at = other->m_EntityList.GetHeadPosition(); at && n > 0; --n) {
    ACAD_ENTITY* copy = qv::CloneEntity(*static_cast<ACAD_ENTITY*>(other->m_EntityList.GetNext(at)));
    if (!copy) return 0;
    copy->Transfer(matrix, offset);
    if (!m_EntityList.AddTail(copy)) {
      delete copy;
      return 0;
    }
  }
  return 1;
}
