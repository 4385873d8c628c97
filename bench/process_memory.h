#pragma once

/// What the process takes of the machine's memory, whichever allocator took it.

#include <cstdlib>
#include <fstream>
#include <string>

namespace qvbench {

/// A value of the process in MB: VmHWM (its peak) or VmRSS.
inline double status_megabytes(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with(name)) return std::atof(line.c_str() + name.size() + 1) / 1024;
  return 0;
}

}  // namespace qvbench
