#include "drawing_file.h"

#include <cstdio>
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
    "is no DXF drawing",
};

std::runtime_error failure(const std::string& path) {
  return std::runtime_error(path + ": " + kReasons[static_cast<int>(qvapps::diagnose(path))]);
}

}  // namespace

std::unique_ptr<DXF> load_drawing(const std::string& path, const qv::ImportOptions& options, qv::ImportReport& report) {
  auto dxf = std::make_unique<DXF>();
  dxf->New_MemDxf();
  if (qv::path_kind(path.c_str()) != qv::PathKind::File) throw failure(path);
  {
    const Progress progress("reading " + path);
    if (!qv::Import(path.c_str(), *dxf, options, report)) {
      const bool sheet = !options.layout.empty() && !report.layouts.empty();
      if (!sheet) throw failure(path);
      std::string names;
      for (const std::string& name : report.layouts) names += (names.empty() ? "" : ", ") + name;
      throw std::runtime_error(path + ": has no sheet \"" + options.layout + "\", but " + names);
    }
  }
  if (const std::string summary = report.summary(); !summary.empty())
    std::fprintf(stderr, "qvdraw: %s: %s\n", path.c_str(), summary.c_str());
  return dxf;
}

}  // namespace qvdraw
