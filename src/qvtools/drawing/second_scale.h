#pragma once

/// A detail at a scale of its own on a sheet.

#include "qvtools/drawing/base_sgt.h"

namespace qv {

/// While it lives, the composer draws a detail: coordinates are the detail's own model units, at the scale 1:`scale`,
/// with their origin at a place of the sheet. Pens, texts, bars, dots, hooks, labels and the distances of dimensions
/// keep the sheet's sizes, and dimension values are the detail's true lengths. The end of the scope puts everything
/// back. Scopes may lie in one another; each counts from the scale of the sheet.
///
///   qv::SecondScale section(sgt, 12000, 4000, 25);   // a section 1:25 on a sheet 1:50
///   sgt.Draw_Liang_Section(0, 0, 300, 700, 25, n, bars, stirrup, 0);
///
/// Right within it are: lines, circles, arcs, two-point polylines of the width w (`Pen(w)` for the others), texts,
/// bars, stirrups, ties, dots, beam sections, dimensions, labels, numbers, break lines, titles, axis bubbles. Elevation
/// marks, curved arrows, angle dimensions, section marks, tables and blocks take their sizes otherwise: draw them
/// outside, at `OnSheet`.
class QV_API SecondScale {
 public:
  /// (x, y) is the place of the detail's origin in the caller's present frame; `scale` the detail's denominator, above
  /// 0. The composer must outlive the scope.
  SecondScale(CBase_SGT& sgt, float x, float y, float scale);
  ~SecondScale();
  SecondScale(const SecondScale&) = delete;
  SecondScale& operator=(const SecondScale&) = delete;

  /// Where a point of the detail stands in the frame outside the scope.
  CFPoint OnSheet(float x, float y) const { return {x_ + x * factor_, y_ + y * factor_}; }
  /// The width to give to polylines through n points, rings and rectangles so that they come out as wide as `width`
  /// on the sheet; also the length in the detail of a length of the sheet: `Pen(m_fBiLiChi)` is 1 mm.
  float Pen(float width) const { return width / factor_; }

 private:
  CBase_SGT& sgt_;
  SgtEnvironment saved_;
  float x_;
  float y_;
  float factor_;
};

}  // namespace qv
