#include "qvtools/plot/internal/marks.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>

#include "qvtools/dxf/model/visit.h"
#include "qvtools/dxf/view/internal/outline.h"
#include "qvtools/fonts/internal/text_run.h"
#include "qvtools/plot/internal/found_text.h"

namespace qv::detail {

namespace {

constexpr double kRadian = std::numbers::pi / 180;
constexpr double kFarthest = 1e12;    // mm of paper; what lies beyond is taken for no number
constexpr double kTolerance = 0.005;  // mm, of arcs that are filled

bool is_number(PathPoint p) {
  return std::fabs(p.x) < kFarthest && std::fabs(p.y) < kFarthest;  // false for NaN
}

/// One segment of a polyline on paper.
struct Band {
  PathPoint from;
  PathPoint to;
  double bulge;
  double start;  // widths, in mm
  double end;

  bool is_wide() const { return start > 0 || end > 0; }
  bool is_even() const { return start == end; }
  /// Of an arc.
  PathPoint center() const {
    const double k = (1 - bulge * bulge) / (4 * bulge);
    return {(from.x + to.x) / 2 - (to.y - from.y) * k, (from.y + to.y) / 2 + (to.x - from.x) * k};
  }
  bool is_straight() const { return std::fabs(bulge) < 0.0001; }
  void append(Path& path) const {
    if (is_straight())
      path.line_to(to);
    else
      path.arc_to(to, center(), 4 * std::atan(bulge));
  }
};

/// The outline of a band whose width changes.
void append_tapered(const Band& band, Path& out) {
  Path middle;
  middle.move_to(band.from);
  band.append(middle);
  Path chords;
  flatten(middle, kTolerance, chords);
  const auto& pieces = chords.pieces();
  const std::size_t n = pieces.size();
  const auto side = [&](std::size_t i, double sign) {
    const PathPoint a = pieces[i > 0 ? i - 1 : 0].to;
    const PathPoint b = pieces[std::min(i + 1, n - 1)].to;
    const double length = distance(a, b);
    const double t = n > 1 ? static_cast<double>(i) / static_cast<double>(n - 1) : 0;
    const double half = length > 0 ? sign * (band.start + (band.end - band.start) * t) / 2 / length : 0;
    return PathPoint{pieces[i].to.x - (b.y - a.y) * half, pieces[i].to.y + (b.x - a.x) * half};
  };
  for (std::size_t i = 0; i < n; ++i) i == 0 ? out.move_to(side(i, -1)) : out.line_to(side(i, -1));
  for (std::size_t i = n; i-- > 0;) out.line_to(side(i, 1));
}

/// The strokes of a text as a path, and where its characters begin.
class TextPen {
 public:
  /// One shape unit is (ax, ay) along the text and (bx, by) upward, in each of the two fonts.
  struct Axes {
    double ax, ay, bx, by;
  };
  TextPen(PathPoint at, const Axes& txt, const Axes& hz, Path& out)
      : path_(out), txt_(txt), hz_(hz), here_(at), device_(at), kept_(at) {}

  struct Begin {
    const char* head;
    PathPoint at;
  };
  std::vector<Begin> begins;

  void begin(const char* head, bool big) {
    axes_ = big ? hz_ : txt_;
    begins.push_back({head, here_});
  }
  void step(double u, double v, bool down) {
    here_ = {here_.x + axes_.ax * u + axes_.bx * v, here_.y + axes_.ay * u + axes_.by * v};
    if (down) {
      if (path_.empty() || path_.end() != device_) path_.move_to(device_);
      path_.line_to(here_);
    }
    device_ = here_;
  }
  void push() { kept_ = here_; }
  // As in drawing on a device, the next stroke begins where the last one ended.
  void pop() { here_ = kept_; }
  PathPoint here() const { return here_; }

 private:
  Path& path_;
  Axes txt_;
  Axes hz_;
  Axes axes_{};
  PathPoint here_;
  PathPoint device_;
  PathPoint kept_;
};

}  // namespace

Marks::Marks(DXF& dxf, const DrawingNotes* notes, const LookOptions& options, Canvas& canvas)
    : dxf_(dxf), notes_(notes), looks_(dxf, notes, options), canvas_(canvas), blocks_(dxf) {
  canvas_layers_.assign(looks_.layers().size(), -1);
  counts_.shortPatterns = looks_.short_patterns();
}

PathRect Marks::placed_box(ACAD_BLOCK& block, const ACAD_INSERT& insert, const Placement& placement) {
  const auto [at, added] = extents_.try_emplace(&block);
  if (added) {
    ACAD_INSERT origin;
    origin.m_Insert = block.m_Base;
    at->second = block.GetFRect(&origin);
  }
  const CFRect& box = at->second;
  const double dx = static_cast<double>(insert.m_Insert.x) - block.m_Base.x;
  const double dy = static_cast<double>(insert.m_Insert.y) - block.m_Base.y;
  const PathPoint low = placement.plane(box.x1 + dx, box.y1 + dy);
  const PathPoint high = placement.plane(box.x2 + dx, box.y2 + dy);
  return {low.x, low.y, high.x, high.y};
}

void Marks::keep_figures(const Placement& placement) {
  constexpr int kFewest = 3;  // entities that are worth a figure
  if (!canvas_.keeps_figures() || placement.view) return;
  struct Use {
    ACAD_BLOCK* block;
    Inherited inherited;
  };
  std::vector<Use> often;  // in the order of their second use, so that a file does not depend on addresses
  std::map<std::pair<const ACAD_BLOCK*, Inherited>, int> uses;
  for (POSITION at = dxf_.m_EntityList.GetHeadPosition(); at;) {
    auto& entity = *static_cast<ACAD_ENTITY*>(dxf_.m_EntityList.GetNext(at));
    if (entity.GetType() != ACAD_TYPE_INSERT || !is_exactly<ACAD_INSERT>(entity)) continue;
    const auto& insert = static_cast<const ACAD_INSERT&>(entity);
    ACAD_BLOCK* const block = blocks_(insert);
    if (!block || block->m_EntityList.GetCount() < kFewest) continue;
    if (!placement.window.contains(placed_box(*block, insert, placement))) continue;
    bool frozen = false;
    const Inherited inherited =
        looks_.inherited(looks_.attributes(insert, insert.m_szLayer, "BYLAYER", insert.m_nColor), frozen);
    if (frozen) continue;
    if (++uses[{block, inherited}] == 2) often.push_back({block, inherited});
  }
  for (const Use& use : often) {
    kept_[{use.block, use.inherited}] = canvas_.begin_figure();
    Placement own = placement;
    own.x = use.block->m_Base.x;
    own.y = use.block->m_Base.y;
    own.at = {};
    own.window = {-kFarthest, -kFarthest, kFarthest, kFarthest};
    draw_list(use.block->m_EntityList, own, &use.inherited);
    flush_fills();
    canvas_.end_figure();
  }
}

void Marks::draw(const Placement& placement) {
  draw_list(dxf_.m_EntityList, placement, nullptr);
  flush_fills();
}

void Marks::draw_list(const CPtrList& list, const Placement& placement, const Inherited* inherited) {
  for (POSITION at = list.GetHeadPosition(); at;) {
    auto& entity = *static_cast<ACAD_ENTITY*>(list.GetNext(at));
    visit_record(
        entity,
        [&](auto& record) {
          if constexpr (std::is_same_v<decltype(record), ACAD_INSERT&>) {
            if (!inherited) draw_insert(record, placement);  // inserts within blocks are passed over
          } else {
            draw_record(record, placement, inherited);
          }
        },
        [&](ACAD_ENTITY&) { ++counts_.ownKinds; });
  }
}

void Marks::draw_insert(const ACAD_INSERT& insert, const Placement& placement) {
  ACAD_BLOCK* const block = blocks_(insert);
  if (!block) return;
  bool frozen = false;
  const Inherited inherited =
      looks_.inherited(looks_.attributes(insert, insert.m_szLayer, "BYLAYER", insert.m_nColor), frozen);
  if (frozen) {
    ++counts_.hidden;
    return;
  }
  if (const auto kept = kept_.find({block, inherited});
      kept != kept_.end() && placement.window.contains(placed_box(*block, insert, placement))) {
    flush_fills();
    canvas_.place(kept->second, placement(insert.m_Insert));
    return;
  }
  Placement placed = placement;
  placed.shift[0] = static_cast<double>(insert.m_Insert.x) - block->m_Base.x;
  placed.shift[1] = static_cast<double>(insert.m_Insert.y) - block->m_Base.y;
  placed.shift[2] = static_cast<double>(insert.m_Insert.z) - block->m_Base.z;
  draw_list(block->m_EntityList, placed, &inherited);
}

template <class Record>
void Marks::draw_record(const Record& record, const Placement& placement, const Inherited* inherited) {
  std::string_view ltype = "BYLAYER";
  int color = kByLayer;
  if constexpr (requires { record.m_szLType; }) ltype = record.m_szLType;
  if constexpr (requires { record.m_nColor; }) color = record.m_nColor;
  look_ = &looks_.of(looks_.attributes(record, record.m_szLayer, ltype, color), inherited);
  if (!look_->shown) {
    ++counts_.hidden;
    return;
  }
  entity_ = &record;
  path_.clear();
  add(record, placement);
}

void Marks::set_layer() {
  flush_fills();
  go_to_layer(look_->layer);
}

void Marks::go_to_layer(int of_looks) {
  const auto index = static_cast<std::size_t>(of_looks);
  int& layer = canvas_layers_[index];
  if (layer < 0) layer = canvas_.add_layer({looks_.layers()[index].name});
  canvas_.set_layer(layer);
}

void Marks::stroke(const Stroke& pen, const DashPattern* pattern, const Placement& to) {
  if (path_.empty()) return;
  const auto& pieces = path_.pieces();
  if (!std::all_of(pieces.begin(), pieces.end(), [](const Path::Piece& p) { return is_number(p.to); })) {
    ++counts_.notNumbers;
    return;
  }
  const PathRect box = bounds(path_);
  if (box.misses(to.window)) {
    ++counts_.outside;
    return;
  }
  const Path* shown = &path_;
  Stroke dashes = pen;
  if (pattern) {
    dashed_.clear();
    dash(path_, *pattern, pen.width, to.window, dashed_);
    dashes.ends = Stroke::Ends::Butt;
    shown = &dashed_;
  }
  if (!to.window.contains(box)) {
    clipped_.clear();
    clip(*shown, to.window, clipped_);
    shown = &clipped_;
  }
  if (shown->empty()) {
    ++counts_.outside;
    return;
  }
  set_layer();
  canvas_.stroke(*shown, dashes);
}

void Marks::fill(const Placement& to) {
  const auto& pieces = path_.pieces();
  if (!std::all_of(pieces.begin(), pieces.end(), [](const Path::Piece& p) { return is_number(p.to); })) {
    ++counts_.notNumbers;
    return;
  }
  const Path* shown = &path_;
  if (!to.window.contains(bounds(path_))) {
    clipped_.clear();
    clip_polygon(path_, to.window, clipped_);
    shown = &clipped_;
  }
  if (shown->empty()) {
    ++counts_.outside;
    return;
  }
  constexpr std::size_t kMost = 4096;
  const bool same = fills_look_.layer == look_->layer && fills_look_.stroke.ink == look_->stroke.ink;
  if (!same || fills_.pieces().size() > kMost) flush_fills();
  fills_look_ = *look_;
  for (const Path::Piece& piece : shown->pieces())
    piece.kind == Path::Kind::Move ? fills_.move_to(piece.to) : fills_.line_to(piece.to);
}

void Marks::flush_fills() {
  if (fills_.empty()) return;
  go_to_layer(fills_look_.layer);
  canvas_.fill(fills_, fills_look_.stroke.ink);
  fills_.clear();
}

void Marks::add(const ACAD_POINT& r, const Placement& to) {
  const PathPoint at = to(r.m_Point);
  path_.move_to(at);
  path_.line_to(at);
  stroke(look_->stroke, look_->pattern, to);
}

void Marks::add(const ACAD_LINE& r, const Placement& to) {
  path_.move_to(to(r.m_Start));
  path_.line_to(to(r.m_End));
  stroke(look_->stroke, look_->pattern, to);
}

void Marks::add(const ACAD_CIRCLE& r, const Placement& to) {
  const PathPoint center = to(r.m_Center);
  const PathPoint right{center.x + std::fabs(r.m_fRadius) * to.scale, center.y};
  path_.move_to(right);
  path_.arc_to(right, center, 2 * std::numbers::pi);
  stroke(look_->stroke, look_->pattern, to);
}

void Marks::add(const ACAD_ARC& r, const Placement& to) {
  // The sweep by which extents and picks are measured.
  double sweep = (static_cast<double>(r.m_fEndAngle) - r.m_fStartAngle) * kRadian;
  if (sweep < 0) sweep += 2 * std::numbers::pi;
  if (!(sweep > 0)) return;
  sweep = std::min(sweep, 2 * std::numbers::pi);
  const PathPoint center = to(r.m_Center);
  const PathPoint from = turned({center.x + r.m_fRadius * to.scale, center.y}, center, r.m_fStartAngle * kRadian);
  path_.move_to(from);
  path_.arc_to(turned(from, center, sweep), center, sweep);
  stroke(look_->stroke, look_->pattern, to);
}

void Marks::add(const ACAD_SOLID& r, const Placement& to) {
  PathPoint p[] = {to(r.m_Corner[0]), to(r.m_Corner[1]), to(r.m_Corner[3]), to(r.m_Corner[2])};
  // Counter-clockwise: neighbours that are filled together must not cancel each other.
  const double area = (p[2].x - p[0].x) * (p[3].y - p[1].y) - (p[3].x - p[1].x) * (p[2].y - p[0].y);
  if (area < 0) std::swap(p[1], p[3]);
  path_.move_to(p[0]);
  for (int i = 1; i < 4; ++i) path_.line_to(p[i]);
  fill(to);
}

void Marks::add(const ACAD_3DFACE& r, const Placement& to) {
  const auto corner = [&](int i) { return to(r.m_Corner[i]); };
  path_.move_to(corner(0));
  for (int i = 1; i <= 4; ++i)
    if (corner(i % 4) != path_.end()) path_.line_to(corner(i % 4));
  if (path_.pieces().size() > 1) stroke(look_->stroke, look_->pattern, to);
}

void Marks::add(const ACAD_POLYLINE& r, const Placement& to) {
  // Vertices without widths of their own take the polyline's, whatever others have.
  const auto band = [&](const ACAD_VERTEX& a, const ACAD_VERTEX& b) {
    const bool own = a.m_fStartWidth != 0 || a.m_fEndWidth != 0;
    const double start = own ? a.m_fStartWidth : r.m_fStartWidth;
    const double end = own ? a.m_fEndWidth : r.m_fEndWidth;
    return Band{to(a.m_Point), to(b.m_Point), a.m_fBulge, start * to.scale, end * to.scale};
  };
  std::vector<Band> bands;
  const ACAD_VERTEX* const first = first_vertex(r);
  const ACAD_VERTEX* last = nullptr;
  for (const ACAD_VERTEX& vertex : r.m_Vertices) {
    if (!is_on_curve(r, vertex)) continue;
    if (last) bands.push_back(band(*last, vertex));
    last = &vertex;
  }
  if ((r.m_nFlags & 1) != 0 && first != last) bands.push_back(band(*last, *first));
  // A polyline of one point is a dot.
  const auto is_point = [](const Band& b) { return b.from == b.to; };
  if (!std::all_of(bands.begin(), bands.end(), is_point)) std::erase_if(bands, is_point);

  // Runs of segments of one even width are a path each.
  const auto same = [](const Band& a, const Band& b) { return a.is_even() && b.is_even() && a.start == b.start; };
  for (std::size_t i = 0; i < bands.size();) {
    std::size_t end = i + 1;
    while (end < bands.size() && same(bands[i], bands[end])) ++end;
    path_.clear();
    if (!bands[i].is_even()) {
      append_tapered(bands[i], path_);
      fill(to);
    } else {
      path_.move_to(bands[i].from);
      for (std::size_t k = i; k < end; ++k) bands[k].append(path_);
      Stroke pen = look_->stroke;
      if (bands[i].start > pen.width) {
        pen.width = bands[i].start;
        pen.ends = Stroke::Ends::Butt;
        pen.joins = Stroke::Joins::Mitred;
      }
      stroke(pen, look_->pattern, to);
    }
    i = end;
  }
}

void Marks::add(const ACAD_TEXT& r, const Placement& to) {
  const CShx& font = G_ShapeFont;
  const PathPoint at = to(r.m_Insert);
  const double height = r.m_fHeight * to.scale;
  const double angle = r.m_fRotation * kRadian;
  if (!is_number(at) || !(height > 0) || !(height < kFarthest)) {
    ++counts_.notNumbers;
    return;
  }
  const auto axes = [&](double units) {
    const double across = height * r.m_fWidthFactor / units;
    const double up = height / units;
    return TextPen::Axes{std::cos(angle) * across, std::sin(angle) * across, -std::sin(angle) * up,
                         std::cos(angle) * up};
  };
  const bool txt = std::strstr(r.m_szStyle, "STANDARD") != nullptr;
  const std::string drawn = drawn_text(r.m_szText);
  TextPen pen(at, axes(font.m_fTxtHeight), axes(font.m_fHzHeight), path_);
  txt ? run_txt(font, drawn.c_str(), pen) : run_hz(font, drawn.c_str(), pen);
  if (pen.begins.empty()) {
    if (*r.m_szText) ++counts_.letterless;
    return;
  }
  // Letters are never dashed, and no bolder than a fourteenth of their height, so that dense ones stay readable
  // (source: GB/T 14691, type A).
  Stroke pen_of_letters = look_->stroke;
  pen_of_letters.width = std::min(pen_of_letters.width, std::max(height / 14, kThinnestLine));
  stroke(pen_of_letters, nullptr, to);

  // What lies wholly inside can be found.
  const PathPoint up{-std::sin(angle) * height, std::cos(angle) * height};
  const auto inside = [&](PathPoint p) {
    return to.window.contains(p) && to.window.contains(PathPoint{p.x + up.x, p.y + up.y});
  };
  const DrawingNotes::Entity* const note = notes_ ? notes_->find(entity_) : nullptr;
  const auto place = [&](std::string text, PathPoint from, PathPoint until) {
    if (text.empty()) return;
    set_layer();
    canvas_.text({std::move(text), from, height, angle, distance(from, until)});
  };
  if (inside(at) && inside(pen.here()))
    return place(note && !note->text.empty() ? note->text : found_text(r.m_szText), at, pen.here());
  for (std::size_t i = 0; i < pen.begins.size();) {
    const auto ends = [&](std::size_t k) { return k + 1 < pen.begins.size() ? pen.begins[k + 1].at : pen.here(); };
    if (!inside(pen.begins[i].at) || !inside(ends(i))) {
      ++i;
      continue;
    }
    std::size_t last = i;
    while (last + 1 < pen.begins.size() && inside(ends(last + 1))) ++last;
    const char* const head = pen.begins[i].head;
    const std::string part = last + 1 < pen.begins.size()
                                 ? std::string(head, static_cast<std::size_t>(pen.begins[last + 1].head - head))
                                 : std::string(head);
    place(found_text(part), pen.begins[i].at, ends(last));
    i = last + 1;
  }
}

}  // namespace qv::detail
