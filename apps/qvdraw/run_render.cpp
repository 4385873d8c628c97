#include "commands.h"
#include "common/display_form.h"
#include "drawing_file.h"

namespace qvdraw {

void run_render(const RenderRequest& request) {
  qv::ImportReport report;
  const std::unique_ptr<DXF> dxf = load_drawing(request.drawing, request.import, report);
  qvapps::drop_hidden(*dxf);
  qvapps::resolve_for_display(*dxf, request.options.white);
  save_picture(*dxf, request.picture, request.options);
}

}  // namespace qvdraw
