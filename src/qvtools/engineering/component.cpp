#include "qvtools/engineering/component.h"

#include <algorithm>
#include <memory>
#include <new>

#include "qvtools/services/internal/out_of_memory.h"

namespace {

/// The stream's position with all that was written counted, -1 without one.
long position_of(std::FILE* fp) {
  if (!fp || std::fflush(fp) != 0) return -1;
  return std::ftell(fp);
}

}  // namespace

CCxIndexFile::~CCxIndexFile() {
  Clear();
}

void CCxIndexFile::Clear() {
  for (const CCxIndex* index : m_Index) delete index;
  m_Index.RemoveAll();
  m_bOrdered = true;
}

int CCxIndexFile::Begin_Item(std::FILE* fp) {
  const long at = position_of(fp);
  if (at < 0) return 0;
  std::unique_ptr<CCxIndex> index(new (std::nothrow) CCxIndex);
  if (!index) return 0;
  index->m_lStart = index->m_lEnd = at;
  const CCxIndex* const last = entry(m_Index.GetSize());
  const bool ordered = !last || at >= std::max(last->m_lStart, last->m_lEnd);
  if (!qv::detail::unless_out_of_memory([&] { return m_Index.Add(index.get()), true; }, false)) return 0;
  index.release();
  m_bOrdered = m_bOrdered && ordered;
  return 1;
}

int CCxIndexFile::End_Item(std::FILE* fp) {
  const long at = position_of(fp);
  if (at < 0 || m_Index.GetSize() == 0) return 0;
  m_Index[m_Index.GetUpperBound()]->m_lEnd = at;
  return 1;
}

int CCxIndexFile::FindGouJian(int pos) const {
  const auto contains = [pos](const CCxIndex* index) { return index->m_lStart <= pos && pos < index->m_lEnd; };
  if (!m_bOrdered) {
    const auto found = std::find_if(m_Index.begin(), m_Index.end(), contains);
    return found == m_Index.end() ? 0 : static_cast<int>(found - m_Index.begin()) + 1;
  }
  const auto behind = std::upper_bound(m_Index.begin(), m_Index.end(), static_cast<long>(pos),
                                       [](long at, const CCxIndex* index) { return at < index->m_lStart; });
  return behind != m_Index.begin() && contains(behind[-1]) ? static_cast<int>(behind - m_Index.begin()) : 0;
}

const CCxIndex* CCxIndexFile::entry(int n) const {
  return n < 1 || n > m_Index.GetSize() ? nullptr : m_Index[n - 1];
}

int CCxIndexFile::GetStartPosGouJian(int n) const {
  const CCxIndex* const index = entry(n);
  return index ? static_cast<int>(index->m_lStart) : 0;
}

int CCxIndexFile::GetEndPosGouJian(int n) const {
  const CCxIndex* const index = entry(n);
  return index ? static_cast<int>(index->m_lEnd) : 0;
}

void CGouJian::set_m_byteStatus(unsigned char status) {
  m_byteStatus = status;
}

int G_ZOLT_P_V100 = 0;

void Set_ZOLT_P_V100(int mode) {
  G_ZOLT_P_V100 = mode;
}
