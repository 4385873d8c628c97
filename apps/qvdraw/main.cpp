/// qvdraw: draws, shows and describes drawings from the command line.
///
/// Exit codes: 0 done; 1 failed, with one line on standard error; 2 the call's words are off.

#include <cstdio>
#include <cstring>

#include "commands.h"
#include "common/fonts.h"
#include "common/picture_file.h"
#include "common/system.h"

namespace {

using qvdraw::Arguments;

struct Command {
  const char* name;
  const char* usage;
  const char* summary;
  int (*run)(const Arguments& arguments);
};

int help(const Arguments& arguments);

constexpr Command kCommands[] = {
    {"demo", "demo --out DIR", "draw the sample drawings into a directory", qvdraw::run_demo},
    {"render", "render IN.dxf -o PICTURE [--size WxH] [--window x1,y1,x2,y2] [--view A,B] [--background white|black]",
     "show a drawing, or a window of it, as a picture; view angles in degrees", qvdraw::run_render},
    {"info", "info IN.dxf [--json]", "tell a drawing's tables, entities and extent", qvdraw::run_info},
    {"slide", "slide IN.sld|LIBRARY.NAME -o PICTURE|OUT.dxf|OUT.scr [--size WxH]",
     "show or convert a slide, from its file or a library", qvdraw::run_slide},
    {"slides", "slides IN.slb [-o PICTURE] [--size WxH] [--extract DIR]",
     "list a slide library, show all its slides, or extract them", qvdraw::run_slides},
    {"db", "db IN [SEGMENT [KEY]] [--json]", "list a database's segments, a segment's items, or show an item's value",
     qvdraw::run_db},
    {"materials", "materials [--file UserOpt.dat]", "show the concrete and reinforcement grades, with the user's own",
     qvdraw::run_materials},
    {"contour", "contour FIELD -o PICTURE [--value K] [--size WxH]",
     "show a field as a colour contour with its legend; K, 0 to 4, is the value shown", qvdraw::run_contour},
    {"value", "value FIELD X Y [--value K]", "tell a field's value at a point, in metres", qvdraw::run_value},
    {"help", "help", "show this page", help},
};

int help(const Arguments&) {
  std::puts("qvdraw " QVDRAW_VERSION ": construction drawings from the command line\n\nusage:");
  for (const Command& command : kCommands) std::printf("  qvdraw %s\n      %s\n", command.usage, command.summary);
  std::puts("  qvdraw --version\n      show the version");
  std::printf("\na PICTURE is a file that ends in %s\n", qvapps::picture_endings().c_str());
  return 0;
}

int bad_usage(const char* message) {
  std::fprintf(stderr, "qvdraw: %s; see qvdraw help\n", message);
  return 2;
}

int run(const Command& command, const Arguments& arguments) {
  try {
    return command.run(arguments);
  } catch (const qvdraw::UsageError& error) {
    std::fprintf(stderr, "qvdraw: %s\nusage: qvdraw %s\n", error.what(), command.usage);
    return 2;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "qvdraw: %s\n", error.what());
    return 1;
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return bad_usage("a command is missing");
  if (std::strcmp(argv[1], "--version") == 0) return std::puts("qvdraw " QVDRAW_VERSION), 0;
  const char* name = std::strcmp(argv[1], "--help") == 0 ? "help" : argv[1];
  for (const Command& command : kCommands) {
    if (std::strcmp(command.name, name) != 0) continue;
    const qvapps::System system(argc, argv);
    qvapps::load_fonts("qvdraw", system.program_directory());
    return run(command, Arguments(argc - 2, argv + 2));
  }
  return bad_usage((std::string("there is no command \"") + argv[1] + "\"").c_str());
}
