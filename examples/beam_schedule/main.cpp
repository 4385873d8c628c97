// A host program: the beams of a floor, from a text file into a database, checked, and drawn as a schedule on an A2
// sheet.   beam_schedule beams.txt   writes beams.dat, beams.dxf, beams.pdf and beams.png into the work folder.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "qvtools.h"

namespace {

int fail(const char* what, const char* why) {
  std::fprintf(stderr, "beam_schedule: %s: %s\n", what, why);
  return 1;
}

struct Bars {
  int count = 0, diameter = 0;
};

struct Beam {
  std::string mark;
  int b = 0, h = 0, concrete = 0;           // mm, mm, grade
  double support = 0, span = 0, shear = 0;  // kNm, kNm, kN
  Bars top[2], bottom[2];                   // first and second row
  int stirrup = 0, spacing = 0, legs = 0;
};

constexpr int kSteel = 3, kPlain = 1;  // grades of the long bars and of the stirrups

bool read(const char* line, Beam& beam) {
  std::istringstream in(line ? line : "");
  char x;
  in >> beam.mark >> beam.b >> beam.h >> beam.concrete >> beam.support >> beam.span >> beam.shear;
  for (Bars* r : {&beam.top[0], &beam.top[1], &beam.bottom[0], &beam.bottom[1]}) in >> r->count >> x >> r->diameter;
  in >> beam.stirrup >> beam.spacing >> beam.legs;
  return !in.fail() && beam.spacing > 0;
}

/// The lines of the input file as segments of the database, one for each beam; false when that fails.
bool store(const char* input, const char* database) {
  std::ifstream file(input);
  if (!file) return fail(input, "cannot be read"), false;
  CDataBaseFile out;
  if (!out.Open_File(database, CDataBaseFile::IO_WRITE)) return fail(database, "cannot be written"), false;
  out.Write_FileVersion(CDataBaseFile::kVersion);
  for (std::string line; std::getline(file, line);) {
    Beam beam;
    if (line.empty() || line[0] == '#') continue;
    if (!read(line.c_str(), beam)) return fail(input, ("\"" + line + "\" is no beam").c_str()), false;
    out.Begin_Segment("%s", beam.mark.c_str());
    if (!out.Write_Item1("beam", line.c_str())) return fail(beam.mark.c_str(), "is there twice"), false;
    out.End_Segment();
  }
  return out.Close_File() == 1 || fail(database, "cannot be written") == 0;
}

std::vector<Beam> load(const char* database) {
  std::vector<Beam> beams;
  CDataBaseFile in;
  if (!in.Open_File(database, CDataBaseFile::IO_READ)) return beams;
  for (int i = 0; i < in.Get_SegmentCount(); ++i) {
    Beam beam;
    if (in.Read_Named_Segment(in.Get_SegmentName(i)) && read(in.Get_Item("beam"), beam)) beams.push_back(beam);
  }
  return beams;
}

double area(const Bars (&rows)[2]) {
  return qv::BarArea(rows[0].diameter, rows[0].count) + qv::BarArea(rows[1].diameter, rows[1].count);
}

std::pair<Con_Prop, Rein_Prop> materials(const Beam& beam, int grade) {
  std::pair<Con_Prop, Rein_Prop> found{};
  get_rc_property(beam.concrete, &found.first);
  get_rein_property(grade, &found.second);
  return found;
}

/// The steel that a moment needs (GB 50010, rectangular stress block, tension bars only; at least the least ratio), in
/// mm2; infinite when the section is too small.
double required(const Beam& beam, double moment) {
  const auto [concrete, steel] = materials(beam, kSteel);
  const double depth = beam.h - 45, block = static_cast<double>(concrete.fc) * beam.b;
  const double root = depth * depth - 2e6 * moment / block;
  if (root < 0) return HUGE_VAL;
  const double least = std::max(0.002, 0.45 * concrete.ft / steel.fy) * beam.b * beam.h;
  return std::max(least, block * (depth - std::sqrt(root)) / steel.fy);
}

/// The shear force that concrete and stirrups take (GB 50010), in kN.
double shear_strength(const Beam& beam) {
  const auto [concrete, steel] = materials(beam, kPlain);
  const double depth = beam.h - 45, stirrups = qv::BarArea(beam.stirrup, beam.legs) / beam.spacing * steel.fy * depth;
  return (0.7 * concrete.ft * beam.b * depth + stirrups) / 1000;
}

bool is_safe(const Beam& beam) {
  return area(beam.top) >= required(beam, beam.support) && area(beam.bottom) >= required(beam, beam.span) &&
         shear_strength(beam) >= beam.shear;
}

std::string text_of(const Bars (&rows)[2]) {
  std::string text;
  for (const Bars& row : rows) {
    char one[64] = "";
    if (row.count > 0) CBase_SGT::FormString_GJ_nqd(one, row.count, kSteel, row.diameter);
    text += (text.empty() || !*one ? "" : "+") + std::string(one);
  }
  return text;
}

std::string whole(double value) {
  return std::isfinite(value) ? std::to_string(std::lround(value)) : "-";
}

void draw_schedule(CBase_SGT& sgt, const std::vector<Beam>& beams, float x, float top) {
  qv::SheetTable table(std::vector<qv::SheetTable::Column>(12),
                       {.textHeight = 5, .rowHeight = 11, .gap = 2.5, .titleHeight = 7});
  table.SetTitle(qv::to_gbk("框架梁表"));
  const auto gbk = qv::to_gbk;
  table.AddHeader(
      {gbk("编号"), gbk("截面"), gbk("支座面筋"), "", "", gbk("跨中底筋"), "", "", gbk("箍筋"), "", "", gbk("结论")});
  table.AddHeader({"", "b x h", gbk("钢筋"), gbk("需要"), gbk("实配"), gbk("钢筋"), gbk("需要"), gbk("实配"),
                   gbk("钢筋"), "V (kN)", "Vu (kN)", ""});
  for (const int column : {2, 5, 8}) table.Merge(0, column, 1, 3);
  for (const int column : {0, 11}) table.Merge(0, column, 2, 1);
  for (const Beam& beam : beams) {
    char stirrups[64] = "";
    CBase_SGT::FormString_GJ_qdas(stirrups, kPlain, beam.stirrup, beam.spacing);
    table.AddRow({beam.mark, std::to_string(beam.b) + "x" + std::to_string(beam.h), text_of(beam.top),
                  whole(required(beam, beam.support)), whole(area(beam.top)), text_of(beam.bottom),
                  whole(required(beam, beam.span)), whole(area(beam.bottom)),
                  stirrups + ("(" + std::to_string(beam.legs) + ")"), whole(beam.shear), whole(shear_strength(beam)),
                  gbk(is_safe(beam) ? "满足" : "不满足")});
  }
  table.Draw(sgt, x, top);
}

/// The section at the support, at 1:10, with its lower left corner at (x, y).
void draw_section(CBase_SGT& sgt, const Beam& beam, float x, float y) {
  std::vector<CBase_SGT::CLiangZongJin> bars;
  for (const auto& [rows, side] : {std::pair{beam.top, -1}, {beam.bottom, 1}})
    for (int i = 0; i < 2; ++i)
      if (rows[i].count > 0) bars.push_back({rows[i].count, kSteel, rows[i].diameter, side * (i + 1)});
  const auto b = static_cast<float>(beam.b), h = static_cast<float>(beam.h);
  const qv::SecondScale detail(sgt, x, y, 10);
  sgt.m_fGJDotWidth = 24;
  sgt.m_fGJLineWidth = 8;
  sgt.Draw_Liang_Section(0, 0, b, h, 25, static_cast<int>(bars.size()), bars.data(),
                         {kPlain, beam.stirrup, beam.spacing, beam.legs}, 0);
  qv::DrawDimensionChain(sgt, qv::ChainSide::Below, std::vector<float>{0, b}, -90, 4);
  qv::DrawDimensionChain(sgt, qv::ChainSide::Left, std::vector<float>{0, h}, -90, 4);
  sgt.Draw_TuMing(b / 2, -280, beam.mark.c_str(), 1, 0);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return fail("usage", "beam_schedule BEAMS.txt");
  if (!G_ShapeFont.SetTxtFont(FONTS, "txt.shx")) return fail(FONTS, "there is no txt.shx");
  if (!G_ShapeFont.SetHzFont(FONTS, "hztxt.shx")) fail(FONTS, "without hztxt.shx Chinese texts stay blank");
  if (!store(argv[1], "beams.dat")) return 1;
  const std::vector<Beam> beams = load("beams.dat");
  if (beams.empty()) return fail(argv[1], "has no beams");

  const std::unique_ptr<CBase_SGT> sgt(NewMemDxf());
  if (!sgt) return fail("memory", "there is none");
  sgt->m_bCodePageHeader = 1;
  sgt->SetBiLiChi(50);
  sgt->Draw_TuKuang(0, 0, 2, 0, 0);
  const qv::TitleBlock block(qv::SheetFrame(*sgt, 0, 0, 2));
  using enum qv::TitleEntry;
  for (const auto& [entry, text] : {std::pair{Project, "滨江办公楼"}, {Drawing, "二层框架梁表"}, {Number, "结施-11"}})
    block.Fill(*sgt, entry, qv::to_gbk(text).c_str());
  draw_schedule(*sgt, beams, 2600, 19000);
  float x = 3400;
  for (const Beam& beam : beams) draw_section(*sgt, beam, std::exchange(x, x + 5000), 8000);
  const std::vector<std::string> notes = {qv::to_gbk("混凝土 C30; 纵筋 HRB400, 箍筋 HPB300; 断面比例 1:10。"),
                                          qv::to_gbk("面积单位 mm²; 钢筋面积按 GB/T 1499.2。")};
  qv::NoteBlock(qv::to_gbk("说明:"), notes).Draw(*sgt, 18000, 19000, 200);

  if (!sgt->Write_MemDxf_To_File("beams.dxf")) return fail("beams.dxf", "cannot be written");
  const qv::PlotSource source{sgt.get(), nullptr, "beams"};
  qv::PlotOptions options;
  options.dpi = 72;  // of the picture
  options.smooth = true;
  for (const char* const file : {"beams.pdf", "beams.png"}) {
    qv::PlotReport report;
    if (!qv::Plot({&source, 1}, file, options, report)) return fail(file, report.problem.c_str());
  }
  std::printf("%d of %zu beams are safe\n", static_cast<int>(std::ranges::count_if(beams, is_safe)), beams.size());
  return 0;
}
