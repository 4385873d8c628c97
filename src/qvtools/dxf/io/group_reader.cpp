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
  memory_.reset(new (std::nothrow) Memory);
  failed_ = !memory_;
  start();
}

void GroupReader::start() {
  atEnd_ = !memory_;
  block_ = end_ = memory_ ? memory_->text : nullptr;
  at_ = pair_ = {block_, kNoFeeds};
}

void GroupReader::rewind() {
  std::rewind(file_);
  start();
}

void GroupReader::refill() {
  const std::size_t left = ahead();
  std::memmove(memory_->text, at_.text, left);
  const std::size_t size = left + std::fread(memory_->text + left, 1, kBlock - left, file_);
  end_ = memory_->text + size;
  atEnd_ = size < kBlock;
  if (atEnd_) check_stream();
  std::uint16_t* const feeds = index_line_feeds(memory_->text, size, memory_->feeds);
  feeds[0] = feeds[1] = kNoFeed;
  at_ = {memory_->text, memory_->feeds};
}

void GroupReader::check_stream() {
  if (failed_ || !std::ferror(file_)) return;
  failed_ = true;
  tell_error(301, "Read Error in DXF File !");
}

Line GroupReader::take_line() {
  const bool fed = *at_.feed != kNoFeed;
  const std::string_view text(at_.text, fed ? static_cast<std::size_t>(block_ + *at_.feed - at_.text) : ahead());
  // CR LF counts as one character, so a full line with it is two bytes longer.
  const std::string_view line = without_return(text);
  if (fed && line.size() < kMaxLine) {
    at_ = {text.data() + text.size() + 1, at_.feed + 1};
    return {line, true};
  }
  const std::string_view cut = text.substr(0, kMaxLine);
  at_.text += cut.size();
  return {cut, false};
}

bool GroupReader::next_line(Line& line) {
  reserve(kMaxPair);
  if (at_.text == end_) return false;
  line = take_line();
  return true;
}

bool GroupReader::next_slowly() {
  if (kind_ == Stream::Host) return next_from_host();
  pair_ = at_;
  if (at_.text == end_) return false;
  const Line codeLine = take_line();
  if (at_.text == end_) return false;
  value_ = take_line();
  finish_pair(codeLine);
  return true;
}

void GroupReader::finish_pair(const Line& codeLine) {
  code_ = kUnknownCode;
  if (codeLine.ended && codeLine.text.size() == 3) code_ = std::max(code_of(codeLine.text.data()), kUnknownCode);
  if (code_ == 0) count_block_end();
}

void GroupReader::unread() {
  if (code_ == 0 && value_.is("ENDBLK")) --blocksEnded_;
  if (kind_ == Stream::Host)
    std::fseek(file_, hostPair_, SEEK_SET);
  else
    at_ = pair_;
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
