#include "qvtools/navigation/catch_tool.h"

#include <cmath>
#include <numbers>

#include "qvtools/text/message_text.h"

namespace qv {

namespace {

/// A mark is lines between points, in hundredths of half its size; a pen-up before each `kLift`.
constexpr int kLift = 1000;

void draw_lines(CDC& dc, CPoint at, int half, std::initializer_list<CPoint> points) {
  bool down = false;
  for (const CPoint& p : points) {
    if (p.x == kLift) {
      down = false;
      continue;
    }
    const CPoint to(at.x + p.x * half / 100, at.y - p.y * half / 100);
    down ? dc.LineTo(to.x, to.y) : dc.MoveTo(to.x, to.y);
    down = true;
  }
}

void draw_circle(CDC& dc, CPoint at, int half) {
  constexpr int kSides = 24;
  for (int i = 0; i <= kSides; ++i) {
    const double angle = 2 * std::numbers::pi * i / kSides;
    const int x = at.x + static_cast<int>(std::lround(half * std::cos(angle)));
    const int y = at.y + static_cast<int>(std::lround(half * std::sin(angle)));
    i == 0 ? dc.MoveTo(x, y) : dc.LineTo(x, y);
  }
}

CFPoint rounded(const PlanePoint& p) {
  return CFPoint(static_cast<float>(p.x), static_cast<float>(p.y));
}

}  // namespace

void DrawCatchMark(CDC& target, CPoint at, CatchKind kind, int size) {
  const int half = size / 2;
  const CPoint up(kLift, 0);
  switch (kind) {
    case CatchKind::End:
      return draw_lines(target, at, half, {{-100, -100}, {100, -100}, {100, 100}, {-100, 100}, {-100, -100}});
    case CatchKind::Middle:
      return draw_lines(target, at, half, {{-100, -80}, {100, -80}, {0, 100}, {-100, -80}});
    case CatchKind::Center:
      return draw_circle(target, at, half);
    case CatchKind::Quadrant:
      return draw_lines(target, at, half, {{0, -110}, {110, 0}, {0, 110}, {-110, 0}, {0, -110}});
    case CatchKind::Intersection:
      return draw_lines(target, at, half, {{-100, -100}, {100, 100}, up, {-100, 100}, {100, -100}});
    case CatchKind::Perpendicular:
      return draw_lines(target, at, half, {{-100, 100}, {-100, -100}, {100, -100}, up, {-100, 0}, {0, 0}, {0, -100}});
    case CatchKind::Tangent:
      draw_circle(target, CPoint(at.x, at.y + half / 4), half * 3 / 4);
      return draw_lines(target, at, half, {{-110, 55}, {110, 55}});
    case CatchKind::Node:
      draw_circle(target, at, half);
      return draw_lines(target, at, half, {{-70, -70}, {70, 70}, up, {-70, 70}, {70, -70}});
    case CatchKind::Insertion:
      return draw_lines(target, at, half,
                        {{-100, 100},
                         {20, 100},
                         {20, -20},
                         {-100, -20},
                         {-100, 100},
                         up,
                         {-20, 20},
                         {100, 20},
                         {100, -100},
                         {-20, -100},
                         {-20, 20}});
    case CatchKind::Nearest:
      return draw_lines(target, at, half, {{-100, -100}, {100, -100}, {-100, 100}, {100, 100}, {-100, -100}});
  }
}

int CatchTool::SetStep(float& step, int direction) {
  if (direction == 0) return step = step_, 1;
  if (!(step >= 0) || !std::isfinite(step)) return 0;
  step_ = step;
  locate_again();
  ShowStep();
  return 1;
}

int CatchTool::SetLocate(CFPoint& point) {
  if (!located_) return 0;
  point = rounded(*located_);
  return 1;
}

int CatchTool::SetOffset(CFPoint& reference) {
  reference_ = {reference.x, reference.y};
  locate_again();
  ShowOffset();
  return 1;
}

int CatchTool::GetCatchAll(CFPoint& point) {
  if (!Caught()) return 0;
  point = rounded(Caught()->at);
  return 1;
}

int CatchTool::GetCatchOne(CFPoint& point) {
  for (const CaughtPoint& caught : caught_)
    if (caught.kind == oneKind_) return point = rounded(caught.at), 1;
  return 0;
}

void CatchTool::tell(const char* format, double x, double y) const {
  if (!tell_) return;
  char text[128];
  format_text(text, sizeof text, format, x, y);
  tell_(text);
}

void CatchTool::ShowStep() const {
  tell("%.2f", step_, 0);
}
void CatchTool::ShowLocate() const {
  if (located_) tell("%.2f, %.2f", located_->x, located_->y);
}
void CatchTool::ShowOffset() const {
  if (located_) tell("%+.2f, %+.2f", Offset().x, Offset().y);
}

PlanePoint CatchTool::Offset() const {
  if (!located_) return {};
  return {located_->x - reference_.x, located_->y - reference_.y};
}

void CatchTool::DrawCursor(CDC& dc, int show) {
  constexpr int kMarkSize = 15;
  constexpr COLORREF kMarkColor = 0xFFFFFF;
  CDrawTool::DrawCursor(dc, show);
  if (show) {
    marked_.reset();
    if (const CaughtPoint* const caught = Caught(); caught && State() != DRAW_NONE)
      marked_.emplace(CurrentView().FPtoDP(rounded(caught->at)), caught->kind);
  }
  if (!marked_) return;
  const CPen pen{PenStyle::Solid, 0, kMarkColor};
  const CPen* const before = dc.SelectObject(&pen);
  const RasterOp operation = dc.SetROP2(RasterOp::XorPen);
  DrawCatchMark(dc, marked_->first, marked_->second, kMarkSize);
  dc.SetROP2(operation);
  dc.SelectObject(before);
  if (!show) marked_.reset();
}

void CatchTool::SetCatching(bool on) {
  on_ = on;
  locate_again();
}

void CatchTool::locate_again() {
  if (pointer_) Locate(*pointer_);
}

void CatchTool::Locate(CPoint pointer) {
  pointer_ = pointer;
  const CFCoor& view = CurrentView();
  const double scale = std::fabs(static_cast<double>(view.GetScale()));
  if (scale == 0) return LocateNothing();
  const double up = view.IsReverseY() ? -1 : 1;
  const PlanePoint at{view.GetOrigin().x + pointer.x / scale, view.GetOrigin().y + up * pointer.y / scale};
  located_ = at;
  caught_.clear();
  chosen_ = 0;
  if (PreparedDrawing* const drawing = on_ || one_ ? CaughtDrawing() : nullptr)
    caught_ = drawing->Catch({at, reach_ / scale, one_ ? CatchBit(*one_) : kinds_, from_});
  if (Caught()) {
    located_ = Caught()->at;
  } else if (step_ > 0) {
    const auto stepped = [&](double v, double from) { return from + std::round((v - from) / step_) * step_; };
    located_ = {stepped(at.x, reference_.x), stepped(at.y, reference_.y)};
  }
}

void CatchTool::LocateNothing() {
  pointer_.reset();
  located_.reset();
  caught_.clear();
  chosen_ = 0;
}

void CatchTool::NextCaught(int by) {
  if (caught_.empty()) return;
  const int n = CaughtCount();
  chosen_ = static_cast<std::size_t>(((static_cast<int>(chosen_) + by) % n + n) % n);
  located_ = Caught()->at;
}

std::optional<PlanePoint> CatchTool::Take() {
  if (!located_) return std::nullopt;
  from_ = located_;
  one_.reset();
  ShowLocate();
  return located_;
}

}  // namespace qv
