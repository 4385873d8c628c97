#include <benchmark/benchmark.h>

#include "baseline.h"
#include "qvtools/dxf/view/prepared_drawing.h"
#include "workload.h"

namespace {

// The pointer moves over a storey of a million entities: looking for points of all kinds within ten pixels, in a view
// of the whole and in one of a hundredth, against drawing the same view.
void CatchPoints(benchmark::State& state) {
  constexpr int kMoves = 200;
  constexpr double kPixelOfWhole = qvbench::kPlanHeight / 1080.0;
  DXF dxf;
  dxf.New_MemDxf();
  qvbench::add_layers(dxf);
  qvbench::write_plan(dxf);
  qv::PreparedDrawing prepared(dxf);
  const auto moves = [&](double pixel) {
    qvbench::Random r;
    for (int i = 0; i < kMoves; ++i) {
      const qv::PlanePoint at{r.below(qvbench::kPlanWidth), r.below(qvbench::kPlanHeight)};
      benchmark::DoNotOptimize(prepared.Catch({at, 10 * pixel, qv::kAllCatches, qv::PlanePoint{}}));
    }
  };
  for (auto _ : state) {
    const auto [whole, part] = qvbench::shortest([&] { moves(kPixelOfWhole); }, [&] { moves(kPixelOfWhole / 10); });
    state.counters["whole ms"] = whole / kMoves * 1e3;
    state.counters["part ms"] = part / kMoves * 1e3;
    state.counters["most"] = 1;
  }
}
BENCHMARK(CatchPoints)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
