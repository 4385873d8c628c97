#pragma once

/// What the fuzz targets share.

#include "qvtools/platform/console/console_host.h"
#include "qvtools/platform/host.h"
#include "qvtools/system/saved_file.h"
#include "support/temporary_directory.h"

namespace qvfuzz {

/// A directory that lives as long as the process.
inline const qvtest::TemporaryDirectory& scratch() {
  static const qvtest::TemporaryDirectory directory;
  static const bool unflushed = (qv::SavedFile::SetFlushToDisk(false), true);
  static_cast<void>(unflushed);
  return directory;
}

/// Answers every message at once.
struct QuietHost : qv::ConsoleHost {
  qv::Answer ShowBox(const char*, qv::BoxKind) override { return qv::Answer::Ok; }
};

inline void require(bool condition) {
  if (!condition) __builtin_trap();
}

}  // namespace qvfuzz
