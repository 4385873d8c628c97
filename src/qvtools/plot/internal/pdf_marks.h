#pragma once

/// The marks of one page or one kept figure in PDF's operators. Lengths are millimetres with two decimals.

#include <set>

#include "qvtools/plot/internal/found_font.h"
#include "qvtools/plot/internal/path_walk.h"

namespace qv::detail {

class PdfMarks {
 public:
  PdfMarks(BlockSink& sink, FoundFont& font) : text_(sink), walk_(*this), font_(font) {}

  /// Before all marks of a page: millimetres instead of points.
  void scale_page();
  void set_layer(int layer) { layer_ = layer; }
  void stroke(const Path& path, const Stroke& stroke);
  void fill(const Path& path, Ink ink);
  void found_text(const FoundText& text);
  void place(int figure, PathPoint by);
  /// Behind all marks.
  void end();

  /// What the marks use, for the resources.
  const std::set<int>& layers() const { return layers_; }
  const std::set<int>& figures() const { return figures_; }
  bool has_text() const { return has_text_; }

  // What the walk along a path tells.
  void move(GridPoint p) { point(p, "m\n"); }
  void line(GridPoint p) { point(p, "l\n"); }
  void arc(PathPoint from, const Path::Piece& arc);
  void close() { text_.put("h\n"); }

 private:
  // Operators of paths and those of texts do not mix, and layers and colours change between them only.
  enum class Open : char { Nothing, Strokes, Text };

  void turn_to(Open open);
  void enter_layer();
  void choose_pen(const Stroke& stroke);
  void color(Ink ink, std::string_view gray, std::string_view rgb);
  void put_point(GridPoint p) {
    text_.number<2>(p.x);
    text_.put(' ');
    text_.number<2>(p.y);
    text_.put(' ');
  }
  void point(GridPoint p, std::string_view op) {
    put_point(p);
    text_.put(op);
  }

  TextWriter text_;
  PathWalk<PdfMarks> walk_;
  FoundFont& font_;
  Open open_ = Open::Nothing;
  int layer_ = -1;
  int entered_ = -1;  // the layer that the marks are in

  // The state of the page; a figure finds that of the page that shows it, so nothing is known at first.
  Stroke pen_;
  bool knows_pen_ = false;
  Ink filling_;
  bool knows_filling_ = false;
  std::int64_t font_size_ = -1;
  std::int64_t stretch_ = -1;

  std::int64_t path_from_ = 0;
  bool has_text_ = false;
  std::set<int> layers_;
  std::set<int> figures_;
};

}  // namespace qv::detail
