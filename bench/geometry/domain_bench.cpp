#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "baseline.h"
#include "qvtools/geometry/domains/domain.h"
#include "qvtools/geometry/domains/prepared_domain.h"

namespace {

constexpr float kTol = 1e-5f;
constexpr int kQueries = 20000;

/// An outline round the origin with n vertices between the radii `inner` and 1, and queries over its bounding box.
struct Workload {
  std::vector<CDomainEdge> edges;
  std::vector<float> xs, ys, px, py;

  Workload(int n, double inner, bool arcs) {
    std::mt19937 engine(3);
    std::uniform_real_distribution<double> radius(inner, 1), place(-1, 1);
    CFRegion region;
    for (int i = 0; i < n; ++i) {
      const double a = 6.283185307179586 * i / n, r = radius(engine);
      region.Add(CFShoot(static_cast<float>(r * std::cos(a)), static_cast<float>(r * std::sin(a)),
                         arcs ? (i % 2 ? 0.8f : -0.8f) : 0));
      xs.push_back(region[i].x);
      ys.push_back(region[i].y);
    }
    CArray<CDomainEdge, CDomainEdge&> records;
    Region_To_Domain(region, records);
    edges.assign(records.begin(), records.end());
    for (int i = 0; i < kQueries; ++i) {
      px.push_back(static_cast<float>(place(engine)));
      py.push_back(static_cast<float>(place(engine)));
    }
  }
  int size() const { return static_cast<int>(edges.size()); }
  template <class Test>
  int count(const Test& test) const {
    int inside = 0;
    for (std::size_t i = 0; i < px.size(); ++i) inside += test(px[i], py[i]);
    return inside;
  }
};

/// The baseline: the plain even-odd loop over coordinates.
int even_odd(const std::vector<float>& xs, const std::vector<float>& ys, float x, float y) {
  bool inside = false;
  for (std::size_t i = 0, k = xs.size() - 1; i < xs.size(); k = i++) {
    if ((ys[i] > y) != (ys[k] > y) && x < (xs[k] - xs[i]) * (y - ys[i]) / (ys[k] - ys[i]) + xs[i]) inside = !inside;
  }
  return inside;
}

template <class Ask>
void compare(benchmark::State& state, const Workload& w, const Ask& ask) {
  const auto bare = [&w](float x, float y) { return even_odd(w.xs, w.ys, x, y); };
  const auto [own, plain] = qvbench::shortest([&] { benchmark::DoNotOptimize(w.count(ask)); },
                                              [&] { benchmark::DoNotOptimize(w.count(bare)); });
  state.counters["ns_query"] = own / kQueries * 1e9;
  state.counters["ns_even_odd"] = plain / kQueries * 1e9;
  state.counters["ratio"] = own / plain;
}

// Time over that of the plain even-odd loop; arguments: vertices, inner radius in hundredths.
void PointInDomain(benchmark::State& state) {
  const Workload w(static_cast<int>(state.range(0)), static_cast<double>(state.range(1)) / 100, false);
  CPointInDomain domain;
  const auto ask = [&](float x, float y) { return domain.Point_In_Domain(w.size(), w.edges.data(), x, y, kTol); };
  for (auto _ : state) compare(state, w, ask);
}
BENCHMARK(PointInDomain)
    ->Args({20, 90})
    ->Args({20, 50})
    ->Args({1000, 90})
    ->Args({1000, 50})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

// The prepared form; a third argument of 1 makes every edge an arc.
void PreparedDomain(benchmark::State& state) {
  const Workload w(static_cast<int>(state.range(0)), static_cast<double>(state.range(1)) / 100, state.range(2) != 0);
  const CPreparedDomain domain(w.size(), w.edges.data());
  const auto ask = [&](float x, float y) { return domain.Point_In_Domain(x, y, kTol); };
  for (auto _ : state) compare(state, w, ask);
  state.counters["us_prepare"] =
      qvbench::seconds([&] { benchmark::DoNotOptimize(CPreparedDomain(w.size(), w.edges.data())); }) * 1e6;
}
BENCHMARK(PreparedDomain)
    ->Args({20, 50, 0})
    ->Args({1000, 50, 0})
    ->Args({1000, 50, 1})
    ->Args({1000, 90, 1})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace
