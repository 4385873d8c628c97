#pragma once

/// What a pick takes of the entities in a plane.

#include "qvtools/dxf/view/internal/outline.h"
#include "qvtools/geometry/values/region.h"

namespace qv::detail {

/// What a pick looks for: a region with its box, and whether crossing its border counts.
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

/// Whether the pick takes a record of one of the nine kinds.
template <class Record>
bool picks(const Record& record, const Plane& plane, const Pick& pick);
/// The same for any entity; a program's own kind answers itself.
bool picks_entity(ACAD_ENTITY& entity, const Plane& plane, const Pick& pick);
/// A block is taken when one of its entities is hit where crossing counts, else when all of them lie inside. Inserts in
/// it are passed over.
bool picks_block(const ACAD_BLOCK& block, const ACAD_INSERT& insert, const Plane& plane, const Pick& pick);

}  // namespace qv::detail
