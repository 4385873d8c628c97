#pragma once

/// The service layer that the whole library calls: error reports, files relative to the work directory, text input.

#include "data/files.h"
#include "data/messages.h"
#include "data/text_input.h"
