#pragma once

#include <QtCore/QElapsedTimer>
#include <QtGui/QPainter>

#include "model/view.h"
#include "qvtools/platform/qt/qt_window.h"
#include "ui/words.h"

namespace qvview {

/// The window of the drawing: hands what the pointer does to the view, and shows the picture shifted while it is
/// dragged.
class Canvas : public qv::QtWindow {
 public:
  Canvas(View::Listener& listener, const Words& words);
  ~Canvas() override;

  View& view() { return view_; }
  void set_light(bool light);
  /// Gives the pointer the shape of what it does.
  void show_pointer_shape();
  /// Called when the pointer has moved or left.
  std::function<void()> on_pointer;

 protected:
  void OnPaint(CDC& dc) override { view_.paint(dc); }
  void OnMessage(unsigned int message) override { view_.on_message(message); }
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void pointer_changed();
  void paint_overlay(QPainter& painter);
  void paint_label(QPainter& painter, const QPointF& at, const QString& text, bool below);

  const Words& words_;
  View view_;
  QElapsedTimer sinceWheel_;
  bool letterBefore_ = false;  // "s" was typed, the letter of a kind of points follows
};

}  // namespace qvview
