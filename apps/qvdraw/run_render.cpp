#include "commands.h"
#include "drawing_file.h"

namespace qvdraw {

void run_render(const RenderRequest& request) {
  qv::ImportReport report;
  const std::unique_ptr<DXF> dxf = load_drawing(request.drawing, request.import, report);
  PictureOptions options = request.options;
  options.notes = &report.notes;
  save_picture(*dxf, request.picture, options);
}

}  // namespace qvdraw
