// Marks on a drawing.

#include "figure.h"

using manual::Side;

FIGURE(elevation_mark) {
  //[
  sgt.Draw_BiaoGao(0, 0, 3.6F, 0);
  sgt.Draw_BiaoGao(2500, 0, 0, 1);
  //]
  figure.point(0, 0, "x, y", Side::Below);
  figure.point(2500, 0, "x, y", Side::Below);
  figure.note(100, 350, "value", Side::AboveRight);
  figure.length(0, 0, 2500, 0, "长度 2500", -8);
  figure.angle(0, 0, 6, 45, 135, "45");
}
