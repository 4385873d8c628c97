#include "slide_samples.h"

#include <cmath>
#include <cstring>
#include <numbers>
#include <stdexcept>
#include <vector>

#include "qvtools.h"

namespace qvdraw {

namespace {

constexpr int kScreenX = 400;
constexpr int kScreenY = 300;

void circle(CWxSlide& s, float cx, float cy, float r, int sides = 24) {
  for (int i = 0; i <= sides; ++i) {
    const double a = 2 * std::numbers::pi * i / sides;
    const float x = cx + r * static_cast<float>(std::cos(a));
    const float y = cy + r * static_cast<float>(std::sin(a));
    i == 0 ? s.MoveTo(x, y) : s.LineTo(x, y);
  }
}

void box(CWxSlide& s, float x1, float y1, float x2, float y2) {
  s.Draw_Solid(x1, y1, x2, y1, x2, y2, x1, y2);
}
void dot(CWxSlide& s, float x, float y) {
  box(s, x - 5, y - 5, x + 5, y + 5);
}

void column(CWxSlide& s) {
  s.SetColor(7);
  s.Draw_Rect_C(180, 180, 200, 150, 0);
  s.SetColor(3);
  s.Draw_Rect_C(150, 150, 200, 150, 0);
  s.SetColor(1);
  for (int i = -1; i <= 1; ++i)
    for (int k = -1; k <= 1; ++k)
      if (i != 0 || k != 0) dot(s, 200.0F + 65.0F * static_cast<float>(i), 150.0F + 65.0F * static_cast<float>(k));
}

void round_column(CWxSlide& s) {
  s.SetColor(7);
  circle(s, 200, 150, 100, 48);
  s.SetColor(3);
  circle(s, 200, 150, 85, 48);
  s.SetColor(1);
  for (int i = 0; i < 8; ++i) {
    const double a = std::numbers::pi * i / 4;
    dot(s, 200 + 75 * static_cast<float>(std::cos(a)), 150 + 75 * static_cast<float>(std::sin(a)));
  }
}

void beam(CWxSlide& s) {
  s.SetColor(7);
  s.Draw_Rect_LB(120, 220, 140, 40, 0);
  s.SetColor(3);
  s.Draw_Rect_LB(96, 196, 152, 52, 0);
  s.SetColor(1);
  for (const float x : {162.0F, 200.0F, 238.0F}) dot(s, x, 62);
  for (const float x : {162.0F, 238.0F}) dot(s, x, 238);
}

void t_beam(CWxSlide& s) {
  s.SetColor(7);
  const float x[] = {60, 340, 340, 240, 240, 160, 160, 60, 60};
  const float y[] = {250, 250, 200, 200, 50, 50, 200, 200, 250};
  s.Draw_Lines(9, x, y);
  s.SetColor(1);
  for (const float at : {175.0F, 200.0F, 225.0F}) dot(s, at, 65);
  for (const float at : {80.0F, 140.0F, 200.0F, 260.0F, 320.0F}) dot(s, at, 238);
}

void slab_edge(CWxSlide& s) {
  s.SetColor(7);
  const float x[] = {380, 60, 60, 120, 120, 380};
  const float y[] = {220, 220, 60, 60, 160, 160};
  s.Draw_Lines(6, x, y);
  s.SetColor(1);
  const float bx[] = {370, 72, 72, 108};
  const float by[] = {208, 208, 74, 74};
  s.Draw_Lines(4, bx, by);
  for (int i = 0; i < 6; ++i) dot(s, 140 + 40 * static_cast<float>(i), 174);
}

void stair(CWxSlide& s) {
  s.SetColor(7);
  s.MoveTo(40, 50);
  for (int i = 0; i < 8; ++i) {
    s.LineTo_Relative(0, 25);
    s.LineTo_Relative(40, 0);
  }
  s.MoveTo(60, 40);
  s.LineTo(360, 227);
  s.SetColor(1);
  s.MoveTo(66, 52);
  s.LineTo(352, 230);
}

void door(CWxSlide& s) {
  s.SetColor(7);
  box(s, 20, 60, 100, 80);
  box(s, 300, 60, 380, 80);
  s.SetColor(3);
  s.MoveTo(100, 70);
  s.LineTo(100, 270);
  for (int i = 0; i <= 16; ++i) {
    const double a = std::numbers::pi / 2 * (1 - i / 16.0);
    s.LineTo(100 + 200 * static_cast<float>(std::cos(a)), 70 + 200 * static_cast<float>(std::sin(a)));
  }
}

void window(CWxSlide& s) {
  s.SetColor(7);
  box(s, 20, 130, 100, 170);
  box(s, 300, 130, 380, 170);
  s.SetColor(4);
  for (const float y : {130.0F, 143.0F, 157.0F, 170.0F}) s.Draw_Line(100, y, 300, y);
}

void pile(CWxSlide& s) {
  s.SetColor(7);
  s.Draw_Rect_LB(240, 70, 80, 200, 0);
  for (const float x : {110.0F, 230.0F}) {
    const float px[] = {x, x, x + 30, x + 60, x + 60};
    const float py[] = {200, 50, 20, 50, 200};
    s.Draw_Lines(5, px, py);
  }
  s.SetColor(1);
  s.Draw_Line(90, 212, 310, 212);
}

void footing(CWxSlide& s) {
  s.SetColor(7);
  const float x[] = {40, 40, 150, 150, 250, 250, 360, 360, 40};
  const float y[] = {40, 90, 130, 270, 270, 130, 90, 40, 40};
  s.Draw_Lines(9, x, y);
  s.SetColor(1);
  s.Draw_Line(50, 56, 350, 56);
  for (int i = 0; i < 11; ++i) dot(s, 60 + 28 * static_cast<float>(i), 66);
}

void section_mark(CWxSlide& s) {
  s.SetColor(2);
  box(s, 60, 90, 68, 210);
  box(s, 332, 90, 340, 210);
  s.SetColor(8);
  for (int i = 0; i < 8; ++i) s.Draw_Line(80 + 31 * static_cast<float>(i), 150, 100 + 31 * static_cast<float>(i), 150);
}

void break_line(CWxSlide& s) {
  s.SetColor(7);
  const float x[] = {30, 170, 185, 215, 230, 370};
  const float y[] = {150, 150, 200, 100, 150, 150};
  s.Draw_Lines(6, x, y);
}

void put_word(std::string& bytes, int v) {
  bytes += static_cast<char>(v & 255);
  bytes += static_cast<char>(v >> 8 & 255);
}

int dots(float v) {
  return static_cast<int>(std::lround(v));
}

/// A fill: its opening, its vertices, its closing record.
void put_solid(std::string& bytes, const CSlideItem& item) {
  put_word(bytes, 0xFD00);
  put_word(bytes, 4);
  put_word(bytes, -2);
  for (int i = 0; i < 4; ++i) {
    put_word(bytes, 0xFD00);
    put_word(bytes, dots(item.m_fX[i]));
    put_word(bytes, dots(item.m_fY[i]));
  }
  put_word(bytes, 0xFD00);
  put_word(bytes, 4);
  put_word(bytes, 2);
}

/// A slide of level 2 as its file has it.
std::string slide_bytes(const CWxSlide& slide) {
  std::string bytes("AutoCAD Slide\r\n\x1A\0", 17);
  bytes += 'V';
  bytes += '\x02';
  put_word(bytes, kScreenX);
  put_word(bytes, kScreenY);
  const int aspect = kScreenX * 10000000LL / kScreenY;
  put_word(bytes, aspect);
  put_word(bytes, aspect >> 16);
  put_word(bytes, 2);
  put_word(bytes, 0x1234);
  for (const CSlideItem& item : slide.m_Items) {
    if (item.m_byKind == CSlideItem::kSolid) {
      put_solid(bytes, item);
    } else if (item.m_byKind == CSlideItem::kVector) {
      for (int i = 0; i < 2; ++i) {
        put_word(bytes, dots(item.m_fX[i]));
        put_word(bytes, dots(item.m_fY[i]));
      }
    } else {
      put_word(bytes, 0xFF00 | item.m_byKind);
    }
  }
  put_word(bytes, 0xFC00);
  return bytes;
}

constexpr struct {
  const char* name;
  void (*draw)(CWxSlide&);
} kSamples[] = {{"COLUMN", column},   {"ROUNDCOL", round_column}, {"BEAM", beam},
                {"TBEAM", t_beam},    {"SLABEDGE", slab_edge},    {"STAIR", stair},
                {"DOOR", door},       {"WINDOW", window},         {"PILECAP", pile},
                {"FOOTING", footing}, {"SECTION", section_mark},  {"BREAK", break_line}};

}  // namespace

void write_sample_library(const std::string& path) {
  std::string directory("AutoCAD Slide Library 1.0\r\n\x1A");
  directory.resize(32);
  std::string bodies;
  const std::size_t first = 32 + 36 * (std::size(kSamples) + 1);
  for (const auto& sample : kSamples) {
    CWxSlide slide;
    sample.draw(slide);
    std::string name(sample.name);
    name.resize(32);
    const auto offset = static_cast<int>(first + bodies.size());
    directory += name;
    put_word(directory, offset);
    put_word(directory, offset >> 16);
    bodies += slide_bytes(slide);
  }
  directory.resize(first);
  qv::SavedFile file(path.c_str());
  const std::string bytes = directory + bodies;
  if (!file.is_open() || !file.write(bytes.data(), bytes.size()) || !file.commit())
    throw std::runtime_error(path + ": cannot be written");
}

}  // namespace qvdraw
