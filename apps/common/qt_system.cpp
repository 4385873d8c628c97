// The programs on Qt, on a POSIX system.

#include <unistd.h>

#include <QtCore/QCoreApplication>

#include "common/picture_file.h"
#include "common/system.h"
#include "qvtools/platform/qt/qt_output.h"

namespace qvapps {

struct System::Parts {
  QCoreApplication application;
  Parts(int& argc, char** argv) : application(argc, argv) {}
};

System::System(int& argc, char** argv) : parts_(std::make_unique<Parts>(argc, argv)) {}
System::~System() = default;

std::string System::program_directory() {
  return QCoreApplication::applicationDirPath().toStdString();
}

bool error_is_terminal() {
  return isatty(STDERR_FILENO) != 0;
}

std::string to_utf8(const char* text) {
  return qv::from_gbk(text);
}

std::span<const PictureFormat> picture_formats() {
  static constexpr int kPdfDotsPerInch = 300;
  static constexpr PictureFormat kFormats[] = {
      {".png", PictureKind::Png, save_bitmap<qv::save_png_with_qt>},
      {".svg", PictureKind::Svg, save_vector<qv::save_svg>},
      {".pdf", PictureKind::Pdf,
       [](const std::string& path, CSize size, COLORREF, const Draw& draw) {
         return qv::save_pdf(path, size, kPdfDotsPerInch, draw);
       }},
  };
  return kFormats;
}

}  // namespace qvapps
