#include "ui/canvas.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QWheelEvent>

namespace qvview {

Canvas::Canvas(View::Listener& listener, const Words& words) : words_(words), view_(*this, listener) {
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setMinimumSize(64, 64);
  pointer_changed();
}

Canvas::~Canvas() = default;

void Canvas::set_light(bool light) {
  SetBackground(light ? 0xFFFFFF : 0x000000);
  view_.set_light(light);
}

void Canvas::paintEvent(QPaintEvent* event) {
  QtWindow::paintEvent(event);
  if (view_.drawing()) return;
  QPainter painter(this);
  painter.setPen(Qt::gray);
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, words_(Text::NoDrawing));
}

void Canvas::resizeEvent(QResizeEvent* event) {
  QtWindow::resizeEvent(event);
  view_.resized();
}

namespace {
bool adds(const QMouseEvent& event) {
  return (event.modifiers() & (Qt::ShiftModifier | Qt::ControlModifier)) != 0;
}
}  // namespace

void Canvas::mousePressEvent(QMouseEvent* event) {
  const CPoint point = ToPixel(event->position());
  if (event->button() == Qt::LeftButton) view_.left_down(point, adds(*event));
  if (event->button() == Qt::MiddleButton) view_.middle_down(point);
  if (event->button() == Qt::RightButton) view_.cancel();
  pointer_changed();
}

void Canvas::mouseReleaseEvent(QMouseEvent* event) {
  const CPoint point = ToPixel(event->position());
  if (event->button() == Qt::LeftButton) view_.left_up(point, adds(*event));
  if (event->button() == Qt::MiddleButton) view_.middle_up(point);
  pointer_changed();
}

void Canvas::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::MiddleButton) return view_.show_all();
  mousePressEvent(event);
}

void Canvas::mouseMoveEvent(QMouseEvent* event) {
  view_.move(ToPixel(event->position()));
  if (const std::optional<CPoint> by = view_.dragged_by()) ShowShifted(*by);
  pointer_changed();
}

void Canvas::leaveEvent(QEvent*) {
  view_.leave();
  pointer_changed();
}

void Canvas::wheelEvent(QWheelEvent* event) {
  constexpr double kStep = 120;   // of the wheel, in the units of its events
  constexpr qint64 kPause = 800;  // milliseconds after which a new turn begins
  const double steps = event->angleDelta().y() / kStep;
  const bool continues = sinceWheel_.isValid() && sinceWheel_.elapsed() < kPause;
  sinceWheel_.start();
  if (steps != 0 && !view_.dragged_by()) view_.wheel(ToPixel(event->position()), steps, continues);
  event->accept();
  pointer_changed();
}

void Canvas::show_pointer_shape() {
  // Cross hairs are drawn in place of the system's pointer where corners are given.
  if (view_.dragged_by())
    setCursor(Qt::ClosedHandCursor);
  else
    setCursor(view_.mode() == Mode::Hand ? Qt::OpenHandCursor : Qt::BlankCursor);
}

void Canvas::pointer_changed() {
  show_pointer_shape();
  if (!view_.dragged_by()) ShowShifted({});
  if (on_pointer) on_pointer();
}

}  // namespace qvview
