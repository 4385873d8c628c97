#pragma once

/// What every device that has pixels must do, whatever draws on it.

#include <functional>

#include "pictures/picture.h"

namespace qvtest {

/// A new device of the size of the command stream's picture, on its paper, and how to read it.
struct Device {
  CDC& dc;
  std::function<Picture()> picture;
};

/// Expects the laws of devices to hold. `with_device` makes a device, calls its argument with it, and takes it down.
void expect_conforming(const std::function<void(const std::function<void(const Device&)>&)>& with_device);

}  // namespace qvtest
