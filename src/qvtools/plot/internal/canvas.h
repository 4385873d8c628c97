#pragma once

/// What pages are drawn on: a file of one format. Marks lie on each other in the order in which they are drawn; in SVG
/// this holds within a layer, since a layer is one group there.
///
/// Marks are rounded to hundredths of a millimetre. Left out are marks outside of any page, and those with coordinates,
/// widths or angles that are not finite; coordinates beyond ten kilometres are drawn there. Strokes of one pen that
/// meet are joined to one path. Memory that runs out is reported (301), and `finish` is false then.

#include <memory>
#include <string>
#include <vector>

#include "qvtools/display/internal/path.h"

namespace qv::detail {

/// A colour on paper, each part 0 to 255.
struct Ink {
  unsigned char red = 0;
  unsigned char green = 0;
  unsigned char blue = 0;
  bool operator==(const Ink&) const = default;
};

/// How a path is stroked: letters, outlines and dots have round ends and joins, dashes butt ends, wide polylines butt
/// ends and mitred joins.
struct Stroke {
  enum class Ends : char { Round, Butt };
  enum class Joins : char { Round, Mitred };
  double width = 0;  ///< in mm, above 0
  Ink ink;
  Ends ends = Ends::Round;
  Joins joins = Joins::Round;
  bool operator==(const Stroke&) const = default;
};

/// A text that can be found and copied; it lies invisibly under its strokes.
struct FoundText {
  std::string text;  ///< UTF-8
  PathPoint at;      ///< where its base line begins
  double height;     ///< of its capitals, in mm
  double angle;      ///< in radians, counter-clockwise
  double advance;    ///< the length of the whole text along its base line, in mm
};

struct Page {
  double width;  ///< in mm
  double height;
  std::string file;   ///< whose page it is, for the outline of the document; UTF-8
  std::string sheet;  ///< its name in it; empty where the file has one page
};

struct PlotLayer {
  std::string name;  ///< UTF-8
  bool plotted = true;
};

class Canvas {
 public:
  virtual ~Canvas() = default;
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  virtual void begin_page(const Page& page) = 0;
  virtual void end_page() = 0;

  /// The index of a layer: the same for layers of one name, so that the drawings of a document share them.
  virtual int add_layer(const PlotLayer& layer) = 0;
  /// What follows belongs to this layer, an index of `add_layer`; any other number means none. The choice outlasts
  /// pages. A figure begins with no layer, which is that of the marks among which it is placed, and has its own choice.
  virtual void set_layer(int layer) = 0;

  virtual void stroke(const Path& path, const Stroke& stroke) = 0;
  /// Fills the figures of a path, each closed, by the winding rule.
  virtual void fill(const Path& path, Ink ink) = 0;
  virtual void text(const FoundText& text) = 0;

  /// Whether figures can be kept once and placed often. What is drawn between `begin_figure` and `end_figure`, within a
  /// page or outside, is kept and not shown; `place` shows it, moved. Figures are not begun within each other, but may
  /// place those that are complete.
  virtual bool keeps_figures() const { return false; }
  virtual int begin_figure() { return -1; }
  virtual void end_figure() {}
  virtual void place(int /*figure*/, PathPoint /*by*/) {}

  /// Writes all of the file; false when anything could not be written, or there was no page, or more pages or pixels
  /// than the format can hold: no file is left then, or the old one.
  virtual bool finish() = 0;

 protected:
  Canvas() = default;
};

struct CanvasOptions {
  std::string title;      ///< of the document, UTF-8
  double dpi = 300;       ///< of pictures of pixels
  bool smooth = false;    ///< pictures of pixels are drawn four times as large and scaled down
  bool readable = false;  ///< SVG: texts as text elements, invisible
  bool dated = false;     ///< PDF: with the time of writing
};

/// Files of each format; null when the file cannot be created or memory runs out. SVG and PNG hold one page.
///
/// PDF goes to the file while it is drawn; only kept figures stay in memory until a page ends. SVG stays in memory,
/// about 25 bytes a line. PNG keeps the marks, some 50 bytes each and 8 a point, and draws them part by part when it is
/// finished, so that a picture may have up to 65535 pixels each way, smooth or not. Layers that are not plotted are
/// hidden in PDF and SVG, and left out of PNG.
std::unique_ptr<Canvas> pdf_canvas(const std::string& path, const CanvasOptions& options);
std::unique_ptr<Canvas> svg_canvas(const std::string& path, const CanvasOptions& options);
std::unique_ptr<Canvas> png_canvas(const std::string& path, const CanvasOptions& options);

}  // namespace qv::detail
