// What a drawing holds, layer by layer: entities, the length of their lines in m, and the area that closed ones enclose
// in m2.   measure_layers DRAWING.dxf [LAYER…]   prints a table and writes it, with the drawing beside it, as
// layers.dxf and layers.png. Of the layers that are named, or of all.

#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "qvtools.h"

namespace {

struct Sum {
  int entities = 0;
  double length = 0;  // mm
  double area = 0;    // mm2
};

/// Inserts show what their blocks hold, so the drawing is imported with its references made entities.
std::map<std::string, Sum> measure(DXF& drawing) {
  std::map<std::string, Sum> sums;
  POSITION place = drawing.m_EntityList.GetHeadPosition();
  while (place) {
    ACAD_ENTITY& entity = *static_cast<ACAD_ENTITY*>(drawing.m_EntityList.GetNext(place));
    const char* const layer = qv::visit_entity(entity, [](auto& record) -> const char* { return record.m_szLayer; });
    const qv::EntityMeasures measures = qv::Measure(entity);
    const ACAD_Entity_Type kind = entity.GetType();
    const bool isCurve = kind != ACAD_TYPE_SOLID && kind != ACAD_TYPE_3DFACE;
    Sum& sum = sums[layer];
    ++sum.entities;
    sum.length += isCurve ? measures.length : 0;  // the outlines of fills are no lines
    sum.area += measures.closed ? measures.area : 0;
  }
  return sums;
}

std::string fixed(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f", value);
  return text;
}

int color_of(const DXF& drawing, const std::string& layer) {
  for (int i = 0; i < drawing.m_nLayer; ++i)
    if (layer == drawing.m_pLayer[static_cast<std::size_t>(i)].m_szName)
      return drawing.m_pLayer[static_cast<std::size_t>(i)].m_nColor;
  return 7;
}

/// The table at (x, top), with a stroke in each layer's colour in its first column.
void draw_table(CBase_SGT& sgt, const DXF& drawing, const std::map<std::string, Sum>& sums, float x, float top) {
  using Column = qv::SheetTable::Column;
  qv::SheetTable table({Column{18}, Column{0, qv::Across::Left}, Column{0, qv::Across::Right},
                        Column{0, qv::Across::Right}, Column{0, qv::Across::Right}});
  table.AddHeader({"", qv::to_gbk("图层"), qv::to_gbk("数量"), qv::to_gbk("长度 (m)"), qv::to_gbk("面积 (m2)")});
  for (const auto& [layer, sum] : sums)
    table.AddRow({"", layer, std::to_string(sum.entities), fixed(sum.length / 1e3), fixed(sum.area / 1e6)});
  const qv::SheetTable::Place place = table.Draw(sgt, x, top);
  int row = 1;
  for (const auto& [layer, sum] : sums) {
    const CFRect cell = place.Cell(row++, 0);
    const float gap = cell.Width() / 6, y = (cell.y1 + cell.y2) / 2;
    sgt.SetCurColor(std::to_string(color_of(drawing, layer)).c_str());
    sgt.Draw_Pline(cell.x1 + gap, y, cell.x2 - gap, y, gap / 2, gap / 2);
  }
}

int fail(const char* what, const char* why) {
  std::fprintf(stderr, "measure_layers: %s: %s\n", what, why);
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return fail("usage", "measure_layers DRAWING.dxf [LAYER...]");
  if (!G_ShapeFont.SetTxtFont(FONTS, "txt.shx")) return fail(FONTS, "there is no txt.shx");
  if (!G_ShapeFont.SetHzFont(FONTS, "hztxt.shx")) fail(FONTS, "without hztxt.shx Chinese texts stay blank");

  DXF drawing;
  qv::ImportOptions options;
  options.unit = qv::Unit::Millimetre;
  options.guessUnit = true;
  options.explode = true;
  qv::ImportReport report;
  if (!qv::Import(argv[1], drawing, options, report))
    return fail(argv[1], report.remarks.empty() ? "cannot be read" : report.remarks[0].text.c_str());

  std::map<std::string, Sum> sums = measure(drawing);
  std::map<std::string, Sum> wanted;
  for (int i = 2; i < argc; ++i) {
    const auto found = sums.find(qv::to_gbk(argv[i]));
    if (found == sums.end()) return fail(argv[i], "the drawing has nothing on this layer");
    wanted.insert(*found);
  }
  if (argc > 2) sums = wanted;
  std::printf("%-20s %9s %12s %12s\n", "layer", "entities", "length (m)", "area (m2)");
  for (const auto& [layer, sum] : sums)
    std::printf("%-20s %9d %12.2f %12.2f\n", qv::from_gbk(layer).c_str(), sum.entities, sum.length / 1e3,
                sum.area / 1e6);

  const std::unique_ptr<CBase_SGT> sgt(NewMemDxf());
  if (!sgt || !qv::Underlay(*sgt, drawing, {}, 1, {"", true, qv::kByLayer})) return fail(argv[1], "is too large");
  const CFRect extent = sgt->GetFRect();
  sgt->SetBiLiChi(extent.Height() / 120);  // the table as on a sheet on which the drawing is 120 mm high
  draw_table(*sgt, drawing, sums, extent.x2 + extent.Height() / 10, extent.y2);
  if (!sgt->Write_MemDxf_To_File("layers.dxf")) return fail("layers.dxf", "cannot be written");
  const auto picture = qv::MakePicture(*sgt);
  if (!picture || !qv::SavePng(*picture, "layers.png")) return fail("layers.png", "cannot be written");
  return 0;
}
