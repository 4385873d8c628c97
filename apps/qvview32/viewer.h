#pragma once

// Dialogs' header stands on the system's.
// clang-format off
#include <windows.h>
#include <commdlg.h>
// clang-format on

#include <memory>
#include <optional>
#include <string>

#include "common/fonts.h"
#include "model/captions.h"
#include "model/plot_setup.h"
#include "qvtools/widgets/win32/drawing_window.h"

namespace qvview32 {

/// The viewer's window: its menu, its pointer and keys, and the one view.
class Viewer : public qvview::View::Listener {
 public:
  /// Makes and shows the window. Null when Windows refuses it.
  static std::unique_ptr<Viewer> Create(qvview::Language language, const qvapps::FontFiles& fonts,
                                        const std::string& programDirectory);
  ~Viewer() override;
  Viewer(const Viewer&) = delete;
  Viewer& operator=(const Viewer&) = delete;

  /// Opens a drawing, or says why it cannot.
  void Open(const std::wstring& path);
  HWND Window() const { return window_; }
  /// The keys of the commands.
  HACCEL Keys() const { return drawing_ && drawing_->WantsLetter() ? nullptr : keys_; }
  /// The dialog that texts are found with; null while it is closed.
  HWND FindDialog() const { return findDialog_; }

  void on_view_changed() override {}
  void on_picks_changed() override { show_title(); }
  void on_measures_changed() override { show_title(); }
  void on_mode_changed() override {}

 private:
  struct Command;
  static const Command kCommands[];

  Viewer(qvview::Language language, const qvapps::FontFiles& fonts, const std::string& programDirectory)
      : language_(language), usualFonts_(fonts), loadedFonts_(fonts), programDirectory_(programDirectory) {}
  static LRESULT CALLBACK window_proc(HWND window, UINT message, WPARAM w, LPARAM l);
  bool create();
  HMENU make_menu() const;
  void make_keys();
  LRESULT handle(UINT message, WPARAM w, LPARAM l);
  void ask_what_to_find();
  void find_next();
  void copy_measures();

  void ask_for_drawing();
  void reload();
  bool load_fonts(const qvapps::FontFiles& fonts);
  void save_picture();
  void plot(bool toFile);
  bool plot_to_file(HWND owner, std::string& problem);
  std::wstring file_name() const;
  void toggle_background();
  void set_mode(qvview::Mode mode);
  void show_title();
  void tell_about();
  void tell(qvview::Text title, const std::wstring& text);
  void complain(qvview::Text text, const std::wstring& name, const std::wstring& why = L"");
  std::wstring words(qvview::Text text) const;

  qvview::Language language_;
  qvapps::FontFiles usualFonts_;
  qvapps::FontFiles loadedFonts_;
  std::string programDirectory_;
  HWND window_ = nullptr;
  HACCEL keys_ = nullptr;
  std::optional<qv::DrawingWindow> drawing_;
  qvview::View* view_ = nullptr;
  FINDREPLACEW find_ = {};
  wchar_t findWhat_[128] = L"";
  HWND findDialog_ = nullptr;
  qvview::FindWhat found_;  // what the hits hold
  std::vector<qvview::Hit> hits_;
  const qvview::Drawing* searched_ = nullptr;
  std::size_t hit_ = 0;
  std::wstring path_;
  std::wstring report_;  // what was converted and left out of the drawing
  qvview::PlotSetup plotSetup_;
};

}  // namespace qvview32
