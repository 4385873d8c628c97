#pragma once

/// The sample sheets, composed as a design program would: in model units (mm), with sheet sizes by the scale, of data
/// in text files (`samples/`). What is missing in those is thrown.

#include "demo/sheet.h"

namespace qvdraw {

/// The framing plan of a storey with a section and the schedule of its beams: A1, 1:100.
Sheet compose_plan(const Sample& project, const Sample& storey);
/// The bars of its slabs: A1, 1:100.
Sheet compose_slab(const Sample& project, const Sample& slab, const Sample& storey);
/// A beam of two spans in elevation and section, its bars drawn apart and listed: A2, 1:50.
Sheet compose_beam(const Sample& project, const Sample& beam);
/// Columns by storeys, with their sections: A2, 1:50.
Sheet compose_columns(const Sample& project, const Sample& columns);
/// A stair in plan and section, with the bars of its slabs: A2, 1:50.
Sheet compose_stair(const Sample& project, const Sample& stair);
/// Isolated footings: plan, section, schedule: A2, 1:20.
Sheet compose_footing(const Sample& project, const Sample& footing);
/// General notes, and the list of the drawings: A2.
Sheet compose_notes(const Sample& project, const Sample& notes);
/// Moments, shear forces and steel areas of the beam: A3.
Sheet compose_calculation(const Sample& project, const Sample& calculation);

}  // namespace qvdraw
