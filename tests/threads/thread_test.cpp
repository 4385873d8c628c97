// Threads that each work on a document or a database of their own must find what one thread alone finds. Under the
// thread sanitizer the program also shows that they share nothing that is not guarded.

#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
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

std::unique_ptr<CBase_SGT> composed() {
  std::unique_ptr<CBase_SGT> sheet(NewMemDxf());
  compose(*sheet);
  return sheet;
}

std::unique_ptr<DXF> read_back(const std::string& name) {
  composed()->Write_MemDxf_To_File((name + ".dxf").c_str());
  auto read = std::make_unique<DXF>();
  read->New_MemDxf();
  read->Read_FileDxf_To_Mem((name + ".dxf").c_str());
  return read;
}

double lit(const qv::BitmapContext& bitmap) {
  long count = 0;
  for (int i = 0; i < bitmap.Width() * bitmap.Height(); ++i) count += (bitmap.Pixels()[i] & 0xFFFFFF) != 0;
  return static_cast<double>(count);
}

void save(Findings& findings, const std::string& name) {
  add(findings, "saved", composed()->Write_MemDxf_To_File((name + ".dxf").c_str()));
  add(findings, "size", static_cast<double>(std::filesystem::file_size(name + ".dxf")));
}

void read(Findings& findings, const std::string& name) {
  const auto drawing = read_back(name);
  add(findings, "entities", drawing->m_EntityList.GetCount());
  const CFRect extent = drawing->GetFRect();
  add(findings, "width", extent.Width());
  add(findings, "height", extent.Height());
}

void import(Findings& findings, const std::string& name) {
  read_back(name);
  DXF drawing;
  qv::ImportReport report;
  add(findings, "imported", qv::Import((name + ".dxf").c_str(), drawing, {}, report));
  add(findings, "entities", drawing.m_EntityList.GetCount());
}

void draw(Findings& findings, const std::string& name) {
  const auto drawing = read_back(name);
  qv::BitmapContext bitmap(400, 300, 0);  // most lines are white
  CFCoor coor(CFPoint(0, 4000), 0.02F, 1);
  drawing->Draw(&bitmap, &coor);
  add(findings, "drawn", lit(bitmap));
  qv::PreparedDrawing(*drawing).Draw(&bitmap, &coor);
  add(findings, "drawn prepared", lit(bitmap));
}

void pick(Findings& findings, const std::string& name) {
  const auto drawing = read_back(name);
  const CFRect rect(0, 0, 5000, 2000);
  add(findings, "picked", drawing->HitTest(rect, 1, 0, HALF_PI_F));
  add(findings, "picked prepared", static_cast<double>(qv::PreparedDrawing(*drawing).Pick(rect, 1).size()));
}

#if defined(QV_WITH_PLOT)
void plot(Findings& findings, const std::string& name) {
  const auto drawing = read_back(name);
  const qv::PlotSource source{.document = drawing.get(), .name = "drawing"};
  for (const char* const ending : {".pdf", ".svg", ".png"}) {
    qv::PlotReport report;
    qv::PlotOptions options;
    options.dpi = 40;
    add(findings, "plotted", qv::Plot({&source, 1}, name + ending, options, report));
    add(findings, "size", static_cast<double>(std::filesystem::file_size(name + ending)));
  }
}
#endif

void database(Findings& findings, const std::string& name) {
  CDataBaseFile file;
  add(findings, "opened", file.Open_File((name + ".dat").c_str(), CDataBaseFile::IO_WRITE));
  for (int i = 0; i < 50; ++i) {
    file.Begin_Segment("S%d", i);
    for (int k = 0; k < 20; ++k) file.Add_Item(std::to_string(k).c_str(), "%d,%.3f", i, k * 0.125);
    file.Write_Segment();
  }
  add(findings, "closed", file.Close_File());
  file.Open_File((name + ".dat").c_str(), CDataBaseFile::IO_READ);
  double sum = 0;
  for (int i = 0; i < 50; ++i) {
    file.Read_Segment("S%d", i);
    int number = 0;
    double value = 0;
    sscanf_next_begin();
    char* const text = file.Get_Item("7");
    if (text && sscanf_next(text, "%d", &number) && sscanf_next(text, "%g", &value)) sum += number + value;
  }
  add(findings, "read back", sum);
  tell_error(10, "done");
}

/// What two threads may do at once, each with objects of its own.
constexpr struct {
  const char* name;
  void (*work)(Findings& findings, const std::string& name);
} kRows[] = {
    {"compose and save", save},
    {"read", read},
    {"import", import},
    {"draw", draw},
    {"pick", pick},
#if defined(QV_WITH_PLOT)
    {"plot", plot},
#endif
    {"database", database},
};

}  // namespace

int main() {
  QuietHost host;
  qv::SetHost(&host);
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() /
      ("qvtools-threads-" + std::to_string(std::hash<std::thread::id>{}(std::this_thread::get_id())));
  std::filesystem::create_directories(folder);
  bool same = true;
  for (const auto& row : kRows) {
    Findings alone;
    row.work(alone, (folder / "alone").string());
    std::printf("%s\n%s", row.name, alone.c_str());
    if (alone.find(" 0.000") != std::string::npos) same = std::puts("found nothing") < 0;
    for (int round = 0; round < kRounds; ++round) {
      std::array<Findings, 2> found;
      std::thread first([&] { row.work(found[0], (folder / "first").string()); });
      std::thread second([&] { row.work(found[1], (folder / "second").string()); });
      first.join();
      second.join();
      for (const Findings& findings : found) {
        if (findings == alone) continue;
        same = false;
        std::printf("with another thread:\n%s\n", findings.c_str());
      }
    }
  }
  std::filesystem::remove_all(folder);
  qv::SetHost(nullptr);
  if (host.reports == 0 || QV_OpenFileNum != 0) return std::puts("reports or open files are miscounted"), 1;
  return same ? 0 : 1;
}
