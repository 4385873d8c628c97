#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>

#include "model/plot_setup.h"

namespace qvview32 {

/// Asks how a drawing is plotted or printed, beside a preview of each page.
class PlotDialog {
 public:
  /// What the accepting button does once the choices are made. False leaves the dialog open.
  using Finish = std::function<bool(HWND dialog)>;

  /// `name` is the drawing's, UTF-8; `setup` is where the choices come from and go to.
  PlotDialog(qvview::View& view, const std::string& name, qvview::PlotSetup& setup, qvview::Language language,
             bool toFile, Finish finish)
      : view_(view), name_(name), setup_(setup), language_(language), toFile_(toFile), finish_(std::move(finish)) {}
  /// Returns once the user is done.
  void Show(HWND owner);

 private:
  static INT_PTR CALLBACK dialog_proc(HWND dialog, UINT message, WPARAM w, LPARAM l);
  INT_PTR handle(UINT message, WPARAM w, LPARAM l);
  void create();
  void add_choice(int row, int id, qvview::Text label, std::initializer_list<qvview::Text> texts, bool typed = false);
  HWND add(const wchar_t* kind, const std::wstring& text, DWORD style, RECT units, int id);
  void command(int id, int event);
  void choose_pens();
  void take();
  void show_preview();
  void draw_preview(const DRAWITEMSTRUCT& item) const;

  HWND control(int id) const { return GetDlgItem(dialog_, id); }
  int chosen(int id) const { return static_cast<int>(SendMessageW(control(id), CB_GETCURSEL, 0, 0)); }
  std::wstring text_of(int id) const;
  std::wstring words(qvview::Text text) const;

  qvview::View& view_;
  std::string name_;
  qvview::PlotSetup& setup_;
  qvview::Language language_;
  bool toFile_;
  Finish finish_;
  HWND dialog_ = nullptr;
  std::unique_ptr<qv::BitmapContext> picture_;
  int page_ = 0;
};

}  // namespace qvview32
