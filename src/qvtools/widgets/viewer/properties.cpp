#include "qvtools/widgets/viewer/properties.h"

#include <algorithm>
#include <map>

#include "qvtools/widgets/viewer/measuring.h"

namespace qv::viewer {

namespace {

std::string point_text(const qv::Point3& p) {
  return shown_number(p.x) + ", " + shown_number(p.y) + (p.z == 0 ? "" : ", " + shown_number(p.z));
}

class Teller {
 public:
  Teller(const Drawing& drawing, int entity, Language language)
      : drawing_(drawing), entity_(entity), language_(language) {}

  std::vector<Property> tell() {
    ACAD_ENTITY& record = drawing_.entity(entity_);
    const int own = drawing_.own_color(entity_);
    add(Text::NumberColumn, std::to_string(entity_ + 1));
    add(Text::KindColumn, caption(static_cast<Text>(static_cast<int>(Text::KindPoint) + record.GetType()), language_));
    add(Text::LayerColumn, qv::from_gbk(drawing_.layer_of(entity_).name));
    add(Text::ColorColumn, own < 0 ? caption(Text::ByLayer, language_) : std::to_string(own));
    const std::string& ltype = drawing_.own_line_type(entity_);
    if (!ltype.empty())
      add(Text::LineTypeColumn, ltype == "BYLAYER" ? caption(Text::ByLayer, language_) : qv::from_gbk(ltype));
    qv::visit_entity(record, [&](const auto& r) { add_record(r); });
    const qv::EntityMeasures m = qv::Measure(record);
    if (m.length > 0) add(m.closed ? Text::PerimeterColumn : Text::LengthColumn, m.length);
    if (m.area > 0) add(Text::AreaColumn, m.area);
    return std::move(list_);
  }

 private:
  void add(Text name, const std::string& value) { list_.push_back({name, value}); }
  void add(Text name, double value) { add(name, shown_number(value)); }
  void add(Text name, const qv::Point3& p) { add(name, point_text(p)); }

  void add_record(const ACAD_POINT& r) { add(Text::PointColumn, r.m_Point); }
  void add_record(const ACAD_LINE& r) {
    add(Text::StartColumn, r.m_Start);
    add(Text::EndColumn, r.m_End);
  }
  void add_record(const ACAD_TEXT& r) {
    add(Text::WordsColumn, qv::from_gbk(r.m_szText));
    add(Text::StyleColumn, qv::from_gbk(r.m_szStyle));
    add(Text::PointColumn, r.m_Insert);
    add(Text::HeightColumn, r.m_fHeight);
    add(Text::RotationColumn, r.m_fRotation);
    add(Text::WidthFactorColumn, r.m_fWidthFactor);
  }
  void add_record(const ACAD_CIRCLE& r) {
    add(Text::CenterColumn, r.m_Center);
    add(Text::RadiusColumn, r.m_fRadius);
  }
  void add_record(const ACAD_ARC& r) {
    add(Text::CenterColumn, r.m_Center);
    add(Text::RadiusColumn, r.m_fRadius);
    add(Text::AnglesColumn, shown_number(r.m_fStartAngle) + "°, " + shown_number(r.m_fEndAngle) + "°");
  }
  void add_record(const ACAD_POLYLINE& r) {
    constexpr int kMostShown = 200;
    add(Text::ClosedColumn, caption((r.m_nFlags & 1) != 0 ? Text::Yes : Text::No, language_));
    add(Text::VertexCountColumn, r.m_Vertices.GetSize());
    if (r.m_fStartWidth != 0 || r.m_fEndWidth != 0)
      add(Text::WidthColumn, shown_number(r.m_fStartWidth) + ", " + shown_number(r.m_fEndWidth));
    int shown = 0;
    for (const ACAD_VERTEX& v : r.m_Vertices) {
      if (++shown > kMostShown) break;
      add(Text::PointColumn, point_text(v.m_Point) + (v.m_fBulge == 0 ? "" : " ⌒ " + shown_number(v.m_fBulge)));
    }
  }
  void add_corners(const auto& r) {
    for (const qv::Point3& corner : r.m_Corner) add(Text::PointColumn, corner);
  }
  void add_record(const ACAD_SOLID& r) { add_corners(r); }
  void add_record(const ACAD_3DFACE& r) { add_corners(r); }
  void add_record(const ACAD_INSERT& r) {
    add(Text::BlockColumn, qv::from_gbk(r.m_szBlock));
    add(Text::PointColumn, r.m_Insert);
    add(Text::CountColumn, drawing_.count_in_block(entity_));
  }

  const Drawing& drawing_;
  int entity_;
  Language language_;
  std::vector<Property> list_;
};

}  // namespace

std::vector<Property> properties_of(const Drawing& drawing, int entity, Language language) {
  return Teller(drawing, entity, language).tell();
}

std::vector<CountOfKind> counts_of(const Drawing& drawing, const std::vector<int>& entities) {
  std::map<std::pair<int, const Layer*>, int> counts;
  for (const int i : entities) ++counts[{drawing.entity(i).GetType(), &drawing.layer_of(i)}];
  std::vector<CountOfKind> list;
  for (const auto& [key, count] : counts)
    list.push_back({static_cast<ACAD_Entity_Type>(key.first), key.second->name, count});
  std::stable_sort(list.begin(), list.end(), [](const auto& a, const auto& b) { return a.count > b.count; });
  return list;
}

}  // namespace qv::viewer
