#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "baseline.h"
#include "qvtools/engineering/field.h"
#include "qvtools/engineering/field_locator.h"
#include "qvtools/geometry/numerics/numeric.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"

namespace {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr int kColumns = 400;
constexpr int kRows = 250;
constexpr float kCell = 0.1F;  // metres

/// A plate of 200,000 triangles whose nodes stand a little off a grid.
void make_plate(CChang& field) {
  std::mt19937 random(20240607);
  std::uniform_real_distribution<float> off(-0.3F * kCell, 0.3F * kCell);
  for (int row = 0; row <= kRows; ++row) {
    for (int column = 0; column <= kColumns; ++column) {
      CChangNode node;
      node.x = static_cast<float>(column) * kCell + off(random);
      node.y = static_cast<float>(row) * kCell + off(random);
      node.value[0] = std::sin(node.x * 0.2F) * std::cos(node.y * 0.3F);
      field.m_Nodes.Add(node);
    }
  }
  for (int row = 0; row < kRows; ++row) {
    for (int column = 0; column < kColumns; ++column) {
      const int a = row * (kColumns + 1) + column + 1, b = a + kColumns + 1;
      field.m_Tris.Add(CChangTri{{a, a + 1, b + 1}});
      field.m_Tris.Add(CChangTri{{a, b + 1, b}});
    }
  }
}

/// Puts the plate on the whole of the picture.
CFCoor whole_plate() {
  return CFCoor(CFPoint(0, kRows * kCell * 1000), kWidth / (kColumns * kCell * 1000), 1);
}

/// The baseline of painting: each triangle's box, pixel by pixel, with additions only, straight into memory.
class PlainPainter {
 public:
  PlainPainter() : pixels_(static_cast<std::size_t>(kWidth) * kHeight) {
    for (int i = 0; i <= 1280; ++i) {
      int r, g, b;
      Get_RGB(i, r, g, b);
      colors_.push_back(static_cast<std::uint32_t>(r << 16 | g << 8 | b));
    }
  }
  void paint(const CChang& field, const CFCoor& coor) {
    float least = 1e10F, largest = -1e10F;
    for (const CChangNode& node : field.m_Nodes) {
      least = std::min(least, node.value[0]);
      largest = std::max(largest, node.value[0]);
    }
    std::vector<Corner> corners;
    for (const CChangNode& node : field.m_Nodes) {
      const CPoint at = coor.FPtoDP(CFPoint(node.x * 1000, node.y * 1000));
      corners.push_back({at.x, at.y, (node.value[0] - least) * 1280 / (largest - least)});
    }
    for (const CChangTri& tri : field.m_Tris)
      fill(corners[tri.node[0] - 1], corners[tri.node[1] - 1], corners[tri.node[2] - 1]);
    benchmark::DoNotOptimize(pixels_.data());
  }

 private:
  struct Corner {
    int x, y;
    float position;
  };
  void fill(const Corner& a, const Corner& b, const Corner& c) {
    const int left = std::max(std::min({a.x, b.x, c.x}), 0), right = std::min(std::max({a.x, b.x, c.x}), kWidth - 1);
    const int top = std::max(std::min({a.y, b.y, c.y}), 0), bottom = std::min(std::max({a.y, b.y, c.y}), kHeight - 1);
    const int dab = a.y - b.y, dbc = b.y - c.y, dca = c.y - a.y;
    const auto area = [left](const Corner& p, const Corner& q, int y) {
      return (q.x - p.x) * (y - p.y) - (q.y - p.y) * (left - p.x);
    };
    const auto twice = static_cast<float>((b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x));
    const float db = b.position - a.position, dc = c.position - a.position;
    const float dx = (db * static_cast<float>(c.y - a.y) - dc * static_cast<float>(b.y - a.y)) / twice;
    const float dy = (dc * static_cast<float>(b.x - a.x) - db * static_cast<float>(c.x - a.x)) / twice;
    for (int y = top; y <= bottom; ++y) {
      int ab = area(a, b, y), bc = area(b, c, y), ca = area(c, a, y);
      float position = a.position + dx * static_cast<float>(left - a.x) + dy * static_cast<float>(y - a.y);
      std::uint32_t* const row = pixels_.data() + static_cast<std::size_t>(y) * kWidth;
      for (int x = left; x <= right; ++x) {
        if (ab <= 0 && bc <= 0 && ca <= 0) {
          row[x] = colors_[static_cast<std::size_t>(std::clamp(static_cast<int>(position), 0, 1280))];
        }
        ab += dab;
        bc += dbc;
        ca += dca;
        position += dx;
      }
    }
  }

  std::vector<std::uint32_t> pixels_;
  std::vector<std::uint32_t> colors_;
};

// The contour of 200,000 triangles on a bitmap of 1920 by 1080, with one device call a pixel, as a multiple of the
// plain painter's time.
void PaintField(benchmark::State& state) {
  CChang field;
  make_plate(field);
  CFCoor coor = whole_plate();
  CRect window(0, 0, kWidth, kHeight);
  qv::BitmapContext bitmap(kWidth, kHeight, 0);
  PlainPainter plain;
  for (auto _ : state) {
    const auto [own, baseline] =
        qvbench::shortest([&] { field.Draw_CaiSeTu(&bitmap, &window, &coor); }, [&] { plain.paint(field, coor); });
    state.counters["ms"] = own * 1e3;
    state.counters["times"] = own / baseline;
    state.counters["most"] = 3;
    state.counters["goal"] = 2;
  }
}
BENCHMARK(PaintField)->Iterations(1)->Unit(benchmark::kMillisecond);

// The value at points of the plate in no order, from a locator, and from the field itself, which looks at all of it.
void LocateInField(benchmark::State& state) {
  constexpr int kPoints = 1000000;
  constexpr int kScanned = 50;
  CChang field;
  make_plate(field);
  const qv::FieldLocator locator(field);
  std::mt19937 random(7);
  std::uniform_real_distribution<float> x(0, kColumns * kCell), y(0, kRows * kCell);
  std::vector<std::pair<float, float>> points(kPoints);
  for (auto& point : points) point = {x(random), y(random)};
  for (auto _ : state) {
    float sum = 0;
    const double own = qvbench::shortest([&] {
      for (const auto& [px, py] : points) sum += locator.Value(px, py);
    })[0];
    const double scan = qvbench::seconds_once([&] {
      for (int i = 0; i < kScanned; ++i) sum += field.Get_Value(points[i].first, points[i].second);
    });
    benchmark::DoNotOptimize(sum);
    state.counters["ns"] = own / kPoints * 1e9;
    state.counters["scan ns"] = scan / kScanned * 1e9;
    state.counters["most"] = 500;
    state.counters["goal"] = 220;
  }
  for (int i = 0; i < kScanned; ++i) {
    if (locator.Value(points[i].first, points[i].second) != field.Get_Value(points[i].first, points[i].second))
      state.SkipWithError("another answer");
  }
}
BENCHMARK(LocateInField)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
