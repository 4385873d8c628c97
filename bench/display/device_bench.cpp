// Lines, fills and arcs against bare loops that do the same with nothing around them.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <random>
#include <vector>

#include "baseline.h"
#include "qvtools/display/safe_dc.h"
#include "qvtools/geometry/values/coor.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"
#include "qvtools/platform/console/console_host.h"

namespace {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr int kLines = 1000000;
constexpr double kLength = 28;

/// The screen that the clipping context takes its limits from.
class Screen : public qv::ConsoleHost {
 public:
  Screen() : ConsoleHost(CSize(kWidth - 1, kHeight - 1)) { qv::SetHost(this); }
  ~Screen() override { qv::SetHost(nullptr); }
};

struct Line {
  CFPoint from;
  CFPoint to;
};

/// Lines of 28 pixels in every direction, all inside the picture; one world unit is a pixel.
std::vector<Line> make_lines() {
  std::mt19937 random(1);
  std::uniform_real_distribution<float> x(30, kWidth - 30), y(30, kHeight - 30);
  std::uniform_real_distribution<double> turn(0, 6.283185307);
  std::vector<Line> lines(kLines);
  for (Line& line : lines) {
    const double a = turn(random);
    line.from = CFPoint(x(random), y(random));
    line.to = CFPoint(static_cast<float>(line.from.x + kLength * std::cos(a)),
                      static_cast<float>(line.from.y + kLength * std::sin(a)));
  }
  return lines;
}

const CFCoor kView(CFPoint(0, kHeight), 1, 1);
/// The same view far away from all lines.
const CFCoor kElsewhere(CFPoint(1e5f, kHeight), 1, 1);

struct Segment {
  CPoint from;
  CPoint to;
};

/// The bare loop: a trivial accept and a branch-free step.
void bare_line(std::uint32_t* pixels, const Segment& s, std::uint32_t color) {
  const auto in = [](const CPoint& p) {
    return static_cast<unsigned>(p.x) < kWidth && static_cast<unsigned>(p.y) < kHeight;
  };
  if (!in(s.from) || !in(s.to)) return;
  const int dx = s.to.x - s.from.x, dy = s.to.y - s.from.y, ax = std::abs(dx), ay = std::abs(dy);
  const std::ptrdiff_t step_x = dx < 0 ? -1 : 1, step_y = dy < 0 ? -kWidth : kWidth;
  const int major = std::max(ax, ay), minor = std::min(ax, ay);
  const std::ptrdiff_t along = ax >= ay ? step_x : step_y, across = ax >= ay ? step_y : step_x;
  std::uint32_t* at = pixels + static_cast<std::ptrdiff_t>(s.from.y) * kWidth + s.from.x;
  int error = 2 * minor - major;
  for (int n = major; n > 0; --n) {
    *at = color;
    const int stay = (error - 1) >> 31;
    at += along + (across & ~stay);
    error += 2 * minor - (2 * major & ~stay);
  }
}

struct Lines {
  std::vector<Line> world = make_lines();
  std::vector<Segment> device;
  Lines() {
    for (const Line& line : world) device.push_back({kView.FPtoDP(line.from), kView.FPtoDP(line.to)});
  }
};

/// Runs the work for the table, then states its speed and its ratio to a baseline.
template <class Work, class Baseline>
void compare(benchmark::State& state, double count, const Work& work, const Baseline& baseline) {
  for (auto _ : state) work();
  const auto [own, bare] = qvbench::shortest(work, baseline);
  state.counters["M/s"] = count / own / 1e6;
  state.counters["ratio"] = bare / own;
}

template <class Work>
void against_bare_lines(benchmark::State& state, const Lines& lines, const Work& work) {
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(kWidth) * kHeight);
  compare(state, kLines, work, [&] {
    for (const Segment& s : lines.device) bare_line(pixels.data(), s, 0xFF0000FFu);
    benchmark::DoNotOptimize(pixels.data());
  });
}

void LinesBitmap(benchmark::State& state) {
  const Lines lines;
  qv::BitmapContext bitmap(kWidth, kHeight, 0);
  against_bare_lines(state, lines, [&] {
    for (const Segment& s : lines.device) {
      bitmap.MoveTo(s.from.x, s.from.y);
      bitmap.LineTo(s.to.x, s.to.y);
    }
  });
}
BENCHMARK(LinesBitmap)->Unit(benchmark::kMillisecond);

void LinesClipped(benchmark::State& state) {
  const Screen screen;
  const Lines lines;
  qv::BitmapContext bitmap(kWidth, kHeight, 0);
  CSafeDC safe(&bitmap);
  const CFCoor& view = state.range(0) ? kView : kElsewhere;
  against_bare_lines(state, lines, [&] {
    for (const Line& line : lines.world) {
      safe.MoveTo(view.FPtoDP(line.from));
      safe.LineTo(view.FPtoDP(line.to));
    }
  });
}
BENCHMARK(LinesClipped)->ArgName("visible")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);

// Triangles of 40 pixels, against the writing of their pixels alone, row by row.
void FillTriangles(benchmark::State& state) {
  constexpr int kTriangles = 100000;
  std::mt19937 random(2);
  std::vector<CRgn> regions(kTriangles);
  std::vector<CPoint> corners;
  for (CRgn& region : regions) {
    const CPoint at(static_cast<int>(random() % (kWidth - 10)), static_cast<int>(random() % (kHeight - 10)));
    const CPoint points[] = {at, {at.x + 9, at.y + 3}, {at.x + 2, at.y + 9}};
    region.CreatePolygonRgn(points, 3, qv::FillRule::Winding);
    corners.push_back(at);
  }
  qv::BitmapContext bitmap(kWidth, kHeight, 0);
  const CBrush brush{0xFF};
  const auto fill = [&] {
    for (const CRgn& region : regions) bitmap.FillRgn(region, brush);
  };
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(kWidth) * kHeight);
  compare(state, kTriangles, fill, [&] {
    for (const CPoint& at : corners)
      for (int y = 0; y < 9; ++y) {
        std::uint32_t* row = pixels.data() + static_cast<std::ptrdiff_t>(at.y + y) * kWidth + at.x;
        for (int x = y / 4; x < 9 - y / 2; ++x) row[x] = 0xFF0000FFu;
        benchmark::DoNotOptimize(row);
      }
  });
}
BENCHMARK(FillTriangles)->Unit(benchmark::kMillisecond);

// Circles through the clipping context, against every chord in turn; the radius says how much lies outside.
void Arcs(benchmark::State& state) {
  const Screen screen;
  qv::BitmapContext bitmap(kWidth, kHeight, 0);
  CSafeDC safe(&bitmap);
  const int r = static_cast<int>(state.range(0));
  constexpr int kArcs = 100;
  const auto arcs = [&] {
    for (int i = 0; i < kArcs; ++i) safe.DrawArc(kWidth / 2 - r + i, kHeight / 2, r, 0, 6.2831855f, 1);
  };
  compare(state, kArcs, arcs, [&] {
    const int n = std::max(5, static_cast<int>(6.2831855 * r / 4 + 0.5));
    for (int i = 0; i < kArcs; ++i) {
      const auto point = [&](int k) {
        const double a = 6.2831855 / n * k;
        return CPoint(static_cast<int>(kWidth / 2 - r + i + r * std::cos(a)),
                      static_cast<int>(kHeight / 2 + r * std::sin(a)));
      };
      safe.MoveTo(point(0));
      for (int k = 1; k <= n; ++k) safe.LineTo(point(k));
    }
  });
}
BENCHMARK(Arcs)->ArgName("radius")->Arg(10)->Arg(300)->Arg(10000)->Arg(1000000)->Unit(benchmark::kMillisecond);

}  // namespace
