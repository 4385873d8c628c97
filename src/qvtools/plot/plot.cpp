#include "qvtools/plot/plot.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <memory>

#include "qvtools/plot/internal/canvas.h"
#include "qvtools/plot/internal/device_canvas.h"
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

  /// The rectangle on paper.
  PathRect shown() const { return {at.x, at.y, at.x + rect.width() * scale, at.y + rect.height() * scale}; }
  bool fits() const {
    constexpr double kRounding = 0.01;
    const PathRect r = shown();
    return r.left >= -kRounding && r.bottom >= -kRounding && r.right <= paper.width + kRounding &&
           r.top <= paper.height + kRounding;
  }
};

void remark(PlotReport& report, const PlotSource& source, const std::string& text) {
  report.remarks.push_back(source.name.empty() ? text : source.name + ": " + text);
}

/// Finds the pages that options make of drawings.
class Planner {
 public:
  Planner(const PlotOptions& options, PlotReport& report) : options_(options), report_(report) {}

  /// Nothing, and a problem in the report, when there is no page. The plans point to the sources.
  std::vector<PagePlan> plan(std::span<const PlotSource> sources) {
    report_ = {};
    if (const char* const wrong = wrong_option()) {
      report_.problem = wrong;
      return {};
    }
    for (const PlotSource& source : sources) plan(source);
    if (plans_.empty()) report_.problem = "there is nothing to plot";
    for (const PagePlan& page : plans_)
      report_.pages.push_back({page.source->name,
                               page.sheet,
                               page.paper,
                               page.source->unit / page.scale,
                               page.fits(),
                               {page.rect.width() * page.scale, page.rect.height() * page.scale},
                               ""});
    return std::move(plans_);
  }

 private:
  const char* wrong_option() const {
    const PlotOptions& o = options_;
    if (o.scale && !(*o.scale > 0 && std::isfinite(*o.scale))) return "the scale is no number above 0";
    if (o.window && !(o.window->width() > 0 && o.window->height() > 0 && std::isfinite(o.window->width()) &&
                      std::isfinite(o.window->height())))
      return "the window has no size";
    if (o.view && !(o.window && std::isfinite(o.view->a) && std::isfinite(o.view->b)))
      return "a direction is that of a window";
    if (o.paper && !(o.paper->shorter() >= 10 && o.paper->longer() <= 5000))
      return "the paper is 10 to 5000 mm each way";
    if (!(o.margin >= 0 && o.margin <= 1000)) return "the margin is 0 to 1000 mm";
    if (!(o.penScale > 0 && o.penScale <= 100)) return "widths of pens are times 0 to 100";
    if (!(o.dpi >= 30 && o.dpi <= 2400)) return "a picture has 30 to 2400 dots an inch";
    return nullptr;
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
    LookOptions shown;
    shown.shows = source.shows;
    Looks looks(*source.document, source.notes, shown);
    const DrawnExtent extent = drawn_extent(*source.document, looks);
    if (extent.entities == 0) return remark(report_, source, "has nothing to plot");
    if (extent.strays > 0)
      remark(report_, source,
             std::to_string(extent.strays) + " of " + std::to_string(extent.entities) +
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

  const PlotOptions& options_;
  PlotReport& report_;
  std::vector<PagePlan> plans_;
};

/// How a sheet's plot differs in size from the sheet.
double pen_scale(const PagePlan& plan) {
  const std::optional<Sheet> sheet = SheetOf(*plan.source->document);
  return sheet ? plan.scale * sheet->scale : 1;
}

/// Draws a page, and tells what is not on it.
void draw_page(const PagePlan& plan, const PlotOptions& options, Canvas& canvas, PlotReport& report) {
  const PlotSource& source = *plan.source;
  Placement placement;
  placement.x = plan.rect.left;
  placement.y = plan.rect.bottom;
  placement.at = plan.at;
  placement.scale = plan.scale;
  placement.window = {0, 0, plan.paper.width, plan.paper.height};
  if (plan.cut) {
    const PathRect shown = plan.shown();
    placement.window = {std::max(shown.left, 0.0), std::max(shown.bottom, 0.0), std::min(shown.right, plan.paper.width),
                        std::min(shown.top, plan.paper.height)};
  }
  std::optional<Projection> view;
  if (options.view) placement.view = &view.emplace(options.view->a, options.view->b);
  LookOptions looks;
  looks.appearance = options.appearance;
  looks.pens = options.pens;
  looks.colors = options.colors;
  looks.scale = plan.scale;
  looks.penScale = options.penScale * (options.scalePens ? pen_scale(plan) : 1);
  looks.shows = source.shows;
  Marks marks(*source.document, source.notes, looks, canvas);
  marks.keep_figures(placement);
  canvas.begin_page({plan.paper.width, plan.paper.height, source.name, plan.sheet});
  marks.draw(placement);
  canvas.end_page();
  const MarkCounts& counts = marks.counts();
  const struct {
    long count;
    const char* text;
  } lines[] = {{counts.notNumbers, " entities have coordinates that are no numbers"},
               {counts.ownKinds, " entities are of the program's own kind and are not plotted"},
               {counts.letterless, " texts have no font"},
               {counts.shortPatterns, " line types have dashes too short for this scale and are solid"}};
  for (const auto& line : lines)
    if (line.count > 0) remark(report, source, std::to_string(line.count) + line.text);
}

/// Plots to files.
class Plotter {
 public:
  Plotter(std::span<const PlotSource> sources, const std::string& path, const PlotOptions& options, PlotReport& report,
          const std::function<bool(double)>& progress)
      : sources_(sources), path_(path), options_(options), report_(report), progress_(progress) {}

  bool run() {
    report_ = {};
    format_ = format_of(path_);
    if (!format_) return fail("the name of a plot ends in .pdf, .svg or .png");
    plans_ = Planner(options_, report_).plan(sources_);
    constexpr double kMostPixels = 65535;  // of a PNG, each way
    for (const PagePlan& page : plans_)
      if (format_->open == png_canvas && page.paper.longer() / 25.4 * options_.dpi > kMostPixels)
        return fail(size_text(page.paper.width, page.paper.height) + " mm have more than 65535 pixels at " +
                    number(options_.dpi) + " dots an inch");
    return !plans_.empty() && draw_all();
  }

 private:
  bool fail(const std::string& problem) {
    report_.problem = problem;
    return false;
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
      PlotReport::Page& page = report_.pages[i];
      page.file = path_of(i);
      if (i == 0 || !format_->manyPages) files.push_back(format_->open(page.file, canvas_options()));
      if (!files.back()) return fail(page.file + ": cannot be written");
      if (!page.fits)
        remark(report_, *plans_[i].source,
               "does not fit: " + size_text(page.size.width, page.size.height) + " mm at 1:" + number(page.scale) +
                   ", the paper has " + size_text(page.paper.width, page.paper.height));
      draw_page(plans_[i], options_, *files.back(), report_);
    }
    for (std::size_t i = 0; i < files.size(); ++i)
      if (!files[i]->finish()) return fail(path_of(i) + ": cannot be written");
    return true;
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

struct PlotPages::Parts {
  std::vector<PlotSource> sources;
  PlotOptions options;
  PlotReport report;
  std::vector<PagePlan> plans;
  std::vector<bool> told;  // of the pages that were drawn before
};

PlotPages::PlotPages(std::span<const PlotSource> sources, const PlotOptions& options) {
  const bool planned = unless_out_of_memory(
      [&] {
        parts_ = std::make_unique<Parts>();
        parts_->sources.assign(sources.begin(), sources.end());
        parts_->options = options;
        parts_->plans = Planner(parts_->options, parts_->report).plan(parts_->sources);
        parts_->told.resize(parts_->plans.size());
        return true;
      },
      false);
  if (!planned) parts_.reset();
}

PlotPages::~PlotPages() = default;

const PlotReport& PlotPages::report() const {
  static const PlotReport noMemory{.pages = {}, .remarks = {}, .problem = "memory ran out"};
  return parts_ ? parts_->report : noMemory;
}

bool PlotPages::draw(std::size_t page, CDC& dc, double dots, CPoint corner) {
  if (!parts_ || page >= parts_->report.pages.size() || !(dots > 0 && std::isfinite(dots))) return false;
  return unless_out_of_memory(
      [&] {
        const PagePlan& plan = parts_->plans[page];
        DeviceCanvas canvas(dc, dc.GetResolution(), plan.paper.height, dots, corner);
        PlotReport told;
        draw_page(plan, parts_->options, canvas, told);
        if (!parts_->told[page])
          parts_->report.remarks.insert(parts_->report.remarks.end(), told.remarks.begin(), told.remarks.end());
        parts_->told[page] = true;
        return canvas.finish();
      },
      false);
}

}  // namespace qv
