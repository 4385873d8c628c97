#include <array>
#include <vector>

#include "qvtools/engineering/field.h"
#include "qvtools/engineering/internal/field_mesh.h"
#include "qvtools/fonts/shx.h"
#include "qvtools/platform/host.h"
#include "qvtools/services/internal/out_of_memory.h"
#include "qvtools/text/numbers.h"

namespace {

constexpr float kMillimetres = 1000;
constexpr int kLastColor = 1280;
constexpr int kLegendLeft = 10;
constexpr int kLegendTop = 40;
constexpr int kLegendWidth = 32;
constexpr int kLegendHeight = 256;
constexpr int kLegendTextLeft = 50;
constexpr float kTextHeight = 12;
constexpr float kTextRatio = 0.75F;

COLORREF ramp_color(int index) {
  int r = 0, g = 0, b = 0;
  Get_RGB(index, r, g, b);
  return qv::rgb(static_cast<unsigned>(r), static_cast<unsigned>(g), static_cast<unsigned>(b));
}

/// The colours of the indices 0 to 1280, and which of them a position on the ramp takes.
class Ramp {
 public:
  Ramp() {
    for (int i = 0; i <= kLastColor; ++i) colors_[static_cast<std::size_t>(i)] = ramp_color(i);
  }
  COLORREF at(double position) const {
    // NaN takes the first colour.
    const double index = position > 0 ? std::min<double>(position, kLastColor) : 0;
    return colors_[static_cast<std::size_t>(static_cast<int>(index))];
  }

 private:
  std::array<COLORREF, kLastColor + 1> colors_;
};

struct Limits {
  float least = 1e10F;
  float largest = -1e10F;
};

Limits limits(const CChang& field, int k) {
  Limits found;
  for (const CChangNode& node : field.m_Nodes) {
    found.least = std::min(found.least, node.value[k]);
    found.largest = std::max(found.largest, node.value[k]);
  }
  return found;
}

/// A node on the device: its pixel, and its value as a position on the ramp.
struct DeviceNode {
  CPoint at;
  double position;
};

std::vector<DeviceNode> to_device(const CChang& field, int k, const Limits& range, const CFCoor& coor) {
  std::vector<DeviceNode> nodes;
  nodes.reserve(static_cast<std::size_t>(field.m_Nodes.GetSize()));
  const double span = static_cast<double>(range.largest) - range.least;
  for (const CChangNode& node : field.m_Nodes) {
    const double position = span > 0 ? (static_cast<double>(node.value[k]) - range.least) * kLastColor / span : 0;
    nodes.push_back({coor.FPtoDP(CFPoint(node.x * kMillimetres, node.y * kMillimetres)), position});
  }
  return nodes;
}

/// A linear function of the pixel: its value at the first pixel of the box, and what a step adds to it.
struct Plane {
  double value;
  double dx;
  double dy;
};

/// Twice the signed area of an edge with a pixel, with the box beginning at (left, top).
Plane edge(const CPoint& a, const CPoint& b, int left, int top) {
  const double dx = static_cast<double>(b.x) - a.x, dy = static_cast<double>(b.y) - a.y;
  return {dx * (static_cast<double>(top) - a.y) - dy * (static_cast<double>(left) - a.x), -dy, dx};
}

/// The plane through three device points and their positions on the ramp; level where they stand on one line.
Plane color_plane(const DeviceNode& a, const DeviceNode& b, const DeviceNode& c, int left, int top) {
  const double x1 = static_cast<double>(b.at.x) - a.at.x, y1 = static_cast<double>(b.at.y) - a.at.y;
  const double x2 = static_cast<double>(c.at.x) - a.at.x, y2 = static_cast<double>(c.at.y) - a.at.y;
  const double z1 = b.position - a.position, z2 = c.position - a.position;
  const double d = x1 * y2 - y1 * x2;
  if (d == 0) return {(a.position + b.position + c.position) / 3, 0, 0};
  const double dx = (z1 * y2 - y1 * z2) / d, dy = (x1 * z2 - z1 * x2) / d;
  const double fromX = static_cast<double>(left) - a.at.x, fromY = static_cast<double>(top) - a.at.y;
  return {a.position + dx * fromX + dy * fromY, dx, dy};
}

/// The bounding box of three points within 0 to width and 0 to height, all included; empty when right < left.
CRect clipped_box(const CPoint& a, const CPoint& b, const CPoint& c, CSize size) {
  const auto [left, right] = std::minmax({a.x, b.x, c.x});
  const auto [top, bottom] = std::minmax({a.y, b.y, c.y});
  return {std::max(left, 0), std::max(top, 0), std::min(right, size.cx), std::min(bottom, size.cy)};
}

void paint_triangle(CDC& dc, const Ramp& ramp, CSize size, const DeviceNode& a, const DeviceNode& b,
                    const DeviceNode& c) {
  const CRect box = clipped_box(a.at, b.at, c.at, size);
  if (box.right < box.left || box.bottom < box.top) return;
  Plane ab = edge(a.at, b.at, box.left, box.top);
  Plane bc = edge(b.at, c.at, box.left, box.top);
  Plane ca = edge(c.at, a.at, box.left, box.top);
  Plane color = color_plane(a, b, c, box.left, box.top);
  for (int y = box.top; y <= box.bottom; ++y) {
    double e1 = ab.value, e2 = bc.value, e3 = ca.value, position = color.value;
    bool entered = false;
    for (int x = box.left; x <= box.right; ++x) {
      if (std::max({e1, e2, e3}) <= 0) {
        dc.SetPixel(x, y, ramp.at(position));
        entered = true;
      } else if (entered) {
        break;
      }
      e1 += ab.dx;
      e2 += bc.dx;
      e3 += ca.dx;
      position += color.dx;
    }
    for (Plane* plane : {&ab, &bc, &ca, &color}) plane->value += plane->dy;
  }
}

void paint_legend(CDC& dc, float factor) {
  const auto scaled = [factor](int v) { return qv::TruncInt(static_cast<double>(static_cast<float>(v) * factor)); };
  CRgn cell;
  for (int i = 0; i < kLegendHeight; ++i) {
    const CBrush brush{ramp_color(5 * i)};
    const int top = scaled(kLegendTop + i), bottom = scaled(kLegendTop + i + 1);
    for (int j = 0; j < kLegendWidth; ++j) {
      const int left = scaled(kLegendLeft + j), right = scaled(kLegendLeft + j + 1);
      const CPoint points[4] = {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
      cell.CreatePolygonRgn(points, 4, qv::FillRule::Winding);
      dc.FillRgn(cell, brush);
    }
  }
}

void write_limits(CDC& dc, const Limits& range, float factor) {
  const CPen* const before = dc.SelectObject(dc.IsPrinting() ? CDC::StockBlackPen() : CDC::StockWhitePen());
  const float height = kTextHeight * factor;
  const auto write = [&](float value, int y) {
    const qv::FormattedText<64> text("%.1f", static_cast<double>(value));
    G_ShapeFont.DrawTxtShx(&dc, qv::TruncInt(static_cast<double>(kLegendTextLeft * factor)),
                           qv::TruncInt(static_cast<double>(static_cast<float>(y) * factor)), text, height, 0,
                           height * kTextRatio, 1);
  };
  write(range.least, kLegendTop);
  write(range.largest, kLegendTop + kLegendHeight);
  dc.SelectObject(before);
}

}  // namespace

int CChang::Draw_CaiSeTu(CDC* dc, CRect* r, CFCoor* coor) {
  const int k = qv::detail::value_index(*this);
  const Limits range = limits(*this, k);
  CSize size(r->Width(), r->Height());
  float factor = 1;
  if (dc->IsPrinting()) {
    size = dc->GetResolution();
    factor = static_cast<float>(size.cy) / static_cast<float>(std::max(qv::CurrentHost().ScreenSize().cy, 1));
  }
  std::vector<DeviceNode> nodes;
  const auto place = [&] { return nodes = to_device(*this, k, range, *coor), true; };
  if (!qv::detail::unless_out_of_memory(place, false)) return 0;
  const Ramp ramp;
  const auto corner = [&nodes](int number) -> const DeviceNode& { return nodes[static_cast<std::size_t>(number - 1)]; };
  for (const CChangTri& tri : m_Tris) {
    if (!qv::detail::is_whole(*this, tri)) continue;
    paint_triangle(*dc, ramp, size, corner(tri.node[0]), corner(tri.node[1]), corner(tri.node[2]));
  }
  paint_legend(*dc, factor);
  write_limits(*dc, range, factor);
  return 1;
}
