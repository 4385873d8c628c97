#pragma once

/// What of a drawing makes its page.

#include <vector>

#include "qvtools/plot/internal/looks.h"
#include "qvtools/plot/sheets.h"

namespace qv::detail {

/// What is plotted of a drawing without sheets.
struct DrawnExtent {
  DrawingRect rect;
  long entities = 0;  ///< that are shown and lie somewhere
  long strays = 0;    ///< so far from all others that the page is made without them
  DrawingRect stray;  ///< the box of the first of them
};

/// The extent of what is shown. A few entities (up to three, or one in a hundred) that lie many times the size of all
/// others away do not count.
DrawnExtent drawn_extent(DXF& document, Looks& looks);

}  // namespace qv::detail
