#pragma once

/// A device context that records the calls that draw.

#include <string>
#include <vector>

#include "qvtools/platform/device.h"

namespace qvtest {

class RecordingContext : public CDC {
 public:
  struct Segment {
    CPoint from;
    CPoint to;
    COLORREF color;
    friend bool operator==(const Segment&, const Segment&) = default;
  };
  struct Pixel {
    CPoint at;
    COLORREF color;
  };
  struct Fill {
    std::vector<CPoint> points;
    qv::FillRule rule;
    COLORREF color;
  };

  explicit RecordingContext(CSize resolution = {1920, 1080}) : resolution_(resolution) {}

  void MoveTo(int x, int y) override {
    calls += 'M' + place(x, y);
    position_ = CPoint(x, y);
  }
  void LineTo(int x, int y) override {
    calls += 'L' + place(x, y);
    segments.push_back({position_, CPoint(x, y), Pen().color});
    pens.push_back(Pen());
    position_ = CPoint(x, y);
  }
  void SetPixel(int x, int y, COLORREF color) override {
    calls += 'P' + place(x, y);
    pixels.push_back({CPoint(x, y), color});
  }
  void FillRgn(const CRgn& region, const CBrush& brush) override {
    calls += "F ";
    fills.push_back({{region.Points(), region.Points() + region.Count()}, region.Rule(), brush.color});
  }
  CSize GetResolution() const override { return resolution_; }
  bool IsPrinting() const override { return printing; }
  bool IsMetafile() const override { return metafile; }

  /// Forgets what was recorded.
  void clear() {
    calls.clear();
    segments.clear();
    pens.clear();
    pixels.clear();
    fills.clear();
  }

  std::string calls;  // "M1,2 L3,4 P5,6 F "
  std::vector<Segment> segments;
  std::vector<CPen> pens;  // one for each segment
  std::vector<Pixel> pixels;
  std::vector<Fill> fills;
  bool printing = false;
  bool metafile = false;

 private:
  static std::string place(int x, int y) { return std::to_string(x) + ',' + std::to_string(y) + ' '; }
  CSize resolution_;
  CPoint position_;
};

}  // namespace qvtest
