#include <algorithm>
#include <charconv>
#include <cstdarg>
#include <cstring>

#include "data/database_file.h"
#include "platform/numbers.h"
#include "platform/text.h"

namespace {

constexpr std::int64_t kBlock = 1 << 18;
constexpr std::int64_t kTrailer = 30;
constexpr std::int64_t kVersionLine = 289;
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

/// Calls f with each line that is no comment and not too short, without its line end, and whether it had one.
template <class F>
void for_each_line(std::string_view text, const F& f) {
  while (!text.empty()) {
    const std::size_t feed = text.find('\n');
    const bool ended = feed != std::string_view::npos;
    std::string_view line = text.substr(0, ended ? feed : text.size());
    text.remove_prefix(line.size() + ended);
    if (ended && !line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.size() + ended >= kShortest && line.substr(0, 2) != "##") f(line, ended);
  }
}

}  // namespace

/// The bytes of the file from start to end, less when it ends before; they are valid until the next call.
std::string_view CDataBaseFile::view(std::int64_t start, std::int64_t end) {
  end = std::min(end, m_nSize);
  if (start < 0 || start >= end) return {};
  const std::int64_t blockEnd = m_nFlushed + static_cast<std::int64_t>(m_Block.size());
  if (start < m_nFlushed || end > blockEnd) {
    m_Block.resize(static_cast<std::size_t>(std::min(std::max(end - start, kBlock), m_nSize - start)));
    const bool found = std::fseek(m_pFile, static_cast<long>(start), SEEK_SET) == 0;
    m_Block.resize(found ? std::fread(m_Block.data(), 1, m_Block.size(), m_pFile) : 0);
    m_nFlushed = start;
  }
  return std::string_view(m_Block).substr(static_cast<std::size_t>(start - m_nFlushed),
                                          static_cast<std::size_t>(end - start));
}

bool CDataBaseFile::read_trailer(Range& index) {
  index.end = m_nSize - kTrailer;
  std::string_view line = view(index.end, m_nSize);
  return skip_prefix(line, "IndexPosition = ") && take_offset(line, index.start) && index.start < index.end;
}

int CDataBaseFile::Read_Index() {
  if (std::fseek(m_pFile, 0, SEEK_END) != 0) return 0;
  m_nSize = std::max(std::ftell(m_pFile), 0L);
  Range index{};
  if (!read_trailer(index)) return 0;
  std::string_view text = view(index.start, index.end);
  if (!skip_prefix(text, "[Index]")) return 0;
  for_each_line(text, [&](std::string_view line, bool) { read_index_entry(line); });
  return 1;
}

void CDataBaseFile::read_index_entry(std::string_view line) {
  const std::size_t at = line.rfind(" = ");
  if (at == std::string_view::npos || at == 0 || at >= kNameSize) return;
  std::string_view numbers = line.substr(at + 3);
  Range range{};
  if (!take_offset(numbers, range.start) || !take_offset(numbers, range.end)) return;
  if (range.start <= range.end && range.end <= m_nSize) m_Segments.add(line.substr(0, at), range);
}

int CDataBaseFile::Check_FileVersion(const char* text) {
  if (!m_pFile || m_Mode != IO_READ) return 0;
  std::string_view line = view(m_nPosition, m_nPosition + kVersionLine);
  line = line.substr(0, line.find('\n'));
  m_nPosition += static_cast<std::int64_t>(line.size()) + 1;
  return line.find(text) != std::string_view::npos;
}

int CDataBaseFile::Read_Segment(const char* format, ...) {
  char name[kNameSize];
  std::va_list arguments;
  va_start(arguments, format);
  qv::format_list(name, sizeof name, format, arguments);
  va_end(arguments);
  clear_items();
  const Range* const range = m_pFile && m_Mode == IO_READ ? m_Segments.find(name) : nullptr;
  if (!range) return 0;
  std::string_view text = view(range->start, range->end);
  text.remove_prefix(std::min(text.find('\n'), text.size() - 1) + 1);
  for_each_line(text, [&](std::string_view line, bool ended) { read_item(line, ended); });
  m_nPosition = range->end;
  return 1;
}

/// Keeps the item of a line. Its value is never a format: "%%" is "%", any other percent sign stays.
void CDataBaseFile::read_item(std::string_view line, bool ended) {
  if (line.size() + ended > kLongest) {
    line = line.substr(0, kLongest);
    ended = false;
  }
  const std::size_t at = line.find(" = ", 1);
  if (at == std::string_view::npos) return;
  const std::size_t offset = m_Values.size();
  std::string_view value = line.substr(at + 3);
  for (std::size_t percent; (percent = value.find("%%")) != std::string_view::npos;) {
    m_Values.append(value.substr(0, percent + 1));
    value.remove_prefix(percent + 2);
  }
  m_Values.append(value);
  if (ended) m_Values.push_back('\n');
  if (!m_Items.add(line.substr(0, at), {offset, m_Values.size() - offset})) m_Values.resize(offset);
}

int CDataBaseFile::Get_Item(const char* key, char* out) {
  const Text* const text = m_Items.find(key);
  out[text ? m_Values.copy(out, text->length, text->offset) : 0] = '\0';
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
