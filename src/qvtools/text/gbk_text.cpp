#include "qvtools/text/gbk_text.h"

#include <cstring>

namespace qv {
namespace {

bool is_second_byte(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0x40 && byte <= 0xFE && byte != 0x7F;
}

}  // namespace

bool is_lead_byte(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0x81 && byte <= 0xFE;
}

std::size_t char_length(const char* text) {
  if (!*text) return 0;
  return is_lead_byte(text[0]) && is_second_byte(text[1]) ? 2 : 1;
}

std::size_t cut_length(const char* text, std::size_t limit) {
  if (const void* end = std::memchr(text, '\0', limit + 1))
    return static_cast<std::size_t>(static_cast<const char*>(end) - text);
  std::size_t length = 0;
  while (const std::size_t n = char_length(text + length)) {
    if (length + n > limit) break;
    length += n;
  }
  return length;
}

void copy_text(char* out, std::size_t size, const char* text) {
  if (size == 0) return;
  const std::size_t length = text ? cut_length(text, size - 1) : 0;
  if (length > 0) std::memmove(out, text, length);
  out[length] = '\0';
}

void upper_case(char* text) {
  while (const std::size_t n = char_length(text)) {
    if (n == 1 && *text >= 'a' && *text <= 'z') *text = static_cast<char>(*text - 'a' + 'A');
    text += n;
  }
}

}  // namespace qv
