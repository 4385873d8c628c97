#include <optional>

#include "qvtools/import/internal/drawing.h"
#include "qvtools/import/internal/lettering.h"

namespace qv::importing {

namespace {

std::optional<char32_t> hexadecimal(std::u32string_view digits) {
  char32_t v = 0;
  for (const char32_t c : digits) {
    if (c >= '0' && c <= '9')
      v = v << 4 | (c - '0');
    else if ((c | 0x20) >= 'a' && (c | 0x20) <= 'f')
      v = v << 4 | ((c | 0x20) - 'a' + 10);
    else
      return std::nullopt;
  }
  return v;
}

/// The character of "\U+XXXX" or "\M+nXXXX" at the start of the text, and how many letters that takes.
std::size_t escaped(std::u32string_view text, char32_t& c) {
  constexpr CodePage kPages[] = {CodePage::ShiftJis, CodePage::Big5, CodePage::Korean, CodePage::Johab, CodePage::Gbk};
  if (text.size() < 7 || text[0] != '\\' || text[2] != '+') return 0;
  if (text[1] == 'U' || text[1] == 'u') {
    const std::optional<char32_t> v = hexadecimal(text.substr(3, 4));
    if (!v) return 0;
    c = *v;
    char32_t low = 0;
    if (c >= 0xD800 && c < 0xDC00 && escaped(text.substr(7), low) == 7 && low >= 0xDC00 && low < 0xE000) {
      c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
      return 14;
    }
    return 7;
  }
  if (text[1] != 'M' || text.size() < 8 || text[3] < '1' || text[3] > '5') return 0;
  const std::optional<char32_t> v = hexadecimal(text.substr(4, 4));
  if (!v) return 0;
  const char bytes[2] = {static_cast<char>(*v >> 8), static_cast<char>(*v & 0xFF)};
  std::u32string decoded;
  decode_text(kPages[text[3] - '1'], {bytes, 2}, decoded);
  c = decoded.back();
  return 8;
}

}  // namespace

std::u32string Decoder::points(std::string_view text) const {
  std::u32string decoded;
  decode_text(page, text, decoded);
  if (decoded.find(U'\\') == std::u32string::npos) return decoded;
  std::u32string out;
  for (std::size_t i = 0; i < decoded.size();) {
    char32_t c = decoded[i];
    const std::size_t n = escaped(std::u32string_view(decoded).substr(i), c);
    out.push_back(c);
    i += n ? n : 1;
  }
  return out;
}

std::string Decoder::gbk(std::string_view text) const {
  bool plain = true;
  for (const char c : text) plain = plain && static_cast<unsigned char>(c) < 0x80 && c != '\\';
  if (plain) return std::string(text);
  return font_text(points(text), page == CodePage::Gbk).bytes;
}

std::string Decoder::utf8(std::string_view text) const {
  std::string out;
  for (const char32_t c : points(text)) append_utf8(c, out);
  return out;
}

}  // namespace qv::importing
