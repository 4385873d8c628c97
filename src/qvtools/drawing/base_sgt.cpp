#include "qvtools/drawing/base_sgt.h"

#include <iterator>
#include <memory>

#include "qvtools/services/internal/out_of_memory.h"

const float CBase_SGT::m_fGF_BiKuan[6] = {0.35F, 0.5F, 0.7F, 1.0F, 1.4F, 2.0F};
const float CBase_SGT::m_fGF_ZiGao[7] = {2.5F, 3.5F, 5.0F, 7.0F, 10.0F, 14.0F, 20.0F};
const float CBase_SGT::m_fGF_ZiKuan[7] = {1.8F, 2.5F, 3.5F, 5.0F, 7.0F, 10.0F, 14.0F};

CBase_SGT* NewMemDxf() {
  std::unique_ptr<CBase_SGT> composer(new (std::nothrow) CBase_SGT);
  if (!composer) return qv::detail::tell_out_of_memory(), nullptr;
  if (!composer->New_MemDxf() || !composer->Add_STyle("HZ", "txt", "hztxt")) return nullptr;
  composer->Write_Tables();
  return composer.release();
}

CBase_SGT::CBase_SGT() {
  Set_Default_ENV();
  SetBiLiChi(100);
}

CBase_SGT::~CBase_SGT() {
  while (!m_ENVList.IsEmpty()) delete static_cast<qv::SgtEnvironment*>(m_ENVList.RemoveHead());
}

void CBase_SGT::SetBiLiChi(float scale) {
  m_fBiLiChi = scale;
  const double s = scale;
  const auto scaled = [&](double mm) { return static_cast<float>(mm * s); };
  m_fBiKuan[0] = scaled(m_fBaseBiKuan);
  m_fBiKuan[1] = scaled(m_fBaseBiKuan * 0.5);
  m_fBiKuan[2] = scaled(m_fBaseBiKuan * 0.35);
  // The last entry of both belongs to derived programs.
  for (std::size_t i = 0; i < 6; ++i) {
    m_fZiGao[i] = scaled(m_fGF_ZiGao[i]);
    m_fZiKuan[i] = scaled(m_fGF_ZiKuan[i]);
  }
  const float thick = m_fBiKuan[0];
  m_nDimTextFit = 0;
  m_nDimPara1 = m_nDimPara2 = 1;
  m_fDimOffset = 100;
  m_fDimPolarA = m_fDimPolarB = scaled(20);
  m_fDimTick = scaled(2);
  m_fDimLineWidth = thick;
  m_fDimTextHeight = m_fZiGao[0];
  m_fDimExt = scaled(2.5);
  m_fTextGap = scaled(0.5);
  m_nDimDecimals = 0;
  m_fCutSymA = scaled(2.5);
  m_fCutSymB = scaled(4);
  m_fCutSymC = scaled(0.75);
  m_fPouXianLen = scaled(10);
  m_fPouXianWidth = thick;
  m_fPouXianText = m_fZiGao[2];
  m_fGJDotWidth = static_cast<float>(thick * 1.5);
  m_fGJLineWidth = thick;
  m_fTuMingText = m_fZiGao[3];
  m_fTuMingWidth = thick;
  m_fArrowLen = scaled(2.5);
  m_fArrowWidth = scaled(0.8);
  m_nAxisXFormat = m_nAxisYFormat = 2;
  m_fPenX = m_fPenY = 0;
}

namespace {

void set_text(char (&current)[qv::kEnvironmentText], const char* text) {
  const std::size_t length = std::strlen(text);
  if (length < qv::kEnvironmentText - 1) std::memcpy(current, text, length + 1);
}

}  // namespace

void CBase_SGT::SetCurColor(const char* color) {
  set_text(m_szCurColor, color);
}
void CBase_SGT::SetCurLayer(const char* layer) {
  set_text(m_szCurLayer, layer);
}
void CBase_SGT::SetCurStyle(const char* style) {
  set_text(m_szCurStyle, style);
}
void CBase_SGT::SetCurLType(const char* ltype) {
  set_text(m_szCurLType, ltype);
}

void CBase_SGT::Set_Default_ENV() {
  SetCurColor("7");
  SetCurLType("BYLAYER");
  SetCurLayer("0");
  SetCurStyle("STANDARD");
  m_fShiftX = m_fShiftY = 0;
  m_fBiLiChi = 1;
  m_fLenFactor = m_fTextFactor = m_fWidthFactor = 1;
  m_fRotAngle = 0;
  std::fill(std::begin(m_bRectSide), std::end(m_bRectSide), 1);
  m_nFramePara1 = m_nFramePara2 = 1;
  set_text(m_szGJColor, "1");
  set_text(m_szBZColor, "4");
}

void CBase_SGT::Add_Default_LineType() {
  const float dashed[] = {0.5F, -0.5F};
  const float dot[] = {0.0F, -0.5F};
  const float dashdot[] = {0.5F, -0.25F, 0.0F, -0.25F};
  Add_LType("DASHED", "- - - - -", 2, 1.0F, dashed);
  Add_LType("DOT", ".........", 2, 1.0F, dot);
  Add_LType("DASHDOT", "- . - . - . - . -", 4, 1.0F, dashdot);
}

int CBase_SGT::Push_ENV() {
  auto* saved = new (std::nothrow) qv::SgtEnvironment(*this);
  if (!saved) return 0;
  if (m_ENVList.AddHead(saved)) return 1;
  delete saved;
  return 0;
}

int CBase_SGT::Pop_ENV() {
  if (m_ENVList.IsEmpty()) return 0;
  const std::unique_ptr<qv::SgtEnvironment> saved(static_cast<qv::SgtEnvironment*>(m_ENVList.RemoveHead()));
  static_cast<qv::SgtEnvironment&>(*this) = *saved;
  return 1;
}
