#include <algorithm>

#include "pictures.h"

namespace qvpy {

namespace {

using py::arg;

std::unique_ptr<CWxSlide> read_slide(const Path& path) {
  must_be_readable(path);
  auto slide = std::make_unique<CWxSlide>();
  Call call;
  call.finish(slide->Read_SLD(path) == 1, shown(path) + ": is no slide");
  return slide;
}

py::list slide_items(const CWxSlide& slide) {
  py::list all;
  int color = 7;
  for (const CSlideItem& item : slide.m_Items) {
    const bool solid = item.m_byKind == CSlideItem::kSolid;
    if (!solid && item.m_byKind != CSlideItem::kVector) {
      color = item.m_byKind;
      continue;
    }
    py::list points;
    for (int i = 0; i < (solid ? 4 : 2); ++i) points.append(py::make_tuple(item.m_fX[i], item.m_fY[i]));
    all.append(value("SlideItem", solid ? "solid" : "line", color, points));
  }
  return all;
}

py::object slide_extent(const CWxSlide& slide) {
  const CRect box = slide.GetRect();
  return value("Rect", box.left, std::min(box.top, box.bottom), box.right, std::max(box.top, box.bottom));
}

Picture slide_picture(CWxSlide& slide, const py::object& size, const py::object& background) {
  const CSize pixels = size_of(size);
  Picture made{std::make_shared<qv::BitmapContext>(pixels.cx, pixels.cy, color_of(background, "background"))};
  const CRect window(0, 0, pixels.cx, pixels.cy);
  checked([&] { slide.Draw(made.bitmap.get(), &window); });
  return made;
}

std::shared_ptr<Document> slide_document(CWxSlide& slide) {
  auto dxf = std::make_unique<DXF>();
  checked([&] { dxf->New_MemDxf(), Form_Dxf(dxf.get(), &slide); });
  return std::make_shared<Document>(std::move(dxf));
}

void save_script(CWxSlide& slide, const Path& path) {
  Call call;
  call.finish(slide.Form_SCR(path) == 1, shown(path) + ": the file cannot be written");
}

std::unique_ptr<CWxSlideLib> open_library(const Path& path) {
  must_be_readable(path);
  auto library = std::make_unique<CWxSlideLib>();
  Call call;
  call.finish(library->Open_SLB(path) == 1, shown(path) + ": is no slide library");
  return library;
}

std::vector<Text> slide_names(const CWxSlideLib& library) {
  std::vector<Text> all;
  for (const CWxSlideLib::Entry& entry : library.m_Directory) all.push_back({entry.m_szName});
  return all;
}

std::unique_ptr<CWxSlide> slide_named(CWxSlideLib& library, const Text& name) {
  const auto is_it = [&](const CWxSlideLib::Entry& entry) {
    CString a(entry.m_szName), b(name.gbk.c_str());
    a.MakeUpper(), b.MakeUpper();
    return a == b;
  };
  if (std::none_of(library.m_Directory.begin(), library.m_Directory.end(), is_it))
    throw py::key_error(qv::from_gbk(name.gbk));
  auto slide = std::make_unique<CWxSlide>();
  Call call;
  call.finish(library.Read_SLD(name, slide.get()) == 1, qv::from_gbk(name.gbk) + ": is no slide");
  return slide;
}

void extract(CWxSlideLib& library, const Text& name, const Path& folder) {
  Call call;
  call.finish(library.Pick_SLD(name, (folder.bytes + "/").c_str()) == 1,
              qv::from_gbk(name.gbk) + ": cannot be extracted");
}

}  // namespace

void bind_slides(py::module_& m) {
  py::class_<CWxSlide>(m, "Slide", "A slide, a small vector picture (CWxSlide): read, or drawn by its calls.")
      .def(py::init<>())
      .def_static("read", &read_slide, arg("path"), "Reads a slide file (Read_SLD).")
      .def_property_readonly("items", &slide_items, "Its lines and solids, a list of SlideItems, in slide units, y up.")
      .def_property_readonly("extent", &slide_extent, "The rectangle of all its points (GetRect).")
      .def_property_readonly(
          "size", [](const CWxSlide& slide) { return std::pair(slide.m_nHighX, slide.m_nHighY); },
          "The virtual screen that it was made on.")
      .def("color", &CWxSlide::SetColor, arg("number"), "Draws in a colour from here on (SetColor).")
      .def("line", &CWxSlide::Draw_Line, arg("x1"), arg("y1"), arg("x2"), arg("y2"), "Draws a line (Draw_Line).")
      .def("solid", &CWxSlide::Draw_Solid, arg("x1"), arg("y1"), arg("x2"), arg("y2"), arg("x3"), arg("y3"), arg("x4"),
           arg("y4"), "Fills a quadrilateral (Draw_Solid).")
      .def("save_script", &save_script, arg("path"), "Writes it as script lines (Form_SCR).")
      .def("document", &slide_document, "A Document of its lines and solids (Form_Dxf).")
      .def("picture", &slide_picture, arg("size") = std::pair(400, 300), arg("background") = py::make_tuple(0, 0, 0),
           "A picture of it, fitted into a size in pixels (Draw).")
      .def("_repr_png_", [](CWxSlide& slide) {
        const py::object made = py::cast(slide_picture(slide, py::make_tuple(400, 300), py::make_tuple(0, 0, 0)));
        return made.attr("png")();
      });
  py::class_<CWxSlideLib>(m, "SlideLibrary",
                          "A slide library, by the names of its slides (CWxSlideLib): len, in, [name].")
      .def(py::init(&open_library), arg("path"))
      .def_property_readonly("names", &slide_names, "The names of its slides.")
      .def("__len__", [](const CWxSlideLib& library) { return library.m_Directory.size(); })
      .def("__iter__", [](const CWxSlideLib& library) { return py::iter(py::cast(slide_names(library))); })
      .def("__getitem__", &slide_named, arg("name"))
      .def("extract", &extract, arg("name"), arg("folder"),
           "Writes a slide to a file of its name in a folder (Pick_SLD).");
}

}  // namespace qvpy
