// Threads that each work on a document or a database of their own must find what one thread alone finds. Under the
// thread sanitizer the program also shows that they share nothing that is not guarded.

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <thread>

#include "qvtools.h"
#include "qvtools/widgets/viewer/view.h"

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

/// A view's window, whose messages come from two threads.
class QuietWindow : public qv::Window {
 public:
  CRect ClientRect() const override { return {0, 0, 400, 300}; }
  CDC& ClientContext() override { return bitmap; }
  void ReleaseClientContext() override {}
  void Invalidate(bool) override {}
  void Post(unsigned int) override { ++posted; }
  qv::BitmapContext bitmap{400, 300, 0};
  std::atomic<int> posted = 0;
};

struct QuietListener : qv::viewer::View::Listener {
  void on_view_changed() override {}
  void on_picks_changed() override {}
  void on_mode_changed() override {}
};

/// What a user does to a view while its pictures are drawn in a thread of their own.
void look(Findings& findings, const std::string& name) {
  using qv::viewer::Drawing;
  using qv::viewer::View;
  constexpr void (*kMoves[])(View&) = {
      [](View& v) {
        v.wheel({100, 100}, 1, false);
      },
      [](View& v) {
        v.wheel({300, 200}, -1.5, true);
      },
      [](View& v) { v.pan_by(0.1, -0.1); },
      [](View& v) {
        v.middle_down({50, 50}), v.move({90, 70});
      },
      [](View& v) {
        v.middle_up({110, 40});
      },
      [](View& v) {
        v.begin_measure(qv::viewer::MeasureKind::Distance), v.move({120, 130}), v.left_down({9, 9}, false);
      },
      [](View& v) {
        v.set_mode(qv::viewer::Mode::Pick), v.left_down({200, 150}, false), v.left_up({200, 150}, false);
      },
      [](View& v) { v.select_all(); },
      [](View& v) { v.set_light(!v.is_light()); },
      [](View& v) { v.drawing()->show_layers(std::vector<bool>(v.drawing()->layers().size(), v.is_light())); },
      [](View& v) { v.show_all_layers(); },
      [](View& v) {
        v.drawing()->part({0, 5, 9});
      },
      [](View& v) {
        qv::BitmapContext picture(200, 150, 0);
        v.draw_into(picture, {200, 150}, !v.is_light());
      },
      [](View& v) {
        v.set_angles(v.CurrentAngles().is_plan() ? qv::ViewAngles{0.5F, 0.6F} : qv::ViewAngles());
      },
      [](View& v) { v.fonts_changed(); },
      [](View& v) { v.show_all(); },
  };
  QuietWindow window;
  QuietListener listener;
  View view(window, listener);
  view.open(std::make_unique<Drawing>(read_back(name), false));
  std::minstd_rand random(7);
  for (int i = 0; i < 120; ++i) {
    view.set_patience(std::chrono::milliseconds(random() % 3));
    if (i % 40 == 39) view.reload(std::make_unique<Drawing>(read_back(name), view.is_light()));
    kMoves[random() % std::size(kMoves)](view);
    view.show(window.bitmap, 0);
  }
  view.leave();
  while (view.cancel()) continue;  // what the picture alone would not show
  view.set_light(false);
  view.show_all_layers();
  view.show_all();
  view.set_patience(std::chrono::minutes(1));
  view.show(window.bitmap, 0);
  add(findings, "seen", lit(window.bitmap));
  qv::BitmapContext own(400, 300, 0);
  view.paint(own);
  add(findings, "as painted", std::equal(own.Pixels(), own.Pixels() + 400 * 300, window.bitmap.Pixels()));
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

/// The first look-up of a grade reads the user's; an integral keeps a sum between its stages.
void calculate(Findings& findings, const std::string&) {
  Con_Prop concrete;
  Rein_Prop bar;
  add(findings, "concrete", get_rc_property(65, &concrete) ? concrete.fc : 0);
  add(findings, "bar", get_rein_property(4, &bar) ? bar.fy : 0);
  double sum = 0;
  for (int i = 0; i < 200; ++i) sum += integeration_romberg([](float x) { return x * x * x; }, 0, 3);
  add(findings, "integrals", sum);
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
    {"look", look},
#if defined(QV_WITH_PLOT)
    {"plot", plot},
#endif
    {"database", database},
    {"calculate", calculate},
};

}  // namespace

int main() {
  QuietHost host;
  qv::SetHost(&host);
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() /
      ("qvtools-threads-" + std::to_string(std::hash<std::thread::id>{}(std::this_thread::get_id())));
  std::filesystem::create_directories(folder);
  G_strExePath = (folder.string() + "/").c_str();
  CUserOpt().SaveData();
  bool same = true;
  for (const auto& row : kRows) {
    Findings alone;
    row.work(alone, (folder / "alone").string());
    std::printf("%s\n%s", row.name, alone.c_str());
    if (alone.find(" 0.000") != std::string::npos) same = std::puts("found nothing") < 0;
    for (int round = 0; round < kRounds; ++round) {
      G_bUserOptRead = 0;
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
