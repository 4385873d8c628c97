#include "qvtools/dxf/model/entity.h"

#include "qvtools/geometry/numerics/numeric.h"

ACAD_ENTITY::~ACAD_ENTITY() = default;

COLORREF ACAD_ENTITY::GetColor(int colour) {
  static constexpr COLORREF kFixed[16] = {0x000000, 0x0000FF, 0x00FFFF, 0x00FF00, 0xFFFF00, 0xFF0000,
                                          0xFF00FF, 0xFFFFFF, 0x808080, 0x0000C0, 0x00C0C0, 0x00C000,
                                          0xC0C000, 0xC00000, 0xC000C0, 0xC0C0C0};
  if (colour >= 0 && colour < 16) return kFixed[colour];
  int r = 0;
  int g = 0;
  int b = 0;
  Get_RGB(colour, r, g, b);
  return qv::rgb(static_cast<unsigned>(r), static_cast<unsigned>(g), static_cast<unsigned>(b));
}

int ACAD_ENTITY::TransOne(float& x, float& y, float& z, const float* matrix, const float* offset) {
  if (matrix) {
    const double p[3] = {x, y, z};
    const auto row = [&](int i) {
      return static_cast<float>(matrix[3 * i] * p[0] + matrix[3 * i + 1] * p[1] + matrix[3 * i + 2] * p[2]);
    };
    x = row(0);
    y = row(1);
    z = row(2);
  }
  if (offset) {
    x += offset[0];
    y += offset[1];
    z += offset[2];
  }
  return 1;
}

void TouYing3Dto2D(float x, float y, float z, float a, float b, float& u, float& v) {
  const double c = std::cos(static_cast<double>(a));
  const double s = std::sin(static_cast<double>(a));
  u = static_cast<float>(x * c + y * s);
  v = static_cast<float>((y * c - x * s) * std::sin(static_cast<double>(b)) + z * std::cos(static_cast<double>(b)));
}

#define QV_KIND(KEYWORD, member)               \
  ACAD_Entity_Type ACAD_##KEYWORD::GetType() { \
    return ACAD_TYPE_##KEYWORD;                \
  }                                            \
  void ACAD_##KEYWORD::Ini() {                 \
    static const ACAD_##KEYWORD kDefault;      \
    *this = kDefault;                          \
  }
QV_FOR_EACH_ENTITY_KIND(QV_KIND)
#undef QV_KIND

ACAD_POLYLINE& ACAD_POLYLINE::operator=(const ACAD_POLYLINE& other) {
  Copy(&other);
  return *this;
}

void ACAD_POLYLINE::Copy(const ACAD_POLYLINE* other) {
  if (other == this) return;
  std::memcpy(m_szLayer, other->m_szLayer, sizeof m_szLayer);
  std::memcpy(m_szLType, other->m_szLType, sizeof m_szLType);
  m_nColor = other->m_nColor;
  m_First = other->m_First;
  m_Second = other->m_Second;
  m_fStartWidth = other->m_fStartWidth;
  m_fEndWidth = other->m_fEndWidth;
  m_nFlags = other->m_nFlags;
  m_Vertices.Copy(other->m_Vertices);
}
