// Draws the command stream by GDI: draw_gdi SEED OUT.ppm

#include <cstdlib>

#include "pictures/picture.h"
#include "qvtools/platform/win32/gdi_output.h"

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const qv::GdiBitmap bitmap(qvtest::kPictureWidth, qvtest::kPictureHeight, qvtest::kPicturePaper);
  {
    qv::GdiContext context(bitmap.Handle());
    qvtest::draw_commands(context, static_cast<unsigned>(std::atoi(argv[1])));
  }
  return qvtest::write_picture(qvtest::picture_of({bitmap.Width(), bitmap.Height()}, bitmap.Pixels()), argv[2]) ? 0 : 1;
}
