#include <algorithm>
#include <charconv>
#include <cstdarg>
#include <cstring>

#include "qvtools/engineering/internal/database_tables.h"
#include "qvtools/services/internal/out_of_memory.h"
#include "qvtools/text/gbk_text.h"
#include "qvtools/text/numbers.h"

namespace {

constexpr std::int64_t kTrailer = 30;
constexpr std::int64_t kVersionLine = 289;
constexpr std::string_view kSeparator = " = ";
constexpr std::size_t kShortest = 5;
constexpr std::size_t kLongest = CDataBaseFile::kValueSize - 1;

bool skip_prefix(std::string_view& text, std::string_view prefix) {
  if (!text.starts_with(prefix)) return false;
  text.remove_prefix(prefix.size());
  return true;
}

bool take_offset(std::string_view& text, std::int64_t& value) {
  constexpr std::uint64_t kMost = std::uint64_t{1} << 56;
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  std::uint64_t digits = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), digits);
  if (error != std::errc() || digits > kMost) return false;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  value = static_cast<std::int64_t>(digits);
  return true;
}

constexpr std::size_t kNone = std::string_view::npos;

const char* find_byte(const char* begin, const char* end, char c) {
  const void* const found = std::memchr(begin, c, static_cast<std::size_t>(end - begin));
  return found ? static_cast<const char*>(found) : end;
}

/// Calls f with each line that is no comment and not too short.
void for_each_line(std::string_view text, const auto& f) {
  const char* const end = text.data() + text.size();
  for (const char* at = text.data(); at < end;) {
    const char* const feed = find_byte(at, end, '\n');
    const bool ended = feed != end;
    std::string_view line(at, static_cast<std::size_t>(feed - at));
    at = feed + 1;
    if (ended && line.ends_with('\r')) line.remove_suffix(1);
    if (line.size() + ended >= kShortest && !line.starts_with("##")) f(line, ended);
  }
}

/// Makes "%%" in a text "%", any other percent sign stays; returns the new length.
std::size_t halve_percents(char* text, std::size_t length) {
  const char* const end = text + length;
  const char* from = find_byte(text, end, '%');
  char* to = text + (from - text);
  for (; from != end; ++from) {
    *to++ = *from;
    from += *from == '%' && from + 1 != end && from[1] == '%';
  }
  return static_cast<std::size_t>(to - text);
}

}  // namespace

bool CDataBaseFile::Tables::read_trailer(Range& index) {
  index.end = window.size() - kTrailer;
  std::string_view line = window.view(index.end, window.size());
  return skip_prefix(line, "IndexPosition = ") && take_offset(line, index.start) && index.start < index.end;
}

bool CDataBaseFile::Tables::read_index() {
  Range index{};
  if (!read_trailer(index)) return false;
  std::string_view text = window.view(index.start, index.end);
  if (!skip_prefix(text, "[Index]")) return false;
  segments.reserve(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')));
  std::string& texts = segments.texts();
  texts.assign(text);
  for_each_line(texts, [this](std::string_view line, bool) { read_index_entry(line); });
  return true;
}

void CDataBaseFile::Tables::read_index_entry(std::string_view line) {
  const std::size_t at = line.rfind(kSeparator);
  if (at == kNone || at == 0 || at >= kNameSize) return;
  std::string_view numbers = line.substr(at + kSeparator.size());
  Range range{};
  if (!take_offset(numbers, range.start) || !take_offset(numbers, range.end)) return;
  if (range.start > range.end || range.end > window.size()) return;
  segments.add_placed(static_cast<std::size_t>(line.data() - segments.texts().data()), at, range);
}

int CDataBaseFile::Check_FileVersion(const char* text) {
  if (!is_reading()) return 0;
  const auto check = [&] {
    std::string_view line = m_Tables->window.view(m_nPosition, m_nPosition + kVersionLine);
    if (m_Tables->window.failed()) return false;
    line = line.substr(0, line.find('\n'));
    m_nPosition += static_cast<std::int64_t>(line.size()) + 1;
    return line.find(text) != std::string_view::npos;
  };
  return qv::detail::unless_out_of_memory(check, false);
}

int CDataBaseFile::Read_Segment(const char* format, ...) {
  char name[kNameSize];
  std::va_list arguments;
  va_start(arguments, format);
  const int length = qv::format_list(name, sizeof name, format, arguments);
  va_end(arguments);
  if (!m_Tables) return 0;
  auto& items = m_Tables->items;
  items.clear();
  if (!is_reading()) return 0;
  const Tables::Range* const range = m_Tables->segments.find({name, static_cast<std::size_t>(length)});
  if (!range) return 0;
  const auto take = [&] {
    std::string_view text = m_Tables->window.view(range->start, range->end);
    if (m_Tables->window.failed()) return false;
    text.remove_prefix(std::min(text.find('\n'), text.size() - 1) + 1);
    return m_Tables->read_items(text), true;
  };
  if (!qv::detail::unless_out_of_memory(take, false)) return items.clear(), 0;
  m_nPosition = range->end;
  return 1;
}

void CDataBaseFile::Tables::read_items(std::string_view text) {
  std::string& texts = items.texts();
  texts.assign(text);
  const bool percents = text.find('%') != text.npos;
  for_each_line({texts.data(), text.size()}, [&](std::string_view line, bool ended) {
    const std::string_view kept = line.substr(0, kLongest);
    const std::size_t separator = kept.find(kSeparator, 1);  // behind a key of at least one byte
    if (separator == kNone) return;
    read_item(kept.substr(0, separator), kept.substr(separator + kSeparator.size()), ended && line.size() < kLongest,
              percents);
  });
}

void CDataBaseFile::Tables::read_item(std::string_view key, std::string_view value, bool ended, bool percents) {
  char* const texts = items.texts().data();
  const auto offset = static_cast<std::size_t>(value.data() - texts);
  std::size_t length = value.size();
  if (percents) length = halve_percents(texts + offset, length);
  if (ended) texts[offset + length++] = '\n';
  items.add_placed(static_cast<std::size_t>(key.data() - texts), key.size(), {offset, length});
}

int CDataBaseFile::Read_Named_Segment(const char* name) {
  return Read_Segment("%s", name);
}

int CDataBaseFile::Get_Item(const char* key, char* out) {
  const Tables::Text* const text = m_Tables ? m_Tables->items.find(key) : nullptr;
  const std::size_t length = text ? text->length : 0;
  if (text) std::memcpy(out, m_Tables->items.texts().data() + text->offset, length);
  out[length] = '\0';
  return text != nullptr;
}

char* CDataBaseFile::Get_Item(const char* key) {
  char value[kValueSize];
  const int found = Get_Item(key, value);
  qv::copy_text(m_szItem, value);
  return found ? m_szItem : nullptr;
}

namespace {

CString text_of(std::string_view text) {
  return qv::detail::unless_out_of_memory([&] { return CString(std::string(text)); }, CString());
}

}  // namespace

int CDataBaseFile::Get_SegmentCount() const {
  return m_Tables ? static_cast<int>(m_Tables->segments.size()) : 0;
}

CString CDataBaseFile::Get_SegmentName(int i) const {
  if (i < 0 || i >= Get_SegmentCount()) return {};
  return text_of(m_Tables->segments.key(static_cast<std::size_t>(i)));
}

int CDataBaseFile::Get_ItemCount() const {
  return m_Tables ? static_cast<int>(m_Tables->items.size()) : 0;
}

CString CDataBaseFile::Get_ItemKey(int i) const {
  if (i < 0 || i >= Get_ItemCount()) return {};
  return text_of(m_Tables->items.key(static_cast<std::size_t>(i)));
}
