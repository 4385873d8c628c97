#pragma once

#include "core.h"

namespace qvpy {

/// A bitmap that Python holds.
struct Picture {
  std::shared_ptr<qv::BitmapContext> bitmap;
};

/// Width and height from Python, 1 to 32767.
CSize size_of(const py::object& size);
/// A colour from red, green and blue.
COLORREF color_of(const py::object& color, const char* name);

}  // namespace qvpy
