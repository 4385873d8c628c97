#include "qvtools/plot/internal/deflater.h"

#include <new>

namespace qv::detail {
namespace {

constexpr int kLevel = 6;
constexpr std::size_t kBlock = 1 << 16;

}  // namespace

Deflater::Deflater(BlockSink& out) : out_(out), buffer_(kBlock, '\0') {
  if (deflateInit(&stream_, kLevel) != Z_OK) throw std::bad_alloc();
  empty_buffer();
}

Deflater::~Deflater() {
  deflateEnd(&stream_);
}

void Deflater::run(std::string_view block, int flush) {
  // zlib's interface is older than const.
  stream_.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(block.data()));
  stream_.avail_in = static_cast<uInt>(block.size());
  for (;;) {
    deflate(&stream_, flush);
    if (stream_.avail_out != 0) return;
    hand_on();
  }
}

void Deflater::empty_buffer() {
  stream_.next_out = reinterpret_cast<Bytef*>(buffer_.data());
  stream_.avail_out = kBlock;
}

void Deflater::hand_on() {
  out_.take({buffer_.data(), kBlock - stream_.avail_out});
  empty_buffer();
}

void Deflater::take(std::string_view block) {
  for (; !block.empty(); block.remove_prefix(std::min(kBlock, block.size()))) {
    run(block.substr(0, kBlock), Z_NO_FLUSH);
  }
}

void Deflater::finish() {
  run({}, Z_FINISH);
  hand_on();
}

std::string deflated(std::string_view text) {
  StringSink sink;
  Deflater deflater(sink);
  deflater.take(text);
  deflater.finish();
  return std::move(sink.text);
}

}  // namespace qv::detail
