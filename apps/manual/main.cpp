/// make_manual DATE FOLDER: writes the programs' pages for `man` (qvdraw.1) and their completions for bash (qvdraw)
/// into the folder. The words come from what the programs parse them with.

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "page.h"

namespace {

using manual::Command;
using manual::Page;

const Page kQvdraw = {
    "construction drawings from the command line",
    {"qvdraw draws, shows, plots, converts, compares and describes construction drawings. Drawings are DXF files of "
     "any "
     "release and program, text or binary; databases, fields, slides and shape fonts are shown as well.",
     "Every command tells its options with --help. The formats of pictures go by the endings of their names."},
    {{"0", "Done. Of diff: the drawings are the same."},
     {"1", "Failed, with one line on standard error. Of diff: the drawings differ."},
     {"2", "The words of the call are off. Of diff also: failed."}},
    {{"QVTOOLS_FONTS", "A folder with shape fonts, which are found there by the names that drawings give them."}},
    {{"qvdraw demo --out out", "Draws the sample drawings."},
     {"qvdraw info plan.dxf", "Tells what a drawing has, how large it is, and what became of other programs' objects."},
     {"qvdraw render plan.dxf -o plan.png --size 1600x1000", "Makes a picture of a drawing."},
     {"qvdraw plot plan.dxf beam.dxf -o sheets.pdf --paper A2 --scale 1:100", "Plots two drawings to scale."},
     {"qvdraw convert architect.dxf -o flat.dxf --unit mm", "Makes a drawing that every program opens."},
     {"qvdraw diff old.dxf new.dxf -o both.pdf", "Tells what differs and draws both over each other."}},
    ".BR qvview (1),\n.BR shpc (1)"};

const Page kQvview = {
    "viewer of construction drawings",
    {"qvview shows DXF drawings of any release and program in a window: zooms and pans, picks entities, measures at "
     "points "
     "that it catches, finds texts, compares two drawings, plots and prints sheets to scale. F1 lists the mouse and "
     "the keys.",
     "Options of Qt, such as -platform, are taken as well."},
    {{"0", "The window was closed."}, {"2", "The words of the call are off."}},
    {{"QVTOOLS_FONTS", "A folder with shape fonts, which are found there by the names that drawings give them."}},
    {{"qvview plan.dxf beam.dxf", "Shows two drawings, each in a tab."},
     {"qvview --compare old.dxf new.dxf", "Shows what differs between two drawings."}},
    ".BR qvdraw (1)"};

const Page kShpc = {"compiler of SHX shape fonts",
                    {"shpc compiles a shape source, which describes the strokes of each character, to a shape font "
                     "that CAD programs and "
                     "qvdraw(1) draw texts with. The font is written whole or not at all."},
                    {{"0", "Done."},
                     {"1", "Failed, with a line for each fault on standard error."},
                     {"2", "The words of the call are off."}},
                    {},
                    {{"shpc txt.shp txt.shx", "Compiles a text font."}},
                    ".BR qvdraw (1)"};

bool save(const std::filesystem::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  return !file.flush().fail();
}

bool write(const Command& program, const Page& page, const char* date, const std::filesystem::path& folder) {
  return save(folder / (program.name + ".1"), manual::man_page(program, page, date)) &&
         save(folder / program.name, manual::completion(program));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs("usage: make_manual DATE FOLDER\n", stderr);
    return 2;
  }
  if (!write(manual::described_qvdraw(), kQvdraw, argv[1], argv[2]) ||
      !write(manual::described_qvview(), kQvview, argv[1], argv[2]) ||
      !write(manual::described_shpc(), kShpc, argv[1], argv[2])) {
    std::fprintf(stderr, "make_manual: %s cannot be written\n", argv[2]);
    return 1;
  }
  return 0;
}
