#pragma once

/// Reinforcing bars: nominal diameters, areas and masses. Source: GB/T 1499.2-2018, table of nominal diameter, nominal
/// cross-section and theoretical mass (density 7.85 g/cm3); plain bars (GB/T 1499.1) have the same where both are made.

#include <span>

#include "qvtools/api.h"

namespace qv {

/// A standard size of bars. Source: GB/T 1499.2.
struct BarSize {
  int diameter;  ///< nominal, mm
  double area;   ///< nominal cross-section, mm2
  double mass;   ///< theoretical, kg/m
};

/// The standard sizes, by diameter from 6 to 50 mm.
QV_API std::span<const BarSize> BarSizes();

/// The standard size of a nominal diameter in mm; null for a diameter that is none.
QV_API const BarSize* FindBarSize(int diameter);

/// The nominal area in mm2 of `count` bars; 0 for a diameter that is none.
QV_API double BarArea(int diameter, int count = 1);

/// The nominal area in mm2 of bars at a spacing in mm along one metre, as slabs and walls are designed; 0 for a
/// diameter that is none or a spacing that is not above 0.
QV_API double BarAreaPerMetre(int diameter, double spacing);

/// The mass in kg of bars of a length in m together; 0 for a diameter that is none.
QV_API double BarMass(int diameter, double length);

}  // namespace qv
