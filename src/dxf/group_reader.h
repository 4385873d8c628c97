#pragma once

/// Reads group pairs: a code line and a value line. A code is known only as the exact text that the writer produces,
/// right-aligned in three characters; lines are at most 289 bytes long (what follows counts as another line), and end
/// in LF or CR LF. One pair can be given back.
///
/// A drawing file of our own opening is read in large blocks. A stream that a host opened is read line by line, so that
/// it stands where the record ended.

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>

namespace qv::detail {

/// A line without its end. `ended` is false when the length limit or the end of the file cut it.
struct Line {
  std::string_view text;
  bool ended = false;

  bool is(std::string_view word) const { return ended && text == word; }
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

  /// False when memory for the blocks ran out: then every read is at the end of the file.
  bool is_ready() const { return kind_ == Stream::Host || buffer_; }

  /// Reads the next pair; false at the end of the file.
  bool next() {
    reserve(kMaxPair);
    return take_plain_pair() || next_slowly();
  }
  int code() const { return code_; }
  const Line& value() const { return value_; }
  bool at(int code, std::string_view word) const { return code_ == code && value_.is(word); }
  /// Gives the last pair back: `next` reads it again.
  void unread();

  /// Goes back to the start of the file (own streams).
  void rewind();
  /// Reads one line (own streams); false at the end of the file.
  bool next_line(Line& line);
  /// Calls `look` on the pairs ahead, at most kLookAhead of them, until it returns false, and goes back (own streams).
  template <class F>
  void look_ahead(const F& look) {
    reserve(kLookAhead * kMaxPair);
    const char* const mark = at_;
    for (std::size_t i = 0; i < kLookAhead && next() && look(); ++i) {
    }
    at_ = mark;
  }

  /// The number of ENDBLK pairs that have gone by.
  int blocks_ended() const { return blocksEnded_; }

 private:
  static constexpr std::size_t kBlock = std::size_t{1} << 18;
  static constexpr std::size_t kMaxPair = 2 * (kMaxLine + 2);
  static constexpr std::size_t kLookAhead = 64;
  static constexpr std::size_t kPadding = 16;  // whole words are read past the end

  static constexpr std::uint64_t kOnes = 0x0101010101010101;

  /// The eight bytes from p on, the first of them lowest.
  static std::uint64_t word_at(const char* p) {
    std::uint64_t word;
    std::memcpy(&word, p, sizeof word);
    if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
    return word;
  }
  /// The first line feed from p on, or `limit`; words are read up to 7 bytes past the limit.
  static const char* find_line_feed(const char* p, const char* limit) {
    for (; p < limit; p += 8) {
      const std::uint64_t x = word_at(p) ^ (kOnes * '\n');
      const std::uint64_t zero = (x - kOnes) & ~x & (kOnes << 7);
      if (zero) return std::min(p + std::countr_zero(zero) / 8, limit);
    }
    return limit;
  }
  /// Takes a pair whose code line is just as the writer writes it and whose value line is not too long, which is nearly
  /// every pair. False, with nothing taken, for any other and when no whole pair of the greatest size lies ahead.
  bool take_plain_pair() {
    if (end_ - at_ < static_cast<std::ptrdiff_t>(kMaxPair)) return false;
    const char* const line = at_;
    const unsigned tens = static_cast<unsigned char>(line[1]) - unsigned{'0'};
    const unsigned ones = static_cast<unsigned char>(line[2]) - unsigned{'0'};
    if (line[0] != ' ' || ones > 9 || (tens - 1 > 8 && line[1] != ' ')) return false;
    const char* const first = line + 4 + (line[3] == '\r');
    if (first[-1] != '\n') return false;
    const char* const feed = find_line_feed(first, first + kMaxLine);
    if (*feed != '\n' || feed == first + kMaxLine) return false;
    pair_ = line;
    at_ = feed + 1;
    code_ = static_cast<int>(tens <= 9 ? 10 * tens + ones : ones);
    const char* const last = feed - (feed != first && feed[-1] == '\r');
    value_ = {std::string_view(first, static_cast<std::size_t>(last - first)), true};
    if (code_ == 0) count_block_end();
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
    if (static_cast<std::size_t>(end_ - at_) < size && !atEnd_) refill();
  }
  void refill();

  std::FILE* file_;
  Stream kind_;
  bool atEnd_ = false;
  int code_ = kUnknownCode;
  Line value_;
  const char* at_ = nullptr;
  const char* end_ = nullptr;
  const char* pair_ = nullptr;  // where the last pair began
  int blocksEnded_ = 0;
  std::unique_ptr<char[]> buffer_;
  long hostPair_ = 0;
  char hostCode_[kMaxLine + 1];
  char hostValue_[kMaxLine + 1];
};

}  // namespace qv::detail
