#include "description.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <regex>
#include <sstream>

#include "qvdraw/command_line.h"
#include "qvview/command_line.h"
#include "shpc/command_line.h"

namespace manual {

namespace {

std::vector<std::string> parts_of(const std::string& text) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, ',');) parts.push_back(part);
  return parts;
}

std::vector<std::string> validators_of(CLI::Option& option) {
  std::vector<std::string> descriptions;
  try {
    for (int i = 0;; ++i) descriptions.push_back(option.get_validator(i)->get_description());
  } catch (const CLI::OptionNotFound&) {
    return descriptions;  // there are no more
  }
}

/// Files by what stands for their names: "IN.dxf", "DIR".
void find_files(Word& word, const std::string& form) {
  constexpr const char* kAnyFile[] = {"FIELD", "IN", "OUT", "PICTURE", "SLIDE", "TABLE"};
  std::smatch found;
  if (form == "DIR") {
    word.files = Files::Folders;
  } else if (std::regex_search(form, found, std::regex(R"(\w\.([a-z]{3})\b)"))) {
    word.files = Files::Ending;
    word.ending = found[1];
  } else if (std::ranges::find(kAnyFile, form) != std::end(kAnyFile)) {
    word.files = Files::Any;
  }
}

Word described(CLI::Option& option) {
  Word word;
  word.summary = option.get_description();
  word.required = option.get_required();
  word.repeated = option.get_items_expected_max() > 1;
  word.names = option.get_positional() ? std::vector{option.get_name(true)} : parts_of(option.get_name(false, true));
  std::string form = option.get_items_expected_max() > 0 ? option.get_type_name() : "";
  for (const std::string& rule : validators_of(option)) {
    // The rules follow the form: "MM:INT in [0 - 1000]", "TEXT:{white,black}".
    form.erase(form.rfind(':' + rule));
    std::smatch found;
    if (std::regex_match(rule, found, std::regex(R"(\{(.*)\})"))) {
      word.choices = parts_of(found[1]);
      form.clear();
      for (const std::string& choice : word.choices) form += (form.empty() ? "" : "|") + choice;
    } else if (std::regex_search(rule, found, std::regex(R"(\[(\S+) - (\S+)\])"))) {
      word.summary += "; " + found[1].str() + " to " + found[2].str();
    }
  }
  if (!option.get_positional()) word.value = form;
  find_files(word, option.get_positional() ? word.names.front() : form);
  return word;
}

/// The options of an application, and those of its groups, which are applications without a name and each have a help.
void describe_words(CLI::App& application, Command& command) {
  for (CLI::Option* option : application.get_options()) {
    if (application.get_name().empty() && option == application.get_help_ptr()) continue;
    Word word = described(*option);
    (option->get_positional() ? command.places : command.options).push_back(std::move(word));
  }
  for (CLI::App* group : application.get_subcommands([](const CLI::App* part) { return part->get_name().empty(); }))
    describe_words(*group, command);
}

Command described(CLI::App& program) {
  Command command{program.get_name(), program.get_description(), {}, {}, {}};
  describe_words(program, command);
  for (CLI::App* part : program.get_subcommands([](const CLI::App* p) { return !p->get_name().empty(); }))
    command.commands.push_back(described(*part));
  return command;
}

}  // namespace

Command described_qvdraw() {
  CLI::App program;
  qvdraw::Call call;
  qvdraw::define_command_line(program, call);
  return described(program);
}

Command described_qvview() {
  CLI::App program;
  qvview::Call call;
  qvview::define_command_line(program, call);
  return described(program);
}

Command described_shpc() {
  Command command{"shpc", shpc::kSummary, {}, {}, {}};
  for (const shpc::Word& file : shpc::kFiles) {
    Word& word = command.places.emplace_back();
    word.names = {file.name};
    word.summary = file.summary;
    word.required = true;
    find_files(word, file.name);
  }
  for (const shpc::Word& option : shpc::kOptions) {
    Word& word = command.options.emplace_back();
    word.names = parts_of(option.name);
    word.summary = option.summary;
  }
  return command;
}

}  // namespace manual
