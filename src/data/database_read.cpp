#include <algorithm>
#include <charconv>
#include <cstdarg>
#include <cstring>

#include "data/database_file.h"
#include "platform/numbers.h"
#include "platform/text.h"
#include "platform/words.h"

namespace {

constexpr std::int64_t kTrailer = 30;
constexpr std::int64_t kVersionLine = 289;
constexpr std::string_view kSeparator = " = ";
constexpr std::size_t kPadding = 8;
constexpr std::size_t kShortest = 5;
constexpr std::size_t kLongest = CDataBaseFile::kValueSize - 1;

bool skip_prefix(std::string_view& text, std::string_view prefix) {
  if (text.substr(0, prefix.size()) != prefix) return false;
  text.remove_prefix(prefix.size());
  return true;
}

void skip_blanks(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
}

bool take_offset(std::string_view& text, std::int64_t& value) {
  skip_blanks(text);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || value < 0) return false;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return true;
}

/// Calls f with each line that is no comment and not too short, without its line end, and whether it had one. Up to
/// `kPadding` bytes behind the text are read.
template <class F>
void for_each_line(std::string_view text, const F& f) {
  const char* at = text.data();
  const char* const end = at + text.size();
  while (at < end) {
    const char* const feed = qv::find_byte(at, end, '\n');
    const bool ended = feed != end;
    std::string_view line(at, static_cast<std::size_t>(feed - at));
    at = feed + 1;
    if (ended && !line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.size() + ended >= kShortest && !line.starts_with("##")) f(line, ended);
  }
}

/// Where the separator begins, behind a key of at least one byte; npos when there is none. Reads as `for_each_line`.
std::size_t find_separator(std::string_view line) {
  const char* const end = line.data() + line.size();
  for (const char* at = line.data() + 2; (at = qv::find_byte(at, end, '=')) < end - 1; ++at) {
    if (at[-1] == ' ' && at[1] == ' ') return static_cast<std::size_t>(at - 1 - line.data());
  }
  return line.npos;
}

/// Makes "%%" in a text "%", any other percent sign stays; returns the new length. Reads as `for_each_line`.
std::size_t halve_percents(char* text, std::size_t length) {
  const char* const end = text + length;
  const char* from = qv::find_byte(text, end, '%');
  char* to = text + (from - text);
  for (; from != end; ++from) {
    *to++ = *from;
    from += *from == '%' && from + 1 != end && from[1] == '%';
  }
  return static_cast<std::size_t>(to - text);
}

}  // namespace

bool CDataBaseFile::read_trailer(Range& index) {
  index.end = m_Window.size() - kTrailer;
  std::string_view line = m_Window.view(index.end, m_Window.size());
  return skip_prefix(line, "IndexPosition = ") && take_offset(line, index.start) && index.start < index.end;
}

int CDataBaseFile::Read_Index() {
  m_Window.attach(m_pFile);
  Range index{};
  if (!read_trailer(index)) return 0;
  std::string_view text = m_Window.view(index.start, index.end);
  if (!skip_prefix(text, "[Index]")) return 0;
  for_each_line(text, [&](std::string_view line, bool) { read_index_entry(line); });
  return 1;
}

void CDataBaseFile::read_index_entry(std::string_view line) {
  const std::size_t at = line.rfind(kSeparator);
  if (at == std::string_view::npos || at == 0 || at >= kNameSize) return;
  std::string_view numbers = line.substr(at + kSeparator.size());
  Range range{};
  if (!take_offset(numbers, range.start) || !take_offset(numbers, range.end)) return;
  if (range.start <= range.end && range.end <= m_Window.size()) m_Segments.add(line.substr(0, at), range);
}

int CDataBaseFile::Check_FileVersion(const char* text) {
  if (!is_reading()) return 0;
  std::string_view line = m_Window.view(m_nPosition, m_nPosition + kVersionLine);
  line = line.substr(0, line.find('\n'));
  m_nPosition += static_cast<std::int64_t>(line.size()) + 1;
  return line.find(text) != std::string_view::npos;
}

int CDataBaseFile::Read_Segment(const char* format, ...) {
  char name[kNameSize];
  std::va_list arguments;
  va_start(arguments, format);
  const int length = qv::format_list(name, sizeof name, format, arguments);
  va_end(arguments);
  m_Items.clear();
  const Range* const range = is_reading() ? m_Segments.find({name, static_cast<std::size_t>(length)}) : nullptr;
  if (!range) return 0;
  std::string_view text = m_Window.view(range->start, range->end);
  text.remove_prefix(std::min(text.find('\n'), text.size() - 1) + 1);
  std::string& texts = m_Items.texts();
  texts.assign(text).append(kPadding, '\0');
  for_each_line({texts.data(), text.size()}, [&](std::string_view line, bool ended) { read_item(line, ended); });
  m_nPosition = range->end;
  return 1;
}

/// Keeps the item of a line among the texts of the items, where its value is changed to what is asked for. It is never
/// a format: "%%" is "%", any other percent sign stays.
void CDataBaseFile::read_item(std::string_view line, bool ended) {
  if (line.size() + ended > kLongest) {
    line = line.substr(0, kLongest);
    ended = false;
  }
  const std::size_t at = find_separator(line);
  if (at == line.npos) return;
  char* const texts = m_Items.texts().data();
  const auto key = static_cast<std::size_t>(line.data() - texts);
  const std::size_t value = key + at + kSeparator.size();
  std::size_t length = halve_percents(texts + value, key + line.size() - value);
  if (ended) texts[value + length++] = '\n';
  m_Items.add_placed(key, at, {value, length});
}

int CDataBaseFile::Get_Item(const char* key, char* out) {
  const Text* const text = m_Items.find(key);
  const std::size_t length = text ? text->length : 0;
  if (text) std::memcpy(out, m_Items.texts().data() + text->offset, length);
  out[length] = '\0';
  return text != nullptr;
}

char* CDataBaseFile::Get_Item(const char* key) {
  char value[kValueSize];
  const int found = Get_Item(key, value);
  qv::copy_text(m_szItem, value);
  return found ? m_szItem : nullptr;
}

int CDataBaseFile::Get_SegmentCount() const {
  return static_cast<int>(m_Segments.size());
}

CString CDataBaseFile::Get_SegmentName(int i) const {
  return CString(std::string(m_Segments.key(static_cast<std::size_t>(i))));
}

int CDataBaseFile::Get_ItemCount() const {
  return static_cast<int>(m_Items.size());
}

CString CDataBaseFile::Get_ItemKey(int i) const {
  return CString(std::string(m_Items.key(static_cast<std::size_t>(i))));
}
