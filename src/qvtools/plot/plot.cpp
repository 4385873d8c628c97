#include "qvtools/plot/plot.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <memory>

#include "qvtools/plot/internal/canvas.h"
#include "qvtools/plot/internal/fit.h"
#include "qvtools/plot/internal/marks.h"
#include "qvtools/services/internal/out_of_memory.h"

namespace qv {

namespace {

using namespace detail;

/// How many pages a file of a format has, and what it is written by.
constexpr struct Format {
  const char* ending;
  bool manyPages;
  std::unique_ptr<Canvas> (*open)(const std::string& path, const CanvasOptions& options);
} kFormats[] = {{".pdf", true, pdf_canvas}, {".svg", false, svg_canvas}, {".png", false, png_canvas}};

const Format* format_of(const std::string& path) {
  const auto ends_so = [&](std::string_view ending) {
    if (path.size() <= ending.size()) return false;
    return std::equal(
        ending.begin(), ending.end(), path.end() - static_cast<std::ptrdiff_t>(ending.size()),
        [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? static_cast<char>(b - 'A' + 'a') : b); });
  };
  const auto* const found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                         [&](const Format& format) { return ends_so(format.ending); });
  return found == std::end(kFormats) ? nullptr : found;
}

/// A number in a message: at most two decimals.
std::string number(double v) {
  char digits[64];
  const double rounded = std::fabs(v) < 1e12 ? std::round(v * 100) / 100 : v;
  return std::string(digits, std::to_chars(digits, digits + sizeof digits, rounded).ptr);
}

std::string size_text(double width, double height) {
  return number(width) + " x " + number(height);
}

/// What becomes one page.
struct PagePlan {
  const PlotSource* source;
  std::string sheet;
  DrawingRect rect;  // in drawing units
  bool cut = false;  // nothing outside of the rectangle is drawn
  PaperSize paper;
  double scale = 1;  // mm of paper per drawing unit
  PathPoint at;      // where the rectangle's lower left corner lies
};

class Plotter {
 public:
  Plotter(std::span<const PlotSource> sources, const std::string& path, const PlotOptions& options, PlotReport& report,
          const std::function<bool(double)>& progress)
      : sources_(sources), path_(path), options_(options), report_(report), progress_(progress) {}

  bool run() {
    report_ = {};
    format_ = format_of(path_);
    if (!format_) return fail("the name of a plot ends in .pdf, .svg or .png");
    if (const char* const wrong = wrong_option()) return fail(wrong);
    for (const PlotSource& source : sources_) plan(source);
    if (plans_.empty()) return fail("there is nothing to plot");
    return draw_all();
  }

 private:
  bool fail(const std::string& problem) {
    report_.pages.clear();
    report_.problem = problem;
    return false;
  }

  const char* wrong_option() const {
    const PlotOptions& o = options_;
    if (o.scale && !(*o.scale > 0 && std::isfinite(*o.scale))) return "the scale is no number above 0";
    if (o.window && !(o.window->width() > 0 && o.window->height() > 0 && std::isfinite(o.window->width()) &&
                      std::isfinite(o.window->height())))
      return "the window has no size";
    if (o.paper && !(o.paper->shorter() >= 10 && o.paper->longer() <= 5000))
      return "the paper is 10 to 5000 mm each way";
    if (!(o.margin >= 0 && o.margin <= 1000)) return "the margin is 0 to 1000 mm";
    if (!(o.penScale > 0 && o.penScale <= 100)) return "widths of pens are times 0 to 100";
    if (!(o.dpi >= 30 && o.dpi <= 2400)) return "a picture has 30 to 2400 dots an inch";
    return nullptr;
  }

  void remark(const PlotSource& source, const std::string& text) {
    report_.remarks.push_back(source.name.empty() ? text : source.name + ": " + text);
  }

  /// The pages of a drawing.
  void plan(const PlotSource& source) {
    if (options_.window) return plan_window(source);
    const std::vector<Sheet> sheets = options_.whole ? std::vector<Sheet>() : FindSheets(*source.document);
    if (sheets.empty()) return plan_whole(source);
    for (const Sheet& sheet : sheets) plan_sheet(source, sheet, sheets.size());
  }

  void plan_window(const PlotSource& source) {
    PagePlan page{&source, "", *options_.window, true, {}, 1, {}};
    place(page, options_.paper.value_or(PaperSize{420, 297}), options_.margin);
    plans_.push_back(page);
  }

  void plan_whole(const PlotSource& source) {
    Looks looks(*source.document, source.notes, {});
    const DrawnExtent extent = drawn_extent(*source.document, looks);
    if (extent.entities == 0) return remark(source, "has nothing to plot");
    if (extent.strays > 0)
      remark(source, std::to_string(extent.strays) + " of " + std::to_string(extent.entities) +
                         " entities lie far away, the first at " + number(extent.stray.left) + ", " +
                         number(extent.stray.bottom) + ": the page is made without them");
    PagePlan page{&source, "", extent.rect, false, {}, 1, {}};
    place(page, options_.paper.value_or(PaperSize{420, 297}), options_.margin);
    plans_.push_back(page);
  }

  void plan_sheet(const PlotSource& source, const Sheet& sheet, std::size_t count) {
    PagePlan page{&source, sheet.name.empty() ? sheet.number : sheet.name, sheet.edge, true, {}, 1, {}};
    if (page.sheet.empty() && count > 1) page.sheet = std::to_string(plans_.size() + 1);
    if (options_.paper || options_.scale) {
      place(page, options_.paper.value_or(sheet.paper), 0);
    } else {
      page.paper = sheet.paper;
      page.scale = 1 / sheet.scale;
    }
    plans_.push_back(page);
  }

  /// Finds the scale of a page and where the drawing lies on it.
  void place(PagePlan& page, const PaperSize& paper, double margin) {
    const bool lies = options_.orientation == PlotOptions::Orientation::OfDrawing
                          ? page.rect.width() >= page.rect.height()
                          : options_.orientation == PlotOptions::Orientation::Landscape;
    page.paper = lies ? paper.landscape() : paper.portrait();
    const double width = std::max(page.paper.width - 2 * margin, 1.0);
    const double height = std::max(page.paper.height - 2 * margin, 1.0);
    const double most = std::max(page.rect.width(), page.rect.height());
    if (options_.scale)
      page.scale = page.source->unit / *options_.scale;
    else if (most > 0)
      page.scale = std::min(page.rect.width() > 0 ? width / page.rect.width() : INFINITY,
                            page.rect.height() > 0 ? height / page.rect.height() : INFINITY);
    const double shownWidth = page.rect.width() * page.scale;
    const double shownHeight = page.rect.height() * page.scale;
    page.at = options_.offset ? PathPoint{options_.offset->x, options_.offset->y}
                              : PathPoint{(page.paper.width - shownWidth) / 2, (page.paper.height - shownHeight) / 2};
  }

  CanvasOptions canvas_options() const {
    CanvasOptions canvas;
    canvas.title = !options_.title.empty()   ? options_.title
                   : plans_[0].sheet.empty() ? plans_[0].source->name
                                             : plans_[0].sheet;
    canvas.dpi = options_.dpi;
    canvas.smooth = options_.smooth;
    canvas.readable = options_.readable;
    canvas.dated = options_.dated;
    return canvas;
  }

  std::string path_of(std::size_t page) const {
    if (format_->manyPages || page == 0) return path_;
    const std::size_t ending = path_.size() - std::char_traits<char>::length(format_->ending);
    return path_.substr(0, ending) + "-" + std::to_string(page + 1) + path_.substr(ending);
  }

  bool draw_all() {
    std::vector<std::unique_ptr<Canvas>> files;  // complete all at once
    for (std::size_t i = 0; i < plans_.size(); ++i) {
      if (progress_ && !progress_(static_cast<double>(i) / static_cast<double>(plans_.size())))
        return fail("plotting was given up");
      const std::string file = path_of(i);
      if (i == 0 || !format_->manyPages) files.push_back(format_->open(file, canvas_options()));
      if (!files.back()) return fail(file + ": cannot be written");
      draw(plans_[i], *files.back(), file);
    }
    for (std::size_t i = 0; i < files.size(); ++i)
      if (!files[i]->finish()) return fail(path_of(i) + ": cannot be written");
    return true;
  }

  void draw(const PagePlan& plan, Canvas& canvas, const std::string& file) {
    const double width = plan.rect.width() * plan.scale;
    const double height = plan.rect.height() * plan.scale;
    Placement placement;
    placement.x = plan.rect.left;
    placement.y = plan.rect.bottom;
    placement.at = plan.at;
    placement.scale = plan.scale;
    placement.window = {0, 0, plan.paper.width, plan.paper.height};
    PathRect shown{plan.at.x, plan.at.y, plan.at.x + width, plan.at.y + height};
    constexpr double kRounding = 0.01;
    const bool fits = shown.left >= -kRounding && shown.bottom >= -kRounding &&
                      shown.right <= plan.paper.width + kRounding && shown.top <= plan.paper.height + kRounding;
    if (plan.cut)
      placement.window = {std::max(shown.left, 0.0), std::max(shown.bottom, 0.0),
                          std::min(shown.right, plan.paper.width), std::min(shown.top, plan.paper.height)};
    LookOptions looks;
    looks.pens = options_.pens;
    looks.colors = options_.colors;
    looks.scale = plan.scale;
    looks.penScale = options_.penScale * (options_.scalePens ? pen_scale(plan) : 1);
    Marks marks(*plan.source->document, plan.source->notes, looks, canvas);
    marks.keep_figures(placement);
    canvas.begin_page({plan.paper.width, plan.paper.height, plan.source->name, plan.sheet});
    marks.draw(placement);
    canvas.end_page();
    report_.pages.push_back(
        {plan.source->name, plan.sheet, plan.paper, plan.source->unit / plan.scale, fits, {width, height}, file});
    tell(plan, marks.counts(), fits, width, height);
  }

  /// How a sheet's plot differs in size from the sheet.
  double pen_scale(const PagePlan& plan) const {
    const std::optional<Sheet> sheet = SheetOf(*plan.source->document);
    return sheet ? plan.scale * sheet->scale : 1;
  }

  void tell(const PagePlan& plan, const MarkCounts& counts, bool fits, double width, double height) {
    const PlotSource& source = *plan.source;
    if (!fits)
      remark(source, "does not fit: " + size_text(width, height) + " mm at 1:" + number(source.unit / plan.scale) +
                         ", the paper has " + size_text(plan.paper.width, plan.paper.height));
    const struct {
      long count;
      const char* text;
    } lines[] = {{counts.notNumbers, " entities have coordinates that are no numbers"},
                 {counts.ownKinds, " entities are of the program's own kind and are not plotted"},
                 {counts.letterless, " texts have no font"},
                 {counts.shortPatterns, " line types have dashes too short for this scale and are solid"}};
    for (const auto& line : lines)
      if (line.count > 0) remark(source, std::to_string(line.count) + line.text);
  }

  std::span<const PlotSource> sources_;
  const std::string& path_;
  const PlotOptions& options_;
  PlotReport& report_;
  const std::function<bool(double)>& progress_;
  const Format* format_ = nullptr;
  std::vector<PagePlan> plans_;
};

}  // namespace

std::span<const char* const> plot_endings() {
  static constexpr const char* kEndings[] = {kFormats[0].ending, kFormats[1].ending, kFormats[2].ending};
  return kEndings;
}

bool Plot(std::span<const PlotSource> sources, const std::string& path, const PlotOptions& options, PlotReport& report,
          const std::function<bool(double share)>& progress) {
  const bool plotted =
      unless_out_of_memory([&] { return Plotter(sources, path, options, report, progress).run(); }, false);
  if (!plotted && report.problem.empty()) report.problem = "memory ran out";
  if (!plotted) report.pages.clear();
  return plotted;
}

}  // namespace qv
