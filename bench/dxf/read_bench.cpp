#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <numbers>

#include "baseline.h"
#include "plain_reader.h"
#include "process_memory.h"
#include "support/temporary_directory.h"
#include "workload.h"

namespace {

using qvbench::kEntities;
using qvtest::TemporaryDirectory;

/// The mixed drawing on disk, with CR LF line ends or with LF.
std::string drawing_file(const TemporaryDirectory& directory, bool crlf) {
  const std::string path = directory.path("mixed.dxf");
  qvbench::stream_mixed(path.c_str());
  if (crlf) return path;
  std::string text = directory.read("mixed.dxf");
  std::erase(text, '\r');
  return directory.write("mixed.dxf", text);
}

/// The shortest of nine readings by `own` and by the plain reader, in turns; both drop what they read outside the
/// timing.
template <class Own>
void compare_reading(benchmark::State& state, const std::string& path, double least, double goal, const Own& own) {
  double time = 1e300;
  double plain = 1e300;
  for (int run = 0; run < 9; ++run) {
    time = std::min(time, own(path.c_str()));
    qvbench::PlainReader reader(path.c_str());
    plain = std::min(plain, qvbench::seconds_once([&] { reader.read(); }));
    if (reader.list.GetCount() != kEntities) state.SkipWithError("the baseline lost entities");
  }
  state.counters["M/s"] = kEntities / time / 1e6;
  state.counters["ratio"] = plain / time;
  state.counters["least"] = least;
  state.counters["goal"] = goal;
}

// A whole file into memory. Argument: line ends are CR LF.
void ReadDocument(benchmark::State& state) {
  const TemporaryDirectory directory;
  const std::string file = drawing_file(directory, state.range(0) != 0);
  for (auto _ : state) {
    compare_reading(state, file, 4, 6, [&](const char* path) {
      DXF dxf;
      dxf.New_MemDxf();
      const double time = qvbench::seconds_once([&] { dxf.Read_FileDxf_To_Mem(path); });
      if (dxf.m_EntityList.GetCount() != kEntities) state.SkipWithError("entities were lost");
      return time;
    });
  }
}
BENCHMARK(ReadDocument)->ArgName("crlf")->Arg(0)->Arg(1)->Iterations(1)->Unit(benchmark::kMillisecond);

// The same, entity by entity.
void ReadStream(benchmark::State& state) {
  const TemporaryDirectory directory;
  const std::string file = drawing_file(directory, state.range(0) != 0);
  for (auto _ : state) {
    compare_reading(state, file, 3, 3, [&](const char* path) {
      int count = 0;
      const double time = qvbench::seconds_once([&] {
        DXF dxf;
        dxf.Open(path);
        while (dxf.Read_One_Entity() != ACAD_TYPE_END) ++count;
      });
      if (count != kEntities) state.SkipWithError("entities were lost");
      return time;
    });
  }
}
BENCHMARK(ReadStream)->ArgName("crlf")->Arg(0)->Arg(1)->Iterations(1)->Unit(benchmark::kMillisecond);

// Peak memory of reading, above what the finished document takes: at most 4 MB.
void ReadPeak(benchmark::State& state) {
  const TemporaryDirectory directory;
  const std::string file = drawing_file(directory, true);
  for (auto _ : state) {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5";  // the peak starts anew
    const double before = qvbench::status_megabytes("VmRSS");
    DXF dxf;
    dxf.New_MemDxf();
    dxf.Read_FileDxf_To_Mem(file.c_str());
    const double after = qvbench::status_megabytes("VmRSS");
    state.counters["document MB"] = after - before;
    state.counters["peak above MB"] = qvbench::status_megabytes("VmHWM") - after;
    state.counters["most"] = 4;
  }
}
BENCHMARK(ReadPeak)->Iterations(1)->Unit(benchmark::kMillisecond);

/// A million lines in memory.
class Lines {
 public:
  Lines() {
    dxf.New_MemDxf();
    qvbench::Random r;
    const auto at = [&r] { return r.below(30000); };
    for (int i = 0; i < kEntities; ++i) dxf.Write_Line(at(), at(), 0, at(), at(), 0, "0", "BYLAYER", "BYLAYER");
  }
  DXF dxf;
};

// The extents of a drawing of lines: at least 50 million lines a second.
void Extents(benchmark::State& state) {
  Lines lines;
  for (auto _ : state) {
    const double time = qvbench::shortest([&] { benchmark::DoNotOptimize(lines.dxf.GetFRect()); })[0];
    state.counters["M/s"] = kEntities / time / 1e6;
    state.counters["least"] = 50;
  }
}
BENCHMARK(Extents)->Iterations(1)->Unit(benchmark::kMillisecond);

// A pick with a rectangle that nothing is near: at most 15 ns an entity.
void PickNothing(benchmark::State& state) {
  Lines lines;
  const auto plan = static_cast<float>(std::numbers::pi / 2);
  for (auto _ : state) {
    const double time = qvbench::shortest([&] {
      if (lines.dxf.HitTest(CFRect(-20, -20, -10, -10), 1, 0, plan)) state.SkipWithError("something was hit");
    })[0];
    state.counters["ns"] = time / kEntities * 1e9;
    state.counters["most"] = 15;
  }
}
BENCHMARK(PickNothing)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
