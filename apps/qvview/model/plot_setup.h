#pragma once

/// What a user chooses for a plot or for printing, and the plot that it makes of a drawing. Nothing here needs a
/// screen.

#include <memory>
#include <optional>
#include <span>
#include <string>

#include "model/captions.h"
#include "model/drawing.h"
#include "model/view.h"

namespace qvview {

/// The choices. Texts are as the user typed them.
struct PlotSetup {
  enum class What : char { Sheets, Whole, View };
  What what = What::Sheets;
  std::string paper;  ///< a format's name or "WxH"; empty for a sheet's own, else A3
  qv::PlotOptions::Orientation orientation = qv::PlotOptions::Orientation::OfDrawing;
  enum class Scale : char { OfSheet, Fits, Number };
  Scale scale = Scale::OfSheet;   ///< a sheet's own holds for sheets; all else is fitted then
  std::string number;             ///< "1:50", "2:1" or "50", for `Scale::Number`
  double margin = 5;              ///< in mm
  std::string pens = "GB b=0.7";  ///< a built-in table, or the path of a file
  qv::PlotColors colors = qv::PlotColors::Black;
  double dpi = 300;  ///< of PNG
  bool smooth = false;
};

/// The scales that are offered.
std::span<const char* const> usual_scales();

/// A drawing that is about to be plotted. While it lives, the drawing looks as it was loaded, so it is made, used and
/// dropped before the drawing is shown again.
class PlotJob {
 public:
  /// `name` is the drawing's, UTF-8. The view must have a drawing.
  PlotJob(View& view, const std::string& name, const PlotSetup& setup, Language language);

  /// Why there are no pages, in words; empty when there are.
  const std::string& problem() const { return problem_; }
  int pages() const { return plot_ ? static_cast<int>(plot_->report().pages.size()) : 0; }
  const qv::PaperSize& paper(int page) const { return report_of(page).paper; }
  /// What a page will be, in words, line by line: paper, scale, sheet; what does not fit; and what is not on the pages
  /// that have been drawn.
  std::string words(int page) const;
  /// Draws a page on a device, as `qv::PlotPages` does.
  bool draw(int page, CDC& dc, double dots, CPoint corner = {});
  /// A page as large as the room takes it, smoothed, on white paper. Null when memory runs out.
  std::unique_ptr<qv::BitmapContext> picture(int page, CSize room);
  /// Writes all pages to a file of PDF, SVG or PNG. Empty, or why it was not written, in words.
  std::string write(const std::string& path);

 private:
  std::string take(const PlotSetup& setup, const View& view);
  const qv::PlotReport::Page& report_of(int page) const {
    return plot_->report().pages[static_cast<std::size_t>(page)];
  }

  Language language_;
  Drawing::AsLoaded loaded_;
  qv::PlotSource source_;
  qv::PlotOptions options_;
  std::optional<qv::PenTable> pens_;
  std::optional<qv::PlotPages> plot_;
  std::string problem_;
};

}  // namespace qvview
