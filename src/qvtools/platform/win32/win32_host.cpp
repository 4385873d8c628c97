#include "qvtools/platform/win32/win32_host.h"

#include <initializer_list>
#include <string_view>
#include <vector>

#include "qvtools/system/windows/code_page.h"

namespace qv {
namespace {

/// A dialog template in memory: words, aligned to double words before each item.
class DialogTemplate {
 public:
  void words(std::initializer_list<WORD> values) { words_.insert(words_.end(), values); }
  void double_words(std::initializer_list<DWORD> values) {
    for (const DWORD v : values) words({LOWORD(v), HIWORD(v)});
  }
  void text(std::wstring_view v) {
    words_.insert(words_.end(), v.begin(), v.end());
    words({0});
  }
  void align() { words_.resize((words_.size() + 1) / 2 * 2); }
  const DLGTEMPLATE* get() const { return reinterpret_cast<const DLGTEMPLATE*>(words_.data()); }

 private:
  std::vector<WORD> words_;
};

// The extended form, described under DLGTEMPLATEEX and DLGITEMTEMPLATEEX.
DialogTemplate message_dialog(std::wstring_view caption) {
  constexpr DWORD kDialog =
      DS_SETFONT | WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX | WS_CLIPCHILDREN;
  // A line stays one line, however narrow the window.
  constexpr DWORD kEdit = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL | ES_MULTILINE | ES_AUTOVSCROLL |
                          ES_AUTOHSCROLL | ES_READONLY | ES_NOHIDESEL;
  constexpr WORD kEditClass = 0x0081;
  DialogTemplate dialog;
  dialog.words({1, 0xFFFF});
  dialog.double_words({kMessageDialogId, 0, kDialog});
  dialog.words({1, 0, 400, 179, 76, 0, 0});  // one item; the place; no menu, and the dialog's own class
  dialog.text(caption);
  dialog.words({9, FW_NORMAL, DEFAULT_CHARSET << 8});
  dialog.text(L"MS Shell Dlg");
  dialog.align();
  dialog.double_words({0, 0, kEdit});
  dialog.words({0, 0, 179, 76});
  dialog.double_words({kMessageEditId});
  dialog.words({0xFFFF, kEditClass, 0, 0});  // no text, no data
  return dialog;
}

void fill_with_edit(HWND dialog) {
  const HWND edit = GetDlgItem(dialog, kMessageEditId);
  RECT client;
  if (!edit || !(GetWindowLongW(edit, GWL_STYLE) & WS_VISIBLE) || !GetClientRect(dialog, &client)) return;
  MoveWindow(edit, 0, 0, client.right, client.bottom, TRUE);
}

INT_PTR CALLBACK message_dialog_proc(HWND dialog, UINT message, WPARAM, LPARAM) {
  switch (message) {
    case WM_INITDIALOG:
      SendDlgItemMessageW(dialog, kMessageEditId, EM_LIMITTEXT, 0, 0);  // as much as there is memory for
      fill_with_edit(dialog);
      return FALSE;  // the focus stays where it was
    case WM_SIZE:
      fill_with_edit(dialog);
      return TRUE;
    case WM_CLOSE:
      ShowWindow(dialog, SW_HIDE);
      return TRUE;
    default:
      return FALSE;
  }
}

/// The program's file name without its directory and ending.
std::wstring program_name() {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
  path.erase(0, path.find_last_of(L"\\/") + 1);
  return path.substr(0, path.rfind(L'.'));
}

}  // namespace

Win32Host::Win32Host(const char* boxCaption, const char* messageCaption)
    : boxCaption_(boxCaption ? wide_of(boxCaption) : program_name()),
      messageCaption_(messageCaption ? wide_of(messageCaption) : program_name()) {}

Win32Host::~Win32Host() {
  if (dialog_) DestroyWindow(dialog_);
}

Answer Win32Host::ShowBox(const char* text, BoxKind kind) {
  constexpr UINT kStyles[] = {MB_OK, MB_OK | MB_ICONINFORMATION, MB_OK | MB_ICONSTOP, MB_OKCANCEL | MB_ICONQUESTION};
  const int answer =
      MessageBoxW(GetActiveWindow(), wide_of(text).c_str(), boxCaption_.c_str(), kStyles[static_cast<int>(kind)]);
  return kind == BoxKind::Question && answer == IDCANCEL ? Answer::Cancel : Answer::Ok;
}

void Win32Host::CreateMessageWindow() {
  if (dialog_) return;
  const DialogTemplate dialog = message_dialog(messageCaption_);
  dialog_ = CreateDialogIndirectParamW(GetModuleHandleW(nullptr), dialog.get(), nullptr, message_dialog_proc, 0);
}

void Win32Host::ShowMessageWindow(bool visible) {
  if (visible) CreateMessageWindow();  // another host may have been asked to
  if (dialog_) ShowWindow(dialog_, visible ? SW_SHOWNORMAL : SW_HIDE);
}

LRESULT Win32Host::ask_edit(UINT message, WPARAM w, LPARAM l) const {
  return dialog_ ? SendDlgItemMessageW(dialog_, kMessageEditId, message, w, l) : 0;
}

void Win32Host::ReplaceMessageSelection(const char* text) {
  ask_edit(EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(wide_of(text).c_str()));
}

void Win32Host::DrainMessages() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) return PostQuitMessage(static_cast<int>(message.wParam));
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

}  // namespace qv
