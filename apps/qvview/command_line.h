#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace qvview {

/// What a call asks for.
struct Call {
  std::vector<std::string> files;
  std::string language;  ///< empty where none is asked for
  bool compare = false;
};

/// The one description of the words of a call. When `program` parses them, it fills `call`.
void define_command_line(CLI::App& program, Call& call);

}  // namespace qvview
