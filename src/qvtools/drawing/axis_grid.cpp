#include "qvtools/drawing/axis_grid.h"

#include <algorithm>
#include <limits>
#include <string_view>

#include "qvtools/drawing/dimension_chain.h"
#include "qvtools/drawing/internal/placing.h"

using namespace qv::detail;

namespace qv {

namespace {

std::vector<float> places(float first, std::span<const float> spacings) {
  std::vector<float> at{first};
  for (const float spacing : spacings)
    if (spacing > 0) at.push_back(at.back() + spacing);
  return at;
}

std::string letter(std::size_t i) {
  constexpr std::string_view kLetters = "ABCDEFGHJKLMNPQRSTUVWXY";
  return std::string(1 + i / kLetters.size(), kLetters[i % kLetters.size()]);
}

float place_of(const std::string& name, const std::vector<std::string>& names, const std::vector<float>& at) {
  const auto found = std::ranges::find(names, name);
  const auto i = static_cast<std::size_t>(found - names.begin());
  return i < at.size() ? at[i] : std::numeric_limits<float>::quiet_NaN();
}

}  // namespace

AxisGrid::AxisGrid(float x, float y, std::span<const float> xSpacings, std::span<const float> ySpacings)
    : x_(places(x, xSpacings)), y_(places(y, ySpacings)) {
  for (std::size_t i = 0; i < x_.size(); ++i) xNames.push_back(std::to_string(i + 1));
  for (std::size_t i = 0; i < y_.size(); ++i) yNames.push_back(letter(i));
}

float AxisGrid::X(const std::string& name) const {
  return place_of(name, xNames, x_);
}
float AxisGrid::Y(const std::string& name) const {
  return place_of(name, yNames, y_);
}

void AxisGrid::DrawAxes(CBase_SGT& sgt, const Look& look) const {
  const SymbolEnvironment environment(sgt);
  const auto reach = static_cast<float>(look.reach) * sgt.m_fBiLiChi;
  const auto stub = static_cast<float>(look.stub) * sgt.m_fBiLiChi;
  sgt.m_fDimTextHeight = sgt.m_fZiGao[1];
  const auto axis = [&](Place low, Place high, float dx, float dy, const std::string& name) {
    low = {low.x - dx * reach, low.y - dy * reach};
    high = {high.x + dx * reach, high.y + dy * reach};
    sgt.SetCurColor(look.color);
    sgt.SetCurLType(look.ltype);
    draw_line(sgt, low, high);
    if (name.empty()) return;
    sgt.SetCurLType("BYLAYER");
    sgt.Draw_ZhouFu(low.x, low.y, low.x - dx * stub, low.y - dy * stub, name.c_str());
    sgt.Draw_ZhouFu(high.x, high.y, high.x + dx * stub, high.y + dy * stub, name.c_str());
  };
  for (std::size_t i = 0; i < x_.size(); ++i)
    axis({x_[i], y_.front()}, {x_[i], y_.back()}, 0, 1, i < xNames.size() ? xNames[i] : std::string());
  for (std::size_t i = 0; i < y_.size(); ++i)
    axis({x_.front(), y_[i]}, {x_.back(), y_[i]}, 1, 0, i < yNames.size() ? yNames[i] : std::string());
}

void AxisGrid::DrawDimensions(CBase_SGT& sgt, bool allSides, const Look& look) const {
  const float s = sgt.m_fBiLiChi;
  const float total = static_cast<float>(look.chains[0]) * s;
  const float spacings = static_cast<float>(look.chains[1]) * s;
  constexpr double kTotalExtension = 4;
  const auto chains = [&](ChainSide side, const std::vector<float>& at, float edge, float away) {
    if (at.size() < 2) return;
    const float ends[] = {at.front(), at.back()};
    DrawDimensionChain(sgt, side, at, edge + away * spacings);
    if (at.size() > 2) DrawDimensionChain(sgt, side, ends, edge + away * total, kTotalExtension);
  };
  chains(ChainSide::Below, x_, y_.front(), -1);
  chains(ChainSide::Left, y_, x_.front(), -1);
  if (!allSides) return;
  chains(ChainSide::Above, x_, y_.back(), 1);
  chains(ChainSide::Right, y_, x_.back(), 1);
}

}  // namespace qv
