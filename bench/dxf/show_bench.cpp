#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <numbers>
#include <vector>

#include "baseline.h"
#include "qvtools/dxf/view/prepared_drawing.h"
#include "qvtools/fonts/shx.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"
#include "workload.h"

namespace {

using qvbench::kEntities;

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr float kScale = 0.1F;

/// Keeps the segments that reach a device.
class KeepingContext : public CDC {
 public:
  struct Segment {
    int x1, y1, x2, y2;
  };
  void MoveTo(int x, int y) override { x_ = x, y_ = y; }
  void LineTo(int x, int y) override {
    segments.push_back({x_, y_, x, y});
    MoveTo(x, y);
  }
  void SetPixel(int, int, COLORREF) override {}
  void FillRgn(const CRgn&, const CBrush&) override {}
  CSize GetResolution() const override { return {kWidth, kHeight}; }
  std::vector<Segment> segments;

 private:
  int x_ = 0;
  int y_ = 0;
};

/// The bare stepping of a line, last pixel left out: trivially accepted, without a branch in the loop.
void step(std::vector<std::uint32_t>& pixels, const KeepingContext::Segment& s, std::uint32_t color) {
  const auto inside = [](int x, int y) {
    return static_cast<unsigned>(x) < kWidth && static_cast<unsigned>(y) < kHeight;
  };
  if (!inside(s.x1, s.y1) || !inside(s.x2, s.y2)) return;
  const int dx = std::abs(s.x2 - s.x1);
  const int dy = std::abs(s.y2 - s.y1);
  const int stepX = s.x2 < s.x1 ? -1 : 1;
  const int stepY = s.y2 < s.y1 ? -kWidth : kWidth;
  const bool flat = dx >= dy;
  const int along = flat ? stepX : stepY;
  const int across = flat ? stepY : stepX;
  const int steps = flat ? dx : dy;
  const int slope = 2 * (flat ? dy : dx);
  int error = -steps;
  std::uint32_t* pixel = pixels.data() + s.y1 * kWidth + s.x1;
  for (int i = 0; i < steps; ++i) {
    *pixel = color;
    error += slope;
    const int carry = error >= 0 ? -1 : 0;
    pixel += along + (across & carry);
    error -= 2 * steps & carry;
  }
}

void step_all(std::vector<std::uint32_t>& pixels, const KeepingContext& kept) {
  for (const auto& s : kept.segments) step(pixels, s, 0);
  benchmark::DoNotOptimize(pixels.data());
  benchmark::ClobberMemory();
}

/// Lines of 28 pixels in any direction, all within the window.
void compose(DXF& dxf) {
  dxf.New_MemDxf();
  qvbench::Random r;
  for (int i = 0; i < kEntities; ++i) {
    const float x = (30 + r.below(kWidth - 60)) / kScale;
    const float y = (30 + r.below(kHeight - 60)) / kScale;
    const float angle = r.below(2 * std::numbers::pi_v<float>);
    dxf.Write_Line(x, y, 0, x + 28 / kScale * std::cos(angle), y + 28 / kScale * std::sin(angle), 0, "0", "7",
                   "BYLAYER");
  }
}

// A million lines through transform, clipping and bitmap, against bare stepping of the same segments.
void ShowLines(benchmark::State& state) {
  DXF dxf;
  compose(dxf);
  CFCoor window(CFPoint(0, kHeight / kScale), kScale, 1);
  CFCoor elsewhere(CFPoint(-100000, 0), kScale, 1);
  KeepingContext kept;
  dxf.Draw(&kept, &window);
  if (kept.segments.size() != kEntities) state.SkipWithError("lines are missing");
  qv::BitmapContext bitmap(kWidth, kHeight, 0xFFFFFF);
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(kWidth) * kHeight);
  for (auto _ : state) {
    const auto [own, bare, outside] = qvbench::shortest(
        [&] { dxf.Draw(&bitmap, &window); }, [&] { step_all(pixels, kept); }, [&] { dxf.Draw(&bitmap, &elsewhere); });
    state.counters["M/s"] = kEntities / own / 1e6;
    state.counters["ratio"] = bare / own;
    state.counters["least"] = 0.4;
    state.counters["goal"] = 0.7;
    state.counters["outside M/s"] = kEntities / outside / 1e6;
    state.counters["outside ratio"] = own / outside;
    state.counters["outside least"] = 10;
    state.counters["outside goal"] = 15;
  }
}
BENCHMARK(ShowLines)->Iterations(1)->Unit(benchmark::kMillisecond);

// A storey of a million entities, prepared: the whole of it in the window, and a hundredth of it; against the
// document's own drawing.
void ShowPlan(benchmark::State& state) {
  DXF dxf;
  dxf.New_MemDxf();
  qvbench::add_layers(dxf);
  qvbench::write_plan(dxf);
  if (!G_ShapeFont.SetTxtFont(QV_FONTS, "txt.shx")) state.SkipWithError("no font");
  constexpr float kWhole = kHeight / qvbench::kPlanHeight;
  CFCoor whole(CFPoint(0, qvbench::kPlanHeight), kWhole, 1);
  CFCoor part(CFPoint(qvbench::kPlanWidth * 0.45F, qvbench::kPlanHeight * 0.55F), 10 * kWhole, 1);
  qv::BitmapContext bitmap(kWidth, kHeight, 0xFFFFFF);
  qv::PreparedDrawing letters(dxf);
  qv::PreparedDrawing prepared(dxf);
  prepared.SetReadableHeight(3);
  KeepingContext kept;
  prepared.Draw(&kept, &whole);
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(kWidth) * kHeight);
  for (auto _ : state) {
    const auto [all, bare, hundredth, lettered, unprepared, preparing] = qvbench::shortest(
        [&] { prepared.Draw(&bitmap, &whole); }, [&] { step_all(pixels, kept); },
        [&] { prepared.Draw(&bitmap, &part); }, [&] { letters.Draw(&bitmap, &whole); },
        [&] { dxf.Draw(&bitmap, &whole); }, [&] { benchmark::DoNotOptimize(qv::PreparedDrawing(dxf)); });
    state.counters["ms"] = all * 1e3;
    state.counters["most"] = 120;
    state.counters["goal"] = 60;
    state.counters["ratio"] = bare / all;
    state.counters["1% ratio"] = hundredth / all;
    state.counters["1% most"] = 0.15;
    state.counters["1% goal"] = 0.05;
    state.counters["in letters ms"] = lettered * 1e3;
    state.counters["unprepared ms"] = unprepared * 1e3;
    state.counters["preparing ms"] = preparing * 1e3;
  }
}
BENCHMARK(ShowPlan)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
