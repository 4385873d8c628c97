#include "common/fonts.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "qvtools.h"
#include "qvtools/system/filesystem.h"

namespace qvapps {

namespace {

/// What a font file says of itself: the second word of its first line, such as "shapes", "bigfont" or "unifont"; empty
/// for a file that is no font or cannot be read.
std::string kind_of(const std::string& path) {
  char line[32] = "";
  if (std::FILE* const file = qv::open_text(path.c_str(), "rb")) {
    if (!std::fgets(line, sizeof line, file)) line[0] = '\0';
    std::fclose(file);
  }
  const std::string_view head(line);
  const std::size_t blank = head.find(' ');
  if (blank == head.npos || head.substr(0, 4) != "Auto") return "";
  return std::string(head.substr(blank + 1, head.find(' ', blank + 1) - blank - 1));
}

/// Whether a font of the wanted kind is there. One of another kind is said.
bool is_usable(const char* program, const std::string& path, const char* wanted) {
  if (qv::path_kind(path.c_str()) != qv::PathKind::File) return false;
  const std::string kind = kind_of(path);
  if (kind == wanted) return true;
  std::fprintf(stderr, "%s: %s cannot be used: it is %s where %s is needed\n", program, path.c_str(),
               kind.empty() ? "no shape font" : ("of the kind \"" + kind + '"').c_str(), wanted);
  return false;
}

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
    const std::string text = directory + kTextFont;
    const std::string big = directory + kBigFont;
    if (files.text.empty() && is_usable(program, text, "shapes") && G_ShapeFont.SetTxtFont("", text.c_str()))
      files.text = text;
    if (files.big.empty() && is_usable(program, big, "bigfont") && G_ShapeFont.SetHzFont("", big.c_str()))
      files.big = big;
  }
  if (files.text.empty())
    std::fprintf(stderr, "%s: the text font %s is missing; texts will be blank\n", program, kTextFont);
  if (files.big.empty())
    std::fprintf(stderr, "%s: the big font %s is missing; Chinese texts will be blank\n", program, kBigFont);
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
