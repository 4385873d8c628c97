#pragma once

#include "qvtools/widgets/viewer/measuring.h"

namespace qvview {
using namespace qv::viewer;
}
