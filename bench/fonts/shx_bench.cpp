#include <benchmark/benchmark.h>

#include <vector>

#include "baseline.h"
#include "qvtools/fonts/shx.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"

namespace {

constexpr int kTexts = 100000;
constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr const char* kText = "KL-3(2A) 7";

/// Keeps the segments that are drawn.
class KeepingContext : public CDC {
 public:
  struct Segment {
    CPoint from;
    CPoint to;
  };
  void MoveTo(int x, int y) override { position_ = CPoint(x, y); }
  void LineTo(int x, int y) override {
    segments.push_back({position_, CPoint(x, y)});
    position_ = CPoint(x, y);
  }
  void SetPixel(int, int, COLORREF) override {}
  void FillRgn(const CRgn&, const CBrush&) override {}
  CSize GetResolution() const override { return {kWidth, kHeight}; }
  std::vector<Segment> segments;

 private:
  CPoint position_;
};

void draw_texts(CShx& font, CDC& context, int count) {
  for (int i = 0; i < count; ++i) {
    const auto place = static_cast<unsigned>(i) * 2654435761u;
    const int x = static_cast<int>(place % (kWidth - 100));
    const int y = 20 + static_cast<int>(place / 4096 % (kHeight - 40));
    font.DrawTxtShx(&context, x, y, kText, 12.0f, 0.1f, 9.0f, 1);
  }
}

// Counters: strokes a second, and the ratio to drawing the same segments straight into the bitmap context.
void DrawTexts(benchmark::State& state) {
  CShx font;
  if (!font.SetTxtFont(QV_FONTS, "txt.shx")) {
    state.SkipWithError("the text font is missing");
    return;
  }
  KeepingContext kept;
  draw_texts(font, kept, kTexts);
  qv::BitmapContext bitmap(kWidth, kHeight, qv::rgb(255, 255, 255));
  for (auto _ : state) draw_texts(font, bitmap, kTexts);
  const double own = qvbench::seconds([&] { draw_texts(font, bitmap, kTexts); });
  const double bare = qvbench::seconds([&] {
    for (const auto& segment : kept.segments) {
      bitmap.MoveTo(segment.from.x, segment.from.y);
      bitmap.LineTo(segment.to.x, segment.to.y);
    }
  });
  state.counters["strokes/s"] = static_cast<double>(kept.segments.size()) / own;
  state.counters["ratio"] = bare / own;
}
BENCHMARK(DrawTexts)->Unit(benchmark::kMillisecond);

}  // namespace
