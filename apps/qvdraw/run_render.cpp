#include <algorithm>
#include <numbers>

#include "commands.h"
#include "common/display_form.h"
#include "drawing_file.h"
#include "picture.h"

namespace qvdraw {

namespace {

PictureOptions options_of(const Arguments& arguments) {
  PictureOptions options;
  if (arguments.has("--size")) {
    const std::vector<double> size = arguments.numbers("--size", 2);
    if (std::min(size[0], size[1]) < 16 || std::max(size[0], size[1]) > 16000)
      throw UsageError("--size is 16 to 16000 pixels each way");
    options.size = CSize(static_cast<int>(size[0]), static_cast<int>(size[1]));
    options.fixedSize = true;
  }
  if (arguments.has("--window")) {
    const std::vector<double> w = arguments.numbers("--window", 4);
    options.window =
        CFRect(static_cast<float>(w[0]), static_cast<float>(w[1]), static_cast<float>(w[2]), static_cast<float>(w[3]));
    if (!(options.window->Width() > 0) || !(options.window->Height() > 0)) throw UsageError("--window is empty");
  }
  if (arguments.has("--view")) {
    const std::vector<double> angles = arguments.numbers("--view", 2);
    options.projected = true;
    options.viewA = static_cast<float>(angles[0] * std::numbers::pi / 180);
    options.viewB = static_cast<float>(angles[1] * std::numbers::pi / 180);
  }
  const std::string background = arguments.value("--background", "white");
  if (background != "white" && background != "black") throw UsageError("--background is white or black");
  options.white = background == "white";
  return options;
}

}  // namespace

int run_render(const Arguments& arguments) {
  arguments.expect(1, {"-o", "--size", "--window", "--view", "--background"});
  const std::string out = arguments.required("-o");
  const PictureOptions options = options_of(arguments);
  const std::unique_ptr<DXF> dxf = load_drawing(arguments.operand(0));
  qvapps::resolve_for_display(*dxf, options.white);
  save_picture(*dxf, out, options);
  return 0;
}

}  // namespace qvdraw
