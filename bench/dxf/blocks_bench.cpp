// Drawings of blocks by the ten thousand.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <filesystem>
#include <memory>

#include "baseline.h"
#include "process_memory.h"
#include "qvtools/dxf/view/prepared_drawing.h"
#include "qvtools/geometry/values/constants.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"
#include "qvtools/text/gbk_text.h"
#include "qvtools/text/numbers.h"
#include "support/temporary_directory.h"
#include "workload.h"

namespace {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

ACAD_BLOCK* add_block(DXF& dxf, int number, int lines, qvbench::Random& random) {
  auto* const block = new ACAD_BLOCK;
  qv::copy_text(block->m_szName, qv::FormattedText<20>("B%d", number));
  for (int i = 0; i < lines; ++i) {
    auto* const line = new ACAD_LINE;
    line->m_Start = {random.below(100), random.below(100), 0};
    line->m_End = {random.below(100), random.below(100), 0};
    line->m_nColor = 1 + i % 7;
    block->m_EntityList.AddTail(line);
  }
  dxf.m_BlockList.AddTail(block);
  return block;
}

void add_insert(DXF& dxf, int block, float x, float y) {
  auto* const insert = new ACAD_INSERT;
  qv::copy_text(insert->m_szBlock, qv::FormattedText<20>("B%d", block));
  insert->m_Insert = {x, y, 0};
  dxf.m_EntityList.AddTail(insert);
}

/// So many blocks of a line, each inserted once.
std::unique_ptr<DXF> many_blocks(int count) {
  auto dxf = std::make_unique<DXF>();
  dxf->New_MemDxf();
  qvbench::Random random;
  for (int i = 0; i < count; ++i) {
    add_block(*dxf, i, 1, random);
    add_insert(*dxf, i, random.below(100000), random.below(100000));
  }
  return dxf;
}

// Ten times as many blocks and inserts take about ten times as long, as far as the caches go.
void ManyBlocks(benchmark::State& state) {
  constexpr int kMany = 20000;
  const auto many = many_blocks(kMany);
  const auto few = many_blocks(kMany / 10);
  qv::BitmapContext bitmap(kWidth, kHeight, 0);
  CFCoor coor(CFPoint(0, 100000), 0.01F, 1);
  const CFRect nowhere(-10, -10, -5, -5);
  const auto work = [&](DXF& dxf) {
    benchmark::DoNotOptimize(dxf.GetFRect());
    dxf.Draw(&bitmap, &coor);
    benchmark::DoNotOptimize(dxf.HitTest(nowhere, 1, 0, HALF_PI_F));
  };
  const auto insert = [](int count) {
    const auto from = many_blocks(count);
    DXF into;
    into.New_MemDxf();
    return qvbench::seconds_once([&] { into.InsertDxf(from.get(), 1, 1, 0); });
  };
  for (auto _ : state) {
    const auto [all, part] = qvbench::shortest([&] { work(*many); },
                                               [&] {
                                                 for (int i = 0; i < 10; ++i) work(*few);
                                               });
    state.counters["ms"] = all * 1e3;
    state.counters["ratio"] = part / all;
    state.counters["least"] = 0.15;
    state.counters["goal"] = 0.5;
    const double inserted = insert(100000);
    state.counters["insert ms"] = inserted * 1e3;
    state.counters["insert ratio"] = 10 * insert(10000) / inserted;
    state.counters["insert least"] = 0.4;
    state.counters["insert goal"] = 0.8;
  }
}
BENCHMARK(ManyBlocks)->Iterations(1)->Unit(benchmark::kMillisecond);

// A block of ten thousand lines inserted ten thousand times, prepared, whole in view: against drawing one hundredth of
// the inserts line by line.
void OftenInsertedBlock(benchmark::State& state) {
  constexpr int kLines = 10000;
  constexpr int kAcross = 100;
  DXF dxf;
  DXF part;
  for (DXF* const drawing : {&dxf, &part}) {
    drawing->New_MemDxf();
    qvbench::Random random;
    add_block(*drawing, 0, kLines, random);
  }
  for (int i = 0; i < kAcross * kAcross; ++i) {
    const auto x = static_cast<float>(i % kAcross * 180);
    const auto y = static_cast<float>(i / kAcross * 105);
    add_insert(dxf, 0, x, y);
    if (i % 100 == 0) add_insert(part, 0, x, y);
  }
  qv::BitmapContext bitmap(kWidth, kHeight, 0);
  CFCoor coor(CFPoint(0, 105 * kAcross), 0.1F, 1);
  qv::PreparedDrawing prepared(dxf);
  for (auto _ : state) {
    const auto [whole, lines] =
        qvbench::shortest([&] { prepared.Draw(&bitmap, &coor); }, [&] { part.Draw(&bitmap, &coor); });
    state.counters["ms"] = whole * 1e3;
    state.counters["most"] = 500;
    state.counters["ratio"] = 100 * lines / whole;
    state.counters["least"] = 20;
  }
}
BENCHMARK(OftenInsertedBlock)->Iterations(1)->Unit(benchmark::kMillisecond);

// What an empty block takes in memory, in a drawing that was read, against its text in the file.
void EmptyBlocks(benchmark::State& state) {
  constexpr int kBlocks = 100000;
  const qvtest::TemporaryDirectory directory;
  const std::string path = directory.path("blocks.dxf");
  {
    DXF dxf;
    dxf.New_MemDxf();
    qvbench::Random random;
    for (int i = 0; i < kBlocks; ++i) add_block(dxf, i, 0, random);
    dxf.Write_MemDxf_To_File(path.c_str());
  }
  malloc_trim(0);
  for (auto _ : state) {
    DXF dxf;
    dxf.New_MemDxf();
    const double before = qvbench::status_megabytes("VmRSS");
    dxf.Read_FileDxf_To_Mem(path.c_str());
    const double bytes = (qvbench::status_megabytes("VmRSS") - before) * 1024 * 1024;
    if (dxf.m_BlockList.GetCount() != kBlocks) state.SkipWithError("blocks were lost");
    state.counters["bytes"] = bytes / kBlocks;
    state.counters["ratio"] = bytes / static_cast<double>(std::filesystem::file_size(path));
    state.counters["most"] = 10;
  }
}
BENCHMARK(EmptyBlocks)->Iterations(1);

}  // namespace
