#include <cmath>

#include "qvtools/dxf/model/document.h"
#include "qvtools/dxf/view/internal/outline.h"
#include "qvtools/geometry/numerics/numeric.h"

namespace {

// Calls f with every defining point of a record.

void for_each_point(ACAD_POINT& r, const auto& f) {
  f(r.m_Point);
}
void for_each_point(ACAD_LINE& r, const auto& f) {
  f(r.m_Start);
  f(r.m_End);
}
void for_each_point(ACAD_TEXT& r, const auto& f) {
  f(r.m_Insert);
  f(r.m_Align);
}
void for_each_point(ACAD_CIRCLE& r, const auto& f) {
  f(r.m_Center);
}
void for_each_point(ACAD_ARC& r, const auto& f) {
  f(r.m_Center);
}
void for_each_point(ACAD_POLYLINE& r, const auto& f) {
  f(r.m_First);
  f(r.m_Second);
  for (ACAD_VERTEX& vertex : r.m_Vertices) f(vertex.m_Point);
}
void for_each_point(ACAD_SOLID& r, const auto& f) {
  for (qv::Point3& corner : r.m_Corner) f(corner);
}
void for_each_point(ACAD_3DFACE& r, const auto& f) {
  for (qv::Point3& corner : r.m_Corner) f(corner);
}
void for_each_point(ACAD_INSERT& r, const auto& f) {
  f(r.m_Insert);
}

/// Turns an angle in degrees as a matrix that turns about z does, into [0, 360) when it was within a turn of it.
void turn_angle(float& angle, const float* matrix) {
  if (!matrix || std::fabs(matrix[8] - 1) >= 0.00001F) return;
  const double t = get_line_angle(0, 0, matrix[0], matrix[1]) * 180 / 3.1415927;
  double turned = angle - t;
  if (turned >= 360)
    turned -= 360;
  else if (turned < 0)
    turned += 360;
  angle = static_cast<float>(turned);
}

bool mirrors(const float* m) {
  return m && m[0] * m[4] - m[1] * m[3] < 0;
}

// What turns or changes its sign beside the points.

void transfer_rest(auto&, const float*) {}
void transfer_rest(ACAD_TEXT& r, const float* matrix) {
  turn_angle(r.m_fRotation, matrix);
}
void transfer_rest(ACAD_INSERT& r, const float* matrix) {
  turn_angle(r.m_fRotation, matrix);
}
void transfer_rest(ACAD_ARC& r, const float* matrix) {
  turn_angle(r.m_fStartAngle, matrix);
  turn_angle(r.m_fEndAngle, matrix);
}
void transfer_rest(ACAD_POLYLINE& r, const float* matrix) {
  if (!mirrors(matrix)) return;
  for (ACAD_VERTEX& vertex : r.m_Vertices) vertex.m_fBulge = -vertex.m_fBulge;
}

template <class Record>
int transfer(Record& r, const float* matrix, const float* offset) {
  for_each_point(r, [&](qv::Point3& p) { ACAD_ENTITY::TransOne(p.x, p.y, p.z, matrix, offset); });
  transfer_rest(r, matrix);
  return 1;
}

/// Draws a copy whose points are projected, moved by a shift in space before.
template <class Record>
void draw_projected(const Record& record, CDC* dc, CFCoor* coor, const qv::detail::Plane& plane) {
  Record copy;
  copy = record;
  for_each_point(copy, [&](qv::Point3& p) {
    const CFPoint projected = plane(p);
    p = {projected.x, projected.y, 0};
  });
  copy.Draw(dc, coor, 0, 0);
}

}  // namespace

#define QV_ENTITY_MOVE(Class)                                     \
  int Class::Transfer(const float* matrix, const float* offset) { \
    return transfer(*this, matrix, offset);                       \
  }                                                               \
  void Class::Draw3D(CDC* dc, CFCoor* coor, float a, float b) {   \
    draw_projected(*this, dc, coor, qv::detail::Plane(a, b));     \
  }

QV_ENTITY_MOVE(ACAD_POINT)
QV_ENTITY_MOVE(ACAD_LINE)
QV_ENTITY_MOVE(ACAD_TEXT)
QV_ENTITY_MOVE(ACAD_CIRCLE)
QV_ENTITY_MOVE(ACAD_ARC)
QV_ENTITY_MOVE(ACAD_POLYLINE)
QV_ENTITY_MOVE(ACAD_SOLID)
QV_ENTITY_MOVE(ACAD_3DFACE)
QV_ENTITY_MOVE(ACAD_INSERT)
#undef QV_ENTITY_MOVE

namespace {

void draw_entity(ACAD_ENTITY& entity, CDC* dc, CFCoor* coor, const qv::detail::Plane& plane) {
  qv::visit_entity(entity, [&](const auto& record) { draw_projected(record, dc, coor, plane); });
}

void draw_block(const ACAD_BLOCK& block, const ACAD_INSERT& insert, CDC* dc, CFCoor* coor,
                const qv::detail::Plane& plane) {
  const qv::detail::Plane placed = plane.moved(qv::detail::displacement(block, insert));
  for (POSITION at = block.m_EntityList.GetHeadPosition(); at;)
    draw_entity(*static_cast<ACAD_ENTITY*>(block.m_EntityList.GetNext(at)), dc, coor, placed);
}

}  // namespace

void ACAD_BLOCK::Draw3D(CDC* dc, CFCoor* coor, float a, float b, ACAD_INSERT* insert) {
  draw_block(*this, *insert, dc, coor, qv::detail::Plane(a, b));
}

void DXF::Draw3D(CDC* dc, CFCoor* coor, float a, float b) {
  m_pCoor = coor;
  if (!m_nMemFlag) return;
  const qv::detail::Plane plane(a, b);
  dc->SetBkMode(qv::BackgroundMode::Transparent);
  for (POSITION at = m_EntityList.GetHeadPosition(); at;) {
    auto& entity = *static_cast<ACAD_ENTITY*>(m_EntityList.GetNext(at));
    if (entity.GetType() != ACAD_TYPE_INSERT) {
      draw_entity(entity, dc, coor, plane);
    } else {
      const auto& insert = static_cast<ACAD_INSERT&>(entity);
      if (const ACAD_BLOCK* block = GetBlock(&insert)) draw_block(*block, insert, dc, coor, plane);
    }
  }
}
