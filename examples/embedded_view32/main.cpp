/// A program's own window on Windows: embedded_view32 DRAWING.dxf [PICTURE.png]
///
/// On the right a drawing in the library's control. On the left, painted by GDI, the program's own: an overview of the
/// drawing, which the library draws on GDI's device context, and how many entities are picked. With a second word what
/// the control shows is written as a picture, and the program ends.

#include <algorithm>
#include <cstdio>

#include "qvtools.h"
#include "qvtools/platform/win32/gdi_context.h"
#include "qvtools/widgets/win32/drawing_window.h"

namespace {

constexpr RECT kOwn = {0, 0, 200, 600}, kView = {200, 0, 880, 600};
constexpr int kMargin = 10;
qv::DrawingControl* g_view = nullptr;  // while there is one

int fail(const char* what, const char* why) {
  std::fprintf(stderr, "embedded_view32: %s: %s\n", what, why);
  return 1;
}

void paint(HDC handle) {
  qv::viewer::Drawing* const drawing = g_view ? g_view->View().drawing() : nullptr;
  if (!drawing) return;
  const CFRect all = drawing->extent({});
  const float side = kOwn.right - 2 * kMargin;
  const float scale = side / std::max({all.Width(), all.Height(), 1.0F});
  {
    qv::GdiContext dc(handle);
    drawing->draw(dc, CFCoor({all.x1 - kMargin / scale, all.y2 + kMargin / scale}, scale, 1), {});
  }
  const std::wstring text = std::to_wstring(g_view->View().picks().size()) + L" picked";
  TextOutW(handle, kMargin, static_cast<int>(side) + 3 * kMargin, text.c_str(), static_cast<int>(text.size()));
}

LRESULT CALLBACK window_proc(HWND window, UINT message, WPARAM w, LPARAM l) {
  if (message == WM_DESTROY) return PostQuitMessage(0), 0;
  if (message != WM_PAINT) return DefWindowProcW(window, message, w, l);
  PAINTSTRUCT what;
  paint(BeginPaint(window, &what));
  EndPaint(window, &what);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return fail("usage", "embedded_view32 DRAWING.dxf [PICTURE.png]");
  if (!G_ShapeFont.SetTxtFont(FONTS, "txt.shx")) return fail(FONTS, "there is no txt.shx");
  if (!G_ShapeFont.SetHzFont(FONTS, "hztxt.shx")) fail(FONTS, "without hztxt.shx Chinese texts stay blank");
  WNDCLASSW kind = {};
  kind.lpfnWndProc = window_proc;
  kind.hInstance = GetModuleHandleW(nullptr);
  kind.lpszClassName = L"embedded_view32";
  kind.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
  RegisterClassW(&kind);
  const HWND window = CreateWindowExW(0, kind.lpszClassName, L"embedded_view32", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50,
                                      50, 900, 650, nullptr, nullptr, kind.hInstance, nullptr);
  if (!window) return fail("the window", "cannot be made");
  const auto view = qv::DrawingControl::Create(window, kView);
  if (!view) return fail("the view", "cannot be made");
  if (!view->Open(argv[1])) return fail(argv[1], "cannot be read");
  g_view = view.get();
  InvalidateRect(window, &kOwn, TRUE);
  view->OnPicksChanged = [window] { InvalidateRect(window, &kOwn, TRUE); };
  if (argc > 2) return qv::SavePng(view->Drawing().Picture(), argv[2]) ? 0 : fail(argv[2], "cannot be written");
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return 0;
}
