// What a window takes of a drawing.   pick_window DRAWING.dxf X1 Y1 X2 Y2   (in mm) prints the extents of
// the drawing, the entities that lie wholly in the window (green in picked.png) and those that cross its border (red),
// and the points that a pointer in its middle would catch.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <string>
#include <vector>

#include "qvtools.h"

namespace {

using Entities = std::vector<ACAD_ENTITY*>;

int fail(const char* what, const char* why) {
  std::fprintf(stderr, "pick_window: %s: %s\n", what, why);
  return 1;
}

/// All entities of a list get one colour number, so that a palette of one colour shows them in it.
void paint(const CPtrList& list, int color) {
  for (POSITION at = list.GetHeadPosition(); at;)
    qv::visit_entity(*static_cast<ACAD_ENTITY*>(list.GetNext(at)), [color](auto& record) {
      if constexpr (requires { record.m_nColor; }) record.m_nColor = color;
    });
}

/// Draws some of the entities in one colour.
void draw(qv::PreparedDrawing& drawing, const std::set<ACAD_ENTITY*>& shown, COLORREF color, CDC& dc, CFCoor& coor) {
  qv::Palette palette;
  palette.fill(color);
  drawing.Show([&](ACAD_ENTITY& entity) { return shown.contains(&entity); });
  drawing.Draw(&dc, &coor, {&palette, nullptr});
}

void draw_frame(const CFRect& world, COLORREF color, CDC& dc, const CFCoor& coor) {
  const CRect r = coor.FPtoDP(world);
  const CPen pen{qv::PenStyle::Dash, 1, color};
  const CPen* const before = dc.SelectObject(&pen);
  dc.SetBkMode(qv::BackgroundMode::Transparent);
  dc.MoveTo(r.left, r.top);
  for (const CPoint corner :
       {CPoint(r.right, r.top), CPoint(r.right, r.bottom), CPoint(r.left, r.bottom), CPoint(r.left, r.top)})
    dc.LineTo(corner.x, corner.y);
  dc.SelectObject(before);
}

void tell(const char* how, const Entities& entities) {
  static constexpr const char* kNames[] = {"POINT",    "LINE",  "TEXT",   "CIRCLE", "ARC",
                                           "POLYLINE", "SOLID", "3DFACE", "INSERT"};
  std::printf("%zu %s:", entities.size(), how);
  for (int kind = 0; kind < 9; ++kind) {
    const auto count = std::ranges::count_if(entities, [kind](ACAD_ENTITY* e) { return e->GetType() == kind; });
    if (count > 0) std::printf(" %d %s", static_cast<int>(count), kNames[kind]);
  }
  std::printf("\n");
}

void tell_points(const std::vector<qv::CaughtPoint>& points) {
  static constexpr const char* kNames[] = {"end",           "intersection", "middle", "centre",    "quadrant",
                                           "perpendicular", "tangent",      "node",   "insertion", "nearest"};
  std::printf("%zu points within reach of the middle\n", points.size());
  for (std::size_t i = 0; i < std::min<std::size_t>(points.size(), 3); ++i)
    std::printf("  %s (%.3f, %.3f)\n", kNames[static_cast<int>(points[i].kind)], points[i].at.x, points[i].at.y);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 6) return fail("usage", "pick_window DRAWING.dxf X1 Y1 X2 Y2");
  float place[4];
  for (int i = 0; i < 4; ++i) {
    char* end = nullptr;
    place[i] = std::strtof(argv[i + 2], &end);
    if (end == argv[i + 2] || *end || !std::isfinite(place[i])) return fail(argv[i + 2], "is no number");
  }
  const CFRect window(place[0], place[1], place[2], place[3]);
  if (window.IsFRectEmpty(1e-6F)) return fail("the window", "has no area");
  if (!G_ShapeFont.SetTxtFont(FONTS, "txt.shx")) return fail(FONTS, "there is no txt.shx");
  if (!G_ShapeFont.SetHzFont(FONTS, "hztxt.shx")) fail(FONTS, "without hztxt.shx Chinese texts stay blank");

  DXF document;
  qv::ImportOptions options;
  options.unit = qv::Unit::Millimetre;
  options.guessUnit = true;
  qv::ImportReport report;
  if (!qv::Import(argv[1], document, options, report))
    return fail(argv[1], report.remarks.empty() ? "cannot be read" : report.remarks[0].text.c_str());
  const CFRect all = document.GetFRect();
  if (all.IsFRectEmpty(1e-6F)) return fail(argv[1], "has nothing to be seen");
  std::printf("extents: (%g, %g) to (%g, %g)\n", all.x1, all.y1, all.x2, all.y2);

  // Colours are set before the drawing is prepared; picks are asked of what was prepared.
  constexpr int kAny = 1;
  paint(document.m_EntityList, kAny);
  for (POSITION at = document.m_BlockList.GetHeadPosition(); at;)
    paint(static_cast<ACAD_BLOCK*>(document.m_BlockList.GetNext(at))->m_EntityList, kAny);
  qv::PreparedDrawing drawing(document);
  const Entities inside = drawing.Pick(window, 0), touched = drawing.Pick(window, 1);
  const std::set<ACAD_ENTITY*> within(inside.begin(), inside.end());
  Entities crossing;
  std::ranges::copy_if(touched, std::back_inserter(crossing), [&](ACAD_ENTITY* e) { return !within.contains(e); });
  tell("inside", inside);
  tell("crossing", crossing);
  qv::CatchQuery query;
  query.at = {(window.x1 + window.x2) / 2, (window.y1 + window.y2) / 2};
  query.reach = std::hypot(window.Width(), window.Height()) / 2;
  tell_points(drawing.Catch(query));

  // 1200 pixels across, with a margin of 20.
  constexpr int kWidth = 1200, kMargin = 20;
  const float scale = (kWidth - 2 * kMargin) / all.Width();
  const float height = scale * all.Height() + 2 * kMargin;
  if (!(height < 8000)) return fail(argv[1], "is too narrow for a picture");
  qv::BitmapContext bitmap(kWidth, static_cast<int>(height), qv::rgb(255, 255, 255));
  const float margin = kMargin / scale;
  CFCoor coor({all.x1 - margin, all.y2 + margin}, scale, 1);
  std::set<ACAD_ENTITY*> others;
  for (POSITION at = document.m_EntityList.GetHeadPosition(); at;)
    others.insert(static_cast<ACAD_ENTITY*>(document.m_EntityList.GetNext(at)));
  draw(drawing, others, qv::rgb(200, 200, 200), bitmap, coor);
  draw(drawing, {crossing.begin(), crossing.end()}, qv::rgb(210, 30, 30), bitmap, coor);
  draw(drawing, within, qv::rgb(0, 130, 60), bitmap, coor);
  draw_frame(all, qv::rgb(150, 150, 150), bitmap, coor);
  draw_frame(window, qv::rgb(20, 60, 220), bitmap, coor);
  if (!qv::SavePng(bitmap, "picked.png")) return fail("picked.png", "cannot be written");
  return 0;
}
