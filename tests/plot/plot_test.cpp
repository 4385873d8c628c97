#include "qvtools/plot/plot.h"

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <numbers>

#include "qvtools/display/internal/path.h"
#include "qvtools/plot/picture.h"
#include "support/temporary_directory.h"

namespace qv {
namespace {

using detail::Path;
using detail::PathRect;

double length_of(const Path& path) {
  double length = 0;
  detail::PathPoint from;
  for (const Path::Piece& piece : path.pieces()) {
    if (piece.kind == Path::Kind::Line) length += distance(from, piece.to);
    if (piece.kind == Path::Kind::Arc) length += std::fabs(piece.sweep) * distance(from, piece.center);
    from = piece.to;
  }
  return length;
}

/// A random figure of lines and arcs within 100 x 100.
Path random_figure() {
  const auto number = [](double most) { return most * std::rand() / RAND_MAX; };
  Path path;
  path.move_to({number(100), number(100)});
  for (int i = 0; i < 4; ++i) {
    const detail::PathPoint from = path.end();
    const detail::PathPoint center{number(100), number(100)};
    const double sweep = number(12) - 6;
    if (i % 2)
      path.line_to(center);
    else
      path.arc_to(detail::turned(from, center, sweep), center, sweep);
  }
  return path;
}

constexpr PathRect kEverything{-1e9, -1e9, 1e9, 1e9};

TEST(Paths, WhatIsCutInTwoIsAsLongAsBefore) {
  std::srand(1);
  for (int i = 0; i < 300; ++i) {
    const Path path = random_figure();
    Path left, right;
    clip(path, {-1e4, -1e4, 50, 1e4}, left);
    clip(path, {50, -1e4, 1e4, 1e4}, right);
    EXPECT_NEAR(length_of(left) + length_of(right), length_of(path), 1e-6);
    EXPECT_LE(bounds(left).right, 50 + 1e-9);
  }
}

TEST(Paths, DashesFillTheirShareAndFramesEnds) {
  std::srand(2);
  const DashPattern pattern{{3, -1, 0, -1}, 5};
  for (int i = 0; i < 300; ++i) {
    const Path path = random_figure();
    Path dashes;
    dash(path, pattern, 0, kEverything, dashes);
    const double length = length_of(path);
    // Whole patterns of three fifths between the middles of the outer dashes, and what is left over.
    const double patterns = std::floor((length - 3) / 5);
    EXPECT_NEAR(length_of(dashes), length - 2 * patterns, 1e-6);
    EXPECT_EQ(dashes.pieces().front().to, path.pieces().front().to);
    EXPECT_NEAR(distance(dashes.end(), path.end()), 0, 1e-9);
  }
}

TEST(Paths, DashesInSightAreThoseOfTheWhole) {
  Path path;
  path.move_to({0, 0});
  path.line_to({1e6, 3e5});
  const DashPattern pattern{{7, -2, 1, -2}, 12};
  const PathRect seen{500000, 0, 500100, 1e6};
  Path all, some, a, b;
  dash(path, pattern, 0, kEverything, all);
  dash(path, pattern, 0, seen, some);
  clip(all, seen, a);
  clip(some, seen, b);
  EXPECT_LT(some.pieces().size(), 100u);
  ASSERT_EQ(a.pieces().size(), b.pieces().size());
  for (std::size_t i = 0; i < a.pieces().size(); ++i)
    EXPECT_NEAR(distance(a.pieces()[i].to, b.pieces()[i].to), 0, 1e-6);
}

TEST(Papers, NamesAndSizes) {
  for (const PaperFormat& format : paper_formats()) {
    EXPECT_EQ(paper_name(format.size.portrait()), format.name);
    EXPECT_EQ(paper_named(format.name)->width, format.size.width);
  }
  EXPECT_EQ(paper_named("a2+1/4")->width, 743);
  EXPECT_EQ(paper_named("594.5x420")->width, 594.5);
  EXPECT_EQ(paper_name({594.6, 420.6}), "594.6x420.6");
  for (const char* const name :
       {"", "A9", "A3+1/3", "420x", "x297", "0x297", "420x9", "1e9x297", "420x297mm", "nanx297"})
    EXPECT_FALSE(paper_named(name)) << name;
}

TEST(Pens, TheFirstRuleThatMatchesCounts) {
  std::string problem;
  const auto table = PenTable::parse(
      "; office pens\n\ncolor 1-3,8 -> 0.18 ; thin\r\nlayer BEAM* -> #102030 0.7\nltype D?SHED -> 50%\nany -> 0.35 "
      "weight Black",
      problem);
  ASSERT_TRUE(table) << problem;
  EXPECT_EQ(table->find(2, "BEAM-1", "")->width, 0.18);
  EXPECT_EQ(table->find(4, "beam-1", "")->color, 0x102030);
  EXPECT_EQ(table->find(4, "SLAB", "DASHED")->screening, 50);
  EXPECT_TRUE(table->find(300, "", "")->ownWidth);
  const struct {
    const char* text;
    const char* problem;
  } wrong[] = {{"any -> 0.2\ncolor 1 0.3", "line 2"},
               {"color 256 -> 1", "line 1"},
               {"color 5-2 -> 1", "line 1"},
               {"any ->", "line 1"},
               {"any -> -1", "line 1"},
               {"any -> 0.2 120%", "line 1"},
               {"pen 4 -> 1", "line 1"},
               {"layer -> 1", "line 1"},
               {"any -> #12", "line 1"}};
  for (const auto& w : wrong) {
    EXPECT_FALSE(PenTable::parse(w.text, problem)) << w.text;
    EXPECT_NE(problem.find(w.problem), std::string::npos) << problem;
  }
  const qvtest::TemporaryDirectory directory;
  const auto read = [&](const std::string& path) { return PenTable::read(path.c_str(), problem).has_value(); };
  EXPECT_TRUE(read(directory.write("good", "any -> 0.35")));
  EXPECT_FALSE(read(directory.path("none")));
  EXPECT_EQ(problem, "cannot be opened");
  EXPECT_FALSE(read(directory.write("large", std::string((1 << 20) + 1, ';'))));
  EXPECT_EQ(problem, "is too large for a table of pens");
  for (const char* const name : PenTable::built_in_names())
    EXPECT_TRUE(PenTable::built_in(name)->find(7, "0", "")) << name;
}

std::unique_ptr<CBase_SGT> sheet_drawing() {
  std::unique_ptr<CBase_SGT> sgt(NewMemDxf());
  const struct {
    float x, y, scale;
    int size, extra, portrait;
  } frames[] = {{0, 0, 50, 2, 0, 0}, {40000, 500, 100, 3, 0, 1}, {0, -90000, 20, 1, 210, 0}};
  for (const auto& frame : frames) {
    sgt->SetBiLiChi(frame.scale);
    sgt->Draw_TuKuang(frame.x, frame.y, frame.size, frame.extra, frame.portrait);
  }
  return sgt;
}

TEST(Sheets, AreFoundByTheirFrames) {
  const std::unique_ptr<CBase_SGT> sgt = sheet_drawing();
  const std::vector<Sheet> sheets = FindSheets(*sgt);
  ASSERT_EQ(sheets.size(), 3u);
  const struct {
    const char* paper;
    double scale;
    bool lies;
  } expected[] = {{"A3", 100, false}, {"A2", 50, true}, {"A1+1/4", 20, true}};
  for (std::size_t i = 0; i < 3; ++i) {
    const Sheet& sheet = sheets[i];
    EXPECT_EQ(paper_name(sheet.paper), expected[i].paper);
    EXPECT_EQ(sheet.scale, expected[i].scale);
    EXPECT_EQ(sheet.paper.width > sheet.paper.height, expected[i].lies);
  }
  EXPECT_EQ(SheetOf(*sgt)->scale, 100);
  DXF empty;
  empty.New_MemDxf();
  EXPECT_FALSE(SheetOf(empty));
  empty.Write_Line(0, 0, 0, 59400, 0, 0, "0", "7", "CONTINUOUS");
  EXPECT_FALSE(SheetOf(empty));
}

TEST(Plots, WhatMakesNoSenseIsToldAndLeavesNoFile) {
  const qvtest::TemporaryDirectory directory;
  DXF drawing, empty;
  drawing.New_MemDxf();
  empty.New_MemDxf();
  drawing.Write_Line(0, 0, 0, 1000, 500, 0, "0", "7", "CONTINUOUS");
  const struct {
    DXF* document;
    const char* file;
    void (*change)(PlotOptions&);
    const char* problem;
  } cases[] = {
      {&drawing, "a.dwg", [](PlotOptions&) {}, ".pdf, .svg or .png"},
      {&drawing, "a.pdf", [](PlotOptions& o) { o.scale = 0; }, "scale"},
      {&drawing, "a.pdf", [](PlotOptions& o) { o.scale = NAN; }, "scale"},
      {&drawing, "a.pdf",
       [](PlotOptions& o) {
         o.window = DrawingRect{0, 0, 0, 10};
       },
       "window"},
      {&drawing, "a.pdf",
       [](PlotOptions& o) {
         o.paper = PaperSize{0, 100};
       },
       "paper"},
      {&drawing, "a.png", [](PlotOptions& o) { o.dpi = 1e6; }, "dots"},
      {&drawing, "a.png",
       [](PlotOptions& o) {
         o.dpi = 2400, o.paper = PaperSize{2000, 500};
       },
       "65535"},
      {&empty, "a.pdf", [](PlotOptions&) {}, "nothing to plot"},
      {&drawing, "no/such/folder/a.pdf", [](PlotOptions&) {}, "cannot be written"},
  };
  for (const auto& c : cases) {
    PlotOptions options;
    c.change(options);
    PlotReport report;
    const PlotSource source{c.document, nullptr, "d", 1};
    EXPECT_FALSE(Plot({&source, 1}, directory.path(c.file), options, report));
    EXPECT_NE(report.problem.find(c.problem), std::string::npos) << report.problem;
    EXPECT_TRUE(report.pages.empty());
  }
  PlotReport report;
  const PlotSource source{&drawing, nullptr, "d", 1};
  EXPECT_FALSE(Plot({&source, 1}, directory.path("a.pdf"), {}, report, [](double) { return false; }));
  EXPECT_EQ(report.problem, "plotting was given up");
  EXPECT_TRUE(std::filesystem::is_empty(directory.path("")));
}

TEST(Plots, PagesAreFittedOrToldNotToFit) {
  const qvtest::TemporaryDirectory directory;
  DXF drawing;
  drawing.New_MemDxf();
  for (int i = 0; i < 40; ++i)
    drawing.Write_Line(0, static_cast<float>(50 * i), 0, 4000, static_cast<float>(50 * i), 0, "0", "7", "CONTINUOUS");
  drawing.Write_Line(1e7F, 1e7F, 0, 1e7F + 10, 1e7F, 0, "0", "7", "CONTINUOUS");
  const PlotSource source{&drawing, nullptr, "d", 1};
  PlotReport report;
  ASSERT_TRUE(Plot({&source, 1}, directory.path("fit.svg"), {}, report)) << report.problem;
  EXPECT_NEAR(report.pages[0].scale, 4000 / 410.0, 1e-6);
  ASSERT_EQ(report.remarks.size(), 1u);  // of the one that lies far away
  EXPECT_NE(report.remarks[0].find("1 of 41"), std::string::npos) << report.remarks[0];
  PlotOptions options;
  options.scale = 5;
  ASSERT_TRUE(Plot({&source, 1}, directory.path("large.svg"), options, report));
  EXPECT_FALSE(report.pages[0].fits);
  EXPECT_NE(report.remarks[1].find("800 x 390 mm at 1:5"), std::string::npos) << report.remarks[1];
  drawing.Write_Line(NAN, 0, 0, 1, 1, 0, "0", "7", "CONTINUOUS");
  drawing.Write_Solid(0, 0, 0, 1, 0, 0, 0, INFINITY, 0, 1, 1, 0, "0", "7", "CONTINUOUS");
  drawing.Write_Text(NAN, 0, 0, 5, 0, "T", "STANDARD", "0", "7", "CONTINUOUS");
  ASSERT_TRUE(Plot({&source, 1}, directory.path("odd.svg"), options, report)) << report.problem;
  const auto told = [](const std::string& remark) { return remark.find("3 entities have coordinates") != remark.npos; };
  EXPECT_EQ(std::count_if(report.remarks.begin(), report.remarks.end(), told), 1);
}

TEST(Plots, BytesDependOnTheDrawingAlone) {
  const qvtest::TemporaryDirectory directory;
  std::string files[2];
  for (int k = 0; k < 2; ++k) {
    DXF drawing;
    drawing.New_MemDxf();
    ACAD_BLOCK* blocks[] = {new ACAD_BLOCK, new ACAD_BLOCK};
    if ((blocks[0] < blocks[1]) == (k == 0)) std::swap(blocks[0], blocks[1]);  // either order in memory
    for (int i = 0; i < 2; ++i) {
      qv::copy_text(blocks[i]->m_szName, i == 0 ? "A" : "B");
      for (int line = 0; line < 4; ++line) {
        auto* const record = new ACAD_LINE;
        record->m_End = {static_cast<float>(10 + line), static_cast<float>(20 * i), 0};
        blocks[i]->m_EntityList.AddTail(record);
      }
      drawing.m_BlockList.AddTail(blocks[i]);
    }
    for (int i = 0; i < 4; ++i) {
      auto* const insert = new ACAD_INSERT;
      qv::copy_text(insert->m_szBlock, i % 2 == 0 ? "A" : "B");
      insert->m_Insert.x = static_cast<float>(100 * i);
      drawing.m_EntityList.AddTail(insert);
    }
    const PlotSource source{&drawing, nullptr, "d", 1};
    PlotReport report;
    ASSERT_TRUE(Plot({&source, 1}, directory.path("d.pdf"), {}, report));
    files[k] = directory.read("d.pdf");
  }
  EXPECT_EQ(files[0], files[1]);
}

TEST(Pictures, ShowWhatADrawingSays) {
  DXF drawing;
  drawing.New_MemDxf();
  const float dashes[] = {10, -10};
  drawing.Add_LType("WIDE", "", 2, 20, dashes);
  drawing.Add_Layer("RED", 1, "WIDE");
  drawing.Add_Layer("OFF", -3, "CONTINUOUS");
  drawing.Write_Line(0, 50, 0, 100, 50, 0, "RED", "BYLAYER", "BYLAYER");
  drawing.Write_Line(0, 20, 0, 100, 20, 0, "OFF", "BYLAYER", "BYLAYER");
  drawing.Write_Line(0, 80, 0, 100, 80, 0, "0", "7", "CONTINUOUS");
  PictureOptions options;
  options.size = {100, 100};
  options.window = DrawingRect{0, 0, 100, 100};
  const auto light = MakePicture(drawing, options);
  ASSERT_TRUE(light);
  // The first and the last dash share what is left over: 10 to begin with, and gaps of 10 between dashes of 10.
  const auto red = [&](int x) { return light->GetPixel(x, 50) == rgb(255, 0, 0); };
  EXPECT_TRUE(red(2) && red(97) && red(30) && !red(20) && !red(40)) << red(20) << red(40);
  for (int x = 0; x < 100; ++x) EXPECT_EQ(light->GetPixel(x, 80), rgb(255, 255, 255));
  EXPECT_EQ(light->GetPixel(50, 20), rgb(0, 0, 0));
  options.background = 0;
  options.appearance.patterns = &SolidLines();
  const auto dark = MakePicture(drawing, options);
  EXPECT_EQ(dark->GetPixel(50, 20), rgb(255, 255, 255));
  EXPECT_EQ(dark->GetPixel(20, 50), rgb(255, 0, 0));
  Palette violet = StandardPalette();
  violet[1] = rgb(128, 0, 255);
  options.appearance.palette = &violet;
  EXPECT_EQ(MakePicture(drawing, options)->GetPixel(20, 50), rgb(128, 0, 255));
  // The same on a device of any kind, here of more pixels than a screen has.
  options.size = {4000, 2200};
  BitmapContext large(4000, 2200, 0);
  ASSERT_TRUE(DrawPicture(drawing, large, options));
  EXPECT_EQ(large.GetPixel(3000, 2200 * 20 / 100), rgb(255, 255, 255));
  options.size = {0, 100};
  EXPECT_FALSE(MakePicture(drawing, options));
}

}  // namespace
}  // namespace qv
