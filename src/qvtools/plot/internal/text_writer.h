#pragma once

/// The text of plot files on its way to the file: numbers of fixed decimals printed without the general functions, and
/// handed on in blocks. Benchmark: PlotLines.

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace qv::detail {

/// Where finished blocks go.
class BlockSink {
 public:
  virtual void take(std::string_view block) = 0;

 protected:
  ~BlockSink() = default;
};

class StringSink final : public BlockSink {
 public:
  void take(std::string_view block) override { text.append(block); }
  std::string text;
};

/// A value in whole parts of 1 / `parts`, rounded half away from zero; what is too large becomes ten million, and what
/// is not a number 0.
inline std::int64_t in_parts(double value, int parts) {
  constexpr double kLargest = 1e7;
  if (!(value > -kLargest)) value = value <= -kLargest ? -kLargest : 0;
  const double scaled = std::min(value, kLargest) * parts;
  return static_cast<std::int64_t>(scaled + (scaled < 0 ? -0.5 : 0.5));
}

/// Millimetres in hundredths: the grid of all marks. The difference of two such values is an int as well.
inline int hundredths(double mm) {
  return static_cast<int>(in_parts(mm, 100));
}

class TextWriter {
 public:
  explicit TextWriter(BlockSink& sink) : sink_(sink), buffer_(new char[kSize]), at_(buffer_.get()) {}

  void put(char c) {
    room(1);
    *at_++ = c;
  }
  void put(std::string_view text) {
    while (text.size() > kSize / 2) {
      put(text.substr(0, kSize / 2));
      text.remove_prefix(kSize / 2);
    }
    room(text.size());
    std::memcpy(at_, text.data(), text.size());
    at_ += text.size();
  }
  /// scaled / 10^decimals, without zeros at either end: "12.5", "-.25", "3", "0".
  template <int decimals>
  void number(std::int64_t scaled) {
    room(kLongest);
    at_ = print<decimals>(at_, scaled);
  }
  void integer(std::int64_t value) { number<0>(value); }
  template <int decimals>
  void real(double value) {
    constexpr int kParts[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000};
    number<decimals>(in_parts(value, kParts[decimals]));
  }
  void flush() {
    sink_.take({buffer_.get(), static_cast<std::size_t>(at_ - buffer_.get())});
    at_ = buffer_.get();
  }

 private:
  static constexpr std::size_t kSize = 1 << 16;
  static constexpr std::size_t kLongest = 24;

  void room(std::size_t size) {
    if (static_cast<std::size_t>(buffer_.get() + kSize - at_) < size) flush();
  }
  // The digits are made from the last to the first, and moved to where they belong.
  template <int decimals>
  static char* print(char* out, std::int64_t scaled) {
    char digits[kLongest];
    char* const end = digits + kLongest;
    char* first = end;
    auto rest = static_cast<std::uint64_t>(scaled < 0 ? -scaled : scaled);
    *out = '-';
    out += scaled < 0;
    bool kept = false;
    for (int i = 0; i < decimals; ++i, rest /= 10) {
      const auto digit = static_cast<char>(rest % 10);
      kept |= digit != 0;
      if (kept) *--first = static_cast<char>('0' + digit);
    }
    if (kept) *--first = '.';
    if (rest == 0 && !kept) *--first = '0';
    for (; rest != 0; rest /= 10) *--first = static_cast<char>('0' + rest % 10);
    const auto size = static_cast<std::size_t>(end - first);
    std::memcpy(out, first, size);
    return out + size;
  }

  BlockSink& sink_;
  std::unique_ptr<char[]> buffer_;
  char* at_;
};

}  // namespace qv::detail
