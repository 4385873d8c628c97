#pragma once

/// Points of drawings that a pointer catches: what is asked, and what is found.

#include <cstdint>
#include <optional>

#include "qvtools/dxf/model/entity.h"

namespace qv {

/// The kinds of points, in the order in which they win where several lie at one place.
enum class CatchKind : std::uint8_t {
  End,            ///< of a line or an arc, a vertex, a corner
  Intersection,   ///< of lines, arcs, circles and edges
  Middle,         ///< of a line or an arc
  Center,         ///< of an arc or a circle, near it or with the pointer on its curve; of a polyline's arc the latter
  Quadrant,       ///< of an arc or a circle: right, top, left, bottom
  Perpendicular,  ///< the foot of the point that one comes from
  Tangent,        ///< where a line from that point touches an arc or a circle
  Node,           ///< a point
  Insertion,      ///< of a text or a block
  Nearest,        ///< anywhere on a curve
};
inline constexpr int kCatchKinds = 10;  ///< how many kinds there are

/// A set of kinds is the sum of their bits.
constexpr unsigned CatchBit(CatchKind kind) {
  return 1U << static_cast<unsigned>(kind);
}
/// All kinds.
inline constexpr unsigned kAllCatches = (1U << kCatchKinds) - 1;

/// A point in the plane of a view, exact where the drawing is.
struct PlanePoint {
  double x = 0;
  double y = 0;
  friend bool operator==(const PlanePoint&, const PlanePoint&) = default;
};

/// What is looked for.
struct CatchQuery {
  PlanePoint at;                   ///< the pointer, in the plane of the view
  double reach = 0;                ///< how far off it is looked, in drawing units
  unsigned kinds = kAllCatches;    ///< `CatchBit`s
  std::optional<PlanePoint> from;  ///< what perpendiculars and tangents come from; without it there are none
};

/// A point that was found.
struct CaughtPoint {
  PlanePoint at;                        ///< where it is
  CatchKind kind = CatchKind::Nearest;  ///< what it is
  double radius = 0;                    ///< of the arc or circle that a centre belongs to
  ACAD_ENTITY* entity =
      nullptr;  ///< whose point it is, the first of two that cross; an insert for what its block shows
};

}  // namespace qv
