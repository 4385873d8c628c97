#pragma once

#include "qvtools/widgets/viewer/captions.h"

namespace qvview {
using namespace qv::viewer;
}
