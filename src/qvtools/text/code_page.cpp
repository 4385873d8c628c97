#include "qvtools/text/code_page.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <mutex>
#include <vector>

#include "qvtools/text/gbk_text.h"
#include "qvtools/text/internal/code_tables.h"
#include "qvtools/text/internal/simplified.h"
#include "qvtools/text/numbers.h"

namespace qv {

namespace {

struct DoublePage {
  CodePage page;
  const char* const* packed;
  unsigned char first[2];
  unsigned char second[2];

  int columns() const { return second[1] - second[0] + 1; }
};

// In the order of the pages.
constexpr DoublePage kDoublePages[] = {
    {CodePage::Gbk, detail::kGbk, {0x81, 0xFE}, {0x40, 0xFE}},
    {CodePage::Big5, detail::kBig5, {0x81, 0xFE}, {0x40, 0xFE}},
    {CodePage::ShiftJis, detail::kShiftJis, {0x81, 0xFC}, {0x40, 0xFC}},
    {CodePage::Korean, detail::kKorean, {0x81, 0xFE}, {0x41, 0xFE}},
    {CodePage::Johab, detail::kJohab, {0x84, 0xF9}, {0x31, 0xFE}},
};
constexpr const char* const* kSinglePages[] = {
    detail::kDos437,      detail::kDos850,      detail::kDos852,      detail::kDos855,      detail::kDos857,
    detail::kDos860,      detail::kDos861,      detail::kDos863,      detail::kDos864,      detail::kDos865,
    detail::kDos866,      detail::kDos869,      detail::kThai,        detail::kWindows1250, detail::kWindows1251,
    detail::kWindows1252, detail::kWindows1253, detail::kWindows1254, detail::kWindows1255, detail::kWindows1256,
    detail::kWindows1257, detail::kWindows1258, detail::kIso1,        detail::kIso2,        detail::kIso3,
    detail::kIso4,        detail::kIso5,        detail::kIso6,        detail::kIso7,        detail::kIso8,
    detail::kIso9,        detail::kMacRoman};
constexpr int kFirstSingle = static_cast<int>(CodePage::Dos437);
constexpr int kPages = kFirstSingle + static_cast<int>(std::size(kSinglePages));

/// Reads the characters of a packed table, across its lines.
class PackedReader {
 public:
  explicit PackedReader(const char* const* lines) : line_(lines), at_(*lines) {}
  bool done() {
    while (*line_ && !*at_) {
      ++line_;
      at_ = *line_ ? *line_ : "";
    }
    return !*line_;
  }
  char peek() { return done() ? '\0' : *at_; }
  char take() {
    const char c = peek();
    if (c) ++at_;
    return c;
  }
  unsigned number() {
    unsigned value = 0;
    for (unsigned shift = 0; shift < 30; shift += 5) {
      const unsigned digit = digit_of(take());
      value |= (digit & 31) << shift;
      if (digit < 32) break;
    }
    return value;
  }

 private:
  static unsigned digit_of(char c) {
    if (c >= 'A' && c <= 'Z') return static_cast<unsigned>(c - 'A');
    if (c >= 'a' && c <= 'z') return static_cast<unsigned>(c - 'a') + 26;
    if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0') + 52;
    return c == '+' ? 62 : c == '/' ? 63 : 0;
  }
  const char* const* line_;
  const char* at_;
};

/// The characters of a table's cells: 0 for an empty one.
std::vector<std::uint16_t> unpack(const char* const* lines, std::size_t cells) {
  std::vector<std::uint16_t> out;
  out.reserve(cells);
  unsigned expected = 0;
  for (PackedReader in(lines); !in.done() && out.size() < cells;) {
    const char kind = in.peek();
    if (kind == '_' || kind == '.') {
      in.take();
      for (unsigned n = in.number(); n > 0 && out.size() < cells; --n)
        out.push_back(kind == '_' ? static_cast<std::uint16_t>(expected++) : std::uint16_t{0});
      continue;
    }
    const unsigned n = in.number();
    const int distance = n % 2 ? -static_cast<int>(n / 2) - 1 : static_cast<int>(n / 2);
    expected += static_cast<unsigned>(distance);
    out.push_back(static_cast<std::uint16_t>(expected++));
  }
  out.resize(cells);
  return out;
}

/// The table of a page, unpacked when it is first asked for.
const std::vector<std::uint16_t>& table_of(CodePage page) {
  static std::array<std::vector<std::uint16_t>, kPages> tables;
  static std::array<std::once_flag, kPages> once;
  const auto i = static_cast<std::size_t>(page);
  std::call_once(once[i], [&] {
    if (static_cast<int>(i) >= kFirstSingle) {
      tables[i] = unpack(kSinglePages[i - kFirstSingle], 128);
    } else {
      const DoublePage& p = kDoublePages[i - 1];
      tables[i] = unpack(p.packed, static_cast<std::size_t>((p.first[1] - p.first[0] + 1) * p.columns()));
    }
  });
  return tables[i];
}

char32_t sign_of(unsigned char byte) {
  return kSignBase + byte;
}

/// The bytes of the UTF-8 character at the start of the text, and its code point; 0 when it is none.
std::size_t utf8_character(std::string_view text, char32_t& c) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned lead = byte(0);
  if (lead < 0x80) return c = lead, 1;
  const std::size_t n = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 0;
  if (n == 0 || lead > 0xF4 || n > text.size()) return 0;
  c = lead & (0x7FU >> n);
  for (std::size_t i = 1; i < n; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
    c = c << 6 | (byte(i) & 0x3FU);
  }
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  return c < kLeast[n] || c > 0x10FFFF || (c >= 0xD800 && c < 0xE000) ? 0 : n;
}

void decode_utf8(std::string_view text, std::u32string& out) {
  while (!text.empty()) {
    char32_t c = 0;
    const std::size_t n = utf8_character(text, c);
    out.push_back(n ? c : sign_of(static_cast<unsigned char>(text[0])));
    text.remove_prefix(std::max<std::size_t>(n, 1));
  }
}

void decode_double(const DoublePage& page, std::string_view text, std::u32string& out) {
  const std::vector<std::uint16_t>& table = table_of(page.page);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto a = static_cast<unsigned char>(text[i]);
    if (a < 0x80) {
      out.push_back(a);
      continue;
    }
    char32_t c = 0;
    if (page.page == CodePage::ShiftJis && a >= 0xA1 && a <= 0xDF) {
      out.push_back(0xFF61U + a - 0xA1);  // half-width letters are single bytes
      continue;
    }
    const auto b = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : 0);
    if (a >= page.first[0] && a <= page.first[1] && b >= page.second[0] && b <= page.second[1])
      c = table[static_cast<std::size_t>((a - page.first[0]) * page.columns() + b - page.second[0])];
    out.push_back(c ? c : sign_of(a));
    if (c) ++i;
  }
}

void decode_single(CodePage page, std::string_view text, std::u32string& out) {
  const std::vector<std::uint16_t>& table = table_of(page);
  for (const char byte : text) {
    const auto b = static_cast<unsigned char>(byte);
    const char32_t c = b < 0x80 ? b : table[b - 0x80U];
    out.push_back(c || b == 0 ? c : sign_of(b));
  }
}

/// The GBK codes of the code points below U+10000.
const std::vector<std::uint16_t>& gbk_codes() {
  static const std::vector<std::uint16_t> codes = [] {
    std::vector<std::uint16_t> to(0x10000);
    const DoublePage& page = kDoublePages[0];
    const std::vector<std::uint16_t>& from = table_of(CodePage::Gbk);
    for (std::size_t i = from.size(); i-- > 0;) {
      const auto columns = static_cast<std::size_t>(page.columns());
      if (from[i])
        to[from[i]] = static_cast<std::uint16_t>((page.first[0] + i / columns) << 8 | (page.second[0] + i % columns));
    }
    return to;
  }();
  return codes;
}

}  // namespace

void decode_text(CodePage page, std::string_view text, std::u32string& out) {
  if (page == CodePage::Utf8) return decode_utf8(text, out);
  const int i = static_cast<int>(page);
  if (i >= kFirstSingle) return decode_single(page, text, out);
  decode_double(kDoublePages[i - 1], text, out);
}

std::uint16_t gbk_code(char32_t c) {
  if (c < 0x80) return static_cast<std::uint16_t>(c);
  return c < 0x10000 ? gbk_codes()[c] : std::uint16_t{0};
}

namespace {

void append_escape(char32_t c, std::string& out) {
  if (c > 0xFFFF) {
    append_escape(0xD800 + ((c - 0x10000) >> 10), out);
    append_escape(0xDC00 + ((c - 0x10000) & 0x3FF), out);
  } else {
    out += FormattedText<16>("\\U+%04X", static_cast<unsigned>(c));
  }
}

/// The code unit of the "\U+XXXX" at the start of the text; 0 when there is none.
char32_t escaped(std::string_view text) {
  constexpr std::size_t kHead = 3, kAll = 7;
  unsigned c = 0;
  if (text.size() < kAll || !text.starts_with("\\U+")) return 0;
  return std::from_chars(text.data() + kHead, text.data() + kAll, c, 16).ptr == text.data() + kAll ? c : 0;
}

}  // namespace

std::string to_gbk(std::string_view utf8) {
  std::string out;
  out.reserve(utf8.size());
  std::u32string points;
  decode_utf8(utf8, points);
  for (const char32_t c : points) {
    const std::uint16_t code = gbk_code(c);
    if (c < 0x80) {
      out += static_cast<char>(c);
    } else if (code) {
      out += static_cast<char>(code >> 8);
      out += static_cast<char>(code & 0xFF);
    } else if (c >= kSignBase + 0x80 && c <= kSignBase + 0xFF) {
      out += static_cast<char>(c - kSignBase);
    } else {
      append_escape(c, out);
    }
  }
  return out;
}

void append_utf8(char32_t c, std::string& out) {
  const auto put = [&](char32_t byte) { out += static_cast<char>(byte); };
  if (c < 0x80) return put(c);
  if (c < 0x800) {
    put(0xC0 | c >> 6);
  } else {
    if (c < 0x10000) {
      put(0xE0 | c >> 12);
    } else {
      put(0xF0 | c >> 18);
      put(0x80 | (c >> 12 & 0x3F));
    }
    put(0x80 | (c >> 6 & 0x3F));
  }
  put(0x80 | (c & 0x3F));
}

std::string from_gbk(std::string_view gbk) {
  std::u32string points;
  decode_double(kDoublePages[0], gbk, points);
  std::string out;
  out.reserve(points.size());
  for (const char32_t c : points) append_utf8(c, out);
  return out;
}

char look_alike(char32_t c) {
  // The text font's own signs that GB2312 lacks.
  constexpr char32_t kSquared = 0xB2, kCubed = 0xB3;
  if (c == kSquared) return '\x8C';
  if (c == kCubed) return '\x8D';
  const auto found = std::ranges::lower_bound(detail::kLookAlikes, c, {}, &detail::LookAlike::letter);
  return found != std::end(detail::kLookAlikes) && found->letter == c ? found->drawn : '\0';
}

bool is_utf8(std::string_view text) {
  while (!text.empty()) {
    char32_t c;
    const std::size_t n = utf8_character(text, c);
    if (n == 0) return false;
    text.remove_prefix(n);
  }
  return true;
}

char32_t simplified_form(char32_t c) {
  static constexpr std::u16string_view kLetters(detail::kTraditional);
  const auto found = std::ranges::lower_bound(kLetters, c);
  return found != kLetters.end() && *found == c ? detail::kSimplified[found - kLetters.begin()] : 0;
}

std::string drawn_text(std::string_view gbk) {
  constexpr char kBox[] = "\xA1\xF5";  // □
  constexpr std::size_t kEscape = 7;
  std::string out;
  for (std::size_t i = 0; i < gbk.size();) {
    const char32_t c = gbk[i] == '\\' ? escaped(gbk.substr(i)) : 0;
    if (!c) {
      const std::size_t n = is_lead_byte(gbk[i]) && i + 1 < gbk.size() ? 2 : 1;
      out.append(gbk.substr(i, n));
      i += n;
      continue;
    }
    i += kEscape;
    const bool pair = c >= 0xD800 && c < 0xDC00 && escaped(gbk.substr(i)) >= 0xDC00;
    if (pair) i += kEscape;
    const std::uint16_t simplified = gbk_code(simplified_form(c));
    if (const char letter = look_alike(c))
      out += letter;
    else if (simplified)
      out.append({static_cast<char>(simplified >> 8), static_cast<char>(simplified & 0xFF)});
    else
      out.append(kBox);
  }
  return out;
}

}  // namespace qv
