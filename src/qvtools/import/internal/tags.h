#pragma once

/// The group pairs of a drawing file in memory, of any form: text with codes of any width and any line ends, or binary
/// with codes of one byte (release 12 and earlier) or two.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "qvtools/text/internal/fixed2.h"
#include "qvtools/text/internal/line_feeds.h"

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
  /// Takes a group whose code stands right-aligned in three characters, as nearly all do.
  bool take_plain() {
    const char* const line = at_;
    if (line >= plainEnd_) return false;
    const char* first = line + 4;
    if (line[3] != '\n') {
      if (line[3] != '\r' || line[4] != '\n') return false;
      ++first;
    }
    const unsigned tens = static_cast<unsigned char>(line[1]) - unsigned{'0'};
    const unsigned ones = static_cast<unsigned char>(line[2]) - unsigned{'0'};
    if (line[0] != ' ' || ones > 9 || (tens - 1 > 8 && line[1] != ' ')) return false;
    const char* const feed = detail::find_feed(first, static_cast<std::size_t>(end_ - first));
    place_ = static_cast<std::size_t>(line - file_.data());
    tag_.code = static_cast<int>(tens <= 9 ? 10 * tens + ones : ones);
    // What lies before an empty line is a line feed.
    tag_.text = {first, static_cast<std::size_t>(feed - first) - (feed[-1] == '\r')};
    at_ = feed + 1;
    return true;
  }
  bool next_text();
  bool next_binary();
  bool next_line(std::string_view& line);
  bool parse_code(std::string_view line, int& code);
  bool take(std::size_t size, const unsigned char*& bytes);
  bool take_value();

  std::string_view file_;
  Form form_;
  const char* at_;
  const char* end_;
  const char* plainEnd_;  // before it, a line feed ends whatever line begins; nothing of a binary file lies before it
  Tag tag_;
  bool pending_ = false;
  bool ended_ = false;
  std::size_t place_ = 0;
  int repairs_ = 0;
  std::size_t firstRepair_ = 0;
};

}  // namespace qv::importing
