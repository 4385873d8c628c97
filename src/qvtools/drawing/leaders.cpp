#include "qvtools/drawing/leaders.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <utility>

#include "qvtools/drawing/fitted_text.h"
#include "qvtools/drawing/internal/placing.h"

using namespace qv::detail;

namespace qv {

namespace {

/// Places as near to the wanted ones as can be (by the sum of squares) in the given order, each at least `room[i]`
/// before the next: neighbours that press on each other move as one, by the mean of what they want.
std::vector<double> spread(const std::vector<double>& wanted, const std::vector<double>& room) {
  struct Pool {
    double sum;
    int count;
    double at() const { return sum / count; }
  };
  std::vector<double> before(wanted.size());
  for (std::size_t i = 1; i < wanted.size(); ++i) before[i] = before[i - 1] + room[i - 1];
  std::vector<Pool> pools;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    pools.push_back({wanted[i] - before[i], 1});
    while (pools.size() > 1 && pools[pools.size() - 2].at() > pools.back().at()) {
      const Pool last = pools.back();
      pools.pop_back();
      pools.back().sum += last.sum;
      pools.back().count += last.count;
    }
  }
  std::vector<double> places;
  for (const Pool& pool : pools)
    for (int i = 0; i < pool.count; ++i) places.push_back(pool.at() + before[places.size()]);
  return places;
}

/// Whether two leaders, from a to where it ends and from b to where it ends, cross.
bool cross(Place a, Place aEnd, Place b, Place bEnd) {
  const auto side = [](Place p, Place q, Place r) {
    return (static_cast<double>(q.x) - p.x) * (static_cast<double>(r.y) - p.y) -
           (static_cast<double>(q.y) - p.y) * (static_cast<double>(r.x) - p.x);
  };
  return side(a, aEnd, b) * side(a, aEnd, bEnd) < 0 && side(b, bEnd, a) * side(b, bEnd, aEnd) < 0;
}

}  // namespace

void Leaders::Draw(CBase_SGT& sgt) {
  const SymbolEnvironment environment(sgt);
  sgt.SetCurStyle(kSheetStyle);
  const bool column = side_ == Side::Left || side_ == Side::Right;
  const double unit = 1 / static_cast<double>(sgt.m_fLenFactor);  // what is 1 on the sheet, in the caller's frame
  const double millimetre = sgt.m_fBiLiChi * unit;
  const double circle = 6 * millimetre;
  // How long the level part of a label is: the library's estimate of its text, since it stands texts on the left by
  // that.
  const auto level_part = [&](const Label& label) {
    const double estimate = static_cast<double>(label.text.size()) * sgt.m_fDimTextHeight;
    const double measured = SheetTextWidth(label.text.c_str(), sgt.m_fDimTextHeight) + 2 * sgt.m_fBiLiChi;
    return (side_ == Side::Left ? estimate : measured) * unit;
  };

  std::vector<std::size_t> order(labels_.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  const auto along = [&](std::size_t i) { return column ? labels_[i].y : labels_[i].x; };
  std::ranges::stable_sort(order, {}, along);
  std::vector<double> places;
  for (std::size_t turns = 0; turns <= order.size() * order.size(); ++turns) {
    std::vector<double> wanted;
    std::vector<double> room;
    for (const std::size_t i : order) {
      const Label& label = labels_[i];
      const double high = label.number > 0 ? circle + millimetre : 2 * sgt.m_fDimTextHeight * unit;
      const double wide = level_part(label) + (label.number > 0 ? circle : 0) + 2 * millimetre;
      wanted.push_back(along(i));
      room.push_back(column ? high : wide);
    }
    places = spread(wanted, room);
    // Labels whose leaders cross change places; that makes both leaders shorter, so it comes to an end.
    const auto end_of = [&](std::size_t k) {
      const auto p = static_cast<float>(places[k]);
      return column ? Place{at_, p} : Place{p, at_};
    };
    const auto start_of = [&](std::size_t k) { return Place{labels_[order[k]].x, labels_[order[k]].y}; };
    bool changed = false;
    for (std::size_t k = 0; k + 1 < order.size() && !changed; ++k) {
      if (!cross(start_of(k), end_of(k), start_of(k + 1), end_of(k + 1))) continue;
      std::swap(order[k], order[k + 1]);
      changed = true;
    }
    if (!changed) break;
  }
  for (std::size_t k = 0; k < order.size(); ++k) {
    const Label& label = labels_[order[k]];
    const auto place = static_cast<float>(places[k]);
    const auto level = static_cast<float>(level_part(label) / unit);
    sgt.Draw_GangJin_BiaoZhu(label.x, label.y, column ? at_ : place, column ? place : at_,
                             side_ == Side::Left ? -level : level, label.number, label.text.c_str());
  }
  labels_.clear();
}

}  // namespace qv
