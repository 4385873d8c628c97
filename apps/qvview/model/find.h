#pragma once

#include "qvtools/widgets/viewer/find.h"

namespace qvview {
using namespace qv::viewer;
}
