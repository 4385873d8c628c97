#include "model/plot_setup.h"

#include <algorithm>
#include <cmath>

#include "common/plotting.h"

namespace qvview {

namespace {

using qvapps::two_decimals;

constexpr COLORREF kWhite = 0xFFFFFF;

std::string size_text(const qv::PaperSize& size) {
  return two_decimals(size.width) + " x " + two_decimals(size.height);
}

/// What Chinese input methods make of a colon and a cross.
std::string narrowed(std::string text) {
  constexpr std::pair<std::string_view, char> kWide[] = {{"\xEF\xBC\x9A", ':'}, {"\xC3\x97", 'x'}};
  for (const auto& [wide, narrow] : kWide)
    for (std::size_t at = 0; (at = text.find(wide, at)) != std::string::npos;) text.replace(at, wide.size(), 1, narrow);
  std::erase(text, ' ');
  return text;
}

std::optional<double> number_of(const std::string& typed) {
  const std::string text = narrowed(typed);
  return qvapps::scale_of(text.find(':') == std::string::npos ? "1:" + text : text);
}

}  // namespace

std::span<const char* const> usual_scales() {
  static constexpr const char* kScales[] = {"1:1",  "1:5",   "1:10",  "1:20",  "1:25",  "1:30",  "1:50",
                                            "1:75", "1:100", "1:150", "1:200", "1:300", "1:500", "1:1000"};
  return kScales;
}

PlotJob::PlotJob(View& view, const std::string& name, const PlotSetup& setup, Language language)
    : language_(language), loaded_(*view.drawing()), source_(loaded_.source(name)), problem_(take(setup, view)) {
  if (!problem_.empty()) return;
  plot_.emplace(std::span(&source_, 1), options_);
  if (pages() == 0) problem_ = filled(Text::NothingPlotted, language_, {plot_->report().problem});
}

/// Turns the choices into options, or says what is wrong with them.
std::string PlotJob::take(const PlotSetup& setup, const View& view) {
  options_.orientation = setup.orientation;
  options_.margin = setup.margin;
  options_.colors = setup.colors;
  options_.dpi = setup.dpi;
  options_.smooth = setup.smooth;
  options_.whole = setup.what == PlotSetup::What::Whole;
  if (setup.what == PlotSetup::What::View) {
    const CFRect seen = view.seen();
    options_.window = qv::DrawingRect{seen.x1, seen.y1, seen.x2, seen.y2};
    if (const ViewAngles angles = view.CurrentAngles(); !angles.is_plan()) options_.view = {angles.a, angles.b};
  }
  if (!setup.paper.empty()) {
    options_.paper = qv::paper_named(narrowed(setup.paper));
    if (!options_.paper) return filled(Text::NoSuchPaper, language_, {setup.paper});
  }
  if (setup.scale == PlotSetup::Scale::Number) {
    options_.scale = number_of(setup.number);
    if (!options_.scale) return filled(Text::NoSuchScale, language_, {setup.number});
  }
  // On another paper a sheet would be fitted.
  const bool ownScale = setup.scale == PlotSetup::Scale::OfSheet && setup.what == PlotSetup::What::Sheets;
  if (ownScale && options_.paper) {
    if (const std::optional<qv::Sheet> sheet = qv::SheetOf(*source_.document))
      options_.scale = sheet->scale * source_.unit;
  }
  std::string problem;
  pens_ = qvapps::pen_table(setup.pens, problem);
  if (!pens_) return setup.pens + ": " + problem;
  options_.pens = &*pens_;
  return {};
}

std::string PlotJob::words(int index) const {
  const qv::PlotReport::Page& page = report_of(index);
  std::string text = filled(Text::PageIs, language_, {qv::paper_name(page.paper), two_decimals(page.scale)});
  if (!page.sheet.empty()) text += "  " + page.sheet;
  if (!page.fits) text += "\n" + filled(Text::DoesNotFit, language_, {size_text(page.size), size_text(page.paper)});
  for (const std::string& remark : plot_->report().remarks) text += "\n" + remark;
  return text;
}

bool PlotJob::draw(int page, CDC& dc, double dots, CPoint corner) {
  return plot_ && plot_->draw(static_cast<std::size_t>(page), dc, dots, corner);
}

std::unique_ptr<qv::BitmapContext> PlotJob::picture(int page, CSize room) {
  const qv::PaperSize& size = paper(page);
  const double dots = std::min(room.cx / size.width, room.cy / size.height);
  const auto pixels = [&](double side) { return std::max(static_cast<int>(std::lround(side * dots)), 1); };
  auto picture = std::make_unique<qv::BitmapContext>(pixels(size.width), pixels(size.height), kWhite);
  const int width = picture->Width();
  // Drawn twice as large: what is thinner than a pixel is grey then, and lines stay apart.
  qv::BitmapContext fine(2 * width, 2 * picture->Height(), kWhite);
  if (width == 0 || fine.Width() == 0 || !draw(page, fine, 2 * dots)) return nullptr;
  for (int y = 0; y < picture->Height(); ++y) {
    const std::uint32_t* from = fine.Pixels() + static_cast<std::ptrdiff_t>(y) * 4 * width;
    for (int x = 0; x < width; ++x, from += 2) {
      const auto mean = [&](int shift) {
        return (from[0] >> shift & 255) + (from[1] >> shift & 255) + (from[2 * width] >> shift & 255) +
               (from[2 * width + 1] >> shift & 255);
      };
      picture->SetPixel(x, y, qv::rgb(mean(16) / 4, mean(8) / 4, mean(0) / 4));
    }
  }
  return picture;
}

std::string PlotJob::write(const std::string& path) {
  qv::PlotReport report;
  if (!plot_ || qv::Plot({&source_, 1}, path, options_, report)) return problem_;
  return filled(Text::NothingPlotted, language_, {report.problem});
}

}  // namespace qvview
