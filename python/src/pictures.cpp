#include "pictures.h"

#include <bit>

namespace qvpy {

namespace {

/// The bytes of the file that `write` makes in a temporary folder.
template <class Write>
py::bytes bytes_of(const char* name, const Write& write) {
  const py::object folder = py::module_::import("tempfile").attr("TemporaryDirectory")();
  const py::object path = py::module_::import("pathlib").attr("Path")(folder.attr("name")).attr("__truediv__")(name);
  write(path.cast<Path>());
  const py::bytes bytes = path.attr("read_bytes")();
  folder.attr("cleanup")();
  return bytes;
}

void save_png(const Picture& self, const Path& path, double dpi) {
  Call call;
  bool saved;
  {
    const py::gil_scoped_release release;
    saved = qv::SavePng(*self.bitmap, path.bytes, dpi);
  }
  call.finish(saved, shown(path) + ": the file cannot be written");
}

py::bytes png(const Picture& self) {
  return bytes_of("picture.png", [&](const Path& path) { save_png(self, path, 96); });
}

/// Red, green and blue of the pixels, which lie as 0xFFRRGGBB.
py::array pixels(const py::object& self) {
  static_assert(std::endian::native == std::endian::little);
  const qv::BitmapContext& bitmap = *self.cast<const Picture&>().bitmap;
  const auto* const first = reinterpret_cast<const unsigned char*>(bitmap.Pixels());
  const py::ssize_t width = bitmap.Width(), height = bitmap.Height();
  py::array view(py::dtype::of<unsigned char>(), {height, width, py::ssize_t{3}},
                 {4 * width, py::ssize_t{4}, py::ssize_t{-1}}, first + 2, self);
  view.attr("setflags")(py::arg("write") = false);
  return view;
}

using View = std::optional<std::pair<double, double>>;

std::optional<qv::PictureOptions::View> view_of(const View& view) {
  if (!view) return std::nullopt;
  return qv::PictureOptions::View{view->first, view->second};
}

Picture picture(Document& self, const py::object& size, const py::object& window, const View& view,
                const py::object& background, bool dashes, double lineWidth) {
  qv::PictureOptions options;
  options.fitHeight = PyIndex_Check(size.ptr()) != 0;
  options.size = options.fitHeight ? CSize(size.cast<int>(), 1000) : size_of(size);
  options.window = rect_of(window, "window");
  options.view = view_of(view);
  options.background = color_of(background, "background");
  if (!dashes) options.appearance.patterns = &qv::SolidLines();
  options.lineWidth = lineWidth;
  options.notes = self.notes();
  Call call;
  Picture made;
  DXF& dxf = self.use();
  {
    const Busy busy({&self});
    made.bitmap = qv::MakePicture(dxf, options);
  }
  call.finish(made.bitmap != nullptr, "The picture cannot be made: its size is none, or memory ran out");
  return made;
}

/// A built-in table by its name, the text form of one, or a file.
std::optional<qv::PenTable> pens_of(const py::object& pens) {
  if (pens.is_none()) return std::nullopt;
  std::string problem;
  std::optional<qv::PenTable> table;
  if (py::isinstance<py::str>(pens)) {
    const auto text = pens.cast<std::string>();
    table = qv::PenTable::built_in(text);
    if (!table && text.find("->") != text.npos) {
      table = qv::PenTable::parse(text, problem);
      if (!table) throw py::value_error("pens: " + problem);
    }
  }
  if (!table) {
    const Path path = pens.cast<Path>();
    must_be_readable(path);
    table = qv::PenTable::read(path, problem);
  }
  if (!table) throw Error(std::string(py::str(pens)) + ": " + problem);
  return table;
}

qv::PlotOptions plot_options(const std::string& paper, const std::string& orientation, std::optional<double> scale,
                             double margin, const std::optional<std::pair<double, double>>& offset,
                             const py::object& window, const View& view, bool whole, const std::string& colors,
                             double penScale, bool scalePens, const std::string& title, double dpi, bool smooth,
                             bool readable, bool dated) {
  qv::PlotOptions options;
  if (!paper.empty()) {
    options.paper = qv::paper_named(paper);
    if (!options.paper) throw py::value_error("paper: " + paper + " is no format and no size");
  }
  options.orientation =
      choice<qv::PlotOptions::Orientation>(orientation, {"drawing", "landscape", "portrait"}, "orientation");
  options.scale = scale;
  options.margin = margin;
  if (offset) options.offset = {offset->first, offset->second};
  options.window = rect_of(window, "window");
  options.view = view_of(view);
  options.whole = whole;
  options.colors = choice<qv::PlotColors>(colors, {"black", "grey", "color"}, "colors");
  options.penScale = penScale;
  options.scalePens = scalePens;
  options.title = title;
  options.dpi = dpi;
  options.smooth = smooth;
  options.readable = readable;
  options.dated = dated;
  return options;
}

py::object plot(const std::vector<std::shared_ptr<Document>>& documents, const Path& path, const std::string& paper,
                const std::string& orientation, std::optional<double> scale, double margin,
                const std::optional<std::pair<double, double>>& offset, const py::object& window, const View& view,
                bool whole, const py::object& pens, const std::string& colors, double penScale, bool scalePens,
                const std::string& title, double dpi, bool smooth, bool readable, bool dated,
                const py::object& progress) {
  qv::PlotOptions options = plot_options(paper, orientation, scale, margin, offset, window, view, whole, colors,
                                         penScale, scalePens, title, dpi, smooth, readable, dated);
  const std::optional<qv::PenTable> table = pens_of(pens);
  options.pens = table ? &*table : nullptr;
  std::vector<qv::PlotSource> sources;
  std::vector<Document*> busyOnes;
  for (const auto& document : documents) {
    qv::PlotSource& source = sources.emplace_back();
    source.document = &document->use();
    source.notes = document->notes();
    source.name = document->name;
    const bool converted = document->report && document->report->scale != 1;
    if (document->report && !converted) source.unit = qv::UnitFactor(document->report->unit, qv::Unit::Millimetre);
    busyOnes.push_back(document.get());
  }
  Progress told(progress);
  Call call;
  qv::PlotReport report;
  bool plotted;
  {
    const Busy busy(busyOnes);
    plotted = qv::Plot(sources, path.bytes, options, report, std::ref(told));
  }
  told.finish();
  call.finish(plotted, shown(path) + ": " + report.problem);
  py::list pages;
  for (const qv::PlotReport::Page& page : report.pages)
    pages.append(value("Page", lenient(page.source), lenient(page.sheet), qv::paper_name(page.paper), page.scale,
                       page.fits, py::make_tuple(page.size.width, page.size.height), lenient(page.file)));
  py::list remarks;
  for (const std::string& remark : report.remarks) remarks.append(lenient(remark));
  return value("PlotReport", pages, remarks);
}

py::list sheets(Document& self) {
  py::list all;
  for (const qv::Sheet& sheet : checked([&] { return qv::FindSheets(self.use()); }))
    all.append(value("Sheet", rect(sheet.edge), rect(sheet.border), qv::paper_name(sheet.paper), sheet.scale,
                     lenient(sheet.name), lenient(sheet.number)));
  return all;
}

}  // namespace

CSize size_of(const py::object& size) {
  const auto [width, height] = size.cast<std::pair<int, int>>();
  if (width < 1 || height < 1 || width > 32767 || height > 32767)
    throw py::value_error("size: 1 to 32767 pixels each way expected");
  return {width, height};
}

COLORREF color_of(const py::object& color, const char* name) {
  const auto [r, g, b] = color.cast<std::tuple<int, int, int>>();
  for (const int part : {r, g, b})
    if (part < 0 || part > 255) throw py::value_error(std::string(name) + ": red, green and blue of 0 to 255 expected");
  return qv::rgb(static_cast<unsigned>(r), static_cast<unsigned>(g), static_cast<unsigned>(b));
}

void bind_picture(py::module_& m) {
  py::class_<Picture>(m, "Picture", "A picture in memory. A notebook shows it.")
      .def_property_readonly(
          "size", [](const Picture& self) { return std::pair(self.bitmap->Width(), self.bitmap->Height()); },
          "Width and height in pixels.")
      .def_property_readonly(
          "pixels", &pixels,
          "Red, green and blue: an array of height by width by 3 uint8, a view that cannot be written.")
      .def("save", &save_png, py::arg("path"), py::arg("dpi") = 96, "Writes a PNG file (qv::SavePng).")
      .def("png", &png, "The bytes of a PNG file.")
      .def("_repr_png_", &png);
}

void bind_pictures(py::module_& m, DocumentClass& document) {
  const py::object white = py::make_tuple(255, 255, 255);
  document
      .def("picture", &picture, py::arg("size") = 1600, py::arg("window") = py::none(), py::arg("view") = py::none(),
           py::arg("background") = white, py::arg("dashes") = true, py::arg("line_width") = 1,
           R"(A picture of the drawing (qv::MakePicture).

size: the width in pixels, the height follows the drawing; or (width, height). window: the rectangle that is shown
(left, bottom, right, top); else everything. view: two view angles in radians, for a drawing in space. background: red,
green, blue.)")
      .def(
          "_repr_png_",
          [](Document& self) {
            return png(picture(self, py::int_(1000), py::none(), std::nullopt, py::make_tuple(255, 255, 255), true, 1));
          })
      .def(
          "plot",
          [](const std::shared_ptr<Document>& self, const Path& path, const py::kwargs& options) {
            const std::vector documents = {self};
            return py::module_::import("qvtools._core").attr("plot")(documents, py::bytes(path.bytes), **options);
          },
          py::arg("path"), "Plots the document alone; options as those of plot().")
      .def(
          "svg",
          [](const std::shared_ptr<Document>& self, const py::kwargs& options) {
            const py::object plot = py::cast(self).attr("plot");
            const py::bytes bytes =
                bytes_of("plot.svg", [&](const Path& path) { plot(py::bytes(path.bytes), **options); });
            return value("Svg", bytes.attr("decode")());
          },
          "The first page of a plot as an Svg, a str that a notebook shows; options as those of plot().")
      .def("sheets", &sheets, "The sheets of the drawing, from top to bottom and left to right (qv::FindSheets).");
  m.def("plot", &plot, py::arg("documents"), py::arg("path"), py::kw_only(), py::arg("paper") = "",
        py::arg("orientation") = "drawing", py::arg("scale") = py::none(), py::arg("margin") = 5,
        py::arg("offset") = py::none(), py::arg("window") = py::none(), py::arg("view") = py::none(),
        py::arg("whole") = false, py::arg("pens") = py::none(), py::arg("colors") = "black", py::arg("pen_scale") = 1,
        py::arg("scale_pens") = false, py::arg("title") = "", py::arg("dpi") = 300, py::arg("smooth") = false,
        py::arg("readable") = false, py::arg("dated") = false, py::arg("progress") = py::none(),
        R"(Plots documents to scale into a .pdf, or pages into .svg or .png files (qv::Plot). Returns a PlotReport.

paper: "A2", "A1+1/4" or "420x297"; else a sheet's own, or A3. orientation: "drawing", "landscape" or "portrait".
scale: 50 for 1:50; else a sheet's own, or what fits. margin: mm. offset: mm of the lower left corner; else centred.
window: a part of the drawing (left, bottom, right, top). view: as in Document.picture, with a window. whole: all on
one page, whatever sheets there are. pens: "object", "mono", "GB b=1.0" and its kin, a table of pens as text, or a file.
colors: "black", "grey" or "color". dpi, smooth: of .png. readable: texts of .svg can be found. dated: .pdf tells when.)");
}

}  // namespace qvpy
