#pragma once

/// The service layer that the whole library calls: error reports, files relative to the work directory, text input.

#include "qvtools/services/files.h"
#include "qvtools/services/messages.h"
#include "qvtools/services/text_input.h"
