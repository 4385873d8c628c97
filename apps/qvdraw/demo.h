#pragma once

#include <memory>

#include "qvtools.h"

/// The sample sheets, composed as a design program would: in model units (mm), with sheet sizes by the scale.

namespace qvdraw {

/// The framing plan of a storey: A1, 1:100.
std::unique_ptr<CBase_SGT> compose_plan();
/// A beam of two spans in elevation and section, with its bars: A2, 1:50.
std::unique_ptr<CBase_SGT> compose_beam();
/// Moments, shear forces and steel areas of that beam: A3.
std::unique_ptr<CBase_SGT> compose_calculation();

}  // namespace qvdraw
