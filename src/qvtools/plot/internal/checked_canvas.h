#pragma once

/// What all canvases have in common: marks outside of any page and marks that are not finite are left out, and memory
/// that runs out ends the file.

#include <cmath>
#include <map>
#include <utility>

#include "qvtools/plot/internal/canvas.h"
#include "qvtools/services/internal/out_of_memory.h"

namespace qv::detail {

inline bool is_finite(PathPoint p) {
  return std::isfinite(p.x) && std::isfinite(p.y);
}

inline bool is_finite(const Path& path) {
  // Zero times anything but a finite number is no number.
  double sum = 0;
  for (const Path::Piece& p : path.pieces()) {
    sum += (p.to.x + p.to.y) * 0;
    if (p.kind == Path::Kind::Arc) sum += (p.center.x + p.center.y + p.sweep) * 0;
  }
  return sum == 0;
}

class CheckedCanvas : public Canvas {
 public:
  void begin_page(const Page& page) final {
    if (place_ != Place::None) return;
    run([&] { open_page(page); });
    place_ = Place::Page;
  }
  void end_page() final {
    if (place_ != Place::Page) return;
    run([&] { close_page(); });
    place_ = Place::None;
  }
  int add_layer(const PlotLayer& layer) final {
    int index = -1;
    run([&] {
      const auto [place, added] = layers_.try_emplace({layer.name, layer.plotted}, static_cast<int>(layers_.size()));
      index = place->second;
      if (added) new_layer(layer);
    });
    return index;
  }
  void set_layer(int layer) final {
    run([&] { choose_layer(layer >= 0 && layer < static_cast<int>(layers_.size()) ? layer : -1); });
  }
  void stroke(const Path& path, const Stroke& stroke) final {
    if (takes(path) && stroke.width > 0 && std::isfinite(stroke.width)) run([&] { draw_stroke(path, stroke); });
  }
  void fill(const Path& path, Ink ink) final {
    if (takes(path)) run([&] { draw_fill(path, ink); });
  }
  void text(const FoundText& text) final {
    if (place_ == Place::None || !is_finite(text.at)) return;
    if (!std::isfinite(text.angle) || !std::isfinite(text.advance) || !std::isfinite(text.height)) return;
    if (text.height > 0) run([&] { draw_text(text); });
  }
  int begin_figure() final {
    if (!keeps_figures() || before_ != Place::Elsewhere) return -1;
    run([&] { open_figure(); });
    before_ = std::exchange(place_, Place::Figure);
    return figures_++;
  }
  void end_figure() final {
    if (place_ != Place::Figure) return;
    run([&] { close_figure(); });
    place_ = std::exchange(before_, Place::Elsewhere);
  }
  void place(int figure, PathPoint by) final {
    // A figure shows only those that were complete before it.
    const bool known = figure >= 0 && figure < figures_ - (place_ == Place::Figure);
    if (place_ != Place::None && known && is_finite(by)) run([&] { draw_figure(figure, by); });
  }
  bool finish() final {
    end_figure();
    end_page();
    bool written = false;
    run([&] { written = write_file(); });
    return good_ && written;
  }

 protected:
  // Each of these may throw std::bad_alloc: none is called again then.
  virtual void open_page(const Page& page) = 0;
  virtual void close_page() = 0;
  virtual void new_layer(const PlotLayer& layer) = 0;
  virtual void choose_layer(int layer) = 0;  // -1: none
  virtual void draw_stroke(const Path& path, const Stroke& stroke) = 0;
  virtual void draw_fill(const Path& path, Ink ink) = 0;
  virtual void draw_text(const FoundText& text) = 0;
  virtual void open_figure() {}
  virtual void close_figure() {}
  virtual void draw_figure(int /*figure*/, PathPoint /*by*/) {}
  virtual bool write_file() = 0;

 private:
  enum class Place : char { None, Page, Figure, Elsewhere };

  bool takes(const Path& path) const { return place_ != Place::None && !path.empty() && is_finite(path); }
  template <class F>
  void run(const F& f) {
    if (good_) good_ = unless_out_of_memory([&] { return f(), true; }, false);
  }

  Place place_ = Place::None;
  Place before_ = Place::Elsewhere;                     // where a figure was begun; elsewhere: no figure is open
  std::map<std::pair<std::string, bool>, int> layers_;  // their indices
  int figures_ = 0;
  bool good_ = true;
};

/// The canvas, when its file could be created.
template <class OneCanvas>
std::unique_ptr<Canvas> made_canvas(const std::string& path, const CanvasOptions& options) {
  std::unique_ptr<OneCanvas> canvas;
  unless_out_of_memory([&] { canvas = std::make_unique<OneCanvas>(path, options); });
  if (canvas && !canvas->is_open()) canvas.reset();
  return canvas;
}

}  // namespace qv::detail
