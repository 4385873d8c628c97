#pragma once

#include "qvtools/widgets/viewer/display_form.h"

namespace qvapps {
using namespace qv::viewer;
}
