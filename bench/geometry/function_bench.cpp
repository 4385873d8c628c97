#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <random>
#include <vector>

#include "baseline.h"
#include "qvtools/geometry/functions/jh.h"
#include "qvtools/geometry/numerics/analysis.h"

namespace {

/// Random figures about the origin, ten numbers each: two places, radii, widths and angles.
using Figure = std::array<float, 12>;

std::vector<Figure> figures() {
  std::mt19937 engine(5);
  std::uniform_real_distribution<float> place(-4, 4), size(0.5f, 2), angle(0, 6);
  std::vector<Figure> all(2000);
  for (Figure& f : all) {
    for (int i : {0, 1, 6, 7}) f[static_cast<std::size_t>(i)] = place(engine);
    for (int i : {2, 3, 8, 9}) f[static_cast<std::size_t>(i)] = size(engine);
    for (int i : {4, 10}) {
      f[static_cast<std::size_t>(i)] = angle(engine);
      f[static_cast<std::size_t>(i) + 1] = f[static_cast<std::size_t>(i)] + 1 + angle(engine) / 2;
    }
  }
  return all;
}

// Nanoseconds a call over random pairs of figures, about a third of which touch.
template <class Call>
void run(benchmark::State& state, const Call& call) {
  const std::vector<Figure> all = figures();
  long hits = 0;
  const auto pass = [&] {
    hits = 0;
    for (const Figure& f : all) hits += call(f) != 0;
    benchmark::DoNotOptimize(hits);
  };
  for (auto _ : state) pass();
  state.counters["ns"] = qvbench::seconds(pass) / static_cast<double>(all.size()) * 1e9;
  state.counters["hits"] = static_cast<double>(hits) / static_cast<double>(all.size());
}

constexpr float kTol = 1e-4f;

#define QV_FUNCTION_BENCH(name, ...)   \
  void name(benchmark::State& state) { \
    run(state, [](const Figure& f) {   \
      [[maybe_unused]] float u[4];     \
      return __VA_ARGS__;              \
    });                                \
  }                                    \
  BENCHMARK(name)

// Segments run from (f0, f1) to (f6, f7), or between points that the other numbers make.
QV_FUNCTION_BENCH(GetAngle, JH_GetAngle(f[0], f[1], f[6], f[7]) > 3);
QV_FUNCTION_BENCH(Set2PI, JH_Set2PI(f[0] * 10) > 3);
QV_FUNCTION_BENCH(PointToSegment, JH_GetMinDist_PointToLineSection(f[0], f[1], f[6], f[7], f[2], f[3]) < 1);
QV_FUNCTION_BENCH(PointInArc, JH_TestPointIn_Arc(f[0], f[1], 0, 0, 2, f[4], f[5], 0.5f));
QV_FUNCTION_BENCH(PointInAnnulus, JH_TestPointIn_JvBuYuanHuan(f[0], f[1], 0, 0, 2, f[3], f[4], f[5], kTol));
QV_FUNCTION_BENCH(SegmentSegment, JH_GetInterPoint_LineSection_LineSection(f[0], f[1], f[6], f[7], f[1], f[7], f[6],
                                                                           f[0], u, u + 1, kTol));
QV_FUNCTION_BENCH(CircleSegment, JH_GetInterPoint_Circle_LineSection(f[2], f[3], f[8], f[0], f[1], f[6], f[7], u, u + 1,
                                                                     u + 2, u + 3, kTol));
QV_FUNCTION_BENCH(CircleCircle,
                  JH_GetInterPoint_Circle_Circle(f[0], f[1], f[2], f[6], f[7], f[8], u, u + 1, u + 2, u + 3, kTol));
QV_FUNCTION_BENCH(SegmentArc, JH_GetInterPoint_LineSection_Arc(f[0], f[1], f[6], f[7], f[2], f[3], f[8], f[4], f[5], u,
                                                               u + 1, u + 2, u + 3, kTol));
QV_FUNCTION_BENCH(ArcArc, JH_GetInterPoint_Arc_Arc(f[0], f[1], f[2], f[4], f[5], f[6], f[7], f[8], f[10], f[11], u,
                                                   u + 1, u + 2, u + 3, kTol));
QV_FUNCTION_BENCH(TouchCircleArc, JH_TestCrossRegon_Circle_Arc(f[0], f[1], f[2], f[6], f[7], f[8], f[10], f[11], kTol));
QV_FUNCTION_BENCH(TouchSegmentAnnulus, JH_TestCrossRegon_LineSection_JvBuYuanHuan(f[0], f[1], f[2], f[3], f[6], f[7],
                                                                                  f[8], f[9], f[10], f[11], kTol));
QV_FUNCTION_BENCH(TouchCircleAnnulus,
                  JH_TestCrossRegon_Circle_JvBuYuanHuan(f[0], f[1], f[2], f[6], f[7], f[8], f[9], f[10], f[11], kTol));
QV_FUNCTION_BENCH(TouchAnnulusAnnulus,
                  JH_TestCrossRegon_JvBuYuanHuan_JvBuYuanHuan(f[0], f[1], f[2], f[3], f[4], f[5], f[6], f[7], f[8],
                                                              f[9], f[10], f[11], kTol));

const float kSquareX[] = {-1, 1, 1, -1};
const float kSquareY[] = {-1, -1, 1, 1};
QV_FUNCTION_BENCH(PointInPolygon, JH_TestPointIn_TuPolygon(f[0], f[1], 4, kSquareX, kSquareY, kTol));
QV_FUNCTION_BENCH(TouchSegmentPolygon,
                  JH_TestCrossRegon_LineSection_TuPolygon(f[0], f[1], f[6], f[7], 4, kSquareX, kSquareY, kTol));
QV_FUNCTION_BENCH(TouchCirclePolygon,
                  JH_TestCrossRegon_Circle_TuPolygon(f[0], f[1], f[2], 4, kSquareX, kSquareY, kTol));
QV_FUNCTION_BENCH(TouchArcPolygon,
                  JH_TestCrossRegon_Arc_TuPolygon(f[0], f[1], f[2], f[4], f[5], 4, kSquareX, kSquareY, kTol));
QV_FUNCTION_BENCH(TouchPolygonAnnulus, JH_TestCrossRegon_TuPolygon_JvBuYuanHuan(4, kSquareX, kSquareY, f[0], f[1], f[2],
                                                                                f[3], f[4], f[5], kTol));

/// The baseline: the same elimination, written down straight.
void eliminate(std::vector<double>& a, int n) {
  std::vector<int> rows(static_cast<std::size_t>(n)), columns(rows), counts(rows);
  const auto at = [&](int i, int k) -> double& { return a[static_cast<std::size_t>(i * n + k)]; };
  const auto of = [](std::vector<int>& v, int i) -> int& { return v[static_cast<std::size_t>(i)]; };
  int row = 0, column = 0;
  for (int pass = 0; pass < n; ++pass) {
    double largest = 0;
    for (int i = 0; i < n; ++i) {
      if (of(counts, i) == 1) continue;
      for (int k = 0; k < n; ++k) {
        if (of(counts, k) == 0 && largest <= std::fabs(at(k, i))) {
          largest = std::fabs(at(i, k));
          row = i;
          column = k;
        }
      }
    }
    ++of(counts, column);
    if (row != column) {
      for (int k = 0; k < n; ++k) std::swap(at(row, k), at(column, k));
    }
    of(rows, pass) = row;
    of(columns, pass) = column;
    const double inverse = 1 / at(column, column);
    at(column, column) = 1;
    for (int k = 0; k < n; ++k) at(column, k) *= inverse;
    for (int i = 0; i < n; ++i) {
      if (i == column) continue;
      const double factor = at(i, column);
      at(i, column) = 0;
      for (int k = 0; k < n; ++k) at(i, k) -= at(column, k) * factor;
    }
  }
  for (int pass = n; pass-- > 0;) {
    if (of(rows, pass) == of(columns, pass)) continue;
    for (int i = 0; i < n; ++i) std::swap(at(i, of(rows, pass)), at(i, of(columns, pass)));
  }
}

// Time over that of the straightforward loop.
void Gaussj200(benchmark::State& state) {
  constexpr int kSize = 200;
  std::mt19937 engine(7);
  std::uniform_real_distribution<double> value(-1, 1);
  std::vector<double> matrix(kSize * kSize), right(kSize, 1), a;
  for (double& v : matrix) v = value(engine);
  const auto own = [&] {
    a = matrix;
    std::vector<double> b = right;
    gaussj(a.data(), kSize, b.data(), 1);
    benchmark::DoNotOptimize(a.data());
  };
  for (auto _ : state) own();
  const double mine = qvbench::seconds(own);
  const double bare = qvbench::seconds([&] {
    a = matrix;
    eliminate(a, kSize);
    benchmark::DoNotOptimize(a.data());
  });
  state.counters["ratio"] = mine / bare;
}
BENCHMARK(Gaussj200)->Unit(benchmark::kMillisecond);

}  // namespace
