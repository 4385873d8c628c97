#pragma once

#include "qvtools.h"
#include "ui/words.h"

namespace qvview {

/// The kind of an entity.
QString kind_of(ACAD_ENTITY& entity, const Words& words);

/// An entity's key coordinates and sizes, in drawing units and degrees; a text's contents, an insert's block.
QString describe(ACAD_ENTITY& entity, const Words& words);

/// A number as it is shown: at most three decimals, without trailing zeros.
QString number(double value);

}  // namespace qvview
