// Font files of any bytes: load, measure, draw; take apart, make plain. The first byte chooses the kind of font and the
// way in which it is loaded.

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "../memory_file.h"
#include "qvtools/fonts/shape_file.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"

namespace {

/// What is made plain is a plain font that loads.
void make_plain(const std::string& bytes) {
  qv::ShapeFile file;
  if (!file.Load(bytes)) return;
  for (const qv::ShapeFile::Shape& shape : file.shapes()) {
    file.outline(shape, 0.1);
    if (!shape.name.empty() && !file.find(shape.name)) __builtin_trap();
  }
  for (const auto& [plain, big] : {std::pair{qv::plain_text_font(file), false}, {qv::plain_big_font(file), true}}) {
    qv::ShapeFile made;
    if (plain.bytes.empty()) continue;
    if (!made.Load(plain.bytes) || !made.is_plain() || static_cast<int>(made.shapes().size()) > plain.taken)
      __builtin_trap();
    if ((made.kind() == qv::ShapeFile::Kind::BigFont) != big) __builtin_trap();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  make_plain({reinterpret_cast<const char*>(data + 1), size - 1});
  const MemoryFile file(data + 1, size - 1);
  if (!file.good()) return 0;
  CShx font;
  const std::string path = file.path();
  int loaded = 0;
  switch (data[0] & 5) {
    case 0:
      loaded = font.SetTxtFont("", path.c_str());
      break;
    case 1:
      loaded = font.SetHzFont("", path.c_str());
      break;
    case 4:
      loaded = qv::LoadTextFont(font, path.c_str());
      break;
    default:
      loaded = qv::LoadBigFont(font, path.c_str());
  }
  if (!loaded && (font.m_pTxtIndex || font.m_pTxtData || font.m_pHzIndex || font.m_pHzData)) __builtin_trap();
  static qv::BitmapContext bitmap(64, 64, 0);
  const char text[] = "?A z\x82\xB0\xA1\xD6\xD0\xFE\xFE\xA1";
  font.DrawHzShx(&bitmap, 5, 50, text, 20, 0.3f, 15, 1);
  font.DrawTxtShx(&bitmap, 5, 50, text, 1e6f, 2, 1e5f, data[0] & 2 ? 1 : 0);
  const CShx copy(font);
  font = copy;
  font.GetTxtWidth(text, 10, 1);
  font.GetHzWidth(text, 10, 1);
  return 0;
}
