#include "common/fonts.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string_view>

#include "common/records.h"
#include "qvtools/system/filesystem.h"

namespace qvapps {

namespace {

using Kind = qv::ShapeFile::Kind;

constexpr const char* kTextFont = "txt.shx";
constexpr const char* kBigFont = "hztxt.shx";

/// One of the two fonts: where it is kept, how it is loaded, and what kinds of files serve.
struct Role {
  std::string FontFiles::*file;
  int (*load)(CShx& font, const char* path);
  Kind kind;
  const char* wanted;
};
constexpr Role kText = {&FontFiles::text, qv::LoadTextFont, Kind::Shapes, "a text font"};
constexpr Role kBig = {&FontFiles::big, qv::LoadBigFont, Kind::BigFont, "a big font"};

const char* name_of(Kind kind) {
  constexpr const char* kNames[] = {"no shape font", "a text font", "a big font", "a Unifont without its characters"};
  return kNames[static_cast<int>(kind)];
}

/// Loads a font that is there. One that cannot be used is said.
bool load_font(const char* program, const std::string& path, const Role& role, FontFiles& files) {
  if (qv::path_kind(path.c_str()) != qv::PathKind::File) return false;
  qv::ShapeFile file;
  file.Load(path.c_str());
  const bool fits = file.kind() == role.kind || file.kind() == Kind::Unifont;
  if (!fits || !role.load(G_ShapeFont, path.c_str())) {
    std::fprintf(stderr, "%s: %s cannot be used: it is %s where %s is needed\n", program, path.c_str(),
                 name_of(file.kind()), role.wanted);
    return false;
  }
  files.*role.file = path;
  return true;
}

/// The names that `--font` gives: of the text font, and of the big font behind a comma.
std::array<std::string, 2> names_of(const std::string& named) {
  const std::size_t comma = named.find(',');
  return {named.substr(0, comma), comma == named.npos ? "" : named.substr(comma + 1)};
}

std::string small_letters(std::string text) {
  for (char& c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return text;
}

/// A font's file name as styles write it: "C:\FONTS\Simplex" is simplex.shx.
std::string plain_name(std::string_view named) {
  const std::size_t slash = named.find_last_of("/\\");
  std::string name = small_letters(std::string(slash == named.npos ? named : named.substr(slash + 1)));
  if (!name.empty() && name.find('.') == name.npos) name += ".shx";
  return name;
}

/// The file of this name in the user's folder of fonts, whatever its case; empty when there is none.
std::string users_font(const std::string& name) {
  const char* const folder = std::getenv("QVTOOLS_FONTS");
  std::error_code error;
  if (!folder || name.empty()) return "";
  for (const auto& entry : std::filesystem::directory_iterator(folder, error))
    if (small_letters(entry.path().filename().string()) == name) return entry.path().string();
  return "";
}

/// How many texts have each style.
void count_styles(const CPtrList& list, std::map<std::string, int>& counts) {
  for_each<ACAD_ENTITY>(list, [&](ACAD_ENTITY& entity) {
    if (entity.GetType() == ACAD_TYPE_TEXT) ++counts[static_cast<ACAD_TEXT&>(entity).m_szStyle];
  });
}

}  // namespace

std::vector<std::string> font_folders(const std::string& programDirectory) {
  std::vector<std::string> folders;
  if (const char* chosen = std::getenv("QVTOOLS_FONTS")) folders.emplace_back(std::string(chosen) + "/");
  folders.push_back(programDirectory + "/fonts/");
  folders.push_back(programDirectory + "/../share/qvtools/fonts/");
  return folders;
}

std::vector<std::string> shape_folders(const std::string& drawing, const std::string& programDirectory) {
  std::vector<std::string> folders = font_folders(programDirectory);
  const std::size_t slash = drawing.find_last_of("/\\");
  folders.insert(folders.begin(), slash == drawing.npos ? "" : drawing.substr(0, slash + 1));
  return folders;
}

std::string listed(const std::vector<std::string>& names) {
  std::string all;
  for (const std::string& name : names) all += (all.empty() ? "" : ", ") + name;
  return all;
}

std::string replacement(const std::vector<std::string>& replaced, const FontFiles& by) {
  std::vector<std::string> names;
  for (const std::string& file : {by.text, by.big})
    if (!file.empty()) names.push_back(plain_name(file));
  return listed(replaced) + (names.empty() ? "" : " -> " + listed(names));
}

FontFiles load_fonts(const char* program, const std::string& programDirectory, const std::string& named) {
  FontFiles files;
  const std::vector<std::string> folders = font_folders(programDirectory);
  const auto [text, big] = names_of(named);
  const auto find = [&](const Role& role, const std::string& asked, const char* free) {
    if (!asked.empty() && load_font(program, asked, role, files)) return;
    for (const std::string& name : {asked, std::string(free)})
      for (const std::string& folder : folders)
        if (!name.empty() && load_font(program, folder + name, role, files)) return;
  };
  find(kText, text, kTextFont);
  find(kBig, big, kBigFont);
  if (files.text.empty())
    std::fprintf(stderr, "%s: the text font %s is missing; texts will be blank\n", program, kTextFont);
  if (files.big.empty())
    std::fprintf(stderr, "%s: the big font %s is missing; Chinese texts will be blank\n", program, kBigFont);
  return files;
}

bool change_fonts(const FontFiles& files) {
  // A font object keeps the font that it has, so a change takes a new one.
  CShx fonts;
  for (const Role& role : {kText, kBig})
    if (!(files.*role.file).empty() && !role.load(fonts, (files.*role.file).c_str())) return false;
  G_ShapeFont = fonts;
  return true;
}

FontFiles fonts_for(DXF& document, const FontFiles& usual, std::vector<std::string>& replaced) {
  std::map<std::string, int> counts;
  count_styles(document.m_EntityList, counts);
  for_each<ACAD_BLOCK>(document.m_BlockList, [&](ACAD_BLOCK& block) { count_styles(block.m_EntityList, counts); });
  FontFiles chosen = usual;
  int most = 0;
  std::vector<std::string> asked;
  for (int i = 0; i < document.m_nStyle; ++i) {
    const ACAD_STYLE& style = document.m_pStyle[static_cast<std::size_t>(i)];
    const auto texts = counts.find(style.m_szName);
    if (texts == counts.end()) continue;
    const std::string text = plain_name(style.m_szFont);
    const std::string big = plain_name(style.m_szBigFont);
    asked.insert(asked.end(), {text, big});
    if (texts->second <= most) continue;
    most = texts->second;
    chosen = usual;
    if (const std::string file = users_font(text); !file.empty()) chosen.text = file;
    if (const std::string file = users_font(big); !file.empty()) chosen.big = file;
  }
  std::ranges::sort(asked);
  for (const std::string& name : asked)
    if (!name.empty() && name != plain_name(chosen.text) && name != plain_name(chosen.big) &&
        (replaced.empty() || replaced.back() != name))
      replaced.push_back(name);
  return chosen;
}

}  // namespace qvapps
