#include "data/database_file.h"

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstring>

#include "data/files.h"
#include "platform/numbers.h"
#include "platform/text.h"

namespace {

constexpr std::size_t kBlock = 1 << 18;
constexpr std::size_t kLine = 2048;
constexpr std::size_t kLongestKey = 999;
constexpr std::string_view kSeparator = " = ";
constexpr std::size_t kLongestLiteral = 999;
// Positions have 12 places in the trailer and are seeked to by a long.
constexpr std::int64_t kLastPosition = std::min<std::int64_t>(999999999999, LONG_MAX);

std::size_t without_line_feeds(const char* text, std::size_t length) {
  for (int i = 0; i < 3 && length > 0 && text[length - 1] == '\n'; ++i) --length;
  return length;
}

/// The head of a text that is at most `limit` bytes and ends between characters.
std::string_view cut(std::string_view text, std::size_t limit) {
  if (text.size() <= limit) return text;
  std::size_t length = 0;
  for (std::size_t n; (n = qv::char_length(text.data() + length)) != 0 && length + n <= limit;) length += n;
  return text.substr(0, length);
}

bool is_name(const char* name) {
  return *name && !std::strpbrk(name, "\r\n") && std::strncmp(name, "##", 2) != 0;
}

}  // namespace

CDataBaseFile::CDataBaseFile() = default;

CDataBaseFile::~CDataBaseFile() {
  Close_File();
}

int CDataBaseFile::Open_File(const char* name, IO_MODE mode) {
  if (m_pFile) Close_File();
  Clear_Map();
  m_Mode = mode;
  m_bSegment = false;
  m_bGood = true;
  m_Block.clear();
  m_nFlushed = m_nSize = m_nPosition = 0;
  // Both modes are binary: line ends are written here, so that positions are known without asking the stream.
  m_pFile = mode == IO_READ ? open_file_no_comment(name, "rb") : open_file(name, "wb");
  if (!m_pFile) return 0;
  if (mode == IO_READ) return Read_Index();
  m_Block.reserve(kBlock + 2 * kLine);
  return 1;
}

int CDataBaseFile::Close_File() {
  if (!m_pFile) return m_Mode == IO_READ;
  const int written = m_Mode == IO_READ || Write_Index();
  const bool closed = std::fclose(m_pFile) == 0;
  m_pFile = nullptr;
  --QV_OpenFileNum;
  m_bSegment = false;
  return written && (closed || m_Mode == IO_READ);
}

void CDataBaseFile::Clear_Map() {
  m_Segments.clear();
  clear_items();
}

void CDataBaseFile::clear_items() {
  m_Items.clear();
  m_Values.clear();
}

void CDataBaseFile::flush() {
  if (m_bGood && std::fwrite(m_Block.data(), 1, m_Block.size(), m_pFile) != m_Block.size()) m_bGood = false;
  m_nFlushed += static_cast<std::int64_t>(m_Block.size());
  m_Block.clear();
  if (m_nFlushed > kLastPosition) m_bGood = false;
}

void CDataBaseFile::put_line(const char* text, std::size_t length) {
  const char* const end = text + length;
  while (const void* const feed = std::memchr(text, '\n', static_cast<std::size_t>(end - text))) {
    m_Block.append(text, static_cast<const char*>(feed)).append("\r\n");
    text = static_cast<const char*>(feed) + 1;
  }
  m_Block.append(text, end).append("\r\n");
  if (m_Block.size() >= kBlock) flush();
}

void CDataBaseFile::put_pair(std::string_view key, std::string_view value) {
  key = cut(key, kLongestKey);
  value = cut(value, kLine - 2 - kSeparator.size() - key.size());
  m_Block.append(key).append(kSeparator);
  put_line(value.data(), value.size());
}

void CDataBaseFile::Write_FileVersion(const char* text) {
  if (is_writing()) put_line(text, std::strlen(text));
}

void CDataBaseFile::Begin_Segment(const char* format, ...) {
  m_bSegment = false;
  std::va_list arguments;
  va_start(arguments, format);
  qv::format_list(m_szSegment, sizeof m_szSegment, format, arguments);
  va_end(arguments);
  if (!is_writing() || !is_name(m_szSegment)) return;
  if (!m_Segments.add(m_szSegment, {position(), position()})) return;
  clear_items();
  char line[kNameSize + 8];
  put_line(line, static_cast<std::size_t>(qv::format_text(line, sizeof line, "[ %s ]", m_szSegment)));
  m_bSegment = true;
}

void CDataBaseFile::Add_Item(const char* key, const char* format, ...) {
  char value[kValueSize];
  std::va_list arguments;
  va_start(arguments, format);
  const int length = qv::format_list(value, sizeof value, format, arguments);
  va_end(arguments);
  keep_item(key, {value, static_cast<std::size_t>(length)});
}

void CDataBaseFile::keep_item(std::string_view key, std::string_view value) {
  if (m_Items.add(key, {m_Values.size(), value.size()})) m_Values.append(value);
}

int CDataBaseFile::Write_Segment() {
  if (!can_write_item()) return 0;
  for (std::size_t i = 0; i < m_Items.size(); ++i) {
    const Text& text = m_Items.value(i);
    put_pair(m_Items.key(i), std::string_view(m_Values).substr(text.offset, text.length));
  }
  end_segment();
  return status();
}

int CDataBaseFile::Write_Item(const char* key, const char* format, ...) {
  if (!can_write_item()) return 0;
  char value[kValueSize];
  std::va_list arguments;
  va_start(arguments, format);
  const int length = qv::format_list(value, sizeof value, format, arguments);
  va_end(arguments);
  put_pair(key, {value, without_line_feeds(value, static_cast<std::size_t>(length))});
  return status();
}

int CDataBaseFile::Write_Item1(const char* key, const char* value) {
  if (!can_write_item()) return 0;
  char doubled[kLongestLiteral + 1];
  std::size_t length = 0;
  for (std::size_t n; (n = qv::char_length(value)) != 0; value += n) {
    const std::size_t wanted = *value == '%' ? 2 : n;
    if (length + wanted > kLongestLiteral) break;
    std::memcpy(doubled + length, *value == '%' ? "%%" : value, wanted);
    length += wanted;
  }
  put_pair(key, {doubled, without_line_feeds(doubled, length)});
  return status();
}

int CDataBaseFile::Write_Line(const char* format, ...) {
  if (!is_writing()) return 0;
  char line[kLine - 1];
  std::va_list arguments;
  va_start(arguments, format);
  const int length = qv::format_list(line, sizeof line, format, arguments);
  va_end(arguments);
  put_line(line, static_cast<std::size_t>(length));
  return status();
}

void CDataBaseFile::end_segment() {
  m_Segments.find(m_szSegment)->end = position();
}

void CDataBaseFile::End_Segment() {
  if (can_write_item()) end_segment();
}

int CDataBaseFile::Write_Index() {
  const std::int64_t at = position();
  char line[kNameSize + 64];
  const auto put = [&](int length) { put_line(line, static_cast<std::size_t>(length)); };
  put(qv::format_text(line, sizeof line, "[Index]"));
  for (std::size_t i = 0; i < m_Segments.size(); ++i) {
    const Range& range = m_Segments.value(i);
    const std::string name(m_Segments.key(i));
    put(qv::format_text(line, sizeof line, "%s = %lld %lld", name.c_str(), static_cast<long long>(range.start),
                        static_cast<long long>(range.end)));
  }
  put(qv::format_text(line, sizeof line, "IndexPosition = %12lld", static_cast<long long>(at)));
  flush();
  return m_bGood && std::fflush(m_pFile) == 0;
}
