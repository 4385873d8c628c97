#pragma once

/// A table on a sheet: schedules, bar lists, drawing lists.

#include <string>
#include <utility>
#include <vector>

#include "qvtools/drawing/fitted_text.h"

namespace qv {

/// Rows of texts (GBK) with a header, merged cells and an outline. Widths, heights and gaps are drawing mm, times the
/// composer's scale when the table is drawn. Rows and columns count from 0, the header's rows first.
class QV_API SheetTable {
 public:
  /// A column.
  struct Column {
    double width = 0;                ///< 0: as wide as its widest text that is not merged, gaps included
    Across across = Across::Center;  ///< of its cells below the header, which is centred
  };
  /// How the table is drawn.
  struct Look {
    double textHeight = 3.5;  ///< of cells
    double rowHeight = 7;     ///< of rows that have none of their own
    double gap = 1.5;         ///< between a text and the lines beside it
    double framePen = 0.5;    ///< width of the outline; 0 a thin line
    double innerPen = 0;      ///< width of the inner lines
    double titleHeight = 5;   ///< of the title's text
    double mostHeight = 0;    ///< what is higher, header included, goes on beside it under the header again; 0 no limit
    double partGap = 5;       ///< between such parts
  };
  /// Where a drawn table stands, in the caller's frame.
  class QV_API Place {
   public:
    const CFRect& all() const { return all_; }  ///< without the title
    /// A cell, with what is merged into it; a rectangle of zeros when there is no such cell.
    CFRect Cell(int row, int column) const;

   private:
    friend class SheetTable;
    CFRect all_;
    int columns_ = 0;
    std::vector<CFRect> cells_;
  };

  /// A table without rows.
  explicit SheetTable(std::vector<Column> columns) : columns_(std::move(columns)) {}
  SheetTable(std::vector<Column> columns, const Look& look) : columns_(std::move(columns)), look_(look) {}

  /// A text over the middle of the table.
  void SetTitle(std::string title) { title_ = std::move(title); }
  /// Adds a row to the header. Rows below are added after the header. Missing cells are empty, cells that are too many
  /// are left out. `height` in drawing mm; 0: that of the look.
  void AddHeader(std::vector<std::string> cells, double height = 0);
  void AddRow(std::vector<std::string> cells, double height = 0);
  /// Makes one cell of so many rows and columns, with the text of the upper left one. Rows that are merged stay
  /// together in one part. Cells beyond the table are not counted; a cell that is merged already is left as it is.
  void Merge(int row, int column, int rows, int columns);

  /// The number of rows, the header's included.
  int rows() const { return static_cast<int>(rows_.size()); }
  /// Width and height of what `Draw` will draw, in drawing mm, without the title.
  double Width() const;
  double Height() const;

  /// Draws the table with its upper left corner at (x, top), in the current colour and layer, transformed as the
  /// primitives are. The title stands above.
  Place Draw(CBase_SGT& sgt, float x, float top) const;

 private:
  struct Row {
    std::vector<std::string> cells;
    double height;
    bool header;
  };
  struct Span {
    int row, column, rows, columns;
  };
  struct Part {
    int first;
    int end;
    double height;
  };
  std::vector<double> widths() const;
  std::vector<Part> parts() const;
  const Span* span_at(int row, int column) const;
  double height_of(int first, int end) const;
  double header_height() const;

  std::vector<Column> columns_;
  Look look_;
  std::string title_;
  std::vector<Row> rows_;
  std::vector<Span> spans_;
  int headers_ = 0;
};

}  // namespace qv
