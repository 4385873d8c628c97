// Databases, materials, bars, fields.

#include <algorithm>
#include <cmath>

#include "pictures.h"

namespace qvpy {

namespace {

using py::arg;

py::dict read_database(const Path& path) {
  must_be_readable(path);
  CDataBaseFile file;
  Call call;
  call.finish(file.Open_File(path, CDataBaseFile::IO_READ) == 1,
              shown(path) + ": is no database with an index at its end");
  py::dict segments;
  const auto value = std::make_unique<char[]>(CDataBaseFile::kValueSize);
  for (int i = 0; i < file.Get_SegmentCount(); ++i) {
    const CString name = file.Get_SegmentName(i);
    const bool read = file.Read_Named_Segment(name) == 1;
    call.finish(read, shown(path) + ": a segment cannot be read");
    py::dict items;
    for (int k = 0; k < file.Get_ItemCount(); ++k) {
      const CString key = file.Get_ItemKey(k);
      file.Get_Item(key, value.get());
      std::string text = value.get();
      if (!text.empty() && text.back() == '\n') text.pop_back();
      items[to_str(key)] = to_str(text.c_str());
    }
    segments[to_str(name)] = items;
  }
  return segments;
}

/// A text as the lines of a database keep it; a ValueError for one that they do not.
std::string kept(const py::handle& object, const char* what, std::size_t most, bool isKey) {
  if (!py::isinstance<py::str>(object)) throw py::type_error(std::string(what) + ": a text expected");
  std::string text = object.cast<Text>().gbk;
  const auto refuse = [&](const std::string& why) {
    throw py::value_error(std::string(what) + " " + std::string(py::repr(object)) + ": " + why);
  };
  if (text.find_first_of("\r\n") != text.npos) refuse("a line end cannot be kept");
  if (isKey && (text.empty() || text.starts_with("##") || text.find(" = ") != text.npos || text.ends_with(" =")))
    refuse("it is empty, begins with ## or has an equals sign between blanks");
  if (!isKey)
    for (std::size_t at = 0; (at = text.find('%', at)) != text.npos; at += 2) text.insert(at, 1, '%');
  if (text.size() > most) refuse("more than " + std::to_string(most) + " bytes cannot be kept");
  return text;
}

void write_database(const Path& path, const py::dict& segments, const Text& version) {
  constexpr std::size_t kLine = 2046;  // without its line end
  struct Segment {
    std::string name;
    std::vector<std::pair<std::string, std::string>> items;
  };
  // All is looked at before anything is written.
  std::vector<Segment> all;
  for (const auto& [name, items] : segments) {
    if (!py::isinstance<py::dict>(items)) throw py::type_error("segments: a dict of dicts of texts expected");
    Segment& segment = all.emplace_back(Segment{kept(name, "segment", 299, true), {}});
    for (const auto& [key, value] : items.cast<py::dict>()) {
      std::string keyText = kept(key, "key", 999, true);
      const std::size_t room = kLine - 3 - keyText.size();
      segment.items.emplace_back(std::move(keyText), kept(value, "value", room, false));
    }
  }
  CDataBaseFile file;
  Call call;
  const std::string failure = shown(path) + ": the file cannot be written";
  call.finish(file.Open_File(path, CDataBaseFile::IO_WRITE) == 1, failure);
  bool good = true;
  if (!version.gbk.empty()) file.Write_FileVersion(version);
  for (const Segment& segment : all) {
    file.Begin_Named_Segment(segment.name.c_str());
    for (const auto& [key, value] : segment.items) good &= file.Write_Item(key.c_str(), "%s", value.c_str()) == 1;
    file.End_Segment();
  }
  good &= file.Close_File() == 1;
  call.finish(good, failure);
}

py::object concrete(int code) {
  Con_Prop c{};
  if (!checked([&] { return get_rc_property(code, &c); }))
    throw py::key_error("there is no concrete " + std::to_string(code));
  return value("Concrete", _HNT(code).str(), c.fc, c.fcm, c.ft, c.fck, c.fcmk, c.ftk, c.Ec, c.Gc, c.nu, c.alpha);
}

py::object steel(int code) {
  Rein_Prop r{};
  if (!checked([&] { return get_rein_property(code, &r); }))
    throw py::key_error("there is no steel " + std::to_string(code));
  return value("Steel", _GJ(code).str(), r.fy, r.fy2, r.fyk, r.Es);
}

// Fields.

/// A field with the grid that its values are found by.
struct Mesh {
  CChang field;
  std::unique_ptr<qv::FieldLocator> locator;

  const qv::FieldLocator& located() {
    if (!locator) locator = checked([&] { return std::make_unique<qv::FieldLocator>(field); });
    return *locator;
  }
  void choose(int index) {
    if (index < 0 || index >= CChangNode::kValues) throw py::index_error("value_index: 0 to 4 expected");
    field.m_nValueIndex = index;
  }
};

py::array array_of(const py::object& value) {
  return py::module_::import("numpy").attr("asarray")(value);
}

/// The numbers of three nodes each, counter-clockwise.
void take_triangles(CChang& field, const py::object& triangles) {
  const py::array array = array_of(triangles);
  const char kind = array.dtype().kind();
  if (array.size() > 0 && kind != 'i' && kind != 'u') throw py::type_error("triangles: whole numbers expected");
  if (array.size() > 0 && (array.ndim() != 2 || array.shape(1) != 3))
    throw py::value_error("triangles: an array of n by 3 expected");
  const py::array_t<std::int64_t, py::array::c_style | py::array::forcecast> numbers(array);
  const std::int64_t* number = numbers.data();
  const int count = field.m_Nodes.GetSize();
  field.m_Tris.SetSize(static_cast<int>(numbers.size() / 3));
  for (CChangTri& triangle : field.m_Tris) {
    for (int& node : triangle.node) {
      if (*number < 0 || *number >= count)
        throw py::index_error("triangles: there is no node " + std::to_string(*number));
      node = static_cast<int>(*number++) + 1;
    }
    const auto at = [&](int i) -> const CChangNode& { return field.m_Nodes[triangle.node[i] - 1]; };
    const double turn = (static_cast<double>(at(1).x) - at(0).x) * (static_cast<double>(at(2).y) - at(0).y) -
                        (static_cast<double>(at(1).y) - at(0).y) * (static_cast<double>(at(2).x) - at(0).x);
    if (turn < 0) std::swap(triangle.node[1], triangle.node[2]);
  }
}

std::unique_ptr<Mesh> new_field(const py::object& points, const py::object& values, const py::object& triangles) {
  const Floats p = points_of(points, "points", 2);
  const py::array given = array_of(values);
  const py::ssize_t columns = given.ndim() == 2 ? given.shape(1) : 1;
  if (given.ndim() < 1 || given.ndim() > 2 || given.shape(0) != p.rows || columns < 1 || columns > CChangNode::kValues)
    throw py::value_error("values: an array of as many numbers as there are points expected, or n by 1 to 5");
  const Floats v = numbers_of(given.attr("reshape")(-1), "values");
  auto made = std::make_unique<Mesh>();
  auto& nodes = made->field.m_Nodes;
  nodes.SetSize(static_cast<int>(p.rows));
  for (int i = 0; i < nodes.GetSize(); ++i) {
    nodes[i].x = p.row(i)[0];
    nodes[i].y = p.row(i)[1];
    std::copy_n(v.data + i * columns, columns, nodes[i].value);
  }
  take_triangles(made->field, triangles);
  return made;
}

std::unique_ptr<Mesh> read_field(const Path& path) {
  must_be_readable(path);
  auto made = std::make_unique<Mesh>();
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(qv::open_text(path, "rt"), &std::fclose);
  Call call;
  call.finish(file && made->field.LoadData(file.get()) == 1 && made->field.m_Nodes.GetSize() > 0,
              shown(path) + ": is no field: it has no nodes");
  return made;
}

void save_field(const Mesh& self, const Path& path) {
  qv::SavedFile file(path, qv::SavedFile::Lines::CrLf);
  Call call;
  call.finish(file.is_open() && self.field.SaveData(file.stream()) == 1 && file.commit(),
              shown(path) + ": the file cannot be written");
}

template <class T, class Row>
py::array_t<T> rows_of(int rows, int columns, const Row& row) {
  py::array_t<T> array({rows, columns});
  T* to = array.mutable_data();
  for (int i = 0; i < rows; ++i, to += columns) row(i, to);
  return array;
}

Picture contour(Mesh& self, const py::object& size) {
  constexpr int kLegend = 150, kMargin = 20;  // pixels; the legend lies on the left
  constexpr double kMillimetres = 1000;
  const CSize pixels = size_of(size);
  double left = HUGE_VAL, bottom = HUGE_VAL, right = -HUGE_VAL, top = -HUGE_VAL;
  for (const CChangNode& node : self.field.m_Nodes) {
    left = std::min<double>(left, node.x), right = std::max<double>(right, node.x);
    bottom = std::min<double>(bottom, node.y), top = std::max<double>(top, node.y);
  }
  if (!(right > left && top > bottom && std::isfinite(right - left) && std::isfinite(top - bottom)))
    throw Error("The field has no extent");
  const double wide = std::max(pixels.cx - kLegend - kMargin, 1), high = std::max(pixels.cy - 2 * kMargin, 1);
  const double scale = std::min(wide / (right - left), high / (top - bottom)) / kMillimetres;
  const double spare = (wide - (right - left) * kMillimetres * scale) / 2;
  const double spareHigh = (high - (top - bottom) * kMillimetres * scale) / 2;
  CFCoor coor(CFPoint(static_cast<float>(left * kMillimetres - (kLegend + spare) / scale),
                      static_cast<float>(top * kMillimetres + (kMargin + spareHigh) / scale)),
              static_cast<float>(scale), 1);
  Picture made{std::make_shared<qv::BitmapContext>(pixels.cx, pixels.cy, 0)};
  CRect window(0, 0, pixels.cx, pixels.cy);
  checked([&] { self.field.Draw_CaiSeTu(made.bitmap.get(), &window, &coor); });
  return made;
}

void bind_field(py::module_& m) {
  const auto points = [](Mesh& self) {
    return rows_of<float>(self.field.m_Nodes.GetSize(), 2,
                          [&](int i, float* to) { to[0] = self.field.m_Nodes[i].x, to[1] = self.field.m_Nodes[i].y; });
  };
  const auto values = [](Mesh& self) {
    return rows_of<float>(self.field.m_Nodes.GetSize(), CChangNode::kValues,
                          [&](int i, float* to) { std::copy_n(self.field.m_Nodes[i].value, CChangNode::kValues, to); });
  };
  const auto triangles = [](Mesh& self) {
    return rows_of<int>(self.field.m_Tris.GetSize(), 3, [&](int i, int* to) {
      for (const int node : self.field.m_Tris[i].node) *to++ = node - 1;
    });
  };
  py::class_<Mesh>(m, "Field",
                   R"(A scalar field over a mesh of triangles, with up to five values at each node (CChang).

Field(points, values, triangles): points n by 2, in metres; values n, or n by 1 to 5; triangles m by 3 indices of
points, from 0 (files count from 1); clockwise ones are turned round.)")
      .def(py::init(&new_field), arg("points"), arg("values"), arg("triangles"))
      .def_static("read", &read_field, arg("path"), "Reads a field file (CChang::LoadData).")
      .def("save", &save_field, arg("path"), "Writes a field file (CChang::SaveData).")
      .def_property_readonly("points", points, "The nodes: n by 2, a copy.")
      .def_property_readonly("values", values, "Their values: n by 5, a copy.")
      .def_property_readonly("triangles", triangles, "Indices of points: m by 3, a copy.")
      .def_property(
          "value_index", [](const Mesh& self) { return self.field.m_nValueIndex; }, &Mesh::choose,
          "Which of the five values counts, 0 to 4 (m_nValueIndex).")
      .def(
          "value",
          [](Mesh& self, const py::array_t<float>& x, const py::array_t<float>& y) {
            const qv::FieldLocator& locator = self.located();
            return py::vectorize([&](float px, float py) { return locator.Value(px, py); })(x, y);
          },
          arg("x"), arg("y"), "The value at a point, or at each of arrays of them (qv::FieldLocator::Value).")
      .def(
          "contains",
          [](Mesh& self, const py::array_t<float>& x, const py::array_t<float>& y) {
            const qv::FieldLocator& locator = self.located();
            return py::vectorize([&](float px, float py) { return locator.Contains(px, py) != 0; })(x, y);
          },
          arg("x"), arg("y"),
          "Whether the mesh covers a point, or each of arrays of them (qv::FieldLocator::Contains).")
      .def("picture", &contour, arg("size") = std::pair(900, 600),
           "A colour contour with its legend, on black (CChang::Draw_CaiSeTu).");
}

}  // namespace

void bind_data(py::module_& m) {
  m.def("read_database", &read_database, arg("path"),
        "Reads a segmented text database: a dict of its segments, each a dict of texts (CDataBaseFile).");
  m.def("write_database", &write_database, arg("path"), arg("segments"), arg("version") = "",
        R"(Writes a dict of dicts of texts as a segmented text database (CDataBaseFile).

An old file is replaced only by a complete new one. A key and its value take at most 2,043 bytes of GBK, percent signs
counted twice, and have no line ends. version: a first line for the file.)");
  m.def("concrete", &concrete, arg("code"), "The properties of a grade of concrete, 20 for C20 (get_rc_property).");
  m.def("steel", &steel, arg("code"), "The properties of a grade of reinforcement, from 1 (get_rein_property).");
  m.def("bar_area", &qv::BarArea, arg("diameter"), arg("count") = 1,
        "The nominal area of bars in mm2; 0 for a diameter that is none (qv::BarArea).");
  m.def("bar_mass", &qv::BarMass, arg("diameter"), arg("length"), "The mass of a length in m in kg (qv::BarMass).");
  bind_field(m);
}

}  // namespace qvpy
