#include "qvview/command_line.h"

#include <CLI/CLI.hpp>
#include <cstdio>

#include "qvtools/version.h"

namespace qvview {

void define_command_line(CLI::App& program, Call& call) {
  program.name("qvview");
  program.description("shows DXF drawings in a window");
  program.set_version_flag("-v,--version", "qvview " QVTOOLS_VERSION, "show the version");
  program.allow_windows_style_options(false);  // what begins with a slash is a path
  program.add_option("FILE.dxf", call.files, "the drawings to show, each in a tab")->type_name("");
  program.add_option("--language", call.language, "the language of the captions; the system's where none is chosen")
      ->check(CLI::IsMember({"zh", "en"}));
  program.add_flag("--compare", call.compare, "show what differs between two drawings, the older one first");
  program.parse_complete_callback([&call] {
    if (call.compare && call.files.size() != 2) throw CLI::ValidationError("--compare", "takes two drawings");
  });
}

std::optional<int> parse_command_line(int argc, char** argv, Call& call) {
  CLI::App program;
  define_command_line(program, call);
  try {
    program.parse(argc, argv);
  } catch (const CLI::Success& asked) {
    return program.exit(asked);
  } catch (const CLI::ParseError& error) {
    std::fprintf(stderr, "qvview: %s\nsee qvview --help\n", error.what());
    return 2;
  }
  return std::nullopt;
}

}  // namespace qvview
