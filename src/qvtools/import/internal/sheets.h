#pragma once

/// Model space and the sheets of a drawing.

#include "qvtools/import/internal/job.h"

namespace qv::importing {

struct Sheet {
  bool model = true;
  int block = -1;  // that holds its entities; -1: they stand among the others, marked
};

/// False when the drawing has no sheet of the name (UTF-8; upper and lower case alike).
bool choose_sheet(Drawing& file, const std::string& name, Sheet& sheet);
std::vector<std::string> sheet_names(Drawing& file);

/// Puts out a sheet, with its windows on model space.
void convert_sheet(Job& job, const Sheet& sheet, const std::function<bool(double)>& progress);

}  // namespace qv::importing
