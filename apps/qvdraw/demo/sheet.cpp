#include "demo/sheet.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "qvtools/drawing/fitted_text.h"
#include "qvtools/drawing/note_block.h"
#include "qvtools/drawing/title_block.h"
#include "qvtools/geometry/numerics/numeric.h"
#include "qvtools/text/gbk_text.h"

namespace qvdraw {

namespace {

// The library's default patterns suit drawings in sheet units; these are sheet millimetres times the scale.
void add_line_types(CBase_SGT& sgt, float scale, float dash) {
  const float dashed[] = {dash * scale, -dash / 2 * scale};
  const float dashDot[] = {10 * scale, -1.5F * scale, 0, -1.5F * scale};
  sgt.Add_LType("DASHED", "- - - - -", 2, 1.5F * dash * scale, dashed);
  sgt.Add_LType("DASHDOT", "- . - . - . - . -", 4, 13 * scale, dashDot);
}

void fill_blocks(CBase_SGT& sgt, const qv::SheetFrame& frame, const Sample& project, const Sample& sample) {
  using qv::TitleEntry;
  const qv::TitleBlock block(frame);
  constexpr struct {
    TitleEntry entry;
    const char* key;
  } kEntries[] = {{TitleEntry::Office, "office"},
                  {TitleEntry::Project, "project"},
                  {TitleEntry::ProfessionLead, "profession lead"},
                  {TitleEntry::ProjectLead, "project lead"},
                  {TitleEntry::Design, "design"},
                  {TitleEntry::Check, "check"},
                  {TitleEntry::Review, "review"},
                  {TitleEntry::Approve, "approve"},
                  {TitleEntry::Date, "date"}};
  use_pen(sgt, "TITLE", "5");
  for (const auto& [entry, key] : kEntries) block.Fill(sgt, entry, project.text("project", key).c_str());
  block.Fill(sgt, TitleEntry::Drawing, sample.text("sheet", "name").c_str());
  block.Fill(sgt, TitleEntry::Number, sample.text("sheet", "number").c_str());
  std::vector<qv::CounterSignBlock::Entry> entries;
  for (const Sample::Row& row : project.rows("countersign")) entries.push_back({row.text(0), row.text(1), row.text(2)});
  qv::CounterSignBlock(frame).Fill(sgt, entries);
}

}  // namespace

CFPoint Sheet::from_left(double mm, double up) const {
  const double s = sgt->m_fBiLiChi;
  return {frame.inside.x1 + static_cast<float>(mm * s), frame.inside.y1 + static_cast<float>(up * s)};
}

CFPoint Sheet::from_right(double mm, double down) const {
  const double s = sgt->m_fBiLiChi;
  return {frame.inside.x2 - static_cast<float>(mm * s), frame.inside.y2 - static_cast<float>(down * s)};
}

void use_pen(CBase_SGT& sgt, const char* layer, const char* color, const char* ltype) {
  sgt.SetCurLayer(layer);
  sgt.SetCurColor(color);
  sgt.SetCurLType(ltype);
}

Sheet new_sheet(const Sample& project, const Sample& sample, float dash) {
  std::unique_ptr<CBase_SGT> sgt(NewMemDxf());
  if (!sgt) throw std::runtime_error("not enough memory");
  const float scale = sample.number("sheet", "scale");
  if (!(scale > 0)) throw std::runtime_error("a sheet has no scale");
  const int size = static_cast<int>(sample.number("sheet", "size"));
  sgt->m_bCodePageHeader = 1;
  add_line_types(*sgt, scale, dash);
  constexpr struct {
    const char* name;
    int color;
  } kLayers[] = {{"FRAME", 7}, {"TITLE", 5}, {"AXIS", 1}, {"COLUMN", 7}, {"CONCRETE", 7},
                 {"BEAM", 3},  {"STEEL", 1}, {"DIM", 5},  {"TEXT", 7},   {"CHART", 7}};
  for (const auto& layer : kLayers) sgt->Add_Layer(layer.name, layer.color, "CONTINUOUS");
  sgt->SetBiLiChi(scale);
  qv::copy_text(sgt->m_szBZColor, "5");
  use_pen(*sgt, "FRAME", "7");
  sgt->Draw_TuKuang(0, 0, size, 0, 0);
  const qv::SheetFrame frame(*sgt, 0, 0, size);
  fill_blocks(*sgt, frame, project, sample);
  return {std::move(sgt), frame};
}

void draw_title(CBase_SGT& sgt, float x, float y, const std::string& title, const std::string& scale) {
  use_pen(sgt, "TEXT", "7");
  const float s = sgt.m_fBiLiChi;
  const float height = sgt.m_fTuMingText;
  const float half = qv::SheetTextWidth(title.c_str(), height) / 2 + s;
  qv::DrawSheetText(sgt, x, y + s, height, title.c_str(), qv::Across::Center);
  sgt.Draw_Pline(x - half, y, x + half, y, sgt.m_fTuMingWidth, sgt.m_fTuMingWidth);
  // Other programs' Chinese characters are wider than what is measured.
  const auto chinese = std::ranges::count_if(title, [](char c) { return static_cast<unsigned char>(c) > 0xA0; }) / 2;
  const float wider = 0.3F * height * static_cast<float>(chinese);
  qv::DrawSheetText(sgt, x + half + 3 * s + wider, y + s, 0.7F * height, scale.c_str());
}

float draw_notes(CBase_SGT& sgt, const Sample& sample, CFPoint place, double width) {
  use_pen(sgt, "TEXT", "7");
  return qv::NoteBlock(sample.text("words", "notes"), sample.lines("notes")).Draw(sgt, place.x, place.y, width).y1;
}

qv::SheetTable table_of(const Sample& sample, const std::string& section, std::vector<qv::SheetTable::Column> columns,
                        const qv::SheetTable::Look& look) {
  qv::SheetTable table(std::move(columns), look);
  for (const Sample::Row& row : sample.rows(section)) {
    if (table.rows() == 0)
      table.AddHeader(row.fields);
    else
      table.AddRow(row.fields);
  }
  return table;
}

void fill(CBase_SGT& sgt, float x1, float y1, float x2, float y2) {
  sgt.Draw_Solid(x1, y1, x2, y1, x1, y2, x2, y2);
}

void draw_bottom_bar(CBase_SGT& sgt, float x1, float y1, float x2, float y2, float hook) {
  const float length = get_dist(x1, y1, x2, y2);
  const float u = (x2 - x1) / length;
  const float v = (y2 - y1) / length;
  float x[6], y[6];
  const float along[] = {hook, 0, 0, length, length, length - hook};
  const float left[] = {hook, hook, 0, 0, hook, hook};
  for (int i = 0; i < 6; ++i) {
    x[i] = x1 + along[i] * u - left[i] * v;
    y[i] = y1 + along[i] * v + left[i] * u;
  }
  const float bulge[] = {0, 1, 0, 1, 0, 0};
  float start[6], end[6];
  for (int i = 0; i < 6; ++i) start[i] = end[i] = sgt.m_fGJLineWidth;
  const std::string color = sgt.m_szCurColor;
  sgt.SetCurColor(sgt.m_szGJColor);
  sgt.Draw_Pline(6, x, y, bulge, 0, start, end);
  sgt.SetCurColor(color.c_str());
}

void draw_top_bar(CBase_SGT& sgt, float x1, float y1, float x2, float y2, float hook) {
  const float length = get_dist(x1, y1, x2, y2);
  const float dx = (y2 - y1) / length * hook;
  const float dy = -(x2 - x1) / length * hook;
  const float x[] = {x1 + dx, x1, x2, x2 + dx};
  const float y[] = {y1 + dy, y1, y2, y2 + dy};
  sgt.Draw_XianGangJin(4, x, y);
}

}  // namespace qvdraw
