#include "qvtools/dxf/view/prepared_drawing.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>
#include <optional>
#include <unordered_map>

#include "qvtools/display/internal/world_window.h"
#include "qvtools/dxf/model/internal/name_index.h"
#include "qvtools/dxf/model/internal/points.h"
#include "qvtools/dxf/view/internal/block_stamp.h"
#include "qvtools/dxf/view/internal/draw.h"
#include "qvtools/dxf/view/internal/pick.h"
#include "qvtools/dxf/view/internal/reach.h"
#include "qvtools/services/internal/out_of_memory.h"
#include "qvtools/system/internal/prefetch.h"

namespace qv {

namespace {

using detail::add_point;
using detail::Box;
using detail::Plane;
using detail::reach;
using detail::text_reach;
using detail::widen;

/// Whether a line lies inside the rectangle, more than so far off its border: then there is nothing more to ask.
bool lies_within(const Box& line, const CFRect& rect, double off) {
  const auto inside = [&](float x, float y) {
    return x - off > rect.x1 && x + off < rect.x2 && y - off > rect.y1 && y + off < rect.y2;
  };
  return inside(line.x1, line.y1) && inside(line.x2, line.y2);
}

}  // namespace

/// Makes the items and the grid.
struct PreparedDrawing::Builder {
  PreparedDrawing& to;
  DXF& dxf;
  Plane plane;
  detail::InsertedBlocks inserted{dxf};
  std::unordered_map<const ACAD_BLOCK*, int> blocks{};  // their indices

  void add_items() {
    to.items_.reserve(static_cast<std::size_t>(dxf.m_EntityList.GetCount()));
    detail::walk(dxf.m_EntityList, [&](ACAD_ENTITY& entity) {
      if (entity.GetType() == ACAD_TYPE_INSERT) return add_insert(static_cast<ACAD_INSERT&>(entity));
      detail::visit_record(
          entity, [&](auto& record) { add_record(record); },
          [&](ACAD_ENTITY& own) { add(own, Box::everything(), Kind::Other, 0); });
    });
  }

  void note_heights(const auto& record) {
    detail::for_each_point(record, [&](const Point3& p) { note_height(p); });
  }
  void note_height(const Point3& p) {
    if (!(std::fabs(p.z) <= to.highest_)) to.highest_ = std::fabs(p.z);  // NaN too
  }

  void add_record(auto& record) { note_heights(record), add(record, reach(record, plane), Kind::Other, 0); }

  void add(ACAD_ENTITY& entity, const Box& box, Kind kind, int index, int color = 0, PenStyle style = PenStyle::Solid) {
    if (!box.is_empty()) to.items_.push_back({box, &entity, color, index, kind, style, true});
  }

  void add_record(ACAD_LINE& line) {
    const CFPoint from = plane(line.m_Start);
    const CFPoint until = plane(line.m_End);
    note_heights(line);
    const PenStyle style = detail::pen_style(line.m_szLType);
    to.items_.push_back({{from.x, from.y, until.x, until.y}, &line, line.m_nColor, 0, Kind::Line, style, true});
  }

  void add_record(ACAD_TEXT& text) {
    const CFPoint at = plane(text.m_Insert);
    note_heights(text);
    Box box;
    add_point(box, at);
    widen(box, text.m_fHeight * note_reach(text));
    const double length = detail::text_width(text, text.m_fHeight);
    const double angle = text.m_fRotation * std::numbers::pi / 180;
    const Box ends{at.x, at.y, static_cast<float>(at.x + length * std::cos(angle)),
                   static_cast<float>(at.y + length * std::sin(angle))};
    add(text, box, Kind::Text, static_cast<int>(to.baseLines_.size()), text.m_nColor,
        detail::pen_style(text.m_szLType));
    to.baseLines_.push_back({ends, text.m_fHeight});
  }

  /// How far the text reaches, in its heights.
  double note_reach(const ACAD_TEXT& text) {
    const double reach = text_reach(text);
    to.longestText_ = std::max(to.longestText_, static_cast<float>(reach));
    return reach;
  }

  void add_insert(ACAD_INSERT& insert) {
    ACAD_BLOCK* const block = inserted(insert);
    if (!block) return;
    const int index = index_of(*block);
    const Box& unmoved = to.blocks_[static_cast<std::size_t>(index)].reach;
    if (unmoved.is_empty()) return;
    note_height(insert.m_Insert);
    const CFPoint shift = plane(detail::displacement(*block, insert));
    Box box;
    add_point(box, {unmoved.x1 + shift.x, unmoved.y1 + shift.y});
    add_point(box, {unmoved.x2 + shift.x, unmoved.y2 + shift.y});
    widen(box, 0);
    add(insert, box, Kind::Insert, index);
  }

  int index_of(ACAD_BLOCK& block) {
    const auto [found, isNew] = blocks.try_emplace(&block, static_cast<int>(to.blocks_.size()));
    if (!isNew) return found->second;
    Block& added = to.blocks_.emplace_back(Block{&block, {}, 0});
    note_height(block.m_Base);
    detail::walk_block(block, [&added, this](ACAD_ENTITY& entity) {
      ++added.entities;
      if (entity.GetType() == ACAD_TYPE_TEXT) note_reach(static_cast<ACAD_TEXT&>(entity));
      added.reach.add(detail::visit_record(
          entity, [&](const auto& record) { return note_heights(record), reach(record, plane); },
          [](ACAD_ENTITY&) { return Box::everything(); }));
      return false;
    });
    return found->second;
  }

  void add_grid() {
    std::vector<Box> boxes;
    boxes.reserve(to.items_.size());
    for (const Item& item : to.items_) {
      const Box& b = item.box;
      boxes.push_back({std::min(b.x1, b.x2), std::min(b.y1, b.y2), std::max(b.x1, b.x2), std::max(b.y1, b.y2)});
      // A box with NaN lies anywhere.
      if (!(boxes.back().x2 - boxes.back().x1 + boxes.back().y2 - boxes.back().y1 < Box::kInfinity))
        boxes.back() = Box::everything();
    }
    to.grid_ = detail::BoxGrid(boxes);
    to.drawn_.assign((boxes.size() + 63) / 64, 0);
    to.asked_ = to.drawn_;
  }
};

PreparedDrawing::PreparedDrawing(DXF& dxf) : plan_(true), a_(0), b_(HALF_PI_F) {
  prepare(dxf, Plane());
}

PreparedDrawing::PreparedDrawing(DXF& dxf, float a, float b) : plan_(false), a_(a), b_(b) {
  prepare(dxf, Plane(a, b));
}

void PreparedDrawing::prepare(DXF& dxf, const Plane& plane) {
  const auto build = [&] {
    Builder builder{*this, dxf, plane};
    builder.add_items();
    builder.add_grid();
    return true;
  };
  if (detail::unless_out_of_memory(build, false)) return;
  items_.clear();
  blocks_.clear();
  grid_ = {};
}

template <class Misses, class F>
void PreparedDrawing::for_each_in_cells(Marks& marks, const std::vector<std::uint32_t>& cells, const Misses& misses,
                                        const F& f) {
  for (const std::uint32_t cell : cells)
    grid_.for_each_of(cell, [&](std::uint32_t i) {
      if (!misses(items_[i].box)) marks[i / 64] |= std::uint64_t{1} << (i % 64);
    });
  for (std::size_t word = 0; word < marks.size(); ++word) {
    for (std::uint64_t bits = std::exchange(marks[word], 0); bits; bits &= bits - 1) {
      const Item& item = items_[word * 64 + static_cast<std::size_t>(std::countr_zero(bits))];
      if (item.shown && f(item)) return;
    }
  }
}

template <class Misses, class F>
void PreparedDrawing::for_each_shown(Marks& marks, const Misses& misses, const F& f) {
  std::size_t reached = 0;
  const std::vector<std::uint32_t> cells = grid_.cells_in(misses, reached);
  // Where most is reached, going through all in order is faster than gathering.
  if (reached < items_.size() / 4) return for_each_in_cells(marks, cells, misses, f);
  constexpr std::size_t kAhead = 24;
  for (std::size_t i = 0; i < items_.size(); ++i) {
    const Item& next = items_[std::min(i + kAhead, items_.size() - 1)];
    if (next.kind != Kind::Line) {
      detail::prefetch(next.entity);
      detail::prefetch(reinterpret_cast<std::uintptr_t>(next.entity) + 64);
    }
    const Item& item = items_[i];
    if (item.shown && !misses(item.box) && f(item)) return;
  }
}

bool PreparedDrawing::Draw(CDC* dc, CFCoor* coor, const Appearance& appearance, const std::function<bool()>& goesOn) {
  detail::DrawingContext to = detail::drawing_context(dc, *coor, appearance);
  if (goesOn) to.ask(goesOn);
  return detail::unless_out_of_memory([&] { return draw(coor, to), true; }, false) && !to.is_given_up();
}

/// The blocks of one drawing: those of which there are more than a few are copied.
class PreparedDrawing::Blocks {
 public:
  Blocks(const std::vector<Block>& blocks, const Plane& plane, int margin, detail::DrawingContext& to)
      : blocks_(blocks), plane_(plane), margin_(margin), to_(to), copies_(detail::takes_stamps(to)) {}

  void draw(const ACAD_INSERT& insert, std::size_t index) {
    const Block& block = blocks_[index];
    if (copies_ && block.entities >= kFewest) {
      if (uses_.empty()) uses_.resize(blocks_.size());
      Use& use = uses_[index];
      if (++use.inserts == kInserts && can_be_stamped(*block.block))
        use.stamp.emplace(*block.block, block.entities, block.reach, margin_, plane_, to_);
      if (use.stamp && use.stamp->draw(plane_(detail::displacement(*block.block, insert)), to_)) return;
    }
    detail::draw_block(*block.block, insert, plane_, to_);
  }

 private:
  static constexpr int kFewest = 8;  // entities of a block that is copied
  static constexpr int kInserts =
      12;  // the first that is copied: each of sixteen pictures takes up to two drawings to make
  struct Use {
    int inserts = 0;
    std::optional<detail::BlockStamp> stamp;
  };
  bool can_be_stamped(const ACAD_BLOCK& block) const {
    return !detail::walk_block(block, [&](ACAD_ENTITY& entity) { return !detail::can_be_stamped(entity, to_); });
  }

  const std::vector<Block>& blocks_;
  Plane plane_;
  int margin_;
  detail::DrawingContext& to_;
  bool copies_;
  std::vector<Use> uses_;
};

void PreparedDrawing::draw(CFCoor* coor, detail::DrawingContext& to) {
  to.dc()->SetBkMode(BackgroundMode::Transparent);
  const Plane plane = plan_ ? Plane() : Plane(a_, b_);
  // Text is drawn in whole pixels of height: up to half a pixel higher, and longer likewise, than it is.
  const double margin = detail::WorldWindow::kMargin + longestText_ / 2;
  const detail::WorldWindow window(to.safe(), *coor, margin);
  const auto is_readable = [&](float height) {
    return coor->FPtoDP(std::fabs(static_cast<double>(height))) >= readable_;
  };
  Blocks blocks(blocks_, plane, static_cast<int>(std::min(margin, 1e4)) + 1, to);
  for_each_shown(
      drawn_, [&](const Box& box) { return window.misses(box.x1, box.y1, box.x2, box.y2); },
      [&](const Item& item) {
        const auto index = static_cast<std::size_t>(item.index);
        const Box* line = item.kind == Kind::Line ? &item.box : nullptr;
        if (item.kind == Kind::Text && !is_readable(baseLines_[index].height)) line = &baseLines_[index].ends;
        if (line)
          to.draw_line({line->x1, line->y1}, {line->x2, line->y2}, item.style, item.color);
        else if (item.kind == Kind::Insert)
          blocks.draw(static_cast<ACAD_INSERT&>(*item.entity), index);
        else
          detail::draw_entity(*item.entity, plane, to);
        return to.is_given_up();
      });
}

std::vector<const PreparedDrawing::Item*> PreparedDrawing::items_in(const Box& window) {
  std::vector<const Item*> items;
  for_each_shown(
      asked_,
      [&](const Box& b) {
        return std::max(b.x1, b.x2) < window.x1 || std::min(b.x1, b.x2) > window.x2 ||
               std::max(b.y1, b.y2) < window.y1 || std::min(b.y1, b.y2) > window.y2;
      },
      [&](const Item& item) { return items.push_back(&item), false; });
  return items;
}

bool PreparedDrawing::picks(const Item& item, const CFRegion& region, int mode) const {
  if (item.kind != Kind::Insert) return item.entity->HitTest(region, mode, a_, b_) != 0;
  ACAD_BLOCK& block = *blocks_[static_cast<std::size_t>(item.index)].block;
  return block.HitTest(region, mode, a_, b_, static_cast<ACAD_INSERT*>(item.entity)) != 0;
}

std::vector<ACAD_ENTITY*> PreparedDrawing::Pick(const CFRect& rect, int mode) {
  std::vector<ACAD_ENTITY*> taken;
  if (!detail::unless_out_of_memory([&] { return pick(rect, mode, taken), true; }, false)) taken.clear();
  return taken;
}

void PreparedDrawing::pick(const CFRect& rect, int mode, std::vector<ACAD_ENTITY*>& taken) {
  const CFRegion region{CFRect(rect)};
  Box reach;
  add_point(reach, {rect.x1, rect.y1});
  add_point(reach, {rect.x2, rect.y2});
  // The angles of the plan are those of a float, and heights show in them a little: above and base of a block and of
  // what it holds.
  constexpr double kOfHeight = 3 * 5e-8;
  const double off = plan_ ? kOfHeight * highest_ : 0;
  if (std::isfinite(off))
    widen(reach, off);
  else
    reach = Box::everything();
  for (const Item* const item : items_in(reach)) {
    const bool within = item->kind == Kind::Line && lies_within(item->box, rect, off);
    if (within || picks(*item, region, mode)) taken.push_back(item->entity);
  }
}

void PreparedDrawing::Show(const std::function<bool(ACAD_ENTITY&)>& shown) {
  for (Item& item : items_) item.shown = shown(*item.entity);
}

}  // namespace qv
