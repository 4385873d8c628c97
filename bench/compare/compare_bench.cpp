#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <random>
#include <vector>

#include "baseline.h"
#include "qvtools.h"

namespace {

constexpr int kLines = 1'000'000;

/// A storey of a million lines and texts; of the second state one in a thousand was moved.
void compose(DXF& dxf, bool edited) {
  dxf.New_MemDxf();
  std::mt19937 random(3);
  const auto place = [&] { return static_cast<float>(random() % 9'000'000) / 100; };
  for (int i = 0; i < kLines; ++i) {
    const float x = place() + (edited && i % 1000 == 0 ? 500.0F : 0.0F), y = place();
    if (i % 10 == 0)
      dxf.Write_Text(x, y, 0, 250, 0, "3B25@200", "STANDARD", "0", "BYLAYER", "BYLAYER");
    else
      dxf.Write_Line(x, y, 0, x + 3000, y + 200, 0, "0", "BYLAYER", "BYLAYER");
  }
}

/// The least that any comparison does: bare coordinates are sorted, and the two orders gone through together.
std::size_t plain_difference(const DXF& before, const DXF& after) {
  using Bare = std::array<float, 4>;
  const auto bare = [](const DXF& dxf) {
    std::vector<Bare> all;
    for (POSITION at = dxf.m_EntityList.GetHeadPosition(); at;) {
      auto* const entity = static_cast<ACAD_ENTITY*>(dxf.m_EntityList.GetNext(at));
      if (entity->GetType() == ACAD_TYPE_LINE) {
        const auto& line = static_cast<const ACAD_LINE&>(*entity);
        all.push_back({line.m_Start.x, line.m_Start.y, line.m_End.x, line.m_End.y});
      } else {
        const auto& text = static_cast<const ACAD_TEXT&>(*entity);
        all.push_back({text.m_Insert.x, text.m_Insert.y, text.m_fHeight, text.m_fRotation});
      }
    }
    std::sort(all.begin(), all.end());
    return all;
  };
  const std::vector<Bare> a = bare(before), b = bare(after);
  std::vector<Bare> differ;
  std::set_symmetric_difference(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(differ));
  return differ.size();
}

// A million entities against a million, against the sorting of their bare coordinates.
void CompareMillion(benchmark::State& state) {
  DXF before, after;
  compose(before, false);
  compose(after, true);
  for (auto _ : state) {
    const auto [own, bare] =
        qvbench::shortest([&] { benchmark::DoNotOptimize(qv::Compare(before, after).differences.size()); },
                          [&] { benchmark::DoNotOptimize(plain_difference(before, after)); });
    state.counters["s"] = own;
    state.counters["most"] = 2;
    state.counters["ratio"] = bare / own;
  }
}
BENCHMARK(CompareMillion)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
