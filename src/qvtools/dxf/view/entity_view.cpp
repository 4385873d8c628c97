#include "qvtools/dxf/view/internal/draw.h"
#include "qvtools/dxf/view/internal/pick.h"
#include "qvtools/services/internal/out_of_memory.h"

using namespace qv::detail;

// The operations by which a single entity is measured, drawn and picked.

#define QV_KIND(KEYWORD, member)                                                             \
  CFRect ACAD_##KEYWORD::GetFRect() {                                                        \
    return extent(*this, Plane());                                                           \
  }                                                                                          \
  CFRect ACAD_##KEYWORD::GetFRect3D(float a, float b) {                                      \
    return extent(*this, Plane(a, b));                                                       \
  }                                                                                          \
  void ACAD_##KEYWORD::Draw(CDC* dc, CFCoor* coor, float dx, float dy) {                     \
    unless_out_of_memory([&] {                                                               \
      DrawingContext to = drawing_context(dc, *coor);                                        \
      draw(*this, Plane().moved({dx, dy, 0}), to);                                           \
    });                                                                                      \
  }                                                                                          \
  void ACAD_##KEYWORD::Draw3D(CDC* dc, CFCoor* coor, float a, float b) {                     \
    unless_out_of_memory([&] {                                                               \
      DrawingContext to = drawing_context(dc, *coor);                                        \
      draw(*this, Plane(a, b), to);                                                          \
    });                                                                                      \
  }                                                                                          \
  int ACAD_##KEYWORD::HitTest(const CFRegion& region, int mode, float a, float b) {          \
    const Pick pick(region, mode);                                                           \
    return unless_out_of_memory([&] { return picks(*this, Plane(a, b), pick) ? 1 : 0; }, 0); \
  }                                                                                          \
  int ACAD_##KEYWORD::HitTest(const CFRect& rect, int mode, float a, float b) {              \
    return unless_out_of_memory([&] { return HitTest(CFRegion(rect), mode, a, b); }, 0);     \
  }
QV_FOR_EACH_ENTITY_KIND(QV_KIND)
#undef QV_KIND
