// Reinforcement, its labels, and the beam section.

#include "figure.h"

using manual::Side;

FIGURE(bars) {
  //[
  const float x[] = {0, 0, 700, 3000, 3700, 3700};
  const float y[] = {-400, 0, 0, 700, 700, 300};
  sgt.Draw_XianGangJin(0, 1200, 3700, 1200);
  sgt.Draw_XianGangJin(6, x, y);
  //]
  figure.point(0, 1200, "x1, y1", Side::Above);
  figure.point(3700, 1200, "x2, y2", Side::Above);
  const char* const names[] = {"0", "1", "2", "3", "4", "5"};
  for (int i = 0; i < 6; ++i)
    figure.point(x[i], y[i], names[i], i < 2 ? Side::Left : i < 4 ? Side::Below : Side::Right);
}

FIGURE(rings) {
  //[
  sgt.Draw_DoNut(0, 0, 300, 450);
  sgt.Draw_DoNut_RW(1600, 0, 375, 150);
  sgt.Draw_YuanDian(3000, 0, 300);
  sgt.Draw_DoNutGangJin(4400, 0, 300, 450);
  //]
  for (const float x : {0.0F, 1600.0F, 4400.0F}) figure.point(x, 0, "x, y", Side::Below);
  figure.length(0, 0, 300, 0, "r1", 0);
  figure.length(0, 0, 0, 450, "r2", 10);
  figure.length(1600, 0, 1600, 375, "r", 9);
  figure.length(1600, 300, 1600, 450, "w", -10);
  figure.leader(3000, 300, 3, 4, "r");
  figure.leader(3000, 0, 0, -9, "x, y");
}

FIGURE(bar_dots) {
  //[
  sgt.Draw_Rect_LB(600, 300, 0, 0, 0);
  sgt.Draw_YuanDianGangJin(0, 0, 1, 1);
  sgt.Draw_YuanDianGangJin(600, 0, -1, 1);
  sgt.Draw_YuanDianGangJin(300, 300, 0, -1);
  sgt.Draw_YuanDianGangJin(600, 300, 0, 0);
  //]
  figure.zoom(4);
  figure.point(0, 0, "x, y (1, 1)", Side::Below);
  figure.point(600, 0, "x, y (-1, 1)", Side::Below);
  figure.point(300, 300, "x, y (0, -1)", Side::Above);
  figure.point(600, 300, "");
  figure.leader(600, 300, 5, 2, "x, y (0, 0)");
}

FIGURE(stirrups) {
  //[
  sgt.Draw_RectGangJin_C(600, 1000, 300, 500, 0, 1);
  sgt.Draw_RectGangJin_LB(600, 1000, 1400, 0, 0);
  sgt.Draw_RectGangJin_LB(600, 1000, 2700, 300, 20);
  //]
  figure.point(300, 500, "cx, cy", Side::Below);
  figure.length(0, 1000, 600, 1000, "w", 4);
  figure.length(0, 0, 0, 1000, "h", 4);
  figure.point(1400, 0, "x, y", Side::Left);
  figure.length(1400, 1000, 2000, 1000, "w", 4);
  figure.point(2700, 300, "x, y", Side::Left);
  figure.angle(2700, 300, 15, 0, -20, "angle");
}

FIGURE(hooked_stirrups) {
  //[
  sgt.Draw_RectGangJin_C_CutL(600, 1000, 300, 500, 0, 200, 200, 1);
  sgt.Draw_RectGangJin_LB_CutL(600, 1000, 1600, 0, 0, 250, 150);
  //]
  figure.zoom(1.5F);
  figure.point(300, 500, "cx, cy", Side::Below);
  figure.length(0, 0, 600, 0, "w", -4);
  figure.length(600, 0, 600, 1000, "h", -4);
  figure.length(0, 1000, 200, 1000, "a", 5);
  figure.length(0, 800, 0, 1000, "b", 5);
  figure.point(1600, 0, "x, y", Side::Below);
  figure.length(1600, 1000, 1850, 1000, "a", 5);
  figure.length(1600, 850, 1600, 1000, "b", 5);
}

FIGURE(hooked_rectangles) {
  //[
  sgt.Draw_Rect_C_CutL(600, 1000, 300, 500, 0, 250, 150);
  sgt.Draw_Rect_C_CutL(600, 1000, 1500, 500, 0, 40, 250, 150);
  sgt.Draw_Rect_LB_CutL(600, 1000, 2400, 0, 0, 250, 150);
  sgt.Draw_Rect_LB_CutL(600, 1000, 3600, 0, 0, 40, 250, 150);
  //]
  for (const float x : {300.0F, 1500.0F}) figure.point(x, 500, "cx, cy", Side::Below);
  for (const float x : {2400.0F, 3600.0F}) figure.point(x, 0, "x, y", Side::Below);
  figure.length(0, 1000, 250, 1000, "a", 5);
  figure.length(0, 850, 0, 1000, "b", 5);
  figure.length(0, 0, 600, 0, "w", -4);
  figure.length(600, 0, 600, 1000, "h", -4);
  figure.leader(1800, 300, 4, -3, "width");
}

FIGURE(tie) {
  //[
  sgt.Draw_LaJieJin(0, 0, 1200, 0, 0);
  sgt.Draw_LaJieJin(0, -500, 1200, -500, 1);
  sgt.Draw_YuanDianGangJin(0, 0, 0, 0);
  sgt.Draw_YuanDianGangJin(1200, 0, 0, 0);
  sgt.Draw_YuanDianGangJin(0, -500, 0, 0);
  sgt.Draw_YuanDianGangJin(1200, -500, 0, 0);
  //]
  figure.zoom(2);
  figure.point(0, 0, "");
  figure.leader(0, 0, -4, 5, "x1, y1");
  figure.point(1200, 0, "");
  figure.leader(1200, 0, 4, 5, "x2, y2");
  figure.note(600, 0, "side = 0", Side::Below);
  figure.note(600, -500, "side = 1", Side::Below);
}

FIGURE(bar_texts) {
  //[
  char text[64];
  for (int grade = 1; grade <= 3; ++grade) {
    const float y = -400.0F * static_cast<float>(grade);
    CBase_SGT::FormString_GJ_nqd(text, 4, grade, 25);
    sgt.Draw_Text(0, y, 175, 0, text);
    CBase_SGT::FormString_GJ_qdas(text, grade, 8, 100);
    sgt.Draw_Text(1500, y, 175, 0, text);
  }
  CBase_SGT::FormString_GJX_nqd(text, 6, 15);
  sgt.Draw_Text(3500, -400, 175, 0, text);
  //]
  figure.note(0, -50, "n, q, d", Side::Right);
  figure.note(1500, -50, "q, d, s", Side::Right);
  figure.note(3500, -50, "n, d", Side::Right);
  const char* const grades[] = {"grade = 1", "grade = 2", "grade = 3"};
  for (int i = 0; i < 3; ++i) figure.note(-150, -310 - 400.0F * static_cast<float>(i), grades[i], Side::Left);
}

FIGURE(bar_label) {
  //[
  char text[64];
  CBase_SGT::FormString_GJ_nqd(text, 4, 3, 25);
  sgt.Draw_XianGangJin(0, 0, 2000, 0);
  sgt.Draw_GangJin_BiaoZhu(1000, 0, 1300, 500, 900, 2, text);
  sgt.Draw_Line_BiaoZhu(300, 0, 0, 500);
  //]
  figure.point(1000, 0, "x, y", Side::Below);
  figure.point(1300, 500, "x2, y2", Side::Left);
  figure.length(1300, 500, 2200, 500, "len", -3);
  figure.leader(1700, 690, 0, 4, "text");
  figure.leader(2450, 600, 5, 3, "number");
  figure.point(300, 0, "x1, y1", Side::Below);
  figure.point(0, 500, "x2, y2", Side::Left);
}

FIGURE(row_label) {
  //[
  char text[64];
  CBase_SGT::FormString_GJ_nqd(text, 3, 3, 22);
  const float xs[] = {0, 400, 800};
  const float ys[] = {0, 0, 0};
  for (const float x : xs) sgt.Draw_YuanDianGangJin(x, 0, 0, 0);
  sgt.Draw_GangJin_BiaoZhu(1100, 500, 3, xs, ys, 900, 1, 0, 1, text);
  //]
  figure.point(1100, 500, "x, y", Side::Below);
  figure.length(1100, 500, 2000, 500, "len", -7);
  for (const float x : xs) figure.point(x, 0, x == 0 ? "xs[0], ys[0]" : "", Side::Below);
  figure.leader(1400, 690, 0, 4, "text");
  figure.leader(2250, 600, 5, 3, "number");
  figure.leader(35, 35, -6, 3, "flag = 1");
}

FIGURE(row_label_left) {
  //[
  char text[64];
  CBase_SGT::FormString_GJ_nqd(text, 3, 3, 22);
  const float xs[] = {0, 400, 800};
  const float ys[] = {0, 0, 0};
  for (const float x : xs) sgt.Draw_YuanDianGangJin(x, 0, 0, 0);
  sgt.Draw_GangJin_BiaoZhu(-300, 500, 3, xs, ys, 900, 1, 1, 0, text);
  //]
  figure.point(-300, 500, "x, y", Side::Below);
  figure.note(-300, 100, "side = 1, flag = 0", Side::Left);
}

FIGURE(bar_number) {
  //[
  sgt.Draw_GJH(0, 0, 175, 7);
  sgt.Draw_Line(1000, -300, 4000, 300);
  sgt.Draw_GJH_And_Text_Along_Line(1000, -300, 4000, 300, 2, 1, 7, "8@200", 175, 250);
  //]
  figure.leader(0, 0, 0, -6, "x, y");
  figure.leader(60, 60, 5, 4, "h, number");
  figure.point(1000, -300, "x1, y1", Side::Below);
  figure.point(4000, 300, "x2, y2", Side::Below);
  figure.point(2500, 0, "i/n = 1/2", Side::Below);
  figure.leader(2480, 130, -10, 4, "off");
}

FIGURE(beam_section) {
  //[
  const CBase_SGT::CLiangZongJin bars[] = {{4, 3, 25, 1}, {2, 3, 22, -1}, {2, 3, 20, -2}, {4, 2, 12, 0}};
  const CBase_SGT::CLiangGuJin stirrup = {1, 8, 100, 4};
  sgt.Draw_Liang_Section(0, 0, 1500, 3000, 100, 4, bars, stirrup, 1);
  //]
  figure.point(0, 0, "x, y", Side::Below);
  figure.length(0, 3000, 1500, 3000, "w", 4);
  figure.length(0, 0, 0, 3000, "h", 4);
  figure.length(0, 1700, 100, 1700, "cover", 0);
  figure.note(750, 420, "1", Side::Above);
  figure.note(750, 2750, "-1", Side::Below);
  figure.note(750, 2450, "-2", Side::Below);
  figure.note(750, 1500, "0", Side::Above);
}
