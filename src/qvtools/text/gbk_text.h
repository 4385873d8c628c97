#pragma once

/// Texts of GBK bytes: a byte from 0x81 to 0xFE with one from 0x40 to 0xFE (but 0x7F) behind it is one character of two
/// bytes, whose second byte can look like a letter, a tilde or a backslash. Code that splits, cuts or changes a text
/// must step by character. A lead byte with anything else behind it stands alone: the fonts' own symbols before a
/// number.

#include <cstddef>
#include <cstring>
#include <string_view>

#include "qvtools/api.h"

namespace qv {

/// Whether the byte can begin a two-byte character.
QV_API bool is_lead_byte(char c);

/// The bytes of the character at `text`: 0 at the terminator, 2 for a two-byte character, else 1.
QV_API std::size_t char_length(const char* text);

/// The length of the longest head of `text` that is at most `limit` bytes and ends between characters.
QV_API std::size_t cut_length(const char* text, std::size_t limit);

/// Copies `text` to `out`, which holds `size` bytes, cut between characters to fit, and terminates it. A null text
/// is the empty one.
QV_API void copy_text(char* out, std::size_t size, const char* text);
template <std::size_t N>
void copy_text(char (&out)[N], const char* text) {
  copy_text(out, N, text);
}

/// The head of the text that `copy_text` would put into a field of `size` bytes.
inline std::string_view cut_to_field(const char* text, std::size_t size) {
  return {text, cut_length(text, size - 1)};
}

/// Whether the field holds exactly that text. Names are cut to the field's size before they are looked up.
template <std::size_t N>
bool equals_field(const char (&field)[N], std::string_view text) {
  const std::size_t n = text.size();
  return n < N && field[n] == '\0' && (n == 0 || (field[0] == text[0] && std::memcmp(field, text.data(), n) == 0));
}

/// Whether the text is that literal. It is inline because the writer asks it for every record.
template <std::size_t N>
bool is_literal(const char* text, const char (&literal)[N]) {
  for (std::size_t i = 0; i < N; ++i)
    if (text[i] != literal[i]) return false;
  return true;
}

/// Turns ASCII letters to upper case in place, whole characters stepped over.
QV_API void upper_case(char* text);

}  // namespace qv
