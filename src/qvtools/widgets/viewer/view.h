#pragma once

/// The viewer's one view: what the pointer and the commands do with a drawing in a window. Every change of the view is
/// made of the drawing tool's operations, so that one history serves all. Nothing here needs a screen.

#include <memory>
#include <optional>
#include <vector>

#include "qvtools/navigation/catch_tool.h"
#include "qvtools/widgets/viewer/drawing.h"
#include "qvtools/widgets/viewer/find.h"
#include "qvtools/widgets/viewer/measuring.h"

namespace qv::viewer {

/// What the left button does: picks, gives the corners of a window to be fitted, drags the drawing, or gives the points
/// of a measurement.
enum class Mode { Pick, WindowZoom, Hand, Measure };

/// A view of a drawing: what is shown, picked, measured and found.
class View : public qv::CatchTool {
 public:
  /// Is told of changes.
  class Listener {
   public:
    virtual ~Listener() = default;
    /// The view, the picks, the mode, or what is measured has changed.
    virtual void on_view_changed() = 0;
    virtual void on_picks_changed() = 0;
    virtual void on_mode_changed() = 0;
    virtual void on_measures_changed() {}
  };

  /// Both must outlive the view. Where `show` is used, the window takes `Post` from any thread.
  View(qv::Window& window, Listener& listener);

  /// Shows all of a drawing in plan and empties the history.
  void open(std::unique_ptr<Drawing> drawing);
  /// Shows another state of the same drawing: the view, its history and the layers stay.
  void reload(std::unique_ptr<Drawing> drawing);
  /// Null before the first drawing.
  Drawing* drawing() const { return drawing_.get(); }

  /// Draws the client area, whose background is there, and what the pointer shows on it.
  void paint(CDC& dc);
  /// The same, for a window's bitmap, by a picture that is drawn in a thread of its own: until that one is there, when
  /// a message comes back, the last one is shown moved and scaled to where it belongs. While the drawing is dragged, it
  /// is shown where it is dragged to.
  void show(qv::BitmapContext& dc, COLORREF background);
  /// How long `show` waits for the sharp picture: at first, half of what a picture at 60 a second has.
  void set_patience(PictureMaker::Clock::duration patience) { patience_ = patience; }
  /// Draws over the picture what is not part of it: measurements, the mark of what is caught, the frame of what was
  /// found. Cheap, so windows draw it on whatever they show; `labels` get the texts.
  void paint_overlay(CDC& dc, std::vector<OverlayLabel>& labels) const;
  /// Draws what is seen fitted into a picture of a size; see `Drawing::draw`.
  void draw_into(CDC& dc, CSize size, bool everyLetter);
  /// The world rectangle that the window shows.
  CFRect seen() const;
  /// The window has another size: everything stays in view where everything was, else the middle stays the middle.
  void resized();

  /// Fits everything into the window, and reduces and enlarges what is seen.
  void show_all();
  void zoom_out();
  void zoom_in();
  /// Brings one entity to the middle of the view.
  void show_entity(int entity);
  /// Shows a part of the plane as it was seen before, with an empty history.
  void restore(const CFRect& seen, const ViewAngles& angles);
  /// Whether everything is fitted into the window.
  bool shows_everything() const { return everything_; }
  /// Switches the layers of what is picked: only they are on, or they are off.
  void show_picked_layers(bool only);
  /// Switches all layers on.
  void show_all_layers();
  /// Shows a text so that it can be read, with a frame around it.
  void show_hit(const Hit& hit);
  /// Shows a place with some room about it, with a frame around it.
  void show_place(const CFRect& box);
  /// Takes the frame away.
  void unmark();
  /// Zooms about a point by steps of the wheel. Steps that continue each other make one entry in the history.
  void wheel(CPoint point, double steps, bool continues);
  /// Pans by a share of the window: (1, 0) shows what lies a window's width to the right.
  void pan_by(double across, double up);
  /// Turns the drawing and shows all of it.
  void set_angles(const ViewAngles& angles);

  /// What the left button does from now on.
  void set_mode(Mode mode);
  Mode mode() const { return mode_; }
  /// Measures from now on; each click gives a point.
  void begin_measure(MeasureKind kind);
  /// What was measured, and taking it away.
  const Measuring& measuring() const { return measuring_; }
  void clear_measures();
  /// Ends a chain or an outline; false when there was none.
  bool finish_measure();
  /// Takes the last point of it back.
  void take_back_point();
  /// The letter behind "s": only that kind of point is caught for the next point, "a" all kinds, "f" none. False for
  /// another letter.
  bool catch_by_letter(char letter);
  /// The next of the points that can be caught here, when there are several.
  void next_caught(int by);
  /// Catches points, or no longer.
  void switch_catching();
  /// Black on white, or white on black.
  void set_light(bool light);
  bool is_light() const { return light_; }
  /// Layers of the drawing, or the fonts, have changed: picks that are no longer shown go.
  void drawing_changed();
  void fonts_changed();

  /// What the window tells of the pointer, in pixels; with `add` what is picked comes to the picks.
  void left_down(CPoint point, bool add);
  void left_up(CPoint point, bool add);
  void middle_down(CPoint point);
  void middle_up(CPoint point);
  void move(CPoint point);
  void leave();
  /// Gives up what is being done: a drag or a corner, else the mode. False when there was nothing to give up.
  bool cancel();
  /// How far the drawing is being dragged; nothing while it is not.
  std::optional<CPoint> dragged_by() const;
  /// Where the pointer is in the world, while it is in the window.
  std::optional<CFPoint> pointer() const;
  /// Handles a message that was posted to the window.
  void on_message(unsigned int message);

  /// The picked entities, in drawing order.
  const std::vector<int>& picks() const { return picks_; }
  /// Picks all that is shown, and nothing.
  void select_all();
  void clear_picks();

  int GetMaxRect(CFPoint& p1, CFPoint& p2) override;
  void PrepareDraw(const CPoint* from, const CPoint* to) override;
  void DrawCursor(CDC& dc, int show) override;

 protected:
  /// What is shown, prepared.
  qv::PreparedDrawing* CaughtDrawing() override;

 private:
  static constexpr DRAWTYPE kHand = static_cast<DRAWTYPE>(kOwnStates);
  static constexpr DRAWTYPE kLocating = static_cast<DRAWTYPE>(kOwnStates + 1);
  static constexpr unsigned int kChanged = 1;       // the message of every state
  static constexpr unsigned int kPictureThere = 2;  // the message of the other thread

  void after_corner(bool hadCorner);
  /// Changes the view while a corner that has been given stays where it is in the world.
  template <class Change>
  void keeping_corner(const Change& change);
  void begin_drag(CPoint point);
  void end_drag(CPoint point);
  void pick(const CFPoint& from, const CFPoint& to);
  bool pick_at(CPoint point);
  void take(std::vector<int> hits);
  /// The current view, moved by what it is being dragged.
  CFCoor dragged_view() const;
  void repaint();
  /// Shows the picture again, with another overlay.
  void refresh();
  void measure_at(CPoint point);
  std::optional<int> entity_at(CPoint point);
  void draw_frame(CDC& dc) const;
  /// Everything fitted into the window, without an entry in the history.
  void fit();
  void measure();
  /// The factor, limited so that the view stays between the resolution of coordinates and far more than everything.
  double clamped_zoom(double factor) const;
  qv::Window& window_;
  Listener& listener_;
  std::unique_ptr<Drawing> drawing_;
  CFRect extent_;            // of what is shown, with a margin
  ViewAngles extentAngles_;  // from which it was measured
  CRect client_;
  Mode mode_ = Mode::Pick;
  bool light_ = true;
  bool everything_ = false;  // the view is that of everything
  bool inWheel_ = false;     // the last entry is that of the wheel's turn
  bool inside_ = false;      // the pointer is in the window
  bool adding_ = false;
  CPoint point_;
  std::optional<CPoint> dragFrom_;
  std::vector<int> picks_;
  std::shared_ptr<const std::vector<int>> shownPicks_;  // null after a change
  std::shared_ptr<const Picture> picture_;              // the last that was shown
  PictureMaker::Clock::duration patience_ = std::chrono::milliseconds(8);
  Measuring measuring_;
  std::optional<CFRect> frame_;  // around what was found
};

}  // namespace qv::viewer
