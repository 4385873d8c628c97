#include <iterator>
#include <vector>

#include "demo.h"
#include "demo_captions.h"
#include "demo_sheet.h"

namespace qvdraw {

namespace {

constexpr float kScale = 100;
constexpr float kColumn = 600;
constexpr float kBeam = 300;
constexpr float kSecondary = 200;

// Axes 1 to 8 and A to E, on the sheet.
constexpr float kX[] = {13000, 20800, 28600, 36400, 44200, 52000, 59800, 67600};
constexpr float kY[] = {17500, 25900, 28900, 37300, 44500};
constexpr int kColumns = static_cast<int>(std::size(kX));
constexpr int kRows = static_cast<int>(std::size(kY));
constexpr int kStairBay = 6;  // between axes 7 and 8
constexpr int kStairRow = 2;  // between axes C and D

void draw_axes(CBase_SGT& sgt) {
  const float first = 3600;
  const float last = 4600;
  sgt.m_fDimTextHeight = 4 * kScale;
  const auto axis = [&](float x1, float y1, float x2, float y2, float dx, float dy, const std::string& name) {
    use_pen(sgt, "AXIS", "1", "DASHDOT");
    sgt.Draw_Line(x1 - dx * first, y1 - dy * first, x2 + dx * first, y2 + dy * first);
    use_pen(sgt, "AXIS", "1");
    sgt.Draw_ZhouFu(x1 - dx * first, y1 - dy * first, x1 - dx * last, y1 - dy * last, name.c_str());
    sgt.Draw_ZhouFu(x2 + dx * first, y2 + dy * first, x2 + dx * last, y2 + dy * last, name.c_str());
  };
  for (int i = 0; i < kColumns; ++i) axis(kX[i], kY[0], kX[i], kY[kRows - 1], 0, 1, std::to_string(i + 1));
  for (int j = 0; j < kRows; ++j)
    axis(kX[0], kY[j], kX[kColumns - 1], kY[j], 1, 0, std::string(1, static_cast<char>('A' + j)));
  sgt.m_fDimTextHeight = sgt.m_fZiGao[0];
}

void draw_dimensions(CBase_SGT& sgt) {
  use_pen(sgt, "DIM", "5");
  const std::vector<float> left(kRows, kX[0]);
  const std::vector<float> bottom(kColumns, kY[0]);
  const float totalX[] = {kX[0], kX[kColumns - 1]};
  const float totalY[] = {kY[0], kY[kRows - 1]};
  sgt.m_fDimOffset = 23 * kScale;
  sgt.m_fDimPolarA = sgt.m_fDimPolarB = 15 * kScale;
  sgt.Draw_Dim_Points(kColumns, kX, bottom.data(), 0, 1, 1);
  sgt.Draw_Dim_Points(kRows, left.data(), kY, 1, 0, 1);
  sgt.m_fDimOffset = 31 * kScale;
  sgt.m_fDimPolarA = sgt.m_fDimPolarB = 6 * kScale;
  sgt.Draw_Dim_Points(2, totalX, bottom.data(), 0, 1, 1);
  sgt.Draw_Dim_Points(2, left.data(), totalY, 1, 0, 1);
}

void draw_columns(CBase_SGT& sgt) {
  use_pen(sgt, "COLUMN", "8");
  const float h = kColumn / 2;
  for (const float x : kX)
    for (const float y : kY) sgt.Draw_Solid(x - h, y - h, x + h, y - h, x - h, y + h, x + h, y + h);
  use_pen(sgt, "COLUMN", "7");
  for (const float x : kX)
    for (const float y : kY) sgt.Draw_Rect_C(kColumn, kColumn, x, y, 0);
}

/// The two edges of a beam; an edge under the slab is hidden.
void draw_beam(CBase_SGT& sgt, float x1, float y1, float x2, float y2, float width, bool leftFree, bool rightFree) {
  const float h = width / 2;
  const bool level = y1 == y2;
  const float dx = level ? 0 : -h;  // to the left edge
  const float dy = level ? h : 0;
  use_pen(sgt, "BEAM", "3", leftFree ? "BYLAYER" : "DASHED");
  sgt.Draw_Line(x1 + dx, y1 + dy, x2 + dx, y2 + dy);
  use_pen(sgt, "BEAM", "3", rightFree ? "BYLAYER" : "DASHED");
  sgt.Draw_Line(x1 - dx, y1 - dy, x2 - dx, y2 - dy);
}

bool is_stair(int bay, int row) {
  return bay == kStairBay && row == kStairRow;
}

void draw_beams(CBase_SGT& sgt) {
  const float c = kColumn / 2;
  for (int j = 0; j < kRows; ++j)
    for (int i = 0; i + 1 < kColumns; ++i)
      draw_beam(sgt, kX[i] + c, kY[j], kX[i + 1] - c, kY[j], kBeam, j == kRows - 1 || is_stair(i, j),
                j == 0 || is_stair(i, j - 1));
  for (int i = 0; i < kColumns; ++i)
    for (int j = 0; j + 1 < kRows; ++j)
      draw_beam(sgt, kX[i], kY[j] + c, kX[i], kY[j + 1] - c, kBeam, i == 0 || is_stair(i - 1, j),
                i == kColumns - 1 || is_stair(i, j));
  for (int j = 0; j + 1 < kRows; ++j) {
    if (kY[j + 1] - kY[j] < 5000) continue;
    const float y = (kY[j] + kY[j + 1]) / 2;
    for (int i = 0; i + 1 < kColumns; ++i)
      if (!is_stair(i, j)) draw_beam(sgt, kX[i] + kBeam / 2, y, kX[i + 1] - kBeam / 2, y, kSecondary, false, false);
  }
}

void draw_stair_opening(CBase_SGT& sgt) {
  const float h = kBeam / 2;
  const float x1 = kX[kStairBay] + h;
  const float x2 = kX[kStairBay + 1] - h;
  const float y1 = kY[kStairRow] + h;
  const float y2 = kY[kStairRow + 1] - h;
  use_pen(sgt, "CONCRETE", "8");
  sgt.Draw_Line(x1, y1, x2, y2);
  sgt.Draw_Line(x1, y2, x2, y1);
  use_pen(sgt, "TEXT", "7");
  draw_text(sgt, (x1 + x2) / 2 - 600, y2 - 1300, sgt.m_fZiGao[1], captions::kStairs);
}

void draw_beam_labels(CBase_SGT& sgt) {
  use_pen(sgt, "TEXT", "7");
  const float h = sgt.m_fZiGao[0];
  const float off = kBeam / 2 + 90;
  const std::string stirrups = std::string(kGrade1) + "8@100/200(2)";
  for (int j = 0; j < kRows; ++j) {
    const std::string name = "KL" + std::to_string(j + 1) + "(7) 300x700";
    sgt.Draw_Text_Along_Line(kX[0], kY[j], kX[1], kY[j], 8, 1, name.c_str(), h, off);
    sgt.Draw_Text_Along_Line(kX[0], kY[j], kX[1], kY[j], 8, 4, stirrups.c_str(), h, off);
  }
  for (int i = 0; i < kColumns; ++i) {
    const std::string name = "KL" + std::to_string(kRows + i + 1) + "(4) 300x700";
    sgt.Draw_Text_Along_Line(kX[i], kY[0], kX[i], kY[1], 8, 1, name.c_str(), h, off);
  }
  int number = 0;
  for (int j = 0; j + 1 < kRows; ++j) {
    if (kY[j + 1] - kY[j] < 5000) continue;
    const float y = (kY[j] + kY[j + 1]) / 2;
    const std::string name = "L" + std::to_string(++number) + "(" + (j == kStairRow ? "6" : "7") + ") 200x500";
    sgt.Draw_Text_Along_Line(kX[0], y, kX[1], y, 8, 1, name.c_str(), h, kSecondary / 2 + 90);
  }
}

void draw_slab_marks(CBase_SGT& sgt) {
  use_pen(sgt, "TEXT", "7");
  for (int j = 0; j + 1 < kRows; ++j)
    for (int i = 0; i + 1 < kColumns; ++i)
      if (!is_stair(i, j)) sgt.Draw_Text(kX[i] + 4900, kY[j] + 1200, sgt.m_fZiGao[0], 0, "h=120");
  use_pen(sgt, "DIM", "5");
  sgt.Draw_BiaoGao(kX[3] + 1500, kY[1] + 1100, 4.170F, 0);
  sgt.Draw_BiaoGao(kX[kStairBay] + 3800, kY[1] + 1100, 4.120F, 1);
  use_pen(sgt, "DIM", "7");
  const float x = kX[4] + 6300;
  sgt.Draw_PouXian(x, kY[kRows - 1] + 1300, x, kY[0] - 1100, "1", 0, 1);
}

void draw_schedule(CBase_SGT& sgt, float x, float top) {
  const float row = 800;
  const float widths[] = {1700, 2000, 2100, 2100, 3100};
  const std::string g1 = kGrade1;
  const std::string g3 = kGrade3;
  const std::string stirrups = g1 + "8@100/200(2)";
  const std::string rows[][5] = {
      {captions::kMark, captions::kSize, captions::kTopBars, captions::kBottomBars, captions::kStirrups},
      {"KL1", "300x700", "2" + g3 + "25", "4" + g3 + "22", stirrups},
      {"KL2", "300x700", "4" + g3 + "25", "4" + g3 + "25", stirrups},
      {"KL3", "300x700", "4" + g3 + "25", "4" + g3 + "25", stirrups},
      {"KL6", "300x700", "4" + g3 + "22", "3" + g3 + "25", stirrups},
      {"L1", "200x500", "2" + g3 + "16", "3" + g3 + "20", g1 + "8@200(2)"}};
  const auto count = static_cast<float>(std::size(rows));
  float width = 0;
  for (const float w : widths) width += w;
  use_pen(sgt, "TEXT", "7");
  draw_text(sgt, x + width / 2 - 1000, top + 300, sgt.m_fZiGao[2], captions::kSchedule);
  sgt.Draw_Rect_LB(width, count * row, x, top - count * row, 0, 0.5F * kScale);
  float y = top;
  for (const auto& cells : rows) {
    float at = x;
    for (std::size_t i = 0; i < std::size(cells); ++i) {
      draw_text(sgt, at + 200, y - row + 260, 3 * kScale, cells[i]);
      at += widths[i];
    }
    y -= row;
    if (y > top - count * row + 1) sgt.Draw_Line(x, y, x + width, y);
  }
  float at = x;
  for (std::size_t i = 0; i + 1 < std::size(widths); ++i) {
    at += widths[i];
    sgt.Draw_Line(at, top, at, top - count * row);
  }
}

void draw_notes(CBase_SGT& sgt, float x, float y) {
  use_pen(sgt, "TEXT", "7");
  draw_text(sgt, x, y, sgt.m_fZiGao[2], captions::kNotes);
  for (const char* note : {captions::kNoteConcrete, captions::kNoteSlab, captions::kNoteLevel, captions::kNoteSteel}) {
    y -= 800;
    draw_text(sgt, x, y, sgt.m_fZiGao[1], note);
  }
}

}  // namespace

std::unique_ptr<CBase_SGT> compose_plan() {
  std::unique_ptr<CBase_SGT> sgt = new_sheet(1, kScale, {captions::kPlanName, captions::kPlanNumber});
  if (!sgt) return nullptr;
  draw_axes(*sgt);
  draw_beams(*sgt);
  draw_columns(*sgt);
  draw_stair_opening(*sgt);
  draw_beam_labels(*sgt);
  draw_slab_marks(*sgt);
  draw_dimensions(*sgt);
  use_pen(*sgt, "TEXT", "7");
  sgt->Draw_TuMing(40300, 8600, captions::kPlanTitle, 1, 1);
  draw_schedule(*sgt, 71600, 16500);
  draw_notes(*sgt, 71000, 55500);
  return sgt;
}

}  // namespace qvdraw
