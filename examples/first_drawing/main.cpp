// A beam with its bars on an A3 sheet: writes beam.dxf, beam.png and beam.pdf into the work folder.

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "qvtools.h"

int fail(const char* what) {
  std::fprintf(stderr, "first_drawing: %s\n", what);
  return 1;
}

int main() {
  if (!G_ShapeFont.SetTxtFont(FONTS, "txt.shx")) return fail("there is no txt.shx in " FONTS);
  if (!G_ShapeFont.SetHzFont(FONTS, "hztxt.shx")) fail("without hztxt.shx Chinese texts stay blank");
  const std::unique_ptr<CBase_SGT> sgt(NewMemDxf());
  if (!sgt) return fail("there is no memory");
  sgt->m_bCodePageHeader = 1;
  sgt->SetBiLiChi(25);

  // The beam: 6 m between the axes of two columns.
  const float span = 6000, depth = 600, width = 300, half = 250;
  sgt->Draw_Line(half, 0, span - half, 0);
  sgt->Draw_Line(half, depth, span - half, depth);

  // The sheet: A3, its lower left corner so that the beam stands in its upper half.
  const float x0 = -1700, y0 = -5600;
  sgt->Draw_TuKuang(x0, y0, 3, 0, 0);
  const qv::SheetFrame sheet(*sgt, x0, y0, 3);
  const qv::TitleBlock block(sheet);
  block.Fill(*sgt, qv::TitleEntry::Project, qv::to_gbk("滨江办公楼").c_str());
  block.Fill(*sgt, qv::TitleEntry::Drawing, qv::to_gbk("KL-1 配筋图").c_str());
  block.Fill(*sgt, qv::TitleEntry::Number, qv::to_gbk("结施-01").c_str());

  // The columns, on a layer of their own, and their axes.
  const float mm = sgt->m_fBiLiChi, dashDot[] = {8 * mm, -2 * mm, 0, -2 * mm};
  sgt->Add_LType("DASHDOT", "__ . __ . __", 4, 12 * mm, dashDot);
  sgt->Add_Layer("COLUMN", 7, "CONTINUOUS");
  sgt->Add_Layer("AXIS", 1, "CONTINUOUS");
  sgt->SetCurColor("BYLAYER");
  qv::copy_text(sgt->m_szBZColor, "BYLAYER");  // of bubbles, dimensions and labels
  sgt->m_fDimTextHeight = sgt->m_fZiGao[1];
  for (const float axis : {0.0F, span}) {
    const float outer = axis == 0 ? -half : span + half, inner = axis == 0 ? half : span - half;
    sgt->SetCurLayer("COLUMN");
    sgt->Draw_Line(outer, -500, outer, depth + 500);
    sgt->Draw_Line(inner, -500, inner, 0);
    sgt->Draw_Line(inner, depth, inner, depth + 500);
    sgt->Draw_Cut_Sym(axis - half, -500, axis + half, -500);
    sgt->Draw_Cut_Sym(axis - half, depth + 500, axis + half, depth + 500);
    sgt->SetCurLayer("AXIS");
    sgt->SetCurLType("DASHDOT");
    sgt->Draw_Line(axis, depth + 600, axis, -740);  // open where the width of the column will stand
    sgt->Draw_Line(axis, -860, axis, -1250);
    sgt->SetCurLType("BYLAYER");
    sgt->Draw_ZhouFu(axis, -1250, axis, -1350, axis == 0 ? "1" : "2");
  }
  sgt->m_fDimTextHeight = sgt->m_fZiGao[0];

  // The long bars, 40 mm inside the concrete, with their ends bent into the columns.
  sgt->Add_Layer("STEEL", 1, "CONTINUOUS");
  sgt->SetCurLayer("STEEL");
  const float inset = 40, left = -half + inset, right = span + half - inset;
  const float topX[] = {left, left, right, right};
  const float topY[] = {depth - inset - 300, depth - inset, depth - inset, depth - inset - 300};
  sgt->Draw_XianGangJin(4, topX, topY);
  const float bottomX[] = {left + 50, left + 50, right - 50, right - 50};
  const float bottomY[] = {inset + 330, inset, inset, inset + 330};
  sgt->Draw_XianGangJin(4, bottomX, bottomY);

  // The stirrups: 100 mm apart near the columns, 200 mm in the middle.
  sgt->Add_Layer("STIRRUP", 3, "CONTINUOUS");
  sgt->SetCurLayer("STIRRUP");
  const float dense = 900, first = half + 50, last = span - half - 50;
  int stirrups = 0;
  for (float x = first; x <= last; x += x < half + dense || x >= span - half - dense ? 100.0F : 200.0F) {
    sgt->Draw_Line(x, inset, x, depth - inset);
    ++stirrups;
  }

  // The dimensions, below and on the left.
  sgt->Add_Layer("DIM", 5, "CONTINUOUS");
  sgt->SetCurLayer("DIM");
  const float sides[] = {-half, half, half + dense, span - half - dense, span - half, span + half};
  qv::DrawDimensionChain(*sgt, qv::ChainSide::Below, sides, -850, 4);
  const float axes[] = {0, span};
  qv::DrawDimensionChain(*sgt, qv::ChainSide::Below, axes, -1100, 4);
  const float heights[] = {0, depth};
  qv::DrawDimensionChain(*sgt, qv::ChainSide::Left, heights, -500, 4);

  // The labels of the bars, and a title.
  char top[64], bottom[64], stirrup[64];
  CBase_SGT::FormString_GJ_nqd(top, 2, 3, 20);
  CBase_SGT::FormString_GJ_nqd(bottom, 3, 3, 22);
  CBase_SGT::FormString_GJ_qdas(stirrup, 1, 8, 100);
  qv::Leaders above(qv::Leaders::Side::Above, depth + 350);
  above.Add(1500, depth - inset, top, 1);
  above.Add(3000, depth - 200, stirrup + std::string("/200(2)"), 3);
  above.Draw(*sgt);
  qv::Leaders below(qv::Leaders::Side::Below, -300);
  below.Add(2000, inset, bottom, 2);
  below.Draw(*sgt);
  sgt->SetCurLayer("0");
  sgt->Draw_TuMing(span / 2, -1750, qv::to_gbk("KL-1 配筋图").c_str(), 1, 0);

  // The section, at 1:10 on this sheet of 1:25.
  {
    const qv::SecondScale section(*sgt, -600, -4600, 10);
    sgt->m_fGJDotWidth = 22;  // as thick as the bars are
    sgt->m_fGJLineWidth = 8;
    const CBase_SGT::CLiangZongJin bars[] = {{2, 3, 20, -1}, {3, 3, 22, 1}};
    sgt->Draw_Liang_Section(0, 0, width, depth, 25, 2, bars, {1, 8, 200, 2}, 1);
    const float across[] = {0, width}, up[] = {0, depth};
    qv::DrawDimensionChain(*sgt, qv::ChainSide::Below, across, -80, 4);
    qv::DrawDimensionChain(*sgt, qv::ChainSide::Left, up, -80, 4);
    sgt->Draw_TuMing(width / 2, -240, "1 - 1", 1, 0);
  }

  // The list of bars, and notes.
  qv::BarList list;
  list.Add({"1", qv::BarShape::BentTwice, 3, 20, 2, right - left, 300, 300, 0});
  list.Add({"2", qv::BarShape::BentTwice, 3, 22, 3, right - left - 100, 330, 330, 0});
  list.Add({"3", qv::BarShape::Stirrup, 1, 8, stirrups, width - 50, depth - 50, 0, 0});
  list.Draw(*sgt, 5100, -1850);
  const std::vector<std::string> notes = {qv::to_gbk("混凝土 C30; 保护层厚度 25 mm。"),
                                          qv::to_gbk("箍筋加密区长度 900 mm, 间距 100 mm。")};
  qv::NoteBlock(qv::to_gbk("说明:"), notes).Draw(*sgt, 1500, -2500, 100);

  // The drawing is saved.
  if (!sgt->Write_MemDxf_To_File("beam.dxf")) return fail("beam.dxf cannot be written");

  // A picture of it in colours.
  const auto picture = qv::MakePicture(*sgt);
  if (!picture || !qv::SavePng(*picture, "beam.png")) return fail("beam.png cannot be written");

  // The sheet as PDF, at its own scale.
  const auto pens = qv::PenTable::built_in("GB b=0.7");
  qv::PlotOptions options;
  if (pens) options.pens = &*pens;
  const qv::PlotSource source{sgt.get(), nullptr, "KL-1"};
  qv::PlotReport report;
  if (!qv::Plot({&source, 1}, "beam.pdf", options, report)) return fail(report.problem.c_str());
  std::printf("beam.pdf: %s, 1:%g\n", qv::paper_name(report.pages[0].paper).c_str(), report.pages[0].scale);
  return 0;
}
