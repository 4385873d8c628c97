#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>

#include "baseline.h"
#include "process_memory.h"
#include "qvtools/dxf/model/document.h"
#include "qvtools/plot/plot.h"

namespace {

constexpr int kLines = 1000000;
constexpr qv::PaperSize kPaper{1189, 841};

/// Short lines that lie anywhere on the page.
void write_random_lines(DXF& drawing) {
  std::mt19937 random(1);
  const auto within = [&random](double low, double high) {
    return static_cast<float>(low + (high - low) * static_cast<double>(random()) / 4294967296.0);
  };
  drawing.New_MemDxf();
  for (int i = 0; i < kLines; ++i) {
    const float x = within(10, kPaper.width - 10);
    const float y = within(10, kPaper.height - 10);
    drawing.Write_Line(x, y, 0, x + within(-5, 5), y + within(-5, 5), 0, "0", "BYLAYER", "BYLAYER");
  }
}

void plot(DXF& drawing, const std::string& file) {
  const qv::PlotSource source{&drawing, nullptr, "", 1};
  qv::PlotOptions options;
  options.paper = kPaper;
  options.window = qv::DrawingRect{0, 0, kPaper.width, kPaper.height};
  options.scale = 1;
  qv::PlotReport report;
  if (!qv::Plot({&source, 1}, file, options, report)) std::abort();
}

/// The page's text, unpacked from the file: its first stream.
std::string page_text(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(in), {}};
  const std::size_t begin = bytes.find("stream\n") + 7;
  std::string text(std::size_t{64} * kLines, '\0');
  auto size = static_cast<uLongf>(text.size());
  uncompress(reinterpret_cast<Bytef*>(text.data()), &size, reinterpret_cast<const Bytef*>(bytes.data()) + begin,
             static_cast<uLong>(bytes.size() - begin));
  text.resize(size);
  return text;
}

// Counters: the ratio to zlib alone, which compresses the same text at the same level in memory; bytes of the file for
// a line; and what the process's peak grows by.
void PlotLines(benchmark::State& state) {
  const std::string file = (std::filesystem::temp_directory_path() / "qvbench-plot.pdf").string();
  DXF drawing;
  write_random_lines(drawing);
  const double before = qvbench::status_megabytes("VmHWM");
  for (auto _ : state) plot(drawing, file);
  state.counters["MB"] = qvbench::status_megabytes("VmHWM") - before;
  state.counters["bytes/line"] = static_cast<double>(std::filesystem::file_size(file)) / kLines;
  const std::string text = page_text(file);
  std::vector<Bytef> packed(compressBound(static_cast<uLong>(text.size())));
  const auto [own, zlib] =
      qvbench::shortest([&] { plot(drawing, file); },
                        [&] {
                          auto size = static_cast<uLongf>(packed.size());
                          compress2(packed.data(), &size, reinterpret_cast<const Bytef*>(text.data()),
                                    static_cast<uLong>(text.size()), 6);
                        });
  state.counters["times zlib"] = own / zlib;
  std::filesystem::remove(file);
}
BENCHMARK(PlotLines)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
