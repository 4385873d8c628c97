#include "demo_sheet.h"

#include "demo_captions.h"

namespace qvdraw {

namespace {

// The library's default patterns suit drawings in sheet units; these are sheet millimetres times the scale.
void add_line_types(CBase_SGT& sgt, float scale, float dash) {
  const float dashed[] = {dash * scale, -dash / 2 * scale};
  const float dashDot[] = {10 * scale, -1.5F * scale, 0, -1.5F * scale};
  sgt.Add_LType("DASHED", "- - - - -", 2, 1.5F * dash * scale, dashed);
  sgt.Add_LType("DASHDOT", "- . - . - . - . -", 4, 13 * scale, dashDot);
}

/// The entries right of the captions: eighths of the block's width, rows from the bottom.
void fill_title_block(CBase_SGT& sgt, float right, float bottom, const TitleEntries& entries) {
  const float s = sgt.m_fBiLiChi;
  const struct {
    int column;
    int row;
    const char* text;
  } cells[] = {{1, 0, captions::kApprover}, {3, 0, captions::kDesigner}, {5, 0, captions::kReviewer},
               {7, 0, entries.number},      {1, 1, captions::kApprover}, {3, 1, captions::kChecker},
               {5, 1, captions::kApprover}, {7, 1, "2026.05"},           {5, 3, captions::kProject},
               {5, 2, entries.name}};
  use_pen(sgt, "TITLE", "5");
  for (const auto& cell : cells) {
    const float x = right + (22.5F * static_cast<float>(cell.column - 8) + 2) * s;
    const bool wide = cell.row >= 2;
    draw_text(sgt, x, bottom + (10 * static_cast<float>(cell.row) + 3) * s, (wide ? 5.0F : 3.5F) * s, cell.text);
  }
}

}  // namespace

void use_pen(CBase_SGT& sgt, const char* layer, const char* color, const char* ltype) {
  sgt.SetCurLayer(layer);
  sgt.SetCurColor(color);
  sgt.SetCurLType(ltype);
}

void draw_text(CBase_SGT& sgt, float x, float y, float height, const std::string& text) {
  sgt.SetCurStyle("HZ");
  sgt.Draw_Text(x, y, height, 0, text.c_str());
  sgt.SetCurStyle("STANDARD");
}

std::unique_ptr<CBase_SGT> new_sheet(int size, float scale, const TitleEntries& entries, float dash) {
  std::unique_ptr<CBase_SGT> sgt(NewMemDxf());
  if (!sgt) return nullptr;
  sgt->m_bCodePageHeader = 1;
  add_line_types(*sgt, scale, dash);
  const struct {
    const char* name;
    int color;
  } layers[] = {{"FRAME", 7}, {"TITLE", 5}, {"AXIS", 1}, {"COLUMN", 7}, {"CONCRETE", 7},
                {"BEAM", 3},  {"STEEL", 1}, {"DIM", 5},  {"TEXT", 7},   {"CHART", 7}};
  for (const auto& layer : layers) sgt->Add_Layer(layer.name, layer.color, "CONTINUOUS");
  sgt->SetBiLiChi(scale);
  sgt->m_fDimOffset = 25 * scale;
  qv::copy_text(sgt->m_szBZColor, "5");
  use_pen(*sgt, "FRAME", "7");
  sgt->Draw_TuKuang(0, 0, size, 0, 0);
  const struct {
    float right;
    float bottom;
  } blocks[] = {{1179, 10}, {831, 10}, {584, 10}, {415, 5}};
  fill_title_block(*sgt, blocks[size].right * scale, blocks[size].bottom * scale, entries);
  return sgt;
}

}  // namespace qvdraw
