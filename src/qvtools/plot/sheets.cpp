#include "qvtools/plot/sheets.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <map>

#include "qvtools/dxf/model/internal/name_index.h"
#include "qvtools/dxf/model/visit.h"
#include "qvtools/plot/internal/found_text.h"
#include "qvtools/services/captions.h"

namespace qv {

namespace {

using detail::InsertedBlocks;

constexpr double kShortestSide = 200;  // mm of paper at 1:1; drawings at a larger scale have no frames
constexpr double kTolerance = 2e-3;    // of sides, relative

bool agree(double a, double b, double size) {
  return std::fabs(a - b) <= kTolerance * size;
}

/// Gathers the upright rectangles of a drawing: closed polylines, and lines that meet in four corners.
class Rectangles {
 public:
  explicit Rectangles(DXF& document) : blocks_(document) { add_list(document.m_EntityList, 0, 0, true); }

  const std::vector<DrawingRect>& all() {
    join_lines();
    return rects_;
  }

 private:
  static constexpr int kLargestFrameBlock = 2000;  // entities of a block that may be a frame

  void add_list(const CPtrList& list, double dx, double dy, bool inserts) {
    for (POSITION at = list.GetHeadPosition(); at;) {
      auto& entity = *static_cast<ACAD_ENTITY*>(list.GetNext(at));
      switch (entity.GetType()) {
        case ACAD_TYPE_LINE:
          add_line(static_cast<const ACAD_LINE&>(entity), dx, dy);
          break;
        case ACAD_TYPE_POLYLINE:
          add_polyline(static_cast<const ACAD_POLYLINE&>(entity), dx, dy);
          break;
        case ACAD_TYPE_INSERT:
          if (inserts) add_insert(static_cast<const ACAD_INSERT&>(entity));
          break;
        default:
          break;
      }
    }
  }

  void add_insert(const ACAD_INSERT& insert) {
    const ACAD_BLOCK* const block = blocks_(insert);
    if (!block || block->m_EntityList.GetCount() > kLargestFrameBlock) return;
    add_list(block->m_EntityList, static_cast<double>(insert.m_Insert.x) - block->m_Base.x,
             static_cast<double>(insert.m_Insert.y) - block->m_Base.y, false);
  }

  void add_line(const ACAD_LINE& line, double dx, double dy) {
    const double x1 = line.m_Start.x + dx, y1 = line.m_Start.y + dy;
    const double x2 = line.m_End.x + dx, y2 = line.m_End.y + dy;
    if (line.m_Start.y == line.m_End.y && std::fabs(x2 - x1) >= kShortestSide)
      levels_[{std::min(x1, x2), std::max(x1, x2)}].push_back(y1);
    if (line.m_Start.x == line.m_End.x && std::fabs(y2 - y1) >= kShortestSide)
      uprights_.push_back({x1, std::min(y1, y2), std::max(y1, y2)});
  }

  void add_polyline(const ACAD_POLYLINE& polyline, double dx, double dy) {
    const int n = static_cast<int>(polyline.m_Vertices.GetSize());
    const bool closed = (polyline.m_nFlags & 1) != 0;
    if (n != (closed ? 4 : 5)) return;
    std::array<Point3, 4> corners;
    for (int i = 0; i < n; ++i) {
      const ACAD_VERTEX& vertex = polyline.m_Vertices[i];
      if (vertex.m_fBulge != 0) return;
      if (i < 4)
        corners[static_cast<std::size_t>(i)] = vertex.m_Point;
      else if (vertex.m_Point.x != corners[0].x || vertex.m_Point.y != corners[0].y)
        return;
    }
    const auto [left, right] = std::minmax({corners[0].x, corners[1].x, corners[2].x, corners[3].x});
    const auto [bottom, top] = std::minmax({corners[0].y, corners[1].y, corners[2].y, corners[3].y});
    const DrawingRect r{left + dx, bottom + dy, right + dx, top + dy};
    const double size = std::max(r.width(), r.height());
    if (!(std::min(r.width(), r.height()) >= kShortestSide)) return;
    for (std::size_t i = 0; i < 4; ++i) {
      const Point3& a = corners[i];
      const Point3& b = corners[(i + 1) % 4];
      const bool level = agree(a.y, b.y, size) && agree(std::fabs(a.x - b.x), r.width(), size);
      const bool upright = agree(a.x, b.x, size) && agree(std::fabs(a.y - b.y), r.height(), size);
      if (!level && !upright) return;
    }
    rects_.push_back(r);
  }

  void join_lines() {
    constexpr std::size_t kMostLevels = 64;  // lines of one place and length; more are a table or a pattern
    std::sort(uprights_.begin(), uprights_.end());
    const auto has_upright = [&](double x, double y1, double y2) {
      return std::binary_search(uprights_.begin(), uprights_.end(), std::array{x, y1, y2});
    };
    for (auto& [ends, levels] : levels_) {
      if (levels.size() < 2 || levels.size() > kMostLevels) continue;
      std::sort(levels.begin(), levels.end());
      for (std::size_t i = 0; i < levels.size(); ++i)
        for (std::size_t k = i + 1; k < levels.size(); ++k)
          if (has_upright(ends.first, levels[i], levels[k]) && has_upright(ends.second, levels[i], levels[k]))
            rects_.push_back({ends.first, levels[i], ends.second, levels[k]});
    }
    levels_.clear();
  }

  InsertedBlocks blocks_;
  std::vector<DrawingRect> rects_;
  std::map<std::pair<double, double>, std::vector<double>> levels_;  // level lines by where they begin and end
  std::vector<std::array<double, 3>> uprights_;                      // x, lower and upper end
};

/// A scale that is a whole number but for rounding is that.
double rounded_scale(double scale) {
  const double whole = std::round(scale);
  return whole >= 1 && std::fabs(scale - whole) < kTolerance * whole ? whole : scale;
}

/// Whether an inner rectangle is the border of an edge of paper.
std::optional<Sheet> as_sheet(const DrawingRect& edge, const DrawingRect& border) {
  constexpr double kBinding = 25;
  const double margins[] = {border.left - edge.left, edge.top - border.top, edge.right - border.right,
                            border.bottom - edge.bottom};
  const double binding = std::max(margins[0], margins[1]);
  const double other = margins[2];
  const double size = std::max(edge.width(), edge.height());
  if (!(other > 0) || !(binding > other) || !agree(margins[3], other, size)) return std::nullopt;
  if (!agree(std::min(margins[0], margins[1]), other, size)) return std::nullopt;
  const double scale = rounded_scale(binding / kBinding);
  const PaperSize paper{edge.width() / scale, edge.height() / scale};
  for (const PaperFormat& format : paper_formats()) {
    const bool large = format.size.shorter() >= 420;
    const PaperSize lying = paper.landscape();
    constexpr double kMillimetre = 1.0;
    if (std::fabs(lying.width - format.size.width) > kMillimetre ||
        std::fabs(lying.height - format.size.height) > kMillimetre)
      continue;
    if (std::fabs(other / scale - (large ? 10 : 5)) > kMillimetre) continue;
    Sheet sheet;
    sheet.edge = edge;
    sheet.border = border;
    sheet.paper = edge.width() > edge.height() ? format.size : format.size.portrait();
    // Sides are long: they tell the scale more exactly than the margin does.
    sheet.scale = rounded_scale(std::max(edge.width(), edge.height()) / format.size.width);
    return sheet;
  }
  return std::nullopt;
}

/// Puts the entries of the composer's title block into the sheets: eighths of 180 mm from the border's right, rows of
/// 10 mm from its bottom.
void read_titles(DXF& document, std::vector<Sheet>& sheets) {
  constexpr double kColumn = 22.5;
  constexpr double kRow = 10;
  const struct {
    double left;  // columns from the right
    double row;
    const char* caption;
    std::string Sheet::*entry;
  } cells[] = {{3, 2, captions::kDrawingName, &Sheet::name}, {1, 0, captions::kDrawingNumber, &Sheet::number}};
  for (POSITION at = document.m_EntityList.GetHeadPosition(); at;) {
    auto& entity = *static_cast<ACAD_ENTITY*>(document.m_EntityList.GetNext(at));
    if (entity.GetType() != ACAD_TYPE_TEXT) continue;
    const auto& text = static_cast<const ACAD_TEXT&>(entity);
    for (Sheet& sheet : sheets) {
      const double x = (sheet.border.right - text.m_Insert.x) / sheet.scale / kColumn;
      const double y = (text.m_Insert.y - sheet.border.bottom) / sheet.scale / kRow;
      for (const auto& cell : cells) {
        std::string& entry = sheet.*cell.entry;
        const bool inside = x > 0 && x <= cell.left && y >= cell.row && y < cell.row + 1;
        if (inside && entry.empty() && std::strcmp(text.m_szText, cell.caption) != 0)
          entry = detail::found_text(text.m_szText);
      }
    }
  }
}

/// Rows from top to bottom, each from left to right. A row is what reaches to the middle of its first sheet.
void order(std::vector<Sheet>& sheets) {
  std::sort(sheets.begin(), sheets.end(), [](const Sheet& a, const Sheet& b) { return a.edge.top > b.edge.top; });
  for (auto row = sheets.begin(); row != sheets.end();) {
    const double middle = (row->edge.top + row->edge.bottom) / 2;
    const auto end = std::find_if(row, sheets.end(), [&](const Sheet& s) { return s.edge.top < middle; });
    std::sort(row, end, [](const Sheet& a, const Sheet& b) { return a.edge.left < b.edge.left; });
    row = end;
  }
}

}  // namespace

std::vector<Sheet> FindSheets(DXF& document) {
  constexpr std::size_t kMostRectangles = 2000;
  std::vector<Sheet> sheets;
  Rectangles rectangles(document);
  std::vector<DrawingRect> all = rectangles.all();
  // Large ones first: frames are larger than what stands in them.
  std::sort(all.begin(), all.end(),
            [](const DrawingRect& a, const DrawingRect& b) { return a.width() * a.height() > b.width() * b.height(); });
  if (all.size() > kMostRectangles) all.resize(kMostRectangles);
  for (std::size_t i = 0; i < all.size(); ++i) {
    const DrawingRect& edge = all[i];
    const bool within = std::any_of(sheets.begin(), sheets.end(), [&](const Sheet& s) {
      return edge.left >= s.edge.left && edge.right <= s.edge.right && edge.bottom >= s.edge.bottom &&
             edge.top <= s.edge.top;
    });
    for (std::size_t k = i + 1; k < all.size() && !within; ++k) {
      if (const std::optional<Sheet> sheet = as_sheet(edge, all[k])) {
        sheets.push_back(*sheet);
        break;
      }
    }
  }
  read_titles(document, sheets);
  order(sheets);
  return sheets;
}

std::optional<Sheet> SheetOf(DXF& document) {
  const std::vector<Sheet> sheets = FindSheets(document);
  if (sheets.empty()) return std::nullopt;
  return *std::max_element(sheets.begin(), sheets.end(), [](const Sheet& a, const Sheet& b) {
    return a.edge.width() * a.edge.height() < b.edge.width() * b.edge.height();
  });
}

}  // namespace qv
