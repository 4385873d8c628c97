#pragma once

/// The list of bars of a drawing: shapes, lengths, masses, and their sums.

#include <string>
#include <vector>

#include "qvtools/drawing/sheet_table.h"

namespace qv {

/// How a bar is bent. The legs a, b and c of `BarList::Bar` are outer measures.
enum class BarShape {
  Straight,   ///< a
  Bent,       ///< a, and b up at its right end
  BentTwice,  ///< a, b up at its left end and c at its right one
  Cranked,    ///< a at the bottom, b up its slopes, c on top at both ends
  Stirrup,    ///< a wide, b high, closed, with two hooks of 135 degrees
  Tie         ///< a long, with a hook of 135 degrees at both ends
};

/// Bars, each with its mark. Lengths are mm, masses kg by GB/T 1499.2 (`BarMass`).
class QV_API BarList {
 public:
  /// One position of the list.
  struct Bar {
    std::string mark;                     ///< the number of the position, GBK
    BarShape shape = BarShape::Straight;  ///< how it is bent
    int grade = 3;                        ///< 1 to 3, see `CBase_SGT::FormString_GJ_nqd`
    int diameter = 0;                     ///< nominal, mm
    int count = 0;                        ///< how many of them
    double a = 0;                         ///< the legs that the shape has, outer measures, mm
    double b = 0;
    double c = 0;
    double length = 0;  ///< of one bar; 0: `Length` of its legs
  };
  /// All bars of one grade and diameter.
  struct Sum {
    int grade;
    int diameter;
    double length;  ///< m
    double mass;    ///< kg
  };

  /// The length of one bar: its legs added up, bends not taken off. A hook of 135 degrees adds a straight end of ten
  /// diameters, at least 75 mm, and the bend about a mandrel of 2.5 diameters (grade 1) or 4 diameters (others), by
  /// GB 50204 and GB 50010: 11.9 and 12.9 diameters of bars from 8 mm on.
  static double Length(const Bar& bar);

  /// A bar whose diameter is no standard one has no mass.
  void Add(Bar bar);
  /// The bars, in the order in which they were added.
  const std::vector<Bar>& bars() const { return bars_; }
  /// The bars added up by grade and diameter: the sums of what the list prints, so lengths of one bar count as whole
  /// mm, those of a position as steps of 0.01 m, its mass as steps of 0.1 kg.
  std::vector<Sum> Sums() const;
  /// The mass of all bars, kg: the sum of those.
  double Mass() const;

  /// Draws the list with its upper left corner at (x, top) and the sums per diameter below it, in the current colour,
  /// the little pictures in the colour of bars. `mostHeight` (drawing mm; 0 no limit) breaks the list into columns.
  /// Returns the rectangle of both in the caller's frame, titles left out.
  CFRect Draw(CBase_SGT& sgt, float x, float top, double mostHeight = 0) const;

 private:
  std::vector<Bar> bars_;
};

}  // namespace qv
