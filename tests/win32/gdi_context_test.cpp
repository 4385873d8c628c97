#include "qvtools/platform/win32/gdi_context.h"

#include <gtest/gtest.h>

#include "pictures/device_suite.h"
#include "qvtools/platform/win32/gdi_output.h"
#include "support/temporary_directory.h"

namespace {

using qv::GdiBitmap;
using qv::GdiContext;

void with_bitmap(const std::function<void(const qvtest::Device&)>& use) {
  const GdiBitmap bitmap(qvtest::kPictureWidth, qvtest::kPictureHeight, qvtest::kPicturePaper);
  ASSERT_TRUE(bitmap.Handle());
  GdiContext context(bitmap.Handle());
  use({context, [&] {
         context.Flush();
         return qvtest::picture_of({bitmap.Width(), bitmap.Height()}, bitmap.Pixels());
       }});
}

TEST(GdiContext, DrawsInMemoryAsOnEveryDevice) {
  qvtest::expect_conforming(with_bitmap);
}

TEST(GdiContext, LeavesTheHandleAsItWas) {
  const GdiBitmap bitmap(20, 20, 0xFFFFFF);
  const HGDIOBJ pen = GetCurrentObject(bitmap.Handle(), OBJ_PEN), brush = GetCurrentObject(bitmap.Handle(), OBJ_BRUSH);
  const DWORD before = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  {
    GdiContext context(bitmap.Handle());
    const CPoint corners[] = {{0, 0}, {9, 0}, {9, 9}};
    CRgn region;
    region.CreatePolygonRgn(corners, 3, qv::FillRule::Winding);
    context.SetROP2(qv::RasterOp::XorPen);
    // More pens and brushes than are kept.
    for (unsigned i = 0; i < 1000; ++i) {
      const CPen own{qv::PenStyle::Solid, 1, i};
      const CPen* const was = context.SelectObject(&own);
      context.MoveTo(0, 0);
      context.LineTo(9, 5);
      context.FillRgn(region, CBrush{i});
      context.SelectObject(was);
    }
    EXPECT_LE(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS), before + 600);
  }
  EXPECT_EQ(GetCurrentObject(bitmap.Handle(), OBJ_PEN), pen);
  EXPECT_EQ(GetCurrentObject(bitmap.Handle(), OBJ_BRUSH), brush);
  EXPECT_EQ(GetROP2(bitmap.Handle()), R2_COPYPEN);
  EXPECT_EQ(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS), before);
}

TEST(GdiOutput, WritesPngFilesAndShowsBitmaps) {
  qv::BitmapContext bitmap(30, 20, 0x112233);
  bitmap.SetPixel(7, 5, 0x0000FF);
  const qvtest::TemporaryDirectory directory;
  ASSERT_TRUE(qv::save_png_with_gdi(bitmap, directory.path("a.png")));
  EXPECT_EQ(directory.read("a.png").substr(0, 8), "\x89PNG\r\n\x1a\n");
  EXPECT_FALSE(qv::save_png_with_gdi(bitmap, directory.path("no/a.png")));
  const GdiBitmap shown(40, 30, 0xFFFFFF);
  ASSERT_TRUE(qv::show_bitmap(shown.Handle(), 2, 3, bitmap));
  EXPECT_EQ(shown.GetPixel(9, 8), 0x0000FFu);
  EXPECT_EQ(shown.GetPixel(10, 8), 0x112233u);
  EXPECT_EQ(shown.GetPixel(1, 3), 0xFFFFFFu);
  EXPECT_EQ(shown.GetPixel(32, 22), 0xFFFFFFu);
}

// A metafile holds what was drawn: played on a bitmap, it gives the bitmap's picture.
TEST(GdiOutput, WritesMetafiles) {
  const qvtest::TemporaryDirectory directory;
  const std::string path = directory.path("a.emf");
  const CSize size(qvtest::kPictureWidth, qvtest::kPictureHeight);
  bool metafile = false;
  ASSERT_TRUE(qv::save_emf(path, size, [&](CDC& dc) {
    metafile = dc.IsMetafile() && !dc.IsPrinting();
    qvtest::draw_commands(dc, 1);
  }));
  EXPECT_TRUE(metafile);
  const HENHMETAFILE file = GetEnhMetaFileA(path.c_str());
  ASSERT_TRUE(file);
  ENHMETAHEADER header = {};
  GetEnhMetaFileHeader(file, sizeof header, &header);
  EXPECT_NEAR(header.rclFrame.right * header.szlDevice.cx / (100.0 * header.szlMillimeters.cx), size.cx, 1);
  const GdiBitmap bitmap(size.cx, size.cy, qvtest::kPicturePaper);
  const RECT all = {0, 0, size.cx, size.cy};
  EXPECT_TRUE(PlayEnhMetaFile(bitmap.Handle(), file, &all));
  DeleteEnhMetaFile(file);
  qv::BitmapContext expected(size.cx, size.cy, qvtest::kPicturePaper);
  qvtest::draw_commands(expected, 1);
  EXPECT_EQ(
      qvtest::difference(1, qvtest::picture_of(size, expected.Pixels()), qvtest::picture_of(size, bitmap.Pixels())),
      "");
}

}  // namespace
