#pragma once

/// The drawing tool that locates points: where the pointer is, in steps from a reference point, or at points of the
/// drawing, which it catches.
///
/// A window hands over each pointer's move with `Locate`, then with `OnMouseMove`; what was found is `Located`. A click
/// takes it with `Take`, which makes it the point that perpendiculars and tangents come from.

#include <functional>
#include <string>
#include <vector>

#include "qvtools/dxf/view/prepared_drawing.h"
#include "qvtools/navigation/draw_tool.h"

namespace qv {

/// The mark of a kind of caught point, about a pixel and as wide and as high: a square for an end, a triangle for a
/// middle, a circle for a centre, a diamond for a quadrant, crossed lines for an intersection, a right angle for a
/// perpendicular, a circle under a line for a tangent, an hourglass for the nearest point, a crossed circle for a node,
/// two squares for an insertion. Drawn with the pen that is selected.
QV_API void DrawCatchMark(CDC& dc, CPoint at, CatchKind kind, int size);

/// A tool that locates and catches points.
class QV_API CatchTool : public CDrawTool {
 public:
  /// A tool that draws in the window; null: none yet.
  explicit CatchTool(Window* window = nullptr) : CDrawTool(window) {}

  // ---- what is asked of the base class's slots

  /// With direction 0 gives the step; else sets it: the pointer moves in whole steps from the reference point, both
  /// ways, when it catches nothing. 0 is no step. Returns 1, or 0 for a step that is negative or not finite.
  int SetStep(float& step, int direction) override;
  /// Gives the located point; 0 when there is none.
  int SetLocate(CFPoint& point) override;
  /// Makes a point the reference of steps and offsets. Returns 1.
  int SetOffset(CFPoint& reference) override;
  /// All points are caught, of the kinds that `SetCatchKinds` chose.
  void SetCatchAllObject() override { one_.reset(); }
  /// Only points of the kind of `SetOneKind` are caught, until a point has been taken.
  void SetCatchOneObject() override { one_ = oneKind_; }
  /// The point that is caught at the pointer, whatever its kind, or of the one kind; 0 when there is none.
  int GetCatchAll(CFPoint& point) override;
  int GetCatchOne(CFPoint& point) override;
  /// Tell the host's function (`SetTeller`) the step, the located point, and its offset from the reference.
  void ShowStep() const override;
  void ShowLocate() const override;
  void ShowOffset() const override;
  /// The cross hairs, and the mark of what is caught, by exclusive or.
  void DrawCursor(CDC& dc, int show) override;

  // ---- catching

  /// The drawing whose points are caught; not owned, null for none. A view that makes its own when it is asked
  /// overrides `CaughtDrawing`.
  void SetDrawing(PreparedDrawing* drawing) { drawing_ = drawing; }
  /// Whether anything is caught; true at first.
  void SetCatching(bool on);
  bool IsCatching() const { return on_; }
  /// The kinds, a sum of `CatchBit`s; all but `Nearest` at first.
  void SetCatchKinds(unsigned kinds) { kinds_ = kinds & kAllCatches; }
  unsigned CatchKinds() const { return kinds_; }
  /// How near a point has to be, in pixels; 10 at first.
  void SetCatchReach(int pixels) { reach_ = pixels; }
  int CatchReach() const { return reach_; }
  /// The kind that `SetCatchOneObject` asks for; an end at first.
  void SetOneKind(CatchKind kind) { oneKind_ = kind; }
  /// The one kind that is caught for the next point; absent when all are.
  const std::optional<CatchKind>& OneKind() const { return one_; }

  // ---- locating

  /// Finds what the pointer is at, in client coordinates.
  void Locate(CPoint pointer);
  /// The pointer has left; nothing is located.
  void LocateNothing();
  /// The located point in the plane of the view: caught, in steps, or the pointer's own; absent before any.
  const std::optional<PlanePoint>& Located() const { return located_; }
  /// The caught point; null when none is.
  const CaughtPoint* Caught() const { return caught_.empty() ? nullptr : &caught_[chosen_]; }
  /// How many points can be caught here; the next of them in turn is chosen.
  int CaughtCount() const { return static_cast<int>(caught_.size()); }
  /// Chooses the next of them, or one further on.
  void NextCaught(int by = 1);
  /// Takes the located point: it becomes what perpendiculars and tangents come from. Absent when nothing is located.
  std::optional<PlanePoint> Take();
  /// The point that they come from; absent for none.
  void SetFrom(std::optional<PlanePoint> from) { from_ = from; }
  /// The offset of the located point from the reference.
  PlanePoint Offset() const;
  /// Sets the function that is told the step, the located point and its offset; none at first.
  void SetTeller(std::function<void(const std::string& text)> tell) { tell_ = std::move(tell); }

 protected:
  /// The drawing whose points are caught; null for none.
  virtual PreparedDrawing* CaughtDrawing() { return drawing_; }

 private:
  void locate_again();
  void tell(const char* format, double x, double y) const;

  PreparedDrawing* drawing_ = nullptr;
  bool on_ = true;
  unsigned kinds_ = kAllCatches & ~CatchBit(CatchKind::Nearest);
  int reach_ = 10;
  CatchKind oneKind_ = CatchKind::End;
  std::optional<CatchKind> one_;
  float step_ = 0;
  PlanePoint reference_;
  std::optional<PlanePoint> from_;
  std::optional<CPoint> pointer_;
  std::optional<PlanePoint> located_;
  std::vector<CaughtPoint> caught_;
  std::size_t chosen_ = 0;
  std::optional<std::pair<CPoint, CatchKind>> marked_;  // on screen
  std::function<void(const std::string&)> tell_;
};

}  // namespace qv
