#pragma once

/// Files for the readers that take a name: in a temporary directory that lives as long as the process.

#include <cstdint>
#include <string>

#include "platform/console/console_host.h"
#include "platform/host.h"
#include "support/temporary_directory.h"

namespace qvfuzz {

inline const qvtest::TemporaryDirectory& scratch() {
  static const qvtest::TemporaryDirectory directory;
  return directory;
}

inline std::string scratch_file(const std::uint8_t* data, std::size_t size) {
  return scratch().write("in.dxf", {reinterpret_cast<const char*>(data), size});
}

/// Answers every message at once.
struct QuietHost : qv::ConsoleHost {
  qv::Answer ShowBox(const char*, qv::BoxKind) override { return qv::Answer::Ok; }
};

inline void require(bool condition) {
  if (!condition) __builtin_trap();
}

}  // namespace qvfuzz
