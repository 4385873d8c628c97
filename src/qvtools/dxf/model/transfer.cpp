#include <cmath>

#include "qvtools/dxf/model/internal/points.h"
#include "qvtools/geometry/numerics/numeric.h"

namespace {

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

int transfer(auto& r, const float* matrix, const float* offset) {
  const auto transfer_point = [&](qv::Point3& p) { ACAD_ENTITY::TransOne(p.x, p.y, p.z, matrix, offset); };
  qv::detail::for_each_point(r, transfer_point);
  if constexpr (requires { r.m_Align; }) transfer_point(r.m_Align);
  if constexpr (requires { r.m_fRotation; }) turn_angle(r.m_fRotation, matrix);
  if constexpr (requires { r.m_fStartAngle; }) {
    turn_angle(r.m_fStartAngle, matrix);
    turn_angle(r.m_fEndAngle, matrix);
  }
  if constexpr (requires { r.m_Vertices; }) {
    transfer_point(r.m_First);
    transfer_point(r.m_Second);
    if (mirrors(matrix))
      for (ACAD_VERTEX& vertex : r.m_Vertices) vertex.m_fBulge = -vertex.m_fBulge;
  }
  return 1;
}

}  // namespace

#define QV_KIND(KEYWORD, member)                                           \
  int ACAD_##KEYWORD::Transfer(const float* matrix, const float* offset) { \
    return transfer(*this, matrix, offset);                                \
  }
QV_FOR_EACH_ENTITY_KIND(QV_KIND)
#undef QV_KIND
