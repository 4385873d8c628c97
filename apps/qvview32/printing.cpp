#include "printing.h"

#include <commdlg.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "common/plotting.h"
#include "qvtools/platform/win32/gdi_output.h"
#include "system_text.h"

namespace qvview32 {

using qvview::Text;

namespace {

constexpr double kMmPerInch = 25.4;

/// Asks a printer for a paper: by its number where it has one, and by its sides.
void set_paper(DEVMODEW& mode, const qv::PaperSize& paper) {
  constexpr struct {
    const char* name;
    short number;
  } kPapers[] = {{"A2", DMPAPER_A2}, {"A3", DMPAPER_A3}, {"A4", DMPAPER_A4}};
  const std::string name = qv::paper_name(paper);
  const auto* const found =
      std::find_if(std::begin(kPapers), std::end(kPapers), [&](const auto& row) { return name == row.name; });
  mode.dmFields |= DM_ORIENTATION | DM_PAPERSIZE | DM_PAPERLENGTH | DM_PAPERWIDTH;
  mode.dmOrientation = paper.width > paper.height ? DMORIENT_LANDSCAPE : DMORIENT_PORTRAIT;
  mode.dmPaperSize = found != std::end(kPapers) ? found->number : short{DMPAPER_USER};
  mode.dmPaperWidth = static_cast<short>(std::lround(paper.shorter() * 10));
  mode.dmPaperLength = static_cast<short>(std::lround(paper.longer() * 10));
}

/// The printer's question, with what it answers.
class PrinterQuestion {
 public:
  PrinterQuestion(HWND owner, const std::vector<qv::PaperSize>& papers) : papers_(papers) {
    dialog_.lStructSize = sizeof dialog_;
    dialog_.hwndOwner = owner;
    dialog_.Flags = PD_RETURNDEFAULT;
    PrintDlgW(&dialog_);  // for the printer's modes
    if (dialog_.hDevMode) {
      set_paper(*static_cast<DEVMODEW*>(GlobalLock(dialog_.hDevMode)), papers[0]);
      GlobalUnlock(dialog_.hDevMode);
    }
    dialog_.Flags = PD_RETURNDC | PD_NOSELECTION | PD_USEDEVMODECOPIESANDCOLLATE;
    dialog_.nMinPage = dialog_.nFromPage = 1;
    dialog_.nMaxPage = dialog_.nToPage = static_cast<WORD>(papers.size());
    good_ = PrintDlgW(&dialog_) != 0;
  }
  ~PrinterQuestion() {
    if (dialog_.hDC) DeleteDC(dialog_.hDC);
    GlobalFree(dialog_.hDevMode);
    GlobalFree(dialog_.hDevNames);
  }
  PrinterQuestion(const PrinterQuestion&) = delete;
  PrinterQuestion& operator=(const PrinterQuestion&) = delete;

  bool answered() const { return good_ && dialog_.hDC; }
  HDC printer() const { return dialog_.hDC; }
  int first() const { return some() ? std::clamp<int>(dialog_.nFromPage, 1, pages()) - 1 : 0; }
  int end() const { return some() ? std::clamp<int>(dialog_.nToPage, first() + 1, pages()) : pages(); }
  /// Changes the paper for a page; the dialog's holds for pages of the first one's size.
  void choose_paper(int page) const {
    const qv::PaperSize& paper = papers_[static_cast<std::size_t>(page)];
    if (!dialog_.hDevMode || page == 0) return;
    if (papers_[static_cast<std::size_t>(page) - 1] == paper && page > first()) return;
    auto* const mode = static_cast<DEVMODEW*>(GlobalLock(dialog_.hDevMode));
    set_paper(*mode, paper);
    ResetDCW(dialog_.hDC, mode);
    GlobalUnlock(dialog_.hDevMode);
  }

 private:
  bool some() const { return (dialog_.Flags & PD_PAGENUMS) != 0; }
  int pages() const { return static_cast<int>(papers_.size()); }

  const std::vector<qv::PaperSize>& papers_;
  PRINTDLGW dialog_ = {};
  bool good_ = false;
};

/// Asks whether to go on where the printer's paper is smaller than the page.
bool is_paper_right(HWND owner, HDC printer, const qv::PaperSize& paper, int page, qvview::Language language) {
  constexpr double kTolerance = 1.5;  // mm
  const double width = GetDeviceCaps(printer, PHYSICALWIDTH) * kMmPerInch / GetDeviceCaps(printer, LOGPIXELSX);
  const double height = GetDeviceCaps(printer, PHYSICALHEIGHT) * kMmPerInch / GetDeviceCaps(printer, LOGPIXELSY);
  if (width >= paper.width - kTolerance && height >= paper.height - kTolerance) return true;
  const auto text = [](double w, double h) {
    return qvapps::two_decimals(std::round(w)) + " x " + qvapps::two_decimals(std::round(h));
  };
  const std::string question = qvview::filled(
      Text::PaperDiffers, language, {std::to_string(page + 1), text(paper.width, paper.height), text(width, height)});
  return MessageBoxW(owner, wide_of_utf8(question.c_str()).c_str(), L"qvview32", MB_YESNO | MB_ICONQUESTION) == IDYES;
}

/// Dots that are higher than wide, or wider than high, are made square.
void square_dots(HDC printer) {
  const int across = GetDeviceCaps(printer, LOGPIXELSX);
  const int down = GetDeviceCaps(printer, LOGPIXELSY);
  if (across == down) return;
  SetMapMode(printer, MM_ANISOTROPIC);
  SetWindowExtEx(printer, across, across, nullptr);
  SetViewportExtEx(printer, across, down, nullptr);
}

}  // namespace

bool print_plot(HWND owner, qvview::View& view, const std::string& name, const qvview::PlotSetup& setup,
                qvview::Language language, std::string& problem) {
  std::vector<qv::PaperSize> papers;
  {
    const qvview::PlotJob job(view, name, setup, language);
    for (int i = 0; i < job.pages(); ++i) papers.push_back(job.paper(i));
    problem = job.problem();
  }
  if (papers.empty()) return false;
  const PrinterQuestion question(owner, papers);
  if (!question.answered()) return false;
  const HDC printer = question.printer();
  const int first = question.first();
  question.choose_paper(first);
  if (!is_paper_right(owner, printer, papers[static_cast<std::size_t>(first)], first, language)) return false;

  std::optional<qvview::PlotJob> job;  // made when the printer has no more questions
  bool drawn = true;
  const bool printed = qv::print_pages(
      printer, "qvview32", question.end() - first,
      [&](int page, CDC& dc) {
        if (!job) job.emplace(view, name, setup, language);
        square_dots(printer);
        const double dots = GetDeviceCaps(printer, LOGPIXELSX) / kMmPerInch;
        // What is drawn keeps its place on the paper, whatever margins the printer needs.
        const int down = MulDiv(GetDeviceCaps(printer, PHYSICALOFFSETY), GetDeviceCaps(printer, LOGPIXELSX),
                                GetDeviceCaps(printer, LOGPIXELSY));
        drawn = job->draw(first + page, dc, dots, {GetDeviceCaps(printer, PHYSICALOFFSETX), down}) && drawn;
      },
      [&](int page) { question.choose_paper(first + page); });
  if (!printed || !drawn) problem = qvview::caption(Text::CannotPrint, language);
  return printed && drawn;
}

}  // namespace qvview32
