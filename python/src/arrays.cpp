#include <charconv>
#include <cstring>
#include <unordered_map>

#include "fields.h"

namespace qvpy {

namespace {

// Columns.

/// One object for each name, however many entities have it.
class Names {
 public:
  PyObject* of(const char* gbk) {
    // Neighbours mostly have one layer.
    if (last_ && std::strcmp(gbk, lastName_.c_str()) == 0) return last_;
    py::object& found = names_[gbk];
    if (!found) found = to_str(gbk);
    lastName_ = gbk;
    return last_ = found.ptr();
  }

 private:
  std::unordered_map<std::string, py::object> names_;
  std::string lastName_;
  PyObject* last_ = nullptr;
};

/// An array that is filled with one field, row by row.
class Column {
 public:
  Column(const Field& field, py::ssize_t rows) : field_(field) {
    switch (field.type) {
      case Field::Type::Real:
        array_ = py::array_t<float>(rows);
        break;
      case Field::Type::Integer:
        array_ = py::array_t<int>(rows);
        break;
      case Field::Type::Point:
        array_ = py::array_t<float>({rows, py::ssize_t{3}});
        break;
      case Field::Type::Corners:
        array_ = py::array_t<float>({rows, py::ssize_t{4}, py::ssize_t{3}});
        break;
      case Field::Type::Name:
        array_ = py::array(py::dtype("O"), std::vector<py::ssize_t>{rows});
        break;
    }
    to_ = static_cast<char*>(array_.mutable_data());
    step_ = field.type == Field::Type::Name ? sizeof(PyObject*) : field.size;
  }
  void put(ACAD_ENTITY& entity) {
    const void* const at = field_.at(entity);
    if (field_.type != Field::Type::Name) {
      std::memcpy(to_, at, step_);
    } else {
      const auto* const text = static_cast<const char*>(at);
      PyObject* const object =
          field_.size > qv::kNameSize ? to_str(text).release().ptr() : py::handle(names_.of(text)).inc_ref().ptr();
      std::memcpy(to_, &object, sizeof object);
    }
    to_ += step_;
  }
  const char* name() const { return field_.name; }
  const py::array& array() const { return array_; }

 private:
  const Field& field_;
  py::array array_;
  char* to_;
  std::size_t step_;
  Names names_;
};

/// The vertices of all polylines behind one another; those of polyline i are from `offsets[i]` to `offsets[i + 1]`.
void add_vertices(py::dict& columns, const std::vector<ACAD_ENTITY*>& polylines) {
  const auto vertices = [](ACAD_ENTITY * entity) -> auto& {
    return static_cast<ACAD_POLYLINE*>(entity)->m_Vertices;
  };
  py::array_t<std::int64_t> offsets(static_cast<py::ssize_t>(polylines.size()) + 1);
  std::int64_t* offset = offsets.mutable_data();
  *offset = 0;
  for (ACAD_ENTITY* polyline : polylines) offset[1] = offset[0] + vertices(polyline).GetSize(), ++offset;
  const py::ssize_t count = *offset;
  py::array_t<float> points({count, py::ssize_t{3}}), bulges(count), starts(count), ends(count);
  float *point = points.mutable_data(), *bulge = bulges.mutable_data(), *start = starts.mutable_data(),
        *end = ends.mutable_data();
  for (ACAD_ENTITY* polyline : polylines) {
    for (const ACAD_VERTEX& vertex : vertices(polyline)) {
      point = std::copy_n(&vertex.m_Point.x, 3, point);
      *bulge++ = vertex.m_fBulge;
      *start++ = vertex.m_fStartWidth;
      *end++ = vertex.m_fEndWidth;
    }
  }
  columns["offsets"] = offsets;
  columns["points"] = points;
  columns["bulges"] = bulges;
  columns["start_widths"] = starts;
  columns["end_widths"] = ends;
}

py::dict columns(Document& self, const std::string& keyword) {
  const int type = kind_named(keyword);
  const auto& entities = self.entities();
  const Hold hold(self);
  std::vector<ACAD_ENTITY*> records;
  std::vector<std::int64_t> places;
  std::int64_t place = 0;
  for (ACAD_ENTITY* entity : entities) {
    if (entity->GetType() == type) records.push_back(entity), places.push_back(place);
    ++place;
  }
  const auto rows = static_cast<py::ssize_t>(records.size());
  std::vector<Column> filled;
  for (const Field& field : kind_of(type).fields) filled.emplace_back(field, rows);
  for (ACAD_ENTITY* record : records)
    for (Column& column : filled) column.put(*record);
  py::dict result;
  result["index"] = py::array_t<std::int64_t>(rows, places.data());
  for (const Column& column : filled) result[column.name()] = column.array();
  if (type == ACAD_TYPE_POLYLINE) add_vertices(result, records);
  return result;
}

// Composing from arrays.

/// Texts of rows: one for all, or a sequence of them.
class Texts {
 public:
  Texts(const py::object& value, py::ssize_t rows, const char* name) {
    if (py::isinstance<py::str>(value)) {
      texts_.push_back(value.cast<Text>());
      return;
    }
    const py::object fast = py::reinterpret_steal<py::object>(PySequence_Fast(value.ptr(), "texts expected"));
    if (!fast) throw py::error_already_set();
    if (PySequence_Fast_GET_SIZE(fast.ptr()) != rows)
      throw py::value_error(std::string(name) + ": " + std::to_string(rows) + " texts expected, or one");
    std::unordered_map<std::string, std::size_t> known;
    places_.reserve(static_cast<std::size_t>(rows));
    for (py::ssize_t i = 0; i < rows; ++i) {
      const py::handle item = PySequence_Fast_GET_ITEM(fast.ptr(), i);
      if (!py::isinstance<py::str>(item)) throw py::type_error(std::string(name) + ": texts expected");
      Text text = item.cast<Text>();
      const auto [found, added] = known.try_emplace(text.gbk, texts_.size());
      if (added) texts_.push_back(std::move(text));
      places_.push_back(found->second);
    }
  }
  const char* operator[](py::ssize_t i) const {
    return texts_[places_.empty() ? 0 : places_[static_cast<std::size_t>(i)]];
  }

 private:
  std::vector<Text> texts_;
  std::vector<std::size_t> places_;
};

/// Layer, colour and line type of rows.
class Looks {
 public:
  Looks(py::ssize_t rows, const py::object& layer, const py::object& color, const py::object& ltype)
      : layers_(layer, rows, "layer"),
        ltypes_(ltype, rows, "ltype"),
        colors_(numbers_of(color, "color"), rows, "color") {}
  const char* layer(py::ssize_t i) const { return layers_[i]; }
  const char* ltype(py::ssize_t i) const { return ltypes_[i]; }
  /// The text stays until the next call.
  const char* color(py::ssize_t i) {
    const int color = qv::TruncInt(colors_[i]);
    if (color == qv::kByLayer) return "BYLAYER";
    *std::to_chars(color_, color_ + sizeof color_ - 1, color).ptr = '\0';
    return color_;
  }

 private:
  Texts layers_;
  Texts ltypes_;
  Spread colors_;
  char color_[16] = "";
};

/// Calls `write` for each row, until one fails.
template <class Write>
void write_rows(Document& self, py::ssize_t rows, const Write& write) {
  DXF& dxf = self.change();
  Call call;
  bool good = true;
  {
    const Busy busy({&self});
    for (py::ssize_t i = 0; i < rows && good; ++i) good = write(dxf, i) == 1;
  }
  call.finish(good, "An entity cannot be written");
}

void add_points(Document& self, const py::object& positions, const py::object& layer) {
  const Floats p = points_of(positions, "position");
  const Texts layers(layer, p.rows, "layer");
  write_rows(self, p.rows,
             [&](DXF& dxf, py::ssize_t i) { return dxf.Write_Point(p.row(i)[0], p.row(i)[1], p.z(i), layers[i]); });
}

void add_lines(Document& self, const py::object& start, const py::object& end, const py::object& layer,
               const py::object& color, const py::object& ltype) {
  const Floats a = points_of(start, "start");
  const Spread b(points_of(end, "end"), a.rows, "end");
  Looks looks(a.rows, layer, color, ltype);
  write_rows(self, a.rows, [&](DXF& dxf, py::ssize_t i) {
    const float *p = a.row(i), *q = b.row(i);
    return dxf.Write_Line(p[0], p[1], a.z(i), q[0], q[1], b.z(i), looks.layer(i), looks.color(i), looks.ltype(i));
  });
}

void add_texts(Document& self, const py::object& position, const py::object& texts, const py::object& height,
               const py::object& rotation, const py::object& style, const py::object& layer, const py::object& color,
               const py::object& ltype) {
  const Floats p = points_of(position, "position");
  const Texts contents(texts, p.rows, "text"), styles(style, p.rows, "style");
  const Spread heights(numbers_of(height, "height"), p.rows, "height");
  const Spread rotations(numbers_of(rotation, "rotation"), p.rows, "rotation");
  Looks looks(p.rows, layer, color, ltype);
  write_rows(self, p.rows, [&](DXF& dxf, py::ssize_t i) {
    return dxf.Write_Text(p.row(i)[0], p.row(i)[1], p.z(i), heights[i], rotations[i], contents[i], styles[i],
                          looks.layer(i), looks.color(i), looks.ltype(i));
  });
}

void add_circles(Document& self, const py::object& center, const py::object& radius, const py::object& layer,
                 const py::object& color, const py::object& ltype) {
  const Floats c = points_of(center, "center");
  const Spread radii(numbers_of(radius, "radius"), c.rows, "radius");
  Looks looks(c.rows, layer, color, ltype);
  write_rows(self, c.rows, [&](DXF& dxf, py::ssize_t i) {
    return dxf.Write_Circle(c.row(i)[0], c.row(i)[1], c.z(i), radii[i], looks.layer(i), looks.color(i), looks.ltype(i));
  });
}

void add_arcs(Document& self, const py::object& center, const py::object& radius, const py::object& startAngle,
              const py::object& endAngle, const py::object& layer, const py::object& color, const py::object& ltype) {
  const Floats c = points_of(center, "center");
  const Spread radii(numbers_of(radius, "radius"), c.rows, "radius");
  const Spread starts(numbers_of(startAngle, "start_angle"), c.rows, "start_angle");
  const Spread ends(numbers_of(endAngle, "end_angle"), c.rows, "end_angle");
  Looks looks(c.rows, layer, color, ltype);
  write_rows(self, c.rows, [&](DXF& dxf, py::ssize_t i) {
    return dxf.Write_Arc(c.row(i)[0], c.row(i)[1], c.z(i), radii[i], starts[i], ends[i], looks.layer(i), looks.color(i),
                         looks.ltype(i));
  });
}

void add_polyline(Document& self, const py::object& points, const py::object& bulges, const py::object& width,
                  const py::object& endWidth, bool closed, const Text& layer, int color, const Text& ltype) {
  const Floats p = points_of(points, "points");
  if (p.rows < 2) throw py::value_error("points: at least 2 expected");
  std::vector<float> x, y, z;
  for (py::ssize_t i = 0; i < p.rows; ++i) x.push_back(p.row(i)[0]), y.push_back(p.row(i)[1]), z.push_back(p.z(i));
  const std::vector<float> bulge = spread(bulges, p.rows, "bulges"), start = spread(width, p.rows, "width");
  const std::vector<float> end = endWidth.is_none() ? start : spread(endWidth, p.rows, "end_width");
  const std::string number = color == qv::kByLayer ? "BYLAYER" : std::to_string(color);
  write_rows(self, 1, [&](DXF& dxf, py::ssize_t) {
    return dxf.Write_Pline(static_cast<int>(p.rows), x.data(), y.data(), z.data(), bulge.data(), closed ? 1 : 0,
                           start.data(), end.data(), layer, number.c_str(), ltype);
  });
}

/// Quadrilaterals: an array of n by 4 points, or one of 4.
template <int (DXF::*kWrite)(float, float, float, float, float, float, float, float, float, float, float, float,
                             const char*, const char*, const char*)>
void add_corners(Document& self, const py::object& corners, const py::object& layer, const py::object& color,
                 const py::object& ltype) {
  const py::module_ numpy = py::module_::import("numpy");
  const py::array array = numpy.attr("asarray")(corners);
  if ((array.ndim() != 2 && array.ndim() != 3) || array.shape(array.ndim() - 2) != 4)
    throw py::value_error("corners: an array of n by 4 points expected");
  const Floats p = points_of(array.attr("reshape")(-1, array.shape(array.ndim() - 1)), "corners");
  Looks looks(p.rows / 4, layer, color, ltype);
  write_rows(self, p.rows / 4, [&](DXF& dxf, py::ssize_t i) {
    const py::ssize_t k = 4 * i;
    const float *a = p.row(k), *b = p.row(k + 1), *c = p.row(k + 2), *d = p.row(k + 3);
    return (dxf.*kWrite)(a[0], a[1], p.z(k), b[0], b[1], p.z(k + 1), c[0], c[1], p.z(k + 2), d[0], d[1], p.z(k + 3),
                         looks.layer(i), looks.color(i), looks.ltype(i));
  });
}

}  // namespace

void bind_arrays(DocumentClass& document) {
  const auto layer = py::arg("layer") = "0";
  const auto color = py::arg("color") = qv::kByLayer;
  const auto ltype = py::arg("ltype") = "BYLAYER";
  document
      .def("columns", &columns, py::arg("kind"),
           R"(The entities of one kind ("LINE", "TEXT", ...) as a dict of arrays, one row each, in drawing order.

The keys are the attributes of the kind's class: numbers as float32 or int32, points as n by 3 (corners n by 4 by 3),
names and texts as arrays of str. "index" says which of Document.entities each row is. Of POLYLINE the vertices of row
i are rows offsets[i] to offsets[i + 1] of "points", "bulges", "start_widths" and "end_widths". The arrays are copies:
the document may change or go.)")
      .def("add_points", &add_points, py::arg("position"), layer, "Adds points (DXF::Write_Point).")
      .def("add_lines", &add_lines, py::arg("start"), py::arg("end"), layer, color, ltype,
           R"(Adds lines (DXF::Write_Line), one or a million.

start and end are single points of 2 or 3 numbers, or arrays of n of them; layer, color and ltype are one value, or a
sequence of n. Layers and line types must be in the document. When a row fails, an Error is raised and the rows before
it stay. The other add_... calls take their arguments in the same way.)")
      .def("add_texts", &add_texts, py::arg("position"), py::arg("text"), py::arg("height"), py::arg("rotation") = 0,
           py::arg("style") = "STANDARD", layer, color, ltype,
           "Adds texts (DXF::Write_Text); a record holds 99 bytes of GBK, what is longer is cut. Rotation in degrees.")
      .def("add_circles", &add_circles, py::arg("center"), py::arg("radius"), layer, color, ltype,
           "Adds circles (DXF::Write_Circle).")
      .def("add_arcs", &add_arcs, py::arg("center"), py::arg("radius"), py::arg("start_angle"), py::arg("end_angle"),
           layer, color, ltype, "Adds arcs (DXF::Write_Arc), counter-clockwise; angles in degrees.")
      .def("add_polyline", &add_polyline, py::arg("points"), py::arg("bulges") = 0, py::arg("width") = 0,
           py::arg("end_width") = py::none(), py::arg("closed") = false, layer, color, ltype,
           "Adds one polyline (DXF::Write_Pline); bulges and widths are one number or one for each vertex.")
      .def("add_solids", &add_corners<&DXF::Write_Solid>, py::arg("corners"), layer, color, ltype,
           "Adds filled quadrilaterals (DXF::Write_Solid): n by 4 corners, the third opposite the second.")
      .def("add_faces", &add_corners<&DXF::Write_3DFace>, py::arg("corners"), layer, color, ltype,
           "Adds faces (DXF::Write_3DFace): n by 4 corners.");
}

}  // namespace qvpy
