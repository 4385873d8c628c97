#pragma once

/// Drawings as files, and what the commands ask of them.

#include <memory>
#include <string>
#include <vector>

#include "common/fonts.h"
#include "common/records.h"
#include "common/system.h"
#include "qvtools.h"

namespace qvdraw {

using qvapps::for_each;
using qvapps::layer_of;

/// What drawings are read with: the fonts that are loaded, whether those that the first drawing
/// names may take their place, and where shape files lie. Told once, when the program begins.
struct Lettering {
  qvapps::FontFiles fonts;
  bool byDrawing = true;
  std::string programDirectory;
};
void set_lettering(Lettering lettering);

/// Loads a drawing of any form, and says on standard error in one line what was converted and what was left out; the
/// report has all of it. Throws `std::runtime_error` with one line that says what is wrong.
std::unique_ptr<DXF> load_drawing(const std::string& path, const qv::ImportOptions& options, qv::ImportReport& report);

/// The word for an entity's kind in files.
const char* kind_name(ACAD_ENTITY& entity);

using qvapps::to_utf8;

}  // namespace qvdraw
