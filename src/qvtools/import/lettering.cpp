#include "qvtools/import/internal/lettering.h"

#include <algorithm>

#include "qvtools/fonts/shx.h"
#include "qvtools/text/code_page.h"

namespace qv::importing {

namespace {

// The text font's own signs.
constexpr unsigned char kDegree = 127;
constexpr unsigned char kPlusMinus = 128;
constexpr unsigned char kDiameter = 129;

struct Sign {
  char32_t c;
  unsigned char byte;
  bool always;  // else only where the wide one is not wanted
};
constexpr Sign kSigns[] = {{0xB0, kDegree, false},    {0xB1, kPlusMinus, false}, {0xD8, kDiameter, true},
                           {0x2205, kDiameter, true}, {0x2300, kDiameter, true}, {0xA0, ' ', true}};

unsigned char sign_byte(char32_t c, bool wideSigns) {
  const auto found = std::ranges::find(kSigns, c, &Sign::c);
  return found != std::end(kSigns) && (found->always || !wideSigns) ? found->byte : 0;
}

}  // namespace

char32_t unicode_sign(char32_t c) {
  const auto found = std::ranges::find(kSigns, static_cast<unsigned char>(c - kSignBase), &Sign::byte);
  return c >= kSignBase + 0x7F && c <= kSignBase + 0xFF && found != std::end(kSigns) ? found->c : c;
}

namespace {

void append_escape(char32_t c, std::string& bytes) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  bytes += "\\U+";
  for (int shift = 12; shift >= 0; shift -= 4) bytes += kDigits[c >> shift & 15];
}

}  // namespace

FontText font_text(std::u32string_view points, bool wideSigns) {
  FontText text;
  text.bytes.reserve(points.size());
  for (const char32_t c : points) {
    if (c < 0x20) {
      if (c == '\t') text.bytes += ' ';  // other control characters are nothing to draw
      continue;
    }
    if (c < 0x80) {
      text.bytes += static_cast<char>(c);
      continue;
    }
    const unsigned char sign = c >= kSignBase + 0x7F && c <= kSignBase + 0xFF
                                   ? static_cast<unsigned char>(c - kSignBase)
                                   : sign_byte(c, wideSigns);
    const std::uint16_t code = sign ? std::uint16_t{0} : gbk_code(c);
    if (sign) {
      text.bytes += static_cast<char>(sign);
    } else if (code >= 0xA1A1 && (code & 0xFF) >= 0xA1) {
      text.bytes += static_cast<char>(code >> 8);
      text.bytes += static_cast<char>(code & 0xFF);
      text.chinese = true;
    } else {
      const char letter = look_alike(c);
      const bool sign_of_font = (letter & 0x80) != 0;
      if (!sign_of_font) ++(simplified_form(c) ? text.simplified : text.foreign);
      if (c > 0xFFFF) {
        append_escape(0xD800 + ((c - 0x10000) >> 10), text.bytes);
        append_escape(0xDC00 + ((c - 0x10000) & 0x3FF), text.bytes);
      } else {
        append_escape(c, text.bytes);
      }
      text.chinese = text.chinese || letter == 0;
    }
  }
  return text;
}

double text_width(const std::string& bytes, double height, double widthFactor) {
  constexpr double kLikelyAdvance = 0.72;  // of the height
  const std::string drawn = drawn_text(bytes);
  const double units = static_cast<double>(G_ShapeFont.GetHzWidth(drawn.c_str(), 1, 1));
  const double advance = units > 0 || drawn.empty() ? units : kLikelyAdvance * static_cast<double>(drawn.size());
  return advance * height * widthFactor;
}

char32_t special_sign(char32_t letter) {
  switch (letter | 0x20) {
    case 'c':
      return kSignBase + kDiameter;
    case 'd':
      return kSignBase + kDegree;
    case 'p':
      return kSignBase + kPlusMinus;
    default:
      return 0;
  }
}

std::vector<Run> parse_line(std::u32string_view text) {
  std::vector<Run> runs(1);
  if (text.find_first_of(U"%^") == text.npos) {  // as most texts are
    runs[0].text = text;
    return runs;
  }
  const auto toggle = [&](bool Run::*stroke) {
    Run next;
    next.under = runs.back().under;
    next.over = runs.back().over;
    next.strike = runs.back().strike;
    next.*stroke = !(next.*stroke);
    if (runs.back().text.empty())
      runs.back() = next;
    else
      runs.push_back(next);
  };
  const auto digit = [&](std::size_t i) { return i < text.size() && text[i] >= '0' && text[i] <= '9'; };
  for (std::size_t i = 0; i < text.size();) {
    const char32_t c = text[i];
    std::u32string& out = runs.back().text;
    const char32_t letter = c == '%' && i + 2 < text.size() && text[i + 1] == '%' ? text[i + 2] : 0;
    const char32_t lower = letter | 0x20;
    if (letter && special_sign(letter)) {
      out.push_back(special_sign(letter));
      i += 3;
    } else if (lower == 'u' || lower == 'o' || lower == 'k') {
      toggle(lower == 'u' ? &Run::under : lower == 'o' ? &Run::over : &Run::strike);
      i += 3;
    } else if (letter == '%') {
      out.push_back('%');
      i += 3;
    } else if (letter && digit(i + 2)) {
      unsigned code = 0;
      std::size_t n = 2;
      for (; n < 5 && digit(i + n); ++n) code = code * 10 + static_cast<unsigned>(text[i + n] - '0');
      if (code > 0 && code < 256) out.push_back(code < 127 ? code : kSignBase + code);
      i += n;
    } else if (c == '^' && i + 1 < text.size()) {
      const char32_t next = text[i + 1];
      if (next == ' ')
        out.push_back('^');
      else if (next == 'I' || next == 'J')
        out.push_back(' ');
      else if (next < '?' || next > '~')
        out.append({c, next});
      else if ((next ^ 0x40U) >= ' ' && (next ^ 0x40U) < 0x7F)
        out.push_back(next ^ 0x40U);
      i += 2;
    } else {
      out.push_back(c);
      ++i;
    }
  }
  if (runs.size() > 1 && runs.back().text.empty()) runs.pop_back();
  return runs;
}

}  // namespace qv::importing
