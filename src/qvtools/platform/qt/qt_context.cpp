#include "qvtools/platform/qt/qt_context.h"

#include <QtGui/QPaintEngine>
#include <QtGui/QPainterPath>
#include <algorithm>
#include <cmath>

#include "qvtools/platform/internal/pen_pattern.h"

namespace qv {

namespace {

QColor color_of(COLORREF c) {
  return QColor(static_cast<int>(c & 255), static_cast<int>(c >> 8 & 255), static_cast<int>(c >> 16 & 255));
}

Qt::PenStyle style_of(PenStyle style) {
  static constexpr Qt::PenStyle kStyles[] = {Qt::SolidLine,   Qt::DashLine,       Qt::DotLine,
                                             Qt::DashDotLine, Qt::DashDotDotLine, Qt::NoPen};
  return kStyles[static_cast<int>(style)];
}

/// All patterns come round within so many pixels.
constexpr double kPeriod = 24;
QList<qreal> pattern_of(PenStyle style) {
  const detail::PenPattern& pattern = detail::kPenPatterns[static_cast<int>(style)];
  return {pattern.runs, pattern.runs + pattern.count};
}

// Qt's pixels have their middles at halves, ours at whole numbers. Shapes on an image are moved by a little less, one
// of Qt's own steps, so that a middle on a left or top edge lies inside.
constexpr double kHalf = 0.5;
constexpr double kLess = kHalf - 1.0 / 64;

QPainter::CompositionMode mode_of(RasterOp op) {
  switch (op) {
    case RasterOp::Not:
      return QPainter::RasterOp_NotDestination;
    case RasterOp::XorPen:
      return QPainter::RasterOp_SourceXorDestination;
    case RasterOp::CopyPen:
      break;
  }
  return QPainter::CompositionMode_SourceOver;
}

}  // namespace

QtContext::QtContext(QPainter& painter, Target target, CSize resolution)
    : painter_(painter),
      target_(target),
      resolution_(resolution),
      hasRasterOps_(painter.paintEngine()->hasFeature(QPaintEngine::RasterOpModes)) {
  painter_.setRenderHint(QPainter::Antialiasing, false);
  PenChanged();
}

QtContext::~QtContext() {
  flush();
}

void QtContext::PenChanged() {
  flush();
  const bool wide = Pen().width > 1;
  // Pens wider than a pixel are solid strokes with round ends. A flat cap leaves out the last pixel of a thin line.
  const PenStyle style = wide && Pen().style != PenStyle::Null ? PenStyle::Solid : Pen().style;
  const Qt::PenCapStyle cap = wide ? Qt::RoundCap : Qt::FlatCap;
  pen_ = QPen(color_of(Pen().color), std::max(Pen().width, 1), style_of(style), cap, Qt::RoundJoin);
  const QList<qreal> pattern = pattern_of(style);
  if (!pattern.isEmpty()) pen_.setDashPattern(pattern);
  phase_ = 0;
  painter_.setPen(pen_);
  painter_.setBrush(Qt::NoBrush);
  painter_.setBackground(Qt::white);
  painter_.setBackgroundMode(BkMode() == BackgroundMode::Opaque ? Qt::OpaqueMode : Qt::TransparentMode);
  if (hasRasterOps_) painter_.setCompositionMode(mode_of(Rop2()));
}

void QtContext::MoveTo(int x, int y) {
  if (position_ != CPoint(x, y)) phase_ = 0;
  position_ = {x, y};
}

// A thin line sets, from its smaller end on, the pixels whose middles lie beyond the end: a little less than a half
// takes the first pixel in and leaves the last one out, and takes the smaller pixel half way between two.
void QtContext::draw_on_pixels(CPoint from, CPoint to) {
  const double dx = std::abs(static_cast<double>(to.x) - from.x), dy = std::abs(static_cast<double>(to.y) - from.y);
  const bool thin = pen_.width() <= 1;
  const double x = thin && (dx < dy || to.x > from.x) ? kLess : kHalf;
  const double y = thin && (dx >= dy || to.y > from.y) ? kLess : kHalf;
  if (pen_.style() == Qt::CustomDashLine) {
    pen_.setDashOffset(phase_);
    painter_.setPen(pen_);
    phase_ = std::fmod(phase_ + std::max(dx, dy), kPeriod);
  }
  painter_.drawLine(QLineF(from.x + x, from.y + y, to.x + x, to.y + y));
}

void QtContext::LineTo(int x, int y) {
  const CPoint from = std::exchange(position_, CPoint(x, y));
  if (from == position_) return;
  if (target_ == Target::Image) return draw_on_pixels(from, position_);
  if (path_.isEmpty() || from != pathEnd_) path_.moveTo(from.x, from.y);
  path_.lineTo(x, y);
  pathEnd_ = position_;
}

void QtContext::flush() {
  if (path_.isEmpty()) return;
  painter_.drawPath(path_);
  path_ = {};
}

void QtContext::SetPixel(int x, int y, COLORREF color) {
  flush();
  const QPainter::CompositionMode mode = painter_.compositionMode();
  if (hasRasterOps_) painter_.setCompositionMode(QPainter::CompositionMode_SourceOver);
  painter_.fillRect(x, y, 1, 1, color_of(color));
  if (hasRasterOps_) painter_.setCompositionMode(mode);
}

void QtContext::FillRgn(const CRgn& region, const CBrush& brush) {
  flush();
  const double middle = target_ == Target::Image ? kLess : 0;
  QPolygonF polygon;
  polygon.reserve(region.Count());
  for (const CPoint* p = region.Points(); p != region.Points() + region.Count(); ++p)
    polygon << QPointF(p->x + middle, p->y + middle);
  const QPen pen = painter_.pen();
  painter_.setPen(Qt::NoPen);
  painter_.setBrush(color_of(brush.color));
  const Qt::FillRule rule = region.Rule() == FillRule::Winding ? Qt::WindingFill : Qt::OddEvenFill;
  if (target_ == Target::Image) {
    painter_.drawPolygon(polygon, rule);
  } else {
    // A polygon would lose its rule on the way to an SVG file, a path keeps it.
    QPainterPath path;
    path.addPolygon(polygon);
    path.closeSubpath();
    path.setFillRule(rule);
    painter_.drawPath(path);
  }
  painter_.setPen(pen);
  painter_.setBrush(Qt::NoBrush);
}

}  // namespace qv
