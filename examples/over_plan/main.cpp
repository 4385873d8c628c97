// The beams and columns of a house over its architect's plan.   over_plan house.dxf   imports the plan, whatever
// program wrote it, puts it grey under the structure on an A2 sheet, and writes framing.dxf, framing.png and
// framing.pdf.

#include <array>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "qvtools.h"

namespace {

struct Beam {
  const char* mark;
  float x1, y1, x2, y2;  // the axis
  float b, h;
};

constexpr std::array<float, 2> kAcross = {7200, 4800}, kUp = {5100, 3900};  // spacings of the axes
constexpr float kColumn = 400;
constexpr std::array kBeams = {
    Beam{"KL-1", 0, 0, 12000, 0, 250, 600},        Beam{"KL-2", 0, 5100, 12000, 5100, 250, 600},
    Beam{"KL-3", 0, 9000, 12000, 9000, 250, 600},  Beam{"KL-4", 0, 0, 0, 9000, 250, 500},
    Beam{"KL-5", 7200, 0, 7200, 9000, 250, 500},   Beam{"KL-6", 12000, 0, 12000, 9000, 250, 500},
    Beam{"L-1", 4200, 5100, 4200, 9000, 200, 400}, Beam{"L-2", 7200, 3400, 12000, 3400, 200, 400}};

int fail(const char* what, const char* why) {
  std::fprintf(stderr, "over_plan: %s: %s\n", what, why);
  return 1;
}

void use(CBase_SGT& sgt, const char* layer) {
  sgt.SetCurLayer(layer);
  sgt.SetCurColor("BYLAYER");
  sgt.SetCurLType("BYLAYER");
}

bool read_plan(const char* path, DXF& plan) {
  qv::ImportOptions options;
  options.unit = qv::Unit::Millimetre;
  options.guessUnit = true;  // for files that do not say theirs
  qv::ImportReport report;
  if (!qv::Import(path, plan, options, report))
    return fail(path, report.remarks.empty() ? "cannot be read" : report.remarks[0].text.c_str()), false;
  std::printf("%s: lengths times %g, %s\n", path, report.scale, report.summary().c_str());
  // The sheet has dimensions of its own: those of the plan are switched off, so that they are not taken over.
  for (int i = 0; i < plan.m_nLayer; ++i) {
    ACAD_LAYER& layer = plan.m_pLayer[static_cast<std::size_t>(i)];
    const std::string name = layer.m_szName;
    if (name == "A-DIM" || name == "Defpoints") layer.m_nColor = -std::abs(layer.m_nColor);
  }
  return true;
}

void draw_structure(CBase_SGT& sgt) {
  use(sgt, "BEAM");
  for (const Beam& beam : kBeams) {
    // Sides from face to face of what carries the beam, and the mark above or on the left of it.
    const bool level = beam.y1 == beam.y2;
    const float end = beam.mark[0] == 'K' ? kColumn / 2 : 125, side = beam.b / 2;
    for (const float off : {-side, side})
      if (level)
        sgt.Draw_Line(beam.x1 + end, beam.y1 + off, beam.x2 - end, beam.y1 + off);
      else
        sgt.Draw_Line(beam.x1 + off, beam.y1 + end, beam.x1 + off, beam.y2 - end);
  }
  use(sgt, "TEXT");
  for (const Beam& beam : kBeams) {
    char text[64];
    std::snprintf(text, sizeof text, "%s %gx%g", beam.mark, static_cast<double>(beam.b), static_cast<double>(beam.h));
    sgt.Draw_Text_Along_Line(beam.x1, beam.y1, beam.x2, beam.y2, 5, 1, text, sgt.m_fZiGao[0],
                             beam.b / 2 + 0.9F * sgt.m_fBiLiChi);
  }
  use(sgt, "COLUMN");
  const qv::AxisGrid grid(0, 0, kAcross, kUp);
  constexpr float r = kColumn / 2;
  for (const float x : grid.x())
    for (const float y : grid.y()) sgt.Draw_Solid(x - r, y - r, x + r, y - r, x - r, y + r, x + r, y + r);
  use(sgt, "AXIS");
  qv::AxisGrid::Look look;
  look.color = "BYLAYER";
  look.reach = 44;  // the chains stand beyond the plan's steps
  look.chains[0] = 36;
  look.chains[1] = 29;
  grid.DrawAxes(sgt, look);
  use(sgt, "DIM");
  grid.DrawDimensions(sgt, false, look);
}

void draw_table(CBase_SGT& sgt, float x, float top) {
  const auto gbk = qv::to_gbk;
  qv::SheetTable table(std::vector<qv::SheetTable::Column>(4), {.textHeight = 3.5, .rowHeight = 8});
  table.SetTitle(gbk("梁表"));
  table.AddHeader({gbk("编号"), "b x h (mm)", gbk("长度 (m)"), gbk("体积 (m3)")});
  for (const Beam& beam : kBeams) {
    const double length = std::hypot(beam.x2 - beam.x1, beam.y2 - beam.y1);
    char size[32], metres[32], volume[32];
    std::snprintf(size, sizeof size, "%gx%g", static_cast<double>(beam.b), static_cast<double>(beam.h));
    std::snprintf(metres, sizeof metres, "%.2f", length / 1000);
    std::snprintf(volume, sizeof volume, "%.2f", length * beam.b * beam.h / 1e9);
    table.AddRow({beam.mark, size, metres, volume});
  }
  table.Draw(sgt, x, top);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return fail("usage", "over_plan PLAN.dxf");
  if (!G_ShapeFont.SetTxtFont(FONTS, "txt.shx")) return fail(FONTS, "there is no txt.shx");
  if (!G_ShapeFont.SetHzFont(FONTS, "hztxt.shx")) fail(FONTS, "without hztxt.shx Chinese texts stay blank");
  DXF plan;
  if (!read_plan(argv[1], plan)) return 1;

  const std::unique_ptr<CBase_SGT> sgt(NewMemDxf());
  if (!sgt) return fail("memory", "there is none");
  sgt->m_bCodePageHeader = 1;
  sgt->SetBiLiChi(50);
  // One's own layers first: the plan's come into what room is left.
  const float dashDot[] = {400, -100, 0, -100};  // 12 mm on the sheet
  sgt->Add_LType("DASHDOT", "__ . __ . __", 4, 600, dashDot);
  sgt->Add_Layer("BEAM", 5, "CONTINUOUS");
  sgt->Add_Layer("COLUMN", 7, "CONTINUOUS");
  sgt->Add_Layer("AXIS", 1, "DASHDOT");
  sgt->Add_Layer("DIM", 7, "CONTINUOUS");
  sgt->Add_Layer("TEXT", 7, "CONTINUOUS");
  qv::copy_text(sgt->m_szBZColor, "BYLAYER");
  if (!qv::Underlay(*sgt, plan, {}, 1)) return fail(argv[1], "is too large");
  draw_structure(*sgt);

  use(*sgt, "0");
  const float x0 = -4600, y0 = -6200;
  sgt->Draw_TuKuang(x0, y0, 2, 0, 0);
  const qv::SheetFrame sheet(*sgt, x0, y0, 2);
  const qv::TitleBlock block(sheet);
  block.Fill(*sgt, qv::TitleEntry::Project, qv::to_gbk("山间小屋").c_str());
  block.Fill(*sgt, qv::TitleEntry::Drawing, qv::to_gbk("屋面梁布置图").c_str());
  block.Fill(*sgt, qv::TitleEntry::Number, qv::to_gbk("结施-02").c_str());
  draw_table(*sgt, 16500, 10500);
  const std::vector<std::string> notes = {qv::to_gbk("灰色为建筑底图, 仅供定位。"),
                                          qv::to_gbk("混凝土 C30; 柱 400x400, 未注明者轴线居中。")};
  qv::NoteBlock(qv::to_gbk("说明:"), notes).Draw(*sgt, 16500, 5000, 130);
  sgt->Draw_TuMing(6000, -3900, qv::to_gbk("屋面梁布置图 1:50").c_str(), 1, 0);

  if (!sgt->Write_MemDxf_To_File("framing.dxf")) return fail("framing.dxf", "cannot be written");
  const qv::PlotSource source{sgt.get(), nullptr, "framing"};
  qv::PlotOptions options;
  options.colors = qv::PlotColors::Color;
  options.dpi = 72;
  options.smooth = true;
  for (const char* const file : {"framing.pdf", "framing.png"}) {
    qv::PlotReport plotted;
    if (!qv::Plot({&source, 1}, file, options, plotted)) return fail(file, plotted.problem.c_str());
  }
  return 0;
}
