#pragma once

/// Curves as chains of points that lie off them by a share of their size at most.

#include <span>
#include <vector>

#include "qvtools/import/internal/output.h"
#include "qvtools/import/internal/space.h"

namespace qv::importing {

/// The number of chords for so much of a circle, of which one chord at most lies off by the share of its diameter.
int chord_count(double sweep, double tolerance);

/// Both ends included; angles in radians.
void flatten_arc(const Vec& center, double radius, double start, double sweep, double tolerance, std::vector<Vec>& out);
/// center + cos t * major + sin t * minor for t from `start` on.
void flatten_ellipse(const Vec& center, const Vec& major, const Vec& minor, double start, double sweep,
                     double tolerance, std::vector<Vec>& out);
/// The arc of a bulge between two points of a plane z = const, its first point left out; by value, since they may stand
/// in `out`. Positive bulges turn
/// counter-clockwise.
void flatten_bulge(Vec from, Vec to, double bulge, double tolerance, std::vector<Vec>& out);

/// A rational B-spline.
struct Spline {
  int degree = 3;
  bool closed = false;
  std::vector<double> knots;
  std::vector<double> weights;
  std::vector<Vec> control;
  std::vector<Vec> fit;
  Vec startTangent;
  Vec endTangent;
};
inline constexpr int kHighestDegree = 30;
/// False when it has too few points or too high a degree.
bool flatten_spline(Spline spline, double tolerance, std::vector<Vec>& out);

std::vector<Vertex> vertices_of(const std::vector<Vec>& points);

}  // namespace qv::importing
