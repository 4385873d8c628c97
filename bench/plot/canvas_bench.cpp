#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>

#include "baseline.h"
#include "process_memory.h"
#include "qvtools/plot/internal/canvas.h"

namespace {

using namespace qv::detail;

constexpr int kLines = 1000000;
constexpr Page kPage{1189, 841, "", ""};

/// Short lines of one pen that lie anywhere on the page.
std::vector<Path> random_lines() {
  std::mt19937 random(1);
  const auto within = [&random](double low, double high) {
    return low + (high - low) * static_cast<double>(random()) / 4294967296.0;
  };
  std::vector<Path> lines(kLines);
  for (Path& line : lines) {
    const PaperPoint from{within(10, kPage.width - 10), within(10, kPage.height - 10)};
    line.move_to(from);
    line.line_to({from.x + within(-5, 5), from.y + within(-5, 5)});
  }
  return lines;
}

void plot(const std::vector<Path>& lines, const std::string& file) {
  const auto canvas = pdf_canvas(file, {});
  canvas->begin_page(kPage);
  for (const Path& line : lines) canvas->stroke(line, {0.25, {}, {}, {}});
  canvas->end_page();
  if (!canvas->finish()) std::abort();
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
  const std::vector<Path> lines = random_lines();
  const double before = qvbench::status_megabytes("VmHWM");
  for (auto _ : state) plot(lines, file);
  state.counters["MB"] = qvbench::status_megabytes("VmHWM") - before;
  state.counters["bytes/line"] = static_cast<double>(std::filesystem::file_size(file)) / kLines;
  const std::string text = page_text(file);
  std::vector<Bytef> packed(compressBound(static_cast<uLong>(text.size())));
  const auto [own, zlib] =
      qvbench::medians([&] { plot(lines, file); },
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
