#include "qvtools/drawing/dimension_chain.h"

#include <algorithm>
#include <vector>

#include "qvtools/drawing/internal/placing.h"
#include "qvtools/text/numbers.h"

using namespace qv::detail;

namespace qv {

namespace {

/// How a side is drawn: a dimension stands to the right of its direction, so that level chains above and upright ones
/// on the left run backward, with their texts on the other side of the line.
struct Way {
  bool level;
  bool backward;
  float angle;
};
constexpr int kLeft = 1;  // of `m_nDimTextFit`, in the direction of the dimension
constexpr int kRight = 2;
constexpr Way kWays[] = {{true, false, 0}, {true, true, 180}, {false, true, -90}, {false, false, 90}};

FormattedText<400> value_of(const CBase_SGT& sgt, float length) {
  return FormattedText<400>("%.*f", std::clamp(sgt.m_nDimDecimals, 0, 20), static_cast<double>(length));
}

}  // namespace

void DrawDimensionChain(CBase_SGT& sgt, ChainSide side, std::span<const float> positions, float line,
                        double extension) {
  std::vector<float> at(positions.begin(), positions.end());
  std::ranges::sort(at);
  at.erase(std::unique(at.begin(), at.end(), [](float a, float b) { return b - a < 0.5F; }), at.end());

  const Way& way = kWays[static_cast<int>(side)];
  const SymbolEnvironment environment(sgt, sgt.m_szBZColor);
  sgt.m_fDimOffset = 0;
  sgt.m_fDimPolarA = sgt.m_fDimPolarB = static_cast<float>(extension) * sgt.m_fBiLiChi;
  sgt.m_fDimExt = 2 * sgt.m_fBiLiChi;
  const float height = sgt.m_fDimTextHeight;
  const float gap = sgt.m_fTextGap;
  const float room = 1.5F * sgt.m_fBiLiChi;  // what a text leaves free between its ticks
  int lowered = 0;                           // how many texts before this one stand lower
  for (std::size_t i = 0; i + 1 < at.size(); ++i) {
    const float length = at[i + 1] - at[i];
    const auto text = value_of(sgt, length);
    const float start = way.backward ? at[i + 1] : at[i];
    const float width = text_width(text, height);
    const float paper = length * sgt.m_fLenFactor;
    const bool first = i == 0 && at.size() > 2;
    const bool outside = width >= paper && (first || i + 2 == at.size());
    int above = way.backward ? 0 : 1;
    sgt.m_nDimTextFit = 0;
    sgt.m_fTextGap = gap;
    if (outside) {
      sgt.m_nDimTextFit = first == way.backward ? kRight : kLeft;
      if (way.backward) sgt.m_fTextGap = -gap - height;
    } else if (width + room > paper) {
      // Beyond the short ends of the extension lines, neighbours one under the other.
      above = 1 - above;
      sgt.m_fTextGap = sgt.m_fDimExt + gap + static_cast<float>(lowered % 2) * 1.3F * height;
    }
    lowered = outside || width + room <= paper ? 0 : lowered + 1;
    sgt.Draw_Dim_Polar(way.level ? start : line, way.level ? line : start, length, text, way.angle, above, 1);
  }
}

}  // namespace qv
