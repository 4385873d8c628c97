#pragma once

/// Reading of little-endian binary files that may be cut or damaged.

#include <cstddef>
#include <cstdint>

namespace qv::detail {

/// A position in a block of bytes. Every read checks that the bytes are there, advances, and returns whether it
/// succeeded; once past the end, all further reads fail.
class ByteCursor {
 public:
  ByteCursor(const unsigned char* data, std::size_t size) : data_(data), size_(size) {}

  bool good() const { return good_; }
  std::size_t position() const { return position_; }
  std::size_t remaining() const { return size_ - position_; }

  bool seek(std::size_t position) {
    if (position > size_) good_ = false;
    if (good_) position_ = position;
    return good_;
  }
  bool skip(std::size_t n) { return seek(n <= remaining() ? position_ + n : size_ + 1); }
  bool u8(std::uint32_t& v) { return get(v, 1); }
  bool u16(std::uint32_t& v) { return get(v, 2); }
  bool u32(std::uint32_t& v) { return get(v, 4); }

 private:
  bool get(std::uint32_t& v, std::size_t n) {
    v = 0;
    if (!good_ || n > remaining()) return good_ = false;
    for (std::size_t i = 0; i < n; ++i) v |= static_cast<std::uint32_t>(data_[position_ + i]) << (8 * i);
    position_ += n;
    return true;
  }

  const unsigned char* data_;
  std::size_t size_;
  std::size_t position_ = 0;
  bool good_ = true;
};

}  // namespace qv::detail
