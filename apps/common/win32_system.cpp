// The programs on Windows.

#include <io.h>
#include <windows.h>

#include <cstdio>

#include "common/picture_file.h"
#include "common/system.h"
#include "qvtools/platform/win32/gdi_output.h"
#include "qvtools/system/windows/code_page.h"

namespace qvapps {

struct System::Parts {
  UINT outputPage = GetConsoleOutputCP();
};

System::System(int&, char**) : parts_(std::make_unique<Parts>()) {
  SetConsoleOutputCP(CP_UTF8);
}

System::~System() {
  SetConsoleOutputCP(parts_->outputPage);
}

std::string System::program_directory() {
  std::string path(MAX_PATH, '\0');
  path.resize(GetModuleFileNameA(nullptr, path.data(), MAX_PATH));
  return path.substr(0, path.find_last_of("\\/"));
}

bool error_is_terminal() {
  return _isatty(_fileno(stderr)) != 0;
}

std::string to_utf8(const char* text) {
  return qv::narrowed(qv::wide_of(text), CP_UTF8);
}

std::span<const PictureFormat> picture_formats() {
  static constexpr PictureFormat kFormats[] = {
      {".png", PictureKind::Png, save_bitmap<qv::save_png_with_gdi>},
      {".emf", PictureKind::Emf, save_vector<qv::save_emf>},
  };
  return kFormats;
}

}  // namespace qvapps
