#pragma once

/// Drawings on paper (to be linked with the component `plot`): files in PDF, SVG or PNG, to scale, with pens.
///
/// Points come from the records in double and are written with hundredths of a millimetre. Texts are strokes of the
/// loaded shape fonts; in PDF they can be found and copied as well. Layers are layers of the file. The same drawing
/// gives the same bytes.

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "qvtools/import/import.h"
#include "qvtools/platform/device.h"
#include "qvtools/plot/paper.h"
#include "qvtools/plot/pens.h"
#include "qvtools/plot/picture.h"
#include "qvtools/plot/sheets.h"

namespace qv {

/// A document to plot; it is not changed.
struct PlotSource {
  DXF* document = nullptr;              ///< not owned, in memory
  const DrawingNotes* notes = nullptr;  ///< what its import noted: line weights, true colours; null for none
  std::string name;                     ///< for bookmarks and messages, UTF-8
  double unit = 1;                      ///< millimetres to a drawing unit
  /// Whether a layer, by its GBK name, is plotted; null for what the drawing says of its layers. Layers that are marked
  /// as not plotted never are.
  std::function<bool(const char* layer)> shows = nullptr;
};

/// A point on paper, in mm from its lower left corner.
struct PlotPoint {
  double x = 0;
  double y = 0;
};

/// What is asked of a plot.
struct PlotOptions {
  /// How the paper lies.
  enum class Orientation : char { OfDrawing, Landscape, Portrait };

  /// The paper. When absent, a sheet's own; else A3.
  std::optional<PaperSize> paper = {};
  /// How the paper lies; as the drawing asks for at first.
  Orientation orientation = Orientation::OfDrawing;
  /// How many millimetres of the drawing one of the paper shows: 50 for 1:50. When absent, a sheet's own on its own
  /// paper; else what fits.
  std::optional<double> scale = {};
  /// Left free at each edge, in mm, by what is fitted.
  double margin = 5;
  /// Where the lower left corner of what is plotted lies on the paper, in mm; centred when absent.
  std::optional<PlotPoint> offset = {};
  /// What is plotted, in drawing units. When absent, each sheet of the drawing (`FindSheets`) is a page, or all of a
  /// drawing without sheets.
  std::optional<DrawingRect> window = {};
  /// The direction in which the window is seen, which lies in its plane then; in plan when absent. There is none
  /// without a window.
  std::optional<PictureOptions::View> view = {};
  /// All of the drawing on one page, whatever sheets it has.
  bool whole = false;

  /// Not owned; null for line weights and colours of the drawing.
  const PenTable* pens = nullptr;
  /// In which colours.
  PlotColors colors = PlotColors::Black;
  /// The palette of `PlotColors::Color` and `Grey`, the dashes, and from how many millimetres on a pattern is drawn.
  Appearance appearance = {nullptr, nullptr, kShortestPlotted};
  /// Widths of pens are times this.
  double penScale = 1;
  /// Widths of pens shrink and grow with a sheet that is not plotted at its own scale.
  bool scalePens = false;

  std::string title = {};  ///< of the PDF, UTF-8; when empty, the first drawing's name
  double dpi = 300;       ///< of PNG, 30 to 2400
  bool smooth = false;    ///< PNG: anti-aliased
  bool readable = false;  ///< SVG: with its texts as invisible text
  bool dated = false;     ///< PDF: with the time of plotting
};

/// What became of a plot.
struct PlotReport {
  /// A page of it.
  struct Page {
    std::string source;  ///< the drawing's name
    std::string sheet;   ///< the sheet's, where it has one
    PaperSize paper;     ///< in mm
    double scale = 1;    ///< 50 for 1:50
    bool fits = true;    ///< false when not all of it is on the paper
    PaperSize size;      ///< of what is plotted, on paper
    std::string file;    ///< that the page is in; empty where it is in none
  };
  std::vector<Page> pages;           ///< in order
  std::vector<std::string> remarks;  ///< what is not on the pages though the drawing has it, line by line
  std::string problem;               ///< why nothing was plotted
};

/// The endings of the files that are plotted: ".pdf", ".svg", ".png".
std::span<const char* const> plot_endings();

/// Plots documents, one behind the other. The path's ending says the format. A PDF has all pages; of SVG and PNG each
/// page is a file, the second and later ones with "-2" and so on before the ending. Files are replaced only by complete
/// ones. `progress` gets the share that is done, and may answer false to give up. False when nothing was plotted:
/// `report.problem` says why (no such format, nothing to plot, a window or scale of no size, a file that cannot be
/// written, memory that runs out), and no file is left of this call's but pages of SVG and PNG that were
/// complete before.
bool Plot(std::span<const PlotSource> sources, const std::string& path, const PlotOptions& options, PlotReport& report,
          const std::function<bool(double share)>& progress = nullptr);

/// The pages of a plot, to be drawn on devices: for a preview, and on printers. What `Plot` says of options holds here
/// too; those of files have no meaning.
class PlotPages {
 public:
  /// Plans the pages. The sources' documents and notes and the options' pens must outlive it, and stay as they are.
  PlotPages(std::span<const PlotSource> sources, const PlotOptions& options);
  ~PlotPages();
  PlotPages(const PlotPages&) = delete;
  PlotPages& operator=(const PlotPages&) = delete;

  /// The pages; none where there is a problem. What is not on a page is remarked once the page has been drawn.
  const PlotReport& report() const;
  /// Draws a page, an index of `report().pages`, at so many dots to a millimetre. `corner` is the dot of the page, from
  /// its upper left, that lies at the device's (0, 0). On what prints, and on metafiles, wide lines are drawn with wide
  /// pens and as polygons, elsewhere dot by dot. The paper is not filled. False when there is no such page, the dots
  /// are no number above 0, or memory runs out.
  bool draw(std::size_t page, CDC& dc, double dots, CPoint corner = {});

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;  // null when memory ran out
};

}  // namespace qv
