#pragma once

#include <QtGui/QIcon>

namespace qvview {

/// A small field in the colour of a colour number.
QIcon swatch(int color);

}  // namespace qvview
