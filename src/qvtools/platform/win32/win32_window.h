#pragma once

/// A view's window as Windows has it.

#include <windows.h>

#include <optional>

#include "qvtools/platform/host.h"
#include "qvtools/platform/win32/gdi_context.h"

namespace qv {

/// A window of the system as the library sees it.
class Win32Window : public Window {
 public:
  /// The window stays the caller's and must outlive this object.
  explicit Win32Window(HWND window) : window_(window) {}
  /// Gives the client context back if that was forgotten.
  ~Win32Window() override;
  Win32Window(const Win32Window&) = delete;
  Win32Window& operator=(const Win32Window&) = delete;

  CRect ClientRect() const override;
  /// One at a time: asked again before it is given back, it is the same.
  CDC& ClientContext() override;
  void ReleaseClientContext() override;
  void Invalidate(bool erase) override { InvalidateRect(window_, nullptr, erase); }
  void Post(unsigned int message) override { PostMessageW(window_, message, 0, 0); }
  /// The window.
  HWND Handle() const { return window_; }

 private:
  HWND window_;
  HDC dc_ = nullptr;
  std::optional<GdiContext> context_;
};

}  // namespace qv
