#include <cctype>
#include <sstream>

#include "page.h"
#include "qvtools/version.h"

namespace manual {

namespace {

/// Text in which nothing is a command of the page's language. A hyphen stays one, so that calls can be copied.
std::string plain(const std::string& text) {
  std::string out = text.starts_with('.') || text.starts_with('\'') ? "\\&" : "";
  for (const char c : text) {
    if (c == '\\')
      out += "\\e";
    else if (c == '-')
      out += "\\-";
    else
      out += c;
  }
  return out;
}

/// A paragraph in lines of 80 bytes at most, none of which begins with a sign of the page's language.
std::string folded(const std::string& text) {
  std::string out;
  std::size_t length = 0;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    const std::string shown = plain(word);
    const bool fits = length + 1 + shown.size() <= 80;
    if (!out.empty()) out += fits ? ' ' : '\n';
    length = out.empty() || !fits ? shown.size() : length + 1 + shown.size();
    out += shown;
  }
  return out + '\n';
}

std::string bold(const std::string& text) {
  return "\\fB" + plain(text) + "\\fR";
}

std::string italic(const std::string& text) {
  return "\\fI" + plain(text) + "\\fR";
}

std::string capitals(std::string text) {
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

std::string heading_of(const Word& option) {
  std::string heading;
  for (const std::string& name : option.names) heading += (heading.empty() ? "" : ", ") + bold(name);
  return option.value.empty() ? heading : heading + ' ' + italic(option.value);
}

/// "IN.dxf -o PICTURE [OPTIONS]": what a call has to have.
std::string synopsis_of(const Command& command, const std::string& name) {
  std::string line = bold(name);
  for (const Word& place : command.places) {
    const std::string text = italic(place.names.front()) + (place.repeated ? "..." : "");
    line += place.required ? ' ' + text : " [" + text + ']';
  }
  for (const Word& option : command.options)
    if (option.required) line += ' ' + bold(option.names.front()) + ' ' + italic(option.value);
  return line + " [" + italic("OPTIONS") + ']';
}

/// Sentences of the help begin small and have no stop.
std::string sentence(std::string summary) {
  if (summary.empty()) return summary;
  summary[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(summary[0])));
  return folded(summary + '.');
}

std::string entry(const std::string& heading, const std::string& text) {
  return ".TP\n" + heading + '\n' + text;
}

std::string words_of(const Command& command, bool help) {
  std::string text;
  for (const Word& place : command.places) text += entry(italic(place.names.front()), sentence(place.summary));
  for (const Word& option : command.options)
    if (help || option.names.back() != "--help") text += entry(heading_of(option), sentence(option.summary));
  return text;
}

std::string entries(const char* heading, const std::vector<Entry>& list) {
  if (list.empty()) return "";
  std::string text = std::string(".SH ") + heading + '\n';
  for (const Entry& line : list) text += entry(bold(line.name), folded(line.meaning));
  return text;
}

}  // namespace

std::string man_page(const Command& program, const Page& page, const std::string& date) {
  std::string text = ".\\\" Made by the build from the description of the program's words.\n";
  text += ".TH " + capitals(program.name) + " 1 \"" + date + "\" \"qvtools " QVTOOLS_VERSION "\" \"User commands\"\n";
  text += ".SH NAME\n" + plain(program.name) + " \\- " + plain(page.title) + '\n';
  text += ".SH SYNOPSIS\n";
  if (program.commands.empty())
    text += synopsis_of(program, program.name) + '\n';
  else
    text += bold(program.name) + " [" + italic("OPTIONS") + "] " + italic("COMMAND") + " [" + italic("WORDS") + "]\n";
  text += ".SH DESCRIPTION\n";
  for (std::size_t i = 0; i < page.paragraphs.size(); ++i) text += (i > 0 ? ".PP\n" : "") + folded(page.paragraphs[i]);
  text += ".SH OPTIONS\n" + words_of(program, true);
  if (!program.commands.empty()) text += ".SH COMMANDS\n";
  for (const Command& command : program.commands) {
    text += ".SS " + synopsis_of(command, command.name) + '\n';
    text += sentence(command.summary) + words_of(command, false);
  }
  text += entries("EXIT STATUS", page.exitCodes);
  text += entries("ENVIRONMENT", page.environment);
  text += entries("EXAMPLES", page.examples);
  return text + ".SH SEE ALSO\n" + page.seeAlso + '\n';
}

}  // namespace manual
