#pragma once

/// Pictures of one stream of drawing commands, drawn on different devices, and how far apart they are.

#include <cstdint>
#include <string>
#include <vector>

#include "qvtools/platform/device.h"

namespace qvtest {

struct Picture {
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> pixels;  // 0x00RRGGBB, row by row from the top
  std::uint32_t at(int x, int y) const {
    return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
  }
};

/// A picture of the size from 32-bit pixels whose highest byte says nothing.
Picture picture_of(CSize size, const std::uint32_t* pixels);

/// The size of the picture that `draw_commands` draws, and the paper that it is to be drawn on.
inline constexpr int kPictureWidth = 1008;
inline constexpr int kPictureHeight = 756;
inline constexpr COLORREF kPicturePaper = 0xE0F0FF;

/// Draws lines of all directions and styles, single and joined, pixels, fills of both rules and raster operations,
/// each group of commands in a cell of its own.
void draw_commands(CDC& dc, unsigned seed);

/// Where two pictures of the stream of a seed differ by more than devices may: a colour that stands nowhere within a
/// pixel in the other picture, unless a fill has its border there, or thin lines of other lengths. Empty when they
/// agree.
std::string difference(unsigned seed, const Picture& a, const Picture& b);

/// Binary PPM files. Reading returns an empty picture, writing false, on failure.
bool write_picture(const Picture& picture, const std::string& path);
Picture read_picture(const std::string& path);

}  // namespace qvtest
