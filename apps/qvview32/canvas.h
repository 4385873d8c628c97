#pragma once

#include <windows.h>

#include <memory>

#include "model/view.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"

namespace qvview32 {

/// The client area of a window, shown from a bitmap: what is drawn on its context, the rubber band too, lasts until the
/// view is drawn anew.
class Canvas : public qv::Window {
 public:
  explicit Canvas(HWND window) : window_(window) {}

  CRect ClientRect() const override;
  CDC& ClientContext() override;
  void ReleaseClientContext() override;
  void Invalidate(bool erase) override;
  /// The message comes back as `kPosted`, with its number as the first parameter.
  void Post(unsigned int message) override;

  static constexpr UINT kPosted = WM_APP;

  /// Shows the view in the window, whose paint message is being handled.
  void Paint(HDC dc, qvview::View& view);
  /// What is seen.
  const qv::BitmapContext& Picture() { return bitmap(); }

 private:
  qv::BitmapContext& bitmap();

  HWND window_;
  std::unique_ptr<qv::BitmapContext> bitmap_;
  bool stale_ = true;
};

}  // namespace qvview32
