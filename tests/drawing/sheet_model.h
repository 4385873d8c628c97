#pragma once

/// A small model of the composer: what a symbol must come to, entity by entity, under a scale and a placement.

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <ostream>
#include <string>
#include <vector>

#include "qvtools/drawing/base_sgt.h"
#include "qvtools/fonts/shx.h"
#include "support/font_files.h"
#include "support/temporary_directory.h"

namespace qvtest {

/// One entity: its kind, colour and text, and its numbers in the order of its record.
struct Figure {
  std::string kind;
  std::string color;
  std::string text;
  std::vector<double> numbers;
};

inline void PrintTo(const Figure& f, std::ostream* out) {
  *out << f.kind << ' ' << f.color << ' ' << f.text << ':';
  for (const double v : f.numbers) *out << ' ' << v;
}

/// Equal up to the rounding of coordinates of up to a million.
inline bool operator==(const Figure& a, const Figure& b) {
  if (a.kind != b.kind || a.color != b.color || a.text != b.text || a.numbers.size() != b.numbers.size()) return false;
  for (std::size_t i = 0; i < a.numbers.size(); ++i)
    if (!(std::fabs(a.numbers[i] - b.numbers[i]) <= 0.02 + 2e-6 * std::fabs(b.numbers[i]))) return false;
  return true;
}

inline Figure figure_of(ACAD_ENTITY& entity) {
  switch (entity.GetType()) {
    case ACAD_TYPE_LINE: {
      const auto& e = static_cast<ACAD_LINE&>(entity);
      return {"line", std::to_string(e.m_nColor), "", {e.m_Start.x, e.m_Start.y, e.m_End.x, e.m_End.y}};
    }
    case ACAD_TYPE_CIRCLE: {
      const auto& e = static_cast<ACAD_CIRCLE&>(entity);
      return {"circle", std::to_string(e.m_nColor), "", {e.m_Center.x, e.m_Center.y, e.m_fRadius}};
    }
    case ACAD_TYPE_ARC: {
      const auto& e = static_cast<ACAD_ARC&>(entity);
      return {"arc",
              std::to_string(e.m_nColor),
              "",
              {e.m_Center.x, e.m_Center.y, e.m_fRadius, e.m_fStartAngle, e.m_fEndAngle}};
    }
    case ACAD_TYPE_TEXT: {
      const auto& e = static_cast<ACAD_TEXT&>(entity);
      return {std::string("text ") + e.m_szStyle,
              std::to_string(e.m_nColor),
              e.m_szText,
              {e.m_Insert.x, e.m_Insert.y, e.m_fHeight, e.m_fRotation}};
    }
    case ACAD_TYPE_POLYLINE: {
      const auto& e = static_cast<ACAD_POLYLINE&>(entity);
      Figure f{e.m_nFlags ? "closed" : "open", std::to_string(e.m_nColor), "", {}};
      for (const ACAD_VERTEX& v : e.m_Vertices)
        for (const float n : {v.m_Point.x, v.m_Point.y, v.m_fStartWidth, v.m_fEndWidth, v.m_fBulge})
          f.numbers.push_back(n);
      return f;
    }
    default:
      return {"unexpected", "", "", {}};
  }
}

struct XY {
  double x;
  double y;
};

inline XY turned(XY p, double degrees) {
  const double a = degrees * std::numbers::pi / 180;
  return {p.x * std::cos(a) - p.y * std::sin(a), p.x * std::sin(a) + p.y * std::cos(a)};
}
inline XY operator+(XY a, XY b) {
  return {a.x + b.x, a.y + b.y};
}
inline XY operator*(double k, XY p) {
  return {k * p.x, k * p.y};
}

/// What is expected. Points are in the caller's frame, or in world coordinates once `world` is set.
struct Model {
  double s;  ///< scale denominator
  double rotation = 0;
  double length = 1;
  XY shift{0, 0};
  double textFactor = 1;
  double widthFactor = 1;
  bool world = false;
  std::string color = "7";
  std::string style = "STANDARD";
  std::vector<Figure> figures;

  explicit Model(double scale) : s(scale) {}
  /// The second placement of every comparison.
  void put_elsewhere() {
    rotation = 30;
    length = 2;
    shift = {1000, -500};
    textFactor = 1.5;
    widthFactor = 3;
  }
  XY place(XY p) const { return length * turned(p, rotation) + shift; }
  XY out(XY p) const { return world ? p : place(p); }
  void line(XY a, XY b) {
    a = out(a);
    b = out(b);
    figures.push_back({"line", color, "", {a.x, a.y, b.x, b.y}});
  }
  void circle(XY c, double r) {
    c = out(c);
    figures.push_back({"circle", color, "", {c.x, c.y, world ? r : r * length}});
  }
  void arc(XY c, double r, double from, double to) {
    c = out(c);
    const double turn = world ? 0 : rotation;
    figures.push_back({"arc", color, "", {c.x, c.y, world ? r : r * length, from + turn, to + turn}});
  }
  /// A polyline of constant width as written.
  void polyline(const std::string& kind, const std::vector<XY>& points, double width, double bulge = 0) {
    Figure f{kind, color, "", {}};
    for (XY p : points) {
      p = out(p);
      for (const double n : {p.x, p.y, width, width, bulge}) f.numbers.push_back(n);
    }
    figures.push_back(f);
  }
  /// A text whose box has its lower left corner at p; upside-down ones turn within the box.
  void text(XY p, double h, double angle, const std::string& text, bool factored = true) {
    p = out(p);
    if (!world) angle += rotation;
    if (factored) h *= textFactor;
    if (angle > 91 && angle <= 271) {
      p = p + turned({width(text, h), h}, angle);
      angle += 180;
    }
    figures.push_back({"text " + style, color, text, {p.x, p.y, h, angle}});
  }
  /// In the test font every byte advances by its height, and styles make it 0.75 of that.
  static double width(const std::string& text, double h) { return 0.75 * h * static_cast<double>(text.size()); }
};

/// Composers with that font.
class Sheets : public testing::Test {
 protected:
  void SetUp() override {
    Shapes shapes;
    for (int c = 32; c < 256; ++c) shapes.push_back({c, codes({2, 8, 6, 0})});
    const TemporaryDirectory directory;
    directory.write("test.shx", text_font(shapes, 6));
    before_ = G_ShapeFont;
    G_ShapeFont = CShx();
    ASSERT_EQ(G_ShapeFont.SetTxtFont(directory.prefix().c_str(), "test.shx"), 1);
  }
  void TearDown() override { G_ShapeFont = before_; }

  static std::unique_ptr<CBase_SGT> composer(const Model& m) {
    std::unique_ptr<CBase_SGT> sgt(NewMemDxf());
    sgt->SetBiLiChi(static_cast<float>(m.s));
    sgt->m_fRotAngle = static_cast<float>(m.rotation);
    sgt->m_fLenFactor = static_cast<float>(m.length);
    sgt->m_fShiftX = static_cast<float>(m.shift.x);
    sgt->m_fShiftY = static_cast<float>(m.shift.y);
    sgt->m_fTextFactor = static_cast<float>(m.textFactor);
    sgt->m_fWidthFactor = static_cast<float>(m.widthFactor);
    return sgt;
  }

  static std::vector<Figure> drawn(const CBase_SGT& sgt) {
    std::vector<Figure> figures;
    for (POSITION at = sgt.m_EntityList.GetHeadPosition(); at;)
      figures.push_back(figure_of(*static_cast<ACAD_ENTITY*>(sgt.m_EntityList.GetNext(at))));
    return figures;
  }

  /// Draws with a composer and with the model, at two scales and under two placements, and compares.
  template <class Draw, class Expect>
  static void compare(const char* name, const Draw& draw, const Expect& expect) {
    for (const double s : {100.0, 50.0}) {
      for (const bool placed : {false, true}) {
        Model m(s);
        if (placed) m.put_elsewhere();
        const auto sgt = composer(m);
        draw(*sgt, static_cast<float>(s));
        expect(m);
        const std::vector<Figure> figures = drawn(*sgt);
        ASSERT_EQ(figures.size(), m.figures.size()) << name << " at " << s << (placed ? ", placed" : "");
        for (std::size_t i = 0; i < figures.size(); ++i)
          EXPECT_EQ(figures[i], m.figures[i]) << name << " at " << s << (placed ? ", placed, " : ", ") << i;
      }
    }
  }

 private:
  CShx before_;
};

}  // namespace qvtest
