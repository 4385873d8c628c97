#pragma once

/// Reads group pairs: a code line and a value line. A code is known only as the exact text that the writer produces,
/// right-aligned in three characters; lines are at most 289 bytes long (what follows counts as another line), and end
/// in LF or CR LF. One pair can be given back.
///
/// A drawing file of our own opening is read in large blocks. A stream that a host opened is read line by line, so that
/// it stands where the record ended.

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>

#include "qvtools/text/internal/line_feeds.h"

namespace qv::detail {

/// A word of at most eight letters as a number: compared at once.
struct Word {
  std::uint64_t letters = 0;
  std::size_t size = 0;

  constexpr Word() = default;
  template <std::size_t N>
  consteval Word(const char (&text)[N]) : Word(std::string_view(text)) {}
  constexpr explicit Word(std::string_view text) : size(text.size()) {
    for (std::size_t i = 0; i < size; ++i) letters |= std::uint64_t{static_cast<unsigned char>(text[i])} << 8 * i;
  }
  bool operator==(const Word&) const = default;
};

/// A group code: the three characters of its line as a number, compared at once. Only those that the writer produces
/// name a code: right-aligned, without leading zeros.
class GroupCode {
 public:
  /// A code from 0 to 99.
  constexpr GroupCode(int code)
      : letters_(' ' | static_cast<unsigned>(code < 10 ? ' ' : '0' + code / 10) << 8 |
                 static_cast<unsigned>('0' + code % 10) << 16) {}
  /// The code of a line of three characters, of which four can be read.
  static GroupCode of(const char* line) {
    std::uint32_t letters;
    std::memcpy(&letters, line, sizeof letters);
    return GroupCode(letters & 0xFFFFFF, 0);
  }
  /// Whether it may be one of the writer's, and is surely no end of a line: blanks and digits have this bit.
  bool is_usual() const { return (letters_ & 0x202020) == 0x202020; }
  /// What no line is equal to: the code of any other line, and what stands behind the last pair.
  static constexpr GroupCode unknown() { return {1u << 24, 0}; }
  static constexpr GroupCode end() { return {2u << 24, 0}; }
  bool operator==(const GroupCode&) const = default;

 private:
  constexpr GroupCode(std::uint32_t letters, int) : letters_(letters) {}
  std::uint32_t letters_;
};

/// A line without its end. `ended` is false when the length limit or the end of the file cut it. Sixteen bytes
/// from its beginning on can be read, however short it is.
struct Line {
  std::string_view text;
  bool ended = false;

  bool is(const Word& expected) const { return word() == expected; }
  /// The line as a word; the empty one when it is longer than words are, or was cut.
  Word word() const {
    Word result;
    if (!ended || text.empty() || text.size() > sizeof result.letters) return result;
    std::memcpy(&result.letters, text.data(), sizeof result.letters);
    result.letters &= ~std::uint64_t{0} >> 8 * (sizeof result.letters - text.size());
    result.size = text.size();
    return result;
  }
  /// Texts lose their last character, which is the line feed unless the line was cut.
  std::string_view value() const { return ended || text.empty() ? text : text.substr(0, text.size() - 1); }
};

class GroupReader {
 public:
  static constexpr std::size_t kMaxLine = 289;

  /// What the stream is: ours to read ahead in, or a host's.
  enum class Stream { Own, Host };
  GroupReader(std::FILE* file, Stream kind);

  /// Whether the disk failed (told once) or memory ran out: what is read from then on is at the end of the file, or may
  /// lack a part.
  bool failed() const { return failed_; }
  /// Says that memory ran out for what was read.
  void fail() { failed_ = true; }

  /// Reads the next pair; false at the end of the file.
  bool next() { return take_plain_pair() || next_slowly(); }
  GroupCode code() const { return code_; }
  const Line& value() const { return value_; }
  bool at(GroupCode code, const Word& word) const { return code_ == code && value_.is(word); }
  /// Gives the last pair back: `next` reads it again.
  void unread() {
    if (code_ == 0 && value_.is("ENDBLK")) --blocksEnded_;
    if (kind_ == Stream::Host) {
      std::fseek(file_, hostPair_, SEEK_SET);
    } else {
      at_ = pair_;
    }
  }

  /// Goes back to the start of the file (own streams).
  void rewind();
  /// Reads one line (own streams); false at the end of the file.
  bool next_line(Line& line);
  /// Calls `look` on the pairs ahead, at most kLookAhead of them, until it returns false, and goes back (own streams).
  void look_ahead(const auto& look) {
    reserve(kLookAhead * kMaxPair);
    const char* const mark = at_;
    for (std::size_t i = 0; i < kLookAhead && next() && look(); ++i) {
    }
    at_ = mark;
  }

  /// The number of ENDBLK pairs that have gone by.
  int blocks_ended() const { return blocksEnded_; }

 private:
  static constexpr std::size_t kMaxPair = 2 * (kMaxLine + 2);
  static constexpr std::size_t kLookAhead = 64;
  static constexpr std::size_t kBlock = 63 * 1024;
  static_assert(kLookAhead * kMaxPair < kBlock);
  /// So many zeros lie behind what was read: a line can be looked for at its very end.
  static constexpr std::size_t kMargin = 512;
  static constexpr char kNoText[kMargin] = {};

  std::size_t ahead() const { return static_cast<std::size_t>(end_ - at_); }
  /// Takes a pair that lies in the block whole, with a code line of three characters and a value line that is not too
  /// long, which is nearly every pair; false, with nothing taken, for any other.
  bool take_plain_pair() {
    const char* const line = at_;
    const GroupCode code = GroupCode::of(line);
    const char* first = line + 4;
    if (line[3] != '\n') {
      if (line[3] != '\r' || line[4] != '\n') return false;
      ++first;
    }
    const char* const feed = code.is_usual() ? find_feed(first, kMaxLine) : nullptr;
    if (!feed) return false;
    const auto length = static_cast<std::size_t>(feed - first);
    pair_ = line;
    at_ = feed + 1;
    code_ = code;
    // What lies before an empty line is a line feed.
    value_ = {std::string_view(first, length - (feed[-1] == '\r')), true};
    if (code_ == 0) [[unlikely]]
      count_block_end();
    return true;
  }
  void count_block_end() {
    if (value_.is("ENDBLK")) ++blocksEnded_;
  }
  bool next_slowly();
  Line take_line();
  bool take_host_line(char (&buffer)[kMaxLine + 1], Line& line);
  bool next_from_host();
  void finish_pair(const Line& codeLine);
  /// Makes at least `size` bytes of the file lie ahead, if it has so many.
  void reserve(std::size_t size) {
    if (lacks(size)) refill();
  }
  bool lacks(std::size_t size) const { return ahead() < size && !atEnd_; }
  void start();
  void refill();
  /// Tells of a disk that failed.
  void check_stream();

  std::FILE* file_;
  Stream kind_;
  bool atEnd_ = false;
  bool failed_ = false;
  GroupCode code_ = GroupCode::unknown();
  Line value_;
  const char* at_ = kNoText;
  const char* pair_ = kNoText;  // where the last pair began
  const char* end_ = kNoText;
  int blocksEnded_ = 0;
  std::unique_ptr<char[]> block_;
  long hostPair_ = 0;
  char hostCode_[kMaxLine + 1];
  char hostValue_[kMaxLine + 1];
};

}  // namespace qv::detail
