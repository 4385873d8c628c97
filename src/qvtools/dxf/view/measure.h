#pragma once

/// Lengths and areas of entities, in plan and in drawing units.

#include "qvtools/dxf/model/entity.h"

namespace qv {

/// What is measured of an entity.
struct EntityMeasures {
  double length = 0;    ///< of its curve, its outline; 0 for a point, a text and an insert
  double area = 0;      ///< that it encloses, an open polyline with the line that would close it; 0 for a line
  bool closed = false;  ///< whether its curve ends where it begins
};

/// The measures of an entity. Arcs of polylines count as arcs; widths do not count.
QV_API EntityMeasures Measure(ACAD_ENTITY& entity);

}  // namespace qv
