#pragma once

#include "qvtools/geometry/values/point.h"
#include "qvtools/geometry/values/rect.h"
#include "qvtools/platform/framework.h"
#include "qvtools/text/numbers.h"

/// The transform between world coordinates (floats) and device coordinates (integer pixels or printer units).
///
/// Rounding: a device value is trunc(2v + 1) / 2, both toward zero, for the product v in double. For v >= 0 this rounds
/// halves up.
/// Quirk: for negative v it is not symmetric (-0.7 and -1.2 give 0, -5 gives -4); every drawing relies on its lines
/// falling on the same pixels as before. Values beyond an int saturate; NaN gives 0.
///
/// With scale 0 the conversions to the device give 0 and those to the world the origin.
class QV_API CFCoor {
 public:
  CFPoint origin{0, 0};        ///< the world point at device (0, 0)
  float scale = 1;             ///< device units per world unit
  unsigned char reverseY = 1;  ///< not 0: device Y grows as world Y falls

  CFCoor() = default;
  /// The world point at device (0, 0), device units per world unit, and whether Y is reversed.
  CFCoor(const CFPoint& at, float unitsPerWorld, int reverse) { Init(at, unitsPerWorld, reverse); }
  void Init(const CFPoint& at, float unitsPerWorld, int reverse) {
    origin = at;
    scale = unitsPerWorld;
    SetReverse(reverse);
  }

  /// The three fields, one by one.
  void SetOrigin(const CFPoint& p) { origin = p; }
  const CFPoint& GetOrigin() const { return origin; }
  void SetScale(float s) { scale = s; }
  float GetScale() const { return scale; }
  void SetReverse(int reverse) { reverseY = reverse != 0; }
  int IsReverseY() const { return reverseY; }

  /// A world length in device units.
  int FPtoDP(double d) const {
    const double v = scale * d;
    return trunc(v + v + 1.0) / 2;
  }
  /// A world point in device coordinates.
  CPoint FPtoDP(const CFPoint& p) const { return {device_x(p.x), device_y(p.y)}; }
  CPoint FP2toDP(const CFPoint& p) const { return FPtoDP(p); }
  /// (X(x1), Y(y2), X(x2), Y(y1)): with a reversed Y and a positive scale, top <= bottom; not normalised otherwise.
  CRect FPtoDP(const CFRect& r) const { return {device_x(r.x1), device_y(r.y2), device_x(r.x2), device_y(r.y1)}; }

  /// A device length in world units, not rounded.
  double DPtoFP(int d) const { return scale == 0 ? 0 : d / static_cast<double>(scale); }
  /// The world point of a device point.
  CFPoint DPtoFP(const CPoint& p) const {
    const double dy = DPtoFP(p.y);
    return {static_cast<float>(DPtoFP(p.x) + origin.x), static_cast<float>(reverseY ? origin.y - dy : origin.y + dy)};
  }
  /// The world rectangle of a device rectangle, normalised.
  CFRect DPtoFP(const CRect& r) const { return {DPtoFP(CPoint(r.left, r.bottom)), DPtoFP(CPoint(r.right, r.top))}; }

 private:
  static int trunc(double v) {
    // In range the plain conversion is the same and inlines.
    return v > -2147483648.0 && v < 2147483648.0 ? static_cast<int>(v) : qv::TruncInt(v);
  }
  int device_x(float x) const { return device((static_cast<double>(x) - origin.x) * scale); }
  int device_y(float y) const {
    const double dy = reverseY ? static_cast<double>(origin.y) - y : static_cast<double>(y) - origin.y;
    return device(dy * scale);
  }
  static int device(double v) { return trunc(2 * v + 1) / 2; }
};

/// The shared transform that new drawings point to, and a second one for callers that save and restore it.
extern QV_API CFCoor G_ConCoor;
extern QV_API CFCoor G_ConCoor_bak;

/// Extent values for host programs, 0 at load; the library neither reads nor writes them.
extern QV_API float G_fLeft;
extern QV_API float G_fTop;
extern QV_API float G_fRight;
extern QV_API float G_fBottom;
