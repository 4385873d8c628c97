#pragma once

/// A view's window: a widget that shows a bitmap. Its client device context is that bitmap, so that everything drawn
/// between repaints (a rubber band, the cursor) follows the bitmap's raster operations exactly and can be taken away
/// again by drawing it once more. Device units are the screen's own pixels, also where Qt's are larger.

#include <QtWidgets/QWidget>
#include <memory>

#include "qvtools/platform/bitmap/bitmap_dc.h"
#include "qvtools/platform/host.h"

namespace qv {

/// A widget that shows a bitmap, on which its view draws.
class QtWindow : public QWidget, public Window {
 public:
  /// A white window.
  explicit QtWindow(QWidget* parent = nullptr);
  ~QtWindow() override;

  /// The size of the bitmap: the widget's, in pixels of the screen.
  CRect ClientRect() const override;
  /// The shown bitmap. It is another one after the window's size changed. May be taken several times; what was drawn is
  /// shown when it is given back.
  CDC& ClientContext() override { return Bitmap(); }
  void ReleaseClientContext() override { update(); }
  /// Asks for a repaint; however many were asked for, one is made, when the events that wait have been handled.
  void Invalidate(bool erase) override;
  void Post(unsigned int message) override;

  /// The bitmap as it is shown; a repaint that was asked for is not yet in it.
  const BitmapContext& Picture() { return Bitmap(); }
  /// The colour that the background is erased with; white at first. It shows with the next repaint that erases.
  void SetBackground(COLORREF color) { background_ = color; }
  COLORREF Background() const { return background_; }
  /// Shows the bitmap moved by so many pixels until the next repaint, at the cost of a copy: how a pan looks while it
  /// lasts.
  void ShowShifted(CPoint by);

  /// A position in Qt's units, as events tell it, in pixels of the bitmap, and the way back.
  CPoint ToPixel(const QPointF& position) const;
  QPointF FromPixel(CPoint pixel) const;

 protected:
  /// Draws the client area anew; the background is there.
  virtual void OnPaint(CDC& dc) = 0;
  /// Handles a message that `Post` queued.
  virtual void OnMessage(unsigned int /*message*/) {}
  /// The bitmap; see `ClientContext`.
  BitmapContext& Bitmap();

  /// What the widget does with Qt's events; overrides call these.
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool event(QEvent* event) override;

 private:
  void repaint_bitmap();

  std::unique_ptr<BitmapContext> bitmap_;
  COLORREF background_ = 0xFFFFFF;
  CPoint shift_;
  bool stale_ = true;  // a repaint was asked for
  bool erase_ = true;  // and with its background
};

}  // namespace qv
