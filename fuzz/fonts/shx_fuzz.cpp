// Font files of any bytes: load, measure, draw. The first byte chooses the kind of font.

#include <cstddef>
#include <cstdint>

#include "../memory_file.h"
#include "qvtools/fonts/shx.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const MemoryFile file(data + 1, size - 1);
  if (!file.good()) return 0;
  CShx font;
  const int loaded = data[0] & 1 ? font.SetHzFont("", file.path().c_str()) : font.SetTxtFont("", file.path().c_str());
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
