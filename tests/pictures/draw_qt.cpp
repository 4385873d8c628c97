// Draws the command stream by Qt: draw_qt SEED OUT.ppm

#include <QtGui/QImage>
#include <cstdlib>

#include "pictures/picture.h"
#include "qvtools/platform/qt/qt_context.h"

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const CSize size(qvtest::kPictureWidth, qvtest::kPictureHeight);
  QImage image(size.cx, size.cy, QImage::Format_RGB32);
  image.fill(QColor(qvtest::kPicturePaper & 255, qvtest::kPicturePaper >> 8 & 255, qvtest::kPicturePaper >> 16 & 255));
  {
    QPainter painter(&image);
    qv::QtContext context(painter, qv::QtContext::Target::Image, size);
    qvtest::draw_commands(context, static_cast<unsigned>(std::atoi(argv[1])));
  }
  const auto* const pixels = reinterpret_cast<const std::uint32_t*>(image.constBits());
  return qvtest::write_picture(qvtest::picture_of(size, pixels), argv[2]) ? 0 : 1;
}
