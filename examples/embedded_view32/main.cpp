/// A program's own window with a drawing in a part of it: embedded_view32 DRAWING.dxf [PICTURE.png]
///
/// The title tells how many entities are picked; with a second word what is seen is written as a picture, and the
/// program ends.

#include "qvtools.h"
#include "qvtools/widgets/win32/drawing_window.h"

namespace {

LRESULT CALLBACK window_proc(HWND window, UINT message, WPARAM w, LPARAM l) {
  if (message == WM_DESTROY) return PostQuitMessage(0), 0;
  return DefWindowProcW(window, message, w, l);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  WNDCLASSW kind = {};
  kind.lpfnWndProc = window_proc;
  kind.hInstance = GetModuleHandleW(nullptr);
  kind.lpszClassName = L"embedded_view32";
  RegisterClassW(&kind);
  const HWND window = CreateWindowExW(0, kind.lpszClassName, L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, 900, 650,
                                      nullptr, nullptr, kind.hInstance, nullptr);
  if (!window) return 1;
  const RECT place = {200, 0, 880, 600};  // the left part is the program's own
  const auto view = qv::DrawingControl::Create(window, place);
  if (!view || !view->Open(argv[1])) return 1;
  view->OnPicksChanged = [&] {
    SetWindowTextW(window, (std::to_wstring(view->View().picks().size()) + L" picked").c_str());
  };
  UpdateWindow(view->Handle());
  if (argc > 2) return qv::SavePng(view->Drawing().Picture(), argv[2]) ? 0 : 1;
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return 0;
}
