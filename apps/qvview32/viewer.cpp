#include "viewer.h"

#include <commdlg.h>
#include <shellapi.h>

#include <algorithm>
#include <vector>

#include "common/picture_file.h"
#include "common/plotting.h"
#include "common/unreadable.h"
#include "plot_dialog.h"
#include "printing.h"
#include "qvtools/version.h"
#include "system_text.h"

namespace qvview32 {

using qvview::MeasureKind;
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
    {Text::FindTexts, [](Viewer& v) { v.ask_what_to_find(); }, L"Ctrl+F", 'F', FCONTROL},
    {Text::MeasureMenu, nullptr, L"", 0, 0},
    {Text::MeasureDistance, [](Viewer& v) { v.view_->begin_measure(MeasureKind::Distance); }, L"M", 'M', 0},
    {Text::MeasureAngle, [](Viewer& v) { v.view_->begin_measure(MeasureKind::Angle); }, L"Ctrl+1", '1', FCONTROL},
    {Text::MeasureRadius, [](Viewer& v) { v.view_->begin_measure(MeasureKind::Radius); }, L"Ctrl+2", '2', FCONTROL},
    {Text::MeasureArea, [](Viewer& v) { v.view_->begin_measure(MeasureKind::Area); }, L"Ctrl+3", '3', FCONTROL},
    {Text::MeasureObjectArea, [](Viewer& v) { v.view_->begin_measure(MeasureKind::ObjectArea); }, L"Ctrl+4", '4',
     FCONTROL},
    {Text::MeasureCoordinates, [](Viewer& v) { v.view_->begin_measure(MeasureKind::Coordinates); }, L"Ctrl+5", '5',
     FCONTROL},
    {Text::TakeBackPoint, [](Viewer& v) { v.view_->take_back_point(); }, L"Ctrl+Z", 'Z', FCONTROL},
    {Text::CopyMeasures, [](Viewer& v) { v.copy_measures(); }, L"Ctrl+M", 'M', FCONTROL},
    {Text::ClearMeasures, [](Viewer& v) { v.view_->clear_measures(); }, L"Ctrl+Shift+M", 'M', FCONTROL | FSHIFT},
    {Text::Catching, [](Viewer& v) { v.view_->switch_catching(); }, L"F3", VK_F3, 0},
    {Text::HelpMenu, nullptr, L"", 0, 0},
    {Text::Handling, [](Viewer& v) { v.tell(Text::Handling, v.words(Text::NativeHandlingText)); }, L"F1", VK_F1, 0},
    {Text::About, [](Viewer& v) { v.tell_about(); }, L"", 0, 0},
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

std::unique_ptr<Viewer> Viewer::Create(qvview::Language language, const qvapps::FontFiles& fonts,
                                       const std::string& programDirectory) {
  std::unique_ptr<Viewer> viewer(new Viewer(language, fonts, programDirectory));
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
  kind.hIcon = LoadIconW(kind.hInstance, MAKEINTRESOURCEW(1));
  kind.lpszClassName = kClass;
  RegisterClassW(&kind);
  constexpr DWORD kStyle = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
  const HWND made = CreateWindowExW(WS_EX_ACCEPTFILES, kClass, kClass, kStyle, CW_USEDEFAULT, CW_USEDEFAULT, 1100, 800,
                                    nullptr, make_menu(), kind.hInstance, nullptr);
  if (!made) return false;
  window_ = made;
  drawing_.emplace(window_, *this);
  drawing_->SetLanguage(language_);
  drawing_->SetEmptyText(words(Text::NoDrawing));
  view_ = &drawing_->View();
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
    if (kCommands[i].run && kCommands[i].key)
      keys.push_back({static_cast<BYTE>(kCommands[i].modifiers | FVIRTKEY), kCommands[i].key, static_cast<WORD>(i)});
  keys_ = CreateAcceleratorTableW(keys.data(), static_cast<int>(keys.size()));
}

LRESULT CALLBACK Viewer::window_proc(HWND window, UINT message, WPARAM w, LPARAM l) {
  auto* const viewer = reinterpret_cast<Viewer*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  return viewer ? viewer->handle(message, w, l) : DefWindowProcW(window, message, w, l);
}

LRESULT Viewer::handle(UINT message, WPARAM w, LPARAM l) {
  static const UINT kFind = RegisterWindowMessageW(FINDMSGSTRINGW);
  LRESULT result = 0;
  if (message == kFind) {
    if (find_.Flags & FR_DIALOGTERM) findDialog_ = nullptr;
    if (find_.Flags & FR_FINDNEXT) find_next();
    return 0;
  }
  switch (message) {
    case WM_COMMAND:
      if (LOWORD(w) < std::size(kCommands) && kCommands[LOWORD(w)].run) kCommands[LOWORD(w)].run(*this);
      return 0;
    case WM_DROPFILES: {
      wchar_t path[MAX_PATH] = L"";
      DragQueryFileW(reinterpret_cast<HDROP>(w), 0, path, MAX_PATH);
      DragFinish(reinterpret_cast<HDROP>(w));
      return Open(path), 0;
    }
    case WM_DESTROY:
      SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
      window_ = nullptr;
      return PostQuitMessage(0), 0;
    default:
      return drawing_->Handle(message, w, l, result) ? result : DefWindowProcW(window_, message, w, l);
  }
}

void Viewer::ask_what_to_find() {
  if (!view_->drawing() || findDialog_) return;
  find_ = {};
  find_.lStructSize = sizeof find_;
  find_.hwndOwner = window_;
  find_.lpstrFindWhat = findWhat_;
  find_.wFindWhatLen = static_cast<WORD>(std::size(findWhat_));
  find_.Flags = FR_DOWN | FR_HIDEUPDOWN;
  findDialog_ = FindTextW(&find_);
}

void Viewer::find_next() {
  const qvview::FindWhat what{utf8_of(findWhat_), (find_.Flags & FR_MATCHCASE) != 0, (find_.Flags & FR_WHOLEWORD) != 0};
  const bool same = searched_ == view_->drawing() && what.words == found_.words && what.matchCase == found_.matchCase &&
                    what.wholeWord == found_.wholeWord;
  hit_ = same ? hit_ + 1 : 0;
  if (!same) {
    searched_ = view_->drawing();
    hits_ = qvview::find_texts(*view_->drawing(), what, view_->CurrentAngles());
    found_ = what;
  }
  if (hits_.empty()) return static_cast<void>(MessageBoxW(findDialog_, words(Text::FoundNone).c_str(), kClass, MB_OK));
  view_->show_hit(hits_[hit_ % hits_.size()]);
}

void Viewer::copy_measures() {
  const std::wstring text = wide_of_utf8(view_->measuring().words(language_).c_str());
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t));
  if (!memory) return;
  std::copy_n(text.c_str(), text.size() + 1, static_cast<wchar_t*>(GlobalLock(memory)));
  GlobalUnlock(memory);
  if (!OpenClipboard(window_)) return static_cast<void>(GlobalFree(memory));
  EmptyClipboard();
  if (!SetClipboardData(CF_UNICODETEXT, memory)) GlobalFree(memory);
  CloseClipboard();
}

void Viewer::Open(const std::wstring& path) {
  const std::string name = path_of(path);
  auto document = std::make_unique<DXF>();
  const HCURSOR before = SetCursor(LoadCursorW(nullptr, IDC_WAIT));
  qv::ImportOptions options;
  options.shapeFolders = qvapps::shape_folders(name, programDirectory_);
  qv::ImportReport report;
  const auto read = [&] {
    document->New_MemDxf();
    return qv::Import(name.c_str(), *document, options, report) != 0;
  };
  std::vector<std::string> replaced;
  bool loaded = read();
  // Texts are measured when they are read.
  if (loaded && load_fonts(qvapps::fonts_for(*document, usualFonts_, replaced))) loaded = read();
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
  if (!replaced.empty())
    report_ += (report_.empty() ? L"" : L"; ") +
               filled(words(Text::FontsReplaced), wide_of_utf8(qvapps::replacement(replaced, loadedFonts_).c_str()));
  show_title();
}

/// True when others are loaded now.
bool Viewer::load_fonts(const qvapps::FontFiles& fonts) {
  if (fonts == loadedFonts_) return false;
  std::optional<qvview::Drawing::Still> still;
  if (view_->drawing()) still.emplace(*view_->drawing());
  if (!qvapps::change_fonts(fonts)) return false;
  loadedFonts_ = fonts;
  view_->fonts_changed();
  return true;
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
  const CRect client = drawing_->ClientRect();
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
  const auto& results = view_->measuring().results();
  if (!results.empty()) title += L" - " + wide_of_utf8(results.back().words(language_).c_str());
  if (!report_.empty()) title += L" - " + report_;
  SetWindowTextW(window_, title.c_str());
}

void Viewer::tell_about() {
  const std::wstring about = filled(words(Text::AboutText), wide_of_utf8(QVTOOLS_VERSION));
  tell(Text::About, about);
}

void Viewer::tell(Text title, const std::wstring& text) {
  MessageBoxW(window_, text.c_str(), words(title).c_str(), MB_OK | MB_ICONINFORMATION);
}

void Viewer::complain(Text text, const std::wstring& name, const std::wstring& why) {
  MessageBoxW(window_, filled(words(text), name, why).c_str(), kClass, MB_OK | MB_ICONERROR);
}

std::wstring Viewer::words(Text text) const {
  return wide_of_utf8(qvview::caption(text, language_));
}

}  // namespace qvview32
