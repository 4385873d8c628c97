// Primitives of the composer.

#include "figure.h"

using manual::Side;

FIGURE(lines) {
  //[
  const float x[] = {2700, 3300, 3900, 4500};
  const float y[] = {0, 900, 0, 900};
  sgt.Draw_Point(0, 450);
  sgt.Draw_Line(600, 0, 2000, 900);
  sgt.Draw_Lines(4, x, y);
  //]
  figure.point(0, 450, "x, y", Side::Below);
  figure.point(600, 0, "x1, y1", Side::Below);
  figure.point(2000, 900, "x2, y2", Side::Above);
  const char* const names[] = {"x[0], y[0]", "x[1], y[1]", "x[2], y[2]", "x[3], y[3]"};
  for (int i = 0; i < 4; ++i) figure.point(x[i], y[i], names[i], i % 2 ? Side::Above : Side::Below);
}

FIGURE(circle_arc) {
  //[
  sgt.Draw_Circle(0, 0, 600);
  sgt.Draw_Arc(2600, -300, 900, 30, 135);
  //]
  figure.point(0, 0, "x, y", Side::Below);
  figure.length(0, 0, 600, 0, "r", 0);
  figure.point(2600, -300, "x, y", Side::Below);
  figure.angle(2600, -300, 10, 0, 30, "a1");
  figure.angle(2600, -300, 6, 0, 135, "a2");
  figure.length(2600, -300, 2600 - 308, 546, "r", 0);
}

FIGURE(wide_line) {
  //[
  sgt.Draw_Pline(0, 0, 3000, 0, 150, 450);
  //]
  figure.point(0, 0, "");
  figure.leader(0, 0, 3, -6, "x1, y1");
  figure.point(3000, 0, "");
  figure.leader(3000, 0, -3, -7, "x2, y2");
  figure.length(0, -75, 0, 75, "w1", 5);
  figure.length(3000, -225, 3000, 225, "w2", -5);
}

FIGURE(polyline) {
  //[
  float x[] = {0, 1500, 3000, 3000};
  float y[] = {0, 0, 0, 1200};
  float w1[] = {50, 50, 200, 50};
  float w2[] = {50, 200, 50, 50};
  const float bulge[] = {0, 1, 0, 0};
  sgt.Draw_Pline(4, x, y, bulge, 0, w1, w2);
  //]
  figure.point(0, 0, "x[0], y[0]", Side::Below);
  figure.point(1500, 0, "x[1], y[1]", Side::BelowLeft);
  figure.point(3000, 0, "");
  figure.leader(3000, 0, 6, 2, "x[2], y[2]");
  figure.point(3000, 1200, "x[3], y[3]", Side::Right);
  figure.note(2250, -850, "bulge[1] = 1", Side::Below);
  figure.leader(1560, -260, -6, -5, "w1[1]");
  figure.leader(2960, -200, 7, -6, "w2[1]");
  figure.line(3000, 1200, 0, 0, true);
  figure.note(1300, 640, "closed = 1", Side::AboveLeft);
}

FIGURE(wide_arc) {
  //[
  sgt.Draw_PArc(0, 0, 900, 20, 160, 100, 300);
  //]
  figure.point(0, 0, "cx, cy", Side::Below);
  figure.angle(0, 0, 9, 0, 20, "a1");
  figure.angle(0, 0, 5, 0, 160, "a2");
  figure.length(0, 0, -308, 846, "r", 0);
  figure.leader(846, 308, 8, 2, "w1");
  figure.leader(-846, 308, -8, 2, "w2");
}

FIGURE(solid_face) {
  //[
  sgt.Draw_Solid(0, 0, 1500, 0, 0, 900, 1500, 900);
  sgt.Draw_3DFace(2600, 0, 4100, 0, 4100, 900, 2600, 900);
  //]
  for (const float x : {0.0F, 2600.0F}) {
    figure.point(x, 0, "x1, y1", Side::Below);
    figure.point(x + 1500, 0, "x2, y2", Side::Below);
  }
  figure.point(0, 900, "x3, y3", Side::Above);
  figure.point(1500, 900, "x4, y4", Side::Above);
  figure.point(4100, 900, "x3, y3", Side::Above);
  figure.point(2600, 900, "x4, y4", Side::Above);
}

FIGURE(text) {
  //[
  sgt.SetCurStyle("HZ");
  sgt.Draw_Text(0, 0, 350, 0, qv::to_gbk("KL-1 框架梁").c_str());
  sgt.Draw_Text(3600, 0, 350, 40, "level or upright");
  sgt.Draw_Text(9000, 0, 350, 140, "never upside down");
  //]
  figure.point(0, 0, "x, y", Side::Below);
  figure.length(0, 0, 0, 350, "h", 3);
  figure.point(3600, 0, "x, y", Side::Below);
  figure.angle(3600, 0, 12, 0, 40, "angle");
  figure.point(9000, 0, "x, y", Side::Below);
  figure.angle(9000, 0, 6, 0, 140, "angle");
}

FIGURE(pen) {
  //[
  sgt.MoveTo(0, 0);
  sgt.LineTo(1200, 0);
  sgt.LineTo_Relative(600, 800);
  sgt.MoveTo_Relative(600, 0);
  sgt.PlineTo(3600, 800, 100, 100);
  sgt.PlineTo_Relative(600, -800, 100, 0);
  //]
  figure.point(0, 0, "MoveTo", Side::Below);
  figure.point(1200, 0, "LineTo", Side::Below);
  figure.point(1800, 800, "LineTo_Relative", Side::Above);
  figure.point(2400, 800, "", Side::Below);
  figure.note(2400, 780, "MoveTo_Relative", Side::Below);
  figure.point(3600, 800, "");
  figure.note(3700, 850, "PlineTo", Side::AboveRight);
  figure.point(4200, 0, "PlineTo_Relative", Side::Below);
  figure.line(1800, 800, 2400, 800, true);
}

FIGURE(rectangle_about_centre) {
  //[
  sgt.Draw_Rect_C(1800, 900, 0, 0, 20);
  sgt.Draw_Rect_C(1800, 900, 3000, 0, 20, 50);
  //]
  figure.point(0, 0, "cx, cy", Side::Below);
  figure.angle(0, 0, 8, 0, 20, "angle");
  figure.length(-692, -731, 1000, -115, "w", -5);
  figure.length(-1000, 115, -692, -731, "h", -5);
  figure.point(3000, 0, "cx, cy", Side::Below);
  figure.angle(3000, 0, 8, 0, -20, "angle");
  figure.leader(3600, 270, 6, 9, "width");
}

FIGURE(rectangle_by_corner) {
  //[
  sgt.Draw_Rect_LB(1800, 900, 0, 0, 0);
  sgt.Draw_Rect_LB(1800, 900, 2800, 0, 0, 50);
  sgt.Draw_Rect_LB(1800, 900, 5400, 500, 20, 50);
  //]
  figure.point(0, 0, "x, y", Side::Below);
  figure.length(0, 900, 1800, 900, "w", 4);
  figure.length(1800, 0, 1800, 900, "h", -4);
  figure.point(2800, 0, "x, y", Side::Below);
  figure.leader(3700, 900, 4, 5, "width");
  figure.point(5400, 500, "x, y", Side::Left);
  figure.angle(5400, 500, 16, 0, -20, "angle");
}

FIGURE(rectangle_sides) {
  //[
  for (int side = 0; side < 4; ++side) {
    for (int i = 0; i < 4; ++i) sgt.m_bRectSide[i] = i != side;
    sgt.Draw_Rect_LB(900, 600, 1500.0F * static_cast<float>(side), 0, 0);
  }
  //]
  const char* const names[] = {"[0] = 0", "[1] = 0", "[2] = 0", "[3] = 0"};
  for (int side = 0; side < 4; ++side)
    figure.note(450 + 1500.0F * static_cast<float>(side), 400, names[side], Side::Below);
}

FIGURE(text_along_line) {
  //[
  sgt.Draw_Line(0, 0, 4000, 1000);
  sgt.Draw_Text_Along_Line(0, 0, 4000, 1000, 4, 1, "along 1/4", 175, 75);
  sgt.Draw_Text_Vertical_Line(0, 0, 4000, 1000, 4, 3, "across 3/4", 175, 75);
  //]
  figure.point(0, 0, "x1, y1", Side::Below);
  figure.point(4000, 1000, "x2, y2", Side::Below);
  figure.point(1000, 250, "i = 1", Side::Below);
  figure.point(2000, 500, "2", Side::Below);
  figure.point(3000, 750, "3", Side::Below);
  figure.leader(980, 290, -7, 8, "off");
}

FIGURE(text_along_arc) {
  //[
  sgt.Draw_Arc(0, 0, 1500, 30, 150);
  sgt.Draw_Text_Along_Arc(0, 0, 1500, 0.5236F, 2.618F, 4, 1, "inside", 175, 75);
  sgt.Draw_Text_Along_Arc(0, 0, 1500, 0.5236F, 2.618F, 4, 3, "off < 0", 175, -250);
  //]
  figure.point(0, 0, "cx, cy", Side::Below);
  figure.angle(0, 0, 7, 0, 30, "a1");
  figure.angle(0, 0, 11, 0, 150, "a2");
  figure.point(750, 1299, "i = 1", Side::AboveRight);
  figure.point(0, 1500, "2", Side::Above);
  figure.point(-750, 1299, "3", Side::Below);
  figure.length(0, 0, 1299, 750, "r", 0);
}

FIGURE(band) {
  //[
  sgt.Set_Para_Draw_Out_2PraLine(1500, -300, 1900, 1500, 400);
  sgt.Draw_Line_Out_2PraLine(0, 0, 3500, 0);
  sgt.Draw_PLine_Out_2PraLine(0, 600, 3500, 600, 50);
  sgt.Draw_XianGangJin_Out_2PraLine(0, 1200, 3500, 1200);
  //]
  const float dx = 195;
  const float dy = 43;
  figure.line(1500, -300, 1900, 1500, true);
  figure.line(1500 - dx, -300 + dy, 1900 - dx, 1500 + dy);
  figure.line(1500 + dx, -300 - dy, 1900 + dx, 1500 - dy);
  figure.point(1500, -300, "a, b", Side::Below);
  figure.point(1900, 1500, "c, d", Side::Above);
  figure.length(1900 - dx, 1500 + dy, 1900 + dx, 1500 - dy, "e", 5);
  figure.point(0, 0, "x1, y1", Side::Below);
  figure.point(3500, 0, "x2, y2", Side::Below);
  figure.note(3500, 600, "width", Side::Right);
  figure.note(3500, 1200, "m_fGJLineWidth", Side::Right);
}

FIGURE(turned_and_shifted) {
  //[
  sgt.Draw_Line_Rotate_Shift(0.5236F, 500, 300, 0, 0, 2000, 0);
  sgt.Draw_PLine_Rotate_Shift(0.5236F, 2900, 300, 0, 0, 2000, 0, 60);
  //]
  figure.point(0, 0, "0, 0", Side::Below);
  figure.line(0, 0, 2000, 0, true);
  figure.note(2000, 0, "x1, y1 - x2, y2", Side::Right);
  figure.point(500, 300, "dx, dy", Side::Below);
  figure.line(500, 300, 1500, 300, true);
  figure.angle(500, 300, 14, 0, 30, "angle");
  figure.point(2900, 300, "dx, dy", Side::Below);
  figure.leader(3900, 877, 5, -5, "width");
}

FIGURE(placement) {
  //[
  const auto footing = [&] {
    sgt.Draw_Rect_LB(1200, 600, 0, 0, 0);
    sgt.Draw_Text(100, 200, 175, 0, "J-1");
  };
  footing();
  sgt.m_fRotAngle = 30;
  sgt.m_fLenFactor = 1.5F;
  sgt.m_fShiftX = 3000;
  sgt.m_fShiftY = 0;
  footing();
  float x = 1200, y = 600;
  sgt.Convert_XY(x, y);
  //]
  figure.axes(0, 0, 0, 30);
  figure.axes(3000, 0, 30, 44);
  figure.length(0, 0, 3000, 0, "m_fShiftX", -5);
  figure.angle(3000, 0, 20, 0, 30, "m_fRotAngle");
  figure.line(3000, 0, 4600, 0, true);
  figure.point(x, y, "Convert_XY(1200, 600)", Side::Right);
  figure.point(1200, 600, "1200, 600", Side::AboveRight);
}
