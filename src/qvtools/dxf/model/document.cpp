#include "qvtools/dxf/model/document.h"

#include "qvtools/services/services.h"
#include "qvtools/text/gbk_text.h"

int DXF::Set_MaxNum_of_Tables(long ltypes, long layers, long styles) {
  if (m_nOpenMode != -1) {
    tell_error(301, "Please Change Max_Tables Before Open DXF File !");
    return 0;
  }
  const auto capacity = [](long n, const char* message) {
    if (n < 1) tell_error(301, message);
    return static_cast<int>(std::clamp(n, 1L, static_cast<long>(INT_MAX)));
  };
  m_nMaxLType = capacity(ltypes, "Num_LType < 1 !");
  m_nMaxLayer = capacity(layers, "Num_Layer < 1 !");
  m_nMaxStyle = capacity(styles, "Num_Style < 1 !");
  return 1;
}

void DXF::Take_Tables(std::unique_ptr<ACAD_LTYPE[]> ltypes, int ltypeCount, std::unique_ptr<ACAD_LAYER[]> layers,
                      int layerCount, std::unique_ptr<ACAD_STYLE[]> styles, int styleCount) {
  m_pLType = std::move(ltypes);
  m_pLayer = std::move(layers);
  m_pStyle = std::move(styles);
  m_nLType = roomLType_ = ltypeCount;
  m_nLayer = roomLayer_ = layerCount;
  m_nStyle = roomStyle_ = styleCount;
  Open_MemDxf();
}

int DXF::create_tables() {
  m_nOpenMode = 0;
  toldNotOpen_ = false;
  m_nLType = m_nLayer = m_nStyle = 1;
  roomLType_ = m_nMaxLType;
  roomLayer_ = m_nMaxLayer;
  roomStyle_ = m_nMaxStyle;
  m_pLType.reset(new (std::nothrow) ACAD_LTYPE[static_cast<std::size_t>(m_nMaxLType)]);
  m_pLayer.reset(new (std::nothrow) ACAD_LAYER[static_cast<std::size_t>(m_nMaxLayer)]);
  m_pStyle.reset(new (std::nothrow) ACAD_STYLE[static_cast<std::size_t>(m_nMaxStyle)]);
  if (m_pLType && m_pLayer && m_pStyle) return 1;
  tell_error(301, "Out of memery in New DXF File !");
  m_pLType.reset();
  m_pLayer.reset();
  m_pStyle.reset();
  m_nOpenMode = -1;
  return 0;
}

/// The errors that follow name layers and styles; this says where they come from.
void DXF::tell_once_not_open(const char* message) {
  if (!std::exchange(toldNotOpen_, true)) tell_error(20, message);
}

void DXF::delete_drawing() {
  m_pLType.reset();
  m_pLayer.reset();
  m_pStyle.reset();
  qv::detail::delete_entities(m_EntityList);
  qv::detail::delete_blocks(m_BlockList);
  TakeAsComplete();
}

void DXF::TakeAsComplete() {
  end_ = End::Whole;
  source_.clear();
}

namespace {

/// The entry of the name, cut as the entries' own names are; null when there is none, or no table.
template <class Entry>
const Entry* find(const Entry* table, int count, const char* name) {
  if (!table) return nullptr;
  const std::string_view key = qv::cut_to_field(name, sizeof table->m_szName);
  for (const Entry* entry = table; entry != table + count; ++entry)
    if (qv::equals_field(entry->m_szName, key)) return entry;
  return nullptr;
}

int fail(const char* message) {
  tell_error(301, message);
  return 0;
}

}  // namespace

const ACAD_LTYPE* DXF::find_ltype(const char* name) const {
  return find(m_pLType.get(), m_nLType, name);
}
const ACAD_LAYER* DXF::find_layer(const char* name) const {
  return find(m_pLayer.get(), m_nLayer, name);
}
const ACAD_STYLE* DXF::find_style(const char* name) const {
  return find(m_pStyle.get(), m_nStyle, name);
}

int DXF::Add_LType(const char* name, const char* description, int count, float length, const float* elements) {
  if (find_ltype(name)) return fail("LType Name Repeated !");
  if (!m_pLType || m_nLType + 1 > roomLType_) return fail("Num_LType Over Flow !");
  if (count > qv::kMaxPatternElements) return fail("NumLine_One_Circle Over Flow !");
  ACAD_LTYPE& entry = m_pLType[static_cast<std::size_t>(m_nLType++)];
  qv::copy_text(entry.m_szName, name);
  qv::copy_text(entry.m_szDescription, description);
  entry.m_nElements = std::max(count, 0);
  entry.m_fLength = length;
  std::copy_n(elements, entry.m_nElements, entry.m_fElement);
  return 1;
}

int DXF::Add_Layer(const char* name, int color, const char* ltype) {
  if (find_layer(name)) return fail("Layer Name Repeated !");
  if (!m_pLayer || m_nLayer + 1 > roomLayer_) return fail("Num_Layer Over Flow !");
  if (!find_ltype(ltype)) return fail("LType Error in Layer Define !");
  ACAD_LAYER& entry = m_pLayer[static_cast<std::size_t>(m_nLayer++)];
  qv::copy_text(entry.m_szName, name);
  entry.m_nColor = color;
  qv::copy_text(entry.m_szLType, ltype);
  return 1;
}

int DXF::Add_STyle(const char* name, const char* font, const char* bigFont) {
  if (find_style(name)) return fail("Style Name Repeated !");
  if (!m_pStyle || m_nStyle + 1 > roomStyle_) return fail("Num_Style Over Flow !");
  ACAD_STYLE& entry = m_pStyle[static_cast<std::size_t>(m_nStyle++)];
  qv::copy_text(entry.m_szName, name);
  qv::copy_text(entry.m_szFont, font);
  qv::copy_text(entry.m_szBigFont, bigFont);
  return 1;
}

ACAD_BLOCK* DXF::GetBlock(const ACAD_INSERT* insert) {
  for (POSITION at = m_BlockList.GetHeadPosition(); at;) {
    auto* block = static_cast<ACAD_BLOCK*>(m_BlockList.GetNext(at));
    if (std::strcmp(block->m_szName, insert->m_szBlock) == 0) return block;
  }
  return nullptr;
}
