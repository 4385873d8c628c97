#include <cmath>
#include <cstring>

#include "faults/scenario.h"
#include "qvtools.h"
#include "qvtools/system/filesystem.h"

namespace faults {
namespace {

/// Counts reports and shows none; nothing here takes memory.
class CountingHost : public qv::Host {
 public:
  qv::Answer ShowBox(const char* text, qv::BoxKind kind) override {
    failures += kind == qv::BoxKind::Stop;
    if (std::getenv("QV_FAULTS_TRACE")) std::fprintf(stderr, "told: %s\n", text);
    return qv::Answer::Ok;
  }
  void CreateMessageWindow() override {}
  void ShowMessageWindow(bool) override {}
  int MessageLineCount() const override { return 1; }
  int MessageLineStart(int) const override { return 0; }
  void SelectMessage(int, int) override {}
  void ReplaceMessageSelection(const char*) override {}
  void DrainMessages() override {}
  CSize ScreenSize() const override { return {800, 600}; }
  int failures = 0;
};

CountingHost& host() {
  static CountingHost instance;
  return instance;
}

std::string bytes_of(const char* path) {
  std::string bytes;
  if (std::FILE* const file = std::fopen(path, "rb")) {
    char block[4096];
    while (const std::size_t n = std::fread(block, 1, sizeof block, file)) bytes.append(block, n);
    std::fclose(file);
  }
  return bytes;
}

void write_bytes(const char* path, const std::string& bytes) {
  std::FILE* const file = std::fopen(path, "wb");
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::fclose(file);
}

/// A document's bytes, and so whether it can be saved and read again.
std::string saved(DXF& dxf) {
  if (!dxf.Write_MemDxf_To_File("state.dxf")) return "not saved";
  DXF again;
  again.New_MemDxf();
  const bool read = again.Read_FileDxf_To_Mem("state.dxf") && again.Write_MemDxf_To_File("again.dxf");
  const std::string bytes = bytes_of("state.dxf");
  const bool same = bytes_of("again.dxf") == bytes;
  qv::remove_file("state.dxf");
  qv::remove_file("again.dxf");
  return read && same ? bytes : "not read as it was saved";
}

std::string pixels(const qv::BitmapContext& bitmap) {
  return {reinterpret_cast<const char*>(bitmap.Pixels()),
          sizeof(std::uint32_t) * static_cast<std::size_t>(bitmap.Width() * bitmap.Height())};
}

/// What a call found, kept without memory.
struct Found {
  char text[256] = "";
  unsigned long sum = 0;
  void say(const char* format, auto... values) { qv::format_text(text, sizeof text, format, values...); }
  void add(const char* bytes) {
    for (; *bytes; ++bytes) sum = 31 * sum + static_cast<unsigned char>(*bytes);
  }
  operator std::string() const { return text + std::to_string(sum); }
};

constexpr float kX[] = {0, 4000, 4000, 2000, 0};
constexpr float kY[] = {0, 0, 2500, 3000, 2500};

/// Every kind of symbol that takes memory on its way, and every kind of entity.
void compose(CBase_SGT& sheet) {
  sheet.Add_Default_LineType();
  sheet.SetCurLType("DASHED");
  sheet.Draw_Lines(5, kX, kY);
  sheet.SetCurLType("BYLAYER");
  sheet.Draw_Circle(500, 500, 400);
  sheet.Draw_Arc(900, 500, 300, 10, 250);
  sheet.Draw_Point(1, 2);
  sheet.Draw_Solid(0, 0, 500, 0, 0, 500, 500, 500);
  sheet.Draw_3DFace(0, 0, 500, 0, 0, 500, 500, 500);
  sheet.SetCurStyle("HZ");
  sheet.Draw_Text(100, 100, 300, 30, "B1 300x600 \xC1\xBA");
  float x[5];
  float y[5];
  float width[5] = {30, 60, 30, 60, 30};
  const float bulge[5] = {0, 0.4F, 0, -0.4F, 0};
  std::copy_n(kX, 5, x);
  std::copy_n(kY, 5, y);
  sheet.Draw_Pline(5, x, y, bulge, 1, width, width);
  sheet.Push_ENV();
  sheet.Pop_ENV();
  sheet.Draw_Dim_Points(5, kX, kY, 0, 1, 1);
  sheet.Draw_DimJiaoDu(0, 0, 900, 10, nullptr, 60);
  sheet.Draw_GangJin_BiaoZhu(900, 900, 5, kX, kY, 500, 3, 0, 1, "4D25");
  const CBase_SGT::CLiangZongJin bars[] = {{4, 2, 25, 1}, {2, 2, 20, -1}, {2, 2, 12, 0}};
  sheet.Draw_Liang_Section(5000, 0, 3000, 6000, 300, 3, bars, {1, 8, 100, 2}, 1);
  sheet.Draw_Curve2(0, 8000, 5, kX, kY, kX, 0, 4000, 0, 4000, 4000, 3000, 8, 6, "x", "y", 1, 1, 1);
  CBase_SGT::CURVEINFO info;
  info.width = info.height = info.xmax = info.ymax = 4000;
  struct Values : CArray<float, float> {
    Values() { SetSize(2); }
  };
  static Values values;  // made before there are faults
  values[1] = 3000;
  sheet.Draw_XY(info, values, values);
}

/// A composed document; one for each run.
struct Sheet {
  std::unique_ptr<CBase_SGT> composer{NewMemDxf()};
  Sheet() { compose(*composer); }
};

void add_block(DXF& dxf, const char* name) {
  auto* const block = new ACAD_BLOCK;
  qv::copy_text(block->m_szName, name);
  for (POSITION at = dxf.m_EntityList.GetHeadPosition(); at;)
    block->m_EntityList.AddTail(qv::CloneEntity(*static_cast<ACAD_ENTITY*>(dxf.m_EntityList.GetNext(at))));
  dxf.m_BlockList.AddTail(block);
  for (int i = 0; i < 3; ++i) {
    auto* const insert = new ACAD_INSERT;
    qv::copy_text(insert->m_szBlock, name);
    insert->m_Insert = {static_cast<float>(i) * 9000, 0, 0};
    dxf.m_EntityList.AddTail(insert);
  }
}

std::unique_ptr<DXF> read(const char* path) {
  auto dxf = std::make_unique<DXF>();
  dxf->New_MemDxf();
  dxf->Read_FileDxf_To_Mem(path);
  return dxf;
}

/// A case whose object is made without faults each time.
template <class Object>
Case with(std::function<std::unique_ptr<Object>()> make, std::function<bool(Object&)> act,
          std::function<std::string(Object&)> look) {
  const auto object = std::make_shared<std::unique_ptr<Object>>();
  return {[=] { object->reset(), *object = make(); }, [=] { return act(**object); }, [=] { return look(**object); }};
}

template <class Object>
std::unique_ptr<Object> fresh() {
  return std::make_unique<Object>();
}

std::unique_ptr<DXF> in_memory() {
  auto dxf = fresh<DXF>();
  dxf->New_MemDxf();
  return dxf;
}

std::string state_of(DXF& dxf) {
  return saved(dxf);
}

/// A case that writes the file "out" in the place of an older one.
Case saves(std::function<bool()> act) {
  return {[] { write_bytes("out", "the file of before"); }, std::move(act), [] { return bytes_of("out"); }};
}

/// A view of a drawing on a bitmap.
struct View {
  std::unique_ptr<DXF> dxf = read("blocks.dxf");
  qv::BitmapContext bitmap{300, 200, 0};
  CFCoor coor{CFPoint(-2000, 14000), 0.012F, 1};
  std::unique_ptr<qv::PreparedDrawing> prepared;
  Found found;
};

using ViewAct = std::function<bool(View&)>;
Case shows(ViewAct act) {
  return with<View>(fresh<View>, std::move(act),
                    [](View& v) { return pixels(v.bitmap) + std::string(v.found) + saved(*v.dxf); });
}
Case shows_prepared(ViewAct act) {
  return with<View>(
      [] {
        auto view = fresh<View>();
        view->prepared = std::make_unique<qv::PreparedDrawing>(*view->dxf);
        return view;
      },
      std::move(act), [](View& v) { return pixels(v.bitmap) + std::string(v.found); });
}

bool plot(DXF& dxf, const char* path) {
  const qv::PlotSource source{.document = &dxf, .name = "drawing"};
  qv::PlotReport report;
  qv::PlotOptions options;
  options.dpi = 40;
  options.readable = true;
  return qv::Plot({&source, 1}, path, options, report);
}

/// Plots name their format by the file's ending.
Case plots(const char* path) {
  const std::shared_ptr<DXF> dxf = read("in.dxf");
  return {[=] { write_bytes(path, "the file of before"); }, [=] { return plot(*dxf, path); },
          [=] { return bytes_of(path); }};
}

bool write_database(const char* name) {
  CDataBaseFile file;
  if (!file.Open_File(name, CDataBaseFile::IO_WRITE)) return false;
  file.Write_FileVersion(CDataBaseFile::kVersion);
  bool good = true;
  for (int i = 0; i < 40; ++i) {
    file.Begin_Segment("Segment%d", i);
    for (int k = 0; k < 40; ++k) file.Add_Item(qv::FormattedText<16>("%dkey", k), "%d,%.3f %%", k, 0.5 * i);
    good = file.Write_Segment() && good;
    good = file.Write_Line("====") && good;
  }
  file.Begin_Segment("Last");
  good = file.Write_Item("key", "value") && file.Write_Item1("other", "50%") && good;
  file.End_Segment();
  return file.Close_File() && good;
}

struct OpenDatabase {
  CDataBaseFile file;
  Found found;
};

bool read_database(OpenDatabase& database) {
  CDataBaseFile& file = database.file;
  if (!file.Open_File("in.dat", CDataBaseFile::IO_READ) || !file.Check_FileVersion(CDataBaseFile::kVersion))
    return false;
  Found found;
  for (int i = 39; i >= 0; --i) {
    if (!file.Read_Segment("Segment%d", i)) return false;
    const char* const value = file.Get_Item("39key");
    if (!value) return false;
    found.add(value);
    found.add(file.Get_SegmentName(i));
    found.add(file.Get_ItemKey(i));
  }
  database.found = found;
  return file.Close_File() != 0;
}

void fill(CChang& field) {
  for (int i = 0; i < 400; ++i) {
    CChangNode node;
    node.x = static_cast<float>(i % 20);
    node.y = static_cast<float>(i / 20);
    node.value[0] = node.x * node.y;
    field.m_Nodes.Add(node);
  }
  for (int i = 0; i < 379; ++i) {
    if (i % 20 == 19) continue;
    CChangTri lower;
    CChangTri upper;
    const int corners[] = {i + 1, i + 2, i + 21, i + 22};
    std::copy_n(corners, 3, lower.node);
    upper.node[0] = corners[1], upper.node[1] = corners[3], upper.node[2] = corners[2];
    field.m_Tris.Add(lower);
    field.m_Tris.Add(upper);
  }
}

std::string text_of(const CChang& field) {
  std::string text;
  for (const CChangNode& n : field.m_Nodes) text += qv::FormattedText<64>("%f %f %f\n", n.x, n.y, n.value[0]);
  for (const CChangTri& t : field.m_Tris) text += qv::FormattedText<64>("%d %d %d\n", t.node[0], t.node[1], t.node[2]);
  return text;
}

/// What is written to a stream.
Case saves_stream(std::function<bool(std::FILE*)> save) {
  return saves([save = std::move(save)] {
    qv::SavedFile file("out", qv::SavedFile::Lines::CrLf);
    return file.is_open() && save(file.stream()) && file.commit();
  });
}

std::string text_of(const CWxSlide& slide) {
  std::string text;
  for (const CSlideItem& item : slide.m_Items) {
    text += qv::FormattedText<16>("%d", item.m_byKind);
    text.append(reinterpret_cast<const char*>(item.m_fX), sizeof item.m_fX);
  }
  return text;
}

struct Fonts {
  CShx shx;
  Found found;
};

struct Imported {
  DXF dxf;
  qv::ImportReport report;
};

Case imports(const char* path) {
  return with<Imported>(
      [] {
        auto made = std::make_unique<Imported>();
        made->dxf.New_MemDxf();
        made->dxf.Write_Line(0, 0, 0, 1, 1, 1, "0", "1", "BYLAYER");
        return made;
      },
      [path](Imported& i) {
        i.report = {};
        return qv::Import(path, i.dxf, {}, i.report) != 0;
      },
      [](Imported& i) { return saved(i.dxf); });
}

std::vector<Scenario> make_scenarios() {
  using W = Scenario::What;
  std::vector<Scenario> rows = {
      {"compose", W::Parts,
       [] {
         return with<CBase_SGT>([] { return std::unique_ptr<CBase_SGT>(NewMemDxf()); },
                                [](CBase_SGT& s) { return compose(s), true; }, [](CBase_SGT& s) { return saved(s); });
       }},
      {"new composer", W::Keeps,
       [] {
         using Made = std::unique_ptr<CBase_SGT>;
         return with<Made>([] { return std::make_unique<Made>(); },
                           [](Made& made) { return made.reset(NewMemDxf()), made && made->m_nStyle == 2; },
                           [](Made& made) { return made ? saved(*made) : std::string(); });
       }},
      {"tables", W::Keeps,
       [] {
         return with<DXF>(
             fresh<DXF>, [](DXF& d) { return d.New_MemDxf() != 0; },
             [](DXF& d) { return d.m_pLayer ? saved(d) : std::string(); });
       }},
      {"compose without tables", W::Parts,
       [] {
         return with<CBase_SGT>(
             fresh<CBase_SGT>,
             [](CBase_SGT& s) {
               s.New_MemDxf();  // may fail; what is drawn then must do no harm
               s.Draw_Curve(0, 0, 5, kX, kY, 0, 4000, 0, 4000, 4000, 3000, 8, 6, "x", "y", 1, 1, 1);
               return s.m_pLType && s.m_pLayer && s.m_pStyle;
             },
             [](CBase_SGT& s) { return s.m_pLayer ? saved(s) : std::string(); });
       }},
      {"save", W::Saves,
       [] {
         const auto sheet = std::make_shared<Sheet>();
         return saves([sheet] { return sheet->composer->Write_MemDxf_To_File("out") != 0; });
       }},
      {"stream", W::Parts,
       [] {
         Case made = saves([] {
           DXF dxf;
           bool good = dxf.New("out") && dxf.Write_Tables() && dxf.Begin_Entity();
           for (int i = 0; i < 4000; ++i) good = dxf.Write_Line(0, 0, 0, 1, 1, 1, "0", "1", "BYLAYER") && good;
           good = dxf.Write_Pline(0, 0, 0, 1, 1, 1, 2, 3, "0", "1", "BYLAYER") && good;
           return dxf.Close() && good;
         });
         return made;
       }},
      {"read", W::Parts,
       [] {
         return with<DXF>(
             in_memory, [](DXF& d) { return d.Read_FileDxf_To_Mem("blocks.dxf") != 0; }, state_of);
       }},
      {"read by entity", W::Parts,
       [] {
         struct Reader {
           DXF dxf;
           Found found;
         };
         return with<Reader>(
             fresh<Reader>,
             [](Reader& r) {
               r.found = {};
               if (!r.dxf.Open("blocks.dxf")) return false;
               int count = 0;
               while (r.dxf.Read_One_Entity() < ACAD_TYPE_NONE) ++count;
               r.found.say("%d", count);
               return r.dxf.IsComplete();
             },
             [](Reader& r) { return std::string(r.found); });
       }},
      {"insert", W::Keeps,
       [] {
         struct Two {
           std::unique_ptr<DXF> into = read("in.dxf");
           std::unique_ptr<DXF> from = read("blocks.dxf");
         };
         return with<Two>(
             [] {
               auto two = fresh<Two>();
               two->from->Add_Layer("MORE", 3, "CONTINUOUS");
               qv::copy_text(two->from->m_pLayer[0].m_szName, "OTHER");
               qv::copy_text(two->from->m_pLType[0].m_szName, "OTHER");
               return two;
             },
             [](Two& t) { return t.into->Open_MemDxf() && t.into->InsertDxf(t.from.get(), 1, 2, 30) != 0; },
             [](Two& t) { return saved(*t.into); });
       }},
      {"underlay", W::Keeps,
       [] {
         struct Underlaid {
           Sheet sheet;
           std::unique_ptr<DXF> drawing = read("blocks.dxf");
         };
         return with<Underlaid>(
             fresh<Underlaid>,
             [](Underlaid& u) {
               return qv::Underlay(*u.sheet.composer, *u.drawing, {.x = 1, .y = 2, .angle = 30}, 2,
                                   {.name = "A-", .prefix = true}) != 0;
             },
             [](Underlaid& u) { return saved(*u.sheet.composer); });
       }},
      {"compare", W::Parts,
       [] {
         struct Compared {
           std::unique_ptr<DXF> before = read("in.dxf");
           std::unique_ptr<DXF> after = read("blocks.dxf");
           std::unique_ptr<DXF> drawn;
         };
         return with<Compared>(
             fresh<Compared>,
             [](Compared& c) {
               const qv::Comparison found = qv::Compare(*c.before, *c.after);
               if (found.same < 0) return false;
               c.drawn = qv::DrawComparison(*c.before, *c.after, found);
               return c.drawn != nullptr;
             },
             [](Compared& c) { return c.drawn ? saved(*c.drawn) : std::string(); });
       }},
      {"copy block", W::Keeps,
       [] {
         struct Blocks {
           std::unique_ptr<DXF> dxf = read("blocks.dxf");
           ACAD_BLOCK copy;
         };
         return with<Blocks>(
             fresh<Blocks>,
             [](Blocks& b) { return b.copy.Copy(static_cast<ACAD_BLOCK*>(b.dxf->m_BlockList.GetHead())) != 0; },
             [](Blocks& b) {
               std::string text(b.copy.m_szName);
               for (POSITION at = b.copy.m_EntityList.GetHeadPosition(); at;)
                 text += static_cast<char>('0' + static_cast<ACAD_ENTITY*>(b.copy.m_EntityList.GetNext(at))->GetType());
               return text;
             });
       }},
      {"draw", W::Parts, [] { return shows([](View& v) { return v.dxf->Draw(&v.bitmap, &v.coor), true; }); }},
      {"draw projected", W::Parts,
       [] { return shows([](View& v) { return v.dxf->Draw3D(&v.bitmap, &v.coor, 0.5F, 0.5F), true; }); }},
      {"draw dashed", W::Parts,
       [] {
         return shows([](View& v) {
           const qv::LinePatterns patterns = qv::PatternsOf(*v.dxf);
           return v.dxf->Draw(&v.bitmap, &v.coor, {&qv::StandardPalette(), &patterns}), true;
         });
       }},
      {"extent and picks", W::Parts,
       [] {
         return shows([](View& v) {
           const CFRect r = v.dxf->GetFRect();
           const CFRect turned = v.dxf->GetFRect3D(0.5F, 0.4F);
           const int inside = v.dxf->HitTest(CFRect(-99, -99, 9999, 9999), 0, 0, HALF_PI_F);
           const int crossing = v.dxf->HitTest(CFRegion(CFRect(400, 400, 500, 500)), 1, 0, HALF_PI_F);
           v.found.say("%f %f %f %f %d %d", r.x1, r.y2, turned.x1, turned.y2, inside, crossing);
           return true;
         });
       }},
      {"prepare", W::Parts,
       [] {
         return shows([](View& v) {
           qv::PreparedDrawing prepared(*v.dxf, 0.5F, 0.5F);
           return prepared.Draw(&v.bitmap, &v.coor), true;
         });
       }},
      {"draw prepared", W::Parts,
       [] { return shows_prepared([](View& v) { return v.prepared->Draw(&v.bitmap, &v.coor), true; }); }},
      {"pick prepared", W::Parts,
       [] {
         return shows_prepared([](View& v) {
           const auto taken = v.prepared->Pick(CFRect(-99, -99, 3000, 3000), 1);
           v.found.say("%d", static_cast<int>(taken.size()));
           v.prepared->Show([](ACAD_ENTITY& e) { return e.GetType() != ACAD_TYPE_TEXT; });
           return true;
         });
       }},
      {"bitmap", W::Keeps,
       [] {
         using Made = std::unique_ptr<qv::BitmapContext>;
         return with<Made>(
             fresh<Made>,
             [](Made& m) { return m.reset(new (std::nothrow) qv::BitmapContext(90, 70, 5)), m && m->Width() == 90; },
             [](Made& m) { return m && m->Width() ? pixels(*m) : std::string(); });
       }},
      {"picture", W::Keeps,
       [] {
         using Made = std::unique_ptr<qv::BitmapContext>;
         const std::shared_ptr<DXF> dxf = read("blocks.dxf");
         return with<Made>(
             fresh<Made>,
             [dxf](Made& m) {
               qv::PictureOptions options;
               options.size = {200, 150};
               return m = qv::MakePicture(*dxf, options), m != nullptr;
             },
             [](Made& m) { return m ? pixels(*m) : std::string(); });
       }},
      {"png", W::Saves,
       [] {
         const auto bitmap = std::make_shared<qv::BitmapContext>(60, 50, 0xFF);
         return saves([bitmap] { return qv::SavePng(*bitmap, "out"); });
       }},
      {"plot pdf", W::Keeps, [] { return plots("out.pdf"); }},
      {"plot svg", W::Keeps, [] { return plots("out.svg"); }},
      {"plot png", W::Keeps, [] { return plots("out.png"); }},
      {"plot pages", W::Parts,
       [] {
         struct Printed {
           std::unique_ptr<DXF> dxf = read("blocks.dxf");
           qv::BitmapContext bitmap{120, 90, 0xFFFFFF};
         };
         return with<Printed>(
             fresh<Printed>,
             [](Printed& p) {
               const qv::PlotSource source{.document = p.dxf.get(), .name = "drawing"};
               qv::PlotPages pages({&source, 1}, {});
               return pages.report().problem.empty() && pages.draw(0, p.bitmap, 0.3);
             },
             [](Printed& p) { return pixels(p.bitmap); });
       }},
      {"font made plain", W::Keeps,
       [] {
         return with<Fonts>(
             fresh<Fonts>, [](Fonts& f) { return qv::LoadBigFont(f.shx, "in.shx") != 0; },
             [](Fonts& f) { return std::string(qv::FormattedText<64>("%f", f.shx.GetHzWidth("\xB0\xA1", 3, 1))); });
       }},
      {"fonts", W::Keeps,
       [] {
         return with<Fonts>(
             fresh<Fonts>, [](Fonts& f) { return f.shx.SetTxtFont(QV_FONTS, "txt.shx") != 0; },
             [](Fonts& f) { return std::string(qv::FormattedText<64>("%f", f.shx.GetTxtWidth("Width 25", 3, 1))); });
       }},
      {"slide", W::Parts,
       [] {
         return with<CWxSlide>(
             fresh<CWxSlide>, [](CWxSlide& s) { return s.Read_SLD("in.sld") != 0; },
             [](CWxSlide& s) { return text_of(s); });
       }},
      {"make slide", W::Parts,
       [] {
         return with<CWxSlide>(
             fresh<CWxSlide>,
             [](CWxSlide& s) {
               s.SetColor(3);
               s.Draw_Lines(5, kX, kY);
               s.Draw_Rect_C(5, 6, 1, 1, 30);
               return s.Draw_Solid(1, 2, 3, 4, 5, 6, 7, 8), true;
             },
             [](CWxSlide& s) { return text_of(s); });
       }},
      {"slide to script", W::Saves,
       [] {
         const auto slide = std::make_shared<CWxSlide>();
         slide->Read_SLD("in.sld");
         return saves([slide] { return slide->Form_SCR("out") != 0; });
       }},
      {"slide to drawing", W::Parts,
       [] {
         return with<DXF>(
             in_memory,
             [](DXF& d) {
               CWxSlide slide;
               return slide.Read_SLD("in.sld") && Form_Dxf(&d, &slide);
             },
             state_of);
       }},
      {"slide library", W::Parts,
       [] {
         struct Library {
           CWxSlideLib library;
           CWxSlide slide;
         };
         return with<Library>(
             fresh<Library>,
             [](Library& l) {
               if (!l.library.Open_SLB("in.slb") || !l.library.Read_SLD("SECOND", &l.slide)) return false;
               if (!l.library.SLB2SLD("extracted_")) return false;
               return l.library.Read_SLB_SLD("in.first", &l.slide) != 0;
             },
             [](Library& l) {
               const std::string files = bytes_of("extracted_FIRST.SLD") + bytes_of("extracted_SECOND.SLD");
               qv::remove_file("extracted_FIRST.SLD");
               qv::remove_file("extracted_SECOND.SLD");
               return files + text_of(l.slide);
             });
       }},
      {"extract slide", W::Saves,
       [] {
         return Case{[] { write_bytes("outFIRST.SLD", "the file of before"); },
                     [] {
                       CWxSlideLib library;
                       return library.Open_SLB("in.slb") && library.Pick_SLD("first", "out");
                     },
                     [] { return bytes_of("outFIRST.SLD"); }};
       }},
      {"write database", W::Saves, [] { return saves([] { return write_database("out"); }); }},
      {"read database", W::Keeps,
       [] {
         return with<OpenDatabase>(fresh<OpenDatabase>, read_database,
                                   [](OpenDatabase& d) { return std::string(d.found); });
       }},
      {"save field", W::Saves,
       [] {
         const auto field = std::make_shared<CChang>();
         fill(*field);
         return saves_stream([field](std::FILE* f) { return field->SaveData(f) != 0; });
       }},
      {"read field", W::Keeps,
       [] {
         return with<CChang>(
             fresh<CChang>,
             [](CChang& c) {
               std::FILE* const file = qv::open_text("in.field", "rt");
               if (!file) return false;
               const int good = c.LoadData(file);
               std::fclose(file);
               return good != 0;
             },
             [](CChang& c) { return text_of(c); });
       }},
      {"locate in field", W::Parts,
       [] {
         struct Located {
           CChang field;
           Found found;
           Located() { fill(field); }
         };
         return with<Located>(
             fresh<Located>,
             [](Located& l) {
               const qv::FieldLocator locator(l.field);
               const float value = locator.Value(3.3F, 4.4F);
               return l.found.say("%f", static_cast<double>(value)), true;
             },
             [](Located& l) { return std::string(l.found); });
       }},
      {"draw field", W::Parts,
       [] {
         struct Painted {
           CChang field;
           qv::BitmapContext bitmap{120, 90, 0};
           CFCoor coor{CFPoint(0, 20000), 0.006F, 1};
           Painted() { fill(field); }
         };
         return with<Painted>(
             fresh<Painted>,
             [](Painted& p) {
               CRect area{0, 0, 120, 90};
               return p.field.Draw_CaiSeTu(&p.bitmap, &area, &p.coor) != 0;
             },
             [](Painted& p) { return pixels(p.bitmap); });
       }},
      {"save options", W::Saves,
       [] {
         return Case{[] { write_bytes("UserOpt.dat", "the file of before"); },
                     [] {
                       CUserOpt options;
                       options.m_Con[2].fc = 17;
                       return options.SaveData() != 0;
                     },
                     [] { return bytes_of("UserOpt.dat"); }};
       }},
      {"read options", W::Keeps,
       [] {
         write_bytes("UserOpt.dat", "");
         CUserOpt written;
         written.m_Rein[1].fy = 333;
         written.SaveData();
         return with<CUserOpt>(
             fresh<CUserOpt>, [](CUserOpt& o) { return o.ReadData() != 0; },
             [](CUserOpt& o) { return std::string(qv::FormattedText<64>("%f %f", o.m_Rein[1].fy, o.m_Con[4].fc)); });
       }},
      {"save base data", W::Saves,
       [] {
         const auto data = std::make_shared<CQvBaseData>();
         data->m_strName = "name";
         return saves_stream([data](std::FILE* f) { return data->SetBiaoShi(f, "mark") && data->SaveData(f); });
       }},
      {"read base data", W::Keeps,
       [] {
         return with<CQvBaseData>(
             fresh<CQvBaseData>,
             [](CQvBaseData& d) {
               std::FILE* const file = qv::open_text("in.base", "rt");
               if (!file) return false;
               const int good = d.LoadData(file);
               std::fclose(file);
               return good != 0;
             },
             [](CQvBaseData& d) { return d.m_strName.str(); });
       }},
      {"script", W::Saves,
       [] {
         return saves_stream([](std::FILE* f) {
           for (int i = 0; i < 2000; ++i) acad_line(f, 0, 0, 1, 1);
           return QuillonScript(f, "text") != 0;
         });
       }},
      {"copy file", W::Saves, [] { return saves([] { return qv::copy_file("in.dxf", "out", true); }); }},
      {"prepare domain", W::Parts,
       [] {
         return with<Found>(
             fresh<Found>,
             [](Found& found) {
               CDomainEdge edges[40];
               for (int i = 0; i < 40; ++i) {
                 edges[i].x = static_cast<float>(std::cos(i * 0.157));
                 edges[i].y = static_cast<float>(std::sin(i * 0.157));
               }
               const CPreparedDomain prepared(40, edges);
               const int inside = prepared.Point_In_Domain(0.1F, 0.1F, 0);
               return found.say("%d", inside), true;
             },
             [](Found& found) { return std::string(found); });
       }},
  };
  for (const char* const path : {"in.dxf", "blocks.dxf", "foreign1.dxf", "foreign2.dxf", "foreign3.dxf"})
    rows.push_back({path, W::Keeps, [path] { return imports(path); }});
  return rows;
}

std::string word(int value) {
  return {static_cast<char>(value & 255), static_cast<char>(value >> 8 & 255)};
}

std::string slide_bytes() {
  std::string bytes("AutoCAD Slide\r\n\x1A\0", 17);
  bytes += std::string("\x56\x02", 2) + word(800) + word(600) + std::string(4, '\1') + word(0) + word(0x1234);
  for (int i = 0; i < 500; ++i) bytes += word(i % 700) + word(i % 500) + word(5) + word(9) + word(0xFF00 + i % 200);
  return bytes + word(0xFC00);
}

}  // namespace

int told() {
  return host().failures;
}

void write_inputs() {
  qv::SetHost(&host());
  G_strExePath = "./";
  G_ShapeFont.SetTxtFont(QV_FONTS, "txt.shx");
  G_ShapeFont.SetHzFont(QV_FONTS, "hztxt.shx");
  {
    Sheet sheet;
    sheet.composer->Write_MemDxf_To_File("in.dxf");
    add_block(*sheet.composer, "PART");
    sheet.composer->Write_MemDxf_To_File("blocks.dxf");
  }
  const std::string corpus = QV_SOURCE_DIR "/fuzz/import/corpus/text/";
  write_bytes("foreign1.dxf", bytes_of((corpus + "kinds0").c_str()));
  write_bytes("foreign2.dxf", bytes_of((corpus + "kinds2").c_str()));
  write_bytes("in.shx", bytes_of(QV_SOURCE_DIR "/fuzz/fonts/corpus/shx/extended_big").substr(1));
  write_bytes("foreign3.dxf", bytes_of((corpus + "pictures_of_objects").c_str()));
  const std::string slide = slide_bytes();
  write_bytes("in.sld", slide);
  std::string library = std::string("AutoCAD Slide Library 1.0\r\n\x1A") + std::string(4, '\0');
  int offset = 32 + 3 * 36;
  for (const char* const name : {"FIRST", "SECOND", ""}) {
    const std::string key(name);
    const int at = key.empty() ? 0 : offset;
    library += key + std::string(32 - key.size(), '\0') + word(at) + word(at >> 16);
    offset += static_cast<int>(slide.size());
  }
  write_bytes("in.slb", library + slide + slide);
  write_database("in.dat");
  CChang field;
  fill(field);
  if (std::FILE* const file = std::fopen("in.field", "wb")) {
    field.SaveData(file);
    std::fclose(file);
  }
  write_bytes("in.base", "##first\n##Name " + std::string(500, 'n') + "\n");
}

const std::vector<Scenario>& scenarios() {
  static const std::vector<Scenario> rows = make_scenarios();
  return rows;
}

}  // namespace faults
