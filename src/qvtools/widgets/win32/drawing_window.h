#pragma once

/// The viewer in a window of Windows: around a window that a program has, or as a child window of its own class.

#include <windows.h>

#include <functional>
#include <memory>
#include <string>

#include "qvtools/import/import.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"
#include "qvtools/widgets/viewer/view.h"

namespace qv {

/// Shows a view in the client area of a window and hands it what the pointer and the keys do. The client area is shown
/// from a bitmap: what is drawn on its context, the rubber band too, lasts until the view is drawn anew.
class DrawingWindow : public Window {
 public:
  /// The window and the listener must outlive it.
  DrawingWindow(HWND window, viewer::View::Listener& listener);
  ~DrawingWindow() override;

  /// The size of the client area.
  CRect ClientRect() const override;
  CDC& ClientContext() override;
  void ReleaseClientContext() override;
  void Invalidate(bool erase) override;
  /// The message comes back as `kPosted`, with its number as the first parameter.
  void Post(unsigned int message) override;
  static constexpr UINT kPosted = WM_APP;  ///< the message that brings back what `Post` queued

  /// The view itself.
  viewer::View& View() { return view_; }
  /// What is to be seen, drawn now when it has changed since the window was painted.
  const BitmapContext& Picture();
  /// The language of the words beside the marks; English at first.
  void SetLanguage(viewer::Language language) { language_ = language; }
  /// What is written where no drawing is shown.
  void SetEmptyText(std::wstring text) { emptyText_ = std::move(text); }

  /// Handles a message of the window: painting, size, pointer, wheel, and the keys of measuring (Tab, F3, Enter, "s"
  /// and a letter, Escape). False when there is nothing to do for it; else `result` is what the window's procedure
  /// returns.
  bool Handle(UINT message, WPARAM w, LPARAM l, LRESULT& result);
  /// Whether the next letter belongs to it: a program's own keys wait then.
  bool WantsLetter() const { return letterBefore_; }

 private:
  BitmapContext& bitmap();
  void paint();
  void paint_overlay(HDC dc, CPoint shift);
  void paint_label(HDC dc, CPoint at, const std::string& text, bool below) const;
  bool handle_pointer(UINT message, WPARAM w, CPoint point);
  bool handle_key(WPARAM key);
  void wheel(WPARAM w, CPoint point);

  HWND window_;
  viewer::Language language_ = viewer::Language::English;
  std::wstring emptyText_;
  std::unique_ptr<BitmapContext> bitmap_;
  bool stale_ = true;
  bool letterBefore_ = false;  // "s" was typed, the letter of a kind of points follows
  DWORD lastWheel_ = 0;
  viewer::View view_;  // the last, since it asks for the context when it is made
};

/// A child window that shows a drawing.
class DrawingControl : private viewer::View::Listener {
 public:
  /// Makes it in a parent, or, without one, as a window of its own. Null when Windows refuses it.
  static std::unique_ptr<DrawingControl> Create(HWND parent, const RECT& place);
  /// Destroys the window, when it is there still.
  ~DrawingControl() override;
  DrawingControl(const DrawingControl&) = delete;
  DrawingControl& operator=(const DrawingControl&) = delete;

  /// Shows a drawing file of any form. False when it cannot be read: what was shown stays.
  bool Open(const char* path);
  /// Shows a drawing of the program's, which becomes the control's.
  void SetDocument(std::unique_ptr<DXF> document, DrawingNotes notes = {});
  /// The window, its view, and what shows it.
  HWND Handle() const { return window_; }
  viewer::View& View() { return drawing_->View(); }
  DrawingWindow& Drawing() { return *drawing_; }

  /// Called when something has changed; absent at first.
  std::function<void()> OnViewChanged;
  std::function<void()> OnPicksChanged;
  std::function<void()> OnMeasuresChanged;
  /// Called when the window is gone.
  std::function<void()> OnDestroyed;

 private:
  DrawingControl() = default;
  static LRESULT CALLBACK window_proc(HWND window, UINT message, WPARAM w, LPARAM l);
  static void call(const std::function<void()>& f) {
    if (f) f();
  }
  void on_view_changed() override { call(OnViewChanged); }
  void on_picks_changed() override { call(OnPicksChanged); }
  void on_mode_changed() override {}
  void on_measures_changed() override { call(OnMeasuresChanged); }

  HWND window_ = nullptr;
  std::unique_ptr<DrawingWindow> drawing_;
};

}  // namespace qv
