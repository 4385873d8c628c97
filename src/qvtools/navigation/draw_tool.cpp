#include "qvtools/navigation/draw_tool.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "qvtools/display/safe_dc.h"
#include "qvtools/geometry/values/rect.h"

int G_nCursorSize = 20;

namespace {

constexpr float kZoomStep = 1.1F;
constexpr COLORREF kBandColor = qv::rgb(255, 0, 0);

/// A raster operation for the life of the object.
class OperationScope {
 public:
  OperationScope(CDC& dc, qv::RasterOp op) : dc_(dc), before_(dc.SetROP2(op)) {}
  ~OperationScope() { dc_.SetROP2(before_); }
  OperationScope(const OperationScope&) = delete;
  OperationScope& operator=(const OperationScope&) = delete;

 private:
  CDC& dc_;
  qv::RasterOp before_;
};

/// Whether the pointer has moved so far that a drag was meant.
bool dragged(CPoint from, CPoint to) {
  constexpr int kShake = 3;
  return std::abs(to.x - from.x) > kShake || std::abs(to.y - from.y) > kShake;
}

float moved(float v, double by) {
  return static_cast<float>(v + by);
}

}  // namespace

/// What a state shows between its two corners, and what it does with them. States without a band take no corners.
struct CDrawTool::StateActions {
  void (*draw_band)(CSafeDC&, CPoint, CPoint);
  void (*complete)(CDrawTool&, const CFPoint&, const CFPoint&);

  static void draw_box(CSafeDC& dc, CPoint a, CPoint b) { dc.Rectangle(a.x, a.y, b.x, b.y); }
  static void draw_way(CSafeDC& dc, CPoint a, CPoint b) {
    dc.MoveTo(a);
    dc.LineTo(b);
  }
  static void zoom(CDrawTool& tool, const CFPoint& from, const CFPoint& to) { tool.ShowRect(from, to); }
  static void pan(CDrawTool& tool, const CFPoint& from, const CFPoint& to) { tool.ShowMove(from, to); }
  static void pick(CDrawTool& tool, const CFPoint& from, const CFPoint& to) {
    tool.m_picked = {from, to};
    if (tool.m_pWindow) tool.m_pWindow->Post(tool.m_nMessage);
  }
};

const CDrawTool::StateActions& CDrawTool::state() const {
  using Of = StateActions;
  static constexpr StateActions kNone = {};
  static constexpr StateActions kStates[] = {
      kNone, {Of::draw_box, Of::zoom}, {Of::draw_way, Of::pan}, {Of::draw_box, Of::pick}};
  return m_byteState < std::size(kStates) ? kStates[m_byteState] : kNone;
}

CDrawTool::CDrawTool(qv::Window* window) : m_pWindow(window) {}
CDrawTool::~CDrawTool() = default;

void CDrawTool::DrawCursor(CDC& dc, int) {
  if (!m_byteCursor) return;
  const OperationScope inverting(dc, qv::RasterOp::Not);
  const int size = G_nCursorSize;
  CSafeDC safe(&dc);
  safe.MoveTo(m_pointer.x - size, m_pointer.y);
  safe.LineTo(m_pointer.x + size + 1, m_pointer.y);
  safe.MoveTo(m_pointer.x, m_pointer.y - size);
  safe.LineTo(m_pointer.x, m_pointer.y + size + 1);
}

void CDrawTool::view_changed() {
  PrepareDraw(nullptr, nullptr);
  // What was drawn on the old picture goes with it.
  m_byteCursor = m_byteBand = 0;
  if (m_pWindow) m_pWindow->Invalidate(true);
}

void CDrawTool::SaveCoor() {
  if (m_nHistory == kHistory) {
    std::copy(m_history.begin() + 1, m_history.end(), m_history.begin());
    --m_nHistory;
  }
  m_history[static_cast<std::size_t>(m_nHistory++)] = {m_view, m_angles};
}

void CDrawTool::ShowPre() {
  if (!m_nHistory) return;
  const Entry& before = m_history[static_cast<std::size_t>(--m_nHistory)];
  m_view = before.view;
  m_angles = before.angles;
  view_changed();
}

void CDrawTool::zoom_to(float scale) {
  if (m_view.scale == 0 || scale == 0) return;
  const CRect rect = client();
  const double before = m_view.scale;
  SaveCoor();
  m_view.scale = scale;
  const auto shift = [&](int size) { return (size / before - size / static_cast<double>(m_view.scale)) / 2; };
  m_view.origin.x = moved(m_view.origin.x, shift(rect.Width()));
  m_view.origin.y = moved(m_view.origin.y, shift(rect.Height()));
  view_changed();
}

void CDrawTool::ShowZoomOut() {
  zoom_to(m_view.scale * kZoomStep);
}

void CDrawTool::ShowZoomIn() {
  zoom_to(m_view.scale / kZoomStep);
}

std::optional<CFCoor> CDrawTool::Fitted(const CFPoint& p1, const CFPoint& p2) const {
  constexpr double kLeast = 1e-7;
  const CRect rect = client();
  const CFRect world(p1, p2);
  const double w = static_cast<double>(world.x2) - world.x1;
  const double h = static_cast<double>(world.y2) - world.y1;
  if (!(w >= kLeast && h >= kLeast) || rect.Width() < 2 || rect.Height() < 2) return std::nullopt;
  const double across = rect.Width() / w;
  const double upward = rect.Height() / h;
  CFCoor view = m_view;
  view.scale = static_cast<float>(across < upward ? across : upward);
  const auto middle = [&](int low, int high) { return (static_cast<double>(low) + high) / view.scale / 2; };
  view.origin.x = static_cast<float>((static_cast<double>(world.x1) + world.x2) / 2 - middle(rect.left, rect.right));
  view.origin.y = static_cast<float>((static_cast<double>(world.y1) + world.y2) / 2 + middle(rect.top, rect.bottom));
  return view;
}

void CDrawTool::ShowRect(const CFPoint& p1, const CFPoint& p2) {
  if (p1.x == p2.x || p1.y == p2.y) return;
  SaveCoor();
  const std::optional<CFCoor> view = Fitted(p1, p2);
  if (!view) return;
  m_view = *view;
  view_changed();
}

void CDrawTool::ShowAll() {
  CFPoint p1, p2;
  if (GetMaxRect(p1, p2)) ShowRect(p1, p2);
}

void CDrawTool::ShowMove(const CFPoint& p1, const CFPoint& p2) {
  SaveCoor();
  m_view.origin.x = moved(m_view.origin.x, static_cast<double>(p1.x) - p2.x);
  m_view.origin.y = moved(m_view.origin.y, static_cast<double>(p1.y) - p2.y);
  view_changed();
}

template <class Change>
void CDrawTool::change_interaction(const Change& change) {
  if (!m_pWindow) return change();
  CDC& dc = m_pWindow->ClientContext();
  OnDraw(dc, 0);
  change();
  OnDraw(dc, 1);
  m_pWindow->ReleaseClientContext();
}

void CDrawTool::SwitchState(DRAWTYPE type, unsigned int message, int reset) {
  change_interaction([&] {
    m_byteCursor = m_byteBand = m_byteCorner = 0;
    m_corner = {};
    m_byteState = type;
    m_nMessage = message;
    if (reset) m_nCounter = 0;
  });
  SwitchCursor();
  if (m_pWindow) m_pWindow->Post(message);
}

void CDrawTool::draw_band(CDC& dc) const {
  const CPen pen{qv::PenStyle::Solid, 0, kBandColor};
  const CPen* const before = dc.SelectObject(&pen);
  {
    const OperationScope combining(dc, qv::RasterOp::XorPen);
    CSafeDC safe(&dc);
    if (const auto draw = state().draw_band) draw(safe, m_corner, m_pointer);
  }
  dc.SelectObject(before);
}

void CDrawTool::OnDraw(CDC& dc, int show) {
  if (show) {
    m_byteBand = m_byteCorner;
    m_byteCursor = m_byteState != DRAW_NONE;
  }
  if (m_byteBand) draw_band(dc);
  DrawCursor(dc, show);
  if (!show) m_byteBand = m_byteCursor = 0;
}

void CDrawTool::give_corner(CPoint point) {
  if (!state().draw_band) return;
  change_interaction([&] {
    m_corner = m_pointer = point;
    m_byteCorner = 1;
  });
}

void CDrawTool::complete(CPoint point) {
  const CFPoint from = m_view.DPtoFP(m_corner);
  const CFPoint to = m_view.DPtoFP(point);
  change_interaction([&] {
    m_pointer = point;
    m_byteCorner = 0;
    m_corner = {};
  });
  if (const auto act = state().complete) act(*this, from, to);
}

int CDrawTool::TakePick(CFPoint& from, CFPoint& to) {
  if (!m_picked) return 0;
  from = m_picked->front();
  to = m_picked->back();
  m_picked.reset();
  return 1;
}

void CDrawTool::OnLButtonDown(unsigned int, CPoint point) {
  if (m_byteCorner)
    complete(point);
  else
    give_corner(point);
}

void CDrawTool::OnLButtonUp(unsigned int, CPoint point) {
  if (m_byteCorner && dragged(m_corner, point)) complete(point);
}

void CDrawTool::OnMouseMove(unsigned int, CPoint point) {
  if (m_byteState == DRAW_NONE)
    m_pointer = point;
  else
    change_interaction([&] { m_pointer = point; });
}

void CDrawTool::OnRButtonDown(unsigned int, CPoint) {
  if (m_byteCorner)
    change_interaction([&] {
      m_byteCorner = 0;
      m_corner = {};
    });
  else if (m_byteState != DRAW_NONE)
    SwitchState(DRAW_NONE, m_nMessage, 0);
}

void CDrawTool::OnMButtonDown(unsigned int, CPoint point) {
  if (m_byteState != DRAW_PAN) m_byteBeforePan = m_byteState;
  SwitchState(DRAW_PAN, m_nMessage, 0);
  give_corner(point);
}

void CDrawTool::OnMButtonUp(unsigned int, CPoint point) {
  if (m_byteState != DRAW_PAN || !m_byteCorner) return;
  if (dragged(m_corner, point)) complete(point);
  SwitchState(static_cast<DRAWTYPE>(m_byteBeforePan), m_nMessage, 0);
}

int CDrawTool::OnKeyDown(unsigned int key, unsigned int, unsigned int) {
  constexpr unsigned kEscape = 27;
  static constexpr struct {
    unsigned key;
    void (CDrawTool::*act)();
  } kKeys[] = {
      {36, &CDrawTool::ShowAll}, {33, &CDrawTool::ShowZoomOut}, {34, &CDrawTool::ShowZoomIn}, {8, &CDrawTool::ShowPre}};
  if (key == kEscape) return OnRButtonDown(0, m_pointer), 1;
  for (const auto& [code, act] : kKeys)
    if (key == code) return (this->*act)(), 1;
  return 0;
}
