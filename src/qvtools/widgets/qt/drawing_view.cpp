#include "qvtools/widgets/qt/drawing_view.h"

#include <QtCore/QFile>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QWheelEvent>

#include "qvtools/platform/qt/qt_context.h"
#include "qvtools/platform/qt/qt_text.h"

namespace qv {

using viewer::Mode;
using viewer::OverlayLabel;
using viewer::Text;

DrawingView::DrawingView(QWidget* parent) : QtWindow(parent), view_(*this, *this) {
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setMinimumSize(64, 64);
  pointer_changed();
}

DrawingView::~DrawingView() = default;

QString DrawingView::words(Text text) const {
  return QString::fromUtf8(viewer::caption(text, language_));
}

bool DrawingView::Open(const QString& path) {
  auto document = std::make_unique<DXF>();
  document->New_MemDxf();
  ImportReport report;
  if (!Import(QFile::encodeName(path).constData(), *document, {}, report)) return false;
  DrawingNotes notes = report.notes;
  report_ = std::move(report);
  SetDocument(std::move(document), std::move(notes));
  return true;
}

void DrawingView::SetDocument(std::unique_ptr<DXF> document, DrawingNotes notes) {
  view_.open(std::make_unique<viewer::Drawing>(std::move(document), view_.is_light(), std::move(notes)));
}

QStringList DrawingView::Layers() const {
  QStringList names;
  if (!view_.drawing()) return names;
  for (const viewer::Layer& layer : view_.drawing()->layers()) names << qt_text(layer.name.c_str());
  return names;
}

bool DrawingView::IsLayerOn(const QString& name) const {
  const auto index = Layers().indexOf(name);
  return index >= 0 && view_.drawing()->layers()[static_cast<std::size_t>(index)].on;
}

void DrawingView::SetLayerOn(const QString& name, bool on) {
  const auto index = Layers().indexOf(name);
  if (index < 0) return;
  std::vector<bool> all;
  for (const viewer::Layer& layer : view_.drawing()->layers()) all.push_back(layer.on);
  all[static_cast<std::size_t>(index)] = on;
  view_.drawing()->show_layers(all);
  view_.drawing_changed();
}

void DrawingView::SetLanguage(viewer::Language language) {
  language_ = language;
  update();
}

void DrawingView::SetEmptyText(const QString& text) {
  emptyText_ = text;
  update();
}

QString DrawingView::Measurements() const {
  return QString::fromStdString(view_.measuring().words(language_));
}

void DrawingView::SetLight(bool light) {
  SetBackground(light ? 0xFFFFFF : 0x000000);
  view_.set_light(light);
}

void DrawingView::paintEvent(QPaintEvent* event) {
  QtWindow::paintEvent(event);
  QPainter painter(this);
  if (view_.drawing()) return paint_overlay(painter);
  painter.setPen(Qt::gray);
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, emptyText_);
}

void DrawingView::paint_overlay(QPainter& painter) {
  std::vector<OverlayLabel> labels;
  const CPoint shift = view_.dragged_by().value_or(CPoint());
  painter.translate(FromPixel(shift));
  painter.save();
  const double ratio = devicePixelRatioF();
  painter.scale(1 / ratio, 1 / ratio);
  const CRect client = ClientRect();
  {
    QtContext context(painter, QtContext::Target::Vector, {client.Width(), client.Height()});
    view_.paint_overlay(context, labels);
  }
  painter.restore();
  for (const OverlayLabel& label : labels)
    paint_label(painter, FromPixel(label.at), QString::fromStdString(label.text), false);
  const CaughtPoint* const caught = view_.Caught();
  if (view_.mode() != Mode::Measure || !caught || !view_.pointer()) return;
  const CFPoint at(static_cast<float>(caught->at.x), static_cast<float>(caught->at.y));
  QString word = words(static_cast<Text>(static_cast<int>(Text::CatchEnd) + static_cast<int>(caught->kind)));
  if (view_.CaughtCount() > 1) word += QStringLiteral(" (Tab: %1)").arg(view_.CaughtCount());
  paint_label(painter, FromPixel(view_.CurrentView().FPtoDP(at)), word, true);
}

void DrawingView::paint_label(QPainter& painter, const QPointF& at, const QString& text, bool below) {
  constexpr double kMargin = 3, kAway = 10;
  QRectF box = QRectF(painter.fontMetrics().boundingRect(text)).adjusted(-kMargin, -kMargin, kMargin, kMargin);
  box.moveTopLeft(below ? at + QPointF(kAway, kAway) : at + QPointF(kAway, -kAway - box.height()));
  // Labels stay in the window as long as their points do.
  if (rect().contains(at.toPoint())) {
    if (box.right() > width()) box.moveRight(at.x() - kAway);
    if (box.top() < 0) box.moveTop(at.y() + kAway);
    if (box.bottom() > height()) box.moveBottom(at.y() - kAway);
  }
  const bool light = view_.is_light();
  painter.setPen(Qt::NoPen);
  painter.setBrush(light ? QColor(255, 255, 235, 225) : QColor(40, 40, 40, 225));
  painter.drawRoundedRect(box, kMargin, kMargin);
  painter.setPen(light ? Qt::black : Qt::white);
  painter.drawText(box, Qt::AlignCenter, text);
}

bool DrawingView::event(QEvent* event) {
  // While points are given, letters name the kinds of points and Tab goes through those that can be caught.
  if (view_.mode() == Mode::Measure && view_.drawing()) {
    if (event->type() == QEvent::ShortcutOverride) {
      const auto* const key = static_cast<QKeyEvent*>(event);
      const bool letter = key->modifiers() == Qt::NoModifier && (key->key() == Qt::Key_S || letterBefore_);
      if (letter || key->key() == Qt::Key_Backspace) return event->accept(), true;
    }
    if (event->type() == QEvent::KeyPress) {
      const auto* const key = static_cast<QKeyEvent*>(event);
      if (key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab)
        return view_.next_caught(key->key() == Qt::Key_Tab ? 1 : -1), true;
    }
  }
  return QtWindow::event(event);
}

void DrawingView::keyPressEvent(QKeyEvent* event) {
  if (view_.mode() != Mode::Measure) return QtWindow::keyPressEvent(event);
  if (event->key() == Qt::Key_Backspace) return view_.take_back_point();
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return static_cast<void>(view_.cancel());
  const bool before = std::exchange(letterBefore_, false);
  if (before && event->key() >= Qt::Key_A && event->key() <= Qt::Key_Z)
    view_.catch_by_letter(static_cast<char>('a' + event->key() - Qt::Key_A));
  else if (event->key() == Qt::Key_S)
    letterBefore_ = true;
  else
    QtWindow::keyPressEvent(event);
}

void DrawingView::resizeEvent(QResizeEvent* event) {
  QtWindow::resizeEvent(event);
  view_.resized();
}

namespace {
bool adds(const QMouseEvent& event) {
  return (event.modifiers() & (Qt::ShiftModifier | Qt::ControlModifier)) != 0;
}
}  // namespace

void DrawingView::mousePressEvent(QMouseEvent* event) {
  const CPoint point = ToPixel(event->position());
  if (event->button() == Qt::LeftButton) view_.left_down(point, adds(*event));
  if (event->button() == Qt::MiddleButton) view_.middle_down(point);
  if (event->button() == Qt::RightButton) view_.cancel();
  pointer_changed();
}

void DrawingView::mouseReleaseEvent(QMouseEvent* event) {
  const CPoint point = ToPixel(event->position());
  if (event->button() == Qt::LeftButton) view_.left_up(point, adds(*event));
  if (event->button() == Qt::MiddleButton) view_.middle_up(point);
  pointer_changed();
}

void DrawingView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::MiddleButton) return view_.show_all();
  mousePressEvent(event);
}

void DrawingView::mouseMoveEvent(QMouseEvent* event) {
  view_.move(ToPixel(event->position()));
  pointer_changed();
}

void DrawingView::leaveEvent(QEvent*) {
  view_.leave();
  pointer_changed();
}

void DrawingView::wheelEvent(QWheelEvent* event) {
  constexpr double kStep = 120;   // of the wheel, in the units of its events
  constexpr qint64 kPause = 800;  // milliseconds after which a new turn begins
  const double steps = event->angleDelta().y() / kStep;
  const bool continues = sinceWheel_.isValid() && sinceWheel_.elapsed() < kPause;
  sinceWheel_.start();
  if (steps != 0 && !view_.dragged_by()) view_.wheel(ToPixel(event->position()), steps, continues);
  event->accept();
  pointer_changed();
}

void DrawingView::ShowPointerShape() {
  // Cross hairs are drawn in place of the system's pointer where corners are given.
  if (view_.dragged_by())
    setCursor(Qt::ClosedHandCursor);
  else
    setCursor(view_.mode() == Mode::Hand ? Qt::OpenHandCursor : Qt::BlankCursor);
}

void DrawingView::pointer_changed() {
  ShowPointerShape();
  emit PointerMoved();
}

}  // namespace qv
