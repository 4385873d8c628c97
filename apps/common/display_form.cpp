#include "common/display_form.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace qvapps {

namespace {
constexpr int kBlack = 0;
constexpr int kWhite = 7;
}  // namespace

LayerTable::LayerTable(const DXF& dxf) : dxf_(dxf) {
  for (int i = 0; dxf.m_pLayer && i < dxf.m_nLayer; ++i)
    indices_.emplace(dxf.m_pLayer[static_cast<std::size_t>(i)].m_szName, i);
}

int LayerTable::find(std::string_view name) const {
  const auto found = indices_.find(name);
  return found == indices_.end() ? -1 : found->second;
}

int LayerTable::color(int index) const {
  if (index < 0) return kWhite;
  const int color = dxf_.m_pLayer[static_cast<std::size_t>(index)].m_nColor;
  return color < 0 ? -std::max(color, -INT_MAX) : color;
}

const char* LayerTable::line_type(int index) const {
  return index < 0 ? nullptr : dxf_.m_pLayer[static_cast<std::size_t>(index)].m_szLType;
}

int shown_color(int own, int layerColor, bool lightBackground) {
  constexpr int kByLayerNumber = 256;  // as some programs write it
  const int color = own < 0 || own == kByLayerNumber ? layerColor : own;
  if (lightBackground) return color == kWhite ? kBlack : color;
  return color == kBlack ? kWhite : color;
}

namespace {

/// Vertices without widths of their own take the polyline's, whatever others have.
void give_default_widths(ACAD_POLYLINE& polyline) {
  if (polyline.m_fStartWidth == 0 && polyline.m_fEndWidth == 0) return;
  for (ACAD_VERTEX& vertex : polyline.m_Vertices) {
    if (vertex.m_fStartWidth != 0 || vertex.m_fEndWidth != 0) continue;
    vertex.m_fStartWidth = polyline.m_fStartWidth;
    vertex.m_fEndWidth = polyline.m_fEndWidth;
  }
}

}  // namespace

int resolve(ACAD_ENTITY& entity, int layer, const LayerTable& layers, bool lightBackground) {
  int own = qv::kByLayer;
  qv::visit_entity(entity, [&](auto& record) {
    if constexpr (requires { record.m_nColor; }) {
      own = record.m_nColor;
      record.m_nColor = shown_color(own, layers.color(layer), lightBackground);
    }
    if constexpr (requires { record.m_szText; }) {
      qv::copy_text(record.m_szLType, "CONTINUOUS");  // letters are never dashed
    } else if constexpr (requires { record.m_szLType; }) {
      const char* const ltype = layers.line_type(layer);
      if (ltype && std::strcmp(record.m_szLType, "BYLAYER") == 0) qv::copy_text(record.m_szLType, ltype);
    }
    if constexpr (requires { record.m_szText; }) {
      if (std::strstr(record.m_szText, "\\U+")) qv::copy_text(record.m_szText, qv::drawn_text(record.m_szText).c_str());
    }
    if constexpr (requires { record.m_Vertices; }) give_default_widths(record);
  });
  return own;
}

void resolve_for_display(DXF& dxf, bool lightBackground) {
  const LayerTable layers(dxf);
  const auto resolve_all = [&](const CPtrList& list) {
    for_each<ACAD_ENTITY>(
        list, [&](ACAD_ENTITY& entity) { resolve(entity, layers.find(layer_of(entity)), layers, lightBackground); });
  };
  resolve_all(dxf.m_EntityList);
  for_each<ACAD_BLOCK>(dxf.m_BlockList, [&](ACAD_BLOCK& block) { resolve_all(block.m_EntityList); });
}

void drop_hidden(DXF& dxf) {
  constexpr int kFrozen = 1;
  NameMap<bool> hidden;
  bool any = false;
  for (int i = 0; dxf.m_pLayer && i < dxf.m_nLayer; ++i) {
    const ACAD_LAYER& layer = dxf.m_pLayer[static_cast<std::size_t>(i)];
    const bool off = layer.m_nColor < 0 || (layer.m_nFlags & kFrozen) != 0;
    hidden.emplace(layer.m_szName, off);
    any = any || off;
  }
  if (!any) return;
  const auto drop = [&](CPtrList& list, bool inBlock) {
    std::vector<ACAD_ENTITY*> kept;
    for_each<ACAD_ENTITY>(list, [&](ACAD_ENTITY& entity) {
      const std::string_view layer = layer_of(entity);
      const auto found = hidden.find(layer);
      if (found != hidden.end() && found->second && !(inBlock && layer == "0"))
        delete &entity;
      else
        kept.push_back(&entity);
    });
    list.RemoveAll();
    for (ACAD_ENTITY* const entity : kept) list.AddTail(entity);
  };
  drop(dxf.m_EntityList, false);
  for_each<ACAD_BLOCK>(dxf.m_BlockList, [&](ACAD_BLOCK& block) { drop(block.m_EntityList, true); });
}

qv::Appearance appearance(const qv::LinePatterns& patterns) {
  static const qv::Palette palette = [] {
    constexpr int kOwn = 16;
    qv::Palette colors = qv::StandardPalette();
    for (int i = 0; i < kOwn; ++i) colors[static_cast<std::size_t>(i)] = ACAD_ENTITY::GetColor(i);
    return colors;
  }();
  return {&palette, &patterns};
}

CFRect never_empty(const CFRect& extent) {
  CFRect r = extent;
  constexpr float kFarthest = 1e30F;  // beyond this, sizes and margins become infinite
  const auto sane = [](float v) { return std::fabs(v) < kFarthest; };
  if (!sane(r.x1) || !sane(r.y1) || !sane(r.x2) || !sane(r.y2)) r = CFRect();
  const float least = std::max(1e-3F, 1e-6F * std::max(std::fabs(r.x2), std::fabs(r.y2)));
  if (r.Width() < least) r.Inflect(least / 2, 0, least / 2, 0);
  if (r.Height() < least) r.Inflect(0, least / 2, 0, least / 2);
  return r;
}

CFRect with_margin(const CFRect& extent) {
  CFRect r = never_empty(extent);
  const float margin = 0.02F * std::max(r.Width(), r.Height());
  r.Inflect(margin, margin, margin, margin);
  return r;
}

CFCoor fitted(const CFRect& rect, CSize picture) {
  const double across = picture.cx / static_cast<double>(rect.Width());
  const double scale = std::min(across, picture.cy / static_cast<double>(rect.Height()));
  const double x = (static_cast<double>(rect.x1) + rect.x2) / 2 - picture.cx / scale / 2;
  const double y = (static_cast<double>(rect.y1) + rect.y2) / 2 + picture.cy / scale / 2;
  return {CFPoint(static_cast<float>(x), static_cast<float>(y)), static_cast<float>(scale), 1};
}

}  // namespace qvapps
