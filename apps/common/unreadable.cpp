#include "common/unreadable.h"

#include <cstdio>

#include "qvtools.h"
#include "qvtools/system/filesystem.h"

namespace qvapps {

Unreadable diagnose(const std::string& path) {
  const qv::PathKind kind = qv::path_kind(path.c_str());
  if (kind == qv::PathKind::Absent) return Unreadable::Missing;
  if (kind == qv::PathKind::Directory) return Unreadable::Directory;
  if (kind == qv::PathKind::Other) return Unreadable::Device;
  std::FILE* file = qv::open_text(path.c_str(), "rb");
  if (!file) return Unreadable::NotOpened;
  std::fclose(file);
  return Unreadable::NoDrawing;
}

}  // namespace qvapps
