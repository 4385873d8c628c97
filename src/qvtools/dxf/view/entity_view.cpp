#include "qvtools/dxf/model/internal/kinds.h"
#include "qvtools/dxf/view/internal/draw.h"
#include "qvtools/dxf/view/internal/pick.h"

using namespace qv::detail;

// The operations by which a single entity is measured, drawn and picked.

#define QV_KIND(Class, Type)                                               \
  CFRect Class::GetFRect() {                                               \
    return extent(*this, Plane());                                         \
  }                                                                        \
  CFRect Class::GetFRect3D(float a, float b) {                             \
    return extent(*this, Plane(a, b));                                     \
  }                                                                        \
  void Class::Draw(CDC* dc, CFCoor* coor, float dx, float dy) {            \
    DrawingContext to = drawing_context(dc, *coor);                        \
    draw(*this, Plane().moved({dx, dy, 0}), to);                           \
  }                                                                        \
  void Class::Draw3D(CDC* dc, CFCoor* coor, float a, float b) {            \
    DrawingContext to = drawing_context(dc, *coor);                        \
    draw(*this, Plane(a, b), to);                                          \
  }                                                                        \
  int Class::HitTest(const CFRegion& region, int mode, float a, float b) { \
    return picks(*this, Plane(a, b), Pick(region, mode)) ? 1 : 0;          \
  }                                                                        \
  int Class::HitTest(const CFRect& rect, int mode, float a, float b) {     \
    return HitTest(CFRegion(rect), mode, a, b);                            \
  }
QV_FOR_EACH_ENTITY_KIND(QV_KIND)
#undef QV_KIND
