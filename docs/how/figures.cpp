// The pictures of "How things work".

#include <algorithm>
#include <string>
#include <vector>

#include "figure.h"

using manual::Figure;
using manual::Side;

namespace {

/// A box with its words, for pictures of what belongs to what. Lengths in mm of the page.
void box(Figure& figure, float x, float y, float w, float h, const char* words) {
  const float m = figure.mm(1);
  figure.sgt().Draw_Rect_LB(w * m, h * m, x * m, y * m, 0);
  figure.note((x + w / 2) * m, (y + h / 2 - 2) * m, words, Side::Above);
}

void arrow(Figure& figure, float x1, float y1, float x2, float y2) {
  const float m = figure.mm(1);
  figure.arrow(x1 * m, y1 * m, x2 * m, y2 * m);
}

void note(Figure& figure, float x, float y, const char* words, Side side) {
  figure.note(figure.mm(x), figure.mm(y), words, side);
}

}  // namespace

FIGURE(how_rounding) {
  //[
  CFCoor coor;  // one device unit to a world unit
  const auto device = [&](float v) { return static_cast<float>(coor.FPtoDP(double{v})); };
  //]
  const float k = figure.mm(8);  // a device unit, and a unit of v
  figure.arrow(k * -3.6F, 0, k * 4, 0);
  figure.arrow(0, k * -3, 0, k * 4);
  figure.note(k * 4, 0, "v", Side::Right);
  figure.note(0, k * 4, "device(v)", Side::Right);
  for (int v = -3; v <= 3; ++v) {
    if (v != 0) figure.note(k * static_cast<float>(v), 0, std::to_string(v).c_str(), Side::Below);
    if (v != 0) figure.note(0, k * static_cast<float>(v), std::to_string(v).c_str(), Side::Left);
  }
  figure.line(k * -3, k * -3, k * 3.5F, k * 3.5F, true);
  sgt.SetCurColor("1");
  constexpr float kStep = 1 / 64.0F, kEnd = 3.5F;
  float from = -kEnd;
  for (float v = from; v < kEnd; v += kStep) {
    if (device(v + kStep) == device(v) && v + kStep < kEnd) continue;
    sgt.Draw_Pline(k * from, k * device(v), k * v, k * device(v), 25, 25);
    from = v + kStep;
  }
}

FIGURE(how_scales) {
  //[
  sgt.SetBiLiChi(50);
  const std::string name = qv::to_gbk("KL-1 1:50"), detail = qv::to_gbk("1-1 1:10");
  sgt.Draw_Rect_LB(3000, 500, 0, 0, 0);                     // 60 mm on paper
  sgt.Draw_Text(0, 700, sgt.m_fZiGao[1], 0, name.c_str());  // 3.5 mm
  {
    const qv::SecondScale section(sgt, 4000, 0, 10);  // its own millimetres, at 1:10
    sgt.Draw_Rect_LB(300, 500, 0, 0, 0);              // 30 mm by 50 mm on paper
  }
  sgt.Draw_Text(4000, 2700, sgt.m_fZiGao[1], 0, detail.c_str());
  //]
  figure.length(0, 0, 3000, 0, "3000", -4);
  figure.length(4000, 0, 5500, 0, "300", -4);
  figure.length(3000, 0, 3000, 500, "500", -4);
  figure.length(5500, 0, 5500, 2500, "500", -4);
  figure.leader(1500, 780, 6, 0, "m_fZiGao[1]");
}

FIGURE(how_placement) {
  //[
  const auto draw = [&] {
    sgt.Draw_Rect_LB(1000, 500, 800, 0, 0);
    sgt.Draw_Text(1200, 150, 175, 0, "A");
  };
  draw();
  sgt.Push_ENV();
  sgt.SetCurColor("1");
  sgt.m_fRotAngle = 30;  // first turned about the origin,
  sgt.m_fLenFactor = 2;  // then times the factor,
  sgt.m_fShiftX = 600;   // then shifted
  sgt.m_fShiftY = 900;
  draw();
  sgt.Pop_ENV();
  //]
  figure.axes(0, 0);
  figure.point(0, 0, "", Side::Below);
  figure.axes(600, 900, 30, 24);
  figure.angle(600, 900, 16, 0, 30, "m_fRotAngle");
  figure.point(600, 900, "", Side::Left);
  figure.arrow(0, 0, 600, 900);
  figure.note(400, 620, "m_fShiftX, Y", Side::Right);
}

FIGURE(how_arcs) {
  sgt.SetCurColor("1");
  const auto ends = [&](float x, float y) {
    figure.point(x, y, "1", Side::Left);
    figure.point(x + 1000, y, "2", Side::Right);
  };
  const auto bulged = [&](float at, float bulge) {
    float x[] = {at, at + 1000}, y[] = {0, 0}, w1[] = {25, 25}, w2[] = {25, 25};
    const float b[] = {bulge, 0};
    sgt.Draw_Pline(2, x, y, b, 0, w1, w2);
    ends(at, 0);
  };
  //[
  bulged(0, 0.5F);      // to the right of the way from 1 to 2: counter-clockwise
  bulged(1600, -0.5F);  // to the left: clockwise
  bulged(3200, 1);      // half a circle
  //]
  note(figure, 10, 7, "0.5", Side::Above);
  note(figure, 42, 7, "-0.5", Side::Above);
  note(figure, 74, 7, "1", Side::Above);
  //[
  sgt.Draw_Arc(500, -1400, 400, 20, 130);
  //]
  figure.angle(500, -1400, 5, 0, 20, "20");
  figure.angle(500, -1400, 12, 0, 130, "130");
  figure.point(500, -1400, "", Side::Below);
  //[
  const CFShape arc(CFPoint(2000, -1400), CFPoint(3000, -1400), -1.5F);  // C = -1.5: counter-clockwise
  sgt.Draw_Arc(arc.x, arc.y, arc.GetR(), arc.GetStartAngle() * 180 / PI_F, arc.GetEndAngle() * 180 / PI_F);
  //]
  ends(2000, -1400);
  note(figure, 50, -24, "CFShape, C = -1.5", Side::Above);
}

FIGURE(how_picking) {
  const CFRect pick(1000, 200, 3000, 1400);
  const auto add = [&](float x, float y) {
    sgt.Draw_Line(x, y, x + 500, y + 300);
    sgt.Draw_Circle(x + 900, y + 150, 150);
    sgt.Draw_Text(x + 1150, y + 60, 175, 0, "KL-1");
  };
  add(100, 100);
  add(1100, 500);
  add(2300, 1000);
  sgt.Draw_Circle(2000, 800, 1150);
  float x[] = {600, 3400, 3400, 600}, y[] = {1150, 1150, 1300, 1300}, w1[4] = {}, w2[4] = {};
  const float b[4] = {};
  sgt.Draw_Pline(4, x, y, b, 1, w1, w2);
  //[
  qv::PreparedDrawing drawing(sgt);
  const std::vector<ACAD_ENTITY*> within = drawing.Pick(pick, 0), touched = drawing.Pick(pick, 1);
  //]
  const auto has = [](const std::vector<ACAD_ENTITY*>& list, ACAD_ENTITY* e) {
    return std::find(list.begin(), list.end(), e) != list.end();
  };
  for (POSITION at = sgt.m_EntityList.GetHeadPosition(); at;) {
    auto* entity = static_cast<ACAD_ENTITY*>(sgt.m_EntityList.GetNext(at));
    const int color = has(within, entity) ? 1 : has(touched, entity) ? 5 : 8;
    const auto paint = [&](auto* record) {
      if (record) record->m_nColor = color;
    };
    paint(dynamic_cast<ACAD_LINE*>(entity));
    paint(dynamic_cast<ACAD_CIRCLE*>(entity));
    paint(dynamic_cast<ACAD_TEXT*>(entity));
    paint(dynamic_cast<ACAD_POLYLINE*>(entity));
  }
  figure.line(pick.x1, pick.y1, pick.x2, pick.y1, true);
  figure.line(pick.x2, pick.y1, pick.x2, pick.y2, true);
  figure.line(pick.x2, pick.y2, pick.x1, pick.y2, true);
  figure.line(pick.x1, pick.y2, pick.x1, pick.y1, true);
  figure.note(pick.x2, pick.y1, "pick", Side::BelowRight);
}

FIGURE(how_text) {
  figure.zoom(2);
  const float h = 350;
  const std::string words = qv::to_gbk("KL-1 配筋 4") + "\x83" + "25";
  sgt.SetCurStyle("HZ");
  sgt.SetCurColor("5");
  //[
  sgt.Draw_Text(0, 0, h, 0, words.c_str());  // style HZ: both fonts
  const float width = G_ShapeFont.GetHzWidth(words.c_str(), h, sgt.m_pStyle[1].m_fWidthFactor);
  //]
  figure.point(0, 0, "", Side::Left);
  figure.line(0, 0, width, 0, true);
  figure.length(0, 0, width, 0, "GetHzWidth", -8);
  figure.length(0, 0, 0, h, "h", 4);
  float at = 0;
  for (const char* p = words.c_str(); *p;) {
    const std::size_t n = qv::char_length(p);
    const float step = G_ShapeFont.GetHzWidth(std::string(p, n).c_str(), h, sgt.m_pStyle[1].m_fWidthFactor);
    figure.line(at, -40, at, -90);
    char hex[8] = "";
    qv::format_text(hex, sizeof hex, n == 2 ? "2" : "1");
    figure.note(at + step / 2, -20, hex, Side::Below);
    at += step;
    p += n;
  }
  figure.line(at, -40, at, -90);
}

FIGURE(how_errors) {
  box(figure, 0, 12, 34, 8, "tell_error(code, …)");
  const struct {
    float y;
    const char* words;
    bool fatal;
  } rows[] = {{36, "-2 … 100: message window", false},
              {24, "101 … 200: box", true},
              {12, "201 … 300: information", false},
              {0, "301 … 400: stop box", true},
              {-12, "1000 … 2000: question", true}};
  for (const auto& row : rows) {
    box(figure, 50, row.y, 46, 8, row.words);
    arrow(figure, 34, 16, 50, row.y + 4);
    if (row.fatal) arrow(figure, 96, row.y + 4, 114, 16);
  }
  note(figure, 107, -2, "on Cancel", Side::Right);
  box(figure, 114, 12, 34, 8, "QV_ERROR_CODE");
}

FIGURE(how_threads) {
  for (const float x : {0.0F, 78.0F}) {
    box(figure, x, 22, 60, 34, "");
    note(figure, x + 30, 50, x == 0 ? "thread 1" : "thread 2", Side::Above);
    box(figure, x + 4, 38, 52, 8, "document, database, view");
    box(figure, x + 4, 26, 52, 8, "sscanf_next, working records");
    arrow(figure, x + 30, 22, x == 0 ? 50.0F : 88.0F, 8);
  }
  box(figure, 14, -2, 110, 10, "fonts · host · reports · QV_ERROR_CODE · QV_OpenFileNum");
  note(figure, 69, -7, "the whole process", Side::Above);
}

FIGURE(how_memory) {
  box(figure, 0, 24, 34, 10, "DXF");
  box(figure, 50, 40, 40, 8, "tables: arrays of entries");
  box(figure, 50, 26, 40, 8, "m_BlockList");
  box(figure, 50, 12, 40, 8, "m_EntityList");
  for (const float y : {44.0F, 30.0F, 16.0F}) arrow(figure, 34, 29, 50, y);
  box(figure, 106, 26, 40, 8, "ACAD_BLOCK");
  arrow(figure, 90, 30, 106, 30);
  for (int i = 0; i < 5; ++i) {
    box(figure, 106 + 8 * static_cast<float>(i), 12, 8, 8, "");
  }
  arrow(figure, 90, 16, 106, 16);
  arrow(figure, 126, 26, 130, 20);
  note(figure, 139, 6, "side by side, in the order of making", Side::Left);
  box(figure, 106, -8, 40, 8, "vertices of a polyline");
  arrow(figure, 142, 12, 142, 0);
}
