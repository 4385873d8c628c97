#pragma once

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace qvview {

/// What a call asks for.
struct Call {
  std::vector<std::string> files;
  std::string language;  ///< empty where none is asked for
  bool compare = false;
};

/// The one description of the words of a call. When `program` parses them, it fills `call`.
void define_command_line(CLI::App& program, Call& call);

/// Parses the words of a call. The exit code where that is all: the call asked for help, or is off, which is told.
std::optional<int> parse_command_line(int argc, char** argv, Call& call);

}  // namespace qvview
