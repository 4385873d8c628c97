#include "viewer.h"

#include <commdlg.h>
#include <shellapi.h>
#include <windowsx.h>

#include <algorithm>
#include <vector>

#include "common/picture_file.h"
#include "common/plotting.h"
#include "common/unreadable.h"
#include "plot_dialog.h"
#include "printing.h"
#include "system_text.h"

namespace qvview32 {

using qvview::Mode;
using qvview::Text;

/// A command of the menu: its number there is its index in the table. One without an action begins a menu.
struct Viewer::Command {
  Text text;
  void (*run)(Viewer& viewer);
  const wchar_t* keyName;
  WORD key;
  BYTE modifiers;
};

const Viewer::Command Viewer::kCommands[] = {
    {Text::FileMenu, nullptr, L"", 0, 0},
    {Text::Open, [](Viewer& v) { v.ask_for_drawing(); }, L"Ctrl+O", 'O', FCONTROL},
    {Text::Reload, [](Viewer& v) { v.reload(); }, L"F5", VK_F5, 0},
    {Text::Export, [](Viewer& v) { v.save_picture(); }, L"Ctrl+E", 'E', FCONTROL},
    {Text::Plot, [](Viewer& v) { v.plot(true); }, L"Ctrl+Shift+P", 'P', FCONTROL | FSHIFT},
    {Text::Print, [](Viewer& v) { v.plot(false); }, L"Ctrl+P", 'P', FCONTROL},
    {Text::Quit, [](Viewer& v) { SendMessageW(v.window_, WM_CLOSE, 0, 0); }, L"Ctrl+Q", 'Q', FCONTROL},
    {Text::ViewMenu, nullptr, L"", 0, 0},
    {Text::ShowAll, [](Viewer& v) { v.view_->show_all(); }, L"Home", VK_HOME, 0},
    {Text::ShowPrevious, [](Viewer& v) { v.view_->ShowPre(); }, L"Backspace", VK_BACK, 0},
    {Text::WindowZoom, [](Viewer& v) { v.set_mode(Mode::WindowZoom); }, L"W", 'W', 0},
    {Text::Hand, [](Viewer& v) { v.set_mode(Mode::Hand); }, L"H", 'H', 0},
    {Text::PickEntities, [](Viewer& v) { v.set_mode(Mode::Pick); }, L"P", 'P', 0},
    {Text::Enlarge, [](Viewer& v) { v.view_->zoom_out(); }, L"Page Up", VK_PRIOR, 0},
    {Text::Reduce, [](Viewer& v) { v.view_->zoom_in(); }, L"Page Down", VK_NEXT, 0},
    {Text::DarkBackground, [](Viewer& v) { v.toggle_background(); }, L"B", 'B', 0},
};

namespace {

constexpr wchar_t kClass[] = L"qvview32";

/// What the common dialogs ask of a file's name.
struct FileDialog {
  wchar_t path[MAX_PATH] = L"";
  OPENFILENAMEW question = {};
  FileDialog(HWND owner, const wchar_t* filter, DWORD flags) {
    question.lStructSize = sizeof question;
    question.hwndOwner = owner;
    question.lpstrFilter = filter;
    question.lpstrFile = path;
    question.nMaxFile = MAX_PATH;
    question.Flags = flags | OFN_NOCHANGEDIR;
  }
};

Text reason_of(qvapps::Unreadable why) {
  constexpr Text kReasons[] = {Text::Missing, Text::IsDirectory, Text::NotOpened, Text::NotOpened, Text::NoEntities};
  return kReasons[static_cast<int>(why)];
}

}  // namespace

std::unique_ptr<Viewer> Viewer::Create(qvview::Language language) {
  std::unique_ptr<Viewer> viewer(new Viewer(language));
  return viewer->create() ? std::move(viewer) : nullptr;
}

Viewer::~Viewer() {
  if (window_) DestroyWindow(window_);
  DestroyAcceleratorTable(keys_);
}

bool Viewer::create() {
  WNDCLASSW kind = {};
  kind.style = CS_DBLCLKS;
  kind.lpfnWndProc = window_proc;
  kind.hInstance = GetModuleHandleW(nullptr);
  kind.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
  kind.lpszClassName = kClass;
  RegisterClassW(&kind);
  constexpr DWORD kStyle = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
  const HWND made = CreateWindowExW(WS_EX_ACCEPTFILES, kClass, kClass, kStyle, CW_USEDEFAULT, CW_USEDEFAULT, 1100, 800,
                                    nullptr, make_menu(), kind.hInstance, nullptr);
  if (!made) return false;
  window_ = made;
  canvas_.emplace(window_);
  view_ = std::make_unique<qvview::View>(*canvas_, *this);
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  make_keys();
  show_title();
  view_->resized();
  ShowWindow(window_, SW_SHOWDEFAULT);
  return true;
}

HMENU Viewer::make_menu() const {
  const HMENU bar = CreateMenu();
  HMENU menu = nullptr;
  for (std::size_t i = 0; i < std::size(kCommands); ++i) {
    const Command& command = kCommands[i];
    if (command.run) {
      AppendMenuW(menu, MF_STRING, i, (words(command.text) + L'\t' + command.keyName).c_str());
    } else {
      menu = CreatePopupMenu();
      AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(menu), words(command.text).c_str());
    }
  }
  return bar;
}

void Viewer::make_keys() {
  std::vector<ACCEL> keys;
  for (std::size_t i = 0; i < std::size(kCommands); ++i)
    if (kCommands[i].run)
      keys.push_back({static_cast<BYTE>(kCommands[i].modifiers | FVIRTKEY), kCommands[i].key, static_cast<WORD>(i)});
  keys_ = CreateAcceleratorTableW(keys.data(), static_cast<int>(keys.size()));
}

LRESULT CALLBACK Viewer::window_proc(HWND window, UINT message, WPARAM w, LPARAM l) {
  auto* const viewer = reinterpret_cast<Viewer*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  return viewer ? viewer->handle(message, w, l) : DefWindowProcW(window, message, w, l);
}

LRESULT Viewer::handle(UINT message, WPARAM w, LPARAM l) {
  POINT point = {GET_X_LPARAM(l), GET_Y_LPARAM(l)};
  switch (message) {
    case WM_PAINT:
      return paint(), 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_SIZE:
      if (w != SIZE_MINIMIZED) view_->resized();
      return 0;
    case WM_COMMAND:
      if (LOWORD(w) < std::size(kCommands) && kCommands[LOWORD(w)].run) kCommands[LOWORD(w)].run(*this);
      return 0;
    case WM_KEYDOWN:
      if (w == VK_ESCAPE) view_->cancel();
      return 0;
    case WM_MOUSEWHEEL:
      ScreenToClient(window_, &point);
      return wheel(w, point), 0;
    case WM_DROPFILES: {
      wchar_t path[MAX_PATH] = L"";
      DragQueryFileW(reinterpret_cast<HDROP>(w), 0, path, MAX_PATH);
      DragFinish(reinterpret_cast<HDROP>(w));
      return Open(path), 0;
    }
    case Canvas::kPosted:
      return view_->on_message(static_cast<unsigned int>(w)), 0;
    case WM_SETCURSOR:
      if (LOWORD(l) != HTCLIENT) return DefWindowProcW(window_, message, w, l);
      return show_pointer(), TRUE;
    case WM_DESTROY:
      SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
      window_ = nullptr;
      return PostQuitMessage(0), 0;
    default:
      return handle_pointer(message, w, point) ? 0 : DefWindowProcW(window_, message, w, l);
  }
}

bool Viewer::handle_pointer(UINT message, WPARAM w, CPoint point) {
  const bool add = (w & (MK_SHIFT | MK_CONTROL)) != 0;
  switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      SetCapture(window_);
      view_->left_down(point, add);
      break;
    case WM_LBUTTONUP:
      ReleaseCapture();
      view_->left_up(point, add);
      break;
    case WM_MBUTTONDOWN:
      SetCapture(window_);
      view_->middle_down(point);
      break;
    case WM_MBUTTONUP:
      ReleaseCapture();
      view_->middle_up(point);
      break;
    case WM_MBUTTONDBLCLK:
      view_->show_all();
      break;
    case WM_RBUTTONDOWN:
      view_->cancel();
      break;
    case WM_MOUSEMOVE: {
      TRACKMOUSEEVENT track = {sizeof track, TME_LEAVE, window_, 0};
      TrackMouseEvent(&track);
      view_->move(point);
      if (view_->dragged_by()) InvalidateRect(window_, nullptr, FALSE);
      break;
    }
    case WM_MOUSELEAVE:
      view_->leave();
      break;
    default:
      return false;
  }
  return true;
}

void Viewer::wheel(WPARAM w, CPoint point) {
  constexpr DWORD kPause = 800;  // milliseconds after which a new turn begins
  const DWORD now = GetTickCount();
  const bool continues = now - std::exchange(lastWheel_, now) < kPause;
  if (!view_->dragged_by())
    view_->wheel(point, GET_WHEEL_DELTA_WPARAM(w) / static_cast<double>(WHEEL_DELTA), continues);
}

void Viewer::paint() {
  PAINTSTRUCT painting;
  const HDC dc = BeginPaint(window_, &painting);
  canvas_->Paint(dc, *view_);
  if (!view_->drawing()) {
    RECT client;
    GetClientRect(window_, &client);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, 0x808080);
    DrawTextW(dc, words(Text::NoDrawing).c_str(), -1, &client, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
  }
  EndPaint(window_, &painting);
}

void Viewer::Open(const std::wstring& path) {
  const std::string name = path_of(path);
  auto document = std::make_unique<DXF>();
  document->New_MemDxf();
  const HCURSOR before = SetCursor(LoadCursorW(nullptr, IDC_WAIT));
  qv::ImportReport report;
  const bool loaded = qv::Import(name.c_str(), *document, {}, report) != 0;
  SetCursor(before);
  if (!loaded) return complain(Text::CannotOpen, path, words(reason_of(qvapps::diagnose(name))));
  auto drawing = std::make_unique<qvview::Drawing>(std::move(document), view_->is_light(), std::move(report.notes),
                                                   qvapps::unit_of(report));
  if (path == path_)
    view_->reload(std::move(drawing));
  else
    view_->open(std::move(drawing));
  path_ = path;
  report_ = wide_of_utf8(report.summary().c_str());
  show_title();
}

void Viewer::ask_for_drawing() {
  FileDialog dialog(window_, L"*.dxf\0*.dxf\0*.*\0*.*\0", OFN_FILEMUSTEXIST | OFN_HIDEREADONLY);
  if (GetOpenFileNameW(&dialog.question)) Open(dialog.path);
}

void Viewer::reload() {
  if (!path_.empty()) Open(std::wstring(path_));
}

void Viewer::save_picture() {
  FileDialog dialog(window_, L"*.png\0*.png\0*.emf\0*.emf\0", OFN_OVERWRITEPROMPT);
  dialog.question.lpstrDefExt = L"png";
  if (!GetSaveFileNameW(&dialog.question)) return;
  const std::string name = path_of(dialog.path);
  const bool everyLetter = qvapps::picture_kind(name) != qvapps::PictureKind::Png;
  const CRect client = canvas_->ClientRect();
  const CSize size(client.Width(), client.Height());
  const bool saved = qvapps::save_drawn(name, size, view_->is_light() ? 0xFFFFFF : 0,
                                        [&](CDC& dc) { view_->draw_into(dc, size, everyLetter); });
  if (!saved) complain(Text::CannotWrite, dialog.path);
}

void Viewer::plot(bool toFile) {
  if (!view_->drawing()) return;
  const std::string name = utf8_of(file_name());
  const auto finish = [&](HWND dialog) {
    std::string problem;
    const bool done =
        toFile ? plot_to_file(dialog, problem) : print_plot(dialog, *view_, name, plotSetup_, language_, problem);
    if (!problem.empty()) MessageBoxW(dialog, wide_of_utf8(problem.c_str()).c_str(), kClass, MB_OK | MB_ICONERROR);
    return done;
  };
  PlotDialog(*view_, name, plotSetup_, language_, toFile, finish).Show(window_);
}

/// False when the user gave up or it failed, which the text tells.
bool Viewer::plot_to_file(HWND owner, std::string& problem) {
  FileDialog dialog(owner, L"PDF\0*.pdf\0SVG\0*.svg\0PNG\0*.png\0", OFN_OVERWRITEPROMPT);
  if (!GetSaveFileNameW(&dialog.question)) return false;
  std::wstring path = dialog.path;
  constexpr const wchar_t* kEndings[] = {L".pdf", L".svg", L".png"};  // as the filters have them
  if (dialog.question.nFileExtension == 0) path += kEndings[std::clamp<DWORD>(dialog.question.nFilterIndex, 1, 3) - 1];
  const HCURSOR before = SetCursor(LoadCursorW(nullptr, IDC_WAIT));
  problem = qvview::PlotJob(*view_, utf8_of(file_name()), plotSetup_, language_).write(path_of(path));
  SetCursor(before);
  return problem.empty();
}

std::wstring Viewer::file_name() const {
  return path_.substr(path_.find_last_of(L"\\/") + 1);
}

void Viewer::toggle_background() {
  view_->set_light(!view_->is_light());
}

void Viewer::set_mode(Mode mode) {
  view_->set_mode(mode);
}

void Viewer::show_title() {
  const std::wstring name = file_name();
  std::wstring title = name.empty() ? kClass : name + L" - " + kClass;
  const std::size_t picked = view_->picks().size();
  if (picked > 0) title += L" - " + filled(words(Text::PickedIs), std::to_wstring(picked));
  if (!report_.empty()) title += L" - " + report_;
  SetWindowTextW(window_, title.c_str());
}

// Cross hairs are drawn in place of the system's pointer where corners are given.
void Viewer::show_pointer() {
  const bool hand = view_ && view_->mode() == Mode::Hand;
  SetCursor(hand ? LoadCursorW(nullptr, IDC_HAND) : nullptr);
}

void Viewer::complain(Text text, const std::wstring& name, const std::wstring& why) {
  MessageBoxW(window_, filled(words(text), name, why).c_str(), kClass, MB_OK | MB_ICONERROR);
}

std::wstring Viewer::words(Text text) const {
  return wide_of_utf8(qvview::caption(text, language_));
}

}  // namespace qvview32
