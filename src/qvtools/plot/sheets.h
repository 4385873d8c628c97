#pragma once

/// The sheets of a drawing: frames as the composer and other programs draw them, one or many.

#include <optional>
#include <string>
#include <vector>

#include "qvtools/dxf/model/document.h"
#include "qvtools/plot/paper.h"

namespace qv {

/// A rectangle of drawing units.
struct DrawingRect {
  double left = 0;
  double bottom = 0;
  double right = 0;
  double top = 0;

  /// Its size.
  double width() const { return right - left; }
  double height() const { return top - bottom; }
};

/// A sheet frame: the edge of the paper, a border within it, and a title block.
struct Sheet {
  DrawingRect edge;    ///< of the paper
  DrawingRect border;  ///< the frame within it
  PaperSize paper;     ///< as it lies in the drawing
  double scale = 1;    ///< drawing units per millimetre of paper: 50 for 1:50 in millimetres
  std::string name;    ///< the drawing's name in the title block, UTF-8; empty where none is found
  std::string number;  ///< its number, likewise
};

/// The sheets of a document, from top to bottom and from left to right; those within inserts too. A sheet is a
/// rectangle of a paper format (A4 to A0, lengthened ones) with another in it whose binding margin of 25 mm, at the
/// left of a lying or the top (or left) of a standing sheet, and other margins of 10 mm (A0 to A2) or 5 mm (A3, A4) fit
/// the format at one scale. Source of the margins: GB/T 50001.
std::vector<Sheet> FindSheets(DXF& document);

/// The document's largest sheet; the empty value where it has none.
std::optional<Sheet> SheetOf(DXF& document);

}  // namespace qv
