#include "qvtools/widgets/win32/drawing_window.h"

#include <windowsx.h>

#include <algorithm>
#include <utility>

#include "qvtools/platform/win32/gdi_context.h"
#include "qvtools/platform/win32/gdi_output.h"

namespace qv {

using viewer::Mode;
using viewer::Text;

namespace {

std::wstring wide(const std::string& utf8) {
  const int n = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), nullptr, 0);
  std::wstring text(static_cast<std::size_t>(n), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), text.data(), n);
  return text;
}

COLORREF background_of(const viewer::View& view) {
  return view.is_light() ? 0xFFFFFF : 0x000000;
}

}  // namespace

DrawingWindow::DrawingWindow(HWND window, viewer::View::Listener& listener) : window_(window), view_(*this, listener) {}

DrawingWindow::~DrawingWindow() = default;

CRect DrawingWindow::ClientRect() const {
  RECT client = {};
  GetClientRect(window_, &client);
  return {0, 0, std::max(static_cast<int>(client.right), 1), std::max(static_cast<int>(client.bottom), 1)};
}

BitmapContext& DrawingWindow::bitmap() {
  const CRect client = ClientRect();
  if (!bitmap_ || bitmap_->Width() != client.right || bitmap_->Height() != client.bottom) {
    bitmap_ = std::make_unique<BitmapContext>(client.right, client.bottom, 0xFFFFFF);
    Invalidate(true);
  }
  return *bitmap_;
}

CDC& DrawingWindow::ClientContext() {
  return bitmap();
}

void DrawingWindow::ReleaseClientContext() {
  InvalidateRect(window_, nullptr, FALSE);
}

// Everything is drawn at once, and never without its background.
void DrawingWindow::Invalidate(bool) {
  stale_ = true;
  InvalidateRect(window_, nullptr, FALSE);
}

void DrawingWindow::Post(unsigned int message) {
  PostMessageW(window_, kPosted, message, 0);
}

const BitmapContext& DrawingWindow::Picture() {
  BitmapContext& picture = bitmap();
  if (std::exchange(stale_, false)) view_.show(picture, background_of(view_));
  return picture;
}

void DrawingWindow::paint() {
  PAINTSTRUCT painting;
  const HDC dc = BeginPaint(window_, &painting);
  const BitmapContext& picture = Picture();
  show_bitmap(dc, 0, 0, picture);
  if (view_.drawing()) {
    paint_overlay(dc, view_.dragged_by().value_or(CPoint()));
  } else if (!emptyText_.empty()) {
    RECT client;
    GetClientRect(window_, &client);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, 0x808080);
    DrawTextW(dc, emptyText_.c_str(), -1, &client, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
  }
  EndPaint(window_, &painting);
}

void DrawingWindow::paint_overlay(HDC dc, CPoint shift) {
  std::vector<viewer::OverlayLabel> labels;
  SetViewportOrgEx(dc, shift.x, shift.y, nullptr);
  {
    GdiContext context(dc);
    view_.paint_overlay(context, labels);
  }
  const HGDIOBJ before = SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
  for (const viewer::OverlayLabel& label : labels) paint_label(dc, label.at, label.text, false);
  const CaughtPoint* const caught = view_.Caught();
  if (view_.mode() == Mode::Measure && caught && view_.pointer()) {
    const CFPoint at(static_cast<float>(caught->at.x), static_cast<float>(caught->at.y));
    const auto word = static_cast<Text>(static_cast<int>(Text::CatchEnd) + static_cast<int>(caught->kind));
    paint_label(dc, view_.CurrentView().FPtoDP(at), viewer::caption(word, language_), true);
  }
  SelectObject(dc, before);
  SetViewportOrgEx(dc, 0, 0, nullptr);
}

void DrawingWindow::paint_label(HDC dc, CPoint at, const std::string& text, bool below) const {
  constexpr int kAway = 10;
  const std::wstring words = wide(text);
  SetBkMode(dc, OPAQUE);
  SetBkColor(dc, view_.is_light() ? RGB(255, 255, 235) : RGB(40, 40, 40));
  SetTextColor(dc, view_.is_light() ? RGB(0, 0, 0) : RGB(255, 255, 255));
  SIZE size = {};
  GetTextExtentPoint32W(dc, words.c_str(), static_cast<int>(words.size()), &size);
  TextOutW(dc, at.x + kAway, below ? at.y + kAway : at.y - kAway - size.cy, words.c_str(),
           static_cast<int>(words.size()));
}

bool DrawingWindow::Handle(UINT message, WPARAM w, LPARAM l, LRESULT& result) {
  POINT point = {GET_X_LPARAM(l), GET_Y_LPARAM(l)};
  result = 0;
  switch (message) {
    case WM_PAINT:
      return paint(), true;
    case WM_ERASEBKGND:
      return result = 1, true;
    case WM_SIZE:
      if (w != SIZE_MINIMIZED) view_.resized();
      return true;
    case WM_KEYDOWN:
      return handle_key(w);
    case WM_MOUSEWHEEL:
      ScreenToClient(window_, &point);
      return wheel(w, point), true;
    case kPosted:
      return view_.on_message(static_cast<unsigned int>(w)), true;
    case WM_SETCURSOR:
      if (LOWORD(l) != HTCLIENT) return false;
      // Cross hairs are drawn in place of the system's pointer where corners are given.
      SetCursor(view_.mode() == Mode::Hand ? LoadCursorW(nullptr, IDC_HAND) : nullptr);
      return result = TRUE, true;
    default:
      return handle_pointer(message, w, point);
  }
}

bool DrawingWindow::handle_key(WPARAM key) {
  if (key == VK_ESCAPE) return letterBefore_ = false, view_.cancel(), true;
  if (view_.mode() != Mode::Measure) return false;
  const bool before = std::exchange(letterBefore_, false);
  if (before && key >= 'A' && key <= 'Z') return view_.catch_by_letter(static_cast<char>('a' + (key - 'A'))), true;
  switch (key) {
    case 'S':
      return letterBefore_ = true;
    case VK_TAB:
      return view_.next_caught(GetKeyState(VK_SHIFT) < 0 ? -1 : 1), true;
    case VK_RETURN:
      return view_.cancel(), true;
    case VK_F3:
      return view_.switch_catching(), true;
    default:
      return false;
  }
}

bool DrawingWindow::handle_pointer(UINT message, WPARAM w, CPoint point) {
  const bool add = (w & (MK_SHIFT | MK_CONTROL)) != 0;
  switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      SetFocus(window_);
      SetCapture(window_);
      view_.left_down(point, add);
      break;
    case WM_LBUTTONUP:
      ReleaseCapture();
      view_.left_up(point, add);
      break;
    case WM_MBUTTONDOWN:
      SetCapture(window_);
      view_.middle_down(point);
      break;
    case WM_MBUTTONUP:
      ReleaseCapture();
      view_.middle_up(point);
      break;
    case WM_MBUTTONDBLCLK:
      view_.show_all();
      break;
    case WM_RBUTTONDOWN:
      view_.cancel();
      break;
    case WM_MOUSEMOVE: {
      TRACKMOUSEEVENT track = {sizeof track, TME_LEAVE, window_, 0};
      TrackMouseEvent(&track);
      view_.move(point);
      break;
    }
    case WM_MOUSELEAVE:
      view_.leave();
      break;
    default:
      return false;
  }
  return true;
}

void DrawingWindow::wheel(WPARAM w, CPoint point) {
  constexpr DWORD kPause = 800;  // milliseconds after which a new turn begins
  const DWORD now = GetTickCount();
  const bool continues = now - std::exchange(lastWheel_, now) < kPause;
  if (!view_.dragged_by()) view_.wheel(point, GET_WHEEL_DELTA_WPARAM(w) / static_cast<double>(WHEEL_DELTA), continues);
}

// ---------------------------------------------------------------- the child window

namespace {
constexpr wchar_t kControlClass[] = L"QvDrawingView";
}  // namespace

std::unique_ptr<DrawingControl> DrawingControl::Create(HWND parent, const RECT& place) {
  WNDCLASSW kind = {};
  kind.style = CS_DBLCLKS;
  kind.lpfnWndProc = window_proc;
  kind.hInstance = GetModuleHandleW(nullptr);
  kind.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
  kind.lpszClassName = kControlClass;
  RegisterClassW(&kind);
  const DWORD style = parent ? WS_CHILD | WS_VISIBLE : WS_OVERLAPPEDWINDOW | WS_VISIBLE;
  std::unique_ptr<DrawingControl> control(new DrawingControl);
  const HWND window = CreateWindowExW(0, kControlClass, L"", style, place.left, place.top, place.right - place.left,
                                      place.bottom - place.top, parent, nullptr, kind.hInstance, nullptr);
  if (!window) return nullptr;
  control->window_ = window;
  control->drawing_.reset(new DrawingWindow(window, *control));
  SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(control.get()));
  control->drawing_->View().resized();
  return control;
}

DrawingControl::~DrawingControl() {
  OnDestroyed = nullptr;
  if (window_) DestroyWindow(window_);
}

LRESULT CALLBACK DrawingControl::window_proc(HWND window, UINT message, WPARAM w, LPARAM l) {
  auto* const control = reinterpret_cast<DrawingControl*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (!control) return DefWindowProcW(window, message, w, l);
  if (message == WM_NCDESTROY) {
    SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    control->window_ = nullptr;
    // The function may end the control.
    const std::function<void()> told = control->OnDestroyed;
    call(told);
    return 0;
  }
  LRESULT result = 0;
  return control->drawing_->Handle(message, w, l, result) ? result : DefWindowProcW(window, message, w, l);
}

bool DrawingControl::Open(const char* path) {
  auto document = std::make_unique<DXF>();
  document->New_MemDxf();
  ImportReport report;
  if (!path || !Import(path, *document, {}, report)) return false;
  SetDocument(std::move(document), std::move(report.notes));
  return true;
}

void DrawingControl::SetDocument(std::unique_ptr<DXF> document, DrawingNotes notes) {
  View().open(std::make_unique<viewer::Drawing>(std::move(document), View().is_light(), std::move(notes)));
}

}  // namespace qv
