#include "model/view.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace qvview {

namespace {

constexpr double kWheelStep = 1.25;
constexpr double kZoomStep = 1.1;

}  // namespace

View::View(qv::Window& window, Listener& listener) : CDrawTool(&window), window_(window), listener_(listener) {
  SwitchState(DRAW_PICK, kChanged, 1);
}

// ---------------------------------------------------------------- the drawing

void View::open(std::unique_ptr<Drawing> drawing) {
  drawing_ = std::move(drawing);
  SetCurrentAngles({});
  cancel();
  ClearHistory();
  clear_picks();
  measure();
  fit();
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
  extent_ = qvapps::with_margin(drawing_ ? drawing_->extent(extentAngles_) : CFRect());
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

void View::draw_into(CDC& dc, CSize size, bool everyLetter) {
  if (!drawing_) return;
  const CRect client = window_.ClientRect();
  if (size == CSize(client.Width(), client.Height()))
    return drawing_->draw(dc, CurrentView(), CurrentAngles(), everyLetter);
  drawing_->draw(dc, qvapps::fitted(seen(), size), CurrentAngles(), everyLetter);
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
  const CFRect rect = qvapps::with_margin(drawing_->extent_of(entity, CurrentAngles()));
  ShowRect(rect.Nearest(), rect.Furthest());
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
  static constexpr DRAWTYPE kStates[] = {DRAW_PICK, DRAW_ZOOM, kHand};
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
  adding_ = add;
  const bool hadCorner = HasCorner();
  OnLButtonDown(0, point);
  after_corner(hadCorner);
}

void View::left_up(CPoint point, bool add) {
  if (mode_ == Mode::Hand) return end_drag(point);
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
  if (!dragFrom_) OnMouseMove(0, point);
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

// ---------------------------------------------------------------- picks

void View::on_message(unsigned int) {
  CFPoint from;
  CFPoint to;
  if (TakePick(from, to)) pick(from, to);
}

void View::pick(const CFPoint& from, const CFPoint& to) {
  if (drawing_) take(drawing_->pick(CFRect(from, to), from.x > to.x, CurrentAngles()));
}

bool View::pick_at(CPoint point) {
  constexpr int kReach = 4;
  if (!drawing_) return false;
  const CFRect rect =
      CurrentView().DPtoFP(CRect(point.x - kReach, point.y - kReach, point.x + kReach, point.y + kReach));
  const std::vector<int> hits = drawing_->pick(rect, true, CurrentAngles());
  if (hits.empty()) return false;
  take({hits.back()});  // the one on top
  return true;
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

}  // namespace qvview
