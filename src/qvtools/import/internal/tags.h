#pragma once

/// The group pairs of a drawing file in memory, of any form: text with codes of any width and any line ends, or binary
/// with codes of one byte (release 12 and earlier) or two.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "qvtools/text/internal/fixed2.h"

namespace qv::importing {

/// One group: its code, and its value as it stands in the file. A number of a binary file has no text.
struct Tag {
  int code = 0;
  bool binaryNumber = false;
  double number = 0;
  std::string_view text;
};

double unusual_real_of(const Tag& tag);

/// The value as a number; 0 for what is none. Blanks before it and anything behind it are passed over.
inline double real_of(const Tag& tag) {
  bool negative;
  std::int32_t hundredths;
  if (tag.text.size() == 4 && std::memcmp(tag.text.data(), "0.00", 4) == 0) return 0;  // as most Z coordinates are
  if (!detail::parse_hundredths(tag.text, negative, hundredths)) return unusual_real_of(tag);
  const double magnitude = hundredths * 0.01;
  return negative ? -magnitude : magnitude;
}
int integer_of(const Tag& tag);
std::uint64_t handle_of(const Tag& tag);

inline bool is_blank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
std::string_view trimmed(std::string_view text);
/// The value without blanks around it.
inline std::string_view word_of(const Tag& tag) {
  const std::string_view text = tag.text;
  const bool plain = !text.empty() && !is_blank(text.front()) && !is_blank(text.back());
  return plain ? text : trimmed(text);
}

enum class Form { Text, BinaryNarrow, BinaryWide };

/// The first byte of the groups of a file of the form; what lies before is its mark.
inline constexpr std::size_t kBinaryMark = 22;
Form form_of(std::string_view file);

class TagReader {
 public:
  /// Reads a file in memory that outlives the reader. A line feed stands at its end, and 64 bytes behind that can be
  /// read.
  explicit TagReader(std::string_view file);

  /// Takes the next group; false at the end of the file, or where a binary file is broken off.
  bool next() {
    if (pending_) return pending_ = false, true;
    if (take_plain()) return true;
    return ended_ = !(form_ == Form::Text ? next_text() : next_binary()), !ended_;
  }
  const Tag& tag() const { return tag_; }
  /// Gives the last group back: `next` takes it again. At the end of the file there is none to give.
  void unread() { pending_ = !ended_; }

  bool at(int code, std::string_view word) const { return tag_.code == code && word_of(tag_) == word; }
  /// Where the last group begins, and where the next one does.
  std::size_t place() const { return place_; }
  std::size_t next_place() const { return pending_ ? place_ : static_cast<std::size_t>(at_ - file_.data()); }
  void seek(std::size_t place);

  Form form() const { return form_; }
  std::string_view file() const { return file_; }
  /// The number of lines that were passed over because no group code stood where one should, and where the first is.
  int repairs() const { return repairs_; }
  std::size_t first_repair() const { return firstRepair_; }

 private:
  static constexpr std::uint16_t kNoFeed = 0xFFFF;
  static constexpr std::size_t kLargestChunk = 60 * 1024;
  static constexpr std::size_t kFirstChunk = 1024;

  /// Takes a group whose code stands right-aligned in three characters and whose lines lie in the present chunk, as
  /// nearly all do.
  bool take_plain() {
    if (feed_[0] == kNoFeed || feed_[1] == kNoFeed) return false;
    const char* const line = at_;
    const char* const codeEnd = chunk_ + feed_[0];
    const auto codeLength = codeEnd - line;
    if (codeLength != 3 && (codeLength != 4 || line[3] != '\r')) return false;
    const unsigned tens = static_cast<unsigned char>(line[1]) - unsigned{'0'};
    const unsigned ones = static_cast<unsigned char>(line[2]) - unsigned{'0'};
    if (line[0] != ' ' || ones > 9 || (tens - 1 > 8 && line[1] != ' ')) return false;
    const char* const valueEnd = chunk_ + feed_[1];
    const auto length = static_cast<std::size_t>(valueEnd - codeEnd) - 1;
    place_ = static_cast<std::size_t>(line - file_.data());
    tag_.code = static_cast<int>(tens <= 9 ? 10 * tens + ones : ones);
    tag_.text = {codeEnd + 1, length - (length > 0 && valueEnd[-1] == '\r')};
    at_ = valueEnd + 1;
    feed_ += 2;
    return true;
  }
  bool next_text();
  bool next_binary();
  bool next_line(std::string_view& line);
  bool index_more();
  bool parse_code(std::string_view line, int& code);
  bool take(std::size_t size, const unsigned char*& bytes);
  bool take_value();

  std::string_view file_;
  Form form_;
  const char* at_;
  const char* end_;
  const char* chunk_ = nullptr;  // whose line ends are known
  std::size_t chunkSize_ = kFirstChunk;
  const std::uint16_t* feed_;
  Tag tag_;
  bool pending_ = false;
  bool ended_ = false;
  std::size_t place_ = 0;
  int repairs_ = 0;
  std::size_t firstRepair_ = 0;
  std::uint16_t feeds_[kLargestChunk + 64];
};

}  // namespace qv::importing
