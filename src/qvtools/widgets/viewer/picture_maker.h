#pragma once

/// The pictures of a drawing are drawn in a thread of their own, so that a window can show the last one, moved or
/// scaled, until the sharp one is there.

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "qvtools/geometry/values/coor.h"
#include "qvtools/navigation/draw_tool.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"

namespace qv::viewer {

/// What a picture shows of its drawing.
struct PictureOf {
  CFCoor coor;
  ViewAngles angles;
  CSize size;
  COLORREF background = 0;
  std::shared_ptr<const std::vector<int>> picks;  ///< what is highlighted; null for nothing

  /// Whether both show the same.
  friend bool operator==(const PictureOf& a, const PictureOf& b) {
    return a.coor.origin == b.coor.origin && a.coor.scale == b.coor.scale && a.coor.reverseY == b.coor.reverseY &&
           a.angles == b.angles && a.size == b.size && a.background == b.background && a.picks == b.picks;
  }
};

/// A picture that is drawn, or being drawn.
struct Picture {
  explicit Picture(PictureOf what) : of(std::move(what)), pixels(of.size.cx, of.size.cy, of.background) {}

  PictureOf of;          ///< what it shows
  BitmapContext pixels;  ///< as far as they are drawn
};

/// Makes pictures, one at a time and the one that was asked for last. Its calls are one thread's; what it draws from
/// must not change but after `Rest` or `Forget`.
class PictureMaker {
 public:
  /// What is waited by.
  using Clock = std::chrono::steady_clock;
  /// Draws a picture while the answer is that it goes on; true when it is whole. Called in the thread.
  using Draw = std::function<bool(Picture&, const std::function<bool()>& goesOn)>;

  /// A maker that draws so. The thread begins with the first picture.
  explicit PictureMaker(Draw draw) : draw_(std::move(draw)) {}
  /// Gives up what is being drawn.
  ~PictureMaker();
  PictureMaker(const PictureMaker&) = delete;
  PictureMaker& operator=(const PictureMaker&) = delete;

  /// The picture, when it is there. One that is not is drawn from now on, and what was being drawn is given up; then it
  /// is waited for so long, unless the last one took longer to draw. Null when it was not done by then: `ready` is
  /// called in the thread as soon as it is.
  std::shared_ptr<const Picture> Make(const PictureOf& of, Clock::duration patience, std::function<void()> ready);
  /// Nothing is drawn any more when this returns, until as many calls of `GoOn` come.
  void Rest();
  void GoOn();
  /// Nothing is drawn any more when this returns; no picture is there or asked for.
  void Forget();

 private:
  bool is_there(const PictureOf& of) const { return made_ && made_->of == of; }
  void run();
  void make_one(std::unique_lock<std::mutex>& lock);

  Draw draw_;
  std::mutex mutex_;  // over all that follows
  std::condition_variable changed_;
  std::optional<PictureOf> wanted_;  // until it is there
  std::function<void()> ready_;      // to be called for it; empty while it is waited for
  std::shared_ptr<const Picture> made_;
  Clock::duration took_ = {};  // the last one
  int rests_ = 0;
  bool busy_ = false;
  bool ends_ = false;
  std::atomic<bool> givenUp_ = false;
  std::thread thread_;  // begins with the first picture
};

}  // namespace qv::viewer
