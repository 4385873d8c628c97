#include <benchmark/benchmark.h>

#include "../dxf/workload.h"
#include "baseline.h"
#include "qvtools/import/import.h"
#include "support/temporary_directory.h"

namespace {

// A flat file of a million entities, imported: at most 1.5 times what the flat reader takes.
void ImportFlatFile(benchmark::State& state) {
  const qvtest::TemporaryDirectory directory;
  const std::string path = directory.path("mixed.dxf");
  qvbench::stream_mixed(path.c_str());
  for (auto _ : state) {
    std::array<double, 5> import;
    std::array<double, 5> flat;
    for (std::size_t run = 0; run < import.size(); ++run) {
      DXF imported;
      DXF read;
      qv::ImportReport report;
      read.New_MemDxf();
      import[run] = qvbench::seconds_once([&] { qv::Import(path.c_str(), imported, {}, report);
    });
    flat[run] = qvbench::seconds_once([&] { read.Read_FileDxf_To_Mem(path.c_str()); });
    if (imported.m_EntityList.GetCount() != read.m_EntityList.GetCount()) state.SkipWithError("entities were lost");
  }
  std::sort(import.begin(), import.end());
  std::sort(flat.begin(), flat.end());
  state.counters["M/s"] = qvbench::kEntities / import[2] / 1e6;
  state.counters["ratio"] = import[2] / flat[2];
  state.counters["most"] = 1.5;
}
}  // namespace
BENCHMARK(ImportFlatFile)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
