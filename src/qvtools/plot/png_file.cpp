#include "qvtools/plot/internal/png_file.h"

#include <bit>
#include <cmath>

namespace qv::detail {
namespace {

constexpr double kMetresPerInch = 0.0254;

std::string big_endian(std::uint32_t value) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 255);
  return bytes;
}

}  // namespace

void PngFile::DataSink::take(std::string_view block) {
  if (!block.empty()) file.chunk("IDAT", block);
}

PngFile::PngFile(const std::string& path) : file_(path.c_str()), data_(*this), deflater_(data_) {}

void PngFile::chunk(std::string_view type, std::string_view data) {
  // The sum is that of type and data.
  const std::string head = big_endian(static_cast<std::uint32_t>(data.size())) + std::string(type);
  uLong sum = crc32(0, reinterpret_cast<const Bytef*>(type.data()), static_cast<uInt>(type.size()));
  // zlib takes a null text for the beginning of a sum.
  if (!data.empty()) sum = crc32(sum, reinterpret_cast<const Bytef*>(data.data()), static_cast<uInt>(data.size()));
  const std::string tail = big_endian(static_cast<std::uint32_t>(sum));
  for (const std::string_view part : {std::string_view(head), data, std::string_view(tail)}) {
    good_ = good_ && file_.write(part.data(), part.size());
  }
}

void PngFile::begin(int width, int height, double dpi, Pixels pixels, const std::vector<std::uint32_t>& palette) {
  width_ = width;
  pixels_ = pixels;
  palette_ = palette;
  constexpr std::string_view kSignature = "\x89PNG\r\n\x1A\n";
  good_ = good_ && file_.write(kSignature.data(), kSignature.size());
  int type = pixels == Pixels::Gray ? 0 : 2;
  if (pixels == Pixels::Palette) {
    type = 3;
    // As many bits as the last index has, rounded up to 1, 2, 4 or 8.
    const auto last = static_cast<unsigned>(palette.size() - 1);
    bits_ = static_cast<int>(std::bit_ceil(std::max<unsigned>(static_cast<unsigned>(std::bit_width(last)), 1)));
  }
  std::string header = big_endian(static_cast<std::uint32_t>(width)) + big_endian(static_cast<std::uint32_t>(height));
  for (const int byte : {bits_, type, 0, 0, 0}) header += static_cast<char>(byte);
  chunk("IHDR", header);
  if (pixels == Pixels::Palette) {
    std::string colors;
    for (const std::uint32_t color : palette) colors += big_endian(color).substr(1);
    chunk("PLTE", colors);
  }
  const std::string density = big_endian(static_cast<std::uint32_t>(std::lround(dpi / kMetresPerInch)));
  chunk("pHYs", density + density + '\1');
}

int PngFile::index_of(std::uint32_t color) {
  if (palette_[last_index_] != color) {
    const auto found = std::find(palette_.begin(), palette_.end(), color);
    last_index_ = found == palette_.end() ? 0 : static_cast<std::size_t>(found - palette_.begin());
  }
  return static_cast<int>(last_index_);
}

void PngFile::row(const std::uint32_t* colors) {
  row_.assign(1, '\0');  // no filter: rows of drawings repeat as they are
  unsigned bits = 0;
  int filled = 0;
  for (int x = 0; x < width_; ++x) {
    const std::uint32_t color = colors[x];
    if (pixels_ == Pixels::Color) {
      for (const int shift : {16, 8, 0}) row_ += static_cast<char>(color >> shift & 255);
      continue;
    }
    bits = bits << bits_ | (pixels_ == Pixels::Gray ? color & 255 : static_cast<unsigned>(index_of(color)));
    filled += bits_;
    if (filled == 8) {
      row_ += static_cast<char>(bits & 255);
      filled = 0;
    }
  }
  if (filled != 0) row_ += static_cast<char>(bits << (8 - filled) & 255);
  deflater_.take(row_);
}

bool PngFile::finish() {
  deflater_.finish();
  chunk("IEND", {});
  return good_ && file_.commit();
}

}  // namespace qv::detail
