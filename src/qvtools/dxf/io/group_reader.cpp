#include "qvtools/dxf/io/internal/group_reader.h"

#include <algorithm>
#include <new>

#include "qvtools/services/messages.h"

namespace qv::detail {

namespace {

std::string_view without_return(std::string_view text) {
  return !text.empty() && text.back() == '\r' ? text.substr(0, text.size() - 1) : text;
}

}  // namespace

GroupReader::GroupReader(std::FILE* file, Stream kind) : file_(file), kind_(kind), atEnd_(true) {
  if (kind == Stream::Host) return;
  block_.reset(new (std::nothrow) char[kBlock + kMargin]);
  failed_ = !block_;
  start();
}

void GroupReader::start() {
  atEnd_ = !block_;
  at_ = pair_ = end_ = kNoText;
}

void GroupReader::rewind() {
  std::rewind(file_);
  start();
}

void GroupReader::refill() {
  const std::size_t left = ahead();
  std::memmove(block_.get(), at_, left);
  const std::size_t size = left + std::fread(block_.get() + left, 1, kBlock - left, file_);
  at_ = block_.get();
  end_ = at_ + size;
  std::memset(block_.get() + size, 0, kMargin);
  atEnd_ = size < kBlock;
  if (atEnd_) check_stream();
}

void GroupReader::check_stream() {
  if (failed_ || !std::ferror(file_)) return;
  failed_ = true;
  tell_error(301, "Read Error in DXF File !");
}

Line GroupReader::take_line() {
  // CR LF counts as one character, so a full line with it is two bytes longer.
  const char* const feed = find_feed(at_, kMaxLine + 1);
  const std::string_view line = feed ? without_return({at_, feed}) : std::string_view();
  if (feed && line.size() < kMaxLine) {
    at_ = feed + 1;
    return {line, true};
  }
  const std::string_view cut(at_, std::min(kMaxLine, ahead()));
  at_ += cut.size();
  return {cut, false};
}

bool GroupReader::next_line(Line& line) {
  reserve(kMaxPair);
  if (at_ == end_) return false;
  line = take_line();
  return true;
}

bool GroupReader::next_slowly() {
  if (kind_ == Stream::Host) return next_from_host();
  if (lacks(kMaxPair)) {
    refill();
    if (take_plain_pair()) return true;
  }
  pair_ = at_;
  if (at_ == end_) return false;
  const Line codeLine = take_line();
  if (at_ == end_) return false;
  value_ = take_line();
  finish_pair(codeLine);
  return true;
}

void GroupReader::finish_pair(const Line& codeLine) {
  code_ = codeLine.ended && codeLine.text.size() == 3 ? GroupCode::of(codeLine.text.data()) : GroupCode::unknown();
  if (code_ == 0) count_block_end();
}

bool GroupReader::take_host_line(char (&buffer)[kMaxLine + 1], Line& line) {
  if (!std::fgets(buffer, sizeof buffer, file_)) return check_stream(), false;
  std::string_view text(buffer);
  line.ended = !text.empty() && text.back() == '\n';
  if (line.ended) text.remove_suffix(1);
  line.text = line.ended ? without_return(text) : text;
  return true;
}

bool GroupReader::next_from_host() {
  hostPair_ = std::ftell(file_);
  Line codeLine;
  if (!take_host_line(hostCode_, codeLine) || !take_host_line(hostValue_, value_)) return false;
  finish_pair(codeLine);
  return true;
}

}  // namespace qv::detail
