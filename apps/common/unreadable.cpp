#include "common/unreadable.h"

#include <cstdio>

#include "qvtools.h"
#include "qvtools/system/filesystem.h"

namespace qvapps {

Unreadable diagnose(const std::string& path) {
  const qv::PathKind kind = qv::path_kind(path.c_str());
  if (kind == qv::PathKind::Absent) return Unreadable::Missing;
  if (kind == qv::PathKind::Directory) return Unreadable::Directory;
  std::FILE* file = qv::open_text(path.c_str(), "rb");
  if (!file) return Unreadable::NotOpened;
  char line[300];
  std::string first;
  if (qv::read_line(line, sizeof line, file)) first = line;
  bool unaligned = false;  // an ENTITIES section whose group code is not right-aligned
  std::string before;
  while (!unaligned && qv::read_line(line, sizeof line, file)) {
    unaligned = before != "  2\n" && std::string(line).find("ENTITIES") == 0;
    before = line;
  }
  std::fclose(file);
  if (first.find("AutoCAD Binary DXF") == 0) return Unreadable::Binary;
  return unaligned ? Unreadable::BareCodes : Unreadable::NoEntities;
}

}  // namespace qvapps
