#include <climits>
#include <functional>

#include "drawing/sheet_model.h"

using namespace qvtest;

namespace {

class Charts : public Sheets {
 protected:
  static std::vector<std::string> labels(const std::vector<Figure>& figures) {
    std::vector<std::string> texts;
    for (const Figure& f : figures)
      if (f.kind.find("text STANDARD") == 0) texts.push_back(f.text);
    return texts;
  }
};

TEST_F(Charts, AnAxisBox) {
  compare(
      "axes", [](CBase_SGT& g, float) { g.Draw_Axis(100, 200, 0, 1, 10, 30, 4000, 2000, 2, 2, "ab", "c"); },
      [](Model& m) {
        const double th = 300;
        const auto label = [&](XY p, const std::string& text, double share) {
          m.text({p.x - share * Model::width(text, th), p.y}, th, 0, text);
        };
        for (int i = 0; i <= 2; ++i) {
          m.color = "8";
          m.line({100 + 2000.0 * i, 200}, {100 + 2000.0 * i, 2200});
          m.color = "7";
          label({100 + 2000.0 * i, 200 - 2 * th}, i == 0 ? "0.00" : i == 1 ? "0.50" : "1.00", 0.5);
        }
        for (int i = 0; i <= 2; ++i) {
          m.color = "8";
          m.line({100, 200 + 1000.0 * i}, {4100, 200 + 1000.0 * i});
          m.color = "7";
          label({100 - 0.5 * th, 200 + 1000.0 * i - th / 2}, i == 0 ? "10.00" : i == 1 ? "20.00" : "30.00", 1);
        }
        const XY corner[] = {{100, 200}, {4100, 200}, {4100, 2200}, {100, 2200}};
        for (int i = 0; i < 4; ++i) m.line(corner[i], corner[(i + 1) % 4]);
        m.style = "HZ";
        m.text({2100 - 0.4 * th * 2, 2200 + th}, 2 * th, 0, "ab");
        m.text({100 - Model::width("10.00", th) - 1.5 * th, 1200 - 0.4 * th}, 2 * th, 90, "c");
      });
}

TEST_F(Charts, TicksAndTheirFormats) {
  const struct {
    int format;
    const char* x;
    const char* y;
  } formats[] = {{0, "2", "2"},          {1, "2.0", "2.0"},        {2, "2.00", "2.00"}, {3, "2.000", "2.00"},
                 {4, "2.0000", "2.000"}, {5, "2.00000", "2.0000"}, {-1, "2.00", "2.00"}};
  for (const auto& f : formats) {
    const auto sgt = composer(Model(1));
    sgt->m_nAxisXFormat = sgt->m_nAxisYFormat = f.format;
    sgt->Draw_Axis(0, 0, 1.9F, 2.9F, 1.9F, 2.9F, 100, 100, 2, 2, "", "");
    const auto texts = labels(drawn(*sgt));
    ASSERT_EQ(texts.size(), 4U) << "two and a half";
    EXPECT_EQ(texts[0], f.x);
    EXPECT_EQ(texts[2], f.y);
  }
  // Both ends of a range whose steps no float holds exactly, and ranges without an end or a width.
  const auto ticks = [](float low, float high, int n) {
    const auto sgt = composer(Model(1));
    sgt->Draw_Axis(0, 0, low, high, 0.3F, 0.9F, 100, 100, n, 1, "", "");
    return labels(drawn(*sgt));
  };
  EXPECT_EQ(ticks(0.3F, 0.9F, 6), (std::vector<std::string>{"0.30", "0.40", "0.50", "0.60", "0.70", "0.80", "0.90"}));
  EXPECT_EQ(ticks(-0.2F, 0.2F, 4), (std::vector<std::string>{"-0.20", "-0.10", "0.00", "0.10", "0.20"}));
  EXPECT_EQ(ticks(2, 2, 0).size(), 1U) << "a range of nothing is 1e-5 wide";
  EXPECT_LE(ticks(-HUGE_VALF, HUGE_VALF, 9).size(), 18U);
  EXPECT_LE(ticks(NAN, 1, -5).size(), 2U);
  EXPECT_LE(ticks(0, 3e38F, INT_MAX).size(), 2000U);
  EXPECT_LE(ticks(1e30F, 1e30F, 3).size(), 6U);
}

TEST_F(Charts, CurvesAreMappedIntoTheBox) {
  const float x[] = {0, 1, 2};
  const float y[] = {0, 10, 5};
  const float z[] = {10, 0, 10};
  for (const bool types : {false, true}) {
    const auto sgt = composer(Model(1));
    if (types) sgt->Add_Default_LineType();
    sgt->MoveTo(7, 8);
    sgt->Draw_Axis(100, 200, 0, 2, 0, 10, 400, 200, 2, 2, "x", "y");
    const std::size_t axes = drawn(*sgt).size();
    sgt->Draw_Curve2(100, 200, 3, x, y, z, 0, 2, 0, 10, 400, 200, 2, 2, "x", "y", 7, 0, 1);
    const std::vector<Figure> figures = drawn(*sgt);
    const std::vector<Figure> curves(figures.begin() + 2 * static_cast<std::ptrdiff_t>(axes), figures.end());
    std::vector<Figure> expected = {{"line", "7", "", {100, 200, 300, 400}}, {"line", "7", "", {300, 400, 500, 300}},
                                    {"circle", "7", "", {100, 200, 9}},      {"circle", "7", "", {300, 400, 9}},
                                    {"circle", "7", "", {500, 300, 9}},      {"line", "1", "", {100, 400, 300, 200}},
                                    {"line", "1", "", {300, 200, 500, 400}}};
    ASSERT_EQ(curves.size(), expected.size() + 12) << "three squares";
    for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(curves[i], expected[i]) << i;
    EXPECT_EQ(curves[7], (Figure{"line", "1", "", {91, 391, 109, 391}}));
    POSITION at = sgt->m_EntityList.GetHeadPosition();
    for (std::size_t i = 0; i < 2 * axes + 5; ++i) sgt->m_EntityList.GetNext(at);
    const auto* second = static_cast<ACAD_LINE*>(sgt->m_EntityList.GetAt(at));
    EXPECT_STREQ(second->m_szLType, types ? "DASHED" : "BYLAYER");
  }
}

TEST_F(Charts, ARecordDescribesACurve) {
  CArray<float, float> x;
  CArray<float, float> y;
  CBase_SGT::CURVEINFO info;
  info.width = info.height = 100;
  info.xmax = info.ymax = 1;
  info.values = 1;
  info.marker = 3;
  const auto sgt = composer(Model(1));
  x.Add(0);
  y.Add(0.125F);
  EXPECT_EQ(sgt->Draw_XY(info, x, y), 0);
  x.Add(1);
  EXPECT_EQ(sgt->Draw_XY(info, x, y), 0);
  EXPECT_TRUE(drawn(*sgt).empty());
  y.Add(1);
  EXPECT_EQ(sgt->Draw_XY(info, x, y), 1);
  const std::vector<Figure> figures = drawn(*sgt);
  ASSERT_GT(figures.size(), 7U);
  EXPECT_EQ(figures[figures.size() - 7], (Figure{"line", "1", "", {0, 12.5, 100, 100}}));
  EXPECT_EQ(figures.back().text, "1.00");
  EXPECT_EQ(figures.back().color, "1");
}

// Every symbol, from an environment in which nothing is as by default.
TEST_F(Charts, EverySymbolLeavesTheEnvironmentAsItWas) {
  const float x[] = {0, 900, 1800};
  const float y[] = {0, 700, 300};
  CArray<float, float> xs;
  CArray<float, float> ys;
  for (int i = 0; i < 3; ++i) {
    xs.Add(x[i]);
    ys.Add(y[i]);
  }
  const CBase_SGT::CLiangZongJin bars[] = {{4, 1, 20, 1}, {2, 1, 20, -1}, {2, 1, 12, 0}};
  const std::function<void(CBase_SGT&)> symbols[] = {
      [&](CBase_SGT& g) { g.Draw_TuKuang(0, 0, 1, 0, 0); },
      [&](CBase_SGT& g) { g.Draw_BiaoTiLan(0, 0, 1); },
      [&](CBase_SGT& g) { g.Draw_HuiQianLan(0, 0, 45); },
      [&](CBase_SGT& g) { g.Draw_TuMing(0, 0, "t", 1, 1); },
      [&](CBase_SGT& g) { g.Draw_ZhouFu(0, 0, 1, 1, "1"); },
      [&](CBase_SGT& g) { g.Draw_Dim_Polar(0, 0, 9, "t", 0, 1, 1); },
      [&](CBase_SGT& g) { g.Draw_Dim_Polar(0, 0, 9, 0, 1, 1); },
      [&](CBase_SGT& g) { g.Draw_Dim_Points(0, 0, 9, 0, 1, 1); },
      [&](CBase_SGT& g) { g.Draw_Dim_Points(0, 0, 9, 0, "t", 1, 1); },
      [&](CBase_SGT& g) { g.Draw_Dim_Points(3, x, y, 1, 1, 1); },
      [&](CBase_SGT& g) { g.Draw_BiaoGao(0, 0, 1, 1); },
      [&](CBase_SGT& g) { g.Draw_DimJiaoDu(0, 0, 9, 0, "", 30); },
      [&](CBase_SGT& g) { g.Draw_Cut_Sym(0, 0, 9, 9); },
      [&](CBase_SGT& g) { g.Draw_PouXian(0, 0, 9, 9, "1", 1, 1); },
      [&](CBase_SGT& g) { g.Draw_TuMianXian(0, 0, 9000, 9, 0, 1); },
      [&](CBase_SGT& g) { g.DrawLineArrow(0, 0, 9, 9); },
      [&](CBase_SGT& g) { g.DrawArcArrow(0, 0, 9, 1); },
      [&](CBase_SGT& g) { g.Draw_XianGangJin(0, 0, 9, 9); },
      [&](CBase_SGT& g) { g.Draw_XianGangJin(3, x, y); },
      [&](CBase_SGT& g) { g.Draw_XianGangJin_Out_2PraLine(0, 0, 9, 9); },
      [&](CBase_SGT& g) { g.Draw_Line_Out_2PraLine(0, 0, 9, 9); },
      [&](CBase_SGT& g) { g.Draw_DoNut_RW(0, 0, 9, 1); },
      [&](CBase_SGT& g) { g.Draw_YuanDian(0, 0, 9); },
      [&](CBase_SGT& g) { g.Draw_DoNutGangJin(0, 0, 9, 1); },
      [&](CBase_SGT& g) { g.Draw_YuanDianGangJin(0, 0, 1, 1); },
      [&](CBase_SGT& g) { g.Draw_RectGangJin_C(9, 9, 0, 0, 9, 1); },
      [&](CBase_SGT& g) { g.Draw_RectGangJin_LB(9, 9, 0, 0, 9); },
      [&](CBase_SGT& g) { g.Draw_RectGangJin_C_CutL(9, 9, 0, 0, 9, 1, 1, 1); },
      [&](CBase_SGT& g) { g.Draw_RectGangJin_LB_CutL(9, 9, 0, 0, 9, 1, 1); },
      [&](CBase_SGT& g) { g.Draw_Rect_LB_CutL(9, 9, 0, 0, 9, 1, 1); },
      [&](CBase_SGT& g) { g.Draw_LaJieJin(0, 0, 9000, 0, 1); },
      [&](CBase_SGT& g) { g.Draw_Line_BiaoZhu(0, 0, 9, 9); },
      [&](CBase_SGT& g) { g.Draw_GangJin_BiaoZhu(0, 0, 9, 9, 9, 1, "t"); },
      [&](CBase_SGT& g) { g.Draw_GangJin_BiaoZhu(0, 0, 3, x, y, 9, 1, 1, 1, "t"); },
      [&](CBase_SGT& g) { g.Draw_GJH(0, 0, 9, 1); },
      [&](CBase_SGT& g) { g.Draw_GJH_And_Text_Along_Line(0, 0, 9, 9, 2, 1, 1, "t", 1, 1); },
      [&](CBase_SGT& g) {
        g.Draw_Liang_Section(0, 0, 3000, 6000, 9, 3, bars, {1, 8, 100, 3}, 1);
      },
      [&](CBase_SGT& g) { g.Draw_Axis(0, 0, 0, 9, 0, 9, 9, 9, 2, 2, "x", "y"); },
      [&](CBase_SGT& g) { g.Draw_Curve(0, 0, 3, x, y, 0, 9, 0, 9, 9, 9, 2, 2, "x", "y", 1, 1, 2); },
      [&](CBase_SGT& g) { g.Draw_Curve2(0, 0, 3, x, y, y, 0, 9, 0, 9, 9, 9, 2, 2, "x", "y", 1, 1, 2); },
      [&](CBase_SGT& g) {
        g.Draw_XY({0, 0, 9, 9, 0, 9, 0, 9, 2, 2, "x", "y", 1, 1, 1, 1}, xs, ys);
      },
  };
  int index = 0;
  for (const auto& symbol : symbols) {
    Model elsewhere(20);
    elsewhere.put_elsewhere();
    const auto sgt = composer(elsewhere);
    sgt->Add_Layer("WALL", 1, "CONTINUOUS");
    sgt->Add_Default_LineType();
    sgt->SetCurLayer("WALL");
    sgt->SetCurLType("DOT");
    sgt->SetCurColor("5");
    sgt->SetCurStyle("HZ");
    sgt->m_bRectSide[1] = 0;
    sgt->m_nDimDecimals = 3;
    sgt->MoveTo(11, 12);
    sgt->Push_ENV();
    sgt->MoveTo(13, 14);
    // All members are of four bytes or texts of a multiple of four, so the bytes hold no gaps.
    const qv::SgtEnvironment before = *sgt;
    symbol(*sgt);
    EXPECT_GT(sgt->m_EntityList.GetCount(), 0) << index;
    EXPECT_EQ(sgt->m_ENVList.GetCount(), 1) << index;
    EXPECT_EQ(std::memcmp(&before, static_cast<qv::SgtEnvironment*>(sgt.get()), sizeof before), 0) << index;
    ++index;
  }
}

}  // namespace
