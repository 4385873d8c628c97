#pragma once

#include "qvtools/widgets/viewer/view.h"

namespace qvview {
using namespace qv::viewer;
}
