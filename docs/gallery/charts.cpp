// Charts of the composer.

#include <array>
#include <cmath>

#include "figure.h"

using manual::Side;

FIGURE(chart_axes) {
  //[
  sgt.m_nAxisXFormat = 1;
  sgt.m_nAxisYFormat = 0;
  sgt.Draw_Axis(0, 0, 0, 6, -100, 200, 3500, 2000, 6, 6, "x (m)", "M (kN.m)");
  //]
  figure.point(0, 0, "x0, y0", Side::BelowLeft);
  figure.length(0, 0, 3500, 0, "width", -16);
  figure.length(3500, 2000, 3500, 0, "height", 6);
  figure.leader(0, -130, -13, -4, "xmin");
  figure.leader(3500, -130, 5, -8, "xmax");
  figure.leader(-420, 30, -7, 0, "ymin");
  figure.leader(-420, 2000, -7, 0, "ymax");
}

FIGURE(chart_curve) {
  //[
  const float x[] = {0, 1, 2, 3, 4, 5, 6};
  const float y[] = {-80, 30, 110, 140, 110, 30, -80};
  sgt.m_nAxisXFormat = sgt.m_nAxisYFormat = 0;
  sgt.Draw_Curve(0, 0, 7, x, y, 0, 6, -100, 200, 3500, 2000, 6, 6, "x (m)", "M (kN.m)", 5, 0, 1);
  //]
  const float px = 3500.0F * 2 / 6;
  const float py = 2000.0F * 210 / 300;
  figure.leader(px, py, -4, 8, "x[2], y[2]");
  figure.leader(3500.0F * 4.5F / 6, 2000.0F * 172 / 300, 4, 9, "color, ltype, marker");
}

FIGURE(chart_two_curves) {
  //[
  const float x[] = {0, 1, 2, 3, 4, 5, 6};
  const float y[] = {-80, 30, 110, 140, 110, 30, -80};
  const float y2[] = {-40, 60, 130, 155, 130, 60, -40};
  sgt.m_nAxisXFormat = sgt.m_nAxisYFormat = 0;
  sgt.Draw_Curve2(0, 0, 7, x, y, y2, 0, 6, -100, 200, 3500, 2000, 6, 6, "x (m)", "M (kN.m)", 5, 0, 1);
  //]
  figure.leader(3500.0F * 4 / 6, 2000.0F * 210 / 300, 3, -9, "y");
  figure.leader(3500.0F * 2 / 6, 2000.0F * 230 / 300, -4, 7, "y2");
}

FIGURE(chart_record) {
  //[
  CArray<float, float> x, y;
  for (int i = 0; i <= 4; ++i) {
    x.Add(static_cast<float>(i));
    y.Add(12.5F * static_cast<float>(i * (4 - i)) - 10);
  }
  CBase_SGT::CURVEINFO info;
  info.width = 3500;
  info.height = 2000;
  info.xmax = 4;
  info.ymin = -20;
  info.ymax = 60;
  info.nx = info.ny = 4;
  info.xTitle = "x";
  info.yTitle = "w (mm)";
  info.marker = 2;
  info.values = 1;
  sgt.Draw_XY(info, x, y);
  //]
  figure.leader(1750, 1500, 6, 6, "values = 1");
}

FIGURE(chart_markers) {
  //[
  std::array<float, 9> x, y;
  sgt.Add_Default_LineType();
  sgt.m_nAxisXFormat = sgt.m_nAxisYFormat = 0;
  for (int kind = 0; kind < 4; ++kind) {
    for (std::size_t i = 0; i < x.size(); ++i) {
      x[i] = static_cast<float>(i);
      y[i] = 10 * static_cast<float>(kind) + 3 * std::sin(x[i]);
    }
    sgt.Draw_Curve(0, 0, 9, x.data(), y.data(), 0, 8, -10, 40, 3500, 2000, 8, 5, "", "", kind + 1, kind, kind);
  }
  //]
  const char* const names[] = {"ltype 0, marker 0", "ltype 1, marker 1", "ltype 2, marker 2", "ltype 3, marker 3"};
  for (int kind = 0; kind < 4; ++kind)
    figure.note(3500, 2000.0F * (10 + 10 * static_cast<float>(kind) + 3) / 50, names[kind], Side::Right);
}
