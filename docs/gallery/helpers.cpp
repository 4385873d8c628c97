// Helpers for composing.

#include <array>

#include "figure.h"

using manual::Side;

FIGURE(dimension_chain) {
  //[
  const float at[] = {0, 900, 1050, 2700, 3600};
  qv::DrawDimensionChain(sgt, qv::ChainSide::Below, at, -600);
  qv::DrawDimensionChain(sgt, qv::ChainSide::Right, std::array{0.0F, 1200.0F}, 4300, 5);
  //]
  for (const float x : at) figure.point(x, 0, "", Side::Above);
  figure.note(0, 0, "positions", Side::Above);
  figure.leader(3600, -600, 8, -5, "line");
  figure.length(0, -600, 0, -200, "extension", 6);
}

FIGURE(leaders) {
  //[
  qv::Leaders labels(qv::Leaders::Side::Right, 1200);
  const float y[] = {0, 60, 140, 700};
  for (int i = 0; i < 4; ++i) {
    sgt.Draw_YuanDianGangJin(200.0F * static_cast<float>(i), y[i], 0, 0);
    labels.Add(200.0F * static_cast<float>(i), y[i], "2x20", i + 1);
  }
  labels.Draw(sgt);
  //]
  figure.line(1200, -700, 1200, 1400, true);
  figure.note(1200, -700, "at", Side::Below);
}

FIGURE(second_scale) {
  //[
  sgt.Draw_Rect_LB(300, 700, 0, 0, 0);
  {
    const qv::SecondScale detail(sgt, 1500, 0, 20);
    sgt.Draw_Rect_LB(300, 700, 0, 0, 0);
    sgt.m_fDimOffset = 200;
    sgt.Draw_Dim_Polar(0, 0, 300, 0, 1, 1);
  }
  //]
  figure.point(1500, 0, "x, y", Side::Left);
  figure.note(150, 700, "1:50", Side::Above);
  figure.note(1875, 1750, "1:20", Side::Above);
}

FIGURE(sheet_table) {
  //[
  sgt.SetBiLiChi(1);
  qv::SheetTable table({{20, qv::Across::Center}, {0, qv::Across::Left}, {25, qv::Across::Right}});
  table.SetTitle(qv::to_gbk("材料表"));
  table.AddHeader({qv::to_gbk("编号"), qv::to_gbk("名称"), qv::to_gbk("数量")});
  table.AddRow({"1", qv::to_gbk("混凝土 C30"), "12.5"});
  table.AddRow({"2", qv::to_gbk("钢筋"), "1840"});
  table.AddRow({qv::to_gbk("备注"), "", ""});
  table.Merge(3, 0, 1, 3);
  table.Draw(sgt, 0, 0);
  //]
  figure.point(0, 0, "x, top", Side::Left);
  figure.leader(60, -24.5F, 10, -2, "Merge(3, 0, 1, 3)");
}

FIGURE(bar_list) {
  //[
  sgt.SetBiLiChi(1);
  qv::BarList list;
  list.Add({"1", qv::BarShape::BentTwice, 3, 25, 2, 6000, 375, 375, 0});
  list.Add({"2", qv::BarShape::Straight, 3, 20, 2, 4500, 0, 0, 0});
  list.Add({"3", qv::BarShape::Stirrup, 1, 8, 40, 250, 550, 0, 0});
  list.Draw(sgt, 0, 0);
  //]
  figure.zoom(0.8F);
  figure.point(0, 0, "x, top", Side::Left);
}

FIGURE(bar_shapes) {
  //[
  sgt.SetBiLiChi(1);
  qv::BarList list;
  const struct {
    const char* name;
    qv::BarShape shape;
  } shapes[] = {{"Straight", qv::BarShape::Straight},   {"Bent", qv::BarShape::Bent},
                {"BentTwice", qv::BarShape::BentTwice}, {"Cranked", qv::BarShape::Cranked},
                {"Stirrup", qv::BarShape::Stirrup},     {"Tie", qv::BarShape::Tie}};
  for (const auto& [name, shape] : shapes) list.Add({name, shape, 3, 20, 1, 1200, 300, 200, 0});
  list.Draw(sgt, 0, 0);
  //]
  figure.zoom(0.8F);
}

FIGURE(note_block) {
  //[
  sgt.SetBiLiChi(1);
  const qv::NoteBlock notes(qv::to_gbk("说明"), {qv::to_gbk("本图尺寸以毫米计，标高以米计。混凝土强度等级为C30。"),
                                                 qv::to_gbk("未注明的箍筋为双肢箍。")});
  notes.Draw(sgt, 0, 0, 70);
  //]
  figure.point(0, 0, "x, top", Side::Left);
  figure.length(0, 0, 70, 0, "width", 4);
}

FIGURE(axis_grid) {
  //[
  sgt.SetBiLiChi(100);
  sgt.Add_Default_LineType();
  const float across[] = {3600, 3600};
  const float up[] = {4500};
  const qv::AxisGrid grid(0, 0, across, up);
  grid.DrawAxes(sgt);
  grid.DrawDimensions(sgt);
  //]
  figure.zoom(0.8F);
  figure.point(0, 0, "x, y", Side::BelowRight);
  figure.point(grid.X("2"), grid.Y("B"), "X(\"2\"), Y(\"B\")", Side::BelowRight);
}

FIGURE(fitted_texts) {
  //[
  sgt.SetBiLiChi(1);
  const char* const texts[] = {"KL-1", "KL-1 300x600", "KL-1 300x600 4+4"};
  for (int i = 0; i < 3; ++i) {
    const auto left = 50.0F * static_cast<float>(i);
    const CFRect box(left, 0, left + 40, 10);
    sgt.Draw_Rect_LB(box.Width(), box.Height(), box.x1, box.y1, 0);
    qv::DrawFittedText(sgt, box, qv::Across::Center, 7, texts[i], 1.5F);
  }
  sgt.Draw_Line(0, -10, 140, -10);
  qv::DrawSheetText(sgt, 0, -10, 3.5F, "Left", qv::Across::Left);
  qv::DrawSheetText(sgt, 70, -10, 3.5F, "Center", qv::Across::Center);
  qv::DrawSheetText(sgt, 140, -10, 3.5F, "Right", qv::Across::Right);
  //]
  for (const float x : {0.0F, 70.0F, 140.0F}) figure.point(x, -10, "x, y", Side::Below);
}

FIGURE(filled_blocks) {
  //[
  sgt.SetBiLiChi(1);
  sgt.Draw_TuKuang(0, 0, 3, 0, 0);
  const qv::SheetFrame sheet(sgt, 0, 0, 3);
  const qv::TitleBlock block(sheet);
  block.Fill(sgt, qv::TitleEntry::Office, qv::to_gbk("结构设计所").c_str());
  block.Fill(sgt, qv::TitleEntry::Project, qv::to_gbk("教学楼").c_str());
  block.Fill(sgt, qv::TitleEntry::Drawing, qv::to_gbk("二层梁配筋图").c_str());
  block.Fill(sgt, qv::TitleEntry::Number, "S-05");
  qv::CounterSignBlock(sheet).Fill(sgt, {{qv::to_gbk("建筑"), qv::to_gbk("王工"), "2026.11"}});
  //]
  figure.zoom(0.35F);
  const auto show = [&](const CFRect& box, const char* name) {
    figure.note((box.x1 + box.x2) / 2, box.y2, name, Side::Above);
  };
  show(sheet.title, "title");
  figure.leader(sheet.countersign.x2, sheet.countersign.y1, 8, -5, "countersign");
  figure.note(sheet.inside.x1 + 20, sheet.inside.y2 - 20, "inside", Side::Right);
}

FIGURE(underlay) {
  //[
  DXF plan;  // an architect's, in metres; usually it comes from qv::Import
  plan.New_MemDxf();
  plan.Add_Layer("WALL", 2, "CONTINUOUS");
  const float x[] = {0, 6, 6, 0, 0};
  const float y[] = {0, 0, 3, 3, 0};
  for (int i = 0; i < 4; ++i) plan.Write_Line(x[i], y[i], 0, x[i + 1], y[i + 1], 0, "WALL", "BYLAYER", "BYLAYER");
  plan.Write_Circle(3, 1.5F, 0, 0.8F, "WALL", "BYLAYER", "BYLAYER");

  sgt.SetBiLiChi(100);
  const double toMillimetres = qv::UnitFactor(qv::Unit::Metre, qv::Unit::Millimetre);
  qv::Underlay(sgt, plan, {500, 500, 10}, toMillimetres);
  sgt.Draw_Pline(500, 500, 6400, 1550, 120, 120);
  //]
  figure.point(500, 500, "x, y", Side::Left);
  figure.line(500, 500, 3500, 500, true);
  figure.angle(500, 500, 20, 0, 10, "angle");
}
