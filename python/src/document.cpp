#include <algorithm>

#include "core.h"

namespace qvpy {

namespace {

// Room of a new document's tables; what is not used costs nothing in files.
constexpr long kLTypes = 100, kLayers = 1000, kStyles = 100;

std::shared_ptr<Document> new_document() {
  auto dxf = std::make_unique<DXF>();
  checked([&] { dxf->Set_MaxNum_of_Tables(kLTypes, kLayers, kStyles), dxf->New_MemDxf(); });
  return std::make_shared<Document>(std::move(dxf));
}

std::shared_ptr<Composer> new_composer(float scale) {
  if (!(scale > 0)) throw py::value_error("scale: a number above 0 expected");
  auto sgt = std::make_unique<CBase_SGT>();
  checked([&] {
    sgt->Set_MaxNum_of_Tables(kLTypes, kLayers, kStyles);
    sgt->New_MemDxf();
    sgt->Add_STyle("HZ", "txt", "hztxt");
    sgt->Add_Default_LineType();
    sgt->SetBiLiChi(scale);
    sgt->SetCurStyle("HZ");
  });
  return std::make_shared<Composer>(std::move(sgt));
}

std::string file_name(const Path& path) {
  return py::str(py::module_::import("os").attr("path").attr("basename")(shown(path)));
}

/// A document that is being read: other threads cannot know it yet.
template <class Read>
std::shared_ptr<Document> read_into(const Path& path, const py::object& progress, const Read& read) {
  must_be_readable(path);
  auto document = std::make_shared<Document>(std::make_unique<DXF>());
  document->name = file_name(path);
  Progress told(progress);
  Call call;
  std::string problem;
  bool done;
  {
    DXF& dxf = document->change();
    const Busy busy({document.get()});
    dxf.New_MemDxf();
    done = read(*document, dxf, std::ref(told), problem);
  }
  told.finish();
  call.finish(done, document->name + ": " + problem);
  return document;
}

std::shared_ptr<Document> read_flat(const Path& path, const py::object& progress) {
  return read_into(path, progress, [&](Document&, DXF& dxf, const auto& told, std::string& problem) {
    problem = "the reading was given up";
    return dxf.Read_FileDxf_To_Mem(path, told) == 1;
  });
}

constexpr std::initializer_list<const char*> kUnits = {"", "in", "ft", "mi", "mm", "cm", "m", "km"};

std::shared_ptr<Document> import(const Path& path, const std::string& layout, const std::string& encoding,
                                 const std::string& unit, bool guessUnit, double tolerance, bool explode,
                                 const std::vector<std::string>& shapeFolders, const py::object& progress) {
  qv::ImportOptions options;
  options.layout = layout;
  if (!encoding.empty()) {
    options.encoding = qv::code_page_named(encoding);
    if (!options.encoding) throw py::value_error("encoding: " + encoding + " is no code page");
  }
  options.unit = choice<qv::Unit>(unit, kUnits, "unit");
  options.guessUnit = guessUnit;
  options.tolerance = tolerance;
  options.explode = explode;
  for (const std::string& folder : shapeFolders) options.shapeFolders.push_back(folder + "/");
  return read_into(path, progress, [&](Document& document, DXF& dxf, const auto& told, std::string& problem) {
    qv::ImportReport& report = document.report.emplace();
    if (qv::Import(path, dxf, options, report, told)) return true;
    problem = report.remarks.empty() ? "it is no drawing" : report.remarks[0].text;
    return false;
  });
}

py::object report_of(const Document& self) {
  if (!self.report) return py::none();
  const qv::ImportReport& r = *self.report;
  py::list kinds, remarks, layouts;
  for (const auto& kind : r.kinds)
    kinds.append(value("ImportedKind", lenient(kind.name), kind.taken, kind.converted, kind.leftOut,
                       lenient(kind.becomes), lenient(kind.reason), kind.line));
  for (const auto& remark : r.remarks)
    remarks.append(value("Remark", lenient(remark.text), remark.count, remark.line, remark.loss));
  for (const std::string& layout : r.layouts) layouts.append(lenient(layout));
  return value("ImportReport", kinds, remarks, lenient(r.release), r.binary, qv::code_page_name(r.encoding),
               r.encodingSource, kUnits.begin()[static_cast<int>(r.unit)], r.unitSource, r.scale,
               py::make_tuple(r.offset[0], r.offset[1]), lenient(r.layout), layouts, r.complete, r.brokenLine,
               lenient(r.summary()), lenient(r.text()));
}

void save(Document& self, const Path& path) {
  DXF& dxf = self.use();
  Call call;
  bool saved;
  {
    const Busy busy({&self});
    saved = dxf.Write_MemDxf_To_File(path) == 1;
  }
  call.finish(saved, shown(path) + ": the file cannot be written");
}

py::list layers(Document& self) {
  const DXF& dxf = self.use();
  py::list all;
  for (int i = 0; i < dxf.m_nLayer; ++i) {
    const ACAD_LAYER& layer = dxf.m_pLayer[static_cast<std::size_t>(i)];
    all.append(value("Layer", to_str(layer.m_szName), std::abs(layer.m_nColor), to_str(layer.m_szLType),
                     layer.m_nColor >= 0 && (layer.m_nFlags & 1) == 0));
  }
  return all;
}

py::list ltypes(Document& self) {
  const DXF& dxf = self.use();
  py::list all;
  for (int i = 0; i < dxf.m_nLType; ++i) {
    const ACAD_LTYPE& ltype = dxf.m_pLType[static_cast<std::size_t>(i)];
    const std::vector<float> elements(ltype.m_fElement, ltype.m_fElement + ltype.m_nElements);
    all.append(value("LType", to_str(ltype.m_szName), to_str(ltype.m_szDescription), elements));
  }
  return all;
}

py::list styles(Document& self) {
  const DXF& dxf = self.use();
  py::list all;
  for (int i = 0; i < dxf.m_nStyle; ++i) {
    const ACAD_STYLE& style = dxf.m_pStyle[static_cast<std::size_t>(i)];
    all.append(value("Style", to_str(style.m_szName), to_str(style.m_szFont), to_str(style.m_szBigFont),
                     style.m_fHeight, style.m_fWidthFactor));
  }
  return all;
}

/// Adds an entry to a table; its name is new and not too long.
template <class Names, class Add>
void add_entry(Document& self, const Text& name, const Names& names, const Add& add) {
  DXF& dxf = self.change();
  if (name.gbk.empty() || name.gbk.size() >= qv::kNameSize)
    throw py::value_error("name: 1 to " + std::to_string(qv::kNameSize - 1) + " bytes of GBK expected");
  const auto& [table, count] = names(dxf);
  for (int i = 0; i < count; ++i)
    if (qv::equals_field(table[i].m_szName, name.gbk))
      throw Error(qv::from_gbk(name.gbk) + ": is in the table already");
  Call call;
  const bool added = add(dxf) == 1;
  call.finish(added, "The table has no room for " + qv::from_gbk(name.gbk));
}

void add_layer(Document& self, const Text& name, int color, const Text& ltype) {
  add_entry(
      self, name, [](DXF& dxf) { return std::pair(dxf.m_pLayer.get(), dxf.m_nLayer); },
      [&](DXF& dxf) { return dxf.Add_Layer(name, color, ltype); });
}

void add_style(Document& self, const Text& name, const Text& font, const Text& bigFont) {
  add_entry(
      self, name, [](DXF& dxf) { return std::pair(dxf.m_pStyle.get(), dxf.m_nStyle); },
      [&](DXF& dxf) { return dxf.Add_STyle(name, font, bigFont); });
}

void add_ltype(Document& self, const Text& name, const std::vector<float>& elements, const Text& description) {
  if (elements.size() > qv::kMaxPatternElements) throw py::value_error("elements: at most 30 expected");
  float length = 0;
  for (const float element : elements) length += std::fabs(element);
  add_entry(
      self, name, [](DXF& dxf) { return std::pair(dxf.m_pLType.get(), dxf.m_nLType); },
      [&](DXF& dxf) {
        return dxf.Add_LType(name, description, static_cast<int>(elements.size()), length, elements.data());
      });
}

py::object extent(Document& self, const std::optional<std::pair<float, float>>& view) {
  DXF& dxf = self.use();
  if (dxf.m_EntityList.IsEmpty()) return py::none();
  return rect(checked([&] { return view ? dxf.GetFRect3D(view->first, view->second) : dxf.GetFRect(); }));
}

py::object objects(Document& self, const std::vector<ACAD_ENTITY*>& entities) {
  const auto document = self.shared_from_this();
  const Hold hold(self);
  py::list all(entities.size());
  for (std::size_t i = 0; i < entities.size(); ++i) all[i] = entity_object(document, *entities[i]);
  return all;
}

/// Whether a region takes an entity: an insert by what its block shows.
bool takes(DXF& dxf, ACAD_ENTITY& entity, const CFRegion& region, int mode, float a, float b) {
  if (entity.GetType() != ACAD_TYPE_INSERT) return entity.HitTest(region, mode, a, b) != 0;
  auto& insert = static_cast<ACAD_INSERT&>(entity);
  ACAD_BLOCK* const block = dxf.GetBlock(&insert);
  return block && block->HitTest(region, mode, a, b, &insert) != 0;
}

constexpr float kPlanB = static_cast<float>(qv::kPi / 2);

py::object pick(Document& self, const py::object& region, bool crossing,
                const std::optional<std::pair<float, float>>& view) {
  const Floats numbers = [&] {
    const py::array array = py::module_::import("numpy").attr("asarray")(region);
    return array.ndim() == 1 ? Floats{} : points_of(region, "region", 2);
  }();
  const int mode = crossing ? 1 : 0;
  if (!numbers.data) {
    const std::optional<qv::DrawingRect> r = rect_of(region, "region");
    if (!r) throw py::type_error("region: a rectangle or points expected");
    const auto f = [](double v) { return static_cast<float>(v); };
    const CFRect box(f(r->left), f(r->bottom), f(r->right), f(r->top));
    if (!view) return objects(self, checked([&] { return self.prepared().Pick(box, mode); }));
    qv::PreparedDrawing prepared(self.use(), view->first, view->second);
    return objects(self, checked([&] { return prepared.Pick(box, mode); }));
  }
  if (numbers.rows < 3) throw py::value_error("region: a rectangle, or at least 3 points expected");
  std::vector<CFPoint> corners;
  for (py::ssize_t i = 0; i < numbers.rows; ++i) corners.emplace_back(numbers.row(i)[0], numbers.row(i)[1]);
  const CFRegion outline(corners.data(), static_cast<int>(corners.size()));
  std::vector<ACAD_ENTITY*> taken;
  checked([&] {
    for (ACAD_ENTITY* entity : self.entities())
      if (takes(self.use(), *entity, outline, mode, view ? view->first : 0, view ? view->second : kPlanB))
        taken.push_back(entity);
  });
  return objects(self, taken);
}

constexpr std::initializer_list<const char*> kCatches = {
    "end", "intersection", "middle", "center", "quadrant", "perpendicular", "tangent", "node", "insertion", "nearest"};

py::list catch_points(Document& self, std::pair<double, double> at, double reach,
                      const std::optional<std::vector<std::string>>& kinds,
                      const std::optional<std::pair<double, double>>& from) {
  qv::CatchQuery query;
  query.at = {at.first, at.second};
  query.reach = reach;
  if (kinds) {
    query.kinds = 0;
    for (const std::string& kind : *kinds) query.kinds |= qv::CatchBit(choice<qv::CatchKind>(kind, kCatches, "kinds"));
  }
  if (from) query.from = {from->first, from->second};
  const auto document = self.shared_from_this();
  py::list found;
  for (const qv::CaughtPoint& point : checked([&] { return self.prepared().Catch(query); }))
    found.append(value("CaughtPoint", point.at.x, point.at.y, kCatches.begin()[static_cast<int>(point.kind)],
                       point.entity ? entity_object(document, *point.entity) : py::none()));
  return found;
}

void merge(Document& self, Document& other, std::pair<float, float> offset, float angle) {
  DXF& to = self.change();
  DXF& from = other.use();
  Call call;
  bool merged;
  {
    const Busy busy({&self, &other});
    merged = to.InsertDxf(&from, offset.first, offset.second, angle) == 1;
  }
  call.finish(merged, "The drawing cannot be merged");
}

void remove(Document& self, const py::object& entities) {
  std::vector<ACAD_ENTITY*> records;
  if (py::isinstance<py::iterable>(entities))
    for (const py::handle entity : entities) records.push_back(&entity_of(entity, self));
  else
    records.push_back(&entity_of(entities, self));
  self.remove(records);
}

/// The entities as a sequence that Python indexes.
struct Entities {
  std::shared_ptr<Document> document;
};

py::object item(const Entities& self, py::ssize_t i) {
  const auto& entities = self.document->entities();
  const auto count = static_cast<py::ssize_t>(entities.size());
  if (i < 0) i += count;
  if (i < 0 || i >= count) throw py::index_error("the document has " + std::to_string(count) + " entities");
  return entity_object(self.document, *entities[static_cast<std::size_t>(i)]);
}

py::object slice(const Entities& self, const py::slice& which) {
  const auto& entities = self.document->entities();
  std::size_t start, stop, step, count;
  if (!which.compute(entities.size(), &start, &stop, &step, &count)) throw py::error_already_set();
  std::vector<ACAD_ENTITY*> taken;
  for (std::size_t i = 0; i < count; ++i, start += step) taken.push_back(entities[start]);
  return objects(*self.document, taken);
}

/// A block definition of a document.
struct Block {
  std::shared_ptr<Document> document;
  ACAD_BLOCK* block;
  const ACAD_BLOCK& use() const { return document->use(), *block; }
};

py::object block_entities(const Block& self) {
  const CPtrList& list = self.use().m_EntityList;
  std::vector<ACAD_ENTITY*> entities;
  for (POSITION at = list.GetHeadPosition(); at;) entities.push_back(static_cast<ACAD_ENTITY*>(list.GetNext(at)));
  return objects(*self.document, entities);
}

py::dict blocks(const std::shared_ptr<Document>& self) {
  const CPtrList& list = self->use().m_BlockList;
  py::dict all;
  for (POSITION at = list.GetHeadPosition(); at;) {
    auto* const block = static_cast<ACAD_BLOCK*>(list.GetNext(at));
    all[to_str(block->m_szName)] = Block{self, block};
  }
  return all;
}

py::str document_repr(Document& self) {
  if (!self.is_open()) return "<qvtools document, closed>";
  return "<qvtools document " + (self.name.empty() ? "" : self.name + " ") + "of " +
         std::to_string(self.entities().size()) + " entities>";
}

}  // namespace

void bind_document(py::module_& m) {
  py::class_<Entities>(m, "Entities", "The entities of a document in drawing order: len, index, slice, iterate.")
      .def("__len__", [](const Entities& self) { return self.document->entities().size(); })
      .def("__getitem__", &item)
      .def("__getitem__", &slice);
  py::class_<Block>(m, "Block", "A block definition of a document.")
      .def_property_readonly(
          "name", [](const Block& self) { return to_str(self.use().m_szName); }, "Its name.")
      .def_property_readonly(
          "base",
          [](const Block& self) {
            return py::make_tuple(self.use().m_Base.x, self.use().m_Base.y, self.use().m_Base.z);
          },
          "The point that an insert's position takes.")
      .def_property_readonly("entities", &block_entities, "A list of its entities.");

  const auto view = py::arg("view") = py::none();
  DocumentClass document(m, "Document", R"(A drawing in memory: tables, blocks and entities.

Document() is an empty one; read() and read_flat() make one of a file. Two threads may work on two documents at once;
a document that another thread reads, plots or composes at the moment raises an Error.)");
  document.def(py::init(&new_document))
      .def("__repr__", &document_repr)
      .def("save", &save, py::arg("path"), R"(Writes a DXF file (DXF::Write_MemDxf_To_File).

An old file is replaced only by a complete new one. A drawing whose reading the disk cut short is not saved over its
file.)")
      .def("close", &Document::close, "Empties the document; it and its entities raise an Error from then on.")
      .def("__enter__", [](std::shared_ptr<Document> self) { return self; })
      .def("__exit__", [](Document& self, const py::args&) { self.close(); })
      .def_property_readonly(
          "closed", [](const Document& self) { return !self.is_open(); }, "Whether it was closed.")
      .def_readonly("name", &Document::name, "The name of the file that was read; empty for a new document.")
      .def_property_readonly(
          "complete", [](Document& self) { return self.use().IsComplete(); },
          "Whether all of the file was read (DXF::IsComplete).")
      .def_property_readonly("report", &report_of, "What read() made of the file (ImportReport); else None.")
      .def_property(
          "code_page_header", [](Document& self) { return self.use().m_bCodePageHeader != 0; },
          [](Document& self, bool on) { self.change().m_bCodePageHeader = on ? 1 : 0; },
          "Whether saved files name the code page of their texts, for other programs (m_bCodePageHeader).")
      .def_property_readonly("layers", &layers, "A list of its layers.")
      .def_property_readonly("ltypes", &ltypes, "A list of its line types.")
      .def_property_readonly("styles", &styles, "A list of its text styles.")
      .def_property_readonly("blocks", &blocks, "A dict of its blocks by name.")
      .def_property_readonly(
          "entities", [](const std::shared_ptr<Document>& self) { return self->use(), Entities{self}; },
          "Its entities in drawing order, as a sequence.")
      .def("add_layer", &add_layer, py::arg("name"), py::arg("color") = 7, py::arg("ltype") = "CONTINUOUS",
           "Adds a layer; its line type must be there (DXF::Add_Layer).")
      .def(
          "add_ltype", &add_ltype, py::arg("name"), py::arg("elements"), py::arg("description") = "",
          "Adds a line type: up to 30 dashes (above 0), gaps (below 0) and dots (0) in drawing units (DXF::Add_LType).")
      .def("add_style", &add_style, py::arg("name"), py::arg("font") = "txt", py::arg("big_font") = "hztxt",
           "Adds a text style (DXF::Add_STyle).")
      .def("remove", &remove, py::arg("entities"),
           "Takes an entity, or several, out of the drawing. Objects of them stay usable.")
      .def("merge", &merge, py::arg("other"), py::arg("offset") = std::pair(0.0F, 0.0F), py::arg("angle") = 0,
           "Adds another drawing, turned by degrees and then shifted; present table entries win (DXF::InsertDxf).")
      .def("extent", &extent, view,
           R"(The rectangle of all entities in plan, or seen from two view angles in radians; None when there are none
(DXF::GetFRect, GetFRect3D).)")
      .def(
          "pick", &pick, py::arg("region"), py::arg("crossing") = false, view,
          R"(The entities in a region, in drawing order: a rectangle (left, bottom, right, top), or an outline of points.

Those wholly inside, with crossing those that cross its border as well (qv::PreparedDrawing::Pick, HitTest). Picks by
rectangles are prepared once for many, until the drawing changes. view: as in extent.)")
      .def("catch", &catch_points, py::arg("at"), py::arg("reach"), py::arg("kinds") = py::none(),
           py::arg("origin") = py::none(),
           R"(The points that a pointer at a place would catch within its reach, the nearest first, in plan
(qv::PreparedDrawing::Catch).

kinds: some of "end", "intersection", "middle", "center", "quadrant", "perpendicular", "tangent", "node", "insertion",
"nearest"; perpendiculars and tangents come from the point origin.)");
  bind_arrays(document);
  bind_pictures(m, document);

  ComposerClass composer(m, "Composer",
                         R"(A document that drawings are composed in: Composer(scale) for a sheet of 1:scale
(CBase_SGT).

Lengths are model units of the drawing, angles degrees, counter-clockwise, unless a call says otherwise; symbols have
their size on the sheet. A composer has a current color, layer, style ("HZ" at first, which has Chinese letters) and
ltype, and a placement that every coordinate goes through: shift_x, shift_y, rotation, length_factor.)");
  composer.def(py::init(&new_composer), py::arg("scale") = 100);
  bind_primitives(composer);
  bind_symbols(composer);
  bind_sheets(m, composer);

  m.def("read", &import, py::arg("path"), py::arg("layout") = "", py::arg("encoding") = "", py::arg("unit") = "",
        py::arg("guess_unit") = false, py::arg("tolerance") = 1.0 / 2000, py::arg("explode") = false,
        py::arg("shape_folders") = std::vector<std::string>(), py::arg("progress") = py::none(),
        R"(Reads a DXF drawing of any release and program into a Document (qv::Import).

Document.report tells what became of everything. layout: the sheet to read; model space where none is named.
encoding: the code page where the file names none or the wrong one. unit: "mm", "cm", "m", "km", "in", "ft", "mi" to
convert to. tolerance: how far polylines lie off their curves, as a share of the curve's size. explode: inserts become
entities. shape_folders: where the drawing's shape files lie. progress: a function of the share that is done; when it
answers False, the reading is given up.)");
  m.def("read_flat", &read_flat, py::arg("path"), py::arg("progress") = py::none(),
        "Reads a DXF file of the flat form exactly as it stands (DXF::Read_FileDxf_To_Mem).");
}

}  // namespace qvpy
