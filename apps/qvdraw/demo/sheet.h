#pragma once

/// What the sample sheets share.

#include <memory>
#include <string>
#include <vector>

#include "demo/sample.h"
#include "qvtools/drawing/sheet_frame.h"
#include "qvtools/drawing/sheet_table.h"

namespace qvdraw {

/// Degree sign of the text fonts.
inline constexpr char kDegree[] = "\x7F";

/// A sheet with its lower left corner at (0, 0).
struct Sheet {
  std::unique_ptr<CBase_SGT> sgt;
  qv::SheetFrame frame;
  /// A place in model units: drawing mm from the lower left corner of the frame, or from its upper right one.
  CFPoint from_left(double mm, double up) const;
  CFPoint from_right(double mm, double down) const;
};

/// The sheet of the size, scale and names in the sample's section [sheet]: frame, title and counter-sign block by the
/// project's data, layers and line types, whose dashes are so many millimetres long.
Sheet new_sheet(const Sample& project, const Sample& sample, float dash = 3);

/// Layer, colour and line type of what is drawn next.
void use_pen(CBase_SGT& sgt, const char* layer, const char* color, const char* ltype = "BYLAYER");

/// The title under a drawing, its middle at (x, y): a thick line as long as the text measures, and the scale beside it.
void draw_title(CBase_SGT& sgt, float x, float y, const std::string& title, const std::string& scale);
/// The notes in section [notes], with their upper left corner at a place; returns their lower side.
float draw_notes(CBase_SGT& sgt, const Sample& sample, CFPoint place, double width);
/// A table of the rows of a section: the first is the header.
qv::SheetTable table_of(const Sample& sample, const std::string& section, std::vector<qv::SheetTable::Column> columns,
                        const qv::SheetTable::Look& look = {});
/// A filled rectangle: concrete that is cut.
void fill(CBase_SGT& sgt, float x1, float y1, float x2, float y2);
/// A bar between two points with half circles to its left at both ends (plain bars at the bottom), or with square hooks
/// to its right (top bars); `hook` is their size in model units.
void draw_bottom_bar(CBase_SGT& sgt, float x1, float y1, float x2, float y2, float hook);
void draw_top_bar(CBase_SGT& sgt, float x1, float y1, float x2, float y2, float hook);

}  // namespace qvdraw
