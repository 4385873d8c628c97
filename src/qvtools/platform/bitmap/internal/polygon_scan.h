#pragma once

/// The rows of a polygon: which spans of sample points at integer coordinates it covers.

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "qvtools/platform/device.h"

namespace qv::detail {

/// An edge that runs down from row `top` to row `bottom`, which it leaves out. At the present row it passes through
/// x + rest / height with -height < rest <= 0, so that x is the first sample at its right or on it.
struct ScanEdge {
  // What a row changes lies apart: side by side, fields would be read as one before their single stores have settled.
  std::int64_t x;
  std::int64_t height;
  std::int64_t rest;
  std::int64_t step;  // per row: step + step_rest / height, 0 <= step_rest < height
  int top;
  int bottom;
  std::int64_t step_rest;
  int winding;

  /// The edge from a to b as it stands at row 0 or its first row, whichever is lower down; false when it crosses no
  /// row.
  bool set(CPoint a, CPoint b, int rows) {
    winding = a.y < b.y ? 1 : -1;
    if (a.y > b.y) std::swap(a, b);
    top = std::max(a.y, 0);
    bottom = std::min(b.y, rows);
    if (top >= bottom) return false;
    const std::int64_t dx = std::int64_t{b.x} - a.x;
    height = std::int64_t{b.y} - a.y;
    if (static_cast<std::int32_t>(dx) == dx && static_cast<std::int32_t>(height) == height) {
      step = static_cast<std::int32_t>(dx) / static_cast<std::int32_t>(height);  // much faster than in 64 bits
    } else {
      step = dx / height;
    }
    step_rest = dx - step * height;
    if (step_rest < 0) {
      step_rest += height;
      --step;
    }
    x = a.x;
    rest = 0;
    if (top > a.y) skip(static_cast<std::uint64_t>(std::int64_t{top} - a.y), dx);
    return true;
  }
  void next_row() {
    x += step;
    rest += step_rest;
    if (rest > 0) {
      rest -= height;
      ++x;
    }
  }

 private:
  // Rows and differences have 32 bits, so their product fits 64 bits unsigned.
  void skip(std::uint64_t rows, std::int64_t dx) {
    const auto h = static_cast<std::uint64_t>(height);
    const std::uint64_t run = rows * static_cast<std::uint64_t>(dx < 0 ? -dx : dx);
    const auto whole = static_cast<std::int64_t>(run / h), part = static_cast<std::int64_t>(run % h);
    x += dx < 0 ? -whole : whole + (part > 0);
    rest = dx < 0 ? -part : part > 0 ? part - height : 0;
  }
};

/// The rows y to end - 1 of the only two living edges, whose run is covered by either rule.
void scan_pair(ScanEdge& a, ScanEdge& b, int y, int end, auto& span) {
  for (; y < end; ++y) {
    if (a.x < b.x) span(y, a.x, b.x);
    if (b.x < a.x) span(y, b.x, a.x);
    a.next_row();
    b.next_row();
  }
}

/// One row of living edges, which are brought into order.
void scan_row(ScanEdge** first, ScanEdge** last, int y, FillRule rule, auto& span) {
  const int mask = rule == FillRule::Winding ? ~0 : 1;
  for (ScanEdge** i = first + 1; i < last; ++i) {
    ScanEdge* const edge = *i;
    ScanEdge** j = i;
    for (; j > first && j[-1]->x > edge->x; --j) *j = j[-1];
    *j = edge;
  }
  int winding = 0;
  for (ScanEdge** i = first; i + 1 < last; ++i) {
    winding += (*i)->winding;
    if ((winding & mask) && i[0]->x < i[1]->x) span(y, i[0]->x, i[1]->x);
  }
  for (ScanEdge** i = first; i < last; ++i) (*i)->next_row();
}

/// Walks the edges, which are sorted by their tops, row by row; span(y, left, right) gets each run of samples, right
/// end left out.
void scan_edges(ScanEdge** edges, int count, FillRule rule, auto& span) {
  int first = 0, active = 0;  // edges[first .. active) are alive
  for (int y = 0; first < active || active < count;) {
    if (first == active) y = edges[active]->top;
    while (active < count && edges[active]->top == y) ++active;
    int end = y + 1;
    if (active - first == 2) {
      ScanEdge &a = *edges[first], &b = *edges[first + 1];
      end = std::min(a.bottom, b.bottom);
      if (active < count) end = std::min(end, edges[active]->top);
      scan_pair(a, b, y, end, span);
    } else {
      scan_row(edges + first, edges + active, y, rule, span);
    }
    // The ended ones move to the front, out of the living range.
    int kept = active;
    for (int i = active; i-- > first;) {
      if (edges[i]->bottom != end) edges[--kept] = edges[i];
    }
    first = kept;
    y = end;
  }
}

/// Calls span(y, left, right) for the covered samples of the rows 0 to rows - 1, row by row from the top.
void scan_polygon(const CRgn& region, int rows, auto span) {
  constexpr int kFew = 8;
  const int n = region.Count();
  const CPoint* p = region.Points();
  std::array<ScanEdge, kFew> few;
  std::array<ScanEdge*, kFew> few_order;
  std::vector<ScanEdge> many;
  std::vector<ScanEdge*> many_order;
  if (n > kFew) {
    many.resize(static_cast<std::size_t>(n));
    many_order.resize(static_cast<std::size_t>(n));
  }
  ScanEdge* edges = n > kFew ? many.data() : few.data();
  ScanEdge** order = n > kFew ? many_order.data() : few_order.data();
  int count = 0;
  for (int i = 0, j = n - 1; i < n; j = i++) {
    if (edges[count].set(p[j], p[i], rows)) {
      order[count] = &edges[count];
      ++count;
    }
  }
  const auto higher = [](const ScanEdge* a, const ScanEdge* b) { return a->top < b->top; };
  if (n > kFew) {
    std::sort(order, order + count, higher);
  } else {
    for (int i = 1; i < count; ++i) {
      ScanEdge* const edge = order[i];
      int j = i;
      for (; j > 0 && higher(edge, order[j - 1]); --j) order[j] = order[j - 1];
      order[j] = edge;
    }
  }
  scan_edges(order, count, region.Rule(), span);
}

}  // namespace qv::detail
