#include "qvtools/dxf/view/internal/block_stamp.h"

#include <algorithm>

#include "qvtools/platform/bitmap/bitmap_dc.h"

namespace qv::detail {

namespace {

constexpr int kMostPixels = 1 << 17;  // of a block: what shows more is drawn line by line

void draw_unmoved(const ACAD_BLOCK& block, const Plane& plane, const CFCoor& coor, CDC& dc,
                  const Appearance& appearance) {
  dc.SetBkMode(BackgroundMode::Transparent);
  DrawingContext to = drawing_context(&dc, coor, appearance);
  walk_block(block, [&](ACAD_ENTITY& entity) { return draw_entity(entity, plane, to), false; });
}

}  // namespace

BlockStamp::BlockStamp(const ACAD_BLOCK& block, int entities, const Box& reach, int margin, const Plane& plane,
                       DrawingContext& to) {
  const double scale = to.coor().GetScale();
  const double width = (double{reach.x2} - reach.x1) * scale + 2 * margin + 1;
  const double height = (double{reach.y2} - reach.y1) * scale + 2 * margin + 1;
  if (!(width * height <= kMostPixels)) return;
  const double top = to.coor().IsReverseY() ? reach.y2 + margin / scale : reach.y1 - margin / scale;
  corner_ = CFPoint(static_cast<float>(reach.x1 - margin / scale), static_cast<float>(top));
  const CFCoor coor(corner_, to.coor().GetScale(), to.coor().IsReverseY());
  // What was drawn is the same on both grounds.
  BitmapContext onBlack(static_cast<int>(width), static_cast<int>(height), 0);
  BitmapContext onWhite(static_cast<int>(width), static_cast<int>(height), 0xFFFFFF);
  if (onBlack.Width() == 0 || onWhite.Width() == 0) return;
  draw_unmoved(block, plane, coor, onBlack, to.appearance());
  draw_unmoved(block, plane, coor, onWhite, to.appearance());
  for (int y = 0; y < onBlack.Height(); ++y) {
    const std::uint32_t* const a = onBlack.Pixels() + static_cast<std::ptrdiff_t>(y) * onBlack.Width();
    const std::uint32_t* const b = onWhite.Pixels() + static_cast<std::ptrdiff_t>(y) * onWhite.Width();
    for (int x = 0; x < onBlack.Width(); ++x) {
      if (a[x] != b[x]) continue;
      const int begin = x;
      while (x < onBlack.Width() && a[x] == b[x] && a[x] == a[begin]) ++x;
      runs_.push_back({onBlack.GetPixel(begin, y), y, begin, x});
      --x;
    }
    if (2 * runs_.size() > static_cast<std::size_t>(entities)) return;
  }
  std::stable_sort(runs_.begin(), runs_.end(), [](const Run& r, const Run& s) { return r.color < s.color; });
  pays_ = true;
}

void BlockStamp::draw(const CFPoint& shift, DrawingContext& to) const {
  const CPoint at = to.coor().FPtoDP(CFPoint(corner_.x + shift.x, corner_.y + shift.y));
  for (const Run& run : runs_) {
    to.select_ink(run.color);
    to.safe().MoveTo(at.x + run.begin, at.y + run.y);
    to.safe().LineTo(at.x + run.end, at.y + run.y);
  }
}

bool can_be_stamped(ACAD_ENTITY& entity, const DrawingContext& to) {
  return visit_record(
      entity,
      [&](const auto& record) {
        if constexpr (requires { record.m_szLType; })
          return to.has_patterns() || pen_style(record.m_szLType) == PenStyle::Solid;
        else
          return true;
      },
      [](ACAD_ENTITY&) { return false; });
}

}  // namespace qv::detail
