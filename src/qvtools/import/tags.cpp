#include "qvtools/import/internal/tags.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstring>
#include <limits>

#include "qvtools/text/numbers.h"

namespace qv::importing {

namespace {

/// A real of any writing. What some programs write for no number ("nan", "inf", "1.#QNAN") is none here too.
double parse_unusual(std::string_view text) {
  const std::size_t letter = text.find_first_not_of(" \t+-");
  const char first = letter == std::string_view::npos ? '0' : static_cast<char>(text[letter] | 0x20);
  if (first == 'n' || first == 'i' || text.find('#') != std::string_view::npos)
    return std::numeric_limits<double>::quiet_NaN();
  return qv::parse_real(text);
}

}  // namespace

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  return text;
}

double unusual_real_of(const Tag& tag) {
  return tag.binaryNumber ? tag.number : parse_unusual(tag.text);
}

int integer_of(const Tag& tag) {
  return tag.binaryNumber ? TruncInt(tag.number) : parse_int(tag.text);
}

std::uint64_t handle_of(const Tag& tag) {
  const std::string_view text = word_of(tag);
  std::uint64_t value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value, 16);
  return value;
}

Form form_of(std::string_view file) {
  constexpr std::string_view kMark("AutoCAD Binary DXF\r\n\x1A\0", kBinaryMark);
  if (file.substr(0, kBinaryMark) != kMark) return Form::Text;
  const auto byte = [&](std::size_t i) { return i < file.size() ? static_cast<unsigned char>(file[i]) : 0; };
  // The first code is 0, or 999 for a comment: one byte is then 255 with the code behind it.
  const bool narrow = byte(kBinaryMark) == 255 || (byte(kBinaryMark) == 0 && byte(kBinaryMark + 1) != 0);
  return narrow ? Form::BinaryNarrow : Form::BinaryWide;
}

TagReader::TagReader(std::string_view file)
    : file_(file), form_(form_of(file)), end_(file.data() + file.size()), plainEnd_(file.data()) {
  constexpr std::size_t kLongestCode = 5;  // with CR LF
  if (form_ == Form::Text && file.size() > kLongestCode) plainEnd_ = end_ - kLongestCode;
  seek(0);
}

void TagReader::seek(std::size_t place) {
  if (form_ != Form::Text) place = std::max(place, kBinaryMark);
  at_ = file_.data() + std::min(place, file_.size());
  pending_ = ended_ = false;
}

bool TagReader::next_line(std::string_view& line) {
  if (at_ >= end_) return false;
  const char* end = detail::find_feed(at_, static_cast<std::size_t>(end_ - at_));
  if (!end) end = end_;
  std::size_t size = static_cast<std::size_t>(end - at_);
  if (size > 0 && end[-1] == '\r') --size;
  line = {at_, size};
  at_ = std::min(end + 1, end_);
  return true;
}

bool TagReader::parse_code(std::string_view line, int& code) {
  if (line.size() == 3) {  // as most are written
    const unsigned hundreds = line[0] == ' ' ? 0 : static_cast<unsigned char>(line[0]) - unsigned{'0'};
    const unsigned tens = line[1] == ' ' && hundreds == 0 ? 0 : static_cast<unsigned char>(line[1]) - unsigned{'0'};
    const unsigned ones = static_cast<unsigned char>(line[2]) - unsigned{'0'};
    if (hundreds <= 9 && tens <= 9 && ones <= 9) {
      code = static_cast<int>(100 * hundreds + 10 * tens + ones);
      return true;
    }
  }
  line = trimmed(line);
  const auto result = std::from_chars(line.data(), line.data() + line.size(), code);
  return result.ec == std::errc() && code >= -5 && code <= 1071;
}

bool TagReader::next_text() {
  std::string_view line;
  for (;;) {
    place_ = static_cast<std::size_t>(at_ - file_.data());
    if (!next_line(line)) return false;
    if (!parse_code(line, tag_.code)) {
      if (repairs_++ == 0) firstRepair_ = place_;
      continue;
    }
    if (!next_line(tag_.text)) return false;
    if (tag_.code != 999) return true;
  }
}

bool TagReader::take(std::size_t size, const unsigned char*& bytes) {
  if (size > static_cast<std::size_t>(end_ - at_)) return false;
  bytes = reinterpret_cast<const unsigned char*>(at_);
  at_ += size;
  return true;
}

namespace {

enum class Kind { Text, Real, Int8, Int16, Int32, Int64, Bytes, Unknown };

struct Range {
  int first;
  int last;
  Kind kind;
};

// What follows a code in a binary file.
constexpr Range kRanges[] = {
    {0, 9, Kind::Text},        {10, 59, Kind::Real},     {60, 79, Kind::Int16},    {90, 99, Kind::Int32},
    {100, 109, Kind::Text},    {110, 149, Kind::Real},   {160, 169, Kind::Int64},  {170, 179, Kind::Int16},
    {210, 239, Kind::Real},    {270, 289, Kind::Int16},  {290, 299, Kind::Int8},   {300, 309, Kind::Text},
    {310, 319, Kind::Bytes},   {320, 369, Kind::Text},   {370, 389, Kind::Int16},  {390, 399, Kind::Text},
    {400, 409, Kind::Int16},   {410, 419, Kind::Text},   {420, 429, Kind::Int32},  {430, 439, Kind::Text},
    {440, 459, Kind::Int32},   {460, 469, Kind::Real},   {470, 481, Kind::Text},   {999, 1003, Kind::Text},
    {1004, 1004, Kind::Bytes}, {1005, 1009, Kind::Text}, {1010, 1059, Kind::Real}, {1060, 1070, Kind::Int16},
    {1071, 1071, Kind::Int32}};

Kind kind_of(int code, Form form) {
  const auto found = std::ranges::find_if(kRanges, [&](const Range& r) { return code <= r.last; });
  if (found == std::end(kRanges) || code < found->first) return Kind::Unknown;
  return found->kind == Kind::Int8 && form == Form::BinaryNarrow ? Kind::Int16 : found->kind;
}

/// A whole number of so many bytes, the lowest first.
std::uint64_t whole(const unsigned char* bytes, std::size_t size) {
  std::uint64_t v = 0;
  for (std::size_t i = size; i-- > 0;) v = v << 8 | bytes[i];
  return v;
}

}  // namespace

bool TagReader::take_value() {
  constexpr std::size_t kSizes[] = {0, 8, 1, 2, 4, 8, 0, 0};
  const Kind kind = kind_of(tag_.code, form_);
  const unsigned char* bytes;
  tag_.text = {};
  tag_.binaryNumber = false;
  switch (kind) {
    case Kind::Unknown:
      return false;
    case Kind::Text: {
      const void* const zero = std::memchr(at_, '\0', static_cast<std::size_t>(end_ - at_));
      if (!zero) return false;
      tag_.text = {at_, static_cast<std::size_t>(static_cast<const char*>(zero) - at_)};
      at_ += tag_.text.size() + 1;
      return true;
    }
    case Kind::Bytes: {
      if (!take(1, bytes)) return false;
      const std::size_t size = *bytes;
      if (!take(size, bytes)) return false;
      tag_.text = {reinterpret_cast<const char*>(bytes), size};
      return true;
    }
    default:
      break;
  }
  const std::size_t size = kSizes[static_cast<int>(kind)];
  if (!take(size, bytes)) return false;
  const std::uint64_t v = whole(bytes, size);
  tag_.binaryNumber = true;
  if (kind == Kind::Real) {
    tag_.number = std::bit_cast<double>(v);
  } else {
    const unsigned unused = 64 - 8 * static_cast<unsigned>(size);
    tag_.number = static_cast<double>(static_cast<std::int64_t>(v << unused) >> unused);
  }
  return true;
}

bool TagReader::next_binary() {
  do {
    place_ = static_cast<std::size_t>(at_ - file_.data());
    const unsigned char* bytes;
    const bool wide = form_ == Form::BinaryWide;
    if (!take(wide ? 2 : 1, bytes)) return false;
    if (!wide && *bytes == 255 && !take(2, bytes)) return false;
    const bool two = wide || bytes != reinterpret_cast<const unsigned char*>(file_.data() + place_);
    tag_.code = two ? static_cast<int>(whole(bytes, 2)) : *bytes;
    if (!take_value()) return false;
  } while (tag_.code == 999);
  return true;
}

}  // namespace qv::importing
