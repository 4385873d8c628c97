#include <gmock/gmock.h>

#include "qvtools/plot/plot.h"

using namespace qv;

namespace {

/// A printer that keeps what it is told.
class Printer : public CDC {
 public:
  void MoveTo(int x, int y) override { at_ = {x, y}; }
  void LineTo(int x, int y) override {
    lines.push_back({at_, {x, y}, Pen().width});
    at_ = {x, y};
  }
  void SetPixel(int, int, COLORREF) override { ++dots; }
  void FillRgn(const CRgn& region, const CBrush&) override { polygons.push_back(region.GetRgnBox()); }
  CSize GetResolution() const override { return {10000, 10000}; }
  bool IsPrinting() const override { return true; }

  struct Line {
    CPoint from;
    CPoint to;
    int width;
  };
  std::vector<Line> lines;
  std::vector<CRect> polygons;
  int dots = 0;

 private:
  CPoint at_;
};

/// Two crossing lines of 100, one on a layer that is off.
std::unique_ptr<DXF> cross() {
  auto dxf = std::make_unique<DXF>();
  dxf->New_MemDxf();
  dxf->Add_Layer("ON", 1, "CONTINUOUS");
  dxf->Add_Layer("OFF", -3, "CONTINUOUS");
  dxf->Write_Line(0, 0, 0, 100, 0, 0, "ON", "BYLAYER", "BYLAYER");
  dxf->Write_Line(50, 0, 0, 50, 100, 0, "OFF", "BYLAYER", "BYLAYER");
  return dxf;
}

/// At 1:1, 10 mm from the left and 20 mm from the lower edge of an A4 that lies.
PlotOptions placed() {
  PlotOptions options;
  options.paper = paper_named("A4");
  options.orientation = PlotOptions::Orientation::Landscape;
  options.scale = 1;
  options.offset = PlotPoint{10, 20};
  options.window = DrawingRect{0, -1, 100, 100};
  options.colors = PlotColors::Color;
  return options;
}

TEST(PlotPages, LieToScaleOnADeviceFromAnyCorner) {
  const auto dxf = cross();
  const PlotSource source{dxf.get(), nullptr, "d"};
  PlotPages pages({&source, 1}, placed());
  ASSERT_EQ(pages.report().pages.size(), 1u) << pages.report().problem;
  EXPECT_EQ(pages.report().pages[0].paper, (PaperSize{297, 210}));
  // 4 dots a millimetre: the line lies 21 mm above the lower edge, from 10 to 110 mm.
  BitmapContext bitmap(500, 100, 0xFFFFFF);
  ASSERT_TRUE(pages.draw(0, bitmap, 4, {20, 700}));
  const auto red = [&](int x, int y) { return bitmap.GetPixel(x, y) == rgb(255, 0, 0); };
  constexpr int kRow = (210 - 21) * 4 - 700;
  EXPECT_TRUE(red(22, kRow) && red(418, kRow));
  EXPECT_FALSE(red(17, kRow) || red(423, kRow) || red(200, kRow - 3) || red(200, kRow + 3));
  EXPECT_FALSE(pages.draw(1, bitmap, 4));
  EXPECT_FALSE(pages.draw(0, bitmap, 0));
}

TEST(PlotPages, ShowTheLayersThatTheProgramShows) {
  const auto dxf = cross();
  PlotSource source{dxf.get(), nullptr, "d"};
  const auto count = [&](COLORREF color) {
    BitmapContext bitmap(297, 210, 0xFFFFFF);
    PlotPages({&source, 1}, placed()).draw(0, bitmap, 1);
    int n = 0;
    for (int y = 0; y < 210; ++y)
      for (int x = 0; x < 297; ++x) n += bitmap.GetPixel(x, y) == color;
    return n;
  };
  const COLORREF red = rgb(255, 0, 0), green = rgb(0, 255, 0);
  EXPECT_GT(count(red), 90);
  EXPECT_EQ(count(green), 0);
  source.shows = [](const char* layer) { return std::string_view(layer) == "OFF"; };
  EXPECT_EQ(count(red), 0);
  EXPECT_GT(count(green), 90);
}

TEST(PlotPages, GoToPrintersAsWideLinesAndPolygons) {
  const auto dxf = cross();
  dxf->Write_Pline(0, 50, 0, 100, 50, 0, 5, 5, "ON", "BYLAYER", "BYLAYER");
  const PlotSource source{dxf.get(), nullptr, "d"};
  PlotOptions options = placed();
  std::string problem;
  const auto pens = PenTable::parse("any -> 0.5", problem);
  options.pens = &*pens;
  Printer printer;
  ASSERT_TRUE(PlotPages({&source, 1}, options).draw(0, printer, 20));
  ASSERT_EQ(printer.lines.size(), 1u);
  EXPECT_EQ(printer.lines[0].width, 10);
  EXPECT_NEAR(printer.lines[0].to.x - printer.lines[0].from.x, 2000, 1);
  EXPECT_EQ(printer.dots, 0);
  // What is wide of its own has butt ends, which pens have not.
  ASSERT_EQ(printer.polygons.size(), 1u);
  EXPECT_NEAR(printer.polygons[0].Width(), 2000, 2);
  EXPECT_NEAR(printer.polygons[0].Height(), 100, 2);
}

TEST(PlotPages, AreSeenFromADirectionThroughAWindowOnly) {
  DXF dxf;
  dxf.New_MemDxf();
  dxf.Write_Line(0, 0, 0, 0, 0, 50, "0", "1", "CONTINUOUS");  // upright
  const PlotSource source{&dxf, nullptr, "d"};
  PlotOptions options = placed();
  options.view = PictureOptions::View{0, 0};  // from the front
  BitmapContext bitmap(297, 210, 0xFFFFFF);
  ASSERT_TRUE(PlotPages({&source, 1}, options).draw(0, bitmap, 1));
  EXPECT_NE(bitmap.GetPixel(10, 210 - 21 - 25), rgb(255, 255, 255)) << "half way up";
  options.window.reset();
  const PlotPages none({&source, 1}, options);
  EXPECT_TRUE(none.report().pages.empty());
  EXPECT_FALSE(none.report().problem.empty());
}

}  // namespace
