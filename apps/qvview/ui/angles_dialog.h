#pragma once

#include <QtWidgets/QWidget>
#include <optional>

#include "model/drawing.h"
#include "ui/words.h"

namespace qvview {

/// Asks for view angles, in degrees; nothing when the user gives up.
std::optional<ViewAngles> ask_angles(QWidget* parent, const Words& words, const ViewAngles& present);

/// Angles in degrees as the view takes them.
ViewAngles from_degrees(double a, double b);

}  // namespace qvview
