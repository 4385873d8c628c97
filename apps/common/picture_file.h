#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "qvtools.h"

namespace qvapps {

/// While it lives, the program's screen is a picture of this size: drawing is cut to it. A report goes to standard
/// error.
class PictureScreen {
 public:
  explicit PictureScreen(CSize size) : before_(qv::CurrentHost()), host_(size) { qv::SetHost(&host_); }
  ~PictureScreen() { qv::SetHost(&before_); }
  PictureScreen(const PictureScreen&) = delete;
  PictureScreen& operator=(const PictureScreen&) = delete;

 private:
  qv::Host& before_;
  qv::ConsoleHost host_;
};

/// Whether a path has an ending, which is given in small letters; the path may have capitals.
bool has_ending(const std::string& path, std::string_view ending);

using Draw = std::function<void(CDC&)>;

/// How drawings become files, by the ending of the path.
enum class PictureKind { Png, Svg, Pdf, Emf, Unknown };
struct PictureFormat {
  const char* ending;
  PictureKind kind;
  bool (*save)(const std::string& path, CSize size, COLORREF background, const Draw& draw);
};
/// The kinds that this system writes.
std::span<const PictureFormat> picture_formats();
/// The kind of a path; `Unknown` when this system does not write it.
PictureKind picture_kind(const std::string& path);
/// The endings in words: ".png, .svg or .pdf".
std::string picture_endings();

/// The size in which a picture of so many pixels is drawn: that of a PDF page, 300 dots an inch, is twice as large, so
/// that 1600 pixels become 27 cm.
CSize drawn_size(PictureKind kind, CSize pixels);

/// Writes what `draw` draws on a picture of the drawn size and a background, a PDF page being a printer's. False when
/// the file cannot be written, or is of an unknown kind.
bool save_drawn(const std::string& path, CSize size, COLORREF background, const Draw& draw);

/// Fills a picture of the size with one colour.
void fill_background(CDC& dc, CSize size, COLORREF background);

/// The `save` of a format whose adapter writes a bitmap, and of one whose adapter hands out a context to draw on.
template <bool (*write)(const qv::BitmapContext&, const std::string&)>
bool save_bitmap(const std::string& path, CSize size, COLORREF background, const Draw& draw) {
  qv::BitmapContext bitmap(size.cx, size.cy, background);
  draw(bitmap);
  return write(bitmap, path);
}
template <bool (*write)(const std::string&, CSize, const Draw&)>
bool save_vector(const std::string& path, CSize size, COLORREF background, const Draw& draw) {
  return write(path, size, [&](CDC& dc) {
    fill_background(dc, size, background);
    draw(dc);
  });
}

}  // namespace qvapps
