#pragma once

/// Writes group pairs: the code line, right-aligned in three characters, and the value line. Constant code lines are
/// copied whole, and nothing is formatted by the C library.

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <utility>

#include "qvtools/dxf/model/internal/records.h"
#include "qvtools/dxf/model/visit.h"
#include "qvtools/text/gbk_text.h"
#include "qvtools/text/internal/fixed2.h"
#include "qvtools/text/numbers.h"

namespace qv::detail {

/// Line ends: "\n" into a stream that a host opened, CR LF into files of our own, which are binary.
enum class LineEnd { Lf, CrLf };

/// A constant text of lines, "\n" turned into the line end at compile time.
template <LineEnd end, std::size_t N>
struct Lines {
  char text[(N + (end == LineEnd::CrLf ? N : 0) + 7) / 8 * 8] = {};
  std::size_t size = 0;
  constexpr explicit Lines(const char (&source)[N]) {
    for (std::size_t i = 0; source[i] != '\0'; ++i) {
      if (source[i] == '\n' && end == LineEnd::CrLf) text[size++] = '\r';
      text[size++] = source[i];
    }
  }
};

/// The end of the line before, and the line of a group code below 1000: "\n  8\n", "\n 10\n" and their kin.
template <LineEnd end, int code>
inline constexpr auto kCodeLine = [] {
  const char line[] = {'\n',
                       code < 100 ? ' ' : char('0' + code / 100),
                       code < 10 ? ' ' : char('0' + code / 10 % 10),
                       char('0' + code % 10),
                       '\n',
                       '\0'};
  return Lines<end, 6>(line);
}();

/// Where finished blocks of text go; false when they could not.
using Output = std::function<bool(const char* data, std::size_t size)>;

inline Output to_stream(std::FILE* file) {
  return [file](const char* data, std::size_t size) { return std::fwrite(data, 1, size, file) == size; };
}

/// Collects text in a buffer that the caller lends and hands it on in blocks; what is left goes out with `flush`.
template <LineEnd end>
class GroupWriter {
 public:
  /// No record without its entities or vertices takes more. The longest is a line type: its names, its counts, and 30
  /// elements of 54 bytes at most (a float in two decimals takes 43) with their code lines.
  static constexpr std::size_t kRecordRoom = 4096;
  static_assert(2 * kNameSize + 8 * 64 + kMaxPatternElements * 64 < kRecordRoom);
  static_assert(2 * kFontFileSize + kNameSize + 8 * 64 < kRecordRoom);

  GroupWriter(char* buffer, std::size_t size, Output output)
      : buffer_(buffer), limit_(buffer + size - kRecordRoom), at_(buffer), output_(std::move(output)) {}

  /// A record's opening pair and its groups.
  template <class Record>
  void record(const Record& r) {
    room();
    open<Record>();
    describe(*this, r);
    end_groups();
  }
  /// Lines as they are.
  template <std::size_t N>
  void lines(const Lines<end, N>& constant) {
    room();
    at_ = put(at_, constant);
  }
  /// Hands on what is left; false when this or an earlier block failed.
  bool flush() {
    good_ = good_ && (at_ == buffer_ || output_(buffer_, static_cast<std::size_t>(at_ - buffer_)));
    at_ = buffer_;
    return good_;
  }

  /// Whether a real was written that is no finite number.
  bool any_not_finite() const { return notFinite_; }

  // Groups: each begins with the end of the line before it; behind the last, that end is written by itself.
  void end_groups() { at_ = put(at_, kLineFeed); }
  template <int code>
  void text(const char* value) {
    char* out = put(at_, kCodeLine<end, code>);
    // A line break within a value would break the pairing: the value is cut there.
    for (; *value != '\0' && *value != '\n' && *value != '\r'; ++value) *out++ = *value;
    at_ = out;
  }
  template <int code>
  void real(float value) {
    at_ = put_fixed2(put(at_, kCodeLine<end, code>), value);
    constexpr std::uint32_t kExponent = 0x7F800000;  // all ones where there is no finite number
    notFinite_ |= (std::bit_cast<std::uint32_t>(value) & kExponent) == kExponent;
  }
  template <int code>
  void real(float value, int) {
    real<code>(value);
  }
  template <int code>
  void integer(int value) {
    at_ = format_int(put(at_, kCodeLine<end, code>), value);
  }
  template <int code>
  void point(const Point3& p) {
    real<code>(p.x);
    real<code + 10>(p.y);
    real<code + 20>(p.z);
  }
  template <int code>
  void ltype(const char* value) {
    if (!is_literal(value, "BYLAYER")) text<code>(value);
  }
  template <int code>
  void color(int value) {
    if (value >= 0) integer<code>(value);
  }
  template <int code>
  void constant(const char* value) {
    text<code>(value);
  }
  template <int code, class Field>
  void stored(const Field&) {}
  void elements(const ACAD_LTYPE& r) {
    const int n = std::clamp(r.m_nElements, 0, kMaxPatternElements);
    for (int i = 0; i < n; ++i) real<49>(r.m_fElement[i]);
  }

 private:
  void room() {
    if (at_ > limit_) flush();
  }
  static constexpr Lines<end, 2> kLineFeed{"\n"};

  template <class Record>
  void open() {
    static constexpr auto line = [] {
      char source[16] = "  0\n";
      std::size_t n = 4;
      for (const char c : kKeyword<Record>) source[n++] = c;
      return Lines<end, 16>(source);
    }();
    at_ = put(at_, line);
  }
  template <std::size_t N>
  static char* put(char* out, const Lines<end, N>& constant) {
    // The whole array is copied, its padding overwritten by what follows: a copy of a fixed size is one or two moves.
    std::memcpy(out, constant.text, sizeof constant.text);
    return out + constant.size;
  }

  char* buffer_;
  char* limit_;
  char* at_;
  Output output_;
  bool good_ = true;
  bool notFinite_ = false;
};

template <LineEnd end>
void write_entity(GroupWriter<end>& writer, const ACAD_POLYLINE& polyline) {
  static constexpr Lines<end, 12> kSeqEnd("  0\nSEQEND\n");
  writer.record(polyline);
  for (const ACAD_VERTEX& vertex : polyline.m_Vertices) writer.record(vertex);
  writer.lines(kSeqEnd);
}

template <LineEnd end, class Record>
void write_entity(GroupWriter<end>& writer, const Record& record) {
  writer.record(record);
}

/// Writes one record to a stream, with whatever belongs to it; 1, or 0 when a write failed.
template <LineEnd end, class Record>
int write_record(std::FILE* file, const Record& record) {
  char buffer[2 * GroupWriter<end>::kRecordRoom];
  GroupWriter<end> writer(buffer, sizeof buffer, to_stream(file));
  write_entity(writer, record);
  return writer.flush() ? 1 : 0;
}

/// Writes an entity of any kind by its own description. An entity of a host's own class cannot be in a document.
template <LineEnd end>
void write_any(GroupWriter<end>& writer, ACAD_ENTITY& entity) {
  visit_entity(entity, [&](auto& record) { write_entity(writer, record); });
}

template <LineEnd end>
void write_block(GroupWriter<end>& writer, const ACAD_BLOCK& block) {
  static constexpr Lines<end, 12> kEndBlk("  0\nENDBLK\n");
  writer.record(block);
  for (POSITION at = block.m_EntityList.GetHeadPosition(); at;)
    write_any(writer, *static_cast<ACAD_ENTITY*>(block.m_EntityList.GetNext(at)));
  writer.lines(kEndBlk);
}

}  // namespace qv::detail
