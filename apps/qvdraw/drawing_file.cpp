#include "drawing_file.h"

#include <cstdio>
#include <iterator>
#include <stdexcept>

#include "failure.h"
#include "progress.h"
#include "qvtools/system/filesystem.h"

namespace qvdraw {

namespace {

Lettering g_lettering;

/// Reads the file; throws when it cannot be read.
void import_file(const std::string& path, DXF& dxf, const qv::ImportOptions& options, qv::ImportReport& report) {
  const Progress progress("reading " + path);
  if (qv::Import(path.c_str(), dxf, options, report)) return;
  const bool sheet = !options.layout.empty() && !report.layouts.empty();
  if (!sheet) throw failure(path, "is no DXF drawing");
  throw std::runtime_error(path + ": has no sheet \"" + options.layout + "\", but " + qvapps::listed(report.layouts));
}

/// Loads the fonts that the drawing's styles name, and says which are replaced. True when others are loaded now: texts
/// have other widths then.
bool suit_fonts(const std::string& path, DXF& dxf) {
  std::vector<std::string> replaced;
  const qvapps::FontFiles fonts = qvapps::fonts_for(dxf, g_lettering.fonts, replaced);
  const bool others = g_lettering.byDrawing && fonts != g_lettering.fonts && qvapps::change_fonts(fonts);
  if (others) g_lettering.fonts = fonts;
  g_lettering.byDrawing = false;  // what is drawn together has one pair of fonts
  if (!replaced.empty())
    std::fprintf(stderr, "qvdraw: %s: its texts are drawn in other fonts than %s\n", path.c_str(),
                 qvapps::replacement(replaced, g_lettering.fonts).c_str());
  return others;
}

}  // namespace

void set_lettering(Lettering lettering) {
  g_lettering = std::move(lettering);
}

const char* kind_name(ACAD_ENTITY& entity) {
  static constexpr const char* kNames[] = {
#define QV_KIND(KEYWORD, member) #KEYWORD,
      QV_FOR_EACH_ENTITY_KIND(QV_KIND)
#undef QV_KIND
  };
  const int type = entity.GetType();
  return type >= 0 && type < static_cast<int>(std::size(kNames)) ? kNames[type] : "OWN";
}

std::unique_ptr<DXF> load_drawing(const std::string& path, const qv::ImportOptions& options, qv::ImportReport& report) {
  auto dxf = std::make_unique<DXF>();
  dxf->New_MemDxf();
  if (qv::path_kind(path.c_str()) != qv::PathKind::File) throw failure(path, "is no DXF drawing");
  qv::ImportOptions found = options;
  found.shapeFolders = qvapps::shape_folders(path, g_lettering.programDirectory);
  import_file(path, *dxf, found, report);
  if (suit_fonts(path, *dxf)) import_file(path, *dxf, found, report);
  if (const std::string summary = report.summary(); !summary.empty())
    std::fprintf(stderr, "qvdraw: %s: %s\n", path.c_str(), summary.c_str());
  return dxf;
}

}  // namespace qvdraw
