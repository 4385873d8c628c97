#pragma once

/// Reads group pairs: a code line and a value line. A code is known only as the exact text that the writer produces,
/// right-aligned in three characters; lines are at most 289 bytes long (what follows counts as another line), and end
/// in LF or CR LF. One pair can be given back.
///
/// A drawing file of our own opening is read in large blocks, whose line ends are found first. A stream that a host
/// opened is read line by line, so that it stands where the record ended.

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>

#include "qvtools/dxf/io/internal/line_index.h"

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
  static constexpr int kUnknownCode = -1;
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
  bool next() {
    reserve(kMaxPair);
    return take_plain_pair() || next_slowly();
  }
  int code() const { return code_; }
  const Line& value() const { return value_; }
  bool at(int code, const Word& word) const { return code_ == code && value_.is(word); }
  /// Gives the last pair back: `next` reads it again.
  void unread();

  /// Goes back to the start of the file (own streams).
  void rewind();
  /// Reads one line (own streams); false at the end of the file.
  bool next_line(Line& line);
  /// Calls `look` on the pairs ahead, at most kLookAhead of them, until it returns false, and goes back (own streams).
  void look_ahead(const auto& look) {
    reserve(kLookAhead * kMaxPair);
    const Position mark = at_;
    for (std::size_t i = 0; i < kLookAhead && next() && look(); ++i) {
    }
    at_ = mark;
  }

  /// The number of ENDBLK pairs that have gone by.
  int blocks_ended() const { return blocksEnded_; }

 private:
  static constexpr std::size_t kMaxPair = 2 * (kMaxLine + 2);
  static constexpr std::size_t kLookAhead = 64;
  /// Offsets within a block are far below kNoFeed: no line that reaches there passes for one that is short enough.
  static constexpr std::size_t kBlock = 63 * 1024;
  static constexpr std::uint16_t kNoFeed = 0xFFFF;
  static_assert(kBlock + kMaxLine < kNoFeed && kLookAhead * kMaxPair < kBlock);
  struct Memory {
    char text[kBlock + kIndexMargin];
    std::uint16_t feeds[kBlock + kIndexMargin];
  };

  /// A place in the block, with the first line feed that does not lie before it.
  struct Position {
    const char* text = nullptr;
    const std::uint16_t* feed = kNoFeeds;
  };
  static constexpr std::uint16_t kNoFeeds[2] = {kNoFeed, kNoFeed};

  /// What a character of a code counts for at its place, or so little that no sum with it is a code.
  struct CodeDigits {
    std::int16_t tens[256];
    std::int16_t ones[256];
    constexpr CodeDigits() : tens(), ones() {
      constexpr std::int16_t kNone = -1000;
      for (int c = 0; c < 256; ++c) {
        const bool digit = c >= '0' && c <= '9';
        const auto value = static_cast<std::int16_t>(c - '0');
        ones[c] = digit ? value : kNone;
        tens[c] = c == ' ' ? std::int16_t{0} : digit && value > 0 ? static_cast<std::int16_t>(10 * value) : kNone;
      }
    }
  };
  static const CodeDigits kCodeDigits;
  /// The code that three characters name as the writer writes it, below 0 for any others.
  static int code_of(const char* line) {
    const int code =
        kCodeDigits.tens[static_cast<unsigned char>(line[1])] + kCodeDigits.ones[static_cast<unsigned char>(line[2])];
    return line[0] == ' ' ? code : kUnknownCode;
  }
  std::size_t ahead() const { return static_cast<std::size_t>(end_ - at_.text); }
  /// Takes a pair whose code line is just as the writer writes it and whose value line is not too long, which is nearly
  /// every pair; false, with nothing taken, for any other.
  bool take_plain_pair() {
    const char* const line = at_.text;
    const std::uint16_t* const feed = at_.feed;
    const std::size_t codeEnd = feed[0];
    const std::size_t valueEnd = feed[1];
    const std::size_t length = valueEnd - codeEnd - 1;
    if (length >= kMaxLine) return false;
    const char* const first = block_ + codeEnd + 1;
    const auto codeLength = first - line - 1;
    if (codeLength != 3 && (codeLength != 4 || line[3] != '\r')) return false;
    const int code = code_of(line);
    if (code < 0) return false;
    pair_ = {line, feed};
    at_ = {block_ + valueEnd + 1, feed + 2};
    code_ = code;
    value_ = {std::string_view(first, length - (length > 0 && first[length - 1] == '\r')), true};
    if (code == 0) count_block_end();
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
    if (ahead() < size && !atEnd_) refill();
  }
  void start();
  void refill();
  /// Tells of a disk that failed.
  void check_stream();

  std::FILE* file_;
  Stream kind_;
  bool atEnd_ = false;
  bool failed_ = false;
  int code_ = kUnknownCode;
  Line value_;
  Position at_;
  Position pair_;  // where the last pair began
  const char* block_ = nullptr;
  const char* end_ = nullptr;
  int blocksEnded_ = 0;
  std::unique_ptr<Memory> memory_;
  long hostPair_ = 0;
  char hostCode_[kMaxLine + 1];
  char hostValue_[kMaxLine + 1];
};

inline constexpr GroupReader::CodeDigits GroupReader::kCodeDigits;

}  // namespace qv::detail
