#include "qvtools/plot/internal/canvas.h"

#include <limits>

#include "qvtools/plot/internal/text_writer.h"
#include "support/failing_allocations.h"
#include "support/full_disk.h"
#include "support/temporary_directory.h"

namespace qv::detail {
namespace {

struct Format {
  const char* name;
  std::unique_ptr<Canvas> (*create)(const std::string&, const CanvasOptions&);
};
constexpr Format kFormats[] = {{"plot.pdf", pdf_canvas}, {"plot.svg", svg_canvas}, {"plot.png", png_canvas}};

Stroke pen(double width) {
  return {width, {}, Stroke::Ends::Round, Stroke::Joins::Round};
}

CanvasOptions coarse() {
  CanvasOptions options;
  options.dpi = 25.4;
  options.readable = true;
  return options;
}

Path path(std::initializer_list<PathPoint> points) {
  Path result;
  for (const PathPoint p : points) result.empty() ? result.move_to(p) : result.line_to(p);
  return result;
}

void draw_page(Canvas& canvas, int lines) {
  canvas.begin_page({100, 100, "a", ""});
  canvas.set_layer(canvas.add_layer({""}));
  for (int i = 0; i < lines; ++i) {
    canvas.stroke(path({{i % 97 + 0.11, i % 89 + 0.37}, {i % 83 + 0.53, i % 79 + 0.71}}), pen(0.1 + i % 7 * 0.1));
  }
  canvas.text({"C30", {10, 10}, 3, 0, 9});
  canvas.end_page();
}

std::string printed(double value) {
  StringSink sink;
  TextWriter text(sink);
  text.real<2>(value);
  text.flush();
  return sink.text;
}

TEST(Canvas, NumbersHaveTwoDecimalsAndNoZerosAtTheirEnds) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const std::pair<double, const char*> cases[] = {
      {0, "0"},           {-0.004, "0"},        {0.005, ".01"},   {-0.5, "-.5"},           {12.5, "12.5"},
      {100, "100"},       {1188.99, "1188.99"}, {-3.05, "-3.05"}, {kInfinity, "10000000"}, {-kInfinity, "-10000000"},
      {std::nan(""), "0"}};
  for (const auto& [value, text] : cases) EXPECT_EQ(printed(value), text);
}

TEST(Canvas, MarksThatAreNoneAreLeftOut) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const qvtest::TemporaryDirectory directory;
  for (const Format& format : kFormats) {
    const std::string bad = std::string("bad-") + format.name;
    const auto canvas = format.create(directory.path(bad), coarse());
    const auto expected = format.create(directory.path(format.name), coarse());
    ASSERT_TRUE(canvas && expected);
    canvas->stroke(path({{1, 1}, {2, 2}}), pen(1));  // on no page
    canvas->end_page();
    canvas->place(0, {1, 1});
    for (Canvas* const each : {canvas.get(), expected.get()}) each->begin_page({50, 50, "", ""});
    canvas->stroke({}, pen(1));
    canvas->fill({}, {});
    canvas->stroke(path({{1, 1}, {std::nan(""), 2}}), pen(1));
    canvas->fill(path({{1, 1}, {kInfinity, 2}, {3, 3}}), {});
    canvas->stroke(path({{1, 1}, {2, 2}}), pen(std::nan("")));
    canvas->text({"x", {1, 1}, kInfinity, 0, 1});
    canvas->text({"", {1, 1}, 1, 0, 1});
    canvas->text({"\x01\n", {1, 1}, 1, 0, 1});
    canvas->set_layer(77);
    canvas->place(5, {1, 1});
    EXPECT_TRUE(canvas->finish());
    EXPECT_TRUE(expected->finish());
    EXPECT_EQ(directory.read(bad), directory.read(format.name)) << format.name;
  }
}

TEST(Canvas, MarksFarAwayAndOddPathsAreSafe) {
  const qvtest::TemporaryDirectory directory;
  for (const Format& format : kFormats) {
    const std::string file = directory.path(format.name);
    const auto canvas = format.create(file, coarse());
    ASSERT_TRUE(canvas);
    canvas->begin_page({50, 50, "", ""});
    for (const double far : {1e9, 1e300}) {
      canvas->stroke(path({{-far, 10}, {far, 10}}), {1e300, {}, Stroke::Ends::Butt, Stroke::Joins::Mitred});
      canvas->fill(path({{-far, -far}, {far, -far}, {0, far}}), {1, 2, 3});
      Path arc;
      arc.arc_to({far, 1}, {0, far}, far);  // from nowhere
      arc.arc_to({1, 1}, {far, far}, -far);
      canvas->stroke(arc, pen(0.1));
      canvas->text({"x", {far, far}, far, far, far});
    }
    canvas->stroke(path({{5, 5}, {20, 5}, {5, 5}, {5, 5}, {5.001, 5}}),
                   {1, {}, Stroke::Ends::Round, Stroke::Joins::Mitred});
    EXPECT_TRUE(canvas->finish()) << format.name;
  }
}

TEST(Canvas, AFileIsWholeOrAbsent) {
  const qvtest::TemporaryDirectory directory;
  for (const Format& format : kFormats) {
    EXPECT_EQ(format.create(directory.path("none/") + format.name, coarse()), nullptr);
    const std::string file = directory.write(format.name, "before");
    {
      const auto canvas = format.create(file, coarse());
      ASSERT_TRUE(canvas);
      draw_page(*canvas, 5000);
    }
    EXPECT_EQ(directory.read(format.name), "before");
    const auto empty = format.create(file, coarse());
    ASSERT_TRUE(empty);
    EXPECT_FALSE(empty->finish());  // no page
    EXPECT_EQ(directory.read(format.name), "before");
    for (const double dpi : {0.0, -1.0, 1e9, std::nan("")}) {
      if (format.create != png_canvas) break;
      CanvasOptions options;
      options.dpi = dpi;
      const auto canvas = format.create(file, options);
      ASSERT_TRUE(canvas);
      draw_page(*canvas, 1);
      EXPECT_EQ(canvas->finish(), dpi == 0) << dpi;
    }
  }
}

TEST(Canvas, AFullDiskIsTold) {
  QV_NEEDS_FULL_DISK();
  for (const Format& format : kFormats) {
    const auto canvas = format.create(qvtest::kFullDisk, coarse());
    ASSERT_TRUE(canvas);
    draw_page(*canvas, 5000);
    EXPECT_FALSE(canvas->finish()) << format.name;
  }
}

TEST(Canvas, MemoryThatRunsOutIsTold) {
  const qvtest::TemporaryDirectory directory;
  for (const Format& format : kFormats) {
    const std::string file = directory.path(format.name);
    for (int successes = 0;; ++successes) {
      const auto canvas = format.create(file, coarse());
      ASSERT_TRUE(canvas);
      bool written, failed;
      {
        const Page page{100, 100, "", ""};
        const Path line = path({{1, 1}, {2, 2}});
        const PlotLayer layer{"a"};
        const FoundText text{"C30", {10, 10}, 3, 0, 9};
        const qvtest::FailingAllocations few(successes, qvtest::FailingAllocations::Which::All);
        canvas->begin_page(page);
        canvas->set_layer(canvas->add_layer(layer));
        canvas->stroke(line, pen(1));
        canvas->text(text);
        written = canvas->finish();
        failed = few.failed();
      }
      ASSERT_EQ(written, !failed) << format.name << ' ' << successes;
      ASSERT_EQ(directory.has(format.name), written);
      if (written) break;
    }
  }
  QV_ERROR_CODE = 0;
}

}  // namespace
}  // namespace qv::detail
