// Threads that each work on a document and a database of their own must find what one thread alone finds. Under the
// thread sanitizer the program also shows that they share nothing that is not guarded.

#include <array>
#include <cstdio>
#include <filesystem>
#include <string>
#include <thread>

#include "qvtools.h"

namespace {

constexpr int kRounds = 3;

class QuietHost : public qv::Host {
 public:
  qv::Answer ShowBox(const char*, qv::BoxKind) override { return qv::Answer::Ok; }
  void CreateMessageWindow() override {}
  void ShowMessageWindow(bool) override {}
  int MessageLineCount() const override { return 1; }
  int MessageLineStart(int) const override { return 0; }
  void SelectMessage(int, int) override {}
  void ReplaceMessageSelection(const char*) override { ++reports; }
  void DrainMessages() override {}
  CSize ScreenSize() const override { return {800, 600}; }
  int reports = 0;  // reports are serialised, so a plain number will do
};

/// What a thread found, as text.
using Findings = std::string;

void add(Findings& findings, const char* name, double value) {
  char line[80];
  qv::format_text(line, sizeof line, "%s %.3f\n", name, value);
  findings += line;
}

void compose(CBase_SGT& sheet) {
  sheet.SetBiLiChi(100);
  for (int i = 0; i < 200; ++i) {
    const auto at = static_cast<float>(100 * i);
    sheet.Draw_Line(at, 0, at, 3000);
    sheet.Draw_Circle(at, 1500, 40);
    sheet.Draw_Text(at, 1500, 300, 0, "B1 300x600");
  }
  sheet.Draw_Arc(0, 0, 900, 10, 250);
}

Findings work(const std::string& name) {
  Findings findings;
  CBase_SGT* const sheet = NewMemDxf();
  compose(*sheet);
  DXF& drawing = *sheet;
  add(findings, "saved", drawing.Write_MemDxf_To_File((name + ".dxf").c_str()));
  add(findings, "size", static_cast<double>(std::filesystem::file_size(name + ".dxf")));
  DXF read;
  read.New_MemDxf();
  add(findings, "read", read.Read_FileDxf_To_Mem((name + ".dxf").c_str()));
  add(findings, "entities", read.m_EntityList.GetCount());
  const CFRect extent = read.GetFRect();
  add(findings, "width", extent.Width());
  add(findings, "height", extent.Height());
  qv::BitmapContext bitmap(400, 300, 0);  // most lines are white
  CFCoor coor(CFPoint(0, 4000), 0.02F, 1);
  read.Draw(&bitmap, &coor);
  long lit = 0;
  for (int i = 0; i < 400 * 300; ++i) lit += (bitmap.Pixels()[i] & 0xFFFFFF) != 0;
  add(findings, "drawn", static_cast<double>(lit));
  delete sheet;

  CDataBaseFile database;
  add(findings, "opened", database.Open_File((name + ".dat").c_str(), CDataBaseFile::IO_WRITE));
  for (int i = 0; i < 50; ++i) {
    database.Begin_Segment("S%d", i);
    for (int k = 0; k < 20; ++k) database.Add_Item(std::to_string(k).c_str(), "%d,%.3f", i, k * 0.125);
    database.Write_Segment();
  }
  add(findings, "closed", database.Close_File());
  database.Open_File((name + ".dat").c_str(), CDataBaseFile::IO_READ);
  double sum = 0;
  for (int i = 0; i < 50; ++i) {
    database.Read_Segment("S%d", i);
    int number = 0;
    double value = 0;
    sscanf_next_begin();
    char* const text = database.Get_Item("7");
    if (text && sscanf_next(text, "%d", &number) && sscanf_next(text, "%g", &value)) sum += number + value;
  }
  add(findings, "read back", sum);
  tell_error(10, "done");
  return findings;
}

}  // namespace

int main() {
  QuietHost host;
  qv::SetHost(&host);
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() /
      ("qvtools-threads-" + std::to_string(std::hash<std::thread::id>{}(std::this_thread::get_id())));
  std::filesystem::create_directories(folder);
  const Findings alone = work((folder / "alone").string());
  bool same = true;
  for (int round = 0; round < kRounds; ++round) {
    std::array<Findings, 2> found;
    std::thread first([&] { found[0] = work((folder / "first").string()); });
    std::thread second([&] { found[1] = work((folder / "second").string()); });
    first.join();
    second.join();
    for (const Findings& findings : found) {
      if (findings == alone) continue;
      same = false;
      std::printf("alone:\n%s\nwith another thread:\n%s\n", alone.c_str(), findings.c_str());
    }
  }
  std::filesystem::remove_all(folder);
  qv::SetHost(nullptr);
  if (alone.find("drawn 0.000") != std::string::npos) return std::puts("nothing was drawn"), 1;
  if (host.reports == 0 || QV_OpenFileNum != 0) return std::puts("reports or open files are miscounted"), 1;
  std::fputs(alone.c_str(), stdout);
  return same ? 0 : 1;
}
