// Finds on the sheets of drawings what an eye would: check_sheets FONTS DRAWING.dxf ... Prints each finding; exit 1
// when there is one that is not on the list of exceptions.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "qvtools.h"
#include "qvtools/system/filesystem.h"

namespace {

struct Point {
  double x;
  double y;
};

/// A text as it is drawn: its lower left corner, the directions along and up, its size.
struct Text {
  Point at;
  Point along;
  double width;
  double height;
  std::string words;

  Point local(Point p) const {
    const double dx = p.x - at.x;
    const double dy = p.y - at.y;
    return {dx * along.x + dy * along.y, dy * along.x - dx * along.y};
  }
  Point corner(double u, double v) const {
    return {at.x + u * along.x - v * along.y, at.y + u * along.y + v * along.x};
  }
};

struct Line {
  Point from;
  Point to;
};

/// What is to be looked at in a drawing, and its findings.
struct Drawing {
  std::vector<Text> texts;
  std::vector<Line> lines;
  std::vector<Point> points;  // everything drawn, for what lies outside
  std::vector<Point> own;     // of these, what is no part of the frame and its blocks
  int unseen = 0;             // entities of kinds that are not looked at
};

Text text_of(const ACAD_TEXT& text) {
  const double angle = text.m_fRotation * std::acos(-1) / 180;
  const double width =
      G_ShapeFont.GetHzWidth(qv::drawn_text(text.m_szText).c_str(), text.m_fHeight, text.m_fWidthFactor);
  return {{text.m_Insert.x, text.m_Insert.y},
          {std::cos(angle), std::sin(angle)},
          width,
          text.m_fHeight,
          qv::from_gbk(text.m_szText)};
}

void add_line(Drawing& drawing, Point a, Point b) {
  drawing.lines.push_back({a, b});
  drawing.points.push_back(a);
  drawing.points.push_back(b);
}

void add_arc(Drawing& drawing, Point center, double r, double from, double to) {
  constexpr int kPieces = 24;
  const auto at = [&](int i) {
    const double a = from + (to - from) * i / kPieces;
    return Point{center.x + r * std::cos(a), center.y + r * std::sin(a)};
  };
  for (int i = 0; i < kPieces; ++i) add_line(drawing, at(i), at(i + 1));
}

/// The chord of a bulge counts; arcs of polylines are the small hooks of bars.
void add_polyline(Drawing& drawing, const ACAD_POLYLINE& line) {
  const int n = static_cast<int>(line.m_Vertices.GetSize());
  for (int i = 0; i + (line.m_nFlags & 1 ? 0 : 1) < n; ++i) {
    const auto& a = line.m_Vertices[i].m_Point;
    const auto& b = line.m_Vertices[(i + 1) % n].m_Point;
    add_line(drawing, {a.x, a.y}, {b.x, b.y});
  }
}

void add_solid(Drawing& drawing, const ACAD_SOLID& solid) {
  const auto& c = solid.m_Corner;
  // Both diagonals too: a text within is crossed.
  for (const auto& [i, k] :
       {std::pair(0, 1), std::pair(1, 3), std::pair(3, 2), std::pair(2, 0), std::pair(0, 3), std::pair(1, 2)})
    add_line(drawing, {c[i].x, c[i].y}, {c[k].x, c[k].y});
}

void add(Drawing& drawing, ACAD_ENTITY& entity) {
  const std::size_t before = drawing.points.size();
  constexpr double kDegree = 3.14159265358979 / 180;
  std::string layer;
  if (const auto* line = dynamic_cast<ACAD_LINE*>(&entity)) {
    layer = line->m_szLayer;
    add_line(drawing, {line->m_Start.x, line->m_Start.y}, {line->m_End.x, line->m_End.y});
  } else if (const auto* circle = dynamic_cast<ACAD_CIRCLE*>(&entity)) {
    layer = circle->m_szLayer;
    add_arc(drawing, {circle->m_Center.x, circle->m_Center.y}, circle->m_fRadius, 0, 360 * kDegree);
  } else if (const auto* arc = dynamic_cast<ACAD_ARC*>(&entity)) {
    layer = arc->m_szLayer;
    const double end = arc->m_fEndAngle < arc->m_fStartAngle ? arc->m_fEndAngle + 360 : arc->m_fEndAngle;
    add_arc(drawing, {arc->m_Center.x, arc->m_Center.y}, arc->m_fRadius, arc->m_fStartAngle * kDegree, end * kDegree);
  } else if (const auto* polyline = dynamic_cast<ACAD_POLYLINE*>(&entity)) {
    layer = polyline->m_szLayer;
    add_polyline(drawing, *polyline);
  } else if (const auto* solid = dynamic_cast<ACAD_SOLID*>(&entity)) {
    layer = solid->m_szLayer;
    add_solid(drawing, *solid);
  } else if (const auto* text = dynamic_cast<ACAD_TEXT*>(&entity)) {
    layer = text->m_szLayer;
    drawing.texts.push_back(text_of(*text));
    const Text& added = drawing.texts.back();
    for (const Point& share : {Point{0, 0}, Point{1, 0}, Point{0, 1}, Point{1, 1}})
      drawing.points.push_back(added.corner(share.x * added.width, share.y * added.height));
  } else {
    ++drawing.unseen;
  }
  if (layer != "FRAME" && layer != "TITLE")
    drawing.own.insert(drawing.own.end(), drawing.points.begin() + static_cast<std::ptrdiff_t>(before),
                       drawing.points.end());
}

/// Whether the line runs through the text, more than `margin` within its box.
bool runs_through(const Line& line, const Text& text, double margin) {
  const Point a = text.local(line.from);
  const Point b = text.local(line.to);
  double enter = 0;
  double leave = 1;
  const auto clip = [&](double from, double to, double low, double high) {
    const double d = to - from;
    if (d == 0) return from > low && from < high;
    const auto [near, far] = std::minmax({(low - from) / d, (high - from) / d});
    enter = std::max(enter, near);
    leave = std::min(leave, far);
    return true;
  };
  return clip(a.x, b.x, margin, text.width - margin) && clip(a.y, b.y, margin, text.height - margin) && enter < leave;
}

bool overlap(const Text& a, const Text& b, double margin) {
  const auto apart = [margin](const Text& one, const Text& other) {
    double x1 = HUGE_VAL, y1 = HUGE_VAL, x2 = -HUGE_VAL, y2 = -HUGE_VAL;
    for (const Point& share : {Point{0, 0}, Point{1, 0}, Point{0, 1}, Point{1, 1}}) {
      const Point p = one.local(other.corner(share.x * other.width, share.y * other.height));
      x1 = std::min(x1, p.x), x2 = std::max(x2, p.x), y1 = std::min(y1, p.y), y2 = std::max(y2, p.y);
    }
    return x2 < margin || x1 > one.width - margin || y2 < margin || y1 > one.height - margin;
  };
  return !apart(a, b) && !apart(b, a);
}

/// Values of dimensions that are not their lengths: the composer writes two extension lines, the dimension line, two
/// strokes at its ends, and the text. Details have one of the scales that are told under them.
void check_dimensions(DXF& document, const std::vector<double>& scales, double sheet, const auto& tell, int& seen) {
  const ACAD_LINE* line = nullptr;
  int strokes = 0;
  for (POSITION at = document.m_EntityList.GetHeadPosition(); at;) {
    auto* entity = static_cast<ACAD_ENTITY*>(document.m_EntityList.GetNext(at));
    if (auto* next = dynamic_cast<ACAD_LINE*>(entity)) {
      line = next;
      strokes = 0;
      continue;
    }
    if (auto* stroke = dynamic_cast<ACAD_POLYLINE*>(entity);
        stroke && line && strokes < 2 && stroke->m_Vertices.GetSize() == 2) {
      const auto& a = stroke->m_Vertices[0].m_Point;
      const auto& b = stroke->m_Vertices[1].m_Point;
      const auto& end = strokes == 0 ? line->m_Start : line->m_End;
      const bool there = std::hypot((a.x + b.x) / 2 - end.x, (a.y + b.y) / 2 - end.y) < 0.05 * sheet;
      strokes = there ? strokes + 1 : 3;
      continue;
    }
    const auto* text = dynamic_cast<ACAD_TEXT*>(entity);
    if (text && line && strokes == 2) {
      ++seen;
      const double length = std::hypot(line->m_End.x - line->m_Start.x, line->m_End.y - line->m_Start.y);
      const double value = qv::parse_real(text->m_szText);
      if (std::ranges::none_of(scales, [&](double scale) { return std::fabs(length * scale / sheet - value) < 0.6; }))
        tell("dimension", text->m_szText, "is " + std::to_string(length));
    }
    line = nullptr;
  }
}

/// What is meant as it is: the drawing, the kind of finding, what its text begins with, and why.
constexpr struct {
  const char* drawing;
  const char* kind;
  const char* words;
  const char* reason;
} kExceptions[] = {
    {"calc", "line", "105.30", "a value stands over its point, which lies on an upright line of the chart's grid"},
    {"calc", "line", "-105.30", "the same"},
};

using Tell = std::function<void(const char* kind, const std::string& words, const std::string& what)>;

/// Tells what is wrong on the drawing's sheet; returns how much was looked at.
std::string look_at(DXF& document, const Tell& tell) {
  const auto sheet = qv::SheetOf(document);
  if (!sheet) {
    tell("sheet", "", "there is none");
    return "";
  }
  Drawing drawing;
  for (POSITION at = document.m_EntityList.GetHeadPosition(); at;)
    add(drawing, *static_cast<ACAD_ENTITY*>(document.m_EntityList.GetNext(at)));

  const double s = sheet->scale;
  const double margin = 0.2 * s;
  const auto place = [&](const Text& text) {
    char told[64];
    std::snprintf(told, sizeof told, " at %.1f, %.1f mm", text.at.x / s, text.at.y / s);
    return std::string(told);
  };
  for (std::size_t i = 0; i < drawing.texts.size(); ++i) {
    const Text& text = drawing.texts[i];
    if (text.height < 2.49 * s) tell("small", text.words, std::to_string(text.height / s) + " mm" + place(text));
    for (std::size_t k = 0; k < i; ++k)
      if (overlap(text, drawing.texts[k], margin))
        tell("texts", text.words, "over " + drawing.texts[k].words + place(text));
    for (const Line& line : drawing.lines)
      if (runs_through(line, text, margin)) {
        tell("line", text.words, "is crossed" + place(text));
        break;
      }
  }
  // The edge of the paper and the counter-sign block are all that lies outside the frame.
  const double half = 2.5 * s;
  const auto& b = sheet->border;
  const auto& e = sheet->edge;
  const auto is_inside = [&](Point p) {
    return p.x > b.left - half && p.x < b.right + half && p.y > b.bottom - half && p.y < b.top + half;
  };
  const auto is_margin = [&](Point p) {
    const bool onEdge = std::fabs(p.x - e.left) < half / 10 || std::fabs(p.x - e.right) < half / 10 ||
                        std::fabs(p.y - e.bottom) < half / 10 || std::fabs(p.y - e.top) < half / 10;
    const bool inBlock = p.x > b.left - 20.1 * s && p.x <= b.left && p.y > b.top - 75.1 * s && p.y <= b.top + half;
    return onEdge || inBlock;
  };
  int outside = 0;
  for (const Point& p : drawing.points) outside += !is_inside(p) && !is_margin(p);
  if (outside) tell("outside", "", std::to_string(outside) + " points");
  const auto in_title = [&](Point p) { return p.x > b.right - 180 * s + margin && p.y < b.bottom + 40 * s - margin; };
  const auto strays = std::ranges::count_if(drawing.own, in_title);
  if (strays) tell("title block", "", std::to_string(strays) + " points of what is none of it");
  if (drawing.unseen) tell("unseen", "", std::to_string(drawing.unseen) + " entities that are not looked at");

  std::vector<double> scales{s};
  for (const Text& text : drawing.texts)
    if (text.words.starts_with("1:")) scales.push_back(qv::parse_real(text.words.substr(2)));
  int dimensions = 0;
  check_dimensions(document, scales, s, tell, dimensions);
  return std::to_string(drawing.texts.size()) + " texts, " + std::to_string(drawing.lines.size()) + " lines, " +
         std::to_string(dimensions) + " dimensions";
}

int check(const std::string& path) {
  DXF document;
  document.Open_MemDxf();
  if (!document.Read_FileDxf_To_Mem(path.c_str())) {
    std::printf("%s cannot be read\n", path.c_str());
    return 1;
  }
  const std::string name(qv::split_path(path.c_str()).base);
  int found = 0;
  const std::string seen = look_at(document, [&](const char* kind, const std::string& words, const std::string& what) {
    for (const auto& e : kExceptions)
      if (name == e.drawing && std::string(kind) == e.kind && words.starts_with(e.words)) return;
    std::printf("%s: %s: %s: %s\n", name.c_str(), kind, words.c_str(), what.c_str());
    ++found;
  });
  std::printf("%s: %s, %d findings\n", name.c_str(), seen.c_str(), found);
  return found ? 1 : 0;
}

/// Whether each kind of fault is found, once, on a sheet that has them.
bool finds_faults() {
  const std::unique_ptr<CBase_SGT> sgt(NewMemDxf());
  sgt->SetBiLiChi(1);
  sgt->Add_Layer("FRAME", 7, "CONTINUOUS");
  sgt->SetCurLayer("FRAME");
  sgt->Draw_TuKuang(0, 0, 3, 0, 0);
  sgt->SetCurLayer("0");
  sgt->Draw_Text(100, 100, 2, 0, "small");
  sgt->Draw_Text(100, 150, 5, 0, "ABCDEF");
  sgt->Draw_Text(105, 152, 5, 30, "over");
  sgt->Draw_Text(200, 150, 5, 0, "crossed");
  sgt->Draw_Line(195, 151, 240, 154);
  sgt->Draw_Line(416, 150, 419, 150);
  sgt->Draw_Line(300, 41, 310, 41);
  sgt->Write_Point(300, 100, 0, "0");
  sgt->m_fDimOffset = 10;
  sgt->m_fDimPolarA = sgt->m_fDimPolarB = 5;
  sgt->Draw_Dim_Polar(100, 200, 50, "50", 0, 1, 1);
  sgt->Draw_Dim_Polar(100, 230, 50, "55", 0, 1, 1);
  std::multiset<std::string> kinds;
  look_at(*sgt, [&](const char* kind, const std::string&, const std::string&) { kinds.insert(kind); });
  return kinds == std::multiset<std::string>{"dimension", "line", "outside", "small", "texts", "title block", "unseen"};
}

}  // namespace

int main(int argc, char** argv) {
  const std::string fonts = argv[1];
  if (!G_ShapeFont.SetTxtFont(fonts.c_str(), "txt.shx")) return 2;
  G_ShapeFont.SetHzFont(fonts.c_str(), "hztxt.shx");
  if (!finds_faults()) {
    std::puts("the check itself is blind");
    return 3;
  }
  int result = 0;
  for (int i = 2; i < argc; ++i) result |= check(argv[i]);
  return result;
}
