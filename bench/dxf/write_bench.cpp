#include <benchmark/benchmark.h>
#include <malloc.h>

#include "baseline.h"
#include "plain_writer.h"
#include "process_memory.h"
#include "qvtools/system/saved_file.h"
#include "support/temporary_directory.h"
#include "workload.h"

namespace {

using qvbench::kEntities;
using qvtest::TemporaryDirectory;

void report(benchmark::State& state, double own, double baseline, double least, double goal) {
  state.counters["M/s"] = kEntities / own / 1e6;
  state.counters["ratio"] = baseline / own;
  state.counters["least"] = least;
  state.counters["goal"] = goal;
}

// Saving a document in memory, to the same bytes as one fprintf for each group pair.
void SaveDocument(benchmark::State& state) {
  const TemporaryDirectory directory;
  qvbench::MixedDrawing drawing;
  qv::SavedFile::SetFlushToDisk(false);  // nor does the baseline
  for (auto _ : state) {
    const auto [own, baseline] =
        qvbench::shortest([&] { drawing.dxf.Write_MemDxf_To_File(directory.path("own.dxf").c_str()); },
                          [&] { qvbench::PlainWriter(directory.path("plain.dxf").c_str()).document(drawing.dxf); });
    report(state, own, baseline, 12, 20);
  }
  const std::string bytes = directory.read("own.dxf");
  state.counters["MB"] = static_cast<double>(bytes.size()) / 1e6;
  if (bytes != directory.read("plain.dxf")) state.SkipWithError("the baseline writes other bytes");
}
BENCHMARK(SaveDocument)->Iterations(1)->Unit(benchmark::kMillisecond);

// Streaming the same drawing through the write calls.
void StreamDocument(benchmark::State& state) {
  const TemporaryDirectory directory;
  qvbench::MixedDrawing drawing;
  for (auto _ : state) {
    const auto [own, baseline] =
        qvbench::shortest([&] { qvbench::stream_mixed(directory.path("own.dxf").c_str()); },
                          [&] { qvbench::PlainWriter(directory.path("plain.dxf").c_str()).document(drawing.dxf); });
    report(state, own, baseline, 8, 12);
  }
  // A streamed file has its end once more.
  if (directory.read("own.dxf").compare(0, std::string::npos, directory.read("plain.dxf")) != 0)
    state.SkipWithError("the baseline writes other bytes");
}
BENCHMARK(StreamDocument)->Iterations(1)->Unit(benchmark::kMillisecond);

// Composing lines in memory, against allocating the records and appending them to a list.
void ComposeLines(benchmark::State& state) {
  const auto compose = [](DXF& dxf) {
    for (int i = 0; i < kEntities; ++i) {
      const auto x = static_cast<float>(i);
      dxf.Write_Line(x, 0, 0, x, 100, 0, "BEAM", "BYLAYER", "BYLAYER");
    }
  };
  double bytes = 0;
  double own[5];
  double bare[5];
  for (auto _ : state) {
    for (int run = 0; run < 5; ++run) {
      malloc_trim(0);  // both take fresh pages
      {
        DXF dxf;
        dxf.New_MemDxf();
        qvbench::add_layers(dxf);
        const double before = qvbench::status_megabytes("VmRSS");
        own[run] = qvbench::seconds_once([&] { compose(dxf); });
        bytes = (qvbench::status_megabytes("VmRSS") - before) * 1024 * 1024 / kEntities;
      }
      malloc_trim(0);
      CPtrList list;
      bare[run] = qvbench::seconds_once([&] {
        for (int i = 0; i < kEntities; ++i) list.AddTail(new ACAD_LINE);
      });
      for (POSITION at = list.GetHeadPosition(); at;) delete static_cast<ACAD_LINE*>(list.GetNext(at));
    }
    std::sort(own, own + 5);
    std::sort(bare, bare + 5);
    report(state, own[2], bare[2], 0.5, 0.5);
  }
  state.counters["bytes"] = bytes;
  state.counters["bytes most"] = 160;
}
BENCHMARK(ComposeLines)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
