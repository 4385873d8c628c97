#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace qvdraw {

/// What a call gives beside what its command does.
struct Call {
  std::string fonts;  ///< what `--font` names
  int answer = 0;     ///< the exit code of a command that answers a question
};

/// The one description of the commands and their options. When `program` parses the words of a call, it fills `call`
/// and runs the command, which throws as `commands.h` says.
void define_command_line(CLI::App& program, Call& call);

}  // namespace qvdraw
