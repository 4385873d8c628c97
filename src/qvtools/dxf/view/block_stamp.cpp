#include "qvtools/dxf/view/internal/block_stamp.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <set>

#include "qvtools/dxf/view/internal/reach.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"

namespace qv::detail {

namespace {

/// Which pixels of a picture are set.
class Mask {
 public:
  Mask(const BitmapContext& bitmap, COLORREF ground) : width_(bitmap.Width()), height_(bitmap.Height()) {
    set_.reserve(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_));
    for (int y = 0; y < height_; ++y)
      for (int x = 0; x < width_; ++x) set_.push_back(bitmap.GetPixel(x, y) != ground);
  }
  bool is_set(int x, int y) const {
    return x >= 0 && x < width_ && y >= 0 && y < height_ &&
           set_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)] != 0;
  }
  /// Clears what is not set here.
  void clear_others(BitmapContext& bitmap, COLORREF ground) const {
    for (int y = 0; y < height_; ++y)
      for (int x = 0; x < width_; ++x)
        if (!is_set(x, y)) bitmap.SetPixel(x, y, ground);
  }
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

 private:
  int width_;
  int height_;
  std::vector<char> set_;
};

constexpr int kMostPixels = 1 << 17;  // of a block: what shows more is drawn line by line
constexpr double kMostLoss = 0.05;    // in pixels, by which single precision moves a copy

/// Draws the entities of the block that are chosen, where no insert has moved them.
void draw_unmoved(const ACAD_BLOCK& block, const Plane& plane, const CFCoor& coor, CDC& dc,
                  const Appearance& appearance, auto is_chosen) {
  dc.SetBkMode(BackgroundMode::Transparent);
  DrawingContext to = drawing_context(&dc, coor, appearance);
  walk_block(block, [&](ACAD_ENTITY& entity) {
    if (is_chosen(entity)) draw_entity(entity, plane, to);
    return false;
  });
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

// Whether a record is drawn by straight lines between its points, a text in whole pixels from its first: drawn a part
// of a pixel aside, its pixels are then those that it has here, or lie beside them. Where arcs end and which pixels an
// area takes may change by more.

bool is_straight(const auto&, const Plane&, const DrawingContext&) {
  return false;
}
bool is_straight(const ACAD_POINT&, const Plane&, const DrawingContext&) {
  return true;
}
bool is_straight(const ACAD_TEXT&, const Plane&, const DrawingContext&) {
  return true;
}
bool is_straight(const ACAD_LINE&, const Plane&, const DrawingContext&) {
  return true;
}
bool is_straight(const ACAD_3DFACE&, const Plane&, const DrawingContext&) {
  return true;
}
bool is_straight(const ACAD_POLYLINE& r, const Plane& plane, const DrawingContext& to) {
  bool straight = true;
  for_each_segment(r, plane, [&](const Segment& s) {
    straight = straight && s.is_straight() && !is_wide(std::max(s.startWidth, s.endWidth), to);
  });
  return straight;
}

void add_drawn_points(const auto& r, const Plane& plane, Box& box) {
  for_each_point(r, [&](const Point3& p) { box.add(plane(p)); });
}
void add_drawn_points(const ACAD_POLYLINE& r, const Plane& plane, Box& box) {
  for_each_segment(r, plane, [&](const Segment& s) { box.add(s.from), box.add(s.to); });
}

/// Whether lines show wherever their ends are rounded to: below a pixel they may not, nor may dashes.
bool shows(const auto& r, const Plane& plane, DrawingContext& to) {
  constexpr double kShown = 1.1;  // pixels: more than one, whatever single precision loses
  Box box;
  add_drawn_points(r, plane, box);
  const double extent = std::max(double{box.x2} - box.x1, double{box.y2} - box.y1);
  if constexpr (requires { r.m_szLType; })
    if (to.has_patterns() && to.pattern(r.m_szLType)) return false;
  return extent * to.coor().GetScale() >= kShown;
}
bool shows(const ACAD_POINT&, const Plane&, DrawingContext&) {
  return true;
}
bool shows(const ACAD_TEXT&, const Plane&, DrawingContext&) {
  return true;
}

/// Whether an entity's pixels, drawn a part of a pixel aside, are those that it has here, or lie beside them.
bool keeps_its_pixels(ACAD_ENTITY& entity, const Plane& plane, DrawingContext& to) {
  return visit_record(
      entity, [&](const auto& record) { return is_straight(record, plane, to) && shows(record, plane, to); },
      [](ACAD_ENTITY&) { return false; });
}

/// The boxes that a block's other entities are drawn in.
std::vector<Box> reaches_of_others(const ACAD_BLOCK& block, const Plane& plane, DrawingContext& to) {
  const double curved = 2 / double{to.coor().GetScale()};  // a device's circle may be larger by this
  std::vector<Box> boxes;
  const auto add = [&](const auto& record) {
    boxes.push_back(reach(record, plane));
    if (!is_straight(record, plane, to)) widen(boxes.back(), curved);
  };
  walk_block(block, [&](ACAD_ENTITY& entity) {
    if (!keeps_its_pixels(entity, plane, to)) visit_record(entity, add, [](ACAD_ENTITY&) {});
    return false;
  });
  std::erase_if(boxes, [](const Box& box) { return box.is_empty(); });
  return boxes;
}

/// Whether all pixels that a box may take, drawn up to so many parts of a pixel aside, are set.
bool covers(const Mask& mask, const Box& box, const CFCoor& coor, double aside) {
  const double y = coor.IsReverseY() ? coor.GetOrigin().y - box.y2 : box.y1 - coor.GetOrigin().y;
  const double left = (box.x1 - coor.GetOrigin().x) * coor.GetScale() + 0.5 - aside;
  const double top = y * coor.GetScale() + 0.5 - aside;
  const double right = left + (box.x2 - box.x1) * coor.GetScale() + 2 * aside;
  const double bottom = top + (box.y2 - box.y1) * coor.GetScale() + 2 * aside;
  for (auto line = static_cast<int>(top); line <= static_cast<int>(bottom); ++line)
    for (auto i = static_cast<int>(left); i <= static_cast<int>(right); ++i)
      if (!mask.is_set(i, line)) return false;
  return true;
}

}  // namespace

BlockStamp::BlockStamp(const ACAD_BLOCK& block, int entities, const Box& reach, int margin, const Plane& plane,
                       DrawingContext& to)
    : block_(block), plane_(plane), mostRuns_(static_cast<std::size_t>(entities / 2)) {
  const double scale = to.coor().GetScale();
  const double width = (double{reach.x2} - reach.x1) * scale + 2 * margin + 2;
  const double height = (double{reach.y2} - reach.y1) * scale + 2 * margin + 2;
  pays_ = width * height <= kMostPixels;
  if (!pays_) return;
  size_ = CSize(static_cast<int>(width), static_cast<int>(height));
  const double top = to.coor().IsReverseY() ? reach.y2 + margin / scale : reach.y1 - margin / scale;
  corner_ = CFPoint(static_cast<float>(reach.x1 - margin / scale), static_cast<float>(top));
  ground_ = ground_of(block, to);
  others_ = reaches_of_others(block, plane, to);
}

bool BlockStamp::make_picture(int place, DrawingContext& to) {
  const double step = 1 / (kSide * double{to.coor().GetScale()});
  const int reverse = to.coor().IsReverseY();
  const double x = corner_.x - place % kSide * step;
  const double y = corner_.y + place / kSide * (reverse ? step : -step);
  const CFCoor coor(CFPoint(static_cast<float>(x), static_cast<float>(y)), to.coor().GetScale(), reverse);
  BitmapContext bitmap(size_.cx, size_.cy, ground_);
  if (bitmap.Width() == 0) return false;
  std::optional<Mask> sure;
  if (!others_.empty()) {
    draw_unmoved(block_, plane_, coor, bitmap, to.appearance(),
                 [&](ACAD_ENTITY& entity) { return keeps_its_pixels(entity, plane_, to); });
    sure.emplace(bitmap, ground_);
    const Mask wide = sure->widened();
    constexpr double kAside = 0.5 / kSide + kMostLoss;
    if (!std::ranges::all_of(others_, [&](const Box& box) { return covers(wide, box, coor, kAside); })) return false;
  }
  draw_unmoved(block_, plane_, coor, bitmap, to.appearance(), [](ACAD_ENTITY&) { return true; });
  if (sure) sure->clear_others(bitmap, ground_);
  return take(bitmap, pictures_[place]);
}

bool BlockStamp::take(const BitmapContext& bitmap, Picture& picture) const {
  picture.left = bitmap.Width();
  for (int y = 0; y < bitmap.Height(); ++y) {
    const std::uint32_t* const pixels = bitmap.Pixels() + static_cast<std::ptrdiff_t>(y) * bitmap.Width();
    for (int begin = 0, end; begin < bitmap.Width(); begin = end) {
      for (end = begin + 1; end < bitmap.Width() && pixels[end] == pixels[begin];) ++end;
      const COLORREF color = bitmap.GetPixel(begin, y);
      if (color == ground_) continue;
      if (picture.runs.empty()) picture.top = y;
      picture.left = std::min(picture.left, begin);
      picture.runs.push_back({color, y, begin, end});
    }
    if (picture.runs.size() > mostRuns_) return false;
  }
  std::stable_sort(picture.runs.begin(), picture.runs.end(),
                   [](const Run& r, const Run& s) { return r.color < s.color; });
  return picture.isMade = true;
}

bool BlockStamp::draw(const CFPoint& shift, DrawingContext& to) {
  if (!pays_) return false;
  const CFCoor& coor = to.coor();
  const double scale = coor.GetScale();
  const double x = double{corner_.x} + shift.x;
  const double y = double{corner_.y} + shift.y;
  constexpr double kLoss = 1e-7;  // of a float
  const double farthest =
      std::max({std::fabs(x), std::fabs(y), std::fabs(double{corner_.x}), std::fabs(double{corner_.y})});
  if (!(farthest * scale * kLoss < kMostLoss)) return false;
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
  if (!picture.isMade && !make_picture(place, to)) return pays_ = false;
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
