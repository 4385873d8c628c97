#include "qvtools/drawing/sheet_frame.h"

#include <algorithm>

namespace qv {

namespace {

constexpr double kBinding = 25;  // binding margin, drawing mm

/// The standard sheets, drawing mm.
constexpr struct {
  double longSide;
  double shortSide;
  double margin;
  double frameWidth;
  double titleWidth;
} kSheets[] = {{1189, 841, 10, 2.4, 0.7}, {841, 594, 10, 2.4, 0.7}, {594, 420, 10, 1.0, 0.7}, {420, 297, 5, 1.0, 0.7}};

}  // namespace

SheetFrame::SheetFrame(const CBase_SGT& sgt, float x, float y, int size, int extra, int portrait)
    : countersignTurned(portrait == 0) {
  const auto& sheet = kSheets[std::clamp(size, 0, 3)];
  const auto scaled = [&](double mm) { return static_cast<float>(mm * sgt.m_fBiLiChi); };
  const float longSide = scaled(sheet.longSide + extra);
  const float shortSide = scaled(sheet.shortSide);
  const float m = scaled(sheet.margin);
  const float b = scaled(kBinding);
  frameWidth = scaled(sheet.frameWidth);
  titleWidth = scaled(sheet.titleWidth);
  if (portrait) {
    paper = CFRect(x, y, x + shortSide, y + longSide);
    inside = CFRect(x + m, y + m, paper.x2 - m, paper.y2 - b);
    countersign = CFRect(inside.x2 - scaled(75), inside.y2, inside.x2, inside.y2 + scaled(20));
  } else {
    paper = CFRect(x, y, x + longSide, y + shortSide);
    inside = CFRect(x + b, y + m, paper.x2 - m, paper.y2 - m);
    countersign = CFRect(inside.x1 - scaled(20), inside.y2 - scaled(75), inside.x1, inside.y2);
  }
  title = CFRect(inside.x2 - scaled(180), inside.y1, inside.x2, inside.y1 + scaled(40));
}

}  // namespace qv
