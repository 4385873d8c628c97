#pragma once

/// Texts of GBK bytes: a byte from 0x81 to 0xFE with one from 0x40 to 0xFE (but 0x7F) behind it is one character of two
/// bytes, whose second byte can look like a letter, a tilde or a backslash. Whatever splits, cuts or changes a text
/// steps by character. A lead byte with anything else behind it stands alone: the fonts' own symbols before a number.

#include <cstddef>
#include <string_view>

#include "platform/api.h"

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

/// Whether `name`, cut as `copy_text` would cut it to a field of `size` bytes, equals what the field holds.
QV_API bool equals_field(const char* field, std::size_t size, const char* name);
template <std::size_t N>
bool equals_field(const char (&field)[N], const char* name) {
  return equals_field(field, N, name);
}

/// Turns ASCII letters to upper case in place, whole characters stepped over.
QV_API void upper_case(char* text);

/// A path taken apart: the views lie in it. `drive` ends in its colon and `directory` in its separator, `extension`
/// begins with its dot; each is empty when absent. Separators are slash and backslash.
struct PathParts {
  std::string_view drive;
  std::string_view directory;
  std::string_view base;
  std::string_view extension;
};
QV_API PathParts split_path(const char* path);

}  // namespace qv
