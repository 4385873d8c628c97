#include <algorithm>
#include <cstring>
#include <limits>
#include <numbers>

#include "qvtools/dxf/model/internal/name_index.h"
#include "qvtools/dxf/model/internal/walk.h"
#include "qvtools/dxf/view/internal/outline.h"
#include "qvtools/fonts/shx.h"

namespace qv::detail {

namespace {

/// The smallest box of what was added; the empty rectangle when nothing was.
class Box {
 public:
  void add(const CFPoint& p) {
    x1_ = std::min(x1_, p.x);
    y1_ = std::min(y1_, p.y);
    x2_ = std::max(x2_, p.x);
    y2_ = std::max(y2_, p.y);
  }
  void add(const CFRect& r) {
    add(CFPoint(r.x1, r.y1));
    add(CFPoint(r.x2, r.y2));
  }
  void add(const CFShape& shape) {
    CFPoint p1;
    CFPoint p2;
    shape.GetRect(p1, p2);
    add(p1);
    add(p2);
  }
  CFRect rect() const { return x1_ <= x2_ ? CFRect(x1_, y1_, x2_, y2_) : CFRect(); }

 private:
  float x1_ = std::numeric_limits<float>::infinity();
  float y1_ = x1_;
  float x2_ = -x1_;
  float y2_ = -x1_;
};

}  // namespace

bool is_in_text_font(const ACAD_TEXT& text) {
  return std::strstr(text.m_szStyle, "STANDARD") != nullptr;
}

float text_width(const ACAD_TEXT& text, float height) {
  return is_in_text_font(text) ? G_ShapeFont.GetTxtWidth(text.m_szText, height, text.m_fWidthFactor)
                               : G_ShapeFont.GetHzWidth(text.m_szText, height, text.m_fWidthFactor);
}

TextBox::TextBox(const ACAD_TEXT& text, const Plane& plane) {
  const CFPoint at = plane(text.m_Insert);
  const double width = text_width(text, text.m_fHeight);
  const double angle = text.m_fRotation * std::numbers::pi / 180;
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  const double along[4] = {0, width, width, 0};
  const double up[4] = {0, 0, text.m_fHeight, text.m_fHeight};
  for (int i = 0; i < 4; ++i)
    corner[i] = {static_cast<float>(at.x + along[i] * c - up[i] * s),
                 static_cast<float>(at.y + along[i] * s + up[i] * c)};
}

CFRect extent(const ACAD_POINT& r, const Plane& plane) {
  const CFPoint p = plane(r.m_Point);
  return {p.x - 10, p.y - 10, p.x + 10, p.y + 10};
}
CFRect extent(const ACAD_CIRCLE& r, const Plane& plane) {
  const CFPoint c = plane(r.m_Center);
  return {c.x - r.m_fRadius, c.y - r.m_fRadius, c.x + r.m_fRadius, c.y + r.m_fRadius};
}
CFRect extent(const ACAD_ARC& r, const Plane& plane) {
  Box box;
  box.add(arc_shape(r, plane(r.m_Center)));
  return box.rect();
}
CFRect extent(const ACAD_POLYLINE& r, const Plane& plane) {
  Box box;
  if (const ACAD_VERTEX* first = first_vertex(r)) box.add(plane(first->m_Point));
  for_each_segment(r, plane, [&](const Segment& segment) {
    if (segment.is_straight())
      box.add(segment.to);
    else
      box.add(segment.shape());
  });
  return box.rect();
}

namespace {

CFRect extent_of_corners(const Point3 (&corners)[4], const Plane& plane) {
  Box box;
  for (const Point3& corner : corners) box.add(plane(corner));
  return box.rect();
}

}  // namespace

CFRect extent(const ACAD_SOLID& r, const Plane& plane) {
  return extent_of_corners(r.m_Corner, plane);
}
CFRect extent(const ACAD_3DFACE& r, const Plane& plane) {
  return extent_of_corners(r.m_Corner, plane);
}
CFRect extent(const ACAD_TEXT& r, const Plane& plane) {
  Box box;
  for (const CFPoint& corner : TextBox(r, plane).corner) box.add(corner);
  return box.rect();
}

CFRect own_extent(ACAD_ENTITY& entity, const Plane& plane) {
  CFRect extent = plane.is_plan() ? entity.GetFRect() : entity.GetFRect3D(plane.a(), plane.b());
  if (!extent.IsFRectNull(std::numeric_limits<float>::min())) extent += plane.shift();
  return extent;
}

}  // namespace qv::detail

using qv::detail::Box;
using qv::detail::Plane;

namespace {

/// Adds the extents of a list's entities; `add_insert` answers for the inserts in it.
template <class F>
void add_entities(const CPtrList& list, const Plane& plane, Box& box, const F& add_insert) {
  qv::detail::walk(list, [&](ACAD_ENTITY& entity) {
    if (entity.GetType() == ACAD_TYPE_INSERT) return add_insert(static_cast<ACAD_INSERT&>(entity));
    qv::detail::visit_record(
        entity,
        [&](const auto& record) {
          if (!qv::detail::is_empty(record)) box.add(qv::detail::extent(record, plane));
        },
        [&](ACAD_ENTITY& own) {
          const CFRect extent = qv::detail::own_extent(own, plane);
          if (!extent.IsFRectNull(std::numeric_limits<float>::min())) box.add(extent);
        });
  });
}

void add_block(const ACAD_BLOCK& block, const ACAD_INSERT& insert, const Plane& plane, Box& box) {
  add_entities(block.m_EntityList, plane.moved(qv::detail::displacement(block, insert)), box,
               [](const ACAD_INSERT&) {});
}

CFRect block_extent(const ACAD_BLOCK& block, const ACAD_INSERT& insert, const Plane& plane) {
  Box box;
  add_block(block, insert, plane, box);
  return box.rect();
}

CFRect document_extent(DXF& dxf, const Plane& plane) {
  Box box;
  qv::detail::InsertedBlocks blocks(dxf);
  add_entities(dxf.m_EntityList, plane, box, [&](const ACAD_INSERT& insert) {
    if (const ACAD_BLOCK* block = blocks(insert)) add_block(*block, insert, plane, box);
  });
  return box.rect();
}

}  // namespace

CFRect ACAD_BLOCK::GetFRect(ACAD_INSERT* insert) {
  return block_extent(*this, *insert, Plane());
}
CFRect ACAD_BLOCK::GetFRect3D(float a, float b, ACAD_INSERT* insert) {
  return block_extent(*this, *insert, Plane(a, b));
}
CFRect DXF::GetFRect() {
  return document_extent(*this, Plane());
}
CFRect DXF::GetFRect3D(float a, float b) {
  return document_extent(*this, Plane(a, b));
}

float ACAD_TEXT::GetWidth() {
  return qv::detail::text_width(*this, m_fHeight);
}

int ACAD_TEXT::GetOutLook(float* x, float* y) {
  const qv::detail::TextBox box(*this, Plane());
  for (int i = 0; i < 4; ++i) {
    x[i] = box.corner[i].x;
    y[i] = box.corner[i].y;
  }
  return 1;
}

float DXF::GetTextWidth(const char* text, float height, float widthFactor) {
  return G_ShapeFont.GetTxtWidth(text, height, widthFactor);
}
