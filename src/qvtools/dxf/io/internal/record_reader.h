#pragma once

/// Reads records by their descriptions from group pairs.

#include <algorithm>

#include "qvtools/dxf/io/internal/group_reader.h"
#include "qvtools/dxf/model/block.h"
#include "qvtools/dxf/model/internal/records.h"
#include "qvtools/text/gbk_text.h"

namespace qv::detail {

/// The word that opens a record.
template <class Record>
inline constexpr Word kOpening{kKeyword<Record>};

/// Whether a group-0 value ends the record before it.
bool ends_record(const Line& value);

float real_of(const Line& value);
int integer_of(const Line& value);
void text_of(const Line& value, char* field, std::size_t size);

/// Takes pairs into the fields of their codes. Each row of a description takes the pair at which it stands, if that has
/// the row's code, and goes on to the next: pairs in the order in which the writer writes them are taken in one visit.
class FieldReader {
 public:
  explicit FieldReader(GroupReader& in) : in_(in) { advance(); }
  /// The code of the pair at which it stands; the end behind the last.
  GroupCode code() const { return code_; }
  /// False when a pair came that the record cannot take.
  bool good() const { return good_; }
  /// The number of pairs that were taken.
  int taken() const { return taken_; }
  void advance() { code_ = in_.next() ? in_.code() : GroupCode::end(); }

  template <int code, std::size_t N>
  void text(char (&field)[N]) {
    take<code>([&](const Line& value) { text_of(value, field, N); });
  }
  template <int code>
  void real(float& field) {
    take<code>([&](const Line& value) { field = real_of(value); });
  }
  template <int code>
  void real(float& field, int& given) {
    take<code>([&](const Line& value) {
      field = real_of(value);
      given = 1;
    });
  }
  template <int code>
  void integer(int& field) {
    take<code>([&](const Line& value) { field = integer_of(value); });
  }
  template <int code>
  void point(Point3& p) {
    real<code>(p.x);
    real<code + 10>(p.y);
    real<code + 20>(p.z);
  }
  template <int code, std::size_t N>
  void ltype(char (&field)[N]) {
    text<code>(field);
  }
  template <int code>
  void color(int& field) {
    integer<code>(field);
  }
  template <int code>
  void constant(const char*) {}
  template <int code>
  void stored(int& field) {
    integer<code>(field);
  }
  template <int code>
  void stored(Point3& p) {
    point<code>(p);
  }
  void elements(ACAD_LTYPE& r) {
    take<49>([&](const Line& value) {
      good_ = stored_ < std::min(r.m_nElements, kMaxPatternElements);
      if (good_) r.m_fElement[stored_++] = real_of(value);
    });
  }

 private:
  template <int code, class F>
  void take(const F& f) {
    static_assert(code >= 0 && code <= 99);
    if (code_ != code) return;
    f(in_.value());
    ++taken_;
    if (good_) advance();
  }

  GroupReader& in_;
  GroupCode code_ = GroupCode::end();
  bool good_ = true;
  int taken_ = 0;
  int stored_ = 0;
};

/// Reads the groups of a record whose opening pair has gone by, up to the next record, whose pair stays. A kind of
/// record that is not known does not end it: its groups are taken as further groups. False when the record cannot take
/// a pair.
bool read_groups(GroupReader& in, auto& record) {
  FieldReader fields(in);
  while (fields.code() != GroupCode::end()) {
    if (fields.code() == 0 && ends_record(in.value())) {
      in.unread();
      return true;
    }
    const int before = fields.taken();
    describe(fields, record);
    if (!fields.good()) return false;
    if (fields.taken() == before) fields.advance();
  }
  return true;
}

/// What a record needs beside its own groups: nothing, its vertices, its entities, or a name and a count put right.
/// False, after report 301 and with the reader failed, when memory runs out.
template <class Record>
bool read_rest(GroupReader&, Record&) {
  return true;
}
bool read_rest(GroupReader& in, ACAD_POLYLINE& polyline);
bool read_rest(GroupReader& in, ACAD_BLOCK& block);
bool read_rest(GroupReader& in, ACAD_LTYPE& ltype);

template <class Record>
void reset(Record& record) {
  // One made on the spot would be copied before all of it is stored.
  static const Record kDefaults;
  record = kDefaults;
}
inline void reset(ACAD_POLYLINE& polyline) {
  polyline.Ini();
}
inline void reset(ACAD_BLOCK& block) {
  block.Ini();
}

/// Reads a record whose opening pair has gone by; false when it cannot take a pair, the disk fails or memory runs out.
bool read_opened(GroupReader& in, auto& record) {
  reset(record);
  const bool good = read_groups(in, record);
  return read_rest(in, record) && good && !in.failed();
}

/// Reads a whole record: 0 when the next pair does not open one, or when it cannot take a pair, else 1.
template <class Record>
int read_record(GroupReader& in, Record& record) {
  return in.next() && in.at(0, kOpening<Record>) && read_opened(in, record) ? 1 : 0;
}

int read_record(std::FILE* file, auto& record) {
  GroupReader in(file, GroupReader::Stream::Host);
  return read_record(in, record);
}

/// Whether ENDBLK ends the entities.
enum class Within { Document, Block };

/// Reads the next entity into its working record and returns its kind.
ACAD_Entity_Type read_entity(GroupReader& in, WorkingRecords& records, Within within);

}  // namespace qv::detail
