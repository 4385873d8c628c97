#pragma once

/// The abstract device context and its drawing objects: just what the library's drawing needs of a device. Adapters
/// implement `CDC`; coordinates are integer device units, x to the right and y down.

#include <array>
#include <vector>

#include "qvtools/platform/framework.h"

namespace qv {

/// How a pen draws lines; `Null` draws none.
enum class PenStyle { Solid, Dash, Dot, DashDot, DashDotDot, Null };
/// What is inside of an outline that crosses itself: every second part, or all that it winds about.
enum class FillRule { Alternate = 1, Winding = 2 };
/// Whether the gaps of dashed lines are left as they are or painted white.
enum class BackgroundMode { Transparent = 1, Opaque = 2 };

/// What drawing does to a pixel: replaces it by the pen's colour, inverts it, or combines both by exclusive or.
enum class RasterOp { Not = 6, XorPen = 7, CopyPen = 13 };

/// A colour from its three components, each 0 to 255.
constexpr COLORREF rgb(unsigned r, unsigned g, unsigned b) {
  return static_cast<COLORREF>((r & 255) | (g & 255) << 8 | (b & 255) << 16);
}

}  // namespace qv

/// A pen: line style, width in device units (0 and 1 both mean one pixel) and colour.
struct CPen {
  qv::PenStyle style = qv::PenStyle::Solid;
  int width = 1;
  COLORREF color = 0;
};

/// A brush: solid in one colour.
struct CBrush {
  COLORREF color = 0;
};

/// A polygon with its fill rule: the region that a device context fills.
class QV_API CRgn {
 public:
  CRgn() = default;
  /// Makes the polygon of n points (closed by itself) the region; returns 0, with an empty region, when n < 3 or
  /// memory runs out.
  int CreatePolygonRgn(const CPoint* points, int n, qv::FillRule rule);
  /// The bounding box of the points, right and bottom included; the empty rectangle for an empty region.
  CRect GetRgnBox() const;
  /// Whether any part of the region lies in the rectangle (borders included).
  bool RectInRegion(const CRect& rect) const;
  /// The points, their number and the rule.
  const CPoint* Points() const { return count_ <= kInline ? few_.data() : many_.data(); }
  int Count() const { return count_; }
  qv::FillRule Rule() const { return rule_; }

 private:
  static constexpr int kInline = 8;
  std::array<CPoint, kInline> few_;
  std::vector<CPoint> many_;
  int count_ = 0;
  qv::FillRule rule_ = qv::FillRule::Winding;
};

/// A device context. Selected pens and brushes are not owned: they must live while they are selected. A new context
/// has the stock black pen, the stock white brush, an opaque background and R2_COPYPEN.
class QV_API CDC {
 public:
  CDC();
  virtual ~CDC();
  CDC(const CDC&) = delete;
  CDC& operator=(const CDC&) = delete;

  /// Sets the current position.
  virtual void MoveTo(int x, int y) = 0;
  /// Draws with the pen from the current position to (x, y), which becomes the current position. The last pixel is
  /// left out, so a line of no length draws nothing.
  virtual void LineTo(int x, int y) = 0;
  /// Sets one pixel, whatever the pen and the raster operation are.
  virtual void SetPixel(int x, int y, COLORREF color) = 0;
  /// Fills the region with the brush, by the region's rule; no outline is drawn.
  virtual void FillRgn(const CRgn& region, const CBrush& brush) = 0;
  /// Width and height of the drawing area in device units: the picture, or the page when printing.
  virtual CSize GetResolution() const = 0;
  /// Whether it draws on paper, or records what is drawn.
  virtual bool IsPrinting() const { return false; }
  virtual bool IsMetafile() const { return false; }

  /// Selects a pen or brush and returns the one selected before.
  const CPen* SelectObject(const CPen* pen);
  const CBrush* SelectObject(const CBrush* brush);
  /// Pens that are always there, of one pixel.
  static const CPen* StockWhitePen();
  static const CPen* StockBlackPen();
  /// Sets the background mode or the raster operation and returns the one before.
  qv::BackgroundMode SetBkMode(qv::BackgroundMode mode);
  qv::RasterOp SetROP2(qv::RasterOp op);

  /// What is selected.
  const CPen& Pen() const { return *pen_; }
  const CBrush& Brush() const { return *brush_; }
  qv::BackgroundMode BkMode() const { return mode_; }
  qv::RasterOp Rop2() const { return op_; }

 protected:
  /// Called after the pen, the background mode or the raster operation changed.
  virtual void PenChanged() {}

 private:
  const CPen* pen_;
  const CBrush* brush_;
  qv::BackgroundMode mode_ = qv::BackgroundMode::Opaque;
  qv::RasterOp op_ = qv::RasterOp::CopyPen;
};
