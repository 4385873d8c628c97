#include "qvtools/platform/device.h"

namespace {

const CPen kBlackPen{qv::PenStyle::Solid, 1, 0x000000};
const CPen kWhitePen{qv::PenStyle::Solid, 1, 0xFFFFFF};
const CBrush kWhiteBrush{0xFFFFFF};

// Differences of ints need 33 bits and their products 66, so they are formed in double.
double cross(const CPoint& a, const CPoint& b, double x, double y) {
  return (static_cast<double>(b.x) - a.x) * (y - a.y) - (static_cast<double>(b.y) - a.y) * (x - a.x);
}

bool inside(const CRect& rect, const CPoint& p) {
  return p.x >= rect.left && p.x <= rect.right && p.y >= rect.top && p.y <= rect.bottom;
}

bool edge_meets(const CRect& rect, const CPoint& a, const CPoint& b) {
  if (inside(rect, a) || inside(rect, b)) return true;
  if (std::max(a.x, b.x) < rect.left || std::min(a.x, b.x) > rect.right) return false;
  if (std::max(a.y, b.y) < rect.top || std::min(a.y, b.y) > rect.bottom) return false;
  const double sides[] = {cross(a, b, rect.left, rect.top), cross(a, b, rect.right, rect.top),
                          cross(a, b, rect.left, rect.bottom), cross(a, b, rect.right, rect.bottom)};
  const auto [low, high] = std::minmax_element(std::begin(sides), std::end(sides));
  return *low <= 0 && *high >= 0;
}

}  // namespace

int CRgn::CreatePolygonRgn(const CPoint* points, int n, qv::FillRule rule) {
  rule_ = rule;
  count_ = points && n >= 3 ? n : 0;
  if (count_ <= kInline) {
    std::copy_n(points, count_, few_.data());
    return count_ > 0;
  }
  try {
    many_.assign(points, points + n);
    return 1;
  } catch (const std::bad_alloc&) {
    return count_ = 0;
  }
}

CRect CRgn::GetRgnBox() const {
  if (count_ == 0) return {};
  const CPoint* p = Points();
  CRect box(p->x, p->y, p->x, p->y);
  for (int i = 1; i < count_; ++i) {
    box.left = std::min(box.left, p[i].x);
    box.top = std::min(box.top, p[i].y);
    box.right = std::max(box.right, p[i].x);
    box.bottom = std::max(box.bottom, p[i].y);
  }
  return box;
}

bool CRgn::RectInRegion(const CRect& rect) const {
  if (count_ == 0) return false;
  const CRect box = GetRgnBox();
  if (box.right < rect.left || box.left > rect.right || box.bottom < rect.top || box.top > rect.bottom) return false;
  const CPoint* p = Points();
  // No edge meets the rectangle: then it lies wholly in or wholly out, and one corner tells.
  int winding = 0;
  for (int i = 0, j = count_ - 1; i < count_; j = i++) {
    const CPoint &a = p[j], &b = p[i];
    if (edge_meets(rect, a, b)) return true;
    if ((a.y <= rect.top) == (b.y <= rect.top)) continue;
    const bool down = a.y <= rect.top;
    if ((cross(a, b, rect.left, rect.top) > 0) == down) winding += down ? 1 : -1;
  }
  return rule_ == qv::FillRule::Winding ? winding != 0 : (winding & 1) != 0;
}

CDC::CDC() : pen_(&kBlackPen), brush_(&kWhiteBrush) {}
CDC::~CDC() = default;

const CPen* CDC::SelectObject(const CPen* pen) {
  const CPen* before = pen_;
  if (pen) {
    pen_ = pen;
    PenChanged();
  }
  return before;
}

const CBrush* CDC::SelectObject(const CBrush* brush) {
  return brush ? std::exchange(brush_, brush) : brush_;
}

const CPen* CDC::StockWhitePen() {
  return &kWhitePen;
}
const CPen* CDC::StockBlackPen() {
  return &kBlackPen;
}

qv::BackgroundMode CDC::SetBkMode(qv::BackgroundMode mode) {
  const qv::BackgroundMode before = std::exchange(mode_, mode);
  PenChanged();
  return before;
}

qv::RasterOp CDC::SetROP2(qv::RasterOp op) {
  const qv::RasterOp before = std::exchange(op_, op);
  PenChanged();
  return before;
}
