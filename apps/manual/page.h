#pragma once

#include <string>
#include <vector>

#include "description.h"

namespace manual {

/// A line of a page and what it means: an exit code, a variable, a file, a call.
struct Entry {
  const char* name;
  const char* meaning;
};

/// What a page tells beside the words of the program's call.
struct Page {
  const char* title;  ///< as `man` lists it: "construction drawings from the command line"
  std::vector<const char*> paragraphs;
  std::vector<Entry> exitCodes;
  std::vector<Entry> environment;
  std::vector<Entry> examples;
  const char* seeAlso;
};

/// The page in the language of `man`. `date` is "2026-11-22".
std::string man_page(const Command& program, const Page& page, const std::string& date);

/// The completion of the program's words for bash.
std::string completion(const Command& program);

}  // namespace manual
