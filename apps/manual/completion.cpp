#include <cctype>

#include "page.h"

namespace manual {

namespace {

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

/// What the script notes of a word: `choices`, or a pattern of `files`, of which "/" leaves the folders alone. Empty
/// where nothing is known.
std::string answer_for(const Word& word) {
  if (!word.choices.empty()) return "choices='" + joined(word.choices) + "'";
  switch (word.files) {
    case Files::Any:
      return "files='*'";
    case Files::Folders:
      return "files=/";
    case Files::Ending: {
      std::string pattern = "*.";
      for (const char c : word.ending)
        pattern += std::string("[") + c + static_cast<char>(std::toupper(static_cast<unsigned char>(c))) + ']';
      return "files='" + pattern + "'";
    }
    case Files::None:
      break;
  }
  return "";
}

/// How the script meets an option of a command: "'render -o'|'render --out'".
std::string cases_of(const Command& command, const Word& option) {
  std::string cases;
  for (const std::string& name : option.names) cases += (cases.empty() ? "'" : "|'") + command.name + ' ' + name + "'";
  return cases;
}

/// The commands, which take the program's options as well, and the program's own words, which the script meets where it
/// has met no command yet.
std::vector<Command> contexts_of(const Command& program) {
  std::vector<Command> contexts = program.commands;
  for (Command& command : contexts)
    for (const Word& option : program.options)
      if (!option.value.empty()) command.options.push_back(option);
  Command& itself = contexts.emplace_back(program);
  itself.name.clear();
  if (!program.commands.empty()) {
    Word& command = itself.places.emplace_back();
    for (const Command& one : program.commands) command.choices.push_back(one.name);
  }
  return contexts;
}

}  // namespace

std::string completion(const Command& program) {
  std::string takers, values, options, places;
  for (const Command& context : contexts_of(program)) {
    std::vector<std::string> names;
    for (const Word& option : context.options) {
      names.insert(names.end(), option.names.begin(), option.names.end());
      if (option.value.empty()) continue;
      takers += (takers.empty() ? "" : "|") + cases_of(context, option);
      if (const std::string answer = answer_for(option); !answer.empty())
        values += "      " + cases_of(context, option) + ") " + answer + " ;;\n";
    }
    options += "      '" + context.name + "') choices='" + joined(names) + "' ;;\n";
    for (std::size_t i = 0; i < context.places.size(); ++i)
      if (const std::string answer = answer_for(context.places[i]); !answer.empty())
        places += "      '" + context.name + " '" + (context.places[i].repeated ? "*" : std::to_string(i)) + ") " +
                  answer + " ;;\n";
  }
  std::string text =
      "# Completion of " + program.name + " for bash, made by the build from the description of its words.\n";
  text += "_" + program.name + "() {\n";
  text += "  local word=${COMP_WORDS[COMP_CWORD]} command='' taker='' place=0 choices='' files='' i\n";
  text += "  for ((i = 1; i < COMP_CWORD; ++i)); do\n";
  text += "    case \"$command ${COMP_WORDS[i]}\" in\n";
  if (!takers.empty()) text += "      " + takers + ")\n        taker=\"$command ${COMP_WORDS[i++]}\" ;;\n";
  text += "      *' -'*) ;;\n";
  if (!program.commands.empty()) text += "      ' '*) command=${COMP_WORDS[i]} ;;\n";
  text += "      *) place=$((place + 1)) ;;\n    esac\n  done\n";
  text += "  if ((i > COMP_CWORD)); then  # the word is an option's value\n";
  text += "    case \"$taker\" in\n" + values + "    esac\n";
  text += "  elif [[ $word == -* ]]; then\n";
  text += "    case \"$command\" in\n" + options + "    esac\n";
  text += "  else\n";
  text += "    case \"$command $place\" in\n" + places + "    esac\n  fi\n";
  text +=
      "  mapfile -t COMPREPLY < <(compgen -W \"$choices\" -- \"$word\"; "
      "[[ ! $files ]] || compgen -f -X \"!$files\" -- \"$word\")\n";
  text += "  [[ ! $files ]] || compopt -o filenames -o plusdirs 2>/dev/null\n";
  text += "}\ncomplete -F _" + program.name + ' ' + program.name + '\n';
  return text;
}

}  // namespace manual
