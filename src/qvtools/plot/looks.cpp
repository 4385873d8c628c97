#include "qvtools/plot/internal/looks.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <new>

#include "qvtools/display/internal/dash_pattern.h"
#include "qvtools/text/code_page.h"

namespace qv::detail {

namespace {

constexpr int kBlack = 0;  // as a colour of its own: BYBLOCK
constexpr int kWhite = 7;
constexpr int kByLayerNumber = 256;
constexpr int kDefaultWeight = -3;
constexpr int kBlockWeight = -2;
constexpr int kLayerWeight = -1;
constexpr int kFrozen = 1;

Ink ink_of(int rgb) {
  return {static_cast<unsigned char>(rgb >> 16 & 255), static_cast<unsigned char>(rgb >> 8 & 255),
          static_cast<unsigned char>(rgb & 255)};
}

/// The colour of a number on paper, where white is black; on a dark background black is white.
Ink ink_of_number(int color, const Palette& palette, bool dark) {
  if (color == kWhite || color <= kBlack || color > 255) return dark ? Ink{255, 255, 255} : Ink{};
  const COLORREF c = palette[static_cast<std::size_t>(color)];
  return {static_cast<unsigned char>(c & 255), static_cast<unsigned char>(c >> 8 & 255),
          static_cast<unsigned char>(c >> 16 & 255)};
}

Ink grey(Ink ink) {
  // Luma of ITU-R BT.601.
  const auto luma = static_cast<unsigned char>(0.299 * ink.red + 0.587 * ink.green + 0.114 * ink.blue + 0.5);
  return {luma, luma, luma};
}

Ink screened(Ink ink, double percent) {
  const auto part = [&](unsigned char v) { return static_cast<unsigned char>(255 - (255 - v) * percent / 100 + 0.5); };
  return {part(ink.red), part(ink.green), part(ink.blue)};
}

}  // namespace

std::size_t Looks::Hash::operator()(const Key& key) const {
  std::size_t hash = 0;
  for (const int part : {key.layer, key.color, key.ltype, key.lineWeight, key.trueColor})
    hash = hash * 1000003 + static_cast<std::size_t>(part);
  return hash ^ hash >> 17;
}

Looks::Looks(const DXF& dxf, const DrawingNotes* notes, const LookOptions& options)
    : notes_(notes),
      options_(options),
      dxf_(dxf),
      layer_names_(static_cast<std::size_t>(dxf.m_nLayer)),
      ltype_names_(static_cast<std::size_t>(dxf.m_nLType)) {
  if (!layer_names_.is_ready() || !ltype_names_.is_ready()) throw std::bad_alloc();
  for (int i = 0; dxf.m_pLayer && i < dxf.m_nLayer; ++i) {
    ACAD_LAYER& record = dxf.m_pLayer[static_cast<std::size_t>(i)];
    layer_names_.add(record);
    Layer& layer = layers_.emplace_back();
    layer.record = &record;
    layer.name = from_gbk(record.m_szName);
    layer.off = record.m_nColor < 0;
    layer.color = layer.off ? -std::max(record.m_nColor, -INT_MAX) : record.m_nColor;
    layer.frozen = (record.m_nFlags & kFrozen) != 0;
  }
  layers_.emplace_back().name = "0";
  for (int i = 0; dxf.m_pLType && i < dxf.m_nLType; ++i) {
    ACAD_LTYPE& record = dxf.m_pLType[static_cast<std::size_t>(i)];
    ltype_names_.add(record);
    DashPattern& pattern = patterns_.emplace_back();
    const DashPattern own = pattern_of(record);
    if (own.length == 0) continue;
    if (own.length * options.scale < options.appearance.shortestPattern) {
      ++short_patterns_;
      continue;
    }
    for (const double element : own.elements) pattern.elements.push_back(element * options.scale);
    pattern.length = own.length * options.scale;
  }
  if (notes) take_notes(notes->layers);
  if (!options.shows) return;
  for (Layer& layer : layers_) layer.off = layer.frozen = !options.shows(layer.record ? layer.record->m_szName : "0");
}

DashPattern Looks::pattern_of(const ACAD_LTYPE& record) const {
  if (options_.appearance.patterns) {
    const DashPattern* const chosen = options_.appearance.patterns->find(record.m_szName);
    return chosen ? *chosen : DashPattern();
  }
  const int elements = std::clamp(record.m_nElements, 0, kMaxPatternElements);
  return dash_pattern({record.m_fElement, static_cast<std::size_t>(elements)});
}

void Looks::take_notes(const std::vector<DrawingNotes::Layer>& notes) {
  for (const DrawingNotes::Layer& note : notes) {
    const int index = layer_index(note.name);
    if (index < 0) continue;
    Layer& layer = layers_[static_cast<std::size_t>(index)];
    if (!note.fullName.empty()) layer.name = note.fullName;
    layer.off = layer.off || note.off;
    layer.frozen = layer.frozen || note.frozen;
    layer.plotted = note.plotted;
    layer.lineWeight = note.lineWeight;
    layer.trueColor = note.trueColor;
  }
}

int Looks::layer_index(std::string_view name) const {
  const ACAD_LAYER* const found = layer_names_.find(name);
  return found ? static_cast<int>(found - dxf_.m_pLayer.get()) : static_cast<int>(layers_.size()) - 1;
}

int Looks::ltype_index(std::string_view name) const {
  const ACAD_LTYPE* const found = ltype_names_.find(name);
  return found ? static_cast<int>(found - dxf_.m_pLType.get()) : -1;
}

Attributes Looks::attributes(const ACAD_ENTITY& entity, std::string_view layer, std::string_view ltype,
                             int color) const {
  Attributes attributes{layer, ltype, color, kLayerWeight, -1};
  const DrawingNotes::Entity* const note = notes_ && !notes_->entities.empty() ? notes_->find(&entity) : nullptr;
  if (note) {
    attributes.lineWeight = note->lineWeight;
    attributes.trueColor = note->trueColor;
  }
  return attributes;
}

Inherited Looks::inherited(const Attributes& insert, bool& frozen) {
  const Layer& layer = layers_[static_cast<std::size_t>(layer_index(insert.layer))];
  const bool layerColor = insert.color < 0 || insert.color == kByLayerNumber;
  frozen = layer.frozen;
  last_look_ = nullptr;  // another block may inherit other things at the same place
  Inherited inherited;
  inherited.layer = insert.layer;
  inherited.color = layerColor ? layer.color : insert.color;
  inherited.trueColor = insert.trueColor >= 0 || !layerColor ? insert.trueColor : layer.trueColor;
  inherited.lineWeight = insert.lineWeight == kLayerWeight ? layer.lineWeight : insert.lineWeight;
  return inherited;
}

const Look& Looks::of(const Attributes& a, const Inherited* inherited) {
  if (last_look_ && inherited == last_inherited_ && a.color == last_.color && a.lineWeight == last_.lineWeight &&
      a.trueColor == last_.trueColor && a.layer == last_.layer && a.ltype == last_.ltype)
    return *last_look_;
  const bool inherits = inherited && a.layer == "0";
  const int layer = layer_index(inherits ? inherited->layer : a.layer);
  const Layer& record = layers_[static_cast<std::size_t>(layer)];
  Key key{layer, a.color, 0, a.lineWeight, a.trueColor};
  const bool layerColor = a.color < 0 || a.color == kByLayerNumber;
  if (layerColor) {
    key.color = record.color;
    if (a.trueColor < 0) key.trueColor = record.trueColor;
  } else if (a.color == kBlack && inherited) {
    key.color = inherited->color;
    if (a.trueColor < 0) key.trueColor = inherited->trueColor;
  }
  if (a.lineWeight == kLayerWeight) key.lineWeight = record.lineWeight;
  if (a.lineWeight == kBlockWeight) key.lineWeight = inherited ? inherited->lineWeight : kDefaultWeight;
  key.ltype = ltype_index(a.ltype == "BYLAYER" && record.record ? record.record->m_szLType : a.ltype);
  const auto found = looks_.find(key);
  const Look& look = found != looks_.end() ? found->second : looks_.emplace(key, make(key)).first->second;
  last_ = a;
  last_inherited_ = inherited;
  last_look_ = &look;
  return look;
}

Look Looks::make(const Key& key) const {
  const Layer& layer = layers_[static_cast<std::size_t>(key.layer)];
  const bool listed = key.ltype >= 0;
  const PenRule* const rule =
      options_.pens ? options_.pens->find(key.color, layer.record ? layer.record->m_szName : "0",
                                          listed ? dxf_.m_pLType[static_cast<std::size_t>(key.ltype)].m_szName : "")
                    : nullptr;
  Look look;
  look.layer = key.layer;
  look.shown = !layer.off && !layer.frozen && layer.plotted;
  const bool ownWeight = key.lineWeight >= 0 && (!rule || rule->ownWidth || rule->width < 0);
  double width = kDefaultLineWeight;
  if (ownWeight)
    width = key.lineWeight / 100.0;
  else if (rule && rule->width >= 0)
    width = rule->width;
  look.stroke.width = options_.width > 0 ? options_.width : std::max(width * options_.penScale, kThinnestLine);
  look.stroke.ink = ink(key.color, key.trueColor, rule);
  if (listed && patterns_[static_cast<std::size_t>(key.ltype)].length > 0)
    look.pattern = &patterns_[static_cast<std::size_t>(key.ltype)];
  return look;
}

Ink Looks::ink(int color, int trueColor, const PenRule* rule) const {
  Ink ink;
  if (options_.colors != PlotColors::Black) {
    const Palette* const palette = options_.appearance.palette;
    ink = rule && rule->color >= 0 ? ink_of(rule->color)
          : trueColor >= 0         ? ink_of(trueColor)
                                   : ink_of_number(color, palette ? *palette : StandardPalette(), options_.dark);
    if (options_.colors == PlotColors::Grey) ink = grey(ink);
  }
  return rule ? screened(ink, rule->screening) : ink;
}

}  // namespace qv::detail
