#include "qvtools/widgets/viewer/view.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace qv::viewer {

namespace {

constexpr double kWheelStep = 1.25;
constexpr double kZoomStep = 1.1;

}  // namespace

View::View(qv::Window& window, Listener& listener) : qv::CatchTool(&window), window_(window), listener_(listener) {
  SwitchState(DRAW_PICK, kChanged, 1);
}

// ---------------------------------------------------------------- the drawing

void View::open(std::unique_ptr<Drawing> drawing) {
  drawing_ = std::move(drawing);
  picture_.reset();
  SetCurrentAngles({});
  set_mode(Mode::Pick);
  cancel();
  measuring_.clear();
  frame_.reset();
  ClearHistory();
  clear_picks();
  measure();
  fit();
  listener_.on_measures_changed();
}

void View::reload(std::unique_ptr<Drawing> drawing) {
  if (!drawing_) return open(std::move(drawing));
  drawing->show_layers_as(*drawing_);
  clear_picks();
  drawing_ = std::move(drawing);
  drawing_changed();
  if (everything_) fit();
}

void View::drawing_changed() {
  if (!drawing_) return;
  measure();
  const std::size_t before = picks_.size();
  std::erase_if(picks_, [&](int i) { return !drawing_->is_shown(i); });
  shownPicks_.reset();
  if (picks_.size() != before) listener_.on_picks_changed();
  repaint();
}

void View::fonts_changed() {
  if (drawing_) drawing_->fonts_changed();
  drawing_changed();
}

void View::set_light(bool light) {
  light_ = light;
  if (drawing_) drawing_->set_background(light);
  repaint();
}

void View::measure() {
  extentAngles_ = CurrentAngles();
  extent_ = viewer::with_margin(drawing_ ? drawing_->extent(extentAngles_) : CFRect());
}

void View::repaint() {
  window_.Invalidate(true);
}

void View::paint(CDC& dc) {
  if (drawing_) {
    drawing_->draw(dc, CurrentView(), CurrentAngles());
    drawing_->highlight(dc, CurrentView(), CurrentAngles(), picks_);
  }
  OnDraw(dc, 1);
}

void View::show(qv::BitmapContext& dc, COLORREF background) {
  constexpr std::chrono::seconds kFirst(2);  // that the window stays empty rather than that nothing is seen
  OnDraw(dc, 0);
  if (!drawing_) return OnDraw(dc, 1);
  if (!shownPicks_) shownPicks_ = std::make_shared<const std::vector<int>>(picks_);
  const PictureOf of{dragged_view(), CurrentAngles(), {dc.Width(), dc.Height()}, background, shownPicks_};
  std::shared_ptr<const Picture> sharp =
      drawing_->picture(of, picture_ ? patience_ : std::max<PictureMaker::Clock::duration>(patience_, kFirst),
                        [this] { window_.Post(kPictureThere); });
  if (sharp) picture_ = std::move(sharp);
  dc.Clear(background);
  if (picture_ && picture_->of.angles == of.angles) {
    const CFCoor &from = picture_->of.coor, &to = of.coor;
    dc.CopyScaled(picture_->pixels, (double{from.origin.x} - to.origin.x) * to.scale,
                  (double{to.origin.y} - from.origin.y) * to.scale, double{to.scale} / from.scale);
  } else if (picture_) {
    dc.CopyScaled(picture_->pixels, 0, 0, 1);  // seen from elsewhere
  }
  // Where it is dragged, the pointer has a shape of its own.
  if (!dragFrom_) OnDraw(dc, 1);
}

CFCoor View::dragged_view() const {
  CFCoor view = CurrentView();
  if (!dragFrom_) return view;
  const CFPoint from = view.DPtoFP(*dragFrom_), to = view.DPtoFP(point_);
  view.origin.x = static_cast<float>(view.origin.x + (double{from.x} - to.x));
  view.origin.y = static_cast<float>(view.origin.y + (double{from.y} - to.y));
  return view;
}

void View::refresh() {
  window_.ClientContext();
  window_.ReleaseClientContext();
}

namespace {

/// A pen for what lies over a drawing, while it lives.
class OverlayPen {
 public:
  OverlayPen(CDC& dc, COLORREF color, int width)
      : dc_(dc), pen_{qv::PenStyle::Solid, width, color}, before_(dc.SelectObject(&pen_)) {}
  ~OverlayPen() { dc_.SelectObject(before_); }
  OverlayPen(const OverlayPen&) = delete;
  OverlayPen& operator=(const OverlayPen&) = delete;

 private:
  CDC& dc_;
  CPen pen_;
  const CPen* before_;
};

}  // namespace

void View::paint_overlay(CDC& dc, std::vector<OverlayLabel>& labels) const {
  constexpr COLORREF kMeasure[] = {qv::rgb(90, 190, 255), qv::rgb(0, 90, 200)};
  constexpr COLORREF kMark[] = {qv::rgb(255, 200, 0), qv::rgb(200, 80, 0)};
  if (!drawing_) return;
  dc.SetBkMode(qv::BackgroundMode::Transparent);
  {
    const OverlayPen pen(dc, kMeasure[light_], 1);
    for (const Measured& measured : measuring_.results()) draw_measured(dc, CurrentView(), measured, labels);
    if (mode_ == Mode::Measure)
      draw_measured(dc, CurrentView(), Located() ? measuring_.with(*Located()) : measuring_.present(), labels);
  }
  const OverlayPen pen(dc, kMark[light_], 2);
  if (frame_) draw_frame(dc);
  if (mode_ != Mode::Measure || !inside_ || !Caught()) return;
  constexpr int kMarkSize = 17;
  const qv::PlanePoint& at = Caught()->at;
  const CPoint pixel = CurrentView().FPtoDP(CFPoint(static_cast<float>(at.x), static_cast<float>(at.y)));
  qv::DrawCatchMark(dc, pixel, Caught()->kind, kMarkSize);
}

void View::draw_frame(CDC& dc) const {
  constexpr int kMargin = 6;
  CRect r = CurrentView().FPtoDP(*frame_);
  CSafeDC safe(&dc);
  const int left = std::min(r.left, r.right) - kMargin, right = std::max(r.left, r.right) + kMargin;
  const int top = std::min(r.top, r.bottom) - kMargin, bottom = std::max(r.top, r.bottom) + kMargin;
  safe.MoveTo(left, top);
  safe.LineTo(right, top);
  safe.LineTo(right, bottom);
  safe.LineTo(left, bottom);
  safe.LineTo(left, top);
}

void View::draw_into(CDC& dc, CSize size, bool everyLetter) {
  if (!drawing_) return;
  const CRect client = window_.ClientRect();
  if (size == CSize(client.Width(), client.Height()))
    return drawing_->draw(dc, CurrentView(), CurrentAngles(), everyLetter);
  drawing_->draw(dc, viewer::fitted(seen(), size), CurrentAngles(), everyLetter);
}

// ---------------------------------------------------------------- navigation

int View::GetMaxRect(CFPoint& p1, CFPoint& p2) {
  if (!drawing_) return 0;
  p1 = extent_.Nearest();
  p2 = extent_.Furthest();
  return 1;
}

void View::PrepareDraw(const CPoint*, const CPoint*) {
  everything_ = inWheel_ = false;
  if (extentAngles_ != CurrentAngles()) measure();
  if (mode_ == Mode::Measure && inside_) Locate(point_);
  listener_.on_view_changed();
}

void View::fit() {
  if (!drawing_) return;
  SetCurrentView(Fitted(extent_.Nearest(), extent_.Furthest()).value_or(CFCoor()));
  everything_ = true;
  repaint();
  listener_.on_view_changed();
}

template <class Change>
void View::keeping_corner(const Change& change) {
  const bool given = HasCorner();
  const CFPoint corner = CurrentView().DPtoFP(Corner());
  change();
  if (!given) return;
  OnRButtonDown(0, point_);
  OnLButtonDown(0, CurrentView().FPtoDP(corner));
  OnMouseMove(0, point_);
}

void View::show_all() {
  ShowAll();
  everything_ = drawing_ != nullptr;
}

CFRect View::seen() const {
  return CurrentView().DPtoFP(window_.ClientRect());
}

double View::clamped_zoom(double factor) const {
  constexpr double kMost = 1e4;    // times the drawing
  constexpr double kLeast = 1e-5;  // of its largest coordinate: below, neighbouring numbers are pixels apart
  const double width = window_.ClientRect().Width() / static_cast<double>(CurrentView().GetScale());
  const double largest = std::max(std::max(std::fabs(extent_.x1), std::fabs(extent_.x2)),
                                  std::max(std::fabs(extent_.y1), std::fabs(extent_.y2)));
  const double side = std::max(extent_.Width(), extent_.Height());
  const double wanted = std::clamp(width / factor, std::max(kLeast * largest, 1e-4), kMost * side);
  return width / wanted;
}

void View::zoom_out() {
  if (drawing_ && clamped_zoom(kZoomStep) >= kZoomStep) keeping_corner([&] { ShowZoomOut(); });
}

void View::zoom_in() {
  if (drawing_ && clamped_zoom(1 / kZoomStep) <= 1 / kZoomStep) keeping_corner([&] { ShowZoomIn(); });
}

void View::show_entity(int entity) {
  if (!drawing_) return;
  const CFRect rect = viewer::with_margin(drawing_->extent_of(entity, CurrentAngles()));
  ShowRect(rect.Nearest(), rect.Furthest());
}

void View::restore(const CFRect& rect, const ViewAngles& angles) {
  if (!drawing_) return;
  SetCurrentAngles(angles);
  ShowRect(rect.Nearest(), rect.Furthest());
  ClearHistory();
}

void View::show_picked_layers(bool only) {
  if (!drawing_ || picks_.empty()) return;
  std::vector<bool> on;
  for (const Layer& layer : drawing_->layers()) on.push_back(!only && layer.on);
  for (const int i : picks_) {
    const auto index = static_cast<std::size_t>(&drawing_->layer_of(i) - drawing_->layers().data());
    on[index] = only;
  }
  drawing_->show_layers(on);
  drawing_changed();
}

void View::show_all_layers() {
  if (!drawing_) return;
  drawing_->show_layers(std::vector<bool>(drawing_->layers().size(), true));
  drawing_changed();
}

void View::show_hit(const Hit& hit) {
  constexpr double kHeights = 30;  // of letters, in the window's height
  if (!drawing_) return;
  const CRect client = window_.ClientRect();
  const double high = std::max(kHeights * std::fabs(hit.height), 1.5 * hit.box.Height());
  const double wide = std::max(high * client.Width() / std::max(client.Height(), 1), 1.5 * hit.box.Width());
  const CFPoint middle((hit.box.x1 + hit.box.x2) / 2, (hit.box.y1 + hit.box.y2) / 2);
  const auto half_w = static_cast<float>(wide / 2), half_h = static_cast<float>(high / 2);
  frame_ = hit.box;
  ShowRect({middle.x - half_w, middle.y - half_h}, {middle.x + half_w, middle.y + half_h});
  refresh();
}

void View::show_place(const CFRect& box) {
  constexpr float kRoom = 0.6F;
  constexpr float kLeast = 1.0F / 8;  // of the drawing, so that one sees where it is
  if (!drawing_) return;
  frame_ = box;
  CFRect room = viewer::never_empty(box);
  const float least = kLeast * std::max(extent_.Width(), extent_.Height());
  const float x = std::max(kRoom * room.Width(), (least - room.Width()) / 2);
  const float y = std::max(kRoom * room.Height(), (least - room.Height()) / 2);
  room.Inflect(std::max(x, 0.0F), std::max(y, 0.0F), std::max(x, 0.0F), std::max(y, 0.0F));
  ShowRect(room.Nearest(), room.Furthest());
  refresh();
}

void View::unmark() {
  frame_.reset();
  refresh();
}

void View::wheel(CPoint point, double steps, bool continues) {
  if (!drawing_) return;
  const double factor = clamped_zoom(std::pow(kWheelStep, steps));
  if (std::fabs(factor - 1) < 1e-3) return;
  const CFCoor& view = CurrentView();
  const double scale = view.GetScale() * factor;
  const CRect client = window_.ClientRect();
  const CFPoint at = view.DPtoFP(point);
  const auto beside = [&](float v, int pixels) { return static_cast<float>(v + pixels / scale); };
  const CFPoint corner(beside(at.x, client.left - point.x), beside(at.y, point.y - client.bottom));
  const CFPoint opposite(beside(at.x, client.right - point.x), beside(at.y, point.y - client.top));
  keeping_corner([&] {
    // The turn so far is taken back, and the whole of it made one change.
    if (continues && inWheel_) ShowPre();
    ShowRect(corner, opposite);
  });
  inWheel_ = true;
}

void View::pan_by(double across, double up) {
  if (!drawing_) return;
  const CFRect rect = seen();
  const CFPoint from(static_cast<float>(rect.x1 + across * rect.Width()),
                     static_cast<float>(rect.y1 + up * rect.Height()));
  keeping_corner([&] { ShowMove(from, rect.Nearest()); });
}

void View::set_angles(const ViewAngles& angles) {
  if (angles == CurrentAngles() || !drawing_) return;
  SaveCoor();
  SetCurrentAngles(angles);
  measure();
  inWheel_ = false;
  fit();
}

void View::resized() {
  const CRect before = std::exchange(client_, window_.ClientRect());
  if (everything_) return fit();
  CFCoor view = CurrentView();
  const double half = 0.5 / view.GetScale();
  view.origin.x = static_cast<float>(view.origin.x - (client_.Width() - before.Width()) * half);
  view.origin.y = static_cast<float>(view.origin.y + (client_.Height() - before.Height()) * half);
  SetCurrentView(view);
  repaint();
}

// ---------------------------------------------------------------- the pointer

void View::DrawCursor(CDC& dc, int show) {
  if (inside_ && State() != kHand) CDrawTool::DrawCursor(dc, show);
}

void View::set_mode(Mode mode) {
  static constexpr DRAWTYPE kStates[] = {DRAW_PICK, DRAW_ZOOM, kHand, kLocating};
  if (mode_ == Mode::Measure && mode != Mode::Measure) {
    if (measuring_.finish()) listener_.on_measures_changed();
    SetFrom(std::nullopt);
    LocateNothing();
  }
  mode_ = mode;
  SwitchState(kStates[static_cast<int>(mode)], kChanged, 1);
  listener_.on_mode_changed();
}

void View::after_corner(bool hadCorner) {
  const bool completed = hadCorner && !HasCorner();
  if (completed && mode_ == Mode::WindowZoom) set_mode(Mode::Pick);
}

void View::left_down(CPoint point, bool add) {
  if (mode_ == Mode::Hand) return begin_drag(point);
  if (mode_ == Mode::Measure) return measure_at(point);
  adding_ = add;
  const bool hadCorner = HasCorner();
  OnLButtonDown(0, point);
  after_corner(hadCorner);
}

void View::left_up(CPoint point, bool add) {
  if (mode_ == Mode::Hand) return end_drag(point);
  if (mode_ == Mode::Measure) return;
  adding_ = add;
  const bool hadCorner = HasCorner();
  OnLButtonUp(0, point);
  after_corner(hadCorner);
  // A click on an entity picks it; one beside all is the first corner of a window whose other one is to be clicked.
  if (mode_ == Mode::Pick && HasCorner() && pick_at(point)) OnRButtonDown(0, point);
}

void View::middle_down(CPoint point) {
  begin_drag(point);
}

void View::middle_up(CPoint point) {
  end_drag(point);
}

void View::begin_drag(CPoint point) {
  point_ = point;
  dragFrom_ = point;
  listener_.on_mode_changed();
}

void View::end_drag(CPoint point) {
  if (!dragFrom_) return;
  const CFPoint from = CurrentView().DPtoFP(*dragFrom_);
  const CFPoint to = CurrentView().DPtoFP(point);
  const bool moved = *dragFrom_ != point;
  dragFrom_.reset();
  point_ = point;
  OnMouseMove(0, point);
  if (moved && drawing_) keeping_corner([&] { ShowMove(from, to); });
  listener_.on_mode_changed();
}

void View::move(CPoint point) {
  point_ = point;
  if (!inside_) {
    // The tool believes its cursor to be on screen, but while the pointer was outside none was drawn: its flags are
    // cleared before the cursor is drawn again.
    OnDraw(window_.ClientContext(), 0);
    window_.ReleaseClientContext();
    inside_ = true;
  }
  if (mode_ == Mode::Measure && !dragFrom_) Locate(point);
  if (dragFrom_)
    window_.Invalidate(false);
  else
    OnMouseMove(0, point);
}

void View::leave() {
  if (!inside_) return;
  OnDraw(window_.ClientContext(), 0);
  window_.ReleaseClientContext();
  inside_ = false;
}

bool View::cancel() {
  if (dragFrom_) {
    dragFrom_.reset();
    listener_.on_mode_changed();
    repaint();
    return true;
  }
  if (HasCorner()) return OnRButtonDown(0, point_), true;
  if (mode_ == Mode::Measure && finish_measure()) return true;
  if (mode_ == Mode::Pick && frame_) return unmark(), true;
  if (mode_ == Mode::Pick) return false;
  set_mode(Mode::Pick);
  return true;
}

std::optional<CPoint> View::dragged_by() const {
  if (!dragFrom_) return std::nullopt;
  return CPoint(point_.x - dragFrom_->x, point_.y - dragFrom_->y);
}

std::optional<CFPoint> View::pointer() const {
  if (!inside_) return std::nullopt;
  // While the drawing is dragged, the same point of it stays under the pointer.
  return CurrentView().DPtoFP(dragFrom_.value_or(point_));
}

// ---------------------------------------------------------------- measuring

qv::PreparedDrawing* View::CaughtDrawing() {
  return drawing_ ? &drawing_->prepared(CurrentAngles()) : nullptr;
}

void View::begin_measure(MeasureKind kind) {
  if (!drawing_) return;
  measuring_.begin(kind);
  SetFrom(std::nullopt);
  set_mode(Mode::Measure);
  if (inside_) Locate(point_);
  listener_.on_measures_changed();
  refresh();
}

void View::measure_at(CPoint point) {
  if (!drawing_) return;
  point_ = point;
  Locate(point);
  if (measuring_.kind() == MeasureKind::Radius) {
    const CFPoint at = CurrentView().DPtoFP(point);
    const double reach = CatchReach() / std::fabs(static_cast<double>(CurrentView().GetScale()));
    for (const qv::CaughtPoint& c :
         drawing_->prepared(CurrentAngles()).Catch({{at.x, at.y}, reach, CatchBit(qv::CatchKind::Center), {}}))
      if (c.radius > 0) {
        measuring_.add_circle(c.at, c.radius);
        break;
      }
  } else if (measuring_.kind() == MeasureKind::ObjectArea) {
    const std::optional<int> hit = entity_at(point);
    const qv::EntityMeasures m = hit ? qv::Measure(drawing_->entity(*hit)) : qv::EntityMeasures();
    const CFPoint at = CurrentView().DPtoFP(point);
    if (m.area > 0) measuring_.add_object({at.x, at.y}, m);
  } else if (const std::optional<qv::PlanePoint> taken = Take()) {
    measuring_.add(*taken);
    if (measuring_.present().points.empty()) SetFrom(std::nullopt);
  }
  listener_.on_measures_changed();
  refresh();
}

bool View::finish_measure() {
  if (!measuring_.finish()) return false;
  SetFrom(std::nullopt);
  listener_.on_measures_changed();
  refresh();
  return true;
}

void View::take_back_point() {
  if (!measuring_.back()) return;
  const auto& points = measuring_.present().points;
  SetFrom(points.empty() ? std::nullopt : std::optional(points.back()));
  listener_.on_measures_changed();
  refresh();
}

void View::clear_measures() {
  measuring_.clear();
  SetFrom(std::nullopt);
  listener_.on_measures_changed();
  refresh();
}

bool View::catch_by_letter(char letter) {
  using qv::CatchKind;
  static constexpr struct {
    char letter;
    CatchKind kind;
  } kLetters[] = {{'e', CatchKind::End},           {'m', CatchKind::Middle},       {'c', CatchKind::Center},
                  {'q', CatchKind::Quadrant},      {'i', CatchKind::Intersection}, {'t', CatchKind::Nearest},
                  {'u', CatchKind::Perpendicular}, {'b', CatchKind::Tangent},      {'n', CatchKind::Node},
                  {'p', CatchKind::Insertion}};
  if (letter == 'a' || letter == 'f') {
    SetCatchAllObject();
    SetCatching(letter == 'a');
  } else {
    const auto found =
        std::find_if(std::begin(kLetters), std::end(kLetters), [&](const auto& k) { return k.letter == letter; });
    if (found == std::end(kLetters)) return false;
    SetOneKind(found->kind);
    SetCatchOneObject();
  }
  if (inside_) Locate(point_);
  listener_.on_mode_changed();
  refresh();
  return true;
}

void View::next_caught(int by) {
  NextCaught(by);
  refresh();
}

void View::switch_catching() {
  SetCatching(!IsCatching());
  listener_.on_mode_changed();
  refresh();
}

// ---------------------------------------------------------------- picks

void View::on_message(unsigned int message) {
  if (message == kPictureThere) return window_.Invalidate(false);
  CFPoint from;
  CFPoint to;
  if (TakePick(from, to)) pick(from, to);
}

void View::pick(const CFPoint& from, const CFPoint& to) {
  if (drawing_) take(drawing_->pick(CFRect(from, to), from.x > to.x, CurrentAngles()));
}

std::optional<int> View::entity_at(CPoint point) {
  constexpr int kReach = 4;
  if (!drawing_) return std::nullopt;
  const CFRect rect =
      CurrentView().DPtoFP(CRect(point.x - kReach, point.y - kReach, point.x + kReach, point.y + kReach));
  const std::vector<int> hits = drawing_->pick(rect, true, CurrentAngles());
  if (hits.empty()) return std::nullopt;
  return hits.back();  // the one on top
}

bool View::pick_at(CPoint point) {
  const std::optional<int> hit = entity_at(point);
  if (hit) take({*hit});
  return hit.has_value();
}

/// New picks replace the old ones. When adding they join them, or are removed when all of them were picked already.
void View::take(std::vector<int> hits) {
  std::vector<int> picks;
  if (!adding_)
    picks = std::move(hits);
  else if (std::includes(picks_.begin(), picks_.end(), hits.begin(), hits.end()))
    std::set_difference(picks_.begin(), picks_.end(), hits.begin(), hits.end(), std::back_inserter(picks));
  else
    std::set_union(picks_.begin(), picks_.end(), hits.begin(), hits.end(), std::back_inserter(picks));
  if (picks == picks_) return;
  picks_ = std::move(picks);
  shownPicks_.reset();
  listener_.on_picks_changed();
  repaint();
}

void View::select_all() {
  if (!drawing_) return;
  adding_ = false;
  std::vector<int> all;
  for (int i = 0; i < drawing_->count(); ++i)
    if (drawing_->is_shown(i)) all.push_back(i);
  take(std::move(all));
}

void View::clear_picks() {
  adding_ = false;
  take({});
}

}  // namespace qv::viewer
