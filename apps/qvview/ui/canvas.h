#pragma once

#include "model/view.h"
#include "qvtools/widgets/qt/drawing_view.h"

namespace qvview {
using Canvas = qv::DrawingView;
}
