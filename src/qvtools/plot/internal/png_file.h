#pragma once

/// A PNG file (ISO/IEC 15948), row by row.

#include <cstdint>
#include <string>
#include <vector>

#include "qvtools/plot/internal/deflater.h"
#include "qvtools/system/saved_file.h"

namespace qv::detail {

class PngFile {
 public:
  /// What a pixel is: an index into a palette of as many bits, a grey of a byte, or red, green and blue of a byte each.
  enum class Pixels : char { Palette, Gray, Color };

  explicit PngFile(const std::string& path);
  bool is_open() const { return file_.is_open(); }

  /// Colours are 0xRRGGBB; a palette has 1 to 256.
  void begin(int width, int height, double dpi, Pixels pixels, const std::vector<std::uint32_t>& palette);
  /// The next row from the top, of `width` colours.
  void row(const std::uint32_t* colors);
  /// False when anything could not be written.
  bool finish();

 private:
  struct DataSink final : BlockSink {
    explicit DataSink(PngFile& owner) : file(owner) {}
    void take(std::string_view block) override;
    PngFile& file;
  };
  void chunk(std::string_view type, std::string_view data);
  int index_of(std::uint32_t color);

  SavedFile file_;
  bool good_ = true;
  DataSink data_;
  Deflater deflater_;
  int width_ = 0;
  Pixels pixels_ = Pixels::Color;
  int bits_ = 8;
  std::vector<std::uint32_t> palette_;
  std::size_t last_index_ = 0;
  std::string row_;
};

}  // namespace qv::detail
