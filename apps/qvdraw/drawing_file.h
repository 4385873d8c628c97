#pragma once

/// Drawings as files, and what the commands ask of them.

#include <memory>
#include <string>

#include "common/records.h"
#include "common/system.h"
#include "qvtools.h"

namespace qvdraw {

using qvapps::for_each;
using qvapps::layer_of;

/// Loads a drawing; throws `std::runtime_error` with one line that says what is wrong and what would help.
std::unique_ptr<DXF> load_drawing(const std::string& path);

using qvapps::to_utf8;

}  // namespace qvdraw
