#include "qvtools/platform/qt/qt_context.h"

#include <gtest/gtest.h>

#include <QtGui/QImage>

#include "pictures/device_suite.h"
#include "qvtools/platform/qt/qt_output.h"
#include "support/temporary_directory.h"

namespace {

using qv::QtContext;

void with_image(const std::function<void(const qvtest::Device&)>& use) {
  const CSize size(qvtest::kPictureWidth, qvtest::kPictureHeight);
  QImage image(size.cx, size.cy, QImage::Format_RGB32);
  image.fill(QColor(qvtest::kPicturePaper & 255, qvtest::kPicturePaper >> 8 & 255, qvtest::kPicturePaper >> 16 & 255));
  QPainter painter(&image);
  QtContext context(painter, QtContext::Target::Image, size);
  use({context, [&] { return qvtest::picture_of(size, reinterpret_cast<const std::uint32_t*>(image.constBits())); }});
}

TEST(QtContext, DrawsOnImagesAsOnEveryDevice) {
  qvtest::expect_conforming(with_image);
}

TEST(QtContext, TellsItsTarget) {
  QImage image(10, 10, QImage::Format_RGB32);
  QPainter painter(&image);
  EXPECT_TRUE(QtContext(painter, QtContext::Target::Printer, {10, 10}).IsPrinting());
  EXPECT_TRUE(QtContext(painter, QtContext::Target::Metafile, {10, 10}).IsMetafile());
}

TEST(QtContext, DrawsJoinedLinesAsOnePathWithItsPensWidth) {
  const qvtest::TemporaryDirectory directory;
  const CPen wide{qv::PenStyle::Dash, 7, 0x0000FF};
  ASSERT_TRUE(qv::save_svg(directory.path("a.svg"), {100, 100}, [&](CDC& dc) {
    const CPen* const before = dc.SelectObject(&wide);
    dc.MoveTo(10, 10);
    dc.LineTo(50, 10);
    dc.LineTo(50, 60);
    dc.SelectObject(before);
  }));
  const std::string svg = directory.read("a.svg");
  EXPECT_NE(svg.find("M10,10 L50,10 L50,60"), std::string::npos) << svg;
  EXPECT_NE(svg.find("stroke-width=\"7\""), std::string::npos) << svg;
  EXPECT_EQ(svg.find("stroke-dasharray"), std::string::npos) << svg;
}

}  // namespace
