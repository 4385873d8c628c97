#pragma once

#include "qvtools/widgets/viewer/properties.h"

namespace qvview {
using namespace qv::viewer;
}
