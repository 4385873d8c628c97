#include <utility>

#include "demo/demo.h"
#include "qvtools/drawing/dimension_chain.h"
#include "qvtools/drawing/fitted_text.h"
#include "qvtools/drawing/second_scale.h"

namespace qvdraw {

namespace {

constexpr float kSectionScale = 15;
constexpr double kCover = 25;

/// Bars along one side: corner bars and those between them, at even distances from -reach to reach.
std::vector<float> along(float reach, int between) {
  std::vector<float> at;
  for (int i = 0; i < between + 2; ++i)
    at.push_back(-reach + 2 * reach * static_cast<float>(i) / static_cast<float>(between + 1));
  return at;
}

/// Stirrups around inner bars: pairs of legs, and a tie where one is left over.
void draw_inner_legs(CBase_SGT& sgt, const std::vector<float>& bars, float reach, bool upright) {
  for (std::size_t i = 1; i + 1 < bars.size(); i += 2) {
    const bool pair = i + 2 < bars.size();
    const float from = bars[i];
    const float to = pair ? bars[i + 1] : from;
    if (!pair) {
      if (upright)
        sgt.Draw_LaJieJin(from, -reach, from, reach, 0);
      else
        sgt.Draw_LaJieJin(-reach, from, reach, from, 0);
    } else if (upright) {
      sgt.Draw_RectGangJin_C(to - from + 2 * 20, 2 * reach + 2 * 20, (from + to) / 2, 0, 0, 1);
    } else {
      sgt.Draw_RectGangJin_C(2 * reach + 2 * 20, to - from + 2 * 20, 0, (from + to) / 2, 0, 1);
    }
  }
}

/// The section of a column about the middle of its cell.
void draw_section(CBase_SGT& sgt, const Sample::Row& row, const CFRect& cell) {
  const float b = row.number(2);
  const float h = row.number(3);
  const float s = sgt.m_fBiLiChi;
  const qv::SecondScale detail(sgt, (cell.x1 + cell.x2) / 2 + 3 * s, (cell.y1 + cell.y2) / 2 + 4 * s, kSectionScale);
  sgt.m_fGJDotWidth = 26;
  sgt.m_fGJLineWidth = 10;
  use_pen(sgt, "CONCRETE", "7");
  sgt.Draw_Rect_C(b, h, 0, 0, 0);
  use_pen(sgt, "STEEL", "1");
  const auto cover = static_cast<float>(kCover);
  sgt.Draw_RectGangJin_C_CutL(b - 2 * cover, h - 2 * cover, 0, 0, 0, 50, 50, 1);
  const float inset = cover + sgt.m_fGJLineWidth + sgt.m_fGJDotWidth / 2;
  const std::vector<float> x = along(b / 2 - inset, static_cast<int>(row.number(5)));
  const std::vector<float> y = along(h / 2 - inset, static_cast<int>(row.number(7)));
  draw_inner_legs(sgt, x, h / 2 - inset, true);
  draw_inner_legs(sgt, y, b / 2 - inset, false);
  for (const float at : x)
    for (const float side : {y.front(), y.back()}) sgt.Draw_YuanDianGangJin(at, side, 0, 0);
  for (std::size_t i = 1; i + 1 < y.size(); ++i)
    for (const float side : {x.front(), x.back()}) sgt.Draw_YuanDianGangJin(side, y[i], 0, 0);
  use_pen(sgt, "DIM", "5");
  const float widths[] = {-b / 2, 0, b / 2};
  const float heights[] = {-h / 2, 0, h / 2};
  qv::DrawDimensionChain(sgt, qv::ChainSide::Below, widths, -h / 2 - 130, 4);
  qv::DrawDimensionChain(sgt, qv::ChainSide::Left, heights, -b / 2 - 130, 4);
  use_pen(sgt, "AXIS", "1", "DASHDOT");
  sgt.Draw_Line(-b / 2 - 60, 0, b / 2 + 90, 0);
  sgt.Draw_Line(0, -h / 2 - 60, 0, h / 2 + 60);
}

/// A column from its footing to the floor, with the zones of close stirrups.
void draw_zones(CBase_SGT& sgt, const Sample& data, CFPoint place) {
  const auto measure = [&](const char* key) { return data.number("detail", key); };
  const float half = measure("width") / 2;
  const float beam = measure("beam");
  const float footing = measure("footing");
  const float storey = measure("storey");
  const float clear = storey - beam;
  const float x = place.x;
  const float y = place.y;
  const float out = half + 450;
  use_pen(sgt, "CONCRETE", "7");
  for (const auto& [level, depth] : {std::pair(y, footing), std::pair(y + storey, beam)})
    for (const float side : {-1.0F, 1.0F}) {
      sgt.Draw_Line(x + side * half, level, x + side * out, level);
      sgt.Draw_Line(x + side * half, level - depth, x + side * out, level - depth);
      sgt.Draw_Cut_Sym(x + side * out, level - depth, x + side * out, level);
    }
  sgt.Draw_Line(x - half, y - footing, x + half, y - footing);
  for (const float side : {-half, half}) {
    sgt.Draw_Line(x + side, y, x + side, y + clear);
    sgt.Draw_Line(x + side, y + storey, x + side, y + storey + 400);
  }
  sgt.Draw_Cut_Sym(x - half, y + storey + 400, x + half, y + storey + 400);
  use_pen(sgt, "STEEL", "1");
  const float low = y - footing + 90;
  for (const float side : {-1.0F, 1.0F}) {
    const float px[] = {x + side * (half + 330), x + side * (half - 45), x + side * (half - 45)};
    const float py[] = {low, low, y + storey + 330};
    sgt.Draw_XianGangJin(3, px, py);
    sgt.Draw_XianGangJin(x + side * half / 3, low, x + side * half / 3, y + storey + 330);
  }
  use_pen(sgt, "STEEL", "3");
  const float dense = measure("dense");
  const float bottom = measure("bottom");
  for (float at = y + 50; at < y + storey - 40;
       at += at < y + bottom - 40 || at > y + clear - dense - 10 ? 100.0F : 200.0F)
    sgt.Draw_Line(x - half + 40, at, x + half - 40, at);
  use_pen(sgt, "DIM", "5");
  const float levels[] = {y - footing, y, y + bottom, y + clear - dense, y + clear, y + storey};
  const float storeys[] = {y, y + storey};
  qv::DrawDimensionChain(sgt, qv::ChainSide::Left, levels, x - half - 1100, 6);
  qv::DrawDimensionChain(sgt, qv::ChainSide::Left, storeys, x - half - 1500, 4);
  const float right = x + out + 150;
  for (const auto& [at, key] : {std::pair(y, "foot"), std::pair(y + storey, "level")}) {
    sgt.Draw_Line(right, at, right + 1000, at);
    sgt.Draw_BiaoGao(right + 300, at, measure(key), 0);
  }
  use_pen(sgt, "TEXT", "7");
  const auto zone = [&](float middle) {
    qv::DrawSheetText(sgt, x + half + 150, middle - sgt.m_fZiGao[1] / 2, sgt.m_fZiGao[1],
                      data.text("words", "dense").c_str());
  };
  zone(y + bottom / 2);
  zone(y + clear - dense / 2);
}

/// The schedule of some storeys: a column of the table for each column of the building, the section on top.
qv::SheetTable::Place draw_schedule(CBase_SGT& sgt, const Sample& data, const std::string& section, CFPoint place) {
  qv::SheetTable::Look look;
  look.rowHeight = 8;
  const auto& rows = data.rows(section);
  std::vector<qv::SheetTable::Column> columns{{27}};
  for (std::size_t i = 0; i < rows.size(); ++i) columns.push_back({76});
  qv::SheetTable table(columns, look);
  std::vector<std::string> cells{data.text("words", "section")};
  table.AddRow(cells, 70);
  const auto& heads = data.row("words", "rows").fields;
  for (std::size_t k = 0; k < heads.size(); ++k) {
    cells.assign(1, heads[k]);
    for (const Sample::Row& row : rows) {
      const std::string sizes = row.text(2) + " x " + row.text(3);
      const std::string stirrups = row.text(9) + " (" + row.text(10) + "x" + row.text(11) + ")";
      const std::string texts[] = {row.text(0), row.text(1), sizes, row.text(4), row.text(6), row.text(8), stirrups};
      cells.push_back(k < 3 ? texts[k] : bar_text(texts[k]));
    }
    table.AddRow(cells);
  }
  use_pen(sgt, "TEXT", "7");
  const auto drawn = table.Draw(sgt, place.x, place.y);
  for (std::size_t i = 0; i < rows.size(); ++i) draw_section(sgt, rows[i], drawn.Cell(0, static_cast<int>(i) + 1));
  return drawn;
}

}  // namespace

Sheet compose_columns(const Sample& project, const Sample& data) {
  Sheet sheet = new_sheet(project, data);
  CBase_SGT& sgt = *sheet.sgt;
  const float s = sgt.m_fBiLiChi;
  const CFPoint corner = sheet.from_left(14, 382);
  const CFRect upper = draw_schedule(sgt, data, "upper", corner).all();
  const CFRect lower = draw_schedule(sgt, data, "lower", {corner.x, upper.y1 - 12 * s}).all();
  draw_title(sgt, (lower.x1 + lower.x2) / 2, lower.y1 - 16 * s, data.text("words", "title"), "1:15");
  const CFPoint detail = sheet.from_left(450, 232);
  draw_zones(sgt, data, detail);
  sgt.m_fTuMingText = sgt.m_fZiGao[2];
  draw_title(sgt, detail.x, detail.y - 1350, data.text("words", "detail"), "1:50");
  draw_notes(sgt, data, {sheet.from_left(372, 0).x, detail.y - 2000}, 137);
  return sheet;
}

}  // namespace qvdraw
