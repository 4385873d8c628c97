#pragma once

#include <string>
#include <vector>

namespace manual {

/// What files a word names.
enum class Files { None, Any, Folders, Ending };

/// An option, or a word that stands at its place.
struct Word {
  std::vector<std::string> names;  ///< "-o" and "--out"; of a place the one name
  std::string value;               ///< what stands for the value: "DIR"; empty for a flag and a place
  std::string summary;
  std::vector<std::string> choices;  ///< all that the value may be, where they are few
  bool required = false;
  bool repeated = false;
  Files files = Files::None;
  std::string ending;  ///< of those files: "dxf"
};

/// A program, or a command of one.
struct Command {
  std::string name;
  std::string summary;
  std::vector<Word> places;
  std::vector<Word> options;
  std::vector<Command> commands;
};

/// The programs, by what the parsers of their words know.
Command described_qvdraw();
Command described_qvview();
Command described_shpc();

}  // namespace manual
