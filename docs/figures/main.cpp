// Draws the pictures of the manual: qvfigures FOLDER FONTS [NAME…]

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "figure.h"

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fputs("qvfigures FOLDER FONTS [NAME...]\n", stderr);
    return 2;
  }
  manual::set_font_folder(argv[2]);
  const std::string fonts = std::string(argv[2]) + "/";
  if (!G_ShapeFont.SetTxtFont(fonts.c_str(), "txt.shx")) {
    std::fprintf(stderr, "%stxt.shx cannot be read\n", fonts.c_str());
    return 1;
  }
  if (!G_ShapeFont.SetHzFont(fonts.c_str(), "hztxt.shx"))
    std::fprintf(stderr, "%shztxt.shx cannot be read: Chinese letters stay blank\n", fonts.c_str());
  const std::vector<std::string_view> wanted(argv + 3, argv + argc);
  int failed = 0;
  for (const auto& [name, draw] : manual::snippets()) {
    if (!wanted.empty() && std::find(wanted.begin(), wanted.end(), name) == wanted.end()) continue;
    manual::Figure figure(argv[1], name);
    draw(figure, figure.sgt());
    if (!figure.save()) ++failed;
  }
  return failed ? 1 : 0;
}
