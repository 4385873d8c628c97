#include "qvtools/plot/internal/fit.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "qvtools/dxf/model/visit.h"

namespace qv::detail {

namespace {

bool is_number(const DrawingRect& r) {
  constexpr double kFarthest = 1e30;
  return std::fabs(r.left) < kFarthest && std::fabs(r.bottom) < kFarthest && std::fabs(r.right) < kFarthest &&
         std::fabs(r.top) < kFarthest;
}

DrawingRect rect_of(const CFRect& r) {
  return {r.x1, r.y1, r.x2, r.y2};
}

void extend(DrawingRect& all, const DrawingRect& r) {
  all = {std::min(all.left, r.left), std::min(all.bottom, r.bottom), std::max(all.right, r.right),
         std::max(all.top, r.top)};
}

/// The box of each entity that is shown.
class Boxes {
 public:
  Boxes(DXF& document, Looks& looks) : looks_(looks), blocks_(document) {
    for (POSITION at = document.m_EntityList.GetHeadPosition(); at;)
      visit_record(
          *static_cast<ACAD_ENTITY*>(document.m_EntityList.GetNext(at)), [&](auto& record) { add(record); },
          [&](ACAD_ENTITY& own) { keep(rect_of(own.GetFRect())); });
  }
  std::vector<DrawingRect> all;

 private:
  void keep(const DrawingRect& box) {
    if (is_number(box)) all.push_back(box);
  }
  template <class Record>
  bool is_shown(const Record& record) {
    int color = kByLayer;
    if constexpr (requires { record.m_nColor; }) color = record.m_nColor;
    return looks_.of({record.m_szLayer, "BYLAYER", color}, nullptr).shown;
  }
  template <class Record>
  void add(Record& record) {
    if (is_shown(record)) keep(rect_of(record.GetFRect()));
  }
  void add(ACAD_POINT& point) {
    // A point's own extent has sides, for picks.
    if (is_shown(point)) keep({point.m_Point.x, point.m_Point.y, point.m_Point.x, point.m_Point.y});
  }
  void add(ACAD_POLYLINE& polyline) {
    if (polyline.m_Vertices.GetSize() > 0 && is_shown(polyline)) keep(rect_of(polyline.GetFRect()));
  }
  void add(ACAD_INSERT& insert) {
    ACAD_BLOCK* const block = blocks_(insert);
    if (!block || block->m_EntityList.IsEmpty()) return;
    bool frozen = false;
    looks_.inherited({insert.m_szLayer, "BYLAYER", insert.m_nColor}, frozen);
    if (frozen) return;
    const auto [at, added] = extents_.try_emplace(block);
    if (added) {
      ACAD_INSERT origin;
      origin.m_Insert = block->m_Base;
      at->second = rect_of(block->GetFRect(&origin));
    }
    const double dx = static_cast<double>(insert.m_Insert.x) - block->m_Base.x;
    const double dy = static_cast<double>(insert.m_Insert.y) - block->m_Base.y;
    const DrawingRect& r = at->second;
    keep({r.left + dx, r.bottom + dy, r.right + dx, r.top + dy});
  }

  Looks& looks_;
  InsertedBlocks blocks_;
  std::unordered_map<ACAD_BLOCK*, DrawingRect> extents_;
};

/// The value below which a share of the values lies.
double quantile(std::vector<double>& values, double share) {
  const auto at = values.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1));
  std::nth_element(values.begin(), at, values.end());
  return *at;
}

/// The box of most of the boxes.
DrawingRect core_of(const std::vector<DrawingRect>& boxes) {
  constexpr double kOff = 0.05;
  std::vector<double> values(boxes.size());
  const auto side = [&](double DrawingRect::*member, double share) {
    std::transform(boxes.begin(), boxes.end(), values.begin(), [&](const DrawingRect& r) { return r.*member; });
    return quantile(values, share);
  };
  return {side(&DrawingRect::left, kOff), side(&DrawingRect::bottom, kOff), side(&DrawingRect::right, 1 - kOff),
          side(&DrawingRect::top, 1 - kOff)};
}

}  // namespace

DrawnExtent drawn_extent(DXF& document, Looks& looks) {
  constexpr double kFar = 5;  // times the size of the core
  constexpr std::size_t kFewest = 10;
  const Boxes boxes(document, looks);
  DrawnExtent extent;
  extent.entities = static_cast<long>(boxes.all.size());
  if (boxes.all.empty()) return extent;
  extent.rect = boxes.all[0];
  for (const DrawingRect& r : boxes.all) extend(extent.rect, r);
  if (boxes.all.size() < kFewest) return extent;
  const DrawingRect core = core_of(boxes.all);
  const double reach = kFar * std::max(core.width(), core.height());
  const auto is_stray = [&](const DrawingRect& r) {
    return r.right < core.left - reach || r.left > core.right + reach || r.top < core.bottom - reach ||
           r.bottom > core.top + reach;
  };
  const long strays = static_cast<long>(std::count_if(boxes.all.begin(), boxes.all.end(), is_stray));
  if (strays == 0 || !(reach > 0) || strays > std::max(3L, extent.entities / 100)) return extent;
  extent.strays = strays;
  extent.stray = *std::find_if(boxes.all.begin(), boxes.all.end(), is_stray);
  extent.rect = core;
  for (const DrawingRect& r : boxes.all)
    if (!is_stray(r)) extend(extent.rect, r);
  return extent;
}

}  // namespace qv::detail
