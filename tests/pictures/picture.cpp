#include "pictures/picture.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <map>
#include <random>

#include "qvtools/platform/bitmap/bitmap_dc.h"

namespace qvtest {
namespace {

constexpr int kCell = 42;
constexpr int kMargin = 6;  // strokes stay in their cell
constexpr int kColumns = kPictureWidth / kCell;
constexpr int kRows = kPictureHeight / kCell;

/// One cell's drawing: chances from a seed of its own, points within its bounds.
struct Cell {
  CDC& dc;
  std::mt19937 random;
  CPoint corner;

  int below(int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); }
  CPoint point() {
    return {corner.x + kMargin + below(kCell - 2 * kMargin), corner.y + kMargin + below(kCell - 2 * kMargin)};
  }
  std::vector<CPoint> points(int n) {
    std::vector<CPoint> all;
    for (int i = 0; i < n; ++i) all.push_back(point());
    return all;
  }
  COLORREF color() { return static_cast<COLORREF>(random() & 0x7F7F7F); }
  void draw(const CPen& pen, const std::vector<CPoint>& line) {
    const CPen* const before = dc.SelectObject(&pen);
    dc.MoveTo(line[0].x, line[0].y);
    for (std::size_t i = 1; i < line.size(); ++i) dc.LineTo(line[i].x, line[i].y);
    dc.SelectObject(before);
  }
  void fill(const std::vector<CPoint>& outline, qv::FillRule rule, COLORREF color) {
    CRgn region;
    region.CreatePolygonRgn(outline.data(), static_cast<int>(outline.size()), rule);
    dc.FillRgn(region, CBrush{color});
  }
  /// The left half in one colour.
  void fill_half() {
    const int left = corner.x + kMargin, top = corner.y + kMargin, size = kCell - 2 * kMargin;
    fill({{left, top}, {left + size / 2, top}, {left + size / 2, top + size}, {left, top + size}},
         qv::FillRule::Winding, color());
  }
};

qv::PenStyle any_style(Cell& cell) {
  return static_cast<qv::PenStyle>(cell.below(5));
}

void thin_line(Cell& cell) {
  cell.draw(CPen{qv::PenStyle::Solid, cell.below(2), cell.color()}, cell.points(2));
}

void styled_line(Cell& cell) {
  cell.dc.SetBkMode(cell.below(2) ? qv::BackgroundMode::Opaque : qv::BackgroundMode::Transparent);
  cell.draw(CPen{any_style(cell), 1, cell.color()}, cell.points(2));
}

void joined_lines(Cell& cell) {
  cell.dc.SetBkMode(qv::BackgroundMode::Transparent);
  // A zigzag crosses itself nowhere.
  std::vector<CPoint> line;
  for (int x = kMargin; x < kCell - kMargin; x += 4 + cell.below(6))
    line.push_back({cell.corner.x + x, cell.point().y});
  cell.draw(CPen{any_style(cell), 1, cell.color()}, line);
}

void wide_line(Cell& cell) {
  cell.draw(CPen{qv::PenStyle::Solid, 2 + cell.below(7), cell.color()}, cell.points(2));
}

void fills(Cell& cell) {
  cell.fill(cell.points(3 + cell.below(6)), cell.below(2) ? qv::FillRule::Winding : qv::FillRule::Alternate,
            cell.color());
}

void inverted_line(Cell& cell) {
  cell.fill_half();
  cell.dc.SetROP2(cell.below(2) ? qv::RasterOp::Not : qv::RasterOp::XorPen);
  cell.draw(CPen{qv::PenStyle::Solid, 0, 0x0000FF}, cell.points(2));
}

void inverted_fill(Cell& cell) {
  cell.fill_half();
  cell.dc.SetROP2(cell.below(2) ? qv::RasterOp::Not : qv::RasterOp::XorPen);
  cell.fill(cell.points(3), qv::FillRule::Winding, 0x00FF80);
}

void pixels(Cell& cell) {
  for (int i = 0; i < 10; ++i) {
    const CPoint p = cell.point();
    cell.dc.SetPixel(p.x, p.y, cell.color());
  }
}

struct Group {
  void (*draw)(Cell& cell);
  bool countsPixels;  // every device sets the same number of pixels of each colour
};
constexpr Group kGroups[] = {{thin_line, true},      {thin_line, true},      {styled_line, true},
                             {joined_lines, false},  {wide_line, false},     {fills, false},
                             {inverted_line, false}, {inverted_fill, false}, {pixels, true}};
constexpr int kGroupCount = static_cast<int>(std::size(kGroups));

/// Calls f with the number of each cell and its upper left corner.
template <class F>
void for_each_cell(F f) {
  for (int i = 0; i < kColumns * kRows; ++i) f(i, CPoint(i % kColumns * kCell, i / kColumns * kCell));
}

/// Whether the colour stands within a pixel of the place.
bool has_near(const Picture& picture, std::uint32_t color, int x, int y) {
  for (int v = std::max(y - 1, 0); v <= std::min(y + 1, picture.height - 1); ++v)
    for (int u = std::max(x - 1, 0); u <= std::min(x + 1, picture.width - 1); ++u)
      if (picture.at(u, v) == color) return true;
  return false;
}

/// Draws the borders of fills, black on white, and nothing else.
class Borders : public qv::BitmapContext {
 public:
  Borders() : BitmapContext(kPictureWidth, kPictureHeight, 0xFFFFFF) {}
  void LineTo(int, int) override {}
  void SetPixel(int, int, COLORREF) override {}
  void FillRgn(const CRgn& region, const CBrush&) override {
    SetROP2(qv::RasterOp::CopyPen);
    const CPen* const before = SelectObject(StockBlackPen());
    const CPoint *const first = region.Points(), *const end = first + region.Count();
    MoveTo(end[-1].x, end[-1].y);
    for (const CPoint* p = first; p != end; ++p) BitmapContext::LineTo(p->x, p->y);
    SelectObject(before);
  }
};

std::map<std::uint32_t, int> census(const Picture& picture, CPoint corner) {
  std::map<std::uint32_t, int> counts;
  for (int y = 0; y < kCell; ++y)
    for (int x = 0; x < kCell; ++x) ++counts[picture.at(corner.x + x, corner.y + y)];
  return counts;
}

std::string place(int x, int y) {
  return std::to_string(x) + ", " + std::to_string(y);
}

}  // namespace

Picture picture_of(CSize size, const std::uint32_t* pixels) {
  Picture picture{size.cx, size.cy, {pixels, pixels + static_cast<std::ptrdiff_t>(size.cx) * size.cy}};
  for (std::uint32_t& v : picture.pixels) v &= 0xFFFFFF;
  return picture;
}

void draw_commands(CDC& dc, unsigned seed) {
  for_each_cell([&](int i, CPoint corner) {
    Cell cell{dc, std::mt19937(seed * 1000 + static_cast<unsigned>(i)), corner};
    kGroups[i % kGroupCount].draw(cell);
    dc.SetROP2(qv::RasterOp::CopyPen);
  });
}

std::string difference(unsigned seed, const Picture& a, const Picture& b) {
  if (a.pixels.empty() || a.width != b.width || a.height != b.height) return "the sizes differ";
  Borders drawn;
  draw_commands(drawn, seed);
  const Picture borders = picture_of(drawn.GetResolution(), drawn.Pixels());
  for (int y = 0; y < a.height; ++y)
    for (int x = 0; x < a.width; ++x) {
      if (has_near(borders, 0, x, y)) continue;
      if (!has_near(b, a.at(x, y), x, y)) return "the first picture's pixel " + place(x, y) + " is not in the second";
      if (!has_near(a, b.at(x, y), x, y)) return "the second picture's pixel " + place(x, y) + " is not in the first";
    }
  std::string found;
  for_each_cell([&](int i, CPoint corner) {
    if (!found.empty() || !kGroups[i % kGroupCount].countsPixels || census(a, corner) == census(b, corner)) return;
    found = "different numbers of pixels in the cell at " + place(corner.x, corner.y);
  });
  return found;
}

bool write_picture(const Picture& picture, const std::string& path) {
  std::ofstream file(path, std::ios::binary);
  file << "P6\n" << picture.width << ' ' << picture.height << "\n255\n";
  for (const std::uint32_t v : picture.pixels)
    file << static_cast<char>(v >> 16 & 255) << static_cast<char>(v >> 8 & 255) << static_cast<char>(v & 255);
  return static_cast<bool>(file.flush());
}

Picture read_picture(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string magic;
  int width = 0, height = 0, most = 0;
  file >> magic >> width >> height >> most;
  file.get();
  if (magic != "P6" || width < 1 || height < 1 || width > 10000 || height > 10000 || most != 255) return {};
  Picture picture{width, height, {}};
  std::array<char, 3> rgb;
  for (int i = 0; i < width * height && file.read(rgb.data(), 3); ++i) {
    const auto byte = [&](std::size_t k) { return static_cast<std::uint32_t>(static_cast<unsigned char>(rgb[k])); };
    picture.pixels.push_back(byte(0) << 16 | byte(1) << 8 | byte(2));
  }
  return file ? picture : Picture();
}

}  // namespace qvtest
