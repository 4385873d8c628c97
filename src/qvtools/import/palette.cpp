#include <array>

#include "qvtools/import/import.h"
#include "qvtools/import/internal/output.h"

namespace qv {

namespace {

using Palette = std::array<std::uint32_t, 256>;

/// Colours 10 to 249 are 24 hues of 15 degrees, each in five steps of value, odd ones half as strong.
constexpr Palette make_palette() {
  Palette palette{};
  constexpr std::uint32_t kFirst[] = {0x000000, 0xFF0000, 0xFFFF00, 0x00FF00, 0x00FFFF,
                                      0x0000FF, 0xFF00FF, 0xFFFFFF, 0x808080, 0xC0C0C0};
  constexpr std::uint32_t kGreys[] = {0x333333, 0x505050, 0x696969, 0x828282, 0xBEBEBE, 0xFFFFFF};
  constexpr int kValues[] = {255, 165, 127, 76, 38};
  for (std::size_t i = 0; i < 10; ++i) palette[i] = kFirst[i];
  for (std::size_t i = 250; i < 256; ++i) palette[i] = kGreys[i - 250];
  for (int i = 10; i < 250; ++i) {
    const int hue = i / 10 - 1;  // of 24
    const int value = kValues[i % 10 / 2];
    const int least = i % 2 ? value / 2 : 0;
    const int sector = hue / 4;
    const int part = hue % 4;  // quarters on the way through the sector
    const int rising = least + (value - least) * part / 4;
    const int falling = least + (value - least) * (4 - part) / 4;
    const int r[] = {value, falling, least, least, rising, value};
    const int g[] = {rising, value, value, falling, least, least};
    const int b[] = {least, least, rising, value, value, falling};
    palette[static_cast<std::size_t>(i)] = static_cast<std::uint32_t>(r[sector] << 16 | g[sector] << 8 | b[sector]);
  }
  return palette;
}
constexpr Palette kPalette = make_palette();
static_assert(kPalette[12] == 0xA50000 && kPalette[13] == 0xA55252 && kPalette[21] == 0xFF9F7F);
static_assert(kPalette[30] == 0xFF7F00 && kPalette[51] == 0xFFFF7F && kPalette[90] == 0x00FF00);

}  // namespace

std::uint32_t standard_color(int number) {
  return number >= 0 && number < 256 ? kPalette[static_cast<std::size_t>(number)] : 0;
}

int nearest_color(int rgb) {
  int best = 7;
  int least = 1 << 30;
  for (int i = 1; i < 256; ++i) {
    const auto apart = [&](int shift) {
      const int d = (rgb >> shift & 255) - static_cast<int>(kPalette[static_cast<std::size_t>(i)] >> shift & 255);
      return d * d;
    };
    const int distance = apart(16) + apart(8) + apart(0);
    if (distance >= least) continue;
    least = distance;
    best = i;
  }
  return best;
}

}  // namespace qv
