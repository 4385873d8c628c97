#include <gtest/gtest.h>

#include "pictures/device_suite.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"
#include "support/temporary_directory.h"

namespace {

using namespace qvtest;

Picture on_bitmap(unsigned seed) {
  qv::BitmapContext bitmap(kPictureWidth, kPictureHeight, kPicturePaper);
  draw_commands(bitmap, seed);
  return picture_of(bitmap.GetResolution(), bitmap.Pixels());
}

/// Draws as the context behind it, spoiled in one way.
class Spoiled : public qv::BitmapContext {
 public:
  enum Fault { kFartherDown, kLongerLines, kThinPens, kNoXor };
  explicit Spoiled(Fault fault) : BitmapContext(kPictureWidth, kPictureHeight, kPicturePaper), fault_(fault) {}
  void LineTo(int x, int y) override {
    const CPen* const before = &Pen();
    const CPen thin{before->style, 1, before->color};
    if (fault_ == kThinPens && before->width > 1) SelectObject(&thin);
    if (fault_ == kNoXor) SetROP2(qv::RasterOp::CopyPen);
    BitmapContext::LineTo(x, fault_ == kFartherDown ? y + 2 : y);
    if (fault_ == kLongerLines) SetPixel(x, y, before->color);
    if (&Pen() != before) SelectObject(before);
  }

 private:
  Fault fault_;
};

TEST(BitmapContext, DrawsAsEveryDevice) {
  expect_conforming([](const std::function<void(const Device&)>& use) {
    qv::BitmapContext bitmap(kPictureWidth, kPictureHeight, kPicturePaper);
    use({bitmap, [&] { return picture_of(bitmap.GetResolution(), bitmap.Pixels()); }});
  });
}

// The comparison finds what a device can do wrong, and lets pass what devices may do.
TEST(Pictures, AreComparedWithinAPixel) {
  const Picture right = on_bitmap(1);
  EXPECT_EQ(difference(1, right, right), "");
  Picture moved = right;
  std::rotate(moved.pixels.begin(), moved.pixels.end() - 1, moved.pixels.end());
  EXPECT_EQ(difference(1, right, moved), "");
  for (const auto fault : {Spoiled::kFartherDown, Spoiled::kLongerLines, Spoiled::kThinPens, Spoiled::kNoXor}) {
    Spoiled spoiled(fault);
    draw_commands(spoiled, 1);
    EXPECT_NE(difference(1, right, picture_of(spoiled.GetResolution(), spoiled.Pixels())), "") << fault;
  }
  const TemporaryDirectory directory;
  ASSERT_TRUE(write_picture(right, directory.path("a.ppm")));
  EXPECT_EQ(read_picture(directory.path("a.ppm")).pixels, right.pixels);
}

}  // namespace
