#include <algorithm>
#include <cstring>
#include <unordered_map>

#include "fields.h"

namespace qvpy {

namespace {

template <class Member>
struct MemberOf;
template <class R, class M>
struct MemberOf<M R::*> {
  using Record = R;
  using Type = M;
};

template <class Member>
constexpr Field::Type type_of() {
  if constexpr (std::is_same_v<Member, float>) return Field::Type::Real;
  if constexpr (std::is_same_v<Member, int>) return Field::Type::Integer;
  if constexpr (std::is_same_v<Member, qv::Point3>) return Field::Type::Point;
  if constexpr (std::is_same_v<Member, qv::Point3[4]>) return Field::Type::Corners;
  return Field::Type::Name;
}

template <auto kMember>
constexpr Field field(const char* name, const char* doc) {
  using Member = MemberOf<decltype(kMember)>;
  return {name, doc, type_of<typename Member::Type>(), sizeof(typename Member::Type), [](ACAD_ENTITY& entity) {
            return static_cast<void*>(&(static_cast<typename Member::Record&>(entity).*kMember));
          }};
}

constexpr const char* kLayerDoc = "Name of the layer.";
constexpr const char* kLTypeDoc = "Name of the line type, or BYLAYER.";
constexpr const char* kColorDoc = "Colour number, or BY_LAYER (-1).";

#define QV_LOOK(Record)                                                                         \
  field<&Record::m_szLayer>("layer", kLayerDoc), field<&Record::m_szLType>("ltype", kLTypeDoc), \
      field<&Record::m_nColor>("color", kColorDoc)

constexpr Field kPoint[] = {field<&ACAD_POINT::m_szLayer>("layer", kLayerDoc),
                            field<&ACAD_POINT::m_Point>("position", "Where it is.")};
constexpr Field kLine[] = {QV_LOOK(ACAD_LINE), field<&ACAD_LINE::m_Start>("start", "Its first end."),
                           field<&ACAD_LINE::m_End>("end", "Its other end.")};
constexpr Field kText[] = {
    QV_LOOK(ACAD_TEXT),
    field<&ACAD_TEXT::m_Insert>("position", "The left end of its base line."),
    field<&ACAD_TEXT::m_fHeight>("height", "Height of capitals."),
    field<&ACAD_TEXT::m_szText>("text", "What it says."),
    field<&ACAD_TEXT::m_szStyle>("style", "Name of the text style."),
    field<&ACAD_TEXT::m_fRotation>("rotation", "Degrees, counter-clockwise."),
    field<&ACAD_TEXT::m_fWidthFactor>("width_factor", "Width of the letters, as a share of the usual one."),
    field<&ACAD_TEXT::m_nJustify>("justify", "Alignment by the numbers of group 72."),
    field<&ACAD_TEXT::m_Align>("align", "The alignment point.")};
constexpr Field kCircle[] = {QV_LOOK(ACAD_CIRCLE), field<&ACAD_CIRCLE::m_Center>("center", "Its centre."),
                             field<&ACAD_CIRCLE::m_fRadius>("radius", "Its radius.")};
constexpr Field kArc[] = {QV_LOOK(ACAD_ARC), field<&ACAD_ARC::m_Center>("center", "Its centre."),
                          field<&ACAD_ARC::m_fRadius>("radius", "Its radius."),
                          field<&ACAD_ARC::m_fStartAngle>("start_angle", "Degrees; it runs counter-clockwise."),
                          field<&ACAD_ARC::m_fEndAngle>("end_angle", "Degrees.")};
constexpr Field kPolyline[] = {QV_LOOK(ACAD_POLYLINE),
                               field<&ACAD_POLYLINE::m_nFlags>("flags", "Group 70: 1 when it is closed.")};
constexpr Field kSolid[] = {QV_LOOK(ACAD_SOLID),
                            field<&ACAD_SOLID::m_Corner>("corners", "Four corners; the third is opposite the second.")};
constexpr Field kFace[] = {QV_LOOK(ACAD_3DFACE), field<&ACAD_3DFACE::m_Corner>("corners", "Its four corners.")};
constexpr Field kInsert[] = {field<&ACAD_INSERT::m_szLayer>("layer", kLayerDoc),
                             field<&ACAD_INSERT::m_nColor>("color", kColorDoc),
                             field<&ACAD_INSERT::m_szBlock>("block", "Name of the block."),
                             field<&ACAD_INSERT::m_Insert>("position", "Where the block's base point comes."),
                             field<&ACAD_INSERT::m_fScaleX>("scale_x", "Kept; the block is drawn unscaled."),
                             field<&ACAD_INSERT::m_fScaleY>("scale_y", "Kept; the block is drawn unscaled."),
                             field<&ACAD_INSERT::m_fRotation>("rotation", "Kept; the block is drawn unturned.")};
#undef QV_LOOK

constexpr Kind kKindTable[kKinds] = {
    {"POINT", "Point", "A point.", kPoint},
    {"LINE", "Line", "A straight line.", kLine},
    {"TEXT", "Text", "One line of text.", kText},
    {"CIRCLE", "Circle", "A circle.", kCircle},
    {"ARC", "Arc", "A circular arc.", kArc},
    {"POLYLINE", "Polyline", "A line through many points, with widths and arcs.", kPolyline},
    {"SOLID", "Solid", "A filled quadrilateral.", kSolid},
    {"3DFACE", "Face", "A face in space, drawn as its four edges.", kFace},
    {"INSERT", "Insert", "A placed block.", kInsert},
};

/// An entity of a document, which it keeps alive; the record is the document's.
struct Entity {
  std::shared_ptr<Document> document;
  ACAD_ENTITY* record;

  ACAD_ENTITY& use() const { return document->use(), *record; }
  ACAD_ENTITY& change() const { return document->change(), *record; }
};
template <int kType>
struct EntityOf : Entity {};

py::object point_tuple(const qv::Point3& p) {
  return py::make_tuple(p.x, p.y, p.z);
}

/// Points for a field, which keeps as many of them.
std::vector<qv::Point3> points_for(const Field& field, const py::handle& value) {
  const Floats points = points_of(value, field.name);
  const py::ssize_t wanted = field.type == Field::Type::Corners ? 4 : 1;
  if (points.rows != wanted)
    throw py::value_error(std::string(field.name) + ": " + std::to_string(wanted) + " point(s) expected, not " +
                          std::to_string(points.rows));
  std::vector<qv::Point3> all;
  for (py::ssize_t i = 0; i < wanted; ++i) all.push_back({points.row(i)[0], points.row(i)[1], points.z(i)});
  return all;
}

py::object get_field(const Field& field, ACAD_ENTITY& entity) {
  const void* const at = field.at(entity);
  switch (field.type) {
    case Field::Type::Real:
      return py::float_(*static_cast<const float*>(at));
    case Field::Type::Integer:
      return py::int_(*static_cast<const int*>(at));
    case Field::Type::Point:
      return point_tuple(*static_cast<const qv::Point3*>(at));
    case Field::Type::Corners: {
      const auto* const corner = static_cast<const qv::Point3*>(at);
      return py::make_tuple(point_tuple(corner[0]), point_tuple(corner[1]), point_tuple(corner[2]),
                            point_tuple(corner[3]));
    }
    case Field::Type::Name:
      break;
  }
  return to_str(static_cast<const char*>(at));
}

/// Stores what Python gives. It is converted before the record is looked at: Python may close the document meanwhile.
void set_field(const Field& field, const Entity& self, const py::object& value) {
  const auto store = [&](const auto& converted) { std::memcpy(field.at(self.change()), &converted, sizeof converted); };
  switch (field.type) {
    case Field::Type::Real:
      return store(value.cast<float>());
    case Field::Type::Integer:
      return store(value.cast<int>());
    case Field::Type::Point:
    case Field::Type::Corners: {
      const std::vector<qv::Point3> points = points_for(field, value);
      std::copy(points.begin(), points.end(), static_cast<qv::Point3*>(field.at(self.change())));
      return;
    }
    case Field::Type::Name:
      break;
  }
  const Text text = value.cast<Text>();
  if (text.gbk.size() >= field.size)
    throw py::value_error(std::string(field.name) + ": at most " + std::to_string(field.size - 1) + " bytes of GBK");
  std::memcpy(field.at(self.change()), text.gbk.c_str(), text.gbk.size() + 1);
}

py::object property(const py::cpp_function& get, const py::object& set, const char* doc) {
  return py::reinterpret_borrow<py::object>(reinterpret_cast<PyObject*>(&PyProperty_Type))(get, set, py::none(), doc);
}

py::str repr(const Entity& self) {
  ACAD_ENTITY& entity = self.use();
  const Kind& kind = kind_of(entity.GetType());
  std::string text = kind.name;
  for (const Field& field : kind.fields)
    text += (&field == kind.fields.data() ? "(" : ", ") + std::string(field.name) + "=" +
            std::string(py::repr(get_field(field, entity)));
  return text + ")";
}

py::object entity_extent(const Entity& self) {
  return rect(checked([&] { return self.use().GetFRect(); }));
}

void add_attributes(const py::object& type, const Kind& kind) {
  for (const Field& row : kind.fields) {
    const Field* const field = &row;
    const py::cpp_function getter([field](const Entity& self) { return get_field(*field, self.use()); });
    const py::cpp_function setter(
        [field](const Entity& self, const py::object& value) { set_field(*field, self, value); });
    type.attr(field->name) = property(getter, setter, field->doc);
  }
  type.attr("kind") = kind.keyword;
}

template <int kType>
py::class_<EntityOf<kType>, Entity> bind_kind(py::module_& m) {
  const Kind& kind = kind_of(kType);
  py::class_<EntityOf<kType>, Entity> type(m, kind.name, kind.doc);
  add_attributes(type, kind);
  return type;
}

using Vertices = CArray<ACAD_VERTEX, ACAD_VERTEX&>;

Vertices& vertices_of(const Entity& self) {
  return static_cast<ACAD_POLYLINE&>(self.use()).m_Vertices;
}

/// A float of each vertex as an array.
template <float ACAD_VERTEX::*kMember>
py::array_t<float> vertex_values(const Entity& self) {
  const Vertices& vertices = vertices_of(self);
  py::array_t<float> values(vertices.GetSize());
  std::transform(vertices.begin(), vertices.end(), values.mutable_data(),
                 [](const ACAD_VERTEX& vertex) { return vertex.*kMember; });
  return values;
}

template <float ACAD_VERTEX::*kMember>
void set_vertex_values(const Entity& self, const py::object& value) {
  Floats numbers = numbers_of(value, "value");
  self.change();
  Vertices& vertices = vertices_of(self);
  const Spread values(std::move(numbers), vertices.GetSize(), "value");
  for (int i = 0; i < vertices.GetSize(); ++i) vertices[i].*kMember = values[i];
}

py::array_t<float> vertex_points(const Entity& self) {
  const Vertices& vertices = vertices_of(self);
  py::array_t<float> points({static_cast<py::ssize_t>(vertices.GetSize()), py::ssize_t{3}});
  float* to = points.mutable_data();
  for (const ACAD_VERTEX& vertex : vertices) to = std::copy_n(&vertex.m_Point.x, 3, to);
  return points;
}

void set_vertex_points(const Entity& self, const py::object& value) {
  const Floats points = points_of(value, "points");
  if (points.rows < 2) throw py::value_error("points: at least 2 expected");
  auto& polyline = static_cast<ACAD_POLYLINE&>(self.change());
  const int before = polyline.m_Vertices.GetSize();
  polyline.m_Vertices.SetSize(static_cast<int>(points.rows));
  for (int i = 0; i < points.rows; ++i) {
    if (i >= before && before > 0) polyline.m_Vertices[i] = polyline.m_Vertices[before - 1];
    polyline.m_Vertices[i].m_Point = {points.row(i)[0], points.row(i)[1], points.z(i)};
  }
  polyline.m_First = polyline.m_Vertices[0].m_Point;
  polyline.m_Second = polyline.m_Vertices[1].m_Point;
}

void bind_vertices(py::class_<EntityOf<ACAD_TYPE_POLYLINE>, Entity>& type) {
  const auto closed = [](const Entity& self) { return (static_cast<ACAD_POLYLINE&>(self.use()).m_nFlags & 1) != 0; };
  const auto close = [](const Entity& self, bool on) {
    int& flags = static_cast<ACAD_POLYLINE&>(self.change()).m_nFlags;
    flags = (flags & ~1) | (on ? 1 : 0);
  };
  type.def_property("closed", closed, close, "Whether its last vertex is joined to the first.")
      .def_property("points", &vertex_points, &set_vertex_points, "Its vertices: an array of n by 3 numbers, a copy.")
      .def_property("bulges", &vertex_values<&ACAD_VERTEX::m_fBulge>, &set_vertex_values<&ACAD_VERTEX::m_fBulge>,
                    "Of the segment that leaves each vertex: the tangent of a quarter of its angle, 0 where straight.")
      .def_property("start_widths", &vertex_values<&ACAD_VERTEX::m_fStartWidth>,
                    &set_vertex_values<&ACAD_VERTEX::m_fStartWidth>, "Width of each segment where it begins.")
      .def_property("end_widths", &vertex_values<&ACAD_VERTEX::m_fEndWidth>,
                    &set_vertex_values<&ACAD_VERTEX::m_fEndWidth>, "Width of each segment where it ends.");
}

template <int kType>
py::object object_of(const std::shared_ptr<Document>& document, ACAD_ENTITY& record) {
  return py::cast(EntityOf<kType>{{document, &record}});
}

}  // namespace

const Kind& kind_of(int type) {
  return kKindTable[type];
}

int kind_named(const std::string& keyword) {
  for (int type = 0; type < kKinds; ++type)
    if (keyword == kKindTable[type].keyword) return type;
  throw py::value_error(keyword + " is no kind of entity");
}

py::object entity_object(const std::shared_ptr<Document>& document, ACAD_ENTITY& entity) {
  switch (entity.GetType()) {
#define QV_KIND(KEYWORD, member) \
  case ACAD_TYPE_##KEYWORD:      \
    return object_of<ACAD_TYPE_##KEYWORD>(document, entity);
    QV_FOR_EACH_ENTITY_KIND(QV_KIND)
#undef QV_KIND
    default:
      return py::none();
  }
}

ACAD_ENTITY& entity_of(const py::handle& object, const Document& document) {
  if (!py::isinstance<Entity>(object)) throw py::type_error("an entity expected");
  const Entity& entity = object.cast<const Entity&>();
  if (entity.document.get() != &document) throw py::value_error("the entity belongs to another document");
  return entity.use();
}

void bind_entities(py::module_& m) {
  py::class_<Entity>(m, "Entity", R"(An entity of a document.

Its attributes are those of the record in the document: to set one changes the drawing. The document stays in memory
as long as one of its entities is held; when it is closed, its entities raise an Error.)")
      .def("__repr__", &repr)
      .def("__eq__",
           [](const Entity& a, const py::object& b) {
             return py::isinstance<Entity>(b) && a.record == b.cast<const Entity&>().record;
           })
      .def("__hash__", [](const Entity& self) { return std::hash<const void*>()(self.record); })
      .def_property_readonly("extent", &entity_extent,
                             "The rectangle that it takes in plan (GetFRect). That of an insert is empty.")
      .def_property_readonly(
          "length", [](const Entity& self) { return qv::Measure(self.use()).length; },
          "The length of its curve or outline; 0 for a point, a text and an insert (qv::Measure).")
      .def_property_readonly(
          "area", [](const Entity& self) { return qv::Measure(self.use()).area; },
          "The area that it encloses, an open polyline as if it were closed (qv::Measure).");
  bind_kind<ACAD_TYPE_POINT>(m);
  bind_kind<ACAD_TYPE_LINE>(m);
  bind_kind<ACAD_TYPE_TEXT>(m).def_property_readonly(
      "width", [](const Entity& self) { return static_cast<ACAD_TEXT&>(self.use()).GetWidth(); },
      "What the shape fonts measure (ACAD_TEXT::GetWidth).");
  bind_kind<ACAD_TYPE_CIRCLE>(m);
  bind_kind<ACAD_TYPE_ARC>(m);
  auto polyline = bind_kind<ACAD_TYPE_POLYLINE>(m);
  bind_vertices(polyline);
  bind_kind<ACAD_TYPE_SOLID>(m);
  bind_kind<ACAD_TYPE_3DFACE>(m);
  bind_kind<ACAD_TYPE_INSERT>(m);
}

}  // namespace qvpy
