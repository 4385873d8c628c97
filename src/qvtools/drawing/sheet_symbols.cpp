#include "qvtools/drawing/internal/placing.h"
#include "qvtools/drawing/sheet_frame.h"
#include "qvtools/services/captions.h"

using namespace qv::detail;

namespace {

/// The captions of the title block by their cells: eighths of the width from the left, rows from the bottom.
const struct TitleCell {
  int column;
  int row;
  const char* caption;
} kTitleCells[] = {{0, 0, qv::captions::kProfessionLead}, {2, 0, qv::captions::kDesign},
                   {4, 0, qv::captions::kReview},         {6, 0, qv::captions::kDrawingNumber},
                   {0, 1, qv::captions::kProjectLead},    {2, 1, qv::captions::kCheck},
                   {4, 1, qv::captions::kApprove},        {6, 1, qv::captions::kDate},
                   {4, 3, qv::captions::kProjectName},    {4, 2, qv::captions::kDrawingName}};

}  // namespace

void CBase_SGT::Draw_TuKuang(float x, float y, int size, int extra, int portrait) {
  const qv::SheetFrame sheet(*this, x, y, size, extra, portrait);
  const auto draw = [&](const CFRect& r, auto... width) {
    Draw_Rect_LB(r.Width(), r.Height(), r.x1, r.y1, 0, width...);
  };
  draw(sheet.paper);
  draw(sheet.inside, sheet.frameWidth);
  Draw_BiaoTiLan(sheet.title.x2, sheet.title.y1, sheet.titleWidth);
  if (portrait)
    Draw_HuiQianLan(sheet.countersign.x2, sheet.countersign.y1, 0);
  else
    Draw_HuiQianLan(sheet.countersign.x2, sheet.countersign.y2, -90);
}

void CBase_SGT::Draw_BiaoTiLan(float x, float y, float width) {
  const float w = 180 * m_fBiLiChi;
  const float h = 40 * m_fBiLiChi;
  const float row = h / 4;
  const float column = w / 8;
  const float left = x - w;
  const float middle = x - w / 2;
  Draw_Rect_LB(w, h, left, y, 0, width);
  Draw_Line(left, y + row, x, y + row);
  Draw_Line(left, y + 2 * row, x, y + 2 * row);
  Draw_Line(middle, y + 3 * row, x, y + 3 * row);
  for (int k = 1; k <= 7; ++k) {
    const float at = left + static_cast<float>(k) * column;
    Draw_Line(at, y, at, y + 2 * row);
  }
  Draw_Line(middle, y + 2 * row, middle, y + h);
  Draw_Line(middle + column, y + 2 * row, middle + column, y + h);
  const SymbolEnvironment environment(*this);
  SetCurStyle("HZ");
  const float gap = 0.75F * m_fBiLiChi;
  for (const TitleCell& cell : kTitleCells)
    Draw_Text(left + static_cast<float>(cell.column) * column + gap, y + static_cast<float>(cell.row) * row + gap,
              m_fZiGao[3], 0, cell.caption);
}

void CBase_SGT::Draw_HuiQianLan(float x, float y, float angle) {
  const float w = 75 * m_fBiLiChi;
  const float h = 20 * m_fBiLiChi;
  const Frame frame(x, y, -angle);
  for (int k = 0; k <= 4; ++k) {
    const float v = static_cast<float>(k) * h / 4;
    draw_line(*this, frame.at(0, v), frame.at(-w, v));
  }
  for (int k = 0; k <= 3; ++k) {
    const float u = -static_cast<float>(k) * w / 3;
    draw_line(*this, frame.at(u, 0), frame.at(u, h));
  }
}

void CBase_SGT::Draw_TuMing(float x, float y, const char* text, int thickLine, int thinLine) {
  const SymbolEnvironment environment(*this);
  environment.anchor_all(x, y);
  const float length = static_cast<float>(std::strlen(text)) * m_fTuMingText * 0.5F;
  const float x1 = x - length / 2;
  const float x2 = x + length / 2;
  if (thickLine) Draw_Pline(x1, y, x2, y, m_fTuMingWidth, m_fTuMingWidth);
  const float under = y - 1.2F * m_fBiLiChi;
  if (thinLine) Draw_Line(x1, under, x2, under);
  SetCurStyle("HZ");
  Draw_Text(x1 + 0.05F * length, y + m_fTextGap + m_fTuMingWidth / 2, m_fTuMingText, 0, text);
}

void CBase_SGT::Draw_ZhouFu(float x1, float y1, float x2, float y2, const char* text) {
  const SymbolEnvironment environment(*this, m_szBZColor);
  environment.anchor_all(x1, y1, x2, y2);
  Draw_Line(x1, y1, x2, y2);
  const float r = 4 * m_fBiLiChi;
  const Place center = Frame(x1, y1, x2, y2).at(get_dist(x1, y1, x2, y2) + r, 0);
  Draw_Circle(center.x, center.y, r);
  if (*text == '\0') return;
  const float h = m_fDimTextHeight;
  Draw_Text(center.x - text_width(text, h) / 2, center.y - h / 2, h, 0, text);
}
