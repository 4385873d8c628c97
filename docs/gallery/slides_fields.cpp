// Slides and fields.

#include <algorithm>
#include <cmath>
#include <numbers>

#include "figure.h"

using manual::Side;

FIGURE(slide_calls) {
  //[
  CWxSlide slide;
  slide.SetColor(7);
  slide.Draw_Rect_LB(120, 220, 140, 40, 0);
  slide.SetColor(3);
  slide.Draw_Rect_C(96, 196, 200, 150, 0);
  slide.SetColor(1);
  for (const float x : {170.0F, 200.0F, 230.0F}) slide.Draw_Solid(x - 6, 60, x + 6, 60, x + 6, 72, x - 6, 72);
  slide.SetColor(2);
  slide.MoveTo(100, 20);
  slide.LineTo(300, 20);
  slide.MoveTo_Relative(0, 20);
  slide.LineTo_Relative(0, 240);
  slide.SetColor(4);
  const float x[] = {20, 60, 60, 20};
  const float y[] = {40, 40, 260, 260};
  slide.Draw_Lines(4, x, y);
  slide.Draw_Line(20, 40, 20, 260);
  qv::BitmapContext picture(480, 360, CWxSlide::GetColor(0));
  const CRect place(0, 0, 480, 360);
  slide.Draw(&picture, &place);
  //]
  figure.pixels(picture);
}

FIGURE(slide_wide) {
  //[
  CWxSlide slide;
  slide.SetColor(7);
  slide.Draw_Line(-60, 0, 260, 0);
  slide.Draw_Line(0, -60, 0, 60);
  slide.SetColor(1);
  slide.Draw_Pline(100, 0, 200, 0, 10, 30);
  slide.SetColor(3);
  slide.Draw_Pline(150, 40, 200, 40, 4);
  slide.SetColor(4);
  slide.MoveTo(100, -40);
  slide.MoveTo_Relative(20, 0);
  slide.PlineTo(200, -40, 4, 4);
  slide.PlineTo_Relative(0, 20, 4, 4);
  //]
  qv::BitmapContext picture(640, 240, CWxSlide::GetColor(0));
  const CRect place(0, 0, 640, 240);
  slide.Draw(&picture, &place);
  figure.pixels(picture);
}

FIGURE(slide_colors) {
  //[
  CWxSlide slide;
  for (int color = 0; color < 16; ++color) {
    const auto x = 20.0F * static_cast<float>(color);
    slide.SetColor(color);
    slide.Draw_Solid(x, 0, x + 16, 0, x + 16, 30, x, 30);
  }
  //]
  slide.SetColor(7);
  slide.Draw_Rect_LB(324, 38, -4, -4, 0);
  qv::BitmapContext bitmap(800, 120, CWxSlide::GetColor(0));
  const CRect place(0, 0, 800, 120);
  slide.Draw(&bitmap, &place);
  figure.pixels(bitmap);
}

FIGURE(slide_as_drawing) {
  //[
  CWxSlide slide;
  slide.SetColor(7);
  slide.Draw_Rect_LB(120, 220, 140, 40, 0);
  slide.SetColor(1);
  slide.Draw_Solid(160, 60, 180, 60, 180, 80, 160, 80);
  DXF drawing;
  drawing.New_MemDxf();
  Form_Dxf(&drawing, &slide);
  //]
  figure.zoom(0.2F);
  figure.drawing(drawing);
}

FIGURE(field_contour) {
  //[
  // A slab of 12 by 8 metres, its deflection as value 0.
  CChang field;
  constexpr int kAcross = 60, kUp = 40;
  for (int j = 0; j <= kUp; ++j) {
    for (int i = 0; i <= kAcross; ++i) {
      CChangNode node;
      node.x = 12.0F * static_cast<float>(i) / kAcross;
      node.y = 8.0F * static_cast<float>(j) / kUp;
      node.value[0] = std::max(12.4F * std::sin(PI_F * node.x / 12) * std::sin(PI_F * node.y / 8), 0.0F);
      field.m_Nodes.Add(node);
    }
  }
  for (int j = 0; j < kUp; ++j) {
    for (int i = 0; i < kAcross; ++i) {
      const int a = j * (kAcross + 1) + i + 1;
      field.m_Tris.Add({{a, a + 1, a + kAcross + 2}});
      field.m_Tris.Add({{a, a + kAcross + 2, a + kAcross + 1}});
    }
  }
  qv::BitmapContext picture(840, 520, 0);
  CRect area(0, 0, 840, 520);
  CFCoor coor(CFPoint(-2200, 8600), 0.055F, 1);  // millimetres to pixels
  field.Draw_CaiSeTu(&picture, &area, &coor);
  //]
  figure.pixels(picture);
}
