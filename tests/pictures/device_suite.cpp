#include "pictures/device_suite.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "qvtools/platform/bitmap/bitmap_dc.h"

namespace qvtest {
namespace {

constexpr std::uint32_t kPaper = 0xFFF0E0;  // as a pixel

/// Part of a row: "#" black, "w" white, "." paper, "?" anything else.
std::string row(const Picture& picture, int x, int y, int n) {
  std::string text;
  for (int i = 0; i < n; ++i) {
    const std::uint32_t v = picture.at(x + i, y);
    text += v == 0 ? '#' : v == kPaper ? '.' : v == 0xFFFFFF ? 'w' : '?';
  }
  return text;
}

void line(CDC& dc, CPoint a, CPoint b) {
  dc.MoveTo(a.x, a.y);
  dc.LineTo(b.x, b.y);
}

void expect_lines_without_their_last_pixel(const Device& device) {
  line(device.dc, {5, 5}, {5, 5});
  line(device.dc, {5, 6}, {9, 6});
  line(device.dc, {9, 7}, {5, 7});
  line(device.dc, {20, 5}, {20, 9});
  line(device.dc, {21, 9}, {21, 5});
  line(device.dc, {30, 5}, {34, 7});  // half way between rows at x = 31 and 33
  const CPen wide{qv::PenStyle::Solid, 5, 0};
  const CPen* const before = device.dc.SelectObject(&wide);
  EXPECT_EQ(before->width, 1);
  line(device.dc, {50, 50}, {50, 50});
  EXPECT_EQ(device.dc.SelectObject(before), &wide);
  const Picture picture = device.picture();
  EXPECT_EQ(row(picture, 4, 5, 7), ".......");
  EXPECT_EQ(row(picture, 4, 6, 7), ".####..");
  EXPECT_EQ(row(picture, 4, 7, 7), "..####.");
  EXPECT_EQ(row(picture, 19, 5, 4), ".#..");
  EXPECT_EQ(row(picture, 19, 9, 4), "..#.");
  EXPECT_EQ(row(picture, 29, 5, 6), ".##...");
  EXPECT_EQ(row(picture, 29, 6, 6), "...##.");
  EXPECT_EQ(row(picture, 48, 50, 5), ".....");
}

void expect_styles(const Device& device) {
  constexpr const char* kDrawn[] = {"########################", "##################......", "###...###...###...###...",
                                    "#########......###......", "#########...###...###..."};
  for (int style = 0; style <= 5; ++style) {
    const CPen pen{static_cast<qv::PenStyle>(style), 1, 0};
    const CPen* const before = device.dc.SelectObject(&pen);
    device.dc.SetBkMode(qv::BackgroundMode::Transparent);
    line(device.dc, {10, 10 + style}, {17, 10 + style});
    device.dc.LineTo(34, 10 + style);  // joined: the pattern goes on
    line(device.dc, {40, 10 + style}, {50, 10 + style});
    device.dc.SetBkMode(qv::BackgroundMode::Opaque);
    line(device.dc, {100, 10 + style}, {124, 10 + style});
    device.dc.SelectObject(before);
  }
  const Picture picture = device.picture();
  for (int style = 0; style < 5; ++style) {
    const std::string drawn = kDrawn[style];
    std::string opaque = drawn;
    std::replace(opaque.begin(), opaque.end(), '.', 'w');
    EXPECT_EQ(row(picture, 10, 10 + style, 24), drawn) << style;
    EXPECT_EQ(row(picture, 40, 10 + style, 10), drawn.substr(0, 10)) << style;
    EXPECT_EQ(row(picture, 100, 10 + style, 24), opaque) << style;
  }
  EXPECT_EQ(row(picture, 10, 15, 24), std::string(24, '.')) << "no pen";
}

void expect_fills_with_left_and_top_borders(const Device& device) {
  const CPoint square[] = {{2, 2}, {5, 2}, {5, 4}, {2, 4}};
  CRgn region;
  region.CreatePolygonRgn(square, 4, qv::FillRule::Winding);
  device.dc.FillRgn(region, CBrush{0});
  // A star of five points: its middle belongs to it by winding only.
  const CPoint star[] = {{50, 20}, {62, 56}, {31, 34}, {69, 34}, {38, 56}};
  region.CreatePolygonRgn(star, 5, qv::FillRule::Alternate);
  device.dc.FillRgn(region, CBrush{0});
  const Picture picture = device.picture();
  for (int y = 1; y <= 4; ++y) EXPECT_EQ(row(picture, 0, y, 8), y == 2 || y == 3 ? "..###..." : "........") << y;
  EXPECT_EQ(picture.at(50, 42), kPaper);
  EXPECT_EQ(picture.at(50, 28), 0u);
  region.CreatePolygonRgn(star, 5, qv::FillRule::Winding);
  device.dc.FillRgn(region, CBrush{0});
  EXPECT_EQ(device.picture().at(50, 42), 0u);
}

void expect_inverting_twice_to_change_nothing(const Device& device) {
  const CPen pen{qv::PenStyle::Solid, 0, 0x123456};
  const CPen* const before = device.dc.SelectObject(&pen);
  const CPoint triangle[] = {{10, 10}, {90, 30}, {30, 80}};
  CRgn region;
  region.CreatePolygonRgn(triangle, 3, qv::FillRule::Winding);
  device.dc.FillRgn(region, CBrush{0x00A0FF});
  const Picture start = device.picture();
  for (const auto op : {qv::RasterOp::Not, qv::RasterOp::XorPen}) {
    EXPECT_EQ(device.dc.SetROP2(op), qv::RasterOp::CopyPen);
    for (int i = 0; i < 2; ++i) {
      line(device.dc, {0, 0}, {95, 70});
      device.dc.FillRgn(region, CBrush{0x00FF00});
      EXPECT_EQ(device.picture().pixels == start.pixels, i == 1);
    }
    device.dc.SetPixel(3, 3, 0x112233);  // whatever the raster operation is
    EXPECT_EQ(device.picture().at(3, 3), 0x332211u);
    device.dc.SetPixel(3, 3, kPicturePaper);
    device.dc.SetROP2(qv::RasterOp::CopyPen);
  }
  device.dc.SelectObject(before);
}

void expect_the_picture_of_the_bitmap(const Device& device) {
  const unsigned seed = std::random_device{}() % 100000;
  draw_commands(device.dc, seed);
  qv::BitmapContext bitmap(kPictureWidth, kPictureHeight, kPicturePaper);
  draw_commands(bitmap, seed);
  EXPECT_EQ(difference(seed, picture_of(bitmap.GetResolution(), bitmap.Pixels()), device.picture()), "")
      << "seed " << seed;
}

}  // namespace

void expect_conforming(const std::function<void(const std::function<void(const Device&)>&)>& with_device) {
  with_device([](const Device& device) {
    EXPECT_EQ(device.dc.GetResolution(), CSize(kPictureWidth, kPictureHeight));
    EXPECT_FALSE(device.dc.IsPrinting() || device.dc.IsMetafile());
  });
  with_device(expect_lines_without_their_last_pixel);
  with_device(expect_styles);
  with_device(expect_fills_with_left_and_top_borders);
  with_device(expect_inverting_twice_to_change_nothing);
  for (int i = 0; i < 3; ++i) with_device(expect_the_picture_of_the_bitmap);
}

}  // namespace qvtest
