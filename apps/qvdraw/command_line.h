#pragma once

#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace qvdraw {

/// What a call gives beside what its command does.
struct Call {
  std::string fonts;  ///< what `--font` names
  int answer = 0;     ///< the exit code of a command that answers a question
};

/// The one description of the commands and their options. When `program` parses the words of a call, it fills `call`
/// and runs the command, which throws as `commands.h` says.
void define_command_line(CLI::App& program, Call& call);

/// Parses the words of a call and runs its command, `prepare` before it; a call that is off, or a command that fails,
/// is told on standard error. Returns the exit code.
int run_command_line(int argc, char** argv, const std::function<void(const Call& call)>& prepare);

}  // namespace qvdraw
