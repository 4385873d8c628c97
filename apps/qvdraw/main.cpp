/// qvdraw: draws, shows and describes drawings from the command line.
///
/// Exit codes: 0 done; 1 failed, with one line on standard error; 2 the call's words are off. Of `diff`: 0 the same, 1
/// different, 2 failed.

#include <cstdio>

#include "command_line.h"
#include "commands.h"
#include "common/naming_host.h"
#include "common/system.h"
#include "drawing_file.h"

namespace {

int complain(const CLI::App& program, const char* message, bool usage) {
  std::fprintf(stderr, "qvdraw: %s\n", message);
  const auto commands = program.get_subcommands();
  if (!usage) return !commands.empty() && commands[0]->get_name() == "diff" ? 2 : 1;
  std::fprintf(stderr, "see qvdraw %s--help\n", commands.empty() ? "" : (commands[0]->get_name() + ' ').c_str());
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  const qvapps::System system(argc, argv);
  qvapps::NamingHost<qv::ConsoleHost> host;
  qv::SetHost(&host);
  CLI::App program;
  qvdraw::Call call;
  qvdraw::define_command_line(program, call);
  // Runs before the command does.
  program.parse_complete_callback([&] {
    if (program.get_subcommands().empty()) throw qvdraw::UsageError("a command is missing");
    const std::string directory = system.program_directory();
    const qvapps::FontFiles files = qvapps::load_fonts("qvdraw", directory, call.fonts);
    qvdraw::set_lettering({files, call.fonts.empty(), directory});
  });
  try {
    program.parse(argc, argv);
  } catch (const CLI::Success& asked) {
    return program.exit(asked);
  } catch (const CLI::ParseError& error) {
    return complain(program, error.what(), true);
  } catch (const qvdraw::UsageError& error) {
    return complain(program, error.what(), true);
  } catch (const std::exception& error) {
    return complain(program, error.what(), false);
  }
  return call.answer;
}
