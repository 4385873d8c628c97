#include <cstring>
#include <limits>
#include <numbers>

#include "qvtools/dxf/model/internal/name_index.h"
#include "qvtools/dxf/view/box_grid.h"
#include "qvtools/dxf/view/internal/outline.h"
#include "qvtools/fonts/shx.h"

namespace qv::detail {

namespace {

void add(Box& box, const CFShape& shape) {
  CFPoint p1, p2;
  shape.GetRect(p1, p2);
  box.add(p1);
  box.add(p2);
}

/// The box as a rectangle; the empty one when nothing is in it.
CFRect rect_of(const Box& box) {
  return box.is_empty() ? CFRect() : CFRect(box.x1, box.y1, box.x2, box.y2);
}

CFRect extent_of_corners(const Point3 (&corners)[4], const Plane& plane) {
  Box box;
  for (const Point3& corner : corners) box.add(plane(corner));
  return rect_of(box);
}

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
  return {p.x - kPointExtent, p.y - kPointExtent, p.x + kPointExtent, p.y + kPointExtent};
}
CFRect extent(const ACAD_CIRCLE& r, const Plane& plane) {
  const CFPoint c = plane(r.m_Center);
  return {c.x - r.m_fRadius, c.y - r.m_fRadius, c.x + r.m_fRadius, c.y + r.m_fRadius};
}
CFRect extent(const ACAD_ARC& r, const Plane& plane) {
  Box box;
  add(box, arc_shape(r, plane(r.m_Center)));
  return rect_of(box);
}
CFRect extent(const ACAD_POLYLINE& r, const Plane& plane) {
  Box box;
  if (const ACAD_VERTEX* first = first_vertex(r)) box.add(plane(first->m_Point));
  for_each_segment(r, plane, [&](const Segment& segment) {
    if (segment.is_straight())
      box.add(segment.to);
    else
      add(box, segment.shape());
  });
  return rect_of(box);
}
CFRect extent(const ACAD_SOLID& r, const Plane& plane) {
  return extent_of_corners(r.m_Corner, plane);
}
CFRect extent(const ACAD_3DFACE& r, const Plane& plane) {
  return extent_of_corners(r.m_Corner, plane);
}
CFRect extent(const ACAD_TEXT& r, const Plane& plane) {
  Box box;
  for (const CFPoint& corner : TextBox(r, plane).corner) box.add(corner);
  return rect_of(box);
}

CFRect own_extent(ACAD_ENTITY& entity, const Plane& plane) {
  CFRect extent = plane.is_plan() ? entity.GetFRect() : entity.GetFRect3D(plane.a(), plane.b());
  if (!extent.IsFRectNull(std::numeric_limits<float>::min())) extent += plane.shift();
  return extent;
}

namespace {

/// Adds the extent of an entity; `add_insert` answers for inserts.
void add_entity(ACAD_ENTITY& entity, const Plane& plane, Box& box, const auto& add_insert) {
  const auto add_rect = [&box](const CFRect& r) { box.add(Box{r.x1, r.y1, r.x2, r.y2}); };
  visit_record(
      entity,
      [&](const auto& record) {
        if constexpr (std::is_same_v<decltype(record), const ACAD_INSERT&>)
          add_insert(record);
        else if (!is_empty(record))
          add_rect(extent(record, plane));
      },
      [&](ACAD_ENTITY& own) {
        if (own.GetType() == ACAD_TYPE_INSERT) return add_insert(static_cast<const ACAD_INSERT&>(own));
        const CFRect extent = own_extent(own, plane);
        if (!extent.IsFRectNull(std::numeric_limits<float>::min())) add_rect(extent);
      });
}

void add_block(const ACAD_BLOCK& block, const ACAD_INSERT& insert, const Plane& plane, Box& box) {
  const Plane placed = plane.moved(displacement(block, insert));
  walk_block(block, [&](ACAD_ENTITY& entity) {
    add_entity(entity, placed, box, [](const ACAD_INSERT&) {});
    return false;
  });
}

CFRect block_extent(const ACAD_BLOCK& block, const ACAD_INSERT& insert, const Plane& plane) {
  Box box;
  add_block(block, insert, plane, box);
  return rect_of(box);
}

CFRect document_extent(DXF& dxf, const Plane& plane) {
  Box box;
  InsertedBlocks blocks(dxf);
  const auto add_insert = [&](const ACAD_INSERT& insert) {
    if (const ACAD_BLOCK* block = blocks(insert)) add_block(*block, insert, plane, box);
  };
  walk(dxf.m_EntityList, [&](ACAD_ENTITY& entity) { add_entity(entity, plane, box, add_insert); });
  return rect_of(box);
}

}  // namespace

}  // namespace qv::detail

using namespace qv::detail;

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
  return text_width(*this, m_fHeight);
}

int ACAD_TEXT::GetOutLook(float* x, float* y) {
  const TextBox box(*this, Plane());
  for (int i = 0; i < 4; ++i) {
    x[i] = box.corner[i].x;
    y[i] = box.corner[i].y;
  }
  return 1;
}

float DXF::GetTextWidth(const char* text, float height, float widthFactor) {
  return G_ShapeFont.GetTxtWidth(text, height, widthFactor);
}
