#pragma once

#include "qvtools/platform/framework.h"

namespace qv::detail {

/// The path of a file of the work directory. Throws when memory runs out.
CString in_work_path(const char* name);

/// Counts a file up in `QV_OpenFileNum`, whose fall below 0 is reported.
void count_opened_file();

}  // namespace qv::detail
