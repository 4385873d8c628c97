#include "qvtools/plot/internal/found_text.h"

#include <charconv>

#include "qvtools/text/code_page.h"

namespace qv::detail {

namespace {

constexpr struct {
  unsigned char sign;
  char32_t letter;
} kSigns[] = {{0x7F, 0x00B0}, {0x80, 0x00B1}, {0x81, 0x03A6}, {0x82, 0x03A6}, {0x83, 0x03A6},
              {0x85, 0x00B1}, {0x8B, 0x03A6}, {0x8C, 0x00B2}, {0x8D, 0x00B3}, {0x8E, 0x2260},
              {0x8F, 0x2264}, {0x90, 0x2265}, {0x91, 0x2248}};

/// The code point of "\U+XXXX" at the head of a text; 0 where there is none.
char32_t escaped(std::u32string_view text) {
  constexpr std::size_t kLength = 7;
  if (text.size() < kLength || text.substr(0, 3) != U"\\U+") return 0;
  char32_t value = 0;
  for (std::size_t i = 3; i < kLength; ++i) {
    const char32_t c = text[i];
    const char32_t digit = c >= '0' && c <= '9'   ? c - '0'
                           : c >= 'A' && c <= 'F' ? c - 'A' + 10
                           : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                                  : 16;
    if (digit > 15) return 0;
    value = value * 16 + digit;
  }
  return value >= 0xD800 && value < 0xE000 ? 0 : value;
}

}  // namespace

std::string found_text(std::string_view gbk) {
  std::u32string letters;
  decode_text(CodePage::Gbk, gbk, letters);
  std::string text;
  for (std::size_t i = 0; i < letters.size(); ++i) {
    char32_t c = letters[i];
    if (const char32_t other = escaped(std::u32string_view(letters).substr(i))) {
      c = other;
      i += 6;
    }
    for (const auto& sign : kSigns)
      if (c == sign.sign || c == kSignBase + sign.sign) c = sign.letter;
    if (c >= 0x20) append_utf8(c, text);
  }
  return text;
}

}  // namespace qv::detail
