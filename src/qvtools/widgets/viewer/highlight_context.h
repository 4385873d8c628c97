#pragma once

#include "qvtools.h"

namespace qv::viewer {

/// A device context that draws on another in one colour, with solid lines of one width: whatever is drawn through it
/// stands out.
class HighlightContext : public CDC {
 public:
  /// What is drawn on, in which colour and how wide.
  HighlightContext(CDC& target, COLORREF color, int width)
      : target_(target), pen_{qv::PenStyle::Solid, width, color}, before_(target.SelectObject(&pen_)) {}
  ~HighlightContext() override { target_.SelectObject(before_); }

  void MoveTo(int x, int y) override { target_.MoveTo(x, y); }
  void LineTo(int x, int y) override { target_.LineTo(x, y); }
  /// A point is seen as a small cross.
  void SetPixel(int x, int y, COLORREF) override {
    constexpr int kArm = 4;
    MoveTo(x - kArm, y);
    LineTo(x + kArm + 1, y);
    MoveTo(x, y - kArm);
    LineTo(x, y + kArm + 1);
  }
  void FillRgn(const CRgn& region, const CBrush&) override { target_.FillRgn(region, CBrush{pen_.color}); }
  CSize GetResolution() const override { return target_.GetResolution(); }

 private:
  CDC& target_;
  CPen pen_;
  const CPen* before_;
};

}  // namespace qv::viewer
