#pragma once

/// What a user measures in a drawing. Nothing here needs a screen.

#include <string>
#include <vector>

#include "qvtools.h"
#include "qvtools/widgets/viewer/captions.h"

namespace qv::viewer {

/// What is measured.
enum class MeasureKind : char { Distance, Angle, Radius, Area, ObjectArea, Coordinates };

/// A number as it is shown: at most three decimals, without trailing zeros.
std::string shown_number(double value);

/// One thing that was measured, in the plane of the view and in drawing units.
struct Measured {
  MeasureKind kind = MeasureKind::Distance;  ///< what is measured
  std::vector<qv::PlanePoint> points;  ///< a chain; vertex and legs of an angle; a centre and a point of the circle
  double length = 0;                   ///< of an object's outline
  double area = 0;                     ///< of an object

  /// The length of a chain's leg, from 0, and of all of it; an area's closing leg counts.
  double leg(std::size_t i) const;
  /// The length of all of it.
  double sum() const;
  /// The area of the points, or the object's.
  double enclosed() const;
  /// The angle at the first point, in degrees, 0 to 180.
  double degrees() const;
  /// All of it in words, one line.
  std::string words(Language language) const;
};

/// The measurements so far and the one that is being made.
class Measuring {
 public:
  /// Begins a measurement of a kind; what was begun is dropped.
  void begin(MeasureKind kind);
  /// The kind of the present measurement.
  MeasureKind kind() const { return present_.kind; }
  /// Adds a point to the present measurement; one that needs no more is done.
  void add(const qv::PlanePoint& point);
  /// What is measured of one object at once: a circle by its centre and a point of it, or an outline.
  void add_circle(const qv::PlanePoint& center, double radius);
  void add_object(const qv::PlanePoint& at, const qv::EntityMeasures& measures);
  /// Ends a chain or an area; what has too few points is dropped. False when there was none.
  bool finish();
  /// Takes the last point back. False when there was none.
  bool back();
  /// Takes all measurements away.
  void clear();

  /// What was measured.
  const std::vector<Measured>& results() const { return results_; }
  /// What has been given of the present one.
  const Measured& present() const { return present_; }
  /// The present one as it would be with the pointer's point.
  Measured with(const qv::PlanePoint& pointer) const;
  /// All results in words, line by line.
  std::string words(Language language) const;

 private:
  void done();

  std::vector<Measured> results_;
  Measured present_;
};

/// A text over the drawing, at a point of the window, UTF-8.
struct OverlayLabel {
  CPoint at;
  std::string text;
};

/// Draws a measurement with the pen that is selected, and adds what is written beside it.
void draw_measured(CDC& dc, const CFCoor& view, const Measured& measured, std::vector<OverlayLabel>& labels);

}  // namespace qv::viewer
