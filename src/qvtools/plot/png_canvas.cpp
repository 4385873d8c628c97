#include <optional>

#include "qvtools/platform/bitmap/bitmap_dc.h"
#include "qvtools/plot/internal/checked_canvas.h"
#include "qvtools/plot/internal/pixel_marks.h"
#include "qvtools/plot/internal/png_file.h"

namespace qv::detail {
namespace {

constexpr double kMmPerInch = 25.4;
// Smooth pictures are drawn as many times as large, each way.
constexpr int kSmooth = 4;
constexpr int kLargestSize = 65535;
// A part of the picture, which is drawn at once: 4 MB, so that it stays near the processor.
constexpr int kPartWidth = 2048;
constexpr int kPartHeight = 512;
static_assert(kPartWidth % kSmooth == 0 && kPartHeight % kSmooth == 0);

constexpr std::uint32_t kWhite = 0xFFFFFF;

class PngCanvas final : public CheckedCanvas {
 public:
  PngCanvas(const std::string& path, const CanvasOptions& options)
      : file_(path), dpi_(options.dpi), times_(options.smooth ? kSmooth : 1) {}
  bool is_open() const { return file_.is_open(); }

 private:
  void open_page(const Page& page) override {
    ++pages_;
    width_ = pixels(page.width);
    height_ = pixels(page.height);
    marks_.emplace(page.height, dpi_ / kMmPerInch * times_, times_ == 1);
  }
  void close_page() override {}
  void new_layer(const PlotLayer& layer) override { plotted_.push_back(layer.plotted); }
  void choose_layer(int layer) override { shown_ = layer < 0 || plotted_[static_cast<std::size_t>(layer)]; }
  void draw_stroke(const Path& path, const Stroke& stroke) override {
    if (shown_) marks_->stroke(path, stroke);
  }
  void draw_fill(const Path& path, Ink ink) override {
    if (shown_) marks_->fill(path, ink);
  }
  void draw_text(const FoundText&) override {}

  /// 0 when it is too many, or the resolution is none.
  int pixels(double mm) const {
    const double count = std::round(mm * dpi_ / kMmPerInch);
    return count >= 0 && count <= kLargestSize ? std::max(static_cast<int>(count), 1) : 0;
  }

  bool write_file() override {
    if (pages_ != 1 || width_ == 0 || height_ == 0) return false;
    constexpr std::size_t kPalette = 256;
    std::vector<std::uint32_t> colors = marks_->colors(kPalette);
    if (std::find(colors.begin(), colors.end(), kWhite) == colors.end()) colors.insert(colors.begin(), kWhite);
    const bool gray = std::all_of(colors.begin(), colors.end(), [](std::uint32_t c) {
      return (c >> 16 & 255) == (c & 255) && (c >> 8 & 255) == (c & 255);
    });
    const bool few = colors.size() <= kPalette;
    PngFile::Pixels kind = PngFile::Pixels::Color;
    if (times_ == 1 && few) kind = PngFile::Pixels::Palette;
    if (times_ != 1 && few && gray) kind = PngFile::Pixels::Gray;
    file_.begin(width_, height_, dpi_, kind, colors);
    const int rows = std::min(kPartHeight / times_, height_);
    std::vector<std::uint32_t> band(static_cast<std::size_t>(rows) * static_cast<std::size_t>(width_));
    BitmapContext bitmap(std::min(kPartWidth, width_ * times_), rows * times_, rgb(255, 255, 255));
    if (bitmap.Width() == 0) throw std::bad_alloc();
    for (int top = 0; top < height_; top += rows) {
      for (int left = 0; left < width_; left += bitmap.Width() / times_) {
        const bool drawn = marks_->draw(bitmap, {bitmap.Width(), bitmap.Height()}, left * times_, top * times_);
        const int columns = std::min(bitmap.Width() / times_, width_ - left);
        for (int y = 0; y < rows; ++y) {
          std::uint32_t* const out = band.data() + static_cast<std::ptrdiff_t>(y) * width_ + left;
          if (drawn) {
            reduce(bitmap, y, columns, out);
          } else {
            std::fill(out, out + columns, kWhite);
          }
        }
        if (drawn) bitmap.Clear(rgb(255, 255, 255));
      }
      for (int y = 0; y < std::min(rows, height_ - top); ++y) {
        file_.row(band.data() + static_cast<std::ptrdiff_t>(y) * width_);
      }
    }
    return file_.finish();
  }
  /// Row y of the picture, drawn down.
  void reduce(const BitmapContext& bitmap, int y, int columns, std::uint32_t* out) const {
    const std::uint32_t* const from = bitmap.Pixels() + static_cast<std::ptrdiff_t>(y) * times_ * bitmap.Width();
    if (times_ == 1) {
      std::transform(from, from + columns, out, [](std::uint32_t pixel) { return pixel & kWhite; });
      return;
    }
    constexpr std::uint32_t kCount = kSmooth * kSmooth;
    for (int x = 0; x < columns; ++x) {
      // Sums of 16 bytes have 12 bits: red and blue are added side by side.
      std::uint32_t red_blue = 0, green = 0;
      for (int row = 0; row < kSmooth; ++row) {
        const std::uint32_t* const pixel = from + static_cast<std::ptrdiff_t>(row) * bitmap.Width() + x * kSmooth;
        for (int i = 0; i < kSmooth; ++i) {
          red_blue += pixel[i] & 0xFF00FF;
          green += pixel[i] >> 8 & 0xFF;
        }
      }
      const std::uint32_t half = kCount / 2;
      const std::uint32_t red = ((red_blue >> 16) + half) / kCount, blue = ((red_blue & 0xFFFF) + half) / kCount;
      out[x] = red << 16 | (green + half) / kCount << 8 | blue;
    }
  }

  PngFile file_;
  double dpi_;
  int times_;
  int pages_ = 0;
  int width_ = 0;
  int height_ = 0;
  std::vector<bool> plotted_;
  bool shown_ = true;  // the layer is plotted
  std::optional<PixelMarks> marks_;
};

}  // namespace

std::unique_ptr<Canvas> png_canvas(const std::string& path, const CanvasOptions& options) {
  return made_canvas<PngCanvas>(path, options);
}

}  // namespace qv::detail
