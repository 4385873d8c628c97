#pragma once

/// A device that takes no byte, as a disk that is full.

#include <cstdio>

namespace qvtest {

/// The directory of the device "full", with its separator; wine has the devices of the system under it. Windows itself
/// has none.
#if defined(_WIN32)
inline constexpr char kDevices[] = "\\\\?\\unix\\dev\\";
inline constexpr char kFullDisk[] = "\\\\?\\unix\\dev\\full";
#else
inline constexpr char kDevices[] = "/dev/";
inline constexpr char kFullDisk[] = "/dev/full";
#endif

inline bool has_full_disk() {
  std::FILE* const file = std::fopen(kFullDisk, "r");
  if (file) std::fclose(file);
  return file;
}

}  // namespace qvtest

/// Ends a test where the machine has no such device.
#define QV_NEEDS_FULL_DISK() \
  if (!qvtest::has_full_disk()) GTEST_SKIP() << "no device that is full here"
