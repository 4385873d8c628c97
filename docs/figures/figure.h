#pragma once

/// The pictures of the manual, each drawn by a snippet that the page shows beside it:
///
///     FIGURE(elevation_mark) {
///       //[
///       sgt.Draw_BiaoGao(0, 0, 3.6F, 0);
///       //]
///       figure.point(0, 0, "x, y", Side::Below);
///     }
///
/// A page shows the picture as `![Elevation mark](figures/elevation_mark.svg)` and what stands between the marks (or,
/// without marks, all of the snippet) as `{{code elevation_mark}}`. The composer `sgt` is new, at the scale 1:50; the
/// picture shows everything that it holds in the end, to scale. `figure` explains it: its marks lie over the drawing in
/// a colour of their own. Places are model units of the drawing, texts UTF-8.

#include <memory>
#include <string>
#include <vector>

#include "qvtools.h"

namespace manual {

/// On which side of its place a label stands.
enum class Side { Left, Right, Above, Below, AboveLeft, AboveRight, BelowLeft, BelowRight };

class Figure {
 public:
  /// Pictures go to files NAME.svg or NAME.png in this folder.
  Figure(std::string directory, std::string name);

  CBase_SGT& sgt() { return *sgt_; }

  /// Shows the drawing k times as large as on a sheet; the explaining marks keep their size. Call it before those.
  void zoom(float k) { zoom_ = k; }
  /// A length of the picture's page, in mm, in model units.
  float mm(float length) const { return length * sgt_->m_fBiLiChi / zoom_; }

  /// A dot with a label.
  void point(float x, float y, const char* label, Side side = Side::AboveRight);
  /// A label alone.
  void note(float x, float y, const char* label, Side side = Side::Right);
  /// A label (dx, dy) mm away, with a line to the place.
  void leader(float x, float y, float dx, float dy, const char* label);
  /// A length with extension lines and arrows at both ends, `off` mm to the left of the way from point 1 to point 2.
  void length(float x1, float y1, float x2, float y2, const char* label, float off = 5);
  /// An angle in degrees from a1 to a2, clockwise when a2 is below a1, with an arrow at its end. `r` in mm.
  void angle(float x, float y, float r, float a1, float a2, const char* label);
  /// An arrow to point 2.
  void arrow(float x1, float y1, float x2, float y2);
  /// A thin line, dashed where it is asked for.
  void line(float x1, float y1, float x2, float y2, bool dashed = false);
  /// The caller's axes at a place, for pictures of placements. Lengths in mm.
  void axes(float x, float y, float angle = 0, float length = 12);

  /// A picture made of pixels instead: it becomes NAME.png, and the composer's drawing is not shown.
  void pixels(const qv::BitmapContext& bitmap);
  /// Another drawing instead of the composer's, in mm of the page. One of several parts of a picture becomes
  /// NAME_PART.png.
  void drawing(DXF& document, const char* part = nullptr);

  /// Writes the picture; false when it cannot.
  bool save();

 private:
  /// The drawing with the layer of the marks, which comes last, so that a snippet may still size its tables.
  DXF& marked();
  void text(float x, float y, float angle, const char* label, Side side);
  void head(float x, float y, float angle);

  std::string path_;
  std::unique_ptr<CBase_SGT> sgt_;
  float zoom_ = 1;
  bool marked_ = false;
  bool saved_ = false;
};

using Snippet = void (*)(Figure& figure, CBase_SGT& sgt);

/// The path of a font that the build has made: "txt.shx".
std::string font_file(const char* name);
void set_font_folder(const std::string& folder);

/// A snippet and its name; the macro `FIGURE` adds it to the list.
struct NamedSnippet {
  const char* name;
  Snippet draw;
};
std::vector<NamedSnippet>& snippets();
bool add_snippet(const char* name, Snippet draw);

}  // namespace manual

#define FIGURE(name)                                                                                   \
  static void figure_##name([[maybe_unused]] manual::Figure& figure, [[maybe_unused]] CBase_SGT& sgt); \
  [[maybe_unused]] static const bool kAdded_##name = manual::add_snippet(#name, figure_##name);        \
  static void figure_##name([[maybe_unused]] manual::Figure& figure, [[maybe_unused]] CBase_SGT& sgt)
