#include <cmath>

#include "qvtools/dxf/model/entity.h"
#include "qvtools/dxf/model/internal/kinds.h"
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

}  // namespace

#define QV_KIND(Class, Type)                                      \
  int Class::Transfer(const float* matrix, const float* offset) { \
    return transfer(*this, matrix, offset);                       \
  }
QV_FOR_EACH_ENTITY_KIND(QV_KIND)
#undef QV_KIND
