#include <filesystem>
#include <stdexcept>

#include "commands.h"
#include "common/display_form.h"
#include "common/picture_file.h"
#include "demo.h"
#include "picture.h"
#include "slab_sample.h"
#include "slide_samples.h"

namespace qvdraw {

void run_demo(const DemoRequest& request) {
  const std::string& directory = request.directory;
  std::error_code error;
  std::filesystem::create_directories(directory, error);
  if (!std::filesystem::is_directory(directory)) throw std::runtime_error(directory + ": cannot be made a directory");
  constexpr int kWidth = 3200;  // pixels of a picture: its smallest texts stay legible
  const struct {
    const char* name;
    std::unique_ptr<CBase_SGT> (*compose)();
  } sheets[] = {{"plan", compose_plan}, {"beam", compose_beam}, {"calc", compose_calculation}};
  for (const auto& sheet : sheets) {
    const std::unique_ptr<CBase_SGT> sgt = sheet.compose();
    if (!sgt) throw std::runtime_error("not enough memory");
    const std::string base = directory + "/" + sheet.name;
    if (!sgt->Write_MemDxf_To_File((base + ".dxf").c_str())) throw std::runtime_error(base + ".dxf: cannot be written");
    qvapps::resolve_for_display(*sgt, true);
    PictureOptions options;
    options.size = CSize(kWidth, kWidth);
    for (const auto& format : qvapps::picture_formats()) save_picture(*sgt, base + format.ending, options);
  }
  write_sample_library(directory + "/details.slb");
  write_sample_slab(directory);
}

}  // namespace qvdraw
