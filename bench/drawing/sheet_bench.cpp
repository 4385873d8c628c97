#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>

#include "baseline.h"
#include "demo/demo.h"

namespace {

/// Composes the framing plan n times into one document and saves it; the number of its entities.
int compose_and_save(int n, const char* path) {
  const qvdraw::Sample project(QV_SAMPLES "project.txt");
  const qvdraw::Sample storey(QV_SAMPLES "storey.txt");
  const std::unique_ptr<CBase_SGT> all = qvdraw::compose_plan(project, storey).sgt;
  for (int i = 1; i < n; ++i) {
    const std::unique_ptr<CBase_SGT> sheet = qvdraw::compose_plan(project, storey).sgt;
    all->InsertDxf(sheet.get(), 90000.0F * static_cast<float>(i % 10), -65000.0F * static_cast<float>(i / 10), 0);
  }
  if (all->Write_MemDxf_To_File(path) != 1) std::abort();
  return all->m_EntityList.GetCount();
}

// The sheet 1,000 times, as a ratio of its time for an entity to that of 100 sheets: 1 when time grows with the
// entities alone.
void BM_ComposeSheets(benchmark::State& state) {
  const std::string path = (std::filesystem::temp_directory_path() / "qvbench-sheets.dxf").string();
  int fewEntities = 0;
  int entities = 0;
  const double few = qvbench::seconds([&] { fewEntities = compose_and_save(100, path.c_str()); });
  double many = 0;
  for (auto _ : state) many = qvbench::seconds([&] { entities = compose_and_save(1000, path.c_str()); });
  std::filesystem::remove(path);
  state.counters["entities"] = entities;
  state.counters["ns_per_entity"] = many / entities * 1e9;
  state.counters["ratio_to_100_sheets"] = (many / entities) / (few / fewEntities);
}
BENCHMARK(BM_ComposeSheets)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
