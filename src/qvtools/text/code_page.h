#pragma once

/// Texts in the code pages that drawings come in, and GBK, which all texts of the library are in. No locale and no
/// library of the system's is asked.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "qvtools/api.h"

namespace qv {

/// Source of the tables: the Unicode mappings of the code pages.
enum class CodePage : unsigned char {
  Utf8,
  Gbk,
  Big5,
  ShiftJis,
  Korean,
  Johab,
  Dos437,
  Dos850,
  Dos852,
  Dos855,
  Dos857,
  Dos860,
  Dos861,
  Dos863,
  Dos864,
  Dos865,
  Dos866,
  Dos869,
  Thai,
  Windows1250,
  Windows1251,
  Windows1252,
  Windows1253,
  Windows1254,
  Windows1255,
  Windows1256,
  Windows1257,
  Windows1258,
  Iso1,
  Iso2,
  Iso3,
  Iso4,
  Iso5,
  Iso6,
  Iso7,
  Iso8,
  Iso9,
  MacRoman
};

/// The code page that a drawing or a user names: "ANSI_936", "gb2312", "dos850", "iso8859-1", "UTF-8" and all the other
/// spellings that are met; case, blanks, "-" and "_" do not matter.
QV_API std::optional<CodePage> code_page_named(std::string_view name);

/// The name by which a drawing's header calls the page; "UTF-8" for that.
QV_API const char* code_page_name(CodePage page);

/// Some bytes begin no character, such as the shape fonts' own signs in front of a number. The code point of such a
/// byte is this plus its value (private use area).
inline constexpr char32_t kSignBase = 0xF700;

/// Appends the code points of the text. A byte that the page does not know becomes its sign, U+F700 and up.
QV_API void decode_text(CodePage page, std::string_view text, std::u32string& out);

/// The two bytes of a code point in GBK, the first in the high byte; below 0x80 the code point itself; 0 when GBK lacks
/// it.
QV_API std::uint16_t gbk_code(char32_t c);

/// UTF-8 as GBK. What GBK lacks becomes "\U+XXXX" (beyond U+FFFF two of them), a sign of the fonts its single byte.
QV_API std::string to_gbk(std::string_view utf8);

/// GBK as UTF-8. "\U+XXXX" stays as it is; a byte that begins no character becomes the sign of it, which `to_gbk` turns
/// back.
QV_API std::string from_gbk(std::string_view gbk);

/// Appends a code point as UTF-8.
QV_API void append_utf8(char32_t c, std::string& out);

/// The letter that is drawn for one which neither GBK nor the fonts have: the letter beneath its marks ("o" for
/// U+00F6), or the text font's own sign, from 0x80 on (superscript 2 and 3); 0 when there is none.
QV_API char look_alike(char32_t c);

/// The simplified form, one of GB2312, of a letter that GB2312 lacks; 0 when none is known. Source of the table:
/// OpenCC.
QV_API char32_t simplified_form(char32_t c);

/// Whether all of the text is well-formed UTF-8.
QV_API bool is_utf8(std::string_view text);

/// GBK as it is drawn: "\U+XXXX" becomes its look-alike, its simplified form, or else the sign of an empty box, which
/// has the width of a Chinese character.
QV_API std::string drawn_text(std::string_view gbk);

}  // namespace qv
