#include "drawing_file.h"

#include <stdexcept>

#include "common/unreadable.h"
#include "progress.h"
#include "qvtools/system/filesystem.h"

namespace qvdraw {

namespace {

/// By the kinds of `qvapps::Unreadable`.
constexpr const char* kReasons[] = {
    "there is no such file",
    "is a directory",
    "cannot be opened",
    "is a binary DXF file; save it as ASCII DXF, release 12",
    "has group codes that are not right-aligned in three characters; save it as ASCII DXF, release 12",
    "has no ENTITIES section; is it an ASCII DXF file?",
};

std::runtime_error failure(const std::string& path) {
  return std::runtime_error(path + ": " + kReasons[static_cast<int>(qvapps::diagnose(path))]);
}

}  // namespace

std::unique_ptr<DXF> load_drawing(const std::string& path) {
  auto dxf = std::make_unique<DXF>();
  dxf->New_MemDxf();
  if (qv::path_kind(path.c_str()) != qv::PathKind::File) throw failure(path);
  const Progress progress("reading " + path);
  if (!dxf->Read_FileDxf_To_Mem(path.c_str())) throw failure(path);
  return dxf;
}

}  // namespace qvdraw
