#include "qvtools/platform/win32/win32_window.h"

namespace qv {

Win32Window::~Win32Window() {
  Win32Window::ReleaseClientContext();
}

CRect Win32Window::ClientRect() const {
  RECT r = {};
  GetClientRect(window_, &r);
  return {static_cast<int>(r.left), static_cast<int>(r.top), static_cast<int>(r.right), static_cast<int>(r.bottom)};
}

CDC& Win32Window::ClientContext() {
  if (!context_) {
    dc_ = GetDC(window_);
    context_.emplace(dc_);
  }
  return *context_;
}

void Win32Window::ReleaseClientContext() {
  if (!context_) return;
  context_.reset();
  ReleaseDC(window_, dc_);
}

}  // namespace qv
