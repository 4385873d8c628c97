// Plain fonts, of vectors alone, made of fonts of any kind.

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>

#include "qvtools/fonts/internal/font_file.h"
#include "qvtools/fonts/internal/shape_code.h"
#include "qvtools/fonts/shape_file.h"
#include "qvtools/services/internal/out_of_memory.h"

namespace qv {

namespace {

using namespace detail;

constexpr double kUsualHeight = 16;  // of a big font that tells none

/// The codes that draw an outline on a grid of whole units, `k` of them to a unit of the file.
class GridWriter {
 public:
  explicit GridWriter(double k) : k_(k) {}

  /// More than the longest shape's where the outline needs more: all of them could be millions.
  std::string codes_of(const ShapeOutline& outline) {
    for (std::size_t i = 0; i < outline.points.size() && !is_too_long(); ++i) {
      const ShapeOutline::Point& p = outline.points[i];
      const bool last = i + 1 == outline.points.size();
      if (!p.drawn && !last) continue;  // of several moves without the pen, where the last one ends counts
      if (p.drawn && i > 0 && !outline.points[i - 1].drawn) move_to(outline.points[i - 1], false);
      move_to(p, p.drawn);
    }
    close_run();
    return std::move(codes_);
  }

 private:
  bool is_too_long() const { return codes_.size() + run_.size() > static_cast<std::size_t>(kLongestShape); }

  void move_to(const ShapeOutline::Point& p, bool drawn) {
    const auto grid = [&](double v) { return std::lround(std::clamp(v * k_, -1e6, 1e6)); };
    const long x = grid(p.x);
    const long y = grid(p.y);
    if (x == x_ && y == y_) return;
    if (down_ != drawn) {
      close_run();
      codes_ += static_cast<char>(drawn ? shape_code::kPenDown : shape_code::kPenUp);
      down_ = drawn;
    }
    constexpr long kLongest = 127;
    const long dx = x - x_;
    const long dy = y - y_;
    const long pieces = (std::max(std::labs(dx), std::labs(dy)) + kLongest - 1) / kLongest;
    for (long i = 0; i < pieces; ++i) {
      const auto part = [&](long d) { return static_cast<char>(d * (i + 1) / pieces - d * i / pieces); };
      run_ += part(dx);
      run_ += part(dy);
    }
    x_ = x;
    y_ = y;
  }

  /// Puts out the moves since the pen was raised or lowered last.
  void close_run() {
    const bool one = run_.size() == 2;
    if (run_.empty()) return;
    codes_ += static_cast<char>(one ? shape_code::kMove : shape_code::kMoves);
    codes_ += run_;
    if (!one) codes_.append(2, '\0');
    run_.clear();
  }

  double k_;
  long x_ = 0;
  long y_ = 0;
  std::optional<bool> down_;  // readers begin with a raised pen or a lowered one
  std::string codes_;
  std::string run_;
};

/// A plain font being made: the first shape describes it.
class PlainWriter {
 public:
  explicit PlainWriter(const ShapeFile& file) : file_(file), height_(file.above() > 0 ? file.above() : kUsualHeight) {
    constexpr double kFinest = 250;  // units to the height of a capital: it is told in one byte
    k_ = file.is_plain() ? 1 : std::max(1.0, std::floor(kFinest / height_));
    const auto told = [&](double v) { return static_cast<char>(static_cast<int>(std::min(v * k_, 255.0))); };
    std::string record = file.name();
    record += '\0';
    record += told(height_);
    record += told(file.below());
    record.append(2, '\0');
    shapes_.push_back({0, record});
  }

  void add(int code, const ShapeFile::Shape& shape) {
    // Half of a hundredth is for the arcs, half for the grid.
    const double tolerance = height_ / 200;
    std::string record(1, '\0');
    record += GridWriter(k_).codes_of(file_.outline(shape, tolerance));
    record += '\0';
    if (record.size() > static_cast<std::size_t>(kLongestShape)) {
      ++font_.tooLong;
      return;
    }
    shapes_.push_back({code, std::move(record)});
    ++font_.taken;
  }
  void leave_out() { ++font_.without; }

  /// The font, its file made by `make` of the shapes in order; the first of one code is kept.
  template <class Make>
  PlainFont finish(const Make& make) {
    std::ranges::stable_sort(shapes_, {}, &FontShape::code);
    const auto same = [](const FontShape& a, const FontShape& b) { return a.code == b.code; };
    shapes_.erase(std::unique(shapes_.begin(), shapes_.end(), same), shapes_.end());
    if (font_.taken > 0) font_.bytes = make(shapes_);
    return std::move(font_);
  }

 private:
  const ShapeFile& file_;
  double height_;
  double k_;
  std::vector<FontShape> shapes_;
  PlainFont font_;
};

struct Sign {
  int byte;
  char32_t c;
};
// The text font's own, each by all the characters that are drawn as it.
constexpr Sign kSigns[] = {{127, 0xB0}, {128, 0xB1}, {129, 0x2205}, {129, 0xD8}, {129, 0x2300}};

char32_t character_of(int byte, CodePage page) {
  std::u32string points;
  decode_text(page, std::string_view(reinterpret_cast<const char*>(&byte), 1), points);
  return points.size() == 1 && points[0] < kSignBase ? points[0] : 0;
}

/// The two bytes of a big font's character in GB2312; 0 where it has none.
int gb2312_code(const ShapeFile& file, int code, CodePage page) {
  char32_t c = static_cast<char32_t>(code);
  int gbk = code;
  if (file.kind() == ShapeFile::Kind::BigFont && page != CodePage::Gbk) {
    const char bytes[] = {static_cast<char>(code >> 8), static_cast<char>(code & 255)};
    std::u32string points;
    decode_text(page, {bytes, 2}, points);
    c = points.size() == 1 ? points[0] : 0;
  }
  if (file.kind() == ShapeFile::Kind::Unifont || page != CodePage::Gbk) gbk = c >= 0x80 ? gbk_code(c) : 0;
  constexpr int kFirst = 0xA1;
  constexpr int kLast = 0xFE;
  const auto in_rows = [](int byte) { return byte >= kFirst && byte <= kLast; };
  return in_rows(gbk >> 8) && in_rows(gbk & 255) ? gbk : 0;
}

}  // namespace

PlainFont plain_text_font(const ShapeFile& file, CodePage page) {
  const auto make = [&] {
    if (file.kind() != ShapeFile::Kind::Shapes && file.kind() != ShapeFile::Kind::Unifont) return PlainFont();
    PlainWriter writer(file);
    if (file.kind() == ShapeFile::Kind::Unifont) {
      for (const Sign& sign : kSigns)
        if (const ShapeFile::Shape* const shape = file.find(static_cast<int>(sign.c))) writer.add(sign.byte, *shape);
      for (int byte = 1; byte < 256; ++byte) {
        const int c = byte < 127 ? byte : static_cast<int>(character_of(byte, page));
        const ShapeFile::Shape* const shape = c ? file.find(c) : nullptr;
        if (shape && (byte < 127 || byte > 129)) writer.add(byte, *shape);
      }
    } else {
      for (const ShapeFile::Shape& shape : file.shapes())
        shape.code < 256 ? writer.add(shape.code, shape) : writer.leave_out();
    }
    return writer.finish([](const auto& shapes) { return text_font_file(shapes); });
  };
  return unless_out_of_memory(make, PlainFont());
}

PlainFont plain_big_font(const ShapeFile& file, CodePage page) {
  const auto make = [&] {
    if (file.kind() != ShapeFile::Kind::BigFont && file.kind() != ShapeFile::Kind::Unifont) return PlainFont();
    PlainWriter writer(file);
    for (const ShapeFile::Shape& shape : file.shapes()) {
      const int code = gb2312_code(file, shape.code, page);
      code ? writer.add(code, shape) : writer.leave_out();
    }
    return writer.finish(
        [](const auto& shapes) { return big_font_file(shapes, shapes[1].code >> 8, shapes.back().code >> 8); });
  };
  return unless_out_of_memory(make, PlainFont());
}

namespace {

std::span<const unsigned char> bytes_of(const std::string& text) {
  return {reinterpret_cast<const unsigned char*>(text.data()), text.size()};
}

}  // namespace

/// Hands a font the bytes of a file. A friend function would lose its import from the DLL.
struct FontBlocks {
  static int adopt_txt(CShx& font, std::span<const unsigned char> file) { return font.adopt_txt(file); }
  static int adopt_hz(CShx& font, std::span<const unsigned char> file) { return font.adopt_hz(file); }
};

int LoadTextFont(CShx& font, const char* path) {
  const auto load = [&] {
    ShapeFile file;
    const bool whole = file.Load(path);
    if (file.is_unread()) return 0;
    if (font.m_pTxtIndex || !whole || file.is_plain()) return font.SetTxtFont("", path);
    return FontBlocks::adopt_txt(font, bytes_of(plain_text_font(file).bytes));
  };
  return unless_out_of_memory(load, 0);
}

int LoadBigFont(CShx& font, const char* path) {
  const auto load = [&] {
    ShapeFile file;
    const bool whole = file.Load(path);
    if (file.is_unread()) return 0;
    if (font.m_pHzIndex || !whole || file.is_plain()) return font.SetHzFont("", path);
    return FontBlocks::adopt_hz(font, bytes_of(plain_big_font(file).bytes));
  };
  return unless_out_of_memory(load, 0);
}

}  // namespace qv
