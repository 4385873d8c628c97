#pragma once

#include "qvtools/widgets/viewer/records.h"

namespace qvapps {
using namespace qv::viewer;
}
