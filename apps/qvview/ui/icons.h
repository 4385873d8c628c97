#pragma once

#include <QtGui/QColor>
#include <QtGui/QIcon>

namespace qvview {

/// A picture of `icons/` for buttons, its black lines in a colour. It is drawn anew for every size, so that it is sharp
/// on any screen.
QIcon icon(const char* name, const QColor& ink);

}  // namespace qvview
