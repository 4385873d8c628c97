#include <utility>

#include "demo/demo.h"
#include "qvtools/drawing/fitted_text.h"
#include "qvtools/drawing/note_block.h"

namespace qvdraw {

namespace {

/// A column of notes under their headings, numbered through; returns the number of the last.
void draw_column(CBase_SGT& sgt, const Sample& data, const std::string& section, CFPoint place, double width) {
  use_pen(sgt, "TEXT", "7");
  float y = place.y;
  std::string heading;
  std::vector<std::string> notes;
  const auto draw = [&] {
    if (!notes.empty())
      y = qv::NoteBlock(heading, notes, {.textHeight = 5, .lineStep = 1.5}).Draw(sgt, place.x, y, width).y1 - 7;
    notes.clear();
  };
  for (const std::string& line : data.lines(section)) {
    if (line.front() == '=') {
      draw();
      heading = line.substr(2);
    } else {
      notes.push_back(line);
    }
  }
  draw();
}

/// How bars are bent: a bar, its hook, and the measures beside them.
void draw_hooks(CBase_SGT& sgt, const Sample& data, CFPoint place) {
  const float x = place.x;
  const float y = place.y;
  const auto caption = [&](float at, const char* key) {
    use_pen(sgt, "TEXT", "7");
    qv::DrawSheetText(sgt, at, y - 22, 3, data.text("words", key).c_str(), qv::Across::Center);
  };
  use_pen(sgt, "STEEL", "1");
  draw_bottom_bar(sgt, x + 5, y - 8, x + 48, y - 8, 9);
  const float hx[] = {x + 78, x + 78, x + 90};
  const float hy[] = {y - 16, y + 4, y - 8};
  sgt.Draw_XianGangJin(3, hx, hy);
  const float bx[] = {x + 118, x + 158, x + 158};
  const float by[] = {y - 10, y - 10, y + 4};
  sgt.Draw_XianGangJin(3, bx, by);
  use_pen(sgt, "AXIS", "1", "DASHDOT");
  sgt.Draw_Line(x + 78, y + 4, x + 78, y + 14);
  use_pen(sgt, "DIM", "5");
  sgt.Draw_DimJiaoDu(x + 78, y + 4, 7, -45, "", 135);
  qv::DrawSheetText(sgt, x + 15, y + 2.5F, 2.5F, "3d", qv::Across::Center);
  qv::DrawSheetText(sgt, x + 91, y - 11, 2.5F, "10d");
  qv::DrawSheetText(sgt, x + 156, y - 4, 2.5F, "15d", qv::Across::Right);
  caption(x + 27, "hook 180");
  caption(x + 84, "hook 135");
  caption(x + 140, "hook 90");
}

}  // namespace

Sheet compose_notes(const Sample& project, const Sample& data) {
  Sheet sheet = new_sheet(project, data);
  CBase_SGT& sgt = *sheet.sgt;
  const CFPoint title = sheet.from_left(185, 374);
  draw_title(sgt, title.x, title.y, data.text("words", "title"), "");
  draw_column(sgt, data, "notes 1", sheet.from_left(12, 360), 134);
  draw_column(sgt, data, "notes 2", sheet.from_left(196, 360), 134);
  use_pen(sgt, "TEXT", "7");
  const CFPoint corner = sheet.from_left(380, 378);
  const auto table = [&](const char* name, float y, std::vector<qv::SheetTable::Column> columns) {
    qv::SheetTable rows = table_of(data, name, std::move(columns));
    rows.SetTitle(data.text("words", name));
    use_pen(sgt, "TEXT", "7");
    return rows.Draw(sgt, corner.x, y).all().y1 - 19;
  };
  float y = table("drawings", corner.y, {{14}, {24}, {82, qv::Across::Left}, {18}, {29}});
  y = table("materials", y, {{56}, {34}, {34}, {43}});
  y = table("anchorage", y, {{56}, {37}, {37}, {37}});
  draw_hooks(sgt, data, {corner.x, y - 14});
  draw_title(sgt, corner.x + 83, y - 52, data.text("words", "hooks"), "");
  return sheet;
}

}  // namespace qvdraw
