// shpc IN.shp OUT.shx [--bigfont]: compiles a shape source to an SHX font.
// Exit codes: 0 done, 1 failed (one line for each fault on standard error), 2 bad usage.

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "command_line.h"
#include "font_writer.h"
#include "qvtools/system/filesystem.h"
#include "qvtools/system/saved_file.h"
#include "qvtools/version.h"
#include "shape_source.h"

namespace {

enum ExitCode { kDone = 0, kFailed = 1, kBadUsage = 2 };

struct Arguments {
  std::vector<std::string> files;
  bool given[std::size(shpc::kOptions)] = {};
  bool good = true;
};

/// Whether the word is one of the option's names, which stand with commas between them.
bool names(const shpc::Word& option, std::string_view word) {
  const std::string all = std::string(option.name) + ',';
  return (',' + all).find(',' + std::string(word) + ',') != std::string::npos;
}

Arguments parse_arguments(int argc, char** argv) {
  Arguments arguments;
  for (int i = 1; i < argc; ++i) {
    const std::string_view word = argv[i];
    const auto option = std::ranges::find_if(shpc::kOptions, [&](const auto& known) { return names(known, word); });
    if (option != std::end(shpc::kOptions)) {
      arguments.given[option - shpc::kOptions] = true;
    } else if (word.starts_with('-')) {
      arguments.good = false;
    } else {
      arguments.files.emplace_back(word);
    }
  }
  arguments.good = arguments.good && arguments.files.size() == std::size(shpc::kFiles);
  return arguments;
}

void print_help() {
  std::printf("%s\nUsage: shpc [OPTIONS] %s %s\n\n", shpc::kSummary, shpc::kFiles[0].name, shpc::kFiles[1].name);
  for (const shpc::Word& word : shpc::kFiles) std::printf("  %-12s%s\n", word.name, word.summary);
  for (const shpc::Word& word : shpc::kOptions) std::printf("  %-12s%s\n", word.name, word.summary);
}

bool read_file(const std::string& path, std::string& bytes) {
  if (qv::path_kind(path.c_str()) != qv::PathKind::File) return false;
  std::ifstream file(path, std::ios::binary);
  bytes.assign(std::istreambuf_iterator<char>(file), {});
  return file.is_open();
}

ExitCode fail(const std::string& path, const char* what) {
  std::fprintf(stderr, "shpc: %s: %s\n", path.c_str(), what);
  return kFailed;
}

ExitCode compile(const std::string& from, const std::string& to, bool bigfont) {
  std::string source;
  if (!read_file(from, source)) return fail(from, "cannot be read");
  std::vector<shpc::Error> errors;
  const shpc::Font font = shpc::parse(source, errors);
  std::string bytes;
  if (errors.empty()) bytes = bigfont ? shpc::big_font(font, errors) : shpc::text_font(font, errors);
  for (const shpc::Error& error : errors) {
    std::fprintf(stderr, "%s:%d: %s\n", from.c_str(), error.line, error.text.c_str());
  }
  if (!errors.empty()) return kFailed;
  return qv::save_bytes(to.c_str(), bytes.data(), bytes.size()) ? kDone : fail(to, "cannot be written");
}

}  // namespace

int main(int argc, char** argv) {
  const Arguments arguments = parse_arguments(argc, argv);
  if (arguments.given[shpc::kHelp]) return print_help(), kDone;
  if (arguments.given[shpc::kVersion]) return std::puts("shpc " QVTOOLS_VERSION), kDone;
  if (!arguments.good) {
    std::fputs("usage: shpc IN.shp OUT.shx [--bigfont]; see shpc --help\n", stderr);
    return kBadUsage;
  }
  return compile(arguments.files[0], arguments.files[1], arguments.given[shpc::kBigfont]);
}
