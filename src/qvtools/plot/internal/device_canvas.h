#pragma once

/// Pages drawn on a device context, as their marks come.

#include "qvtools/plot/internal/checked_canvas.h"
#include "qvtools/plot/internal/pixel_marks.h"

namespace qv::detail {

class DeviceCanvas final : public CheckedCanvas {
 public:
  /// For pages of the given height in mm, at so many dots a millimetre; `corner` is the dot of the page that lies at
  /// the device's (0, 0).
  DeviceCanvas(CDC& dc, CSize size, double height, double dots, CPoint corner = {})
      : dc_(dc), size_(size), corner_(corner), marks_(height, dots, true) {}

 private:
  void open_page(const Page&) override {}
  void close_page() override { flush(); }
  void new_layer(const PlotLayer&) override {}
  void choose_layer(int) override {}
  void draw_stroke(const Path& path, const Stroke& stroke) override {
    marks_.stroke(path, stroke);
    flush_many();
  }
  void draw_fill(const Path& path, Ink ink) override {
    marks_.fill(path, ink);
    flush_many();
  }
  void draw_text(const FoundText&) override {}
  bool write_file() override { return true; }

  void flush() {
    marks_.draw(dc_, size_, corner_.x, corner_.y);
    marks_.clear();
  }
  void flush_many() {
    constexpr std::size_t kMost = 4096;
    if (marks_.count() >= kMost) flush();
  }

  CDC& dc_;
  CSize size_;
  CPoint corner_;
  PixelMarks marks_;
};

}  // namespace qv::detail
