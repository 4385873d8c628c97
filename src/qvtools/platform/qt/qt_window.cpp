#include "qvtools/platform/qt/qt_window.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QImage>
#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

namespace qv {

namespace {

constexpr int kLargestSide = 32767;

/// A message on its way through Qt's queue.
class PostedMessage : public QEvent {
 public:
  static Type type() {
    static const int number = registerEventType();
    return static_cast<Type>(number);
  }
  explicit PostedMessage(unsigned int m) : QEvent(type()), message(m) {}
  const unsigned int message;
};

}  // namespace

QtWindow::QtWindow(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
}

QtWindow::~QtWindow() = default;

CRect QtWindow::ClientRect() const {
  const double ratio = devicePixelRatioF();
  const auto pixels = [&](int side) {
    return std::clamp(static_cast<int>(std::lround(side * ratio)), 1, kLargestSide);
  };
  return {0, 0, pixels(width()), pixels(height())};
}

BitmapContext& QtWindow::Bitmap() {
  const CRect client = ClientRect();
  if (!bitmap_ || bitmap_->Width() != client.right || bitmap_->Height() != client.bottom) {
    bitmap_ = std::make_unique<BitmapContext>(client.right, client.bottom, background_);
    Invalidate(true);
  }
  return *bitmap_;
}

void QtWindow::Invalidate(bool erase) {
  stale_ = true;
  erase_ = erase_ || erase;
  update();
}

void QtWindow::Post(unsigned int message) {
  QCoreApplication::postEvent(this, new PostedMessage(message));
}

void QtWindow::ShowShifted(CPoint by) {
  if (by == shift_) return;
  shift_ = by;
  update();
}

CPoint QtWindow::ToPixel(const QPointF& position) const {
  const double ratio = devicePixelRatioF();
  return {static_cast<int>(std::floor(position.x() * ratio)), static_cast<int>(std::floor(position.y() * ratio))};
}

QPointF QtWindow::FromPixel(CPoint pixel) const {
  const double ratio = devicePixelRatioF();
  return {pixel.x / ratio, pixel.y / ratio};
}

void QtWindow::repaint_bitmap() {
  BitmapContext& dc = Bitmap();
  // Both first: what is asked for while painting is painted next time.
  stale_ = false;
  if (std::exchange(erase_, false)) dc.Clear(background_);
  shift_ = {};
  OnPaint(dc);
}

void QtWindow::paintEvent(QPaintEvent*) {
  Bitmap();
  if (stale_) repaint_bitmap();
  QImage image(reinterpret_cast<const uchar*>(bitmap_->Pixels()), bitmap_->Width(), bitmap_->Height(),
               static_cast<qsizetype>(bitmap_->Width()) * 4, QImage::Format_RGB32);
  image.setDevicePixelRatio(devicePixelRatioF());
  QPainter painter(this);
  if (shift_ != CPoint()) {
    const QColor background(static_cast<int>(background_ & 255), static_cast<int>(background_ >> 8 & 255),
                            static_cast<int>(background_ >> 16 & 255));
    painter.fillRect(rect(), background);
  }
  painter.drawImage(FromPixel(shift_), image);
}

void QtWindow::resizeEvent(QResizeEvent*) {
  Bitmap();  // of the new size, to be painted
}

bool QtWindow::event(QEvent* event) {
  if (event->type() != PostedMessage::type()) return QWidget::event(event);
  OnMessage(static_cast<PostedMessage*>(event)->message);
  return true;
}

}  // namespace qv
