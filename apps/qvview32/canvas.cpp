#include "canvas.h"

#include <algorithm>

#include "qvtools/platform/win32/gdi_output.h"

namespace qvview32 {

namespace {

COLORREF background_of(const qvview::View& view) {
  return view.is_light() ? 0xFFFFFF : 0x000000;
}

/// The strips of the window that a shifted picture leaves free.
void fill_around(HDC dc, const CRect& client, CPoint shift, COLORREF color) {
  const HBRUSH brush = CreateSolidBrush(color);
  const RECT strips[] = {{0, 0, client.right, shift.y},
                         {0, client.bottom + shift.y, client.right, client.bottom},
                         {0, 0, shift.x, client.bottom},
                         {client.right + shift.x, 0, client.right, client.bottom}};
  for (const RECT& strip : strips)
    if (strip.left < strip.right && strip.top < strip.bottom) FillRect(dc, &strip, brush);
  DeleteObject(brush);
}

}  // namespace

CRect Canvas::ClientRect() const {
  RECT client = {};
  GetClientRect(window_, &client);
  return {0, 0, std::max(static_cast<int>(client.right), 1), std::max(static_cast<int>(client.bottom), 1)};
}

qv::BitmapContext& Canvas::bitmap() {
  const CRect client = ClientRect();
  if (!bitmap_ || bitmap_->Width() != client.right || bitmap_->Height() != client.bottom) {
    bitmap_ = std::make_unique<qv::BitmapContext>(client.right, client.bottom, 0xFFFFFF);
    Invalidate(true);
  }
  return *bitmap_;
}

CDC& Canvas::ClientContext() {
  return bitmap();
}

void Canvas::ReleaseClientContext() {
  InvalidateRect(window_, nullptr, FALSE);
}

// Everything is drawn at once, and never without its background.
void Canvas::Invalidate(bool) {
  stale_ = true;
  InvalidateRect(window_, nullptr, FALSE);
}

void Canvas::Post(unsigned int message) {
  PostMessageW(window_, kPosted, message, 0);
}

void Canvas::Paint(HDC dc, qvview::View& view) {
  qv::BitmapContext& picture = bitmap();
  if (std::exchange(stale_, false)) {
    picture.Clear(background_of(view));
    view.paint(picture);
  }
  const CPoint shift = view.dragged_by().value_or(CPoint());
  qv::show_bitmap(dc, shift.x, shift.y, picture);
  fill_around(dc, ClientRect(), shift, background_of(view));
}

}  // namespace qvview32
