#include "qvtools/drawing/second_scale.h"

namespace qv {

SecondScale::SecondScale(CBase_SGT& sgt, float x, float y, float scale)
    : sgt_(sgt), saved_(sgt), x_(x), y_(y), factor_(sgt.m_fBiLiChi / scale) {
  sgt.Convert_XY(x, y);
  sgt.m_fShiftX = x;
  sgt.m_fShiftY = y;
  sgt.m_fLenFactor *= factor_;
  // Polylines of two points take one factor, those of n points the other; bars are drawn as both.
  sgt.m_fWidthFactor *= factor_;
  for (float* const size : {&sgt.m_fGJLineWidth, &sgt.m_fGJDotWidth, &sgt.m_fDimLineWidth, &sgt.m_fPouXianWidth,
                            &sgt.m_fArrowLen, &sgt.m_fArrowWidth})
    *size /= factor_;
}

SecondScale::~SecondScale() {
  static_cast<SgtEnvironment&>(sgt_) = saved_;
}

}  // namespace qv
