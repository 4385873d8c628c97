#pragma once

/// What one call of drawing works with: made for the call from what the caller gave, and handed down to everything that
/// is drawn by it. Nothing of it outlives the call.

#include <climits>
#include <cmath>
#include <cstring>
#include <functional>

#include "qvtools/display/appearance.h"
#include "qvtools/display/safe_dc.h"
#include "qvtools/geometry/values/coor.h"

namespace qv::detail {

/// The clipping context, the transform, and the one-pixel pen that is selected; the caller's pen is selected again in
/// the end. On a printer and on a metafile everything is black.
class DrawingContext {
 public:
  /// `color_of` tells the colour of a number that the appearance leaves open.
  DrawingContext(CDC* dc, const CFCoor& coor, const Appearance& appearance, COLORREF (*color_of)(int))
      : dc_(dc),
        safe_(dc),
        coor_(coor),
        appearance_(appearance),
        color_of_(color_of),
        black_(dc->IsPrinting() || dc->IsMetafile()) {}
  ~DrawingContext() {
    if (before_) dc_->SelectObject(before_);
  }
  DrawingContext(const DrawingContext&) = delete;
  DrawingContext& operator=(const DrawingContext&) = delete;

  CDC* dc() const { return dc_; }
  CSafeDC& safe() { return safe_; }
  const CFCoor& coor() const { return coor_; }

  const Appearance& appearance() const { return appearance_; }

  /// Asks `goesOn` now and then, by `is_given_up`.
  void ask(const std::function<bool()>& goesOn) { goesOn_ = &goesOn; }
  /// Whether the drawing was given up; to be called for each entity.
  bool is_given_up() {
    constexpr unsigned kBetween = 1024;
    if (goesOn_ && !givenUp_ && ++unasked_ >= kBetween) {
      unasked_ = 0;
      if (!(*goesOn_)()) givenUp_ = true;
    }
    return givenUp_;
  }

  /// The colour in which a colour number is drawn.
  COLORREF ink(int color) const {
    if (black_) return 0;
    const bool listed = appearance_.palette && color >= 0 && color < static_cast<int>(appearance_.palette->size());
    return listed ? (*appearance_.palette)[static_cast<std::size_t>(color)] : color_of_(color);
  }

  /// Whether lines are dashed by patterns, not by pens.
  bool has_patterns() const { return appearance_.patterns != nullptr; }
  /// The pattern of a line type; null where the line is solid, and where a pattern would be too short to be seen.
  const DashPattern* pattern(const char* ltype) {
    if (!ltype_ || std::strcmp(ltype, ltype_) != 0) {
      ltype_ = ltype;
      pattern_ = appearance_.patterns->find(ltype);
      const double scale = std::fabs(double{coor_.GetScale()});
      if (pattern_ && !(pattern_->length * scale >= appearance_.shortestPattern)) pattern_ = nullptr;
    }
    return pattern_;
  }

  /// Selects the pen of a style and a colour number, unless it is the one that is selected: most entities have the pen
  /// of the one before.
  void select(PenStyle style, int color) {
    if (before_ && style == pen_.style && color == color_) return;
    pen_ = {style, 1, ink(color)};
    color_ = color;
    const CPen* const replaced = dc_->SelectObject(&pen_);
    if (!before_) before_ = replaced;
  }

  /// Selects a solid pen of a colour.
  void select_ink(COLORREF ink) {
    if (before_ && color_ == kNoNumber && pen_.color == ink) return;
    pen_ = {PenStyle::Solid, 1, ink};
    color_ = kNoNumber;
    const CPen* const replaced = dc_->SelectObject(&pen_);
    if (!before_) before_ = replaced;
  }

  /// A line between two points of the plane, with a pen selected only for what can be seen.
  void draw_line(const CFPoint& start, const CFPoint& end, PenStyle style, int color) {
    const CPoint from = coor_.FPtoDP(start);
    const CPoint to = coor_.FPtoDP(end);
    if (safe_.IsOutside(from, to)) return;
    select(style, color);
    safe_.MoveTo(from.x, from.y);
    safe_.LineTo(to.x, to.y);
  }

 private:
  static constexpr int kNoNumber = INT_MIN;
  CDC* dc_;
  CSafeDC safe_;
  const CFCoor& coor_;
  Appearance appearance_;
  COLORREF (*color_of_)(int);
  bool black_;
  CPen pen_;
  int color_ = 0;                // the number of the pen's colour
  const char* ltype_ = nullptr;  // the last one that was asked for, and its pattern
  const DashPattern* pattern_ = nullptr;
  const CPen* before_ = nullptr;  // the caller's pen, once another is selected
  const std::function<bool()>* goesOn_ = nullptr;
  unsigned unasked_ = 0;
  bool givenUp_ = false;
};

}  // namespace qv::detail
