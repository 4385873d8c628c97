// The slides of a library as icons with their names.   slide_icons LIBRARY.slb [SIZE]   writes icons.png, each icon
// SIZE pixels wide and high (96 where none is given).

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "qvtools.h"

namespace {

constexpr COLORREF kBackground = qv::rgb(30, 34, 40), kFrame = qv::rgb(90, 98, 110), kName = qv::rgb(220, 224, 230);

int fail(const char* what, const char* why) {
  std::fprintf(stderr, "slide_icons: %s: %s\n", what, why);
  return 1;
}

void draw_frame(CDC& dc, const CRect& r) {
  const CPen pen{qv::PenStyle::Solid, 1, kFrame};
  const CPen* const before = dc.SelectObject(&pen);
  dc.MoveTo(r.left, r.top);
  for (const CPoint p :
       {CPoint(r.right, r.top), CPoint(r.right, r.bottom), CPoint(r.left, r.bottom), CPoint(r.left, r.top)})
    dc.LineTo(p.x, p.y);
  dc.SelectObject(before);
}

/// The name below an icon, in its middle, narrower where it is too long.
void draw_name(CDC& dc, const char* name, const CRect& icon) {
  constexpr float kHeight = 11;
  float ratio = 0.8F;
  const float natural = G_ShapeFont.GetTxtWidth(name, kHeight, ratio), room = static_cast<float>(icon.Width());
  if (natural > room) ratio *= room / natural;
  const float width = std::min(natural, room);
  const CPen pen{qv::PenStyle::Solid, 1, kName};
  const CPen* const before = dc.SelectObject(&pen);
  const int x = icon.left + static_cast<int>((room - width) / 2);
  G_ShapeFont.DrawTxtShx(&dc, x, icon.bottom + 18, name, kHeight, 0, kHeight * ratio, 1);
  dc.SelectObject(before);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 && argc != 3) return fail("usage", "slide_icons LIBRARY.slb [SIZE]");
  const int size = argc == 3 ? std::atoi(argv[2]) : 96;
  if (size < 16 || size > 512) return fail(argv[2], "is no size from 16 to 512");
  if (!G_ShapeFont.SetTxtFont(FONTS, "txt.shx")) return fail(FONTS, "there is no txt.shx");
  CWxSlideLib library;
  if (!library.Open_SLB(argv[1])) return fail(argv[1], "is not there, or no slide library");
  if (library.m_nCount == 0) return fail(argv[1], "has no slides");

  constexpr int kMost = 1000;  // of icons in one picture
  const int count = std::min(library.m_nCount, kMost);
  if (count < library.m_nCount) std::fprintf(stderr, "slide_icons: only the first %d slides are drawn\n", count);
  const int across = static_cast<int>(std::ceil(std::sqrt(1.5 * count))), gap = 16, below = 28;
  const int down = (count + across - 1) / across;
  qv::BitmapContext bitmap(across * (size + gap) + gap, down * (size + gap + below) + gap, kBackground);
  int drawn = 0;
  for (int i = 0; i < count; ++i) {
    const char* const name = library.m_Directory[static_cast<std::size_t>(i)].m_szName;
    const int left = gap + i % across * (size + gap), top = gap + i / across * (size + gap + below);
    const CRect icon(left, top, left + size, top + size);
    draw_frame(bitmap, icon);
    draw_name(bitmap, name, icon);
    CWxSlide slide;
    if (!library.Read_SLD(i, &slide)) {
      fail(name, "is no slide, its icon stays empty");
      continue;
    }
    const CRect inner(icon.left + 4, icon.top + 4, icon.right - 4, icon.bottom - 4);
    slide.Draw(&bitmap, &inner);
    ++drawn;
  }
  if (!qv::SavePng(bitmap, "icons.png")) return fail("icons.png", "cannot be written");
  std::printf("%d slides\n", drawn);
  return drawn > 0 ? 0 : 1;
}
