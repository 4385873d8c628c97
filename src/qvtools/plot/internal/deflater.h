#pragma once

/// Compression by zlib, block by block.

#include <zlib.h>

#include <string>

#include "qvtools/plot/internal/text_writer.h"

namespace qv::detail {

/// What it takes goes on compressed, in the zlib format (RFC 1950), level 6, in blocks of 64 KB but for the last.
/// Memory that runs out throws `std::bad_alloc`.
class Deflater final : public BlockSink {
 public:
  explicit Deflater(BlockSink& out);
  ~Deflater();
  Deflater(const Deflater&) = delete;
  Deflater& operator=(const Deflater&) = delete;

  void take(std::string_view block) override;
  /// Hands on what is left. Nothing can be taken afterwards.
  void finish();

 private:
  void run(std::string_view block, int flush);
  void empty_buffer();
  void hand_on();

  BlockSink& out_;
  std::string buffer_;
  z_stream stream_{};
};

/// A whole text, compressed.
std::string deflated(std::string_view text);

}  // namespace qv::detail
