#pragma once

/// The navigation core of the interactive drawing tool that a program's drawing views derive from: the current view,
/// the views before it, zooming and panning, and the states of interaction (window zoom, pan, picking) with the cursor
/// and the rubber band that they show.
///
/// The tool draws in a `qv::Window` that it does not own. Every change of the view ends with `PrepareDraw(nullptr,
/// nullptr)` and asks for a repaint of the whole client area with its background erased. A view that paints itself
/// draws its picture through `CurrentView()` and then calls `OnDraw(dc, 1)`.

#include <array>
#include <optional>

#include "qvtools/geometry/values/constants.h"
#include "qvtools/geometry/values/coor.h"
#include "qvtools/platform/host.h"

/// Half the length of the cursor's cross hairs in pixels.
extern QV_API int G_nCursorSize;

namespace qv {

/// The direction from which a projected drawing is seen, in radians; in plan at first.
struct ViewAngles {
  float a = 0;          ///< about the z axis
  float b = HALF_PI_F;  ///< above the plane; a quarter of a turn is plan
  /// Whether it is seen from above.
  bool is_plan() const { return a == 0 && b == HALF_PI_F; }
  friend bool operator==(const ViewAngles&, const ViewAngles&) = default;
};

}  // namespace qv

/// The tool of one view.
class QV_API CDrawTool {
 public:
  /// What the pointer does. A program's own states begin at `kOwnStates`; they show the cursor and no rubber band.
  enum DRAWTYPE : unsigned char {
    DRAW_NONE = 0,  ///< nothing; the right button returns here from any other state
    DRAW_ZOOM = 1,  ///< drag or click the corners of a window, which is then fitted
    DRAW_PAN = 2,   ///< drag or click from a point to where it shall come
    DRAW_PICK = 3,  ///< drag or click the corners of a pick rectangle; left to right takes only what lies wholly inside
    kOwnStates = 16,  ///< locating, stepping, offsets and catching points of the views
  };
  /// How many views the history keeps.
  static constexpr int kHistory = 10;

  /// A tool that draws in the window (null: none yet), with the default view: origin (0, 0), scale 1, Y reversed.
  explicit CDrawTool(qv::Window* window = nullptr);

  // What a view overrides, in slot order.

  /// Locating, stepping, offsets and catching points: the base class does none of it and answers 0; `qv::CatchTool`
  /// does.
  virtual int SetStep(float& /*step*/, int /*direction*/) { return 0; }
  virtual int SetLocate(CFPoint&) { return 0; }
  virtual int SetOffset(CFPoint&) { return 0; }
  virtual void SetCatchAllObject() {}
  virtual void SetCatchOneObject() {}
  virtual int GetCatchAll(CFPoint&) { return 0; }
  virtual int GetCatchOne(CFPoint&) { return 0; }
  /// Gives two opposite corners of everything that the view shows and returns 1; the base class returns 0.
  virtual int GetMaxRect(CFPoint& /*p1*/, CFPoint& /*p2*/) { return 0; }
  /// Show the step, the located point and its offset, in a view that has a place for it.
  virtual void ShowStep() const {}
  virtual void ShowLocate() const {}
  virtual void ShowOffset() const {}
  /// Called when the state has changed, for a view that has a pointer shape for each.
  virtual void SwitchCursor() {}
  /// Draws the cross hairs at the pointer with the inverting raster operation when the cursor flag is set, so that a
  /// second call removes them. `show` is 1 when they appear and 0 when they go.
  virtual void DrawCursor(CDC& dc, int show);
  /// Recomputes what depends on the view, in a view that keeps such; navigation passes two null pointers.
  virtual void PrepareDraw(const CPoint* /*from*/, const CPoint* /*to*/) {}
  virtual ~CDrawTool();

  CDrawTool(const CDrawTool&) = delete;
  CDrawTool& operator=(const CDrawTool&) = delete;

  /// The window to draw in, which must outlive its use; null for none. Without a window a view has no size, and
  /// operations that need one do nothing.
  void SetWindow(qv::Window* window) { m_pWindow = window; }
  /// The current view: its origin is the world point at the client area's top left corner.
  const CFCoor& CurrentView() const { return m_view; }
  /// Sets the view as it stands, without an entry in the history and without a repaint.
  void SetCurrentView(const CFCoor& view) { m_view = view; }
  /// The direction of the current view, which the history keeps beside it. The tool itself does not project.
  const qv::ViewAngles& CurrentAngles() const { return m_angles; }
  /// Sets the direction as it stands, like `SetCurrentView`.
  void SetCurrentAngles(const qv::ViewAngles& angles) { m_angles = angles; }

  /// Puts the current view and its direction on the history; when 10 are there, the oldest is dropped.
  void SaveCoor();
  /// Empties the history; the current view stays.
  void ClearHistory() { m_nHistory = 0; }
  /// Goes back to the view saved last; does nothing when there is none.
  void ShowPre();
  /// 1 when there is a view to go back to, else 0.
  int CanShowPre() const { return m_nHistory != 0; }
  /// Enlarges the picture by 1.1.
  /// Quirk: about the horizontal centre only. With Y reversed the visible centre moves up by the difference of the
  /// visible heights; out and in again comes back, and host programs' views count on both.
  void ShowZoomOut();
  /// Reduces the picture by 1.1; the visible centre moves down likewise.
  void ShowZoomIn();
  /// The view that fits the world rectangle of two opposite corners into the window, with its centre in the middle.
  /// Empty for a rectangle narrower or lower than 1e-7 and for a window of less than 2 pixels. Changes nothing.
  std::optional<CFCoor> Fitted(const CFPoint& p1, const CFPoint& p2) const;
  /// Shows the view that `Fitted` gives. Points on one horizontal or vertical line do nothing. Where `Fitted` is empty
  /// nothing changes, but the history gets an entry.
  void ShowRect(const CFPoint& p1, const CFPoint& p2);
  /// Fits everything (`GetMaxRect`) into the window.
  void ShowAll();
  /// Pans so that what is at the world point p1 comes to where p2 is.
  void ShowMove(const CFPoint& p1, const CFPoint& p2);

  /// Changes the state of interaction: removes what the old one shows, clears the interaction, resets the step counter
  /// when `reset` is not 0, draws what the new one shows and posts `message` to the window.
  void SwitchState(DRAWTYPE type, unsigned int message, int reset);
  /// The same with an unsigned flag.
  void SwitchState(DRAWTYPE type, unsigned int message, unsigned int reset) {
    SwitchState(type, message, static_cast<int>(reset != 0));
  }
  /// The state of interaction.
  DRAWTYPE State() const { return static_cast<DRAWTYPE>(m_byteState); }

  /// With `show` 0 removes the cursor and the rubber band that are on screen; with 1 draws those that the state shows,
  /// on a picture that has none. The band is drawn with R2_XORPEN and a solid red pen of width 0.
  void OnDraw(CDC& dc, int show);

  /// What the window does with its messages; points are in client coordinates. A corner is given by pressing the left
  /// button; the other by letting it go elsewhere, or by pressing it once more.
  void OnLButtonDown(unsigned int flags, CPoint point);
  void OnLButtonUp(unsigned int flags, CPoint point);
  void OnMouseMove(unsigned int flags, CPoint point);
  /// Gives up the corner that was given, or leaves the state.
  void OnRButtonDown(unsigned int flags, CPoint point);
  /// A pan while the middle button is held, in any state; the state then goes on, its corner given up.
  void OnMButtonDown(unsigned int flags, CPoint point);
  void OnMButtonUp(unsigned int flags, CPoint point);
  /// Escape (27) acts as the right button; Home (36) shows everything; Page Up (33) and Page Down (34) enlarge and
  /// reduce; Backspace (8) returns to the previous view. Returns 1 when the key was taken.
  int OnKeyDown(unsigned int key, unsigned int repeat, unsigned int flags);

  /// When a pick rectangle is complete the state's message is posted, and the view takes the rectangle by this call:
  /// returns 1 with its corners in world units, in the order in which they were given, or 0 when there is none
  /// or it was taken before.
  int TakePick(CFPoint& from, CFPoint& to);

 protected:
  /// Whether a first corner has been given, and where it and the pointer are in client coordinates.
  bool HasCorner() const { return m_byteCorner != 0; }
  CPoint Corner() const { return m_corner; }
  CPoint Pointer() const { return m_pointer; }
  /// The steps that a view has counted in the state; `SwitchState` clears it on request.
  short m_nCounter = 0;

 private:
  struct StateActions;

  const StateActions& state() const;
  CRect client() const { return m_pWindow ? m_pWindow->ClientRect() : CRect(); }
  void zoom_to(float scale);
  void view_changed();
  void give_corner(CPoint point);
  void complete(CPoint point);
  void draw_band(CDC& dc) const;
  /// Changes the interaction between removing what it shows and drawing it anew.
  template <class Change>
  void change_interaction(const Change& change);

  struct Entry {
    CFCoor view;
    qv::ViewAngles angles;
  };
  std::array<Entry, kHistory> m_history;
  int m_nHistory = 0;
  CFCoor m_view;
  qv::ViewAngles m_angles;
  qv::Window* m_pWindow;
  unsigned char m_byteCursor = 0;  // the cursor is on screen
  unsigned char m_byteBand = 0;    // the rubber band is on screen
  unsigned char m_byteCorner = 0;  // the first corner has been given
  unsigned char m_byteState = DRAW_NONE;
  unsigned char m_byteBeforePan = DRAW_NONE;
  unsigned int m_nMessage = 0;
  CPoint m_corner;
  CPoint m_pointer;
  std::optional<std::array<CFPoint, 2>> m_picked;
};
