#include "qvtools/drawing/sheet_table.h"

#include <algorithm>

#include "qvtools/drawing/internal/placing.h"

namespace qv {

CFRect SheetTable::Place::Cell(int row, int column) const {
  const auto at = static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) + static_cast<std::size_t>(column);
  return row < 0 || column < 0 || column >= columns_ || at >= cells_.size() ? CFRect() : cells_[at];
}

void SheetTable::AddHeader(std::vector<std::string> cells, double height) {
  AddRow(std::move(cells), height);
  rows_.back().header = true;
  ++headers_;
}

void SheetTable::AddRow(std::vector<std::string> cells, double height) {
  cells.resize(columns_.size());
  rows_.push_back({std::move(cells), height > 0 ? height : look_.rowHeight, false});
}

void SheetTable::Merge(int row, int column, int rows, int columns) {
  const int lastRow = std::min(row + rows, this->rows());
  const int lastColumn = std::min(column + columns, static_cast<int>(columns_.size()));
  if (row < 0 || column < 0 || row >= lastRow || column >= lastColumn) return;
  for (int r = row; r < lastRow; ++r)
    for (int c = column; c < lastColumn; ++c)
      if (span_at(r, c)) return;
  spans_.push_back({row, column, lastRow - row, lastColumn - column});
}

const SheetTable::Span* SheetTable::span_at(int row, int column) const {
  for (const Span& span : spans_)
    if (row >= span.row && row < span.row + span.rows && column >= span.column && column < span.column + span.columns)
      return &span;
  return nullptr;
}

double SheetTable::height_of(int first, int end) const {
  double height = 0;
  for (int row = first; row < end; ++row) height += rows_[static_cast<std::size_t>(row)].height;
  return height;
}

double SheetTable::header_height() const {
  return height_of(0, headers_);
}

std::vector<double> SheetTable::widths() const {
  std::vector<double> widths;
  for (std::size_t c = 0; c < columns_.size(); ++c) {
    double widest = columns_[c].width;
    for (int r = 0; r < rows() && columns_[c].width <= 0; ++r) {
      const Span* const span = span_at(r, static_cast<int>(c));
      if (span && span->columns > 1) continue;
      const auto& text = rows_[static_cast<std::size_t>(r)].cells[c];
      const auto height = static_cast<float>(look_.textHeight);
      widest = std::max(widest, static_cast<double>(SheetTextWidth(text.c_str(), height)) + 2 * look_.gap);
    }
    widths.push_back(widest);
  }
  return widths;
}

/// The rows below the header, cut where the height would be too much and no merged cell is cut through.
std::vector<SheetTable::Part> SheetTable::parts() const {
  std::vector<Part> parts;
  int first = headers_;
  while (first < rows() || parts.empty()) {
    int end = first;
    for (int next = first; next < rows();) {
      int whole = next + 1;  // the row behind all that hang together with this one
      for (bool grown = true; grown;) {
        grown = false;
        for (const Span& span : spans_) {
          if (span.row < whole && span.row >= next && span.row + span.rows > whole) {
            whole = span.row + span.rows;
            grown = true;
          }
        }
      }
      const bool fits = look_.mostHeight <= 0 || header_height() + height_of(first, whole) <= look_.mostHeight + 1e-6;
      if (!fits && end > first) break;
      end = next = whole;
    }
    parts.push_back({first, end, header_height() + height_of(first, end)});
    first = end;
  }
  return parts;
}

double SheetTable::Width() const {
  double width = 0;
  for (const double w : widths()) width += w;
  const auto count = static_cast<double>(parts().size());
  return width * count + look_.partGap * (count - 1);
}

double SheetTable::Height() const {
  double most = 0;
  for (const Part& part : parts()) most = std::max(most, part.height);
  return most;
}

SheetTable::Place SheetTable::Draw(CBase_SGT& sgt, float x, float top) const {
  const double s = sgt.m_fBiLiChi;
  const auto scaled = [&](double mm) { return static_cast<float>(mm * s); };
  const std::vector<double> columnWidths = widths();
  double partWidth = 0;
  for (const double w : columnWidths) partWidth += w;

  Place place;
  place.columns_ = static_cast<int>(columns_.size());
  place.cells_.resize(rows_.size() * columns_.size());
  place.all_ = CFRect(x, top - scaled(Height()), x + scaled(Width()), top);
  if (!title_.empty())
    DrawSheetText(sgt, x + scaled(Width()) / 2, top + scaled(2), scaled(look_.titleHeight), title_.c_str(),
                  Across::Center);

  const auto line = [&](float x1, float y1, float x2, float y2) {
    const float width = scaled(look_.innerPen);
    if (width > 0)
      sgt.Draw_Pline(x1, y1, x2, y2, width, width);
    else
      sgt.Draw_Line(x1, y1, x2, y2);
  };
  double left = 0;
  for (const Part& part : parts()) {
    std::vector<int> shown;
    for (int row = 0; row < headers_; ++row) shown.push_back(row);
    for (int row = part.first; row < part.end; ++row) shown.push_back(row);
    double down = 0;
    for (const int row : shown) {
      const Row& texts = rows_[static_cast<std::size_t>(row)];
      double across = left;
      for (int column = 0; column < place.columns_; ++column) {
        const auto c = static_cast<std::size_t>(column);
        const double cellLeft = across;
        across += columnWidths[c];
        CFRect& cell = place.cells_[static_cast<std::size_t>(row) * columns_.size() + c];
        const Span* const span = span_at(row, column);
        if (span && (span->row != row || span->column != column)) {
          cell = place.Cell(span->row, span->column);
          continue;
        }
        double width = columnWidths[c];
        double height = texts.height;
        if (span) {
          for (int i = 1; i < span->columns; ++i) width += columnWidths[c + static_cast<std::size_t>(i)];
          height = height_of(row, row + span->rows);
        }
        cell =
            CFRect(x + scaled(cellLeft), top - scaled(down + height), x + scaled(cellLeft + width), top - scaled(down));
        // Each cell draws its upper and left line; those on the outline are the outline's.
        if (down > 0) line(cell.x1, cell.y2, cell.x2, cell.y2);
        if (cellLeft > left) line(cell.x1, cell.y1, cell.x1, cell.y2);
        const std::string& text = texts.cells[c];
        if (!text.empty())
          DrawFittedText(sgt, cell, texts.header ? Across::Center : columns_[c].across, scaled(look_.textHeight),
                         text.c_str(), scaled(look_.gap));
      }
      down += texts.height;
    }
    const float width = scaled(partWidth);
    const float height = scaled(part.height);
    if (look_.framePen > 0)
      sgt.Draw_Rect_LB(width, height, x + scaled(left), top - height, 0, scaled(look_.framePen));
    else
      sgt.Draw_Rect_LB(width, height, x + scaled(left), top - height, 0);
    left += partWidth + look_.partGap;
  }
  return place;
}

}  // namespace qv
