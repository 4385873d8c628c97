#include "fonts.h"

#include <cstdlib>
#include <filesystem>
#include <vector>

#include "qvtools.h"

namespace qvdraw {

void load_fonts(const std::string& programDirectory) {
  std::vector<std::string> directories;
  if (const char* chosen = std::getenv("QVTOOLS_FONTS")) directories.emplace_back(std::string(chosen) + "/");
  directories.push_back(programDirectory + "/fonts/");
  directories.push_back(programDirectory + "/../share/qvtools/fonts/");
  bool text = false;
  bool chinese = false;
  for (const std::string& directory : directories) {
    text = text || G_ShapeFont.SetTxtFont(directory.c_str(), "txt.shx");
    chinese = chinese || G_ShapeFont.SetHzFont(directory.c_str(), "hztxt.shx");
  }
  if (!text) std::fputs("qvdraw: the text font txt.shx is missing; texts will be blank\n", stderr);
}

}  // namespace qvdraw
