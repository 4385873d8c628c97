#include "qvtools/dxf/view/internal/display.h"

#include <numbers>
#include <optional>

#include "qvtools/display/safe_dc.h"
#include "qvtools/dxf/model/document.h"
#include "qvtools/dxf/model/internal/walk.h"
#include "qvtools/fonts/shx.h"
#include "qvtools/geometry/numerics/numeric.h"
#include "qvtools/geometry/values/shape.h"

namespace qv::detail {

CSafeDC& clipping_context(CDC* dc) {
  static CSafeDC context;
  if (context.GetDC() != dc) context = CSafeDC(dc);
  return context;
}

PenStyle pen_style(const char* ltype) {
  const char* d = std::strchr(ltype, 'D');
  if (!d) return PenStyle::Solid;  // BYLAYER, CONTINUOUS and all others without the words
  if (std::strstr(d, "DASHED")) return PenStyle::Dash;
  if (std::strstr(d, "DASHDOT")) return PenStyle::DashDot;
  return std::strstr(d, "DOT") ? PenStyle::Dot : PenStyle::Solid;
}

}  // namespace qv::detail

using qv::detail::clipping_context;
using qv::detail::pen_style;

namespace {

bool is_black_only(const CDC& dc) {
  return dc.IsPrinting() || dc.IsMetafile();
}

/// The one-pixel pen of an entity, selected for the life of the object.
class EntityPen {
 public:
  EntityPen(CDC* dc, const char* ltype, int color)
      : dc_(dc),
        pen_{pen_style(ltype), 1, is_black_only(*dc) ? 0 : ACAD_ENTITY::GetColor(color)},
        before_(dc->SelectObject(&pen_)) {}
  ~EntityPen() { dc_->SelectObject(before_); }
  EntityPen(const EntityPen&) = delete;
  EntityPen& operator=(const EntityPen&) = delete;
  COLORREF color() const { return pen_.color; }

 private:
  CDC* dc_;
  CPen pen_;
  const CPen* before_;
};

/// The way from displaced world points to the device.
struct ToDevice {
  const CFCoor& coor;
  float dx;
  float dy;

  CFPoint world(const qv::Point3& p) const { return {p.x + dx, p.y + dy}; }
  CPoint operator()(const CFPoint& p) const { return coor.FPtoDP(p); }
  CPoint operator()(const qv::Point3& p) const { return coor.FPtoDP(world(p)); }
};

/// By value: points that were just stored in halves are slow to load as wholes.
void draw_line(CSafeDC& safe, CPoint from, CPoint to) {
  safe.MoveTo(from.x, from.y);
  safe.LineTo(to.x, to.y);
}

/// The square of a circle on the device, in order whichever way Y runs.
CRect device_square(const ToDevice& to, const CFPoint& center, float radius) {
  CRect square = to.coor.FPtoDP(CFRect(center.x - radius, center.y - radius, center.x + radius, center.y + radius));
  if (square.top > square.bottom) std::swap(square.top, square.bottom);
  if (square.left > square.right) std::swap(square.left, square.right);
  return square;
}

/// An arc from one point to the other, counter-clockwise in the world; with Y not reversed it runs clockwise on the
/// device.
void draw_arc(CSafeDC& safe, const ToDevice& to, const CFPoint& center, float radius, const CFPoint& from,
              const CFPoint& until) {
  const CRect square = device_square(to, center, radius);
  const CPoint start = to(from);
  const CPoint end = to(until);
  if (to.coor.IsReverseY())
    safe.Arc(&square, start, end);
  else
    safe.Arc(&square, end, start);
}

/// A whole circle, in two halves, so that one far larger than the window is clipped correctly.
void draw_circle(CSafeDC& safe, const ToDevice& to, const CFPoint& center, float radius) {
  const CFPoint right(center.x + radius, center.y);
  const CFPoint left(center.x - radius, center.y);
  draw_arc(safe, to, center, radius, right, left);
  draw_arc(safe, to, center, radius, left, right);
}

void fill(CSafeDC& safe, const CPoint* points, int n, COLORREF color) {
  CRgn region;
  if (!region.CreatePolygonRgn(points, n, qv::FillRule::Winding)) return;
  const CBrush brush{color};
  safe.FillRgn(&region, &brush);
}

/// One segment of a polyline, displaced, with its widths at both ends in world units.
struct Segment {
  CFPoint from;
  CFPoint to;
  float bulge;
  float startWidth;
  float endWidth;

  bool straight() const { return std::fabs(bulge) < 0.0001F; }
  CFShape arc() const { return {from, to, static_cast<float>(-4 * std::atan(static_cast<double>(bulge)))}; }
};

void fill_band(CSafeDC& safe, const ToDevice& to, const Segment& s, COLORREF color) {
  const double dx = static_cast<double>(s.to.x) - s.from.x;
  const double dy = static_cast<double>(s.to.y) - s.from.y;
  const double length = std::hypot(dx, dy);
  if (!(length > 0)) return;
  const auto beside = [&](const CFPoint& p, double width) {
    const double k = width / 2 / length;
    return to(CFPoint(static_cast<float>(p.x - dy * k), static_cast<float>(p.y + dx * k)));
  };
  const CPoint corners[4] = {beside(s.from, s.startWidth), beside(s.to, s.endWidth), beside(s.to, -s.endWidth),
                             beside(s.from, -s.startWidth)};
  fill(safe, corners, 4, color);
}

/// A bulged wide segment: the sector of a ring, its width running from the start's to the end's.
void fill_sector(CSafeDC& safe, const ToDevice& to, const Segment& s, COLORREF color) {
  constexpr int kMaxSteps = 1024;
  const CFShape arc = s.arc();
  const double radius = arc.GetRadius();
  const double sweep = arc.GetB();
  const double pixels = std::fabs(sweep) * (radius + std::max(s.startWidth, s.endWidth) / 2) * to.coor.GetScale();
  // Chords of about four pixels, as arcs have them.
  const int steps = std::clamp(qv::TruncInt(pixels / 4), 8, kMaxSteps);
  CPoint outline[2 * (kMaxSteps + 1)];
  for (int i = 0; i <= steps; ++i) {
    const double t = static_cast<double>(i) / steps;
    const double angle = arc.GetStartAngle() + sweep * t;
    const double half = (s.startWidth + (static_cast<double>(s.endWidth) - s.startWidth) * t) / 2;
    const auto at = [&](double r) {
      return to(
          CFPoint(static_cast<float>(arc.x + r * std::cos(angle)), static_cast<float>(arc.y + r * std::sin(angle))));
    };
    outline[i] = at(radius + half);
    outline[2 * steps + 1 - i] = at(std::max(radius - half, 0.0));
  }
  fill(safe, outline, 2 * (steps + 1), color);
}

bool is_wide(const ToDevice& to, float width) {
  return to.coor.FPtoDP(static_cast<double>(width)) > 1;
}

/// The corner between two straight wide segments: the wedge on the outer side of the turn, up to where the bands' edges
/// meet (a sharp turn is cut off straight).
void fill_corner(CSafeDC& safe, const ToDevice& to, const Segment& before, const Segment& after, COLORREF color) {
  constexpr double kSharp = 0.1;
  if (!before.straight() || !after.straight() || !is_wide(to, std::min(before.endWidth, after.startWidth))) return;
  const double l1 = get_dist(before.from.x, before.from.y, before.to.x, before.to.y);
  const double l2 = get_dist(after.from.x, after.from.y, after.to.x, after.to.y);
  if (!(l1 > 0) || !(l2 > 0)) return;
  const double ux = (static_cast<double>(before.to.x) - before.from.x) / l1;
  const double uy = (static_cast<double>(before.to.y) - before.from.y) / l1;
  const double vx = (static_cast<double>(after.to.x) - after.from.x) / l2;
  const double vy = (static_cast<double>(after.to.y) - after.from.y) / l2;
  const double half = (ux * vy - uy * vx > 0 ? -0.5 : 0.5) * std::min(before.endWidth, after.startWidth);
  const double along = 1 + ux * vx + uy * vy;
  const auto at = [&](double nx, double ny) {
    return to(CFPoint(static_cast<float>(after.from.x + half * nx), static_cast<float>(after.from.y + half * ny)));
  };
  CPoint wedge[4] = {to(after.from), at(-uy, ux), at(-vy, vx), {}};
  if (along < kSharp) return fill(safe, wedge, 3, color);
  wedge[3] = wedge[2];
  wedge[2] = at(-(uy + vy) / along, (ux + vx) / along);
  fill(safe, wedge, 4, color);
}

void draw_segment(CSafeDC& safe, const ToDevice& to, const Segment& s, COLORREF color) {
  const bool wide = is_wide(to, std::max(s.startWidth, s.endWidth));
  if (s.straight()) return wide ? fill_band(safe, to, s, color) : draw_line(safe, to(s.from), to(s.to));
  if (wide) return fill_sector(safe, to, s, color);
  const CFShape arc = s.arc();
  // A clockwise sweep is drawn from its other end.
  const bool clockwise = arc.GetB() < 0;
  draw_arc(safe, to, {arc.x, arc.y}, static_cast<float>(arc.GetRadius()), clockwise ? s.to : s.from,
           clockwise ? s.from : s.to);
}

/// Whether the vertex is on the curve to draw: of a fitted curve and of a spline only the computed vertices are.
bool is_drawn(const ACAD_POLYLINE& polyline, const ACAD_VERTEX& vertex) {
  if (polyline.m_nFlags == 2) return vertex.m_nFlags == 1;
  if (polyline.m_nFlags == 4) return vertex.m_nFlags == 8;
  return true;
}

/// Calls f for each segment between consecutive drawn vertices, the closing one included when flag 1 is set.
template <class F>
void for_each_segment(const ACAD_POLYLINE& polyline, const ToDevice& to, const F& f) {
  // Vertices without widths of their own have the polyline's.
  bool own = false;
  for (const ACAD_VERTEX& v : polyline.m_Vertices) own = own || v.m_fStartWidth != 0 || v.m_fEndWidth != 0;
  const auto segment = [&](const ACAD_VERTEX& a, const ACAD_VERTEX& b) {
    return Segment{to.world(a.m_Point), to.world(b.m_Point), a.m_fBulge, own ? a.m_fStartWidth : polyline.m_fStartWidth,
                   own ? a.m_fEndWidth : polyline.m_fEndWidth};
  };
  const ACAD_VERTEX* first = nullptr;
  const ACAD_VERTEX* last = nullptr;
  for (const ACAD_VERTEX& vertex : polyline.m_Vertices) {
    if (!is_drawn(polyline, vertex)) continue;
    if (last) f(segment(*last, vertex));
    if (!first) first = &vertex;
    last = &vertex;
  }
  if ((polyline.m_nFlags & 1) != 0 && first != last) f(segment(*last, *first));
}

}  // namespace

void ACAD_POINT::Draw(CDC* dc, CFCoor* coor, float dx, float dy) {
  const CPoint p = ToDevice{*coor, dx, dy}(m_Point);
  clipping_context(dc).SetPixel(p.x, p.y, 0);
}

void ACAD_LINE::Draw(CDC* dc, CFCoor* coor, float dx, float dy) {
  const ToDevice to{*coor, dx, dy};
  CSafeDC& safe = clipping_context(dc);
  const CPoint from = to(m_Start);
  const CPoint until = to(m_End);
  if (safe.IsOutside(from, until)) return;  // no pen for what cannot be seen
  const EntityPen pen(dc, m_szLType, m_nColor);
  draw_line(safe, from, until);
}

void ACAD_TEXT::Draw(CDC* dc, CFCoor* coor, float dx, float dy) {
  const CPoint at = ToDevice{*coor, dx, dy}(m_Insert);
  const EntityPen pen(dc, m_szLType, m_nColor);
  const auto height = static_cast<float>(coor->FPtoDP(static_cast<double>(m_fHeight)));
  const auto angle = static_cast<float>(m_fRotation * std::numbers::pi / 180);
  const float width = height * m_fWidthFactor;
  clipping_context(dc);
  if (std::strstr(m_szStyle, "STANDARD"))
    G_ShapeFont.DrawTxtShx(dc, at.x, at.y, m_szText, height, angle, width, 1);
  else
    G_ShapeFont.DrawHzShx(dc, at.x, at.y, m_szText, height, angle, width, 1);
}

void ACAD_CIRCLE::Draw(CDC* dc, CFCoor* coor, float dx, float dy) {
  const EntityPen pen(dc, m_szLType, m_nColor);
  const ToDevice to{*coor, dx, dy};
  draw_circle(clipping_context(dc), to, to.world(m_Center), m_fRadius);
}

void ACAD_ARC::Draw(CDC* dc, CFCoor* coor, float dx, float dy) {
  const EntityPen pen(dc, m_szLType, m_nColor);
  CSafeDC& safe = clipping_context(dc);
  const ToDevice to{*coor, dx, dy};
  const CFPoint center = to.world(m_Center);
  const double sweep = static_cast<double>(m_fEndAngle) - m_fStartAngle;
  if (std::fabs(sweep) >= 359.99) return draw_circle(safe, to, center, m_fRadius);
  const auto on_arc = [&](double degrees) {
    const double angle = degrees * std::numbers::pi / 180;
    return CFPoint(static_cast<float>(center.x + m_fRadius * std::cos(angle)),
                   static_cast<float>(center.y + m_fRadius * std::sin(angle)));
  };
  draw_arc(safe, to, center, m_fRadius, on_arc(m_fStartAngle), on_arc(m_fEndAngle));
}

void ACAD_POLYLINE::Draw(CDC* dc, CFCoor* coor, float dx, float dy) {
  const EntityPen pen(dc, m_szLType, m_nColor);
  CSafeDC& safe = clipping_context(dc);
  const ToDevice to{*coor, dx, dy};
  std::optional<Segment> first;
  std::optional<Segment> before;
  for_each_segment(*this, to, [&](const Segment& segment) {
    draw_segment(safe, to, segment, pen.color());
    if (before) fill_corner(safe, to, *before, segment, pen.color());
    if (!first) first = segment;
    before = segment;
  });
  const bool closed = (m_nFlags & 1) != 0;
  if (closed && before) fill_corner(safe, to, *before, *first, pen.color());
}

void ACAD_SOLID::Draw(CDC* dc, CFCoor* coor, float dx, float dy) {
  const ToDevice to{*coor, dx, dy};
  const CPoint corners[4] = {to(m_Corner[0]), to(m_Corner[1]), to(m_Corner[3]), to(m_Corner[2])};
  fill(clipping_context(dc), corners, 4, is_black_only(*dc) ? 0 : GetColor(m_nColor));
}

void ACAD_3DFACE::Draw(CDC* dc, CFCoor* coor, float dx, float dy) {
  const EntityPen pen(dc, m_szLType, m_nColor);
  CSafeDC& safe = clipping_context(dc);
  const ToDevice to{*coor, dx, dy};
  for (int i = 0; i < 4; ++i) draw_line(safe, to(m_Corner[i]), to(m_Corner[(i + 1) % 4]));
}

void ACAD_INSERT::Draw(CDC*, CFCoor*, float, float) {}

void ACAD_BLOCK::Draw(CDC* dc, CFCoor* coor, ACAD_INSERT* insert) {
  const float dx = insert->m_Insert.x - m_Base.x;
  const float dy = insert->m_Insert.y - m_Base.y;
  for (POSITION at = m_EntityList.GetHeadPosition(); at;) {
    auto* entity = static_cast<ACAD_ENTITY*>(m_EntityList.GetNext(at));
    if (entity->GetType() != ACAD_TYPE_INSERT) entity->Draw(dc, coor, dx, dy);
  }
}

namespace qv::detail {

namespace {

/// The next float below a number; the lowest bound where it is none.
float below(double v) {
  constexpr double kLargest = std::numeric_limits<float>::max();
  constexpr float kLowest = -std::numeric_limits<float>::infinity();
  return v > -kLargest && v < kLargest ? std::nextafter(static_cast<float>(v), kLowest) : kLowest;
}

}  // namespace

WorldWindow::WorldWindow(CSafeDC& safe, const CDC& dc, const CFCoor& coor, double margin) {
  const double scale = coor.GetScale();
  if (dc.IsMetafile() || !(scale > 0)) return;
  const CRect limits = safe.Limits();
  const double x = coor.GetOrigin().x;
  const double y = coor.GetOrigin().y;
  const double down = coor.IsReverseY() ? -1 : 1;
  const double y1 = y + down * (limits.top - margin) / scale;
  const double y2 = y + down * (limits.bottom + margin) / scale;
  x1_ = below(x + (limits.left - margin) / scale);
  x2_ = -below(-(x + (limits.right + margin) / scale));
  y1_ = below(std::min(y1, y2));
  y2_ = -below(-std::max(y1, y2));
}

LinePainter::LinePainter(CDC* dc, const CFCoor& coor) : dc_(dc), coor_(coor), black_(is_black_only(*dc)) {
  clipping_context(dc) = CSafeDC(dc);
  dc->SetBkMode(BackgroundMode::Transparent);
}

void LinePainter::change(PenStyle style, int color) {
  pen_ = {style, 1, black_ ? 0 : ACAD_ENTITY::GetColor(color)};
  color_ = color;
  const CPen* const before = dc_->SelectObject(&pen_);
  if (!before_) before_ = before;
}

}  // namespace qv::detail

void DXF::Draw(CDC* dc, CFCoor* coor) {
  m_pCoor = coor;
  Draw(dc);
}

void DXF::Draw(CDC* dc) {
  if (!m_nMemFlag) return;
  qv::detail::LinePainter lines(dc, *m_pCoor);
  const qv::detail::WorldWindow window(clipping_context(dc), *dc, *m_pCoor);
  qv::detail::walk(m_EntityList, [&](ACAD_ENTITY& entity) {
    switch (entity.GetType()) {
      case ACAD_TYPE_LINE: {
        const auto& line = static_cast<const ACAD_LINE&>(entity);
        const qv::Point3& start = line.m_Start;
        const qv::Point3& end = line.m_End;
        if (window.misses(start.x, start.y, end.x, end.y)) return;
        return lines.draw({start.x, start.y}, {end.x, end.y}, pen_style(line.m_szLType), line.m_nColor);
      }
      case ACAD_TYPE_INSERT: {
        auto& insert = static_cast<ACAD_INSERT&>(entity);
        ACAD_BLOCK* const block = GetBlock(&insert);
        return block ? block->Draw(dc, m_pCoor, &insert) : void();
      }
      default:
        return entity.Draw(dc, m_pCoor, 0, 0);
    }
  });
}

float DXF::GetTextWidth(const char* text, float height, float widthFactor) {
  return G_ShapeFont.GetTxtWidth(text, height, widthFactor);
}
