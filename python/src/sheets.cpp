// What is composed of primitives and symbols: frames with their blocks, tables, lists, notes, axes, chains, labels,
// details at a scale of their own, underlays.

#include "composer.h"

namespace qvpy {

namespace {

using py::arg;

CFRect frame_rect(const py::object& box, const char* name) {
  const std::optional<qv::DrawingRect> r = rect_of(box, name);
  if (!r) throw py::type_error(std::string(name) + ": a rectangle expected");
  const auto f = [](double v) { return static_cast<float>(v); };
  return {f(r->left), f(r->bottom), f(r->right), f(r->top)};
}

std::string gbk(const Text& text) {
  return text.gbk;
}

std::vector<std::string> gbk(const std::vector<Text>& texts) {
  std::vector<std::string> all;
  for (const Text& text : texts) all.push_back(text.gbk);
  return all;
}

qv::Across across_of(const std::string& across) {
  return choice<qv::Across>(across, {"left", "center", "right"}, "across");
}

constexpr std::initializer_list<const char*> kEntries = {"office",       "project", "drawing", "profession_lead",
                                                         "project_lead", "design",  "check",   "review",
                                                         "approve",      "number",  "date"};

py::object draw_sheet(CBase_SGT& sgt, const std::string& size, float x, float y, int extra, bool portrait,
                      const std::map<std::string, Text>& title,
                      const std::vector<std::tuple<Text, Text, Text>>& countersign) {
  const int number = choice(size, {"A0", "A1", "A2", "A3"}, "size");
  std::vector<std::pair<qv::TitleEntry, const char*>> entries;
  for (const auto& [name, text] : title) entries.emplace_back(choice<qv::TitleEntry>(name, kEntries, "title"), text);
  std::vector<qv::CounterSignBlock::Entry> signers;
  for (const auto& [profession, person, date] : countersign)
    signers.push_back({gbk(profession), gbk(person), gbk(date)});
  const qv::SheetFrame sheet(sgt, x, y, number, extra, portrait);
  sgt.Draw_TuKuang(x, y, number, extra, portrait);
  const qv::TitleBlock block(sheet);
  for (const auto& [entry, text] : entries) block.Fill(sgt, entry, text);
  if (!signers.empty()) qv::CounterSignBlock(sheet).Fill(sgt, signers);
  return value("SheetFrame", rect(sheet.paper), rect(sheet.inside), rect(sheet.title), rect(sheet.countersign));
}

using Cells = std::vector<std::vector<Text>>;

py::object draw_table(CBase_SGT& sgt, float x, float top, const Cells& rows, const Cells& header,
                      const std::optional<std::vector<double>>& widths, const Text& title,
                      const std::vector<std::tuple<int, int, int, int>>& merge, const std::string& across,
                      double textHeight, double rowHeight, double mostHeight) {
  std::size_t count = widths ? widths->size() : 0;
  for (const Cells* cells : {&header, &rows})
    for (const auto& row : *cells) count = widths ? count : std::max(count, row.size());
  std::vector<qv::SheetTable::Column> columns(count);
  for (std::size_t i = 0; i < count; ++i) columns[i] = {widths ? (*widths)[i] : 0, across_of(across)};
  qv::SheetTable::Look look;
  look.textHeight = textHeight;
  look.rowHeight = rowHeight > 0 ? rowHeight : 2 * textHeight;
  look.mostHeight = mostHeight;
  qv::SheetTable table(std::move(columns), look);
  table.SetTitle(title.gbk);
  for (const auto& row : header) table.AddHeader(gbk(row));
  for (const auto& row : rows) table.AddRow(gbk(row));
  for (const auto& [row, column, height, width] : merge) table.Merge(row, column, height, width);
  return rect(table.Draw(sgt, x, top).all());
}

/// Bars from Python: `BarItem`s, or tuples in the order of its fields.
qv::BarList bars_of(const py::iterable& bars) {
  qv::BarList list;
  for (const py::handle bar : bars) {
    const py::tuple item =
        py::module_::import("qvtools._values").attr("BarItem")(*py::tuple(py::reinterpret_borrow<py::object>(bar)));
    const auto [mark, shape, grade, diameter, count, a, b, c, length] =
        item.cast<std::tuple<Text, std::string, int, int, int, double, double, double, double>>();
    const auto form =
        choice<qv::BarShape>(shape, {"straight", "bent", "bent_twice", "cranked", "stirrup", "tie"}, "shape");
    list.Add({mark.gbk, form, grade, diameter, count, a, b, c, length});
  }
  return list;
}

py::object draw_bar_list(CBase_SGT& sgt, float x, float top, const py::iterable& bars, double mostHeight) {
  const qv::BarList list = bars_of(bars);
  return rect(list.Draw(sgt, x, top, mostHeight));
}

py::object draw_notes(CBase_SGT& sgt, float x, float top, double width, const std::vector<Text>& notes,
                      const Text& title, double textHeight, bool numbered) {
  qv::NoteBlock::Look look;
  look.textHeight = textHeight;
  look.numbered = numbered;
  return rect(qv::NoteBlock(title.gbk, gbk(notes), look).Draw(sgt, x, top, width));
}

py::tuple draw_axis_grid(CBase_SGT& sgt, float x, float y, const std::vector<float>& xSpacings,
                         const std::vector<float>& ySpacings, bool dimensions, bool allSides,
                         const std::optional<std::vector<Text>>& xNames,
                         const std::optional<std::vector<Text>>& yNames) {
  qv::AxisGrid grid(x, y, xSpacings, ySpacings);
  const auto rename = [](std::vector<std::string>& names, const std::optional<std::vector<Text>>& given,
                         const char* name) {
    if (!given) return;
    if (given->size() != names.size())
      throw py::value_error(std::string(name) + ": " + std::to_string(names.size()) + " names expected");
    names = gbk(*given);
  };
  rename(grid.xNames, xNames, "x_names");
  rename(grid.yNames, yNames, "y_names");
  grid.DrawAxes(sgt);
  if (dimensions) grid.DrawDimensions(sgt, allSides);
  const auto places = [](const std::vector<std::string>& names, const std::vector<float>& at) {
    py::dict all;
    for (std::size_t i = 0; i < names.size(); ++i) all[to_str(names[i].c_str())] = at[i];
    return all;
  };
  return py::make_tuple(places(grid.xNames, grid.x()), places(grid.yNames, grid.y()));
}

void draw_chain(CBase_SGT& sgt, const std::string& side, const std::vector<float>& positions, float line,
                double extension) {
  const auto where = choice<qv::ChainSide>(side, {"below", "above", "left", "right"}, "side");
  qv::DrawDimensionChain(sgt, where, positions, line, extension);
}

void draw_leaders(CBase_SGT& sgt, const std::string& side, float at,
                  const std::vector<std::tuple<float, float, Text, int>>& labels) {
  qv::Leaders leaders(choice<qv::Leaders::Side>(side, {"left", "right", "above", "below"}, "side"), at);
  for (const auto& [x, y, text, number] : labels) leaders.Add(x, y, text.gbk, number);
  leaders.Draw(sgt);
}

void draw_sheet_text(CBase_SGT& sgt, float x, float y, float height, const Text& text, const std::string& across,
                     float angle) {
  const qv::Across where = across_of(across);
  qv::DrawSheetText(sgt, x, y, height, text, where, angle);
}

void draw_fitted_text(CBase_SGT& sgt, const py::object& box, const Text& text, float height, const std::string& across,
                      float gap, bool upright) {
  const CFRect r = frame_rect(box, "box");
  const qv::Across where = across_of(across);
  qv::DrawFittedText(sgt, r, where, height, text, gap, upright);
}

void draw_underlay(Composer& self, Document& drawing, float x, float y, float angle, double scale, const Text& layer,
                   bool prefix, int color) {
  CBase_SGT& sgt = self.sgt();
  DXF& dxf = drawing.use();
  Call call;
  bool drawn;
  {
    const Busy busy({&self, &drawing});
    drawn = qv::Underlay(sgt, dxf, {x, y, angle}, scale, {layer.gbk, prefix, color}) == 1;
  }
  call.finish(drawn, "The drawing cannot be laid under: its scale is not above 0, or memory ran out");
}

/// A detail at a scale of its own, between `__enter__` and `__exit__`.
class Detail {
 public:
  Detail(std::shared_ptr<Composer> composer, float x, float y, float scale)
      : composer_(std::move(composer)), x_(x), y_(y), scale_(scale) {
    if (!(scale > 0)) throw py::value_error("scale: a number above 0 expected");
  }
  ~Detail() {
    // A closed composer has nothing to bring back.
    if (!composer_->is_open()) static_cast<void>(scope_.release());
  }
  Detail(const Detail&) = delete;
  Detail& operator=(const Detail&) = delete;

  void enter() {
    if (scope_) throw Error("The detail is begun already");
    scope_ = std::make_unique<qv::SecondScale>(composer_->sgt(), x_, y_, scale_);
  }
  void exit() {
    composer_->change();
    scope_.reset();
  }
  const qv::SecondScale& scope() const {
    composer_->use();
    if (!scope_) throw Error("The detail is not begun: use it in a with statement");
    return *scope_;
  }

 private:
  std::shared_ptr<Composer> composer_;
  float x_;
  float y_;
  float scale_;
  std::unique_ptr<qv::SecondScale> scope_;
};

constexpr Method kSheetMethods[] = {
    method<&draw_sheet>(
        "sheet", "size='A2', x=0, y=0, extra=0, portrait=False, title={}, countersign=[]",
        R"(Draws a sheet frame of A0 to A3 with its blocks and fills them (Draw_TuKuang, qv::TitleBlock). Returns a SheetFrame.

(x, y) is its lower left corner; extra lengthens the long side (mm). title: a dict of texts by "office", "project",
"drawing", "profession_lead", "project_lead", "design", "check", "review", "approve", "number", "date". countersign:
up to three tuples (profession, person, date).)"),
    method<&draw_table>("table",
                        "x, top, rows, header=[], widths=None, title='', merge=[], across='center', text_height=3.5, "
                        "row_height=0, most_height=0",
                        R"(Draws a table with its upper left corner at (x, top) (qv::SheetTable). Returns its Rect.

rows, header: lists of lists of texts. widths: of the columns in drawing mm, 0 by content; else all by content. merge:
tuples (row, column, rows, columns), the header's rows counted. Heights are drawing mm; what is higher than most_height
goes on beside it.)"),
    method<&draw_bar_list>(
        "bar_list", "x, top, bars, most_height=0",
        "Draws a list of BarItems with shapes, lengths, masses and sums (qv::BarList). Returns its Rect."),
    method<&draw_notes>("notes", "x, top, width, notes, title='', text_height=3.5, numbered=True",
                        "Draws notes, wrapped at a width in drawing mm (qv::NoteBlock). Returns their Rect."),
    method<&draw_axis_grid>(
        "axis_grid", "x, y, x_spacings, y_spacings, dimensions=True, all_sides=False, x_names=None, y_names=None",
        R"(Draws the axes of a plan from (x, y) on, with bubbles and dimensions (qv::AxisGrid).

Returns the places of the upright and of the level axes, two dicts by name.)"),
    method<&draw_chain>(
        "dimension_chain", "side, positions, line, extension=8",
        R"(Draws a chain of dimensions "below", "above", "left" or "right" of what is measured (qv::DrawDimensionChain).

positions: x, or y of an upright chain; line: where the dimension line stands.)"),
    method<&draw_leaders>("leaders", "side, at, labels",
                          R"(Draws bar labels on one side of a detail that make room for each other (qv::Leaders).

side: "left", "right" (a column from x = at), "above", "below" (a row at y = at). labels: tuples (x, y, text, number).)"),
    method<&draw_sheet_text>("sheet_text", "x, y, height, text, across='left', angle=0",
                             "Writes a text with its left end, center or right end at (x, y) (qv::DrawSheetText)."),
    method<&draw_fitted_text>("fitted_text", "box, text, height, across='center', gap=0, upright=False",
                              "Writes a text into a box, narrower where it is too long (qv::DrawFittedText)."),
};

}  // namespace

void bind_sheets(py::module_& m, ComposerClass& composer) {
  py::class_<Detail>(m, "Detail", "A detail at a scale of its own, as Composer.detail begins one.")
      .def(
          "__enter__", [](Detail& self) -> Detail& { return self.enter(), self; },
          py::return_value_policy::reference_internal)
      .def("__exit__", [](Detail& self, const py::args&) { self.exit(); })
      .def(
          "on_sheet",
          [](const Detail& self, float x, float y) {
            const CFPoint p = self.scope().OnSheet(x, y);
            return std::pair(p.x, p.y);
          },
          arg("x"), arg("y"), "Where a point of the detail stands in the frame outside.")
      .def(
          "pen", [](const Detail& self, float width) { return self.scope().Pen(width); }, arg("width"),
          "The width that comes out as `width` on the sheet.");

  bind_methods(composer, kSheetMethods);
  composer
      .def("underlay", &draw_underlay, arg("drawing"), arg("x") = 0, arg("y") = 0, arg("angle") = 0, arg("scale") = 1,
           arg("layer") = "UNDERLAY", arg("prefix") = false, arg("color") = 8,
           R"(Draws another document below, its lengths times scale (qv::Underlay).

layer takes everything, or, with prefix, stands before the layers' names. color: 8 is grey, BY_LAYER leaves colours.)")
      .def(
          "detail",
          [](std::shared_ptr<Composer> self, float x, float y, float scale) {
            return std::make_unique<Detail>(std::move(self), x, y, scale);
          },
          arg("x"), arg("y"), arg("scale"),
          "Begins a detail at a scale of its own in a with statement, its origin at (x, y) (qv::SecondScale).");

  m.def(
      "wrap_text",
      [](const Text& text, float height, float width) {
        py::list lines;
        for (const std::string& line : qv::WrapText(text.gbk, height, width)) lines.append(to_str(line.c_str()));
        return lines;
      },
      arg("text"), arg("height"), arg("width"), "The lines of a text that are no wider than width (qv::WrapText).");
  m.def(
      "bar_sums",
      [](const py::iterable& bars) {
        py::list sums;
        for (const qv::BarList::Sum& sum : bars_of(bars).Sums())
          sums.append(value("BarSum", sum.grade, sum.diameter, sum.length, sum.mass));
        return sums;
      },
      arg("bars"), "Lengths (m) and masses (kg) of BarItems by grade and diameter (qv::BarList::Sums).");
}

}  // namespace qvpy
