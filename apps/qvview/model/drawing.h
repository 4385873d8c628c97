#pragma once

#include "qvtools/widgets/viewer/drawing.h"

namespace qvview {
using namespace qv::viewer;
}
