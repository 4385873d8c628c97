#include "plot_dialog.h"

#include <commdlg.h>

#include <algorithm>
#include <cmath>

#include "qvtools/platform/win32/gdi_output.h"
#include "system_text.h"

namespace qvview32 {

using qvview::PlotSetup;
using qvview::Text;

namespace {

enum Control {
  kWhat = 100,
  kPaper,
  kOrientation,
  kScale,
  kMargin,
  kPens,
  kPensFile,
  kColors,
  kPreview,
  kTold,
  kBefore,
  kAfter
};

constexpr UINT_PTR kTimer = 1;
constexpr UINT kPause = 200;  // milliseconds

// In the dialog's units.
constexpr int kWidth = 460;
constexpr int kHeight = 260;
constexpr int kRow = 17;
constexpr int kEdge = 7;
constexpr RECT kPreviewArea = {200, kEdge, kWidth - kEdge, 212};

/// A dialog without controls, which are made when it is.
struct alignas(4) Template {
  DLGTEMPLATE head;
  WORD menu = 0;
  WORD kind = 0;
  WORD title = 0;
  WORD points = 9;
  wchar_t font[13] = L"MS Shell Dlg";
};

}  // namespace

void PlotDialog::Show(HWND owner) {
  Template empty;
  empty.head = {
      WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_SETFONT | DS_CENTER, 0, 0, 0, 0, kWidth, kHeight};
  DialogBoxIndirectParamW(GetModuleHandleW(nullptr), &empty.head, owner, dialog_proc, reinterpret_cast<LPARAM>(this));
}

INT_PTR CALLBACK PlotDialog::dialog_proc(HWND dialog, UINT message, WPARAM w, LPARAM l) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(dialog, DWLP_USER, l);
    auto& made = *reinterpret_cast<PlotDialog*>(l);
    made.dialog_ = dialog;
    made.create();
    made.show_preview();
    return TRUE;
  }
  auto* const self = reinterpret_cast<PlotDialog*>(GetWindowLongPtrW(dialog, DWLP_USER));
  return self ? self->handle(message, w, l) : FALSE;
}

INT_PTR PlotDialog::handle(UINT message, WPARAM w, LPARAM l) {
  switch (message) {
    case WM_COMMAND:
      return command(LOWORD(w), HIWORD(w)), TRUE;
    case WM_TIMER:
      KillTimer(dialog_, kTimer);
      return show_preview(), TRUE;
    case WM_DRAWITEM:
      return draw_preview(*reinterpret_cast<const DRAWITEMSTRUCT*>(l)), TRUE;
    default:
      return FALSE;
  }
}

HWND PlotDialog::add(const wchar_t* kind, const std::wstring& text, DWORD style, RECT units, int id) {
  MapDialogRect(dialog_, &units);
  const HWND made = CreateWindowExW(0, kind, text.c_str(), WS_CHILD | WS_VISIBLE | style, units.left, units.top,
                                    units.right - units.left, units.bottom - units.top, dialog_,
                                    reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
  SendMessageW(made, WM_SETFONT, static_cast<WPARAM>(SendMessageW(dialog_, WM_GETFONT, 0, 0)), FALSE);
  return made;
}

void PlotDialog::add_choice(int row, int id, Text label, std::initializer_list<Text> texts, bool typed) {
  const int y = kEdge + row * kRow;
  add(L"STATIC", words(label), 0, {kEdge, y + 2, 75, y + 12}, -1);
  const DWORD kind = typed ? CBS_DROPDOWN : CBS_DROPDOWNLIST;
  const HWND box = add(L"COMBOBOX", L"", kind | CBS_AUTOHSCROLL | WS_VSCROLL | WS_TABSTOP, {75, y, 192, y + 160}, id);
  for (const Text text : texts) SendMessageW(box, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(words(text).c_str()));
}

void PlotDialog::create() {
  SetWindowTextW(dialog_, words(toFile_ ? Text::PlotTitle : Text::PrintTitle).c_str());
  const auto append = [&](int id, const std::wstring& text) {
    SendMessageW(control(id), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
  };
  const auto choose = [&](int id, int row) { SendMessageW(control(id), CB_SETCURSEL, static_cast<WPARAM>(row), 0); };
  add_choice(0, kWhat, Text::PlotWhat, {Text::PlotSheets, Text::PlotWhole, Text::PlotView});
  choose(kWhat, static_cast<int>(setup_.what));
  add_choice(1, kPaper, Text::PlotPaper, {Text::PaperOfSheet}, true);
  for (const qv::PaperFormat& format : qv::paper_formats()) append(kPaper, wide_of_utf8(format.name));
  choose(kPaper, 0);
  if (!setup_.paper.empty()) SetWindowTextW(control(kPaper), wide_of_utf8(setup_.paper.c_str()).c_str());
  add_choice(2, kOrientation, Text::PlotOrientation, {Text::OrientationOfDrawing, Text::Landscape, Text::Portrait});
  choose(kOrientation, static_cast<int>(setup_.orientation));
  add_choice(3, kScale, Text::PlotScale, {Text::ScaleOfSheet, Text::ScaleFits}, true);
  for (const char* const scale : qvview::usual_scales()) append(kScale, wide_of_utf8(scale));
  choose(kScale, setup_.scale == PlotSetup::Scale::OfSheet ? 0 : 1);
  if (setup_.scale == PlotSetup::Scale::Number)
    SetWindowTextW(control(kScale), wide_of_utf8(setup_.number.c_str()).c_str());
  const int margin = kEdge + 4 * kRow;
  add(L"STATIC", words(Text::PlotMargin), 0, {kEdge, margin + 2, 75, margin + 12}, -1);
  add(L"EDIT", std::to_wstring(std::lround(setup_.margin)), WS_BORDER | WS_TABSTOP | ES_NUMBER,
      {75, margin, 192, margin + 13}, kMargin);
  add_choice(5, kPens, Text::PlotPens, {});
  for (const char* const name : qv::PenTable::built_in_names()) append(kPens, wide_of_utf8(name));
  const std::wstring pens = wide_of_path(setup_.pens);
  if (SendMessageW(control(kPens), CB_SELECTSTRING, WPARAM(-1), reinterpret_cast<LPARAM>(pens.c_str())) == CB_ERR) {
    append(kPens, pens);
    choose(kPens, static_cast<int>(qv::PenTable::built_in_names().size()));
  }
  const int file = kEdge + 6 * kRow;
  add(L"BUTTON", words(Text::PensOfFile), WS_TABSTOP, {75, file, 192, file + 14}, kPensFile);
  add_choice(7, kColors, Text::PlotColors, {Text::ColorsBlack, Text::ColorsGrey, Text::ColorsOwn});
  choose(kColors, static_cast<int>(setup_.colors));
  add(L"STATIC", L"", SS_OWNERDRAW, kPreviewArea, kPreview);
  add(L"BUTTON", L"<", WS_TABSTOP, {200, 216, 216, 230}, kBefore);
  add(L"BUTTON", L">", WS_TABSTOP, {220, 216, 236, 230}, kAfter);
  add(L"STATIC", L"", SS_NOPREFIX, {242, 218, kWidth - kEdge, kHeight - 2}, kTold);
  const int low = kHeight - kEdge;
  add(L"BUTTON", words(toFile_ ? Text::WriteFile : Text::Print), WS_TABSTOP | BS_DEFPUSHBUTTON,
      {kEdge, low - 15, 95, low}, IDOK);
  add(L"BUTTON", words(Text::Cancel), WS_TABSTOP, {102, low - 15, 192, low}, IDCANCEL);
}

void PlotDialog::command(int id, int event) {
  if (id == IDOK) {
    take();
    if (finish_(dialog_)) EndDialog(dialog_, IDOK);
  } else if (id == IDCANCEL) {
    take();
    EndDialog(dialog_, IDCANCEL);
  } else if (id == kPensFile) {
    choose_pens();
  } else if (id == kBefore || id == kAfter) {
    page_ += id == kAfter ? 1 : -1;
    show_preview();
  } else if (event == CBN_SELCHANGE || event == CBN_EDITCHANGE || (id == kMargin && event == EN_CHANGE)) {
    SetTimer(dialog_, kTimer, kPause, nullptr);
  }
}

void PlotDialog::choose_pens() {
  wchar_t path[MAX_PATH] = L"";
  OPENFILENAMEW question = {};
  question.lStructSize = sizeof question;
  question.hwndOwner = dialog_;
  question.lpstrFilter = L"*.pens; *.txt; *.ctb\0*.pens;*.txt;*.ctb\0*.*\0*.*\0";
  question.lpstrFile = path;
  question.nMaxFile = MAX_PATH;
  question.Flags = OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
  if (!GetOpenFileNameW(&question)) return;
  const LRESULT row = SendMessageW(control(kPens), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(path));
  SendMessageW(control(kPens), CB_SETCURSEL, static_cast<WPARAM>(row), 0);
  show_preview();
}

void PlotDialog::take() {
  setup_.what = static_cast<PlotSetup::What>(chosen(kWhat));
  const std::wstring paper = text_of(kPaper);
  setup_.paper = paper == words(Text::PaperOfSheet) ? std::string() : utf8_of(paper);
  setup_.orientation = static_cast<qv::PlotOptions::Orientation>(chosen(kOrientation));
  const std::wstring scale = text_of(kScale);
  setup_.scale = scale == words(Text::ScaleOfSheet) ? PlotSetup::Scale::OfSheet
                 : scale == words(Text::ScaleFits)  ? PlotSetup::Scale::Fits
                                                    : PlotSetup::Scale::Number;
  setup_.number = utf8_of(scale);
  setup_.margin = static_cast<double>(GetDlgItemInt(dialog_, kMargin, nullptr, FALSE));
  setup_.pens = path_of(text_of(kPens));
  setup_.colors = static_cast<qv::PlotColors>(chosen(kColors));
}

void PlotDialog::show_preview() {
  const HCURSOR before = SetCursor(LoadCursorW(nullptr, IDC_WAIT));
  take();
  picture_.reset();
  qvview::PlotJob job(view_, name_, setup_, language_);
  const int pages = job.pages();
  page_ = std::clamp(page_, 0, std::max(pages - 1, 0));
  std::string told = job.problem();
  if (pages > 0) {
    RECT room;
    GetClientRect(control(kPreview), &room);
    picture_ = job.picture(page_, {std::max<int>(room.right - 2, 1), std::max<int>(room.bottom - 2, 1)});
    told = job.words(page_);
    if (pages > 1)
      told = filled(Text::PageOf, language_, {std::to_string(page_ + 1), std::to_string(pages)}) + "  " + told;
  }
  SetWindowTextW(control(kTold), wide_of_utf8(told.c_str()).c_str());
  EnableWindow(control(IDOK), pages > 0);
  EnableWindow(control(kBefore), page_ > 0);
  EnableWindow(control(kAfter), page_ + 1 < pages);
  InvalidateRect(control(kPreview), nullptr, FALSE);
  SetCursor(before);
}

void PlotDialog::draw_preview(const DRAWITEMSTRUCT& item) const {
  FillRect(item.hDC, &item.rcItem, GetSysColorBrush(COLOR_BTNFACE));
  if (!picture_) return;
  const int x = (item.rcItem.right - picture_->Width()) / 2;
  const int y = (item.rcItem.bottom - picture_->Height()) / 2;
  const RECT edge = {x - 1, y - 1, x + picture_->Width() + 1, y + picture_->Height() + 1};
  FrameRect(item.hDC, &edge, GetSysColorBrush(COLOR_GRAYTEXT));
  qv::show_bitmap(item.hDC, x, y, *picture_);
}

std::wstring PlotDialog::text_of(int id) const {
  // What is chosen is told before it stands in the box.
  const HWND box = control(id);
  const LRESULT row = SendMessageW(box, CB_GETCURSEL, 0, 0);
  const LRESULT length = row == CB_ERR ? GetWindowTextLengthW(box) : SendMessageW(box, CB_GETLBTEXTLEN, WPARAM(row), 0);
  std::wstring text(static_cast<std::size_t>(std::max<LRESULT>(length, 0)) + 1, L'\0');
  if (row == CB_ERR)
    GetWindowTextW(box, text.data(), static_cast<int>(text.size()));
  else
    SendMessageW(box, CB_GETLBTEXT, WPARAM(row), reinterpret_cast<LPARAM>(text.data()));
  text.pop_back();
  return text;
}

std::wstring PlotDialog::words(Text text) const {
  return wide_of_utf8(qvview::caption(text, language_));
}

}  // namespace qvview32
