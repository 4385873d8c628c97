#pragma once

/// Letters as the fonts have them, and how wide they are drawn.

#include <string>
#include <string_view>
#include <vector>

namespace qv::importing {

struct FontText {
  std::string bytes;
  // Characters that no font has, "\U+XXXX": those of which it has the simplified form, and the rest.
  int simplified = 0;
  int foreign = 0;
  bool chinese = false;
};

/// Code points as the records hold them: ASCII, GB2312 and the fonts' own signs; all others as "\U+XXXX". The signs for
/// degrees and plus-minus are those of the text font, or the wide ones of the Chinese font.
FontText font_text(std::u32string_view points, bool wideSigns);

/// The character that a sign of the text font stands for; any other as it is.
char32_t unicode_sign(char32_t c);

/// The advance of a text, in the unit of its height; estimated while no font is loaded.
double text_width(const std::string& bytes, double height, double widthFactor);

/// A stretch of a line of text with strokes along it.
struct Run {
  std::u32string text;
  bool under = false;
  bool over = false;
  bool strike = false;
};

/// A single line of text taken apart: "%%u" and its kin, "%%c", "%%nnn", "^J".
std::vector<Run> parse_line(std::u32string_view text);
/// The sign that "%%" and a letter stand for; 0 for none.
char32_t special_sign(char32_t letter);

}  // namespace qv::importing
