#include "qvtools/widgets/viewer/drawing.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "qvtools/widgets/viewer/highlight_context.h"

namespace qv::viewer {

namespace {

constexpr int kFrozen = 1;
constexpr int kReadable = 3;  // pixels of a text's height
constexpr COLORREF kHighlight = qv::rgb(255, 128, 0);
constexpr const char* kBlockLayer = "0";  // entities of a block on it are seen wherever the insert is

ACAD_INSERT* as_insert(ACAD_ENTITY& entity) {
  return entity.GetType() == ACAD_TYPE_INSERT ? &static_cast<ACAD_INSERT&>(entity) : nullptr;
}

ACAD_POINT* as_point(ACAD_ENTITY& entity) {
  return entity.GetType() == ACAD_TYPE_POINT ? &static_cast<ACAD_POINT&>(entity) : nullptr;
}

qv::Point3 plus(const qv::Point3& a, const qv::Point3& b) {
  return {a.x + b.x, a.y + b.y, a.z + b.z};
}
qv::Point3 minus(const qv::Point3& a, const qv::Point3& b) {
  return {a.x - b.x, a.y - b.y, a.z - b.z};
}

}  // namespace

/// The document of what is shown: its lists hold records that belong to another. An insert whose layer is off shows
/// what its block has on other layers: an insert of this document's own places a block of those.
class Drawing::Shown : public DXF {
 public:
  Shown() { New_MemDxf(); }
  ~Shown() override {
    viewer::for_each<ACAD_BLOCK>(m_BlockList, [](ACAD_BLOCK& block) { block.m_EntityList.RemoveAll(); });
    m_EntityList.RemoveAll();
  }
  /// An empty block in the place of another, for inserts that are on or off.
  ACAD_BLOCK& add_block(const ACAD_BLOCK& like, bool on) {
    auto* const block = new ACAD_BLOCK;
    qv::copy_text(block->m_szName, (on ? std::string(like.m_szName) : off_name(like.m_szName)).c_str());
    block->m_Base = like.m_Base;
    m_BlockList.AddTail(block);
    return *block;
  }
  /// Shows an insert that is off.
  void add_off(const ACAD_INSERT& insert) {
    inserts_.push_back(std::make_unique<ACAD_INSERT>(insert));
    qv::copy_text(inserts_.back()->m_szBlock, off_name(insert.m_szBlock).c_str());
    m_EntityList.AddTail(inserts_.back().get());
    originals_.emplace(inserts_.back().get(), &insert);
  }
  /// The record of the drawing that an entity of this document stands for.
  const ACAD_ENTITY* original(const ACAD_ENTITY* entity) const {
    const auto found = originals_.find(entity);
    return found == originals_.end() ? entity : found->second;
  }
  /// No file has such a name; names that are cut alike would share it, and lose no more than their letters' ends.
  static std::string off_name(const char* name) { return "\n" + std::string(name); }

 private:
  std::vector<std::unique_ptr<ACAD_INSERT>> inserts_;
  std::unordered_map<const ACAD_ENTITY*, const ACAD_ENTITY*> originals_;
};

/// Finds layers and line types by name, and makes those that there are not yet.
class Drawing::LayerIndex {
 public:
  LayerIndex(const DXF& document, std::vector<Layer>& layers, std::vector<std::string>& lineTypes)
      : layers_(layers), line_types_(lineTypes) {
    const viewer::LayerTable table(document);
    for (int i = 0; document.m_pLayer && i < document.m_nLayer; ++i) {
      const ACAD_LAYER& layer = document.m_pLayer[static_cast<std::size_t>(i)];
      const bool off = layer.m_nColor < 0 || (layer.m_nFlags & kFrozen) != 0;
      layers_.push_back({layer.m_szName, table.color(i), !off});
      indices_.emplace(layer.m_szName, layers_.size() - 1);
    }
  }
  std::size_t operator()(std::string_view name) {
    if (const auto found = indices_.find(name); found != indices_.end()) return found->second;
    layers_.push_back({std::string(name)});
    return indices_.emplace(name, layers_.size() - 1).first->second;
  }
  int line_type(std::string_view name) {
    if (last_ >= 0 && name == line_types_[static_cast<std::size_t>(last_)]) return last_;
    const auto [at, added] = line_type_indices_.try_emplace(std::string(name), static_cast<int>(line_types_.size()));
    if (added) line_types_.emplace_back(name);
    return last_ = at->second;
  }

 private:
  std::vector<Layer>& layers_;
  std::vector<std::string>& line_types_;
  viewer::NameMap<std::size_t> indices_;
  viewer::NameMap<int> line_type_indices_;
  int last_ = -1;
};

Drawing::Drawing(std::unique_ptr<DXF> document, bool lightBackground, qv::DrawingNotes notes, double unit)
    : document_(std::move(document)),
      patterns_(qv::PatternsOf(*document_)),
      notes_(std::move(notes)),
      unit_(unit),
      light_(lightBackground),
      maker_([this](Picture& picture, const std::function<bool()>& goesOn) {
        const PictureOf& of = picture.of;
        if (!draw_all(picture.pixels, of.coor, *prepared_, goesOn)) return false;
        return !of.picks || highlight(picture.pixels, of.coor, of.angles, *of.picks, goesOn);
      }) {
  LayerIndex index(*document_, layers_, lineTypes_);
  items_ = take_items(document_->m_EntityList, index);
  for (const Item& item : items_) ++layers_[item.layer].entities;
  viewer::for_each<ACAD_BLOCK>(document_->m_BlockList,
                               [&](ACAD_BLOCK& block) { blocks_.push_back(take_items(block.m_EntityList, index)); });
  resolve();
  rebuild();
}

Drawing::~Drawing() = default;

std::vector<Drawing::Item> Drawing::take_items(const CPtrList& list, LayerIndex& index) {
  std::vector<Item> items;
  items.reserve(static_cast<std::size_t>(list.GetCount()));
  viewer::for_each<ACAD_ENTITY>(list, [&](ACAD_ENTITY& entity) {
    Item item{&entity, index(viewer::layer_of(entity))};
    qv::visit_entity(entity, [&](auto& record) {
      if constexpr (requires { record.m_nColor; }) item.ownColor = record.m_nColor;
      if constexpr (requires { record.m_szLType; }) item.ownLineType = index.line_type(record.m_szLType);
    });
    items.push_back(item);
  });
  return items;
}

template <class F>
void Drawing::for_each_item(const F& f) {
  std::for_each(items_.begin(), items_.end(), f);
  for (const std::vector<Item>& block : blocks_) std::for_each(block.begin(), block.end(), f);
}

void Drawing::resolve() {
  const viewer::LayerTable table(*document_);
  const auto tabled = static_cast<std::size_t>(document_->m_pLayer ? std::max(document_->m_nLayer, 0) : 0);
  for_each_item([&](const Item& item) {
    viewer::resolve(*item.record, item.layer < tabled ? static_cast<int>(item.layer) : -1, table, light_);
  });
}

Drawing::AsLoaded::AsLoaded(Drawing& drawing) : still_(drawing), drawing_(drawing) {
  drawing_.for_each_item([&](const Item& item) {
    qv::visit_entity(*item.record, [&](auto& record) {
      if constexpr (requires { record.m_nColor; }) record.m_nColor = item.ownColor;
      if constexpr (requires { record.m_szLType; })
        qv::copy_text(record.m_szLType, drawing_.lineTypes_[static_cast<std::size_t>(item.ownLineType)].c_str());
    });
  });
}

Drawing::AsLoaded::~AsLoaded() {
  drawing_.resolve();
}

qv::PlotSource Drawing::AsLoaded::source(const std::string& name) const {
  viewer::NameMap<bool> on;
  for (const Layer& layer : drawing_.layers_) on.emplace(layer.name, layer.on);
  return {drawing_.document_.get(), &drawing_.notes_, name, drawing_.unit_, [on = std::move(on)](const char* layer) {
            const auto found = on.find(std::string_view(layer));
            return found == on.end() || found->second;
          }};
}

void Drawing::recolor(std::vector<Item>& items) {
  for (const Item& item : items)
    qv::visit_entity(*item.record, [&](auto& record) {
      if constexpr (requires { record.m_nColor; })
        record.m_nColor = viewer::shown_color(item.ownColor, layers_[item.layer].color, light_);
    });
}

void Drawing::set_background(bool light) {
  if (light == light_) return;
  maker_.Forget();
  light_ = light;
  recolor(items_);
  for (std::vector<Item>& block : blocks_) recolor(block);
  rebuild();
}

bool Drawing::is_shown(int entity) const {
  return items_[static_cast<std::size_t>(entity)].shown;
}

const std::string& Drawing::own_line_type(int entity) const {
  static const std::string kNone;
  const int type = items_[static_cast<std::size_t>(entity)].ownLineType;
  return type < 0 ? kNone : lineTypes_[static_cast<std::size_t>(type)];
}

int Drawing::count_in_block(int i) const {
  const ACAD_INSERT* const insert = as_insert(entity(i));
  const ACAD_BLOCK* const block = insert ? document_->GetBlock(insert) : nullptr;
  return block ? block->m_EntityList.GetCount() : 0;
}

void Drawing::for_each_text_in(int i, const ViewAngles& angles,
                               const std::function<void(ACAD_TEXT&, CFPoint)>& f) const {
  const ACAD_INSERT* const insert = as_insert(entity(i));
  const ACAD_BLOCK* const block = insert ? shown_->GetBlock(insert) : nullptr;
  if (!block) return;
  const qv::Point3 by = minus(insert->m_Insert, block->m_Base);
  CFPoint shift(by.x, by.y);
  if (!angles.is_plan()) TouYing3Dto2D(by.x, by.y, by.z, angles.a, angles.b, shift.x, shift.y);
  viewer::for_each<ACAD_ENTITY>(block->m_EntityList, [&](ACAD_ENTITY& part) {
    if (part.GetType() == ACAD_TYPE_TEXT) f(static_cast<ACAD_TEXT&>(part), shift);
  });
}

std::unique_ptr<DXF> Drawing::part(const std::vector<int>& entities) {
  const AsLoaded loaded(*this);
  auto out = std::make_unique<DXF>();
  out->Set_MaxNum_of_Tables(std::max(document_->m_nLType, 1), std::max(document_->m_nLayer, 1),
                            std::max(document_->m_nStyle, 1));
  out->New_MemDxf();
  const auto copy = [](const auto& table, int& count, auto& to, int n) {
    for (int i = 0; table && i < n; ++i) to[static_cast<std::size_t>(i)] = table[static_cast<std::size_t>(i)];
    count = n;
  };
  if (!out->m_pLType || !out->m_pLayer || !out->m_pStyle) return nullptr;
  copy(document_->m_pLType, out->m_nLType, out->m_pLType, document_->m_nLType);
  copy(document_->m_pLayer, out->m_nLayer, out->m_pLayer, document_->m_nLayer);
  copy(document_->m_pStyle, out->m_nStyle, out->m_pStyle, document_->m_nStyle);
  std::unordered_set<const ACAD_BLOCK*> blocks;
  for (const int i : entities) {
    ACAD_ENTITY& record = entity(i);
    ACAD_ENTITY* const clone = qv::CloneEntity(record);
    if (!clone || !out->m_EntityList.AddTail(clone)) return nullptr;
    const ACAD_INSERT* const insert = as_insert(record);
    const ACAD_BLOCK* const block = insert ? document_->GetBlock(insert) : nullptr;
    if (!block || !blocks.insert(block).second) continue;
    auto blockCopy = std::make_unique<ACAD_BLOCK>();
    if (!blockCopy->Copy(block) || !out->m_BlockList.AddTail(blockCopy.get())) return nullptr;
    blockCopy.release();
  }
  return out;
}

void Drawing::show_layers(const std::vector<bool>& on) {
  for (std::size_t i = 0; i < layers_.size(); ++i) layers_[i].on = on[i];
  rebuild();
}

void Drawing::show_layers_as(const Drawing& other) {
  std::unordered_map<std::string, bool> known;
  for (const Layer& layer : other.layers_) known.emplace(layer.name, layer.on);
  for (Layer& layer : layers_)
    if (const auto found = known.find(layer.name); found != known.end()) layer.on = found->second;
  rebuild();
}

bool Drawing::is_seen_in_block(const Item& item, bool insertOn) const {
  return layers_[item.layer].name == kBlockLayer ? insertOn : layers_[item.layer].on;
}

qv::PreparedDrawing& Drawing::prepared(const ViewAngles& angles) {
  if (prepared_ && preparedAngles_ == angles) return *prepared_;
  maker_.Forget();
  if (angles.is_plan())
    prepared_.emplace(*shown_);
  else
    prepared_.emplace(*shown_, angles.a, angles.b);
  preparedAngles_ = angles;
  prepared_->SetReadableHeight(kReadable);
  return *prepared_;
}

void Drawing::fonts_changed() {
  maker_.Forget();
  prepared_.reset();
}

void Drawing::rebuild() {
  maker_.Forget();
  prepared_.reset();
  shown_ = std::make_unique<Shown>();
  auto block = blocks_.begin();
  viewer::for_each<ACAD_BLOCK>(document_->m_BlockList, [&](ACAD_BLOCK& from) {
    ACAD_BLOCK& to = shown_->add_block(from, true);
    ACAD_BLOCK* off = nullptr;
    for (const Item& item : *block++) {
      if (is_seen_in_block(item, true)) to.m_EntityList.AddTail(item.record);
      if (!is_seen_in_block(item, false)) continue;
      if (!off) off = &shown_->add_block(from, false);
      off->m_EntityList.AddTail(item.record);
    }
  });
  for (Item& item : items_) {
    item.shown = layers_[item.layer].on;
    if (item.shown)
      shown_->m_EntityList.AddTail(item.record);
    else if (const ACAD_INSERT* const insert = as_insert(*item.record))
      show_insert(item, *insert);
  }
  shownCount_ = shown_->m_EntityList.GetCount();
  collect_marks();
}

/// An insert whose layer is off: what its block has on other layers is seen.
void Drawing::show_insert(Item& item, const ACAD_INSERT& insert) {
  ACAD_INSERT off = insert;
  qv::copy_text(off.m_szBlock, Shown::off_name(insert.m_szBlock).c_str());
  item.shown = shown_->GetBlock(&off) != nullptr;
  if (item.shown) shown_->add_off(insert);
}

void Drawing::collect_marks() {
  std::unordered_map<std::string, std::vector<Mark>> ofBlocks;  // relative to the insert; only blocks that have any
  auto block = blocks_.begin();
  viewer::for_each<ACAD_BLOCK>(document_->m_BlockList, [&](ACAD_BLOCK& record) {
    std::vector<Mark> marks;
    for (const Item& item : *block++)
      if (const ACAD_POINT* const p = as_point(*item.record); p && is_seen_in_block(item, true))
        marks.push_back({minus(p->m_Point, record.m_Base), item.layer});
    if (!marks.empty()) ofBlocks.emplace(record.m_szName, std::move(marks));
  });
  marks_.clear();
  for (const Item& item : items_) {
    const bool on = layers_[item.layer].on;
    if (const ACAD_POINT* const p = on ? as_point(*item.record) : nullptr) marks_.push_back({p->m_Point, item.layer});
    const ACAD_INSERT* const insert = ofBlocks.empty() ? nullptr : as_insert(*item.record);
    const auto found = insert ? ofBlocks.find(insert->m_szBlock) : ofBlocks.end();
    if (found == ofBlocks.end()) continue;
    for (const Mark& mark : found->second)
      if (on || layers_[mark.layer].name != kBlockLayer)
        marks_.push_back({plus(mark.at, insert->m_Insert), mark.layer});
  }
}

CFRect Drawing::extent(const ViewAngles& angles) {
  return angles.is_plan() ? shown_->GetFRect() : shown_->GetFRect3D(angles.a, angles.b);
}

CFRect Drawing::extent_of(int i, const ViewAngles& angles) {
  ACAD_ENTITY& record = entity(i);
  if (ACAD_INSERT* const insert = as_insert(record)) {
    ACAD_BLOCK* const block = shown_->GetBlock(insert);
    if (!block) return {insert->m_Insert.x, insert->m_Insert.y, insert->m_Insert.x, insert->m_Insert.y};
    return angles.is_plan() ? block->GetFRect(insert) : block->GetFRect3D(angles.a, angles.b, insert);
  }
  return angles.is_plan() ? record.GetFRect() : record.GetFRect3D(angles.a, angles.b);
}

void Drawing::draw(CDC& dc, const CFCoor& coor, const ViewAngles& angles, bool everyLetter) {
  const Still still(*this);
  qv::PreparedDrawing& ready = prepared(angles);
  ready.SetReadableHeight(everyLetter ? 0 : kReadable);
  draw_all(dc, coor, ready, nullptr);
  ready.SetReadableHeight(kReadable);
}

bool Drawing::draw_all(CDC& dc, const CFCoor& coor, qv::PreparedDrawing& prepared,
                       const std::function<bool()>& goesOn) {
  CFCoor view = coor;
  if (!prepared.Draw(&dc, &view, viewer::appearance(patterns_), goesOn)) return false;
  if (!dc.IsPrinting() && !dc.IsMetafile()) draw_marks(dc, view);
  return true;
}

std::shared_ptr<const Picture> Drawing::picture(const PictureOf& of, PictureMaker::Clock::duration patience,
                                                std::function<void()> ready) {
  prepared(of.angles);
  return maker_.Make(of, patience, std::move(ready));
}

void Drawing::draw_marks(CDC& dc, const CFCoor& coor) {
  const ViewAngles& angles = preparedAngles_;
  CSafeDC safe(&dc);
  for (const Mark& mark : marks_) {
    CFPoint p(mark.at.x, mark.at.y);
    if (!angles.is_plan()) TouYing3Dto2D(mark.at.x, mark.at.y, mark.at.z, angles.a, angles.b, p.x, p.y);
    const int color = viewer::shown_color(qv::kByLayer, layers_[mark.layer].color, light_);
    safe.SetPixel(coor.FPtoDP(p), ACAD_ENTITY::GetColor(color));
  }
}

void Drawing::draw_entity(ACAD_ENTITY& record, CDC& dc, CFCoor& coor, const ViewAngles& angles) const {
  if (ACAD_INSERT* const insert = as_insert(record)) {
    ACAD_BLOCK* const block = shown_->GetBlock(insert);
    if (!block) return;
    if (angles.is_plan()) return block->Draw(&dc, &coor, insert);
    return block->Draw3D(&dc, &coor, angles.a, angles.b, insert);
  }
  if (angles.is_plan()) return record.Draw(&dc, &coor, 0, 0);
  record.Draw3D(&dc, &coor, angles.a, angles.b);
}

bool Drawing::highlight(CDC& dc, const CFCoor& coor, const ViewAngles& angles, const std::vector<int>& entities,
                        const std::function<bool()>& goesOn) {
  constexpr std::size_t kManyEntities = 20000;  // wide lines take their time
  constexpr unsigned kBetween = 256;
  const bool wide = entities.size() < kManyEntities;
  CFCoor view = coor;
  unsigned unasked = 0;
  // Texts with wide strokes cannot be read.
  const auto draw_those = [&](int width, auto&& wanted) {
    HighlightContext context(dc, kHighlight, width);
    context.SetBkMode(qv::BackgroundMode::Transparent);
    return std::none_of(entities.begin(), entities.end(), [&](int i) {
      if (is_shown(i) && wanted(entity(i))) draw_entity(entity(i), context, view, angles);
      return goesOn && ++unasked % kBetween == 0 && !goesOn();
    });
  };
  return draw_those(wide ? 3 : 1, [](ACAD_ENTITY& record) { return record.GetType() != ACAD_TYPE_TEXT; }) &&
         draw_those(1, [](ACAD_ENTITY& record) { return record.GetType() == ACAD_TYPE_TEXT; });
}

std::vector<int> Drawing::pick(const CFRect& rect, bool crossing, const ViewAngles& angles) {
  std::vector<int> indices;
  int i = 0;
  for (const ACAD_ENTITY* const hit : prepared(angles).Pick(rect, crossing)) {
    const ACAD_ENTITY* const record = shown_->original(hit);
    while (items_[static_cast<std::size_t>(i)].record != record) ++i;  // both in drawing order
    indices.push_back(i);
  }
  return indices;
}

}  // namespace qv::viewer
