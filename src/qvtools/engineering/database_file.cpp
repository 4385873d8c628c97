#include <algorithm>
#include <atomic>
#include <charconv>
#include <cstdarg>
#include <cstring>
#include <memory>

#include "qvtools/engineering/internal/database_tables.h"
#include "qvtools/services/captions.h"
#include "qvtools/services/files.h"
#include "qvtools/services/internal/out_of_memory.h"
#include "qvtools/services/internal/work_files.h"
#include "qvtools/text/gbk_text.h"
#include "qvtools/text/numbers.h"

using qv::detail::unless_out_of_memory;

namespace {

constexpr std::size_t kLine = 2048;
constexpr std::size_t kLongestKey = 999;
constexpr std::size_t kLongestLiteral = 999;
constexpr std::string_view kSeparator = " = ";
constexpr std::string_view kLineEnd = "\r\n";

// The key, the separator, and the value before it is cut, with a CR more for each line feed.
static_assert(kLongestKey + kSeparator.size() + 2 * kLine < qv::detail::BlockWriter::kRoom);

/// Copies the first and the last word of a text, which meet or overlap: together they are the whole text.
template <class Word>
void copy_ends(char* to, std::string_view text) {
  std::memcpy(to, text.data(), sizeof(Word));
  std::memcpy(to + text.size() - sizeof(Word), text.data() + text.size() - sizeof(Word), sizeof(Word));
}

/// Copies a text and returns its end. Most are short, and not worth a call.
char* append(char* to, std::string_view text) {
  const std::size_t n = text.size();
  if (n >= 8 && n <= 16) {
    copy_ends<std::uint64_t>(to, text);
  } else if (n >= 4 && n < 8) {
    copy_ends<std::uint32_t>(to, text);
  } else {
    std::memcpy(to, text.data(), n);
  }
  return to + n;
}

/// The head of a text that is at most `limit` bytes and ends between characters.
std::string_view cut(std::string_view text, std::size_t limit) {
  return text.size() > limit ? text.substr(0, qv::cut_length(text.data(), limit)) : text;
}

/// Puts a CR in front of each line feed; returns the new end.
char* add_carriage_returns(char* text, char* end) {
  // Byte by byte: whole words would wait for the narrower stores that have just written the text.
  if (std::find(text, end, '\n') == end) return end;
  char* const newEnd = end + std::count(text, end, '\n');
  for (char* to = newEnd; to != end;) {
    *--to = *--end;
    if (*to == '\n') *--to = '\r';
  }
  return newEnd;
}

std::size_t without_line_feeds(const char* text, std::size_t length) {
  for (int i = 0; i < 3 && length > 0 && text[length - 1] == '\n'; ++i) --length;
  return length;
}

/// Copies a literal with its percent signs doubled, cut at `kLongestLiteral` bytes; returns the length.
std::size_t double_percents(char* out, const char* text) {
  std::size_t length = 0;
  for (std::size_t n; (n = qv::char_length(text)) != 0; text += n) {
    const std::string_view piece = *text == '%' ? std::string_view("%%") : std::string_view(text, n);
    if (length + piece.size() > kLongestLiteral) break;
    append(out + length, piece);
    length += piece.size();
  }
  return length;
}

constexpr int kMaxPosition = 20;

char* put_position(char* out, std::int64_t position) {
  return std::to_chars(out, out + kMaxPosition, position).ptr;
}

bool is_name(std::string_view name) {
  return !name.empty() && name.find('\r') == name.npos && name.find('\n') == name.npos && !name.starts_with("##");
}

}  // namespace

// Without memory for its tables the object opens no file.
CDataBaseFile::CDataBaseFile() {
  unless_out_of_memory([this] { m_Tables = std::make_unique<Tables>(); });
}

CDataBaseFile::~CDataBaseFile() {
  Close_File();
}

int CDataBaseFile::Open_File(const char* name, IO_MODE mode) {
  if (m_pFile) Close_File();
  if (!m_Tables) return 0;
  m_Tables->segments.clear();
  m_Tables->items.clear();
  m_Mode = mode;
  m_bSegment = false;
  m_nPosition = 0;
  return unless_out_of_memory([&] { return mode == IO_READ ? open_to_read(name) : open_to_write(name); }, 0);
}

// Both ways are binary: line ends are written here, so that positions are known without asking the stream.

int CDataBaseFile::open_to_read(const char* name) {
  m_pFile = open_file_no_comment(name, "rb");
  if (!m_pFile) return 0;
  m_Tables->window.attach(m_pFile);
  const bool read = m_Tables->read_index();
  if (!m_Tables->window.failed()) return read;
  m_Tables->segments.clear();
  return 0;
}

int CDataBaseFile::open_to_write(const char* name) {
  auto& file = m_Tables->saved.emplace(qv::detail::in_work_path(name));
  if (!file.is_open() || !m_Tables->writer.attach(file.stream())) {
    m_Tables->saved.reset();
    tell_error1(301, qv::captions::kCannotOpenFile, name);
    return 0;
  }
  m_pFile = file.stream();
  qv::detail::count_opened_file();
  return 1;
}

int CDataBaseFile::Close_File() {
  if (!m_pFile) return m_Mode == IO_READ;
  bool good = true;
  if (m_Mode == IO_READ) {
    std::fclose(m_pFile);
  } else {
    good = m_Tables->put_index() && m_Tables->saved->commit();
    m_Tables->saved.reset();
  }
  m_pFile = nullptr;
  --std::atomic_ref(QV_OpenFileNum);
  m_bSegment = false;
  return good;
}

void CDataBaseFile::Tables::put_line(std::string_view text) {
  for (std::size_t feed; (feed = text.find('\n')) != text.npos; text.remove_prefix(feed + 1)) {
    writer.put(text.substr(0, feed));
    writer.put(kLineEnd);
  }
  writer.put(text);
  writer.put(kLineEnd);
}

template <class PutValue>
void CDataBaseFile::Tables::put_item(std::string_view key, const PutValue& put_value) {
  key = cut(key, kLongestKey);
  char* const value = append(append(writer.room(), key), kSeparator);
  const std::size_t length = put_value(value);
  const std::size_t taken = cut({value, length}, kLine - 2 - kSeparator.size() - key.size()).size();
  writer.take(append(add_carriage_returns(value, value + taken), kLineEnd));
}

int CDataBaseFile::status() const {
  return m_Tables->writer.good() ? 1 : 0;
}

template <class Table, class Value>
bool CDataBaseFile::added_to(Table& table, std::string_view key, const Value& value, std::string_view more) {
  bool lost = true;
  const auto add = [&] {
    const bool added = table.add(key, value, more);
    return lost = false, added;
  };
  const bool added = unless_out_of_memory(add, false);
  if (lost) m_Tables->writer.fail();
  return added;
}

void CDataBaseFile::Write_FileVersion(const char* text) {
  if (is_writing()) m_Tables->put_line(text);
}

void CDataBaseFile::Begin_Segment(const char* format, ...) {
  m_bSegment = false;
  std::va_list arguments;
  va_start(arguments, format);
  const int length = qv::format_list(m_szSegment, sizeof m_szSegment, format, arguments);
  va_end(arguments);
  const std::string_view name(m_szSegment, static_cast<std::size_t>(length));
  if (!is_writing() || !is_name(name)) return;
  auto& writer = m_Tables->writer;
  const Tables::Range range = {writer.position(), writer.position()};
  if (!added_to(m_Tables->segments, name, range)) return;
  m_Tables->items.clear();
  writer.take(append(append(append(append(writer.room(), "[ "), name), " ]"), kLineEnd));
  m_bSegment = true;
}

void CDataBaseFile::Begin_Named_Segment(const char* name) {
  Begin_Segment("%s", name);
}

void CDataBaseFile::Add_Item(const char* key, const char* format, ...) {
  if (!m_Tables) return;
  auto& items = m_Tables->items;
  char value[kValueSize];
  std::va_list arguments;
  va_start(arguments, format);
  const int length = qv::format_list(value, sizeof value, format, arguments);
  va_end(arguments);
  const std::string_view name = key;
  const Tables::Text text = {items.texts().size() + name.size(), static_cast<std::size_t>(length)};
  added_to(items, name, text, {value, text.length});
}

void CDataBaseFile::Add_Text_Item(const char* key, const char* value) {
  Add_Item(key, "%s", value);
}

int CDataBaseFile::Write_Segment() {
  if (!can_write_item()) return 0;
  const auto& items = m_Tables->items;
  for (std::size_t i = 0; i < items.size(); ++i) {
    const Tables::Text& text = items.value(i);
    m_Tables->put_item(items.key(i), [&](char* out) { return items.texts().copy(out, text.length, text.offset); });
  }
  end_segment();
  return status();
}

int CDataBaseFile::Write_Item(const char* key, const char* format, ...) {
  if (!can_write_item()) return 0;
  std::va_list arguments;
  va_start(arguments, format);
  m_Tables->put_item(key, [&](char* out) {
    const int length = qv::format_list(out, kValueSize, format, arguments);
    return without_line_feeds(out, static_cast<std::size_t>(length));
  });
  va_end(arguments);
  return status();
}

int CDataBaseFile::Write_Item1(const char* key, const char* value) {
  if (!can_write_item()) return 0;
  m_Tables->put_item(key, [value](char* out) { return without_line_feeds(out, double_percents(out, value)); });
  return status();
}

int CDataBaseFile::Write_Line(const char* format, ...) {
  if (!is_writing()) return 0;
  char line[kLine - 1];
  std::va_list arguments;
  va_start(arguments, format);
  const int length = qv::format_list(line, sizeof line, format, arguments);
  va_end(arguments);
  m_Tables->put_line({line, static_cast<std::size_t>(length)});
  return status();
}

int CDataBaseFile::Write_Text_Line(const char* text) {
  return Write_Line("%s", text);
}

void CDataBaseFile::end_segment() {
  m_Tables->segments.value(m_Tables->segments.size() - 1).end = m_Tables->writer.position();
}

void CDataBaseFile::End_Segment() {
  if (can_write_item()) end_segment();
}

void CDataBaseFile::Tables::put_index_entry(std::size_t i) {
  const Range& range = segments.value(i);
  char* at = append(append(writer.room(), segments.key(i)), kSeparator);
  at = put_position(at, range.start);
  *at++ = ' ';
  writer.take(append(put_position(at, range.end), kLineEnd));
}

bool CDataBaseFile::Tables::put_index() {
  const qv::FormattedText<32> trailer("IndexPosition = %12lld", static_cast<long long>(writer.position()));
  put_line("[Index]");
  for (std::size_t i = 0; i < segments.size(); ++i) put_index_entry(i);
  put_line(trailer.text);
  return writer.flush();
}
