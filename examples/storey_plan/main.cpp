// The framing plan of a storey from a database.
//   storey_plan --sample STOREY.dat    writes a database, as the program that computes the storey would
//   storey_plan STOREY.dat             draws it on an A2 sheet: storey.dxf, storey.pdf and storey.png

#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "qvtools.h"

namespace {

int fail(const char* what, const char* why) {
  std::fprintf(stderr, "storey_plan: %s: %s\n", what, why);
  return 1;
}

/// A member between two points of the plan; of a column both are its middle. Lengths are mm.
struct Member {
  std::string mark;
  float x1 = 0, y1 = 0, x2 = 0, y2 = 0, b = 0, h = 0;
};

struct Storey {
  std::string name, slab;
  std::vector<float> across, up;  // spacings of the axes
  std::vector<float> level;       // one, in m
  std::vector<Member> columns, beams;
};

/// A segment for the storey, and one for each member, its name the kind and a number.
bool write_sample(const char* path) {
  CDataBaseFile out;
  if (!out.Open_File(path, CDataBaseFile::IO_WRITE)) return false;
  out.Write_FileVersion(CDataBaseFile::kVersion);
  out.Begin_Segment("STOREY");
  out.Write_Item1("name", qv::to_gbk("三层").c_str());
  out.Write_Item("level", "%.3f", 7.77);
  out.Write_Item("slab", "%d", 120);
  out.Write_Item1("across", "6600,6600,3600,6600");
  out.Write_Item1("up", "6000,2400,6000");
  out.End_Segment();
  const std::array<float, 5> x = {0, 6600, 13200, 16800, 23400};
  const std::array<float, 4> y = {0, 6000, 8400, 14400};
  int count = 0;
  const auto member = [&](const char* kind, const Member& m) {
    out.Begin_Segment("%s%d", kind, ++count);
    out.Write_Item1("mark", m.mark.c_str());
    out.Write_Item("axis", "%g,%g,%g,%g", static_cast<double>(m.x1), static_cast<double>(m.y1),
                   static_cast<double>(m.x2), static_cast<double>(m.y2));
    out.Write_Item("section", "%g,%g", static_cast<double>(m.b), static_cast<double>(m.h));
    out.End_Segment();
  };
  for (const float up : y)
    for (const float across : x)
      member("COLUMN", {up == 0 || up == y.back() ? "KZ-1" : "KZ-2", across, up, across, up, 500, 500});
  int beam = 0;
  for (const float up : y) member("BEAM", {"KL-" + std::to_string(++beam), x.front(), up, x.back(), up, 300, 600});
  for (const float across : x)
    member("BEAM", {"KL-" + std::to_string(++beam), across, y.front(), across, y.back(), 300, 650});
  for (const float up : {3000.0F, 11400.0F})
    for (std::size_t i = 0; i + 1 < x.size(); ++i)
      member("BEAM", {"L-1", x[i] + 150, up, x[i + 1] - 150, up, 200, 450});
  return out.Close_File() == 1;
}

/// The numbers of a value, with commas between them.
std::vector<float> numbers(const char* text) {
  std::vector<float> values;
  float value;
  for (int read = 0; text && std::sscanf(text, " %f%n", &value, &read) == 1;
       text += text[read] == ',' ? read + 1 : read)
    values.push_back(value);
  return values;
}

/// A value of the segment that was read last, without its line end; empty when there is none.
std::string item(CDataBaseFile& in, const char* key) {
  char text[CDataBaseFile::kValueSize];
  in.Get_Item(key, text);
  return {text, std::strcspn(text, "\r\n")};
}

bool read_member(CDataBaseFile& in, Member& member) {
  const std::vector<float> axis = numbers(in.Get_Item("axis")), section = numbers(in.Get_Item("section"));
  if (axis.size() != 4 || section.size() != 2 || section[0] <= 0 || section[1] <= 0) return false;
  member = {item(in, "mark"), axis[0], axis[1], axis[2], axis[3], section[0], section[1]};
  return true;
}

bool read(const char* path, Storey& storey) {
  CDataBaseFile in;
  if (!in.Open_File(path, CDataBaseFile::IO_READ)) return fail(path, "is no whole database"), false;
  if (!in.Read_Segment("STOREY")) return fail(path, "has no segment STOREY"), false;
  storey.name = item(in, "name");
  storey.slab = item(in, "slab");
  storey.across = numbers(in.Get_Item("across"));
  storey.up = numbers(in.Get_Item("up"));
  storey.level = numbers(in.Get_Item("level"));
  if (storey.across.empty() || storey.up.empty() || storey.level.size() != 1)
    return fail(path, "STOREY has no axes or no level"), false;
  for (int i = 0; i < in.Get_SegmentCount(); ++i) {
    const std::string name = in.Get_SegmentName(i).str();
    const bool isColumn = name.starts_with("COLUMN");
    if (!isColumn && !name.starts_with("BEAM")) continue;
    Member member;
    if (!in.Read_Named_Segment(name.c_str()) || !read_member(in, member) ||
        (!isColumn && member.x1 == member.x2 && member.y1 == member.y2))
      return fail(path, (name + " has no axis or no section").c_str()), false;
    (isColumn ? storey.columns : storey.beams).push_back(member);
  }
  return true;
}

void use(CBase_SGT& sgt, const char* layer) {
  sgt.SetCurLayer(layer);
  sgt.SetCurColor("BYLAYER");
  sgt.SetCurLType("BYLAYER");
}

void draw(CBase_SGT& sgt, const Storey& storey) {
  const float s = sgt.m_fBiLiChi, small = sgt.m_fZiGao[0];
  for (const Member& beam : storey.beams) {
    const float length = std::hypot(beam.x2 - beam.x1, beam.y2 - beam.y1), side = beam.b / 2;
    const float u = (beam.x2 - beam.x1) / length, v = (beam.y2 - beam.y1) / length;  // its direction
    use(sgt, "BEAM");
    for (const float off : {-side, side})
      sgt.Draw_Line(beam.x1 - v * off, beam.y1 + u * off, beam.x2 - v * off, beam.y2 + u * off);
    use(sgt, "TEXT");
    char text[80];
    std::snprintf(text, sizeof text, "%s %gx%g", beam.mark.c_str(), static_cast<double>(beam.b),
                  static_cast<double>(beam.h));
    sgt.Draw_Text_Along_Line(beam.x1, beam.y1, beam.x2, beam.y2, 16, v > u ? 4 : 2, text, small, side + 0.8F * s);
  }
  for (const Member& column : storey.columns) {
    const float b = column.b / 2, h = column.h / 2, x = column.x1, y = column.y1;
    use(sgt, "COLUMN");
    sgt.Draw_Solid(x - b, y - h, x + b, y - h, x - b, y + h, x + b, y + h);
    use(sgt, "TEXT");
    sgt.Draw_Text(x + b + s, y - h - 3.5F * s, small, 0, column.mark.c_str());
  }
  const qv::AxisGrid grid(0, 0, storey.across, storey.up);
  use(sgt, "AXIS");
  grid.DrawAxes(sgt);
  use(sgt, "DIM");
  grid.DrawDimensions(sgt, true);
  use(sgt, "TEXT");
  for (std::size_t i = 0; i + 1 < grid.x().size(); ++i)
    for (std::size_t j = 0; j + 1 < grid.y().size(); ++j)
      sgt.Draw_Text(0.55F * grid.x()[i] + 0.45F * grid.x()[i + 1], 0.3F * grid.y()[j] + 0.7F * grid.y()[j + 1],
                    sgt.m_fZiGao[1], 0, ("h=" + storey.slab).c_str());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && argv[1] == std::string("--sample"))
    return write_sample(argv[2]) ? 0 : fail(argv[2], "cannot be written");
  if (argc != 2) return fail("usage", "storey_plan [--sample] STOREY.dat");
  if (!G_ShapeFont.SetTxtFont(FONTS, "txt.shx")) return fail(FONTS, "there is no txt.shx");
  if (!G_ShapeFont.SetHzFont(FONTS, "hztxt.shx")) fail(FONTS, "without hztxt.shx Chinese texts stay blank");
  Storey storey;
  if (!read(argv[1], storey)) return 1;

  const std::unique_ptr<CBase_SGT> sgt(NewMemDxf());
  if (!sgt) return fail("memory", "there is none");
  sgt->m_bCodePageHeader = 1;
  sgt->SetBiLiChi(100);
  const float x0 = -10300, y0 = -9600, dashDot[] = {800, -200, 0, -200};  // 12 mm on the sheet
  sgt->Add_LType("DASHDOT", "__ . __ . __", 4, 1200, dashDot);
  for (const auto& [name, color] : {std::pair{"BEAM", 5}, {"COLUMN", 7}, {"AXIS", 1}, {"DIM", 7}, {"TEXT", 7}})
    sgt->Add_Layer(name, color, "CONTINUOUS");
  qv::copy_text(sgt->m_szBZColor, "BYLAYER");
  draw(*sgt, storey);
  use(*sgt, "0");
  sgt->Draw_TuKuang(x0, y0, 3, 0, 0);
  const qv::TitleBlock block(qv::SheetFrame(*sgt, x0, y0, 3));
  const std::string title = storey.name + qv::to_gbk("梁结构平面图");
  block.Fill(*sgt, qv::TitleEntry::Drawing, title.c_str());
  sgt->Draw_TuMing(4500, -6800, (title + " 1:100").c_str(), 1, 0);
  sgt->Draw_BiaoGao(1800, 6900, storey.level[0], 0);

  if (!sgt->Write_MemDxf_To_File("storey.dxf")) return fail("storey.dxf", "cannot be written");
  const qv::PlotSource source{sgt.get(), nullptr, "storey"};
  qv::PlotOptions options;
  options.colors = qv::PlotColors::Color;
  options.dpi = 96;
  options.smooth = true;
  for (const char* const file : {"storey.pdf", "storey.png"}) {
    qv::PlotReport plotted;
    if (!qv::Plot({&source, 1}, file, options, plotted)) return fail(file, plotted.problem.c_str());
  }
  std::printf("%zu columns, %zu beams\n", storey.columns.size(), storey.beams.size());
  return 0;
}
