#include "qvtools/widgets/viewer/display_form.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

namespace qv::viewer {

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

namespace {

constexpr int kByBlock = 0;
constexpr const char* kPlacedLayer = "0";  // in a block: the layer of the insert

bool takes_layer(ACAD_ENTITY& entity) {
  return std::strcmp(layer_of(entity), kPlacedLayer) == 0;
}

bool takes_color(ACAD_ENTITY& entity) {
  bool taken = false;
  qv::visit_entity(entity, [&](auto& record) {
    if constexpr (requires { record.m_nColor; }) taken = record.m_nColor == kByBlock;
  });
  return taken;
}

/// Whether the block looks different where an insert has another layer or colour.
bool takes_from_insert(const ACAD_BLOCK& block) {
  bool takes = false;
  for_each<ACAD_ENTITY>(block.m_EntityList,
                        [&](ACAD_ENTITY& entity) { takes = takes || takes_layer(entity) || takes_color(entity); });
  return takes;
}

void give(ACAD_BLOCK& block, const ACAD_INSERT& insert, int color) {
  for_each<ACAD_ENTITY>(block.m_EntityList, [&](ACAD_ENTITY& entity) {
    const bool placed = takes_layer(entity), colored = takes_color(entity);
    qv::visit_entity(entity, [&](auto& record) {
      if (placed) qv::copy_text(record.m_szLayer, insert.m_szLayer);
      if constexpr (requires { record.m_nColor; })
        if (colored) record.m_nColor = color;
    });
  });
}

}  // namespace

void place_blocks(DXF& dxf) {
  NameMap<ACAD_BLOCK*> blocks;
  for_each<ACAD_BLOCK>(dxf.m_BlockList, [&](ACAD_BLOCK& block) { blocks.emplace(block.m_szName, &block); });
  const LayerTable layers(dxf);
  NameMap<std::string> placed;  // the names of blocks as inserts of a layer and a colour show them
  for_each<ACAD_ENTITY>(dxf.m_EntityList, [&](ACAD_ENTITY& entity) {
    if (entity.GetType() != ACAD_TYPE_INSERT) return;
    auto& insert = static_cast<ACAD_INSERT&>(entity);
    const auto found = blocks.find(std::string_view(insert.m_szBlock));
    if (found == blocks.end() || !takes_from_insert(*found->second)) return;
    const std::string look =
        std::string(insert.m_szBlock) + '\n' + insert.m_szLayer + '\n' + std::to_string(insert.m_nColor);
    const auto [name, isNew] =
        placed.try_emplace(look, "\n" + std::to_string(placed.size()));  // no file has such a name
    if (isNew) {
      auto block = std::make_unique<ACAD_BLOCK>();
      *block = *found->second;
      qv::copy_text(block->m_szName, name->second.c_str());
      give(*block, insert, insert.m_nColor < 0 ? layers.color(layers.find(insert.m_szLayer)) : insert.m_nColor);
      if (dxf.m_BlockList.AddTail(block.get())) block.release();
    }
    qv::copy_text(insert.m_szBlock, name->second.c_str());
  });
}

void drop_hidden(DXF& dxf) {
  constexpr int kFrozen = 1;
  NameMap<const ACAD_LAYER*> layers;
  for (int i = 0; dxf.m_pLayer && i < dxf.m_nLayer; ++i)
    layers.emplace(dxf.m_pLayer[static_cast<std::size_t>(i)].m_szName, &dxf.m_pLayer[static_cast<std::size_t>(i)]);
  const auto hides = [](const ACAD_LAYER& layer) { return layer.m_nColor < 0 || (layer.m_nFlags & kFrozen) != 0; };
  if (std::none_of(layers.begin(), layers.end(), [&](const auto& entry) { return hides(*entry.second); })) return;
  const auto is_hidden = [&](ACAD_ENTITY& entity) {
    const auto found = layers.find(std::string_view(layer_of(entity)));
    if (found == layers.end()) return false;
    const bool off = found->second->m_nColor < 0 && entity.GetType() != ACAD_TYPE_INSERT;
    return off || (found->second->m_nFlags & kFrozen) != 0;
  };
  const auto drop = [&](CPtrList& list) {
    std::vector<ACAD_ENTITY*> kept;
    for_each<ACAD_ENTITY>(list, [&](ACAD_ENTITY& entity) {
      if (is_hidden(entity))
        delete &entity;
      else
        kept.push_back(&entity);
    });
    list.RemoveAll();
    for (ACAD_ENTITY* const entity : kept) list.AddTail(entity);
  };
  drop(dxf.m_EntityList);
  for_each<ACAD_BLOCK>(dxf.m_BlockList, [&](ACAD_BLOCK& block) { drop(block.m_EntityList); });
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

}  // namespace qv::viewer
