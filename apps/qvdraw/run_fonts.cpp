#include <algorithm>
#include <cmath>
#include <cstdio>

#include "commands.h"
#include "common/picture_file.h"
#include "common/system.h"
#include "failure.h"
#include "qvtools/system/saved_file.h"

namespace qvdraw {

namespace {

using Kind = qv::ShapeFile::Kind;

qv::ShapeFile load_font(const std::string& path) {
  qv::ShapeFile font;
  if (!font.Load(path.c_str())) throw failure(path, font.error().c_str());
  return font;
}

const char* kind_of(const qv::ShapeFile& font) {
  if (font.kind() == Kind::Unifont) return "a Unifont";
  if (font.kind() == Kind::BigFont) return font.extended() ? "an extended big font" : "a big font";
  return font.is_font() ? "a text font" : "a file of single shapes";
}

void describe(const qv::ShapeFile& font, const std::string& path) {
  std::printf("%s: %s, \"%s\"\n", path.c_str(), kind_of(font), qvapps::to_utf8(font.name().c_str()).c_str());
  std::printf("%zu shapes", font.shapes().size());
  if (font.is_font()) std::printf("; capitals %g high, letters reach %g below", font.above(), font.below());
  std::printf("\n%s\n", font.is_plain() ? "plain: it is drawn as it is"
                                        : "not plain: programs load it made plain, or qvdraw fonts makes a file of it");
}

/// The plain font of the kind that is asked for, or that the file has.
qv::PlainFont plain_font(const qv::ShapeFile& font, const FontsRequest& request) {
  const bool big = request.big || font.kind() == Kind::BigFont;
  if (big) return qv::plain_big_font(font, request.page.value_or(qv::CodePage::Gbk));
  return qv::plain_text_font(font, request.page.value_or(qv::CodePage::Windows1252));
}

void save_plain(const qv::ShapeFile& font, const FontsRequest& request) {
  const qv::PlainFont plain = plain_font(font, request);
  if (plain.bytes.empty())
    throw std::runtime_error(request.font + ": has no characters for " + (request.big ? "a big font" : "this font"));
  if (!qv::save_bytes(request.out.c_str(), plain.bytes.data(), plain.bytes.size()))
    throw std::runtime_error(request.out + ": cannot be written");
  std::printf("%s: %d characters", request.out.c_str(), plain.taken);
  if (plain.without) std::printf("; %d left out, whose codes have no place", plain.without);
  if (plain.tooLong) std::printf("; %d left out, which are too long", plain.tooLong);
  std::printf("\n");
}

std::string label_of(const qv::ShapeFile& font, const qv::ShapeFile::Shape& shape) {
  char text[16];
  const char* const form = font.kind() == Kind::Unifont ? "U+%04X" : font.kind() == Kind::BigFont ? "%04X" : "%d";
  std::snprintf(text, sizeof text, form, static_cast<unsigned>(shape.code));
  return font.is_font() || shape.name.empty() ? text : shape.name;
}

/// A table of all shapes, each in a cell of 10 by 12 with its code below.
class FontSheet {
 public:
  static constexpr double kWidth = 10;
  static constexpr double kHeight = 12;

  explicit FontSheet(const qv::ShapeFile& font) : font_(font) {
    sheet_.New_MemDxf();
    columns_ = std::max(1, static_cast<int>(std::ceil(std::sqrt(static_cast<double>(font.shapes().size()) * 1.5))));
    for (std::size_t i = 0; i < font.shapes().size(); ++i) add(font.shapes()[i], static_cast<int>(i));
  }
  DXF& sheet() { return sheet_; }
  int columns() const { return columns_; }

 private:
  void add(const qv::ShapeFile::Shape& shape, int index) {
    const double left = index % columns_ * kWidth;
    const double bottom = -(index / columns_) * kHeight;
    const qv::ShapeOutline outline = font_.outline(shape, std::max(font_.above(), 10.0) / 200);
    draw(outline, left, bottom);
    constexpr float kLabel = 1.4F;
    sheet_.Write_Text(static_cast<float>(left + 0.5), static_cast<float>(bottom + 0.6), 0, kLabel, 0,
                      label_of(font_, shape).c_str(), "STANDARD", "0", "8", "CONTINUOUS");
  }

  /// The strokes in the cell: letters on one base line, single shapes and what is larger fitted.
  void draw(const qv::ShapeOutline& outline, double left, double bottom) {
    double low[2] = {0, 0};
    double high[2] = {0, 0};
    for (const auto& p : outline.points) {
      low[0] = std::min(low[0], p.x), low[1] = std::min(low[1], p.y);
      high[0] = std::max(high[0], p.x), high[1] = std::max(high[1], p.y);
    }
    constexpr double kRoomX = 8;
    constexpr double kRoomY = 8.5;
    constexpr double kCapital = 5;
    const double letter = font_.is_font() ? kCapital / font_.above() : 1e9;
    const double k =
        std::min({letter, kRoomX / std::max(high[0] - low[0], 1e-6), kRoomY / std::max(high[1] - low[1], 1e-6)});
    const double x0 = left + (kWidth - k * (low[0] + high[0])) / 2;
    const double y0 = bottom + (font_.is_font() ? std::max(4.4, 2.6 - k * low[1]) : 2.6 - k * low[1]);
    double x = 0;
    double y = 0;
    const auto at = [&](double v, double origin) { return static_cast<float>(origin + k * v); };
    for (const auto& p : outline.points) {
      if (p.drawn) sheet_.Write_Line(at(x, x0), at(y, y0), 0, at(p.x, x0), at(p.y, y0), 0, "0", "7", "CONTINUOUS");
      x = p.x;
      y = p.y;
    }
  }

  const qv::ShapeFile& font_;
  DXF sheet_;
  int columns_;
};

void save_sheet(const qv::ShapeFile& font, const std::string& path) {
  if (qvapps::picture_kind(path) == qvapps::PictureKind::Unknown)
    throw UsageError(path + ": ends in .shx, or " + qvapps::picture_endings());
  if (font.shapes().empty()) throw std::runtime_error("the font has no shapes");
  FontSheet sheet(font);
  constexpr int kCell = 80;
  PictureOptions options;
  options.size = CSize(std::clamp(sheet.columns() * kCell, 400, 16000), 400);
  save_picture(sheet.sheet(), path, options);
}

}  // namespace

void run_fonts(const FontsRequest& request) {
  const qv::ShapeFile font = load_font(request.font);
  if (request.out.empty())
    describe(font, request.font);
  else if (qvapps::has_ending(request.out, ".shx"))
    save_plain(font, request);
  else
    save_sheet(font, request.out);
}

}  // namespace qvdraw
