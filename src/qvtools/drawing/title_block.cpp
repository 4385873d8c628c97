#include "qvtools/drawing/title_block.h"

#include <algorithm>
#include <iterator>

#include "qvtools/services/captions.h"

namespace qv {

namespace {

/// A cell by the eighths of the block's width and its four rows from the bottom.
struct TitleCell {
  int column;
  int row;
  int columns;
  int rows;
  double height;  // of its text, mm
};

/// In the order of `TitleEntry`; `Draw_BiaoTiLan` writes each caption one column to the left.
constexpr TitleCell kCells[] = {{0, 2, 4, 2, 7},   {5, 3, 3, 1, 5},   {5, 2, 3, 1, 5},   {1, 0, 1, 1, 3.5},
                                {1, 1, 1, 1, 3.5}, {3, 0, 1, 1, 3.5}, {3, 1, 1, 1, 3.5}, {5, 0, 1, 1, 3.5},
                                {5, 1, 1, 1, 3.5}, {7, 0, 1, 1, 3.5}, {7, 1, 1, 1, 3.5}};

constexpr float kGap = 1;  // drawing mm between a text and the lines beside it

const TitleCell& cell_of(TitleEntry entry) {
  return kCells[std::clamp(static_cast<int>(entry), 0, static_cast<int>(std::size(kCells)) - 1)];
}

}  // namespace

TitleBlock::TitleBlock(const CBase_SGT& sgt, float right, float bottom)
    : block_(right - 180 * sgt.m_fBiLiChi, bottom, right, bottom + 40 * sgt.m_fBiLiChi) {}

CFRect TitleBlock::Cell(TitleEntry entry) const {
  const TitleCell& cell = cell_of(entry);
  const float w = block_.Width() / 8;
  const float h = block_.Height() / 4;
  const float x = block_.x1 + static_cast<float>(cell.column) * w;
  const float y = block_.y1 + static_cast<float>(cell.row) * h;
  return {x, y, x + static_cast<float>(cell.columns) * w, y + static_cast<float>(cell.rows) * h};
}

void TitleBlock::Fill(CBase_SGT& sgt, TitleEntry entry, const char* text, double height) const {
  const double mm = height > 0 ? height : cell_of(entry).height;
  DrawFittedText(sgt, Cell(entry), Across::Center, static_cast<float>(mm) * sgt.m_fBiLiChi, text,
                 kGap * sgt.m_fBiLiChi);
}

CFRect CounterSignBlock::Cell(int row, int column) const {
  const auto r = static_cast<float>(std::clamp(row, 0, kRows - 1));
  const auto c = static_cast<float>(std::clamp(column, 0, kColumns - 1));
  if (turned_) {  // rows from left to right, each from the bottom to the top
    const float w = block_.Width() / kRows;
    const float h = block_.Height() / kColumns;
    return {block_.x1 + r * w, block_.y1 + c * h, block_.x1 + (r + 1) * w, block_.y1 + (c + 1) * h};
  }
  const float w = block_.Width() / kColumns;
  const float h = block_.Height() / kRows;
  return {block_.x1 + c * w, block_.y2 - (r + 1) * h, block_.x1 + (c + 1) * w, block_.y2 - r * h};
}

void CounterSignBlock::Fill(CBase_SGT& sgt, const std::vector<Entry>& entries) const {
  const auto write = [&](int row, int column, const char* text) {
    DrawFittedText(sgt, Cell(row, column), Across::Center, sgt.m_fZiGao[0], text, kGap * sgt.m_fBiLiChi, turned_);
  };
  const char* const heads[kColumns] = {captions::kProfession, captions::kPerson, captions::kDate};
  for (int column = 0; column < kColumns; ++column) write(0, column, heads[column]);
  for (int row = 1; row < kRows && row <= static_cast<int>(entries.size()); ++row) {
    const Entry& entry = entries[static_cast<std::size_t>(row - 1)];
    const std::string* const texts[kColumns] = {&entry.profession, &entry.person, &entry.date};
    for (int column = 0; column < kColumns; ++column) write(row, column, texts[column]->c_str());
  }
}

}  // namespace qv
