#include <functional>

#include "drawing/sheet_model.h"

using namespace qvtest;

namespace {

class Reinforcement : public Sheets {};

constexpr double kLine = 0.65;  // mm at the default pen
constexpr double kDot = 0.975;

TEST_F(Reinforcement, BarsInElevationAndSection) {
  compare(
      "bar", [](CBase_SGT& g, float) { g.Draw_XianGangJin(0, 0, 1000, 0); },
      [](Model& m) {
        m.color = "1";
        m.polyline("open", {{0, 0}, {1000, 0}}, kLine * m.s * m.widthFactor);
      });
  compare(
      "at most 20 points",
      [](CBase_SGT& g, float) {
        float x[25];
        float y[25];
        for (int i = 0; i < 25; ++i) x[i] = y[i] = static_cast<float>(i);
        g.Draw_XianGangJin(25, x, y);
        g.Draw_XianGangJin(1, x, y);
        EXPECT_EQ(x[19], 19) << "the caller's points stay";
      },
      [](Model& m) {
        m.color = "1";
        std::vector<XY> points;
        for (double i = 0; i < 20; ++i) points.push_back({i, i});
        m.polyline("open", points, kLine * m.s * m.length);
      });
  compare(
      "rings and dots",
      [](CBase_SGT& g, float) {
        g.Draw_DoNut(100, 200, 40, 20);
        g.Draw_DoNut_RW(0, 0, 30, 20);
        g.Draw_YuanDian(0, 0, 50);
        g.Draw_DoNut(0, 0, 5, 5);
        g.Draw_YuanDianGangJin(100, 200, 1, -1);
      },
      [](Model& m) {
        m.polyline("closed", {{100, 230}, {100, 170}}, 20 * m.length, 1);
        m.polyline("closed", {{0, 30}, {0, -30}}, 20 * m.length, 1);
        m.polyline("closed", {{0, 25}, {0, -25}}, 50 * m.length, 1);
        m.polyline("closed", {{0, 5}, {0, -5}}, 0, 1);
        m.color = "1";
        const double d = kDot * m.s / 2;
        m.polyline("closed", {{100 + d, 200 - d + d / 2}, {100 + d, 200 - d - d / 2}}, d * m.length, 1);
      });
}

TEST_F(Reinforcement, Stirrups) {
  compare(
      "outer edge on the outline, and without an inset",
      [](CBase_SGT& g, float) {
        g.Draw_RectGangJin_C(300, 600, 1000, 0, 90, 1);
        g.Draw_RectGangJin_LB(300, 600, 10, 20, 0);
      },
      [](Model& m) {
        m.color = "1";
        const double line = kLine * m.s;
        const XY half{150 - line / 2, 300 - line / 2};
        // Turned clockwise: the lower left corner goes to the upper left.
        m.polyline(
            "closed",
            {{1000 - half.y, half.x}, {1000 - half.y, -half.x}, {1000 + half.y, -half.x}, {1000 + half.y, half.x}},
            line * m.length);
        m.polyline("closed", {{10, 20}, {310, 20}, {310, 620}, {10, 620}}, line * m.length);
      });
  compare(
      "with hooks past a bar in the corner",
      [](CBase_SGT& g, float) {
        g.Draw_RectGangJin_LB_CutL(3000, 6000, 0, 0, 90, 300, 200);
        g.Draw_Rect_C_CutL(3000, 6000, 0, 0, 90, 300, 200);
      },
      [](Model& m) {
        const auto outline = [&](double clear) {
          return std::vector<XY>{{-1500 + clear + 300, 2700},
                                 {-1500 + clear, 3000},
                                 {-1500, 3000},
                                 {-1500, -3000},
                                 {1500, -3000},
                                 {1500, 3000},
                                 {-1500, 3000},
                                 {-1500, 3000 - clear},
                                 {-1300, 2800 - clear}};
        };
        m.color = "1";
        std::vector<XY> wide;
        for (const XY p : outline(0.7071068 * (kDot + kLine) * m.s)) wide.push_back(turned(p + XY{1500, 3000}, -90));
        m.polyline("open", wide, kLine * m.s * m.length);
        m.color = "7";
        const std::vector<XY> thin = outline(0.7071068 * kDot * m.s);
        for (int i = 0; i < 8; ++i)
          m.line(turned(thin[static_cast<std::size_t>(i)], 90), turned(thin[static_cast<std::size_t>(i) + 1], 90));
      });
}

TEST_F(Reinforcement, Ties) {
  for (const int side : {0, 1})
    compare(
        "tie", [&](CBase_SGT& g, float) { g.Draw_LaJieJin(100, 100, 100, 3100, side); },
        [&](Model& m) {
          m.color = "1";
          const double e = (kDot + kLine) * m.s / 2;
          const double half = std::sqrt(3000.0 * 3000 - 4 * e * e) / 2;
          const double mirror = side == 1 ? -1 : 1;
          const double angle = 90 + mirror * std::atan(e / half) * 180 / std::numbers::pi;
          const XY local[] = {{-half + e, mirror * 2 * e}, {-half - e, mirror * 2 * e}, {-half - e, 0}, {half + e, 0},
                              {half + e, -mirror * 2 * e}, {half - e, -2 * e}};
          std::vector<XY> points;
          for (const XY p : local) points.push_back(XY{100, 1600} + turned(p, angle));
          m.polyline("open", points, kLine * m.s * m.length);
        });
  // Dots too near each other: no numbers, and nothing behind it minds.
  const auto sgt = composer(Model(100));
  sgt->Draw_LaJieJin(0, 0, 1, 0, 1);
  EXPECT_TRUE(std::isnan(drawn(*sgt)[0].numbers[0]));
  sgt->GetFRect();
  const TemporaryDirectory directory;
  EXPECT_EQ(sgt->Write_MemDxf_To_File(directory.path("nan.dxf").c_str()), 1);
}

TEST_F(Reinforcement, PartsOutsideABand) {
  // The band is 200 wide about the upright x = 1000, given by two points of it.
  const struct {
    XY from;
    XY to;
    std::vector<std::pair<XY, XY>> parts;
  } lines[] = {{{0, 0}, {3000, 300}, {{{0, 0}, {900, 90}}, {{1100, 110}, {3000, 300}}}},
               {{3000, 0}, {1050, 0}, {{{3000, 0}, {1100, 0}}}},
               {{950, 0}, {0, 950}, {{{900, 50}, {0, 950}}}},
               {{950, 0}, {1050, 500}, {}},
               {{0, 0}, {800, 0}, {{{0, 0}, {800, 0}}}},
               {{1200, 0}, {1200, 500}, {{{1200, 0}, {1200, 500}}}},
               {{1000, 0}, {1000, 500}, {}}};
  for (const auto& line : lines) {
    const auto at = [](XY p) { return std::pair{static_cast<float>(p.x), static_cast<float>(p.y)}; };
    const auto [x1, y1] = at(line.from);
    const auto [x2, y2] = at(line.to);
    compare(
        "band",
        [&, x1 = x1, y1 = y1, x2 = x2, y2 = y2](CBase_SGT& g, float) {
          g.Set_Para_Draw_Out_2PraLine(1000, 100, 1000, 900, 200);
          g.Draw_Line_Out_2PraLine(x1, y1, x2, y2);
          g.Draw_XianGangJin_Out_2PraLine(x1, y1, x2, y2);
        },
        [&](Model& m) {
          for (const auto& [from, to] : line.parts) m.line(from, to);
          m.color = "1";
          for (const auto& [from, to] : line.parts) m.polyline("open", {from, to}, kLine * m.s * m.widthFactor);
        });
  }
}

TEST_F(Reinforcement, LabelTexts) {
  char text[64] = "kept";
  CBase_SGT::FormString_GJ_nqd(text, 4, 4, 25);
  CBase_SGT::FormString_GJ_qdas(text, 0, 8, 200);
  EXPECT_STREQ(text, "kept");
  CBase_SGT::FormString_GJ_nqd(text, 4, 3, 25);
  EXPECT_STREQ(text,
               "4\x8B"
               "25");
  CBase_SGT::FormString_GJ_qdas(text, 1, 8, 200);
  EXPECT_STREQ(text,
               "\x82"
               "8@200");
  CBase_SGT::FormString_GJ_nqd(text, 2, 2, 20);
  EXPECT_STREQ(text,
               "2\x83"
               "20");
  const std::pair<int, const char*> strands[] = {{9,
                                                  "4-7\x82"
                                                  "3"},
                                                 {12,
                                                  "4-7\x82"
                                                  "4"},
                                                 {15,
                                                  "4-7\x82"
                                                  "5"},
                                                 {10, "4-7\x82"}};
  for (const auto& [d, expected] : strands) {
    CBase_SGT::FormString_GJX_nqd(text, 4, d);
    EXPECT_STREQ(text, expected);
  }
}

void number(Model& m, XY center, double radius, double h, double angle, const std::string& text) {
  m.circle(center, radius);
  m.text(center + turned({-Model::width(text, h) / 2, -h / 2}, angle), h, angle, text, false);
}

void tick(Model& m, XY at) {
  const double t = 0.7071068 * m.s;
  m.line(at + XY{-t, -t}, at + XY{t, t});
}

TEST_F(Reinforcement, Labels) {
  compare(
      "one bar, to the left", [](CBase_SGT& g, float) { g.Draw_GangJin_BiaoZhu(0, 0, -500, 800, -1500, 12, "2x20"); },
      [](Model& m) {
        m.color = "4";
        const XY bar = m.place({0, 0});
        const XY knee = m.place({-500, 800});
        m.world = true;
        m.line(bar, knee);
        tick(m, bar);
        m.line(knee, knee + XY{-1500, 0});
        const double h = 2.5 * m.s;
        m.text(knee + XY{-4 * h, 0.5 * m.s}, h, 0, "2x20", false);
        number(m, knee + XY{-1500 - 3 * m.s, 0}, 3 * m.s, h, 0, "12");
      });
  for (const int flag : {0, 1})
    compare(
        "a row of bars",
        [&](CBase_SGT& g, float) {
          const float x[] = {0, 100};
          const float y[] = {0, 10};
          g.Draw_GangJin_BiaoZhu(500, 300, 2, x, y, 1500, 0, 0, flag, "2x20");
        },
        [&](Model& m) {
          m.color = "4";
          const XY bars[] = {m.place({0, 0}), m.place({100, 10})};
          const XY start = m.place({500, 300});
          m.world = true;
          for (const XY bar : bars) {
            m.line(bar, {bar.x, start.y});
            if (flag) tick(m, bar);
          }
          m.line({bars[0].x, start.y}, start + XY{1500, 0});
          m.text(start + XY{m.s, 0.5 * m.s}, 2.5 * m.s, 0, "2x20", false);
        });
  compare(
      "numbers alone and along a line",
      [](CBase_SGT& g, float) {
        g.Draw_GJH(100, 100, 250, 7);
        g.Draw_GJH_And_Text_Along_Line(0, 0, 0, 4000, 4, 1, 3, "x", 100, 50);
      },
      [](Model& m) {
        m.color = "4";
        const XY alone = m.place({100, 100});
        const XY from = m.place({0, 0});
        m.world = true;
        number(m, alone, 300, 250, 0, "7");
        const double angle = 90 + m.rotation;
        const double along = 1000 * m.length;
        number(m, from + turned({along, 100}, angle), 120, 100, angle, "3");
        m.text(from + turned({along + 120 + m.s, 50}, angle), 100, angle, "x", false);
      });
}

// What a reader of the sheet checks: bars inside the stirrup, rows and corners, labels apart, one for each row.
TEST_F(Reinforcement, BeamSections) {
  const auto sgt = composer(Model(25));
  const CBase_SGT::CLiangZongJin bars[] = {{2, 3, 25, 1}, {2, 3, 22, 1}, {2, 3, 20, 2}, {4, 2, 12, 0}, {3, 3, 20, -1}};
  sgt->Draw_Liang_Section(0, 0, 300, 600, 30, 5, bars, {1, 8, 100, 4}, 1);
  const double line = kLine * 25;
  const double inset = 30 + line + kDot * 25 / 2;
  std::vector<XY> dots;
  std::vector<std::pair<double, std::string>> labels;
  int stirrups = 0;
  for (const Figure& f : drawn(*sgt)) {
    if (f.kind == "closed" && f.numbers[4] == 1) dots.push_back({f.numbers[0], (f.numbers[1] + f.numbers[6]) / 2});
    if (f.kind == "open" || (f.kind == "closed" && f.numbers[4] == 0)) ++stirrups;
    if (f.text.size() > 2) labels.emplace_back(f.numbers[1], f.text);
  }
  EXPECT_EQ(stirrups, 2) << "four legs";
  ASSERT_EQ(dots.size(), 13U);
  for (const XY p : dots) {
    EXPECT_GE(p.x, inset - 0.01);
    EXPECT_LE(p.x, 300 - inset + 0.01);
    EXPECT_GE(p.y, inset - 0.01);
    EXPECT_LE(p.y, 600 - inset + 0.01);
  }
  const auto near = [](XY p, double x, double y) { return std::hypot(p.x - x, p.y - y) < 0.01; };
  EXPECT_TRUE(near(dots[0], inset, inset) && near(dots[3], 300 - inset, inset));
  EXPECT_NEAR(dots[1].x - dots[0].x, (300 - 2 * inset) / 3, 0.01);
  EXPECT_TRUE(near(dots[12], 300 - inset, 600 - inset));
  const char* const expected[] = {
      "2\x8B"
      "25+2\x8B"
      "22",
      "2\x8B"
      "20",
      "\x82"
      "8@100(4)",
      "4\x83"
      "12",
      "3\x8B"
      "20"};
  ASSERT_EQ(labels.size(), std::size(expected));
  for (std::size_t i = 0; i < labels.size(); ++i) {
    EXPECT_EQ(labels[i].second, expected[i]);
    EXPECT_GE(labels[i].first - (i == 0 ? -1e3 : labels[i - 1].first), 7 * 25 - 0.01);
  }
}

}  // namespace
