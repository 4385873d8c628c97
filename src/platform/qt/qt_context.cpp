#include "platform/qt/qt_context.h"

#include <QtGui/QPaintEngine>

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

/// The runs of a style in pixels, the same as on every device.
QList<qreal> pattern_of(PenStyle style) {
  switch (style) {
    case PenStyle::Dash:
      return {18, 6};
    case PenStyle::Dot:
      return {3, 3};
    case PenStyle::DashDot:
      return {9, 6, 3, 6};
    case PenStyle::DashDotDot:
      return {9, 3, 3, 3, 3, 3};
    case PenStyle::Solid:
    case PenStyle::Null:
      break;
  }
  return {};
}

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
  QPen pen(color_of(Pen().color), 1, style_of(Pen().style));
  const QList<qreal> pattern = pattern_of(Pen().style);
  if (!pattern.isEmpty()) pen.setDashPattern(pattern);
  // A flat cap leaves the last pixel out on images.
  pen.setCapStyle(Qt::FlatCap);
  painter_.setPen(pen);
  painter_.setBrush(Qt::NoBrush);
  painter_.setBackground(Qt::white);
  painter_.setBackgroundMode(BkMode() == BackgroundMode::Opaque ? Qt::OpaqueMode : Qt::TransparentMode);
  if (hasRasterOps_) painter_.setCompositionMode(mode_of(Rop2()));
}

void QtContext::LineTo(int x, int y) {
  const CPoint from = std::exchange(position_, CPoint(x, y));
  if (from == position_) return;
  if (target_ == Target::Image) return painter_.drawLine(from.x, from.y, x, y);
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
  painter_.fillRect(x, y, 1, 1, color_of(color));
}

void QtContext::FillRgn(const CRgn& region, const CBrush& brush) {
  flush();
  QPolygon polygon;
  polygon.reserve(region.Count());
  for (const CPoint* p = region.Points(); p != region.Points() + region.Count(); ++p) polygon << QPoint(p->x, p->y);
  const QPen pen = painter_.pen();
  painter_.setPen(Qt::NoPen);
  painter_.setBrush(color_of(brush.color));
  painter_.drawPolygon(polygon, region.Rule() == FillRule::Winding ? Qt::WindingFill : Qt::OddEvenFill);
  painter_.setPen(pen);
  painter_.setBrush(Qt::NoBrush);
}

}  // namespace qv
