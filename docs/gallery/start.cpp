// The picture of the start page.

#include "figure.h"

FIGURE(ten_lines) {
  sgt.Draw_Rect_LB(6000, 600, 0, 0, 0);
  sgt.Draw_Pline(40, 40, 5960, 40, 30, 30);
  sgt.Draw_Text(2000, 700, sgt.m_fZiGao[1], 0, "KL-1 300x600");
}
