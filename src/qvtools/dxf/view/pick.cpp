#include "qvtools/dxf/model/document.h"
#include "qvtools/dxf/model/internal/walk.h"
#include "qvtools/dxf/view/internal/outline.h"
#include "qvtools/geometry/values/region.h"

using namespace qv::detail;

namespace {

/// What a pick looks for: a region with its box, and whether crossing counts.
struct Pick {
  const CFRegion& region;
  CFRect bounds;
  int mode;

  Pick(const CFRegion& r, int m) : region(r), mode(m) {
    CFPoint p1;
    CFPoint p2;
    r.GetRect(p1, p2);
    bounds = CFRect(p1, p2);
  }
  bool misses(const CFRect& r) const {
    return r.x2 < bounds.x1 || r.x1 > bounds.x2 || r.y2 < bounds.y1 || r.y1 > bounds.y2;
  }
  bool takes(const CFShape& shape) const { return region.HitShape(shape, mode) != 0; }
};

/// Edges are taken when all of them lie inside, or when any is hit where crossing counts.
class EdgeHits {
 public:
  explicit EdgeHits(const Pick& pick) : pick_(pick) {}
  void add(const CFShape& shape) {
    if (decided_) return;
    any_ = true;
    const bool hit = pick_.takes(shape);
    decided_ = hit == (pick_.mode != 0);
    result_ = hit;
  }
  bool decided() const { return decided_; }
  bool result() const { return any_ && result_; }

 private:
  const Pick& pick_;
  bool any_ = false;
  bool decided_ = false;
  bool result_ = false;
};

/// A filled quadrilateral also takes a pick region that lies wholly within it, where crossing counts.
bool hit_area(const CFPoint (&corners)[4], const Pick& pick) {
  EdgeHits hits(pick);
  for (int i = 0; i < 4; ++i) hits.add(CFShape(corners[i], corners[(i + 1) % 4]));
  if (hits.result() || pick.mode == 0 || pick.region.GetSize() == 0) return hits.result();
  CFPoint outline[4] = {corners[0], corners[1], corners[2], corners[3]};
  return CFRegion(outline, 4).InRegion(CFPoint(pick.region[0])) != 0;
}

// Whether the pick takes each kind in a plane; the caller has seen that the extents meet.

bool hit(const ACAD_POINT& r, const Plane& plane, const Pick& pick) {
  return pick.takes(CFShape(plane(r.m_Point)));
}
bool hit(const ACAD_LINE& r, const Plane& plane, const Pick& pick) {
  return pick.takes(CFShape(plane(r.m_Start), plane(r.m_End)));
}
bool hit(const ACAD_TEXT& r, const Plane& plane, const Pick& pick) {
  return hit_area(TextBox(r, plane).corner, pick);
}
bool hit(const ACAD_CIRCLE& r, const Plane& plane, const Pick& pick) {
  return pick.takes(circle_shape(plane(r.m_Center), r.m_fRadius));
}
bool hit(const ACAD_ARC& r, const Plane& plane, const Pick& pick) {
  return pick.takes(arc_shape(r, plane(r.m_Center)));
}
bool hit(const ACAD_POLYLINE& r, const Plane& plane, const Pick& pick) {
  if (r.m_Vertices.GetSize() == 1) return pick.takes(CFShape(plane(r.m_Vertices[0].m_Point)));
  EdgeHits hits(pick);
  for_each_edge(r, plane,
                [&](const CFPoint& from, const CFPoint& to, float bulge) { hits.add(edge_shape(from, to, bulge)); });
  return hits.result();
}
/// Solids take their corners in zigzag order.
bool hit(const ACAD_SOLID& r, const Plane& plane, const Pick& pick) {
  const CFPoint corners[4] = {plane(r.m_Corner[0]), plane(r.m_Corner[1]), plane(r.m_Corner[3]), plane(r.m_Corner[2])};
  return hit_area(corners, pick);
}
bool hit(const ACAD_3DFACE& r, const Plane& plane, const Pick& pick) {
  const CFPoint corners[4] = {plane(r.m_Corner[0]), plane(r.m_Corner[1]), plane(r.m_Corner[2]), plane(r.m_Corner[3])};
  return hit_area(corners, pick);
}

template <class Record>
bool picks(const Record& record, const Plane& plane, const Pick& pick) {
  return !pick.misses(extent(record, plane)) && hit(record, plane, pick);
}

bool picks(const ACAD_INSERT&, const Plane&, const Pick&) {
  return false;
}

CFRegion region_of(const CFRect& rect) {
  return CFRegion(rect);
}

}  // namespace

#define QV_ENTITY_PICK(Class)                                              \
  int Class::HitTest(const CFRegion& region, int mode, float a, float b) { \
    return picks(*this, Plane(a, b), Pick(region, mode)) ? 1 : 0;          \
  }                                                                        \
  int Class::HitTest(const CFRect& rect, int mode, float a, float b) {     \
    return HitTest(region_of(rect), mode, a, b);                           \
  }

QV_ENTITY_PICK(ACAD_POINT)
QV_ENTITY_PICK(ACAD_LINE)
QV_ENTITY_PICK(ACAD_TEXT)
QV_ENTITY_PICK(ACAD_CIRCLE)
QV_ENTITY_PICK(ACAD_ARC)
QV_ENTITY_PICK(ACAD_POLYLINE)
QV_ENTITY_PICK(ACAD_SOLID)
QV_ENTITY_PICK(ACAD_3DFACE)
QV_ENTITY_PICK(ACAD_INSERT)
#undef QV_ENTITY_PICK

namespace {

bool picks_entity(ACAD_ENTITY& entity, const Plane& plane, const Pick& pick) {
  return qv::visit_entity(entity, [&](const auto& record) { return picks(record, plane, pick); });
}

/// A block is taken when one of its entities is hit where crossing counts, else when all of them lie inside.
bool picks_block(const ACAD_BLOCK& block, const ACAD_INSERT& insert, const Plane& plane, const Pick& pick) {
  const Plane placed = plane.moved(displacement(block, insert));
  bool all = !block.m_EntityList.IsEmpty();
  for (POSITION at = block.m_EntityList.GetHeadPosition(); at;) {
    const bool hit = picks_entity(*static_cast<ACAD_ENTITY*>(block.m_EntityList.GetNext(at)), placed, pick);
    if (hit && pick.mode != 0) return true;
    all = all && hit;
  }
  return all;
}

}  // namespace

int ACAD_BLOCK::HitTest(const CFRegion& region, int mode, float a, float b, ACAD_INSERT* insert) {
  return picks_block(*this, *insert, Plane(a, b), Pick(region, mode)) ? 1 : 0;
}

int ACAD_BLOCK::HitTest(const CFRect& rect, int mode, float a, float b, ACAD_INSERT* insert) {
  return HitTest(region_of(rect), mode, a, b, insert);
}

int DXF::HitTest(const CFRegion& region, int mode, float a, float b) {
  const Plane plane(a, b);
  const Pick pick(region, mode);
  int index = 0;
  const bool found = walk_until(m_EntityList, [&](ACAD_ENTITY& entity) {
    ++index;
    if (entity.GetType() != ACAD_TYPE_INSERT) return picks_entity(entity, plane, pick);
    const auto& insert = static_cast<ACAD_INSERT&>(entity);
    const ACAD_BLOCK* block = GetBlock(&insert);
    return block && picks_block(*block, insert, plane, pick);
  });
  return found ? index : 0;
}

int DXF::HitTest(const CFRect& rect, int mode, float a, float b) {
  return HitTest(region_of(rect), mode, a, b);
}
