#include "qvtools/dxf/view/internal/block_stamp.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "qvtools/dxf/model/internal/points.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"

namespace qv::detail {

/// Which pixels of a picture are set.
class BlockStamp::Mask {
 public:
  explicit Mask(CSize size)
      : width_(size.cx), set_(static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy)) {}
  char* row(int y) { return set_.data() + static_cast<std::ptrdiff_t>(y) * width_; }
  /// The pixels that are set or lie beside one.
  Mask widened() const {
    Mask wide = *this;
    const auto spread = [&](std::size_t step) {
      const std::vector<char> from = wide.set_;
      for (std::size_t i = step; i < from.size(); ++i) {
        wide.set_[i] = static_cast<char>(wide.set_[i] | from[i - step]);
        wide.set_[i - step] = static_cast<char>(wide.set_[i - step] | from[i]);
      }
    };
    spread(1);  // the margin keeps the ends of rows apart
    spread(static_cast<std::size_t>(width_));
    return wide;
  }
  bool lies_in(const Mask& other) const {
    for (std::size_t i = 0; i < set_.size(); ++i)
      if (set_[i] > other.set_[i]) return false;
    return true;
  }

 private:
  int width_;
  std::vector<char> set_;
};

namespace {

constexpr int kMostPixels = 1 << 17;  // of a block: what shows more is drawn line by line

void draw_unmoved(const ACAD_BLOCK& block, const Plane& plane, const CFCoor& coor, CDC& dc,
                  const Appearance& appearance) {
  dc.SetBkMode(BackgroundMode::Transparent);
  DrawingContext to = drawing_context(&dc, coor, appearance);
  walk_block(block, [&](ACAD_ENTITY& entity) { return draw_entity(entity, plane, to), false; });
}

/// A colour that no entity of the block has.
COLORREF ground_of(const ACAD_BLOCK& block, const DrawingContext& to) {
  std::set<COLORREF> inks{0};  // points are black
  walk_block(block, [&](ACAD_ENTITY& entity) {
    visit_record(
        entity,
        [&](const auto& record) {
          if constexpr (requires { record.m_nColor; }) inks.insert(to.ink(record.m_nColor));
        },
        [](ACAD_ENTITY&) {});
    return false;
  });
  COLORREF ground = 0;
  while (inks.contains(ground)) ++ground;
  return ground;
}

/// Whether each picture has a pixel within one of each pixel of the others.
bool look_alike(const auto& masks, const auto& wide) {
  return std::ranges::all_of(wide, [&](const auto& w) {
    return std::ranges::all_of(masks, [&](const auto& mask) { return mask.lies_in(w); });
  });
}

/// The boxes of a block's details below a pixel, which show or not as they happen to be rounded.
std::vector<Box> details_of(const ACAD_BLOCK& block, const Plane& plane, double scale) {
  std::vector<Box> details;
  const auto add = [&](const auto& record) {
    Box box;
    for_each_point(record, [&](const Point3& p) { box.add(plane(p)); });
    const double extent = std::max(double{box.x2} - box.x1, double{box.y2} - box.y1) * scale;
    if (!box.is_empty() && extent < 1) details.push_back(box);
  };
  walk_block(block, [&](ACAD_ENTITY& entity) {
    visit_record(
        entity,
        [&](const auto& record) {
          using Record = std::remove_cvref_t<decltype(record)>;
          if constexpr (!std::is_same_v<Record, ACAD_TEXT> && !std::is_same_v<Record, ACAD_POINT>) add(record);
        },
        [](ACAD_ENTITY&) {});
    return false;
  });
  return details;
}

/// Whether all pixels that a detail may take, drawn up to a part of a pixel aside, are set.
bool covers(auto& mask, const Box& detail, const CFCoor& coor, double aside) {
  const double y = coor.IsReverseY() ? coor.GetOrigin().y - detail.y2 : detail.y1 - coor.GetOrigin().y;
  const double left = (detail.x1 - coor.GetOrigin().x) * coor.GetScale() + 0.5 - aside;
  const double top = y * coor.GetScale() + 0.5 - aside;
  const double right = left + (detail.x2 - detail.x1) * coor.GetScale() + 2 * aside;
  const double bottom = top + (detail.y2 - detail.y1) * coor.GetScale() + 2 * aside;
  for (auto line = static_cast<int>(top); line <= static_cast<int>(bottom); ++line)
    for (auto i = static_cast<int>(left); i <= static_cast<int>(right); ++i)
      if (!mask.row(line)[i]) return false;
  return true;
}

}  // namespace

BlockStamp::BlockStamp(const ACAD_BLOCK& block, int entities, const Box& reach, int margin, const Plane& plane,
                       DrawingContext& to) {
  const double scale = to.coor().GetScale();
  const double width = (double{reach.x2} - reach.x1) * scale + 2 * margin + 2;
  const double height = (double{reach.y2} - reach.y1) * scale + 2 * margin + 2;
  if (!(width * height <= kMostPixels)) return;
  const double top = to.coor().IsReverseY() ? reach.y2 + margin / scale : reach.y1 - margin / scale;
  corner_ = CFPoint(static_cast<float>(reach.x1 - margin / scale), static_cast<float>(top));
  pays_ = draw_pictures(block, static_cast<std::size_t>(entities / 2),
                        CSize(static_cast<int>(width), static_cast<int>(height)), plane, to);
}

bool BlockStamp::draw_pictures(const ACAD_BLOCK& block, std::size_t mostRuns, CSize size, const Plane& plane,
                               const DrawingContext& to) {
  const double step = 1 / (kSide * double{to.coor().GetScale()});
  const int reverse = to.coor().IsReverseY();
  const COLORREF ground = ground_of(block, to);
  const std::vector<Box> details = details_of(block, plane, to.coor().GetScale());
  std::vector<Mask> masks;
  std::vector<Mask> wide;
  for (int place = 0; place < kPlaces; ++place) {
    const double x = corner_.x - place % kSide * step;
    const double y = corner_.y + place / kSide * (reverse ? step : -step);
    const CFCoor coor(CFPoint(static_cast<float>(x), static_cast<float>(y)), to.coor().GetScale(), reverse);
    BitmapContext bitmap(size.cx, size.cy, ground);
    if (bitmap.Width() == 0) return false;
    draw_unmoved(block, plane, coor, bitmap, to.appearance());
    masks.emplace_back(size);
    if (!take(bitmap, ground, mostRuns, pictures_[place], masks.back())) return false;
    wide.push_back(masks.back().widened());
    const double aside = 0.5 / kSide;
    if (!std::ranges::all_of(details, [&](const Box& detail) { return covers(wide.back(), detail, coor, aside); }))
      return false;
  }
  return look_alike(masks, wide);
}

bool BlockStamp::take(const BitmapContext& bitmap, COLORREF ground, std::size_t mostRuns, Picture& picture,
                      Mask& mask) {
  picture.left = bitmap.Width();
  for (int y = 0; y < bitmap.Height(); ++y) {
    const std::uint32_t* const pixels = bitmap.Pixels() + static_cast<std::ptrdiff_t>(y) * bitmap.Width();
    for (int begin = 0, end; begin < bitmap.Width(); begin = end) {
      for (end = begin + 1; end < bitmap.Width() && pixels[end] == pixels[begin];) ++end;
      const COLORREF color = bitmap.GetPixel(begin, y);
      if (color == ground) continue;
      if (picture.runs.empty()) picture.top = y;
      picture.left = std::min(picture.left, begin);
      picture.runs.push_back({color, y, begin, end});
      std::fill(mask.row(y) + begin, mask.row(y) + end, char{1});
    }
    if (picture.runs.size() > mostRuns) return false;
  }
  std::stable_sort(picture.runs.begin(), picture.runs.end(),
                   [](const Run& r, const Run& s) { return r.color < s.color; });
  return true;
}

bool BlockStamp::draw(const CFPoint& shift, DrawingContext& to) const {
  const CFCoor& coor = to.coor();
  const double scale = coor.GetScale();
  const double x = double{corner_.x} + shift.x;
  const double y = double{corner_.y} + shift.y;
  constexpr double kLoss = 1e-7;  // of a float
  constexpr double kMost = 0.05;  // pixels
  if (!(std::max(std::fabs(x), std::fabs(y)) * scale * kLoss < kMost)) return false;
  // In parts of a pixel.
  const double partsX = std::floor((x - coor.GetOrigin().x) * scale * kSide + 0.5);
  const double partsY =
      std::floor((coor.IsReverseY() ? coor.GetOrigin().y - y : y - coor.GetOrigin().y) * scale * kSide + 0.5);
  constexpr double kFar = 1e6;
  if (!(std::fabs(partsX) < kFar && std::fabs(partsY) < kFar)) return false;
  const auto atX = static_cast<int>(std::floor(partsX / kSide));
  const auto atY = static_cast<int>(std::floor(partsY / kSide));
  const int place =
      static_cast<int>(partsX - double{kSide} * atX) + kSide * static_cast<int>(partsY - double{kSide} * atY);
  const Picture& picture = pictures_[place];
  if (atX + picture.left < 0 || atY + picture.top < 0) return false;
  for (const Run& run : picture.runs) {
    to.select_ink(run.color);
    to.safe().MoveTo(atX + run.begin, atY + run.y);
    to.safe().LineTo(atX + run.end, atY + run.y);
  }
  return true;
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
