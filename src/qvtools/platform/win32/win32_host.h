#pragma once

/// The host of programs with windows: message boxes, the calculation-message window, this thread's message queue.

#include <windows.h>

#include <string>

#include "qvtools/platform/host.h"

namespace qv {

/// The message window's dialog and its edit control, as resource numbers. The dialog's stands as its help identifier,
/// since windows that are no children have no number.
inline constexpr int kMessageDialogId = 32727;
inline constexpr int kMessageEditId = 32728;

/// Used by the one thread that made it. Message boxes belong to the active window of this thread.
///
/// The message window is a modeless dialog, 179 by 76 dialog units at (0, 400), wholly filled by a read-only edit
/// control; closing it hides it. Positions in its text count UTF-16 units.
class Win32Host : public Host {
 public:
  /// The captions, in GBK, of message boxes and of the message window; where one is null, the program's name.
  explicit Win32Host(const char* boxCaption = nullptr, const char* messageCaption = nullptr);
  /// Takes the message window with it.
  ~Win32Host() override;
  Win32Host(const Win32Host&) = delete;
  Win32Host& operator=(const Win32Host&) = delete;

  Answer ShowBox(const char* text, BoxKind kind) override;
  void CreateMessageWindow() override;
  void ShowMessageWindow(bool visible) override;
  int MessageLineCount() const override { return static_cast<int>(ask_edit(EM_GETLINECOUNT)); }
  int MessageLineStart(int line) const override {
    return static_cast<int>(ask_edit(EM_LINEINDEX, static_cast<WPARAM>(line)));
  }
  void SelectMessage(int from, int to) override { ask_edit(EM_SETSEL, static_cast<WPARAM>(from), to); }
  void ReplaceMessageSelection(const char* text) override;
  /// A message that ends the program stays in the queue.
  void DrainMessages() override;
  CSize ScreenSize() const override { return {GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)}; }

  /// The message window, null before its creation.
  HWND MessageWindow() const { return dialog_; }

 private:
  LRESULT ask_edit(UINT message, WPARAM w = 0, LPARAM l = 0) const;

  std::wstring boxCaption_;
  std::wstring messageCaption_;
  HWND dialog_ = nullptr;
};

}  // namespace qv
