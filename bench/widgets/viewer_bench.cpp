#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "dxf/workload.h"
#include "qvtools/import/import.h"
#include "qvtools/widgets/viewer/view.h"
#include "support/temporary_directory.h"

namespace {

using qv::viewer::Drawing;
using qv::viewer::View;
using Clock = std::chrono::steady_clock;

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

double milliseconds(Clock::duration d) {
  return std::chrono::duration<double, std::milli>(d).count();
}

/// A window without a screen: what would be on it is in the bitmap.
class HiddenWindow : public qv::Window {
 public:
  CRect ClientRect() const override { return {0, 0, kWidth, kHeight}; }
  CDC& ClientContext() override { return bitmap; }
  void ReleaseClientContext() override {}
  void Invalidate(bool) override {}
  void Post(unsigned int) override {}
  qv::BitmapContext bitmap{kWidth, kHeight, 0};
};

struct NoListener : View::Listener {
  void on_view_changed() override {}
  void on_picks_changed() override {}
  void on_mode_changed() override {}
};

/// Moves a view 60 times a second; returns how long each picture took, in milliseconds.
template <class Move>
std::vector<double> moved(View& view, HiddenWindow& window, const Move& move) {
  constexpr int kPictures = 120;
  constexpr auto kTick = std::chrono::microseconds(16667);
  std::vector<double> took;
  Clock::time_point next = Clock::now();
  for (int i = 0; i < kPictures; ++i) {
    const Clock::time_point begin = Clock::now();
    move(i);
    view.show(window.bitmap, 0);
    took.push_back(milliseconds(Clock::now() - begin));
    std::this_thread::sleep_until(next = std::max(next, begin) + kTick);
  }
  return took;
}

// A storey of a million entities is opened, dragged, and zoomed by the wheel, 60 times a second, on the wall's clock:
// the share of pictures that are there in time, and how soon the sharp one follows the last move.
void LookAtPlan(benchmark::State& state) {
  constexpr double kTick = 1000.0 / 60;
  const qvtest::TemporaryDirectory directory;
  const std::string path = directory.path("plan.dxf");
  {
    DXF dxf;
    dxf.New_MemDxf();
    qvbench::add_layers(dxf);
    qvbench::write_plan(dxf);
    if (!dxf.Write_MemDxf_To_File(path.c_str())) state.SkipWithError("no file");
  }
  for (auto _ : state) {
    HiddenWindow window;
    NoListener listener;
    View view(window, listener);
    const Clock::time_point begin = Clock::now();
    auto document = std::make_unique<DXF>();
    document->New_MemDxf();
    qv::ImportReport report;
    qv::Import(path.c_str(), *document, {}, report);
    const Clock::time_point read = Clock::now();
    view.open(std::make_unique<Drawing>(std::move(document), false));
    view.show(window.bitmap, 0);
    state.counters["first picture ms"] = milliseconds(Clock::now() - begin);
    state.counters["of it reading ms"] = milliseconds(read - begin);
    view.middle_down({kWidth / 2, kHeight / 2});
    std::vector<double> took = moved(view, window, [&](int i) {
      view.move({kWidth / 2 + 3 * i, kHeight / 2 - 2 * i});
    });
    view.middle_up({kWidth / 2, kHeight / 2});
    const std::vector<double> zoomed = moved(view, window, [&](int i) {
      view.wheel({600, 500}, i % 40 < 20 ? 0.5 : -0.5, i > 0);
    });
    took.insert(took.end(), zoomed.begin(), zoomed.end());
    view.show_all();
    view.show(window.bitmap, 0);
    view.set_patience(std::chrono::minutes(1));
    const Clock::time_point last = Clock::now();
    view.pan_by(0.01, 0.01);
    view.show(window.bitmap, 0);
    state.counters["sharp after ms"] = milliseconds(Clock::now() - last);
    std::sort(took.begin(), took.end());
    const auto inTime = std::upper_bound(took.begin(), took.end(), kTick) - took.begin();
    state.counters["in time"] = static_cast<double>(inTime) / static_cast<double>(took.size());
    state.counters["in time goal"] = 1;
    state.counters["median ms"] = took[took.size() / 2];
    state.counters["longest ms"] = took.back();
  }
}
BENCHMARK(LookAtPlan)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
