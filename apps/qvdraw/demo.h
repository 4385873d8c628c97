#pragma once

#include <memory>
#include <string>

#include "qvtools.h"

namespace qvdraw {

/// A beam in elevation and section, composed from the primitives.
std::unique_ptr<CBase_SGT> compose_beam();

}  // namespace qvdraw
