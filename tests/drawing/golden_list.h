#pragma once

/// What a composer drew as short lines, and how they are held against a list of what it should have drawn.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "qvtools/drawing/base_sgt.h"

namespace qvtest {

/// One line for each entity: its kind, colour, line type and text where they are not the usual ones, and its numbers in
/// the order of its record. Bytes above 126 are written as <hexadecimal>.
std::vector<std::string> drawn(const CBase_SGT& sgt);

/// Holds lines against those of tests/data/NAME, numbers up to the rounding of coordinates. With QV_GOLDEN=1 in the
/// environment the list is written anew, to be reviewed before it is kept.
void expect_golden(const std::string& name, const std::vector<std::string>& lines);

}  // namespace qvtest
