#include "common/fonts.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

#include "qvtools.h"

namespace qvapps {

namespace {

constexpr const char* kTextFont = "txt.shx";
constexpr const char* kBigFont = "hztxt.shx";

std::vector<std::string> font_directories(const std::string& programDirectory) {
  std::vector<std::string> directories;
  if (const char* chosen = std::getenv("QVTOOLS_FONTS")) directories.emplace_back(std::string(chosen) + "/");
  directories.push_back(programDirectory + "/fonts/");
  directories.push_back(programDirectory + "/../share/qvtools/fonts/");
  return directories;
}

}  // namespace

FontFiles load_fonts(const char* program, const std::string& programDirectory) {
  FontFiles files;
  for (const std::string& directory : font_directories(programDirectory)) {
    if (files.text.empty() && G_ShapeFont.SetTxtFont(directory.c_str(), kTextFont)) files.text = directory + kTextFont;
    if (files.big.empty() && G_ShapeFont.SetHzFont(directory.c_str(), kBigFont)) files.big = directory + kBigFont;
  }
  if (files.text.empty())
    std::fprintf(stderr, "%s: the text font %s is missing; texts will be blank\n", program, kTextFont);
  return files;
}

bool change_fonts(const FontFiles& files) {
  // A font object keeps the font that it has, so a change takes a new one.
  CShx fonts;
  if (!files.text.empty() && !fonts.SetTxtFont("", files.text.c_str())) return false;
  if (!files.big.empty() && !fonts.SetHzFont("", files.big.c_str())) return false;
  G_ShapeFont = fonts;
  return true;
}

}  // namespace qvapps
