// Dimensions and marks of the composer.

#include "figure.h"

using manual::Side;

FIGURE(dimension_polar) {
  //[
  sgt.m_fDimOffset = 500;
  sgt.Draw_Dim_Polar(0, 0, 3000, 0, 1, 1);
  sgt.Draw_Dim_Polar(0, -1800, 3000, "L/2", 0, 0, 0);
  //]
  figure.point(0, 0, "x, y", Side::AboveLeft);
  figure.length(0, 0, 3000, 0, "len", 3);
  figure.length(3000, -500, 3000, 0, "m_fDimOffset", -20);
  figure.note(1500, -480, "above = 1", Side::Below);
  figure.leader(3000, 350, 6, 2, "longSide = 1");
  figure.point(0, -1800, "x, y", Side::AboveLeft);
  figure.note(1500, -2250, "text, above = 0", Side::Above);
  figure.leader(3000, -2800, 5, -3, "longSide = 0");
}

FIGURE(dimension_points) {
  //[
  const float x[] = {0, 900, 2700, 3600};
  const float y[] = {0, 0, 0, 0};
  sgt.m_fDimOffset = 400;
  sgt.m_fDimPolarA = sgt.m_fDimPolarB = 300;
  sgt.Draw_Dim_Points(4, x, y, 0, 1, 1);
  sgt.Draw_Dim_Points(0, 1400, 2000, 2600, 1, 1);
  sgt.Draw_Dim_Points(2600, 1400, 4600, 2600, "2332", 1, 1);
  //]
  for (int i = 0; i < 4; ++i) figure.point(x[i], 0, i == 0 ? "x[0], y[0]" : "", Side::Above);
  figure.point(0, 1400, "x1, y1", Side::AboveLeft);
  figure.point(2000, 2600, "x2, y2", Side::AboveLeft);
  figure.point(2600, 1400, "x1, y1", Side::AboveLeft);
  figure.point(4600, 2600, "x2, y2", Side::AboveLeft);
}

FIGURE(dimension_reverse) {
  //[
  const float x[] = {0, 900, 2700};
  const float y[] = {0, 0, 0};
  sgt.m_fDimOffset = 400;
  sgt.m_fDimPolarA = sgt.m_fDimPolarB = 300;
  sgt.Draw_Dim_Points(3, x, y, 1, 1, 1);
  //]
  for (int i = 0; i < 3; ++i) figure.point(x[i], 0, "", Side::Below);
  figure.note(1350, 0, "reverse = 1", Side::Below);
}

FIGURE(dimension_sizes) {
  //[
  sgt.m_fDimOffset = 600;
  sgt.m_fDimPolarA = 500;
  sgt.m_fDimPolarB = 300;
  sgt.m_nDimDecimals = 1;
  sgt.Draw_Dim_Polar(0, 0, 2250, 0, 1, 1);
  //]
  figure.zoom(2.5F);
  figure.line(0, 0, 2250, 0, true);
  figure.point(0, 0, "");
  figure.point(2250, 0, "");
  figure.length(0, -600, 0, -100, "m_fDimPolarA", 6);
  figure.leader(0, -680, -6, -4, "m_fDimExt");
  figure.length(2250, -600, 2250, -300, "m_fDimPolarB", -6);
  figure.length(1800, 0, 1800, -600, "m_fDimOffset", 0);
  figure.leader(35, -565, 9, 13, "m_fDimTick, m_fDimLineWidth");
  figure.leader(1125, -600, 4, -8, "m_fDimTextHeight, m_nDimDecimals, m_fTextGap");
}

FIGURE(angle_dimension) {
  //[
  sgt.Draw_DimJiaoDu(0, 0, 1500, 20, nullptr, 50);
  sgt.Draw_DimJiaoDu(3500, 0, 1500, 160, "a", -60);
  //]
  figure.point(0, 0, "x, y", Side::Below);
  figure.line(0, 0, 1410, 513);
  figure.line(0, 0, 513, 1410);
  figure.angle(0, 0, 13, 0, 20, "angle");
  figure.angle(0, 0, 9, 20, 70, "sweep");
  figure.length(0, 0, 1061, 1061, "r", 0);
  figure.point(3500, 0, "x, y", Side::Below);
  figure.line(3500, 0, 2090, 513);
  figure.line(3500, 0, 3240, 1477);
  figure.note(2950, 700, "sweep < 0", Side::Above);
}

FIGURE(elevation_mark) {
  //[
  sgt.Draw_BiaoGao(0, 0, 3.6F, 0);
  sgt.Draw_BiaoGao(3000, 0, -1.2F, 1);
  sgt.Draw_BiaoGao(4500, 0, 0, 0);
  //]
  figure.point(0, 0, "x, y", Side::Below);
  figure.leader(260, 200, 3, 6, "value");
  figure.note(0, -220, "leftSide = 0", Side::Below);
  figure.point(3000, 0, "x, y", Side::Below);
  figure.note(3000, -220, "leftSide = 1", Side::Below);
  figure.point(4500, 0, "x, y", Side::Below);
}

FIGURE(axis_bubble) {
  //[
  sgt.Draw_ZhouFu(0, 0, 2500, 0, "A");
  sgt.Draw_ZhouFu(4000, 900, 4000, -600, "12");
  //]
  figure.point(0, 0, "x1, y1", Side::Below);
  figure.point(2500, 0, "x2, y2", Side::BelowLeft);
  figure.point(4000, 900, "x1, y1", Side::Right);
  figure.point(4000, -600, "x2, y2", Side::AboveRight);
  figure.note(2900, 0, "text", Side::Right);
}

FIGURE(break_line) {
  //[
  sgt.Draw_Cut_Sym(0, 0, 0, 2000);
  sgt.Draw_Cut_Sym(2000, 0, 4500, 1000, 300, 500, 150);
  //]
  figure.point(0, 0, "x1, y1", Side::Right);
  figure.point(0, 2000, "x2, y2", Side::Right);
  figure.point(2000, 0, "x1, y1", Side::Above);
  figure.point(4500, 1000, "x2, y2", Side::Above);
  figure.length(4500, 1000, 4779, 1111, "over", -4);
  figure.leader(3250, 500, -4, 9, "height, width");
}

FIGURE(break_line_sizes) {
  //[
  sgt.Draw_Cut_Sym(0, 0, 2000, 0, 300, 500, 150);
  //]
  figure.zoom(1.5F);
  figure.point(0, 0, "x1, y1", Side::Above);
  figure.point(2000, 0, "x2, y2", Side::Above);
  figure.length(2000, 0, 2300, 0, "over", -5);
}

FIGURE(section_mark) {
  //[
  sgt.Draw_PouXian(0, 0, 0, 2400, "1", 0, 1);
  sgt.Draw_PouXian(1800, 0, 1800, 2400, "1", 1, 0);
  sgt.Draw_PouXian(3600, 600, 6600, 600, "A", 400, 60, 350, 1, 1);
  //]
  for (const float x : {0.0F, 1800.0F}) {
    figure.point(x, 0, "x1, y1", x == 0 ? Side::Right : Side::Left);
    figure.point(x, 2400, "x2, y2", x == 0 ? Side::Right : Side::Left);
    figure.line(x, 0, x, 2400, true);
  }
  figure.note(0, 1200, "flag = 1, alongLine = 0", Side::Right);
  figure.note(1800, 1500, "flag = 0, alongLine = 1", Side::Right);
  figure.point(3600, 600, "x1, y1", Side::Below);
  figure.point(6600, 600, "x2, y2", Side::Below);
  figure.line(3600, 600, 6600, 600, true);
}

FIGURE(ground) {
  //[
  sgt.Draw_TuMianXian(0, 0, 4000, 0, 0, 0);
  sgt.Draw_TuMianXian(0, -800, 4000, -800, 250, 1);
  //]
  figure.point(0, 0, "x1, y1", Side::Above);
  figure.point(4000, 0, "x2, y2", Side::Above);
  figure.note(4000, -80, "side = 0, size = 0", Side::Right);
  figure.length(0, -800, 0, -550, "size", 3);
  figure.note(4000, -680, "side = 1", Side::Right);
}

FIGURE(arrows) {
  //[
  sgt.DrawArrow(0, 0, 30);
  sgt.DrawLineArrow(800, -300, 1800, 300);
  sgt.MoveTo(2600, -300);
  sgt.ArrowTo(3400, -300);
  sgt.ArrowTo_Relative(0, 600);
  //]
  figure.point(0, 0, "x, y", Side::Below);
  figure.angle(0, 0, 7, 0, 30, "angle");
  figure.point(800, -300, "x1, y1", Side::Below);
  figure.point(1800, 300, "x2, y2", Side::Right);
  figure.point(2600, -300, "MoveTo", Side::Below);
  figure.point(3400, -300, "ArrowTo", Side::BelowRight);
  figure.point(3400, 300, "ArrowTo_Relative", Side::Right);
}

FIGURE(arrow_sizes) {
  //[
  sgt.DrawArrow(0, 0, 0);
  //]
  figure.zoom(8);
  figure.point(0, 0, "x, y", Side::Right);
  figure.length(-125, 40, 0, 40, "m_fArrowLen", 4);
  figure.length(-125, 0, -125, 40, "", 4);
  figure.note(-125 - figure.mm(5), 20, "m_fArrowWidth", Side::Left);
  figure.line(-125, 0, 0, 0, true);
}

FIGURE(curved_arrow) {
  //[
  sgt.DrawArcArrow(0, 0, 0, 0);
  sgt.DrawArcArrow(1500, 0, 90, 1);
  //]
  figure.zoom(2);
  figure.point(0, 0, "x, y", Side::Below);
  figure.arrow(0, 0, 400, 0);
  figure.note(0, 100, "angle = 0, atStart = 0", Side::Above);
  figure.point(1500, 0, "x, y", Side::Left);
  figure.arrow(1500, 0, 1500, 400);
  figure.note(1600, -100, "angle = 90, atStart = 1", Side::Right);
}
