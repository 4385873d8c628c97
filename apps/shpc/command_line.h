#pragma once

/// The words of a call of shpc: of the help, of the manual's page and of completion.

namespace shpc {

inline constexpr const char* kSummary = "compiles a shape source to an SHX font";

struct Word {
  const char* name;
  const char* summary;
};
inline constexpr Word kFiles[] = {{"IN.shp", "the shape source"}, {"OUT.shx", "the font"}};
enum Option { kBigfont, kVersion, kHelp };
inline constexpr Word kOptions[] = {
    {"--bigfont", "make a big font, of two-byte characters"},
    {"--version", "show the version"},
    {"-h,--help", "show this page"},
};

}  // namespace shpc
