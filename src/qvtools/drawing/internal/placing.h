#pragma once

/// What the primitives and symbols share: turned frames, and the environment that a symbol works in.

#include <cmath>
#include <numbers>

#include "qvtools/drawing/base_sgt.h"
#include "qvtools/fonts/shx.h"
#include "qvtools/geometry/numerics/numeric.h"

namespace qv::detail {

inline constexpr double kRadian = std::numbers::pi / 180;
inline constexpr char kSheetStyle[] = "HZ";     ///< of Chinese texts
inline constexpr double kHalfRoot = 0.7071068;  ///< the share of a 45 degree stroke along either axis

inline float degrees(double radians) {
  return static_cast<float>(radians / kRadian);
}

/// A turn by an angle in degrees; multiples of 90 are exact, and an angle that is not finite counts as 0.
struct Turn {
  double c;
  double s;
  explicit Turn(double angle) {
    if (!std::isfinite(angle)) angle = 0;
    const double quarter = std::fmod(angle, 360.0) / 90;
    c = std::cos(angle * kRadian);
    s = std::sin(angle * kRadian);
    if (quarter == std::trunc(quarter)) {
      c = std::round(c);
      s = std::round(s);
    }
  }
};

/// Turns a point counter-clockwise about the origin by an angle in degrees.
inline void turn(double angle, float& x, float& y) {
  const Turn d(angle);
  const double px = x;
  const double py = y;
  x = static_cast<float>(px * d.c - py * d.s);
  y = static_cast<float>(px * d.s + py * d.c);
}

struct Place {
  float x;
  float y;
};

/// A frame of its own: turned counter-clockwise by an angle in degrees, its origin at (x, y).
struct Frame {
  float x;
  float y;
  float angle;
  Frame(float originX, float originY, float turned) : x(originX), y(originY), angle(turned) {}
  /// A frame at point 1 whose x axis runs to point 2.
  Frame(float x1, float y1, float x2, float y2) : Frame(x1, y1, degrees(get_line_angle(x1, y1, x2, y2))) {}

  Place at(double u, double v) const {
    Place p{static_cast<float>(u), static_cast<float>(v)};
    turn(angle, p.x, p.y);
    return {p.x + x, p.y + y};
  }
};

/// The frame of a line, with its origin at i/n of it (n = 0 is n = 1) and `off` to its left.
inline Frame frame_on_line(float x1, float y1, float x2, float y2, int n, int i, double off) {
  const Frame line(x1, y1, x2, y2);
  const Place at = line.at(static_cast<double>(i) * get_dist(x1, y1, x2, y2) / (n == 0 ? 1 : n), off);
  return {at.x, at.y, line.angle};
}

/// The environment of a composer while a symbol works: brought back at the end, without asking for memory.
class SymbolEnvironment {
 public:
  explicit SymbolEnvironment(CBase_SGT& sgt) : sgt_(sgt), saved_(sgt) {}
  SymbolEnvironment(CBase_SGT& sgt, const char* color) : SymbolEnvironment(sgt) { sgt.SetCurColor(color); }
  ~SymbolEnvironment() { static_cast<SgtEnvironment&>(sgt_) = saved_; }
  SymbolEnvironment(const SymbolEnvironment&) = delete;
  SymbolEnvironment& operator=(const SymbolEnvironment&) = delete;

  /// Takes points (x, y, x, y ...) through the placement; world coordinates from here on.
  void anchor() const {
    sgt_.m_fShiftX = sgt_.m_fShiftY = 0;
    sgt_.m_fLenFactor = 1;
    sgt_.m_fRotAngle = 0;
  }
  template <class... More>
  void anchor(float& x, float& y, More&... more) const {
    sgt_.Convert_XY(x, y);
    anchor(more...);
  }
  /// The same, and texts and widths as they are.
  template <class... Coordinates>
  void anchor_all(Coordinates&... points) const {
    anchor(points...);
    sgt_.m_fTextFactor = sgt_.m_fWidthFactor = 1;
  }

 private:
  CBase_SGT& sgt_;
  SgtEnvironment saved_;
};

/// The width of a text in the text font, with the width factor of the composer's styles.
inline float text_width(const char* text, float height) {
  return G_ShapeFont.GetTxtWidth(text, height, 0.75F);
}

inline void draw_line(CBase_SGT& sgt, Place a, Place b) {
  sgt.Draw_Line(a.x, a.y, b.x, b.y);
}

/// A polyline of straight edges and one width through at most 20 points.
inline constexpr int kMostBarPoints = 20;
inline void draw_bar(CBase_SGT& sgt, int n, const Place* points, bool closed, float width) {
  float x[kMostBarPoints], y[kMostBarPoints], start[kMostBarPoints], end[kMostBarPoints];
  const float bulge[kMostBarPoints] = {};
  for (int i = 0; i < n; ++i) {
    x[i] = points[i].x;
    y[i] = points[i].y;
    start[i] = end[i] = width;
  }
  sgt.Draw_Pline(n, x, y, bulge, closed, start, end);
}

/// A 45 degree stroke of the dimension tick's length across a place, in a frame.
struct Tick {
  Place from;
  Place to;
  Tick(const CBase_SGT& sgt, const Frame& frame, double u, double v) {
    const double t = 0.5 * sgt.m_fDimTick * kHalfRoot;
    from = frame.at(u - t, v - t);
    to = frame.at(u + t, v + t);
  }
};

}  // namespace qv::detail
