#include <functional>

#include "drawing/sheet_model.h"

using namespace qvtest;

namespace {

using Draw = std::function<void(CBase_SGT&, float)>;
using Expect = std::function<void(Model&)>;
struct Case {
  const char* name;
  Draw draw;
  Expect expect;
};

class Symbols : public Sheets {
 protected:
  static void compare_all(const std::vector<Case>& cases) {
    for (const Case& c : cases) compare(c.name, c.draw, c.expect);
  }
};

// A dimension's parts about the converted start point; u along it, v to its left.
void dimension(Model& m, XY start, double len, double angle, const std::string& text, bool above, bool longSide) {
  m.color = "4";
  const XY at = m.place(start);
  len *= m.length;
  angle = std::fmod(angle + m.rotation + 720, 360);
  m.world = true;
  const auto to = [&](double u, double v) { return at + turned({u, v - 100}, angle); };
  const double s = m.s;
  for (const double u : {0.0, len})
    longSide ? m.line(to(u, -2.5 * s), to(u, 20 * s)) : m.line(to(u, -20 * s), to(u, 2.5 * s));
  m.line(to(0, 0), to(len, 0));
  const double t = 0.7071068 * s;
  for (const double u : {0.0, len}) m.polyline("open", {to(u - t, -t), to(u + t, t)}, 0.65 * s * m.widthFactor);
  const double h = 2.5 * s;
  m.text(to((len - Model::width(text, h)) / 2, above ? 0.5 * s : -0.5 * s - h), h, angle, text);
  m.world = false;
}

TEST_F(Symbols, Dimensions) {
  compare_all({
      {"with a text", [](CBase_SGT& g, float) { g.Draw_Dim_Polar(10, 20, 6000, "L", 0, 1, 1); },
       [](Model& m) {
         dimension(m, {10, 20}, 6000, 0, "L", true, true);
       }},
      {"downward reads upright", [](CBase_SGT& g, float) { g.Draw_Dim_Polar(0, 0, 3000, "3000", -90, 0, 0); },
       [](Model& m) {
         dimension(m, {0, 0}, 3000, -90, "3000", false, false);
       }},
      {"with decimals",
       [](CBase_SGT& g, float) {
         g.m_nDimDecimals = 2;
         g.Draw_Dim_Points(0.0F, 0, 0, 1234.5F, 1, 1);
       },
       [](Model& m) {
         dimension(m, {0, 0}, 1234.5, 90, "1234.50", true, true);
       }},
      {"a chain on its other side",
       [](CBase_SGT& g, float) {
         const float x[] = {0, 1000, 3000};
         const float y[] = {0, 0, 0};
         g.Draw_Dim_Points(3, x, y, 1, 1, 0);
         g.Draw_Dim_Points(1, x, y, 0, 1, 1);
       },
       [](Model& m) {
         dimension(m, {1000, 0}, 1000, 180, "1000", true, false);
         dimension(m, {3000, 0}, 2000, 180, "2000", true, false);
       }},
      {"too short or without an end", [](CBase_SGT& g, float) { g.Draw_Dim_Polar(0, 0, 0.00009F, "x", 0, 1, 1); },
       [](Model&) {}},
  });
  for (const float angle : {1e30F, -1e30F, -1e-9F, HUGE_VALF, NAN}) {
    const auto sgt = composer(Model(100));
    sgt->m_nDimDecimals = 1000;
    sgt->Draw_Dim_Polar(0, 0, 1, angle, 1, 1);
    const double rotation = drawn(*sgt).back().numbers[3];
    EXPECT_TRUE(rotation >= 0 && rotation < 360 + 180) << angle;
    EXPECT_EQ(drawn(*sgt).back().text, "1.00000000000000000000");
  }
}

TEST_F(Symbols, Elevations) {
  const auto mark = [](Model& m, const std::string& text, bool left) {
    m.color = "4";
    const double s = m.s;
    const double w = static_cast<double>(text.size()) * 2.5 * s * 0.85;
    m.line({500, 600}, {500 - 3 * s, 600 + 3 * s});
    m.line({500, 600}, {500 + 3 * s, 600 + 3 * s});
    if (left)
      m.line({500 + 3 * s, 600 + 3 * s}, {500 - 3 * s - w, 600 + 3 * s});
    else
      m.line({500 - 3 * s, 600 + 3 * s}, {500 + 3 * s + w, 600 + 3 * s});
    m.text({left ? 500 - 3 * s - w : 500, 600 + 3.5 * s}, 2.5 * s, 0, text);
  };
  const struct {
    float value;
    int left;
    const char* text;
  } values[] = {{3.5F, 0, "3.500"},
                {-12.25F, 1, "-12.250"},
                {0, 0,
                 "\x85"
                 "0.000"},
                {-0.00005F, 1,
                 "\x85"
                 "0.000"}};
  for (const auto& v : values)
    compare(
        v.text, [&](CBase_SGT& g, float) { g.Draw_BiaoGao(500, 600, v.value, v.left); },
        [&](Model& m) { mark(m, v.text, v.left); });
}

TEST_F(Symbols, TitlesAxesAndBreaks) {
  compare_all({
      {"title", [](CBase_SGT& g, float) { g.Draw_TuMing(100, 200, "KL-1", 1, 1); },
       [](Model& m) {
         const XY at = m.place({100, 200});
         m.world = true;
         const double half = 4 * 7 * 0.5 * m.s / 2;
         m.polyline("open", {at + XY{-half, 0}, at + XY{half, 0}}, 0.65 * m.s);
         m.line(at + XY{-half, -1.2 * m.s}, at + XY{half, -1.2 * m.s});
         m.style = "HZ";
         m.text(at + XY{-0.9 * half, 0.5 * m.s + 0.325 * m.s}, 7 * m.s, 0, "KL-1", false);
       }},
      {"bubble", [](CBase_SGT& g, float) { g.Draw_ZhouFu(0, 0, 3000, 4000, "12"); },
       [](Model& m) {
         m.color = "4";
         const XY from = m.place({0, 0});
         const XY to = m.place({3000, 4000});
         m.world = true;
         m.line(from, to);
         const double reach = 5000 * m.length + 4 * m.s;
         const XY center = from + reach * turned({0.6, 0.8}, m.rotation);
         m.circle(center, 4 * m.s);
         const double h = 2.5 * m.s;
         m.text(center + XY{-0.75 * h, -h / 2}, h, 0, "12", false);
       }},
      {"bubble without a text", [](CBase_SGT& g, float) { g.Draw_ZhouFu(0, 0, 0, -100, ""); },
       [](Model& m) {
         m.color = "4";
         m.line({0, 0}, {0, -100});
         m.world = true;
         m.circle(m.place({0, -100}) + turned({0, -4 * m.s}, m.rotation), 4 * m.s);
       }},
      {"break", [](CBase_SGT& g, float) { g.Draw_Cut_Sym(0, 1000, 0, 3000); },
       [](Model& m) {
         const XY from = m.place({0, 1000});
         const double len = 2000 * m.length;
         const double s = m.s;
         const XY local[] = {{-2.5 * s, 0},
                             {len / 2 - 0.75 * s, 0},
                             {len / 2 - 0.375 * s, 2 * s},
                             {len / 2 + 0.375 * s, -2 * s},
                             {len / 2 + 0.75 * s, 0},
                             {len + 2.5 * s, 0}};
         m.world = true;
         for (int i = 0; i < 5; ++i)
           m.line(from + turned(local[i], 90 + m.rotation), from + turned(local[i + 1], 90 + m.rotation));
       }},
  });
}

void arrowhead(Model& m, XY tip, double angle) {
  m.line(tip, tip + turned({-2.5 * m.s, 0.8 * m.s}, angle));
  m.line(tip, tip + turned({-2.5 * m.s, -0.8 * m.s}, angle));
}

TEST_F(Symbols, Arrows) {
  compare_all({
      {"line",
       [](CBase_SGT& g, float) {
         g.MoveTo(100, 100);
         g.ArrowTo_Relative(0, 500);
         EXPECT_EQ(g.m_fPenY, 600);
       },
       [&](Model& m) {
         m.line({100, 100}, {100, 600});
         arrowhead(m, {100, 600}, 90);
       }},
      {"arc, end", [](CBase_SGT& g, float) { g.DrawArcArrow(0, 0, 30, 0); },
       [&](Model& m) {
         const XY center = turned({0, -6 * m.s}, 30);
         m.arc(center, 6 * m.s, 90, 150);
         arrowhead(m, center + turned({6 * m.s, 0}, 150), 230);
       }},
      {"arc, start", [](CBase_SGT& g, float) { g.DrawArcArrow(0, 0, 0, 1); },
       [&](Model& m) {
         m.arc({0, -6 * m.s}, 6 * m.s, 60, 120);
         arrowhead(m, XY{0, -6 * m.s} + turned({6 * m.s, 0}, 60), -20);
       }},
  });
}

void countersign(Model& m, XY at, double angle) {
  const double s = m.s;
  for (int k = 0; k <= 4; ++k) m.line(at + turned({0, 5 * k * s}, angle), at + turned({-75 * s, 5 * k * s}, angle));
  for (int k = 0; k <= 3; ++k) m.line(at + turned({-25 * k * s, 0}, angle), at + turned({-25 * k * s, 20 * s}, angle));
}

void title_block(Model& m, XY at, double width) {
  const double s = m.s;
  const auto to = [&](double x, double y) { return at + XY{x * s, y * s}; };
  m.polyline("closed", {to(-180, 0), to(0, 0), to(0, 40), to(-180, 40)}, width * s * m.length);
  m.line(to(-180, 10), to(0, 10));
  m.line(to(-180, 20), to(0, 20));
  m.line(to(-90, 30), to(0, 30));
  for (int k = 1; k <= 7; ++k) m.line(to(-180 + 22.5 * k, 0), to(-180 + 22.5 * k, 20));
  m.line(to(-90, 20), to(-90, 40));
  m.line(to(-67.5, 20), to(-67.5, 40));
  m.style = "HZ";
  const struct {
    double x;
    double y;
    const char* gbk;
  } captions[] = {{-180, 0, "\xD7\xA8\xD2\xB5\xB8\xBA\xD4\xF0"},
                  {-135, 0, "\xC9\xE8\xBC\xC6"},
                  {-90, 0, "\xC9\xF3\xBA\xCB"},
                  {-45, 0, "\xCD\xBC\xBA\xC5"},
                  {-180, 10, "\xCF\xEE\xC4\xBF\xB8\xBA\xD4\xF0"},
                  {-135, 10, "\xD0\xA3\xB6\xD4"},
                  {-90, 10, "\xC9\xF3\xB6\xA8"},
                  {-45, 10, "\xC8\xD5\xC6\xDA"},
                  {-90, 30, "\xB9\xA4\xB3\xCC\xC3\xFB\xB3\xC6"},
                  {-90, 20, "\xCD\xBC\xC3\xFB"}};
  for (const auto& c : captions) m.text(to(c.x + 0.75, c.y + 0.75), 7 * s, 0, c.gbk);
  m.style = "STANDARD";
}

void rectangle(Model& m, XY low, XY high) {
  const XY corner[] = {low, {high.x, low.y}, high, {low.x, high.y}};
  for (int i = 0; i < 4; ++i) m.line(corner[i], corner[(i + 1) % 4]);
}

// Frames by their expected sheet sizes in millimetres: outer border, inner frame, where the two blocks stand.
TEST_F(Symbols, SheetFrames) {
  const struct {
    int size;
    int extra;
    int portrait;
    XY border;
    XY innerLow;
    XY innerHigh;
    double pen;
    XY countersigned;
  } sheets[] = {{-1, 0, 0, {1189, 841}, {25, 10}, {1179, 831}, 2.4, {25, 831}},
                {1, 210, 0, {1051, 594}, {25, 10}, {1041, 584}, 2.4, {25, 584}},
                {2, 0, 1, {420, 594}, {10, 10}, {410, 569}, 1.0, {410, 569}},
                {7, 0, 0, {420, 297}, {25, 5}, {415, 292}, 1.0, {25, 292}}};
  for (const auto& sheet : sheets)
    compare(
        "frame", [&](CBase_SGT& g, float) { g.Draw_TuKuang(0, 0, sheet.size, sheet.extra, sheet.portrait); },
        [&](Model& m) {
          rectangle(m, {0, 0}, m.s * sheet.border);
          const XY low = m.s * sheet.innerLow;
          const XY high = m.s * sheet.innerHigh;
          m.polyline("closed", {low, {high.x, low.y}, high, {low.x, high.y}}, sheet.pen * m.s * m.length);
          title_block(m, {high.x, low.y}, 0.7);
          countersign(m, m.s * sheet.countersigned, sheet.portrait ? 0 : 90);
        });
}

TEST_F(Symbols, SectionMarks) {
  // Along the line on its left and right, and across it: anchor on the perpendicular through each point.
  const struct {
    int along;
    int flag;
    double offset;
    double turn;
  } marks[] = {{1, 1, 0.65, 0}, {1, 0, -5.65, 0}, {0, 1, 0.65, 90}, {0, 0, -4.15, 90}};
  for (const auto& mark : marks)
    compare(
        "section", [&](CBase_SGT& g, float) { g.Draw_PouXian(0, 0, 0, -2000, "1", mark.along, mark.flag); },
        [&](Model& m) {
          const double angle = std::fmod(270 + m.rotation, 360);
          const XY points[] = {m.place({0, 0}), m.place({0, -2000})};
          m.world = true;
          for (const XY p : points) {
            m.polyline("open", {p + turned({-5 * m.s, 0}, angle), p + turned({5 * m.s, 0}, angle)},
                       0.65 * m.s * m.widthFactor);
            m.text(p + turned({0, mark.offset * m.s}, angle), 5 * m.s, angle + mark.turn, "1");
          }
        });
}

TEST_F(Symbols, AnglesAndGround) {
  compare_all({
      {"angle, with its own text", [](CBase_SGT& g, float) { g.Draw_DimJiaoDu(100, 0, 2000, 90, nullptr, -30); },
       [](Model& m) {
         m.color = "4";
         const XY c = m.place({100, 0});
         const double r = 2000 * m.length;
         const double a = 60 + m.rotation;
         m.world = true;
         m.arc(c, r, a, a + 30);
         arrowhead(m, c + turned({r, 0}, a), a - 90);
         arrowhead(m, c + turned({r, 0}, a + 30), a + 120);
         const double h = 2.5 * m.s * m.textFactor;
         const double w = Model::width("30\x7F", h);
         const double middle = a + 15;
         m.text(c + turned({r + 0.5 * m.s + h, 0}, middle) + turned({-w / 2, 0}, middle + 90), h, middle + 90, "30\x7F",
                false);
       }},
      {"angle over the start of a turn", [](CBase_SGT& g, float) { g.Draw_DimJiaoDu(0, 0, 2000, 315, "x", 135); },
       [](Model& m) {
         m.color = "4";
         const XY c = m.place({0, 0});
         const double r = 2000 * m.length;
         const double a = 315 + m.rotation;
         m.world = true;
         m.arc(c, r, a, a + 135);
         arrowhead(m, c + turned({r, 0}, a), a - 90);
         arrowhead(m, c + turned({r, 0}, a + 135), a + 225);
         const double h = 2.5 * m.s * m.textFactor;
         const double middle = a + 67.5 - 360;
         m.text(c + turned({r + 0.5 * m.s + h, -Model::width("x", h) / 2}, middle), h, middle + 90, "x", false);
       }},
      {"ground", [](CBase_SGT& g, float s) { g.Draw_TuMianXian(0, 0, 24 * s / g.m_fLenFactor, 0, 0, 0); },
       [](Model& m) {
         m.line({0, 0}, {24 * m.s / m.length, 0});
         const XY from = m.place({0, 0});
         m.world = true;
         const auto to = [&](double u, double v) { return from + turned({u * m.s, v * m.s}, m.rotation); };
         for (const double start : {6.0, 18.0})
           for (int k = 0; k < 3; ++k) m.line(to(start + 1.5 * k, 0), to(start + 1.5 * k - 3, -3));
       }},
  });
}

}  // namespace
