#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <random>
#include <string>

#include "baseline.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"
#include "qvtools/slides/slide.h"

namespace {

constexpr std::size_t kSize = 10'000'000;

void put_word(std::string& bytes, unsigned v) {
  bytes += static_cast<char>(v & 255);
  bytes += static_cast<char>(v >> 8 & 255);
}

/// What a slide is made of: lines in full, or mostly the short records of chains (offsets and common ends), which give
/// more items a byte.
enum class Mix { Lines, Chains };

/// A slide of ten megabytes.
std::string large_slide(Mix mix) {
  std::mt19937 generator(1);
  const auto random = [&] { return static_cast<unsigned>(generator()); };
  std::string bytes("AutoCAD Slide\r\n\x1A\0V\2", 19);
  bytes.resize(31);
  while (bytes.size() < kSize) {
    const unsigned r = random();
    if (r % 16 == 0) {
      put_word(bytes, 0xFF00 | (r >> 8 & 7));
    } else if (mix == Mix::Lines || r % 4 == 0) {
      for (int i = 0; i < 4; ++i) put_word(bytes, random() % 1000);
    } else if (r % 4 == 1) {
      put_word(bytes, 0xFB00 | (r >> 8 & 255));
      bytes.append(3, static_cast<char>(r >> 16 & 15));
    } else {
      put_word(bytes, 0xFE00 | (r >> 8 & 255));
      bytes += static_cast<char>(r >> 16 & 31);
    }
  }
  put_word(bytes, 0xFC00);
  return bytes;
}

/// The file of a slide, for the life of the object.
class SlideFile {
 public:
  explicit SlideFile(Mix mix) : path_((std::filesystem::temp_directory_path() / "qvbench.sld").string()) {
    std::FILE* file = std::fopen(path_.c_str(), "wb");
    const std::string bytes = large_slide(mix);
    std::fwrite(bytes.data(), 1, bytes.size(), file);
    std::fclose(file);
  }
  ~SlideFile() { std::remove(path_.c_str()); }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

// Counters: megabytes a second, and the ratio to reading the file into memory and looking at nothing.
void ReadSlide(benchmark::State& state) {
  const SlideFile file(static_cast<Mix>(state.range(0)));
  const auto read = [&] {
    CWxSlide slide;
    slide.Read_SLD(file.path().c_str());
    benchmark::DoNotOptimize(slide.m_Items.data());
  };
  for (auto _ : state) read();
  const auto [own, bare] = qvbench::shortest(read, [&] {
    std::string bytes(kSize, '\0');
    std::FILE* in = std::fopen(file.path().c_str(), "rb");
    benchmark::DoNotOptimize(std::fread(bytes.data(), 1, bytes.size(), in));
    std::fclose(in);
  });
  state.counters["MB/s"] = kSize / 1e6 / own;
  state.counters["ratio to fread alone"] = bare / own;
}
BENCHMARK(ReadSlide)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// Counter: the ratio to drawing the same lines and colours straight into the bitmap context.
void DrawSlide(benchmark::State& state) {
  const SlideFile file(Mix::Chains);
  CWxSlide slide;
  slide.Read_SLD(file.path().c_str());
  qv::BitmapContext bitmap(1920, 1080, 0);
  const CRect place(0, 0, 1920, 1080);
  for (auto _ : state) slide.Draw(&bitmap, &place);
  struct Line {
    CPoint from;
    CPoint to;
    bool pen;
  };
  std::vector<Line> lines;
  for (const CSlideItem& item : slide.m_Items)
    lines.push_back({slide.FPtoDP(item.m_fX[0], item.m_fY[0]), slide.FPtoDP(item.m_fX[1], item.m_fY[1]),
                     item.m_byKind != CSlideItem::kVector});
  const auto [own, bare] = qvbench::shortest([&] { slide.Draw(&bitmap, &place); },
                                             [&] {
                                               CPen pen;
                                               bitmap.SelectObject(&pen);
                                               for (const Line& line : lines) {
                                                 if (line.pen) {
                                                   bitmap.SelectObject(&pen);
                                                   continue;
                                                 }
                                                 bitmap.MoveTo(line.from.x, line.from.y);
                                                 bitmap.LineTo(line.to.x, line.to.y);
                                               }
                                               bitmap.SelectObject(CDC::StockBlackPen());
                                             });
  state.counters["ratio to the lines alone"] = bare / own;
}
BENCHMARK(DrawSlide)->Unit(benchmark::kMillisecond);

}  // namespace
