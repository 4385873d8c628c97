#pragma once

#include <string>

#include "qvtools.h"

namespace qvdraw {

/// A floor slab of 12 by 8 metres with a round opening, some 60,000 triangles, with the deflection of the slab in
/// millimetres and its slopes as values.
void make_sample_slab(CChang& field);

/// Writes the sample slab as DIRECTORY/slab.field and its picture as DIRECTORY/slab.png.
void write_sample_slab(const std::string& directory);

}  // namespace qvdraw
