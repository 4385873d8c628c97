#include <filesystem>
#include <stdexcept>

#include "commands.h"
#include "demo.h"
#include "picture.h"
#include "slide_samples.h"

namespace qvdraw {

int run_demo(const Arguments& arguments) {
  arguments.expect(0, {"--out"});
  const std::string directory = arguments.required("--out");
  std::error_code error;
  std::filesystem::create_directories(directory, error);
  if (!std::filesystem::is_directory(directory)) throw std::runtime_error(directory + ": cannot be made a directory");
  const std::unique_ptr<CBase_SGT> beam = compose_beam();
  const std::string base = directory + "/beam";
  if (!beam->Write_MemDxf_To_File((base + ".dxf").c_str())) throw std::runtime_error(base + ".dxf: cannot be written");
  resolve_for_display(*beam, true);
  for (const char* ending : {".png", ".svg", ".pdf"}) save_picture(*beam, base + ending, PictureOptions());
  write_sample_library(directory + "/details.slb");
  return 0;
}

}  // namespace qvdraw
