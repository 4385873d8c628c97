#include "qvtools/dxf/view/internal/pick.h"

#include "qvtools/dxf/model/internal/name_index.h"
#include "qvtools/dxf/model/internal/walk.h"
#include "qvtools/services/internal/out_of_memory.h"

namespace qv::detail {

namespace {

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
  EdgeHits hits(pick);
  bool any = false;
  for_each_segment(r, plane, [&](const Segment& segment) {
    any = true;
    hits.add(segment.shape());
  });
  if (any) return hits.result();
  const ACAD_VERTEX* const alone = first_vertex(r);
  return alone && pick.takes(CFShape(plane(alone->m_Point)));
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

bool hit(const ACAD_INSERT&, const Plane&, const Pick&) {
  return false;
}

/// A program's own kind is asked, with the region moved back by the insert's shift, of which the entity knows nothing.
bool picks_own(ACAD_ENTITY& entity, const Plane& plane, const Pick& pick) {
  CFRegion region = pick.region;
  const CFPoint shift = plane.shift();
  region.Offset({-shift.x, -shift.y});
  return entity.HitTest(region, pick.mode, plane.a(), plane.b()) != 0;
}

}  // namespace

template <class Record>
bool picks(const Record& record, const Plane& plane, const Pick& pick) {
  return !pick.misses(extent(record, plane)) && hit(record, plane, pick);
}

#define QV_KIND(KEYWORD, member) template bool picks(const ACAD_##KEYWORD&, const Plane&, const Pick&);
QV_FOR_EACH_ENTITY_KIND(QV_KIND)
#undef QV_KIND

bool picks_entity(ACAD_ENTITY& entity, const Plane& plane, const Pick& pick) {
  return visit_record(
      entity, [&](const auto& record) { return picks(record, plane, pick); },
      [&](ACAD_ENTITY& own) { return picks_own(own, plane, pick); });
}

bool picks_block(const ACAD_BLOCK& block, const ACAD_INSERT& insert, const Plane& plane, const Pick& pick) {
  const Plane placed = plane.moved(displacement(block, insert));
  bool all = true;
  bool any = false;
  const bool touched = walk_block(block, [&](ACAD_ENTITY& entity) {
    const bool hit = picks_entity(entity, placed, pick);
    any = true;
    all = all && hit;
    return hit && pick.mode != 0;
  });
  return touched || (any && all);
}

}  // namespace qv::detail

using namespace qv::detail;

int ACAD_BLOCK::HitTest(const CFRegion& region, int mode, float a, float b, ACAD_INSERT* insert) {
  return unless_out_of_memory([&] { return picks_block(*this, *insert, Plane(a, b), Pick(region, mode)) ? 1 : 0; }, 0);
}

int ACAD_BLOCK::HitTest(const CFRect& rect, int mode, float a, float b, ACAD_INSERT* insert) {
  return unless_out_of_memory([&] { return HitTest(CFRegion(rect), mode, a, b, insert); }, 0);
}

namespace {

/// The number of the first entity of a document that a pick takes; 0 when it takes none.
int first_picked(DXF& dxf, const Plane& plane, const Pick& pick) {
  InsertedBlocks blocks(dxf);
  int index = 0;
  const bool found = walk_until(dxf.m_EntityList, [&](ACAD_ENTITY& entity) {
    ++index;
    if (entity.GetType() != ACAD_TYPE_INSERT) return picks_entity(entity, plane, pick);
    const auto& insert = static_cast<ACAD_INSERT&>(entity);
    const ACAD_BLOCK* const block = blocks(insert);
    return block && picks_block(*block, insert, plane, pick);
  });
  return found ? index : 0;
}

}  // namespace

int DXF::HitTest(const CFRegion& region, int mode, float a, float b) {
  return unless_out_of_memory([&] { return first_picked(*this, Plane(a, b), Pick(region, mode)); }, 0);
}

int DXF::HitTest(const CFRect& rect, int mode, float a, float b) {
  return unless_out_of_memory([&] { return HitTest(CFRegion(rect), mode, a, b); }, 0);
}
