#include "qvtools/display/appearance.h"

namespace qv {

namespace {

/// Colours 10 to 249 are 24 hues of 15 degrees, each in five steps of value, odd ones half as strong.
constexpr Palette make_palette() {
  Palette palette{};
  constexpr COLORREF kFirst[] = {rgb(0, 0, 0),       rgb(255, 0, 0),    rgb(255, 255, 0), rgb(0, 255, 0),
                                 rgb(0, 255, 255),   rgb(0, 0, 255),    rgb(255, 0, 255), rgb(255, 255, 255),
                                 rgb(128, 128, 128), rgb(192, 192, 192)};
  constexpr unsigned kGreys[] = {0x33, 0x50, 0x69, 0x82, 0xBE, 0xFF};
  constexpr unsigned kValues[] = {255, 165, 127, 76, 38};
  for (std::size_t i = 0; i < 10; ++i) palette[i] = kFirst[i];
  for (std::size_t i = 0; i < 6; ++i) palette[250 + i] = rgb(kGreys[i], kGreys[i], kGreys[i]);
  for (unsigned i = 10; i < 250; ++i) {
    const unsigned hue = i / 10 - 1;  // of 24
    const unsigned value = kValues[i % 10 / 2];
    const unsigned least = i % 2 ? value / 2 : 0;
    const unsigned sector = hue / 4;
    const unsigned part = hue % 4;  // quarters of the way through the sector
    const unsigned rising = least + (value - least) * part / 4;
    const unsigned falling = least + (value - least) * (4 - part) / 4;
    const unsigned r[] = {value, falling, least, least, rising, value};
    const unsigned g[] = {rising, value, value, falling, least, least};
    const unsigned b[] = {least, least, rising, value, value, falling};
    palette[i] = rgb(r[sector], g[sector], b[sector]);
  }
  return palette;
}
constexpr Palette kPalette = make_palette();
static_assert(kPalette[12] == rgb(0xA5, 0, 0) && kPalette[13] == rgb(0xA5, 0x52, 0x52));
static_assert(kPalette[30] == rgb(255, 127, 0) && kPalette[51] == rgb(255, 255, 127) && kPalette[90] == rgb(0, 255, 0));

}  // namespace

const Palette& StandardPalette() {
  return kPalette;
}

}  // namespace qv
