#include "qvtools/platform/win32/gdi_context.h"

#include <utility>

namespace qv {
namespace {

// GDI's numbers for styles, raster operations, fill rules and background modes are the library's own.
static_assert(static_cast<int>(PenStyle::Null) == PS_NULL && static_cast<int>(PenStyle::DashDotDot) == PS_DASHDOTDOT);
static_assert(static_cast<int>(RasterOp::Not) == R2_NOT && static_cast<int>(RasterOp::XorPen) == R2_XORPEN &&
              static_cast<int>(RasterOp::CopyPen) == R2_COPYPEN);
static_assert(static_cast<int>(FillRule::Alternate) == ALTERNATE && static_cast<int>(FillRule::Winding) == WINDING);
static_assert(static_cast<int>(BackgroundMode::Opaque) == OPAQUE);

// A program may have some ten thousand GDI objects in all.
constexpr std::size_t kMostObjects = 256;

POINT point_of(CPoint p) {
  return {p.x, p.y};
}

void delete_all(std::unordered_map<std::uint64_t, HGDIOBJ>& objects) {
  for (const auto& [key, object] : objects) DeleteObject(object);
  objects.clear();
}

bool is_styled(const CPen& pen) {
  return pen.width <= 1 && pen.style != PenStyle::Solid && pen.style != PenStyle::Null;
}

}  // namespace

GdiContext::GdiContext(HDC dc) : dc_(dc), saved_(SaveDC(dc)) {
  SetBkColor(dc_, 0xFFFFFF);
  MoveToEx(dc_, 0, 0, nullptr);
  GdiContext::PenChanged();
}

GdiContext::~GdiContext() {
  Flush();
  RestoreDC(dc_, saved_);
  delete_all(pens_);
  delete_all(brushes_);
}

HGDIOBJ GdiContext::pen_object() {
  const CPen& pen = Pen();
  const int width = std::max(pen.width, 1);
  const std::uint64_t key =
      std::uint64_t{pen.color & 0xFFFFFF} | std::uint64_t(pen.style) << 24 | static_cast<std::uint64_t>(width) << 32;
  if (pens_.size() >= kMostObjects && !pens_.contains(key)) {
    ::SelectObject(dc_, GetStockObject(BLACK_PEN));
    delete_all(pens_);
  }
  HGDIOBJ& object = pens_[key];
  if (!object) object = CreatePen(static_cast<int>(pen.style), width, pen.color & 0xFFFFFF);
  return object;
}

HGDIOBJ GdiContext::brush_object(COLORREF color) {
  if (brushes_.size() >= kMostObjects && !brushes_.contains(color)) {
    ::SelectObject(dc_, GetStockObject(WHITE_BRUSH));
    delete_all(brushes_);
  }
  HGDIOBJ& object = brushes_[color];
  if (!object) object = CreateSolidBrush(color & 0xFFFFFF);
  return object;
}

void GdiContext::PenChanged() {
  Flush();
  ::SelectObject(dc_, pen_object());
  ::SetBkMode(dc_, static_cast<int>(BkMode()));
  ::SetROP2(dc_, static_cast<int>(Rop2()));
}

void GdiContext::LineTo(int x, int y) {
  const CPoint from = std::exchange(position_, CPoint(x, y));
  if (from == position_) return;
  if (!is_styled(Pen())) {
    if (drawn_to_ != from) MoveToEx(dc_, from.x, from.y, nullptr);
    ::LineTo(dc_, x, y);
    drawn_to_ = position_;
    return;
  }
  if (!joined_.empty() && CPoint(joined_.back()) != from) Flush();
  if (joined_.empty()) joined_.push_back(point_of(from));
  joined_.push_back(point_of(position_));
}

void GdiContext::Flush() {
  if (joined_.empty()) return;
  Polyline(dc_, joined_.data(), static_cast<int>(joined_.size()));
  joined_.clear();
}

void GdiContext::SetPixel(int x, int y, COLORREF color) {
  Flush();
  ::SetROP2(dc_, R2_COPYPEN);
  SetPixelV(dc_, x, y, color & 0xFFFFFF);
  ::SetROP2(dc_, static_cast<int>(Rop2()));
}

// A polygon without an outline rather than a region: metafiles and printers get its corners.
void GdiContext::FillRgn(const CRgn& region, const CBrush& brush) {
  Flush();
  if (region.Count() == 0) return;
  corners_.clear();
  for (const CPoint* p = region.Points(); p != region.Points() + region.Count(); ++p) corners_.push_back(point_of(*p));
  const HGDIOBJ pen = ::SelectObject(dc_, GetStockObject(NULL_PEN));
  ::SelectObject(dc_, brush_object(brush.color));
  SetPolyFillMode(dc_, static_cast<int>(region.Rule()));
  Polygon(dc_, corners_.data(), static_cast<int>(corners_.size()));
  ::SelectObject(dc_, pen);
}

CSize GdiContext::GetResolution() const {
  BITMAP bitmap;
  const bool inMemory = GetObjectType(dc_) == OBJ_MEMDC &&
                        GetObjectW(GetCurrentObject(dc_, OBJ_BITMAP), sizeof bitmap, &bitmap) == sizeof bitmap;
  if (inMemory) return {static_cast<int>(bitmap.bmWidth), static_cast<int>(bitmap.bmHeight)};
  return {GetDeviceCaps(dc_, HORZRES), GetDeviceCaps(dc_, VERTRES)};
}

bool GdiContext::IsPrinting() const {
  const int technology = GetDeviceCaps(dc_, TECHNOLOGY);
  return !IsMetafile() && (technology == DT_RASPRINTER || technology == DT_PLOTTER);
}

bool GdiContext::IsMetafile() const {
  const DWORD type = GetObjectType(dc_);
  return type == OBJ_ENHMETADC || type == OBJ_METADC;
}

}  // namespace qv
