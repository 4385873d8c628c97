// Writes files of every kind that the library writes, from many random values: write_samples DIRECTORY. What it writes
// must be the same, byte for byte, on every system.

#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "qvtools.h"

namespace {

constexpr int kRounds = 2000;

struct Chance {
  std::mt19937 random{20260501};
  int below(int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); }
  /// From -limit to limit, in steps of a float.
  float value(float limit) { return limit * (static_cast<float>(random() >> 8) / 8388608.0F - 1); }
  float size() { return 1 + std::abs(value(3000)); }
  CFPoint point() { return CFPoint(value(50000), value(50000)); }
  std::vector<float> values(int n, float limit) {
    std::vector<float> all;
    for (int i = 0; i < n; ++i) all.push_back(value(limit));
    return all;
  }
};

void draw_primitives(CBase_SGT& sgt, Chance& chance) {
  const CFPoint a = chance.point(), b = chance.point();
  const float r = chance.size(), angle = chance.value(7), sweep = chance.value(7);
  sgt.Draw_Arc(a.x, a.y, r, angle, sweep);
  sgt.Draw_PArc(a.x, a.y, r, angle, sweep, 30, 30);
  sgt.Draw_Rect_C(chance.size(), chance.size(), b.x, b.y, angle);
  sgt.Draw_Rect_LB(chance.size(), chance.size(), b.x, b.y, angle, 20);
  sgt.Draw_Text_Along_Line(a.x, a.y, b.x, b.y, 7, chance.below(8),
                           "4\\x8B"
                           "25",
                           350, 1);
  sgt.Draw_Text_Along_Arc(a.x, a.y, r, angle, sweep, 5, chance.below(6), "\xB8\xD6\xBD\xEE", 250, 1);
  sgt.Draw_Line_Rotate_Shift(angle, b.x, b.y, a.x, a.y, r, r);
  sgt.Draw_Pline(a.x, a.y, b.x, b.y, 30, 40);
}

void draw_symbols(CBase_SGT& sgt, Chance& chance) {
  const CFPoint a = chance.point(), b = chance.point();
  const float angle = chance.value(7);
  sgt.Draw_Dim_Polar(a.x, a.y, chance.size(), angle, chance.below(2), chance.below(2));
  sgt.Draw_Dim_Points(a.x, a.y, b.x, b.y, chance.below(2), chance.below(2));
  sgt.Draw_DimJiaoDu(a.x, a.y, chance.size(), angle, "135", chance.value(3));
  sgt.Draw_BiaoGao(b.x, b.y, chance.value(100), chance.below(2));
  sgt.Draw_Cut_Sym(a.x, a.y, b.x, b.y);
  sgt.Draw_PouXian(a.x, a.y, b.x, b.y, "1", 0, chance.below(2));
  sgt.DrawLineArrow(a.x, a.y, b.x, b.y);
  sgt.Draw_XianGangJin(a.x, a.y, b.x, b.y);
  sgt.Draw_XianGangJin_Out_2PraLine(a.x, a.y, b.x, b.y);
  sgt.Draw_RectGangJin_C(chance.size(), chance.size(), b.x, b.y, angle, 1.5F);
  sgt.Draw_LaJieJin(a.x, a.y, b.x, b.y, chance.below(2));
  sgt.Draw_GangJin_BiaoZhu(a.x, a.y, b.x, b.y, chance.size(), chance.below(99), "8@200");
  const std::vector<float> x = chance.values(9, 20), y = chance.values(9, 5000);
  sgt.Draw_Curve(a.x, a.y, 9, x.data(), y.data(), -20, 20, -5000, 5000, 9000, 3000, 4, 4, "x", "y", 1, 1, 1);
}

bool write_drawing(const std::string& directory) {
  Chance chance;
  const std::unique_ptr<CBase_SGT> sgt(NewMemDxf());
  sgt->SetBiLiChi(50);
  for (int i = 0; i < kRounds; ++i) {
    draw_primitives(*sgt, chance);
    draw_symbols(*sgt, chance);
  }
  return sgt->Write_MemDxf_To_File((directory + "composed.dxf").c_str()) != 0;
}

/// The same records read and written again, and streamed to disk one by one.
bool write_copies(const std::string& directory) {
  DXF read;
  read.New_MemDxf();
  DXF streamed;
  if (!read.Read_FileDxf_To_Mem((directory + "composed.dxf").c_str())) return false;
  if (!read.Write_MemDxf_To_File((directory + "again.dxf").c_str())) return false;
  if (!streamed.New((directory + "streamed.dxf").c_str())) return false;
  Chance chance;
  for (int i = 0; i < kRounds; ++i) {
    const CFPoint a = chance.point(), b = chance.point();
    streamed.Write_Line(a.x, a.y, chance.value(1e6F), b.x, b.y, chance.value(1e-2F), "0", "1", "BYLAYER");
  }
  return streamed.Close() != 0;
}

bool write_script(const std::string& directory) {
  std::FILE* const file = qv::open_text((directory + "lines.scr").c_str(), "wt");
  if (!file) return false;
  Chance chance;
  for (int i = 0; i < kRounds; ++i) {
    const CFPoint a = chance.point(), b = chance.point(), c = chance.point();
    acad_arc(file, a.x, a.y, b.x, b.y, c.x, c.y);
    acad_text_along_line(file, a.x, a.y, b.x, b.y, 5, chance.below(6), "KL-1", 300, 1);
    acad_text_along_arc(file, a.x, a.y, b.x, b.y, c.x, c.y, 5, chance.below(6), "KL-1", 300, 1);
  }
  return std::fclose(file) == 0;
}

bool write_data(const std::string& directory) {
  G_strWorkPath = directory.c_str();
  G_strExePath = directory.c_str();
  CDataBaseFile file;
  Chance chance;
  if (!file.Open_File("values.dat", CDataBaseFile::IO_WRITE)) return false;
  for (int i = 0; i < kRounds; ++i) {
    file.Begin_Segment("Liang%d", i);
    file.Write_Item("x", "%.3f,%g,%e,%d", static_cast<double>(chance.value(1e6F)), chance.value(1e-6F) * 1.0,
                    chance.value(1) * 1e30, chance.below(1000));
    file.End_Segment();
  }
  return file.Close_File() != 0 && G_UserOpt.SaveData() != 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return std::fputs("usage: write_samples DIRECTORY\n", stderr), 2;
  const std::string directory = std::string(argv[1]) + '/';
  for (const auto write : {write_drawing, write_copies, write_script, write_data})
    if (!write(directory)) return std::fputs("write_samples: a file could not be written\n", stderr), 1;
  return 0;
}
