#include "qvtools/widgets/viewer/picture_maker.h"

#include <new>
#include <system_error>
#include <utility>

namespace qv::viewer {

PictureMaker::~PictureMaker() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    ends_ = givenUp_ = true;
  }
  changed_.notify_all();
  thread_.join();
}

std::shared_ptr<const Picture> PictureMaker::Make(const PictureOf& of, Clock::duration patience,
                                                  std::function<void()> ready) {
  std::unique_lock lock(mutex_);
  if (is_there(of)) {
    givenUp_ = true;
    wanted_.reset();
    return made_;
  }
  if (wanted_ != of) {
    wanted_ = of;
    givenUp_ = true;
  }
  if (rests_ > 0) return ready_ = std::move(ready), nullptr;
  ready_ = nullptr;
  try {
    if (!thread_.joinable()) thread_ = std::thread([this] { run(); });
  } catch (const std::system_error&) {
    make_one(lock);  // the system has no thread left
  }
  changed_.notify_all();
  if (took_ <= patience) changed_.wait_for(lock, patience, [&] { return !wanted_; });
  if (is_there(of)) return made_;
  ready_ = std::move(ready);
  return nullptr;
}

void PictureMaker::Rest() {
  std::unique_lock lock(mutex_);
  ++rests_;
  givenUp_ = true;
  changed_.wait(lock, [&] { return !busy_; });
}

void PictureMaker::GoOn() {
  const std::lock_guard lock(mutex_);
  --rests_;
  changed_.notify_all();
}

void PictureMaker::Forget() {
  std::unique_lock lock(mutex_);
  wanted_.reset();
  made_.reset();
  givenUp_ = true;
  changed_.wait(lock, [&] { return !busy_; });
}

void PictureMaker::run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [&] { return ends_ || (wanted_ && rests_ == 0); });
    if (ends_) return;
    make_one(lock);
  }
}

/// Draws what is wanted; it stays so when another thread breaks it off.
void PictureMaker::make_one(std::unique_lock<std::mutex>& lock) {
  const PictureOf of = *wanted_;
  givenUp_ = false;
  busy_ = true;
  lock.unlock();
  const Clock::time_point begin = Clock::now();
  std::shared_ptr<Picture> picture;
  bool whole = false;
  try {
    picture = std::make_shared<Picture>(of);
    whole = draw_(*picture, [this] { return !givenUp_; });
  } catch (const std::bad_alloc&) {
    picture.reset();
  }
  const Clock::duration took = Clock::now() - begin;
  lock.lock();
  busy_ = false;
  // Where memory ran out what was drawn by then is shown, or what is there already.
  const bool ends = wanted_ == of && (whole || !givenUp_);
  std::function<void()> ready;
  if (ends) wanted_.reset();
  if (ends && picture) {
    ready = std::exchange(ready_, nullptr);
    made_ = picture;
    took_ = took;
  }
  changed_.notify_all();
  if (!ready) return;
  lock.unlock();
  ready();
  lock.lock();
}

}  // namespace qv::viewer
