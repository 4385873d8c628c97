#pragma once

#include "arguments.h"

namespace qvdraw {

/// The commands; each returns the exit code, throws `UsageError` when the call's words are off, and
/// `std::runtime_error`, with one line for the user, when it fails.
int run_demo(const Arguments& arguments);
int run_render(const Arguments& arguments);
int run_info(const Arguments& arguments);
int run_slide(const Arguments& arguments);
int run_slides(const Arguments& arguments);
int run_db(const Arguments& arguments);
int run_materials(const Arguments& arguments);
int run_contour(const Arguments& arguments);
int run_value(const Arguments& arguments);

}  // namespace qvdraw
