#pragma once

/// Reads records by their descriptions from group pairs.

#include "dxf/block.h"
#include "dxf/group_reader.h"
#include "dxf/records.h"
#include "platform/text.h"

namespace qv::detail {

/// Whether a group-0 value ends the record before it.
bool ends_record(const Line& value);

double real_of(const Line& value);
int integer_of(const Line& value);
void text_of(const Line& value, char* field, std::size_t size);

/// Takes the pair at which a reader stands into the field of its code, if the record has one.
class FieldReader {
 public:
  explicit FieldReader(const GroupReader& in) : in_(in) {}
  /// False when a pair came that the record cannot take.
  bool good() const { return good_; }

  template <int code, std::size_t N>
  void text(char (&field)[N]) {
    if (in_.code() == code) text_of(in_.value(), field, N);
  }
  template <int code>
  void real(float& field) {
    if (in_.code() == code) field = static_cast<float>(real_of(in_.value()));
  }
  template <int code>
  void real(float& field, int& given) {
    if (in_.code() != code) return;
    real<code>(field);
    given = 1;
  }
  template <int code>
  void integer(int& field) {
    if (in_.code() == code) field = integer_of(in_.value());
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
    if (in_.code() != 49) return;
    good_ = stored_ < std::min(r.m_nElements, kMaxPatternElements);
    if (good_) r.m_fElement[stored_++] = static_cast<float>(real_of(in_.value()));
  }

 private:
  const GroupReader& in_;
  bool good_ = true;
  int stored_ = 0;
};

/// Reads the groups of a record whose opening pair has gone by, up to the next record, whose pair stays. A kind of
/// record that is not known does not end it: its groups are taken as further groups. False when the record cannot take
/// a pair.
template <class Record>
bool read_groups(GroupReader& in, Record& record) {
  FieldReader fields(in);
  while (in.next()) {
    if (in.code() == 0) {
      if (!ends_record(in.value())) continue;
      in.unread();
      return true;
    }
    describe(fields, record);
    if (!fields.good()) return false;
  }
  return true;
}

/// What a record needs beside its own groups: nothing, its vertices, its entities, or a name put right.
template <class Record>
void read_rest(GroupReader&, Record&) {}
void read_rest(GroupReader& in, ACAD_POLYLINE& polyline);
void read_rest(GroupReader& in, ACAD_BLOCK& block);
void read_rest(GroupReader& in, ACAD_LTYPE& ltype);

template <class Record>
void reset(Record& record) {
  record = Record();
}
inline void reset(ACAD_POLYLINE& polyline) {
  polyline.Ini();
}
inline void reset(ACAD_BLOCK& block) {
  block.Ini();
}

/// Reads a whole record: 0 when the next pair does not open one, or when it cannot take a pair, else 1.
template <class Record>
int read_record(GroupReader& in, Record& record) {
  if (!in.next() || !in.at(0, kKeyword<Record>)) return 0;
  reset(record);
  const bool good = read_groups(in, record);
  read_rest(in, record);
  return good ? 1 : 0;
}

template <class Record>
int read_record(std::FILE* file, Record& record) {
  GroupReader in(file, GroupReader::Stream::Host);
  return read_record(in, record);
}

/// Whether ENDBLK ends the entities.
enum class Within { Document, Block };

/// Reads the next entity into its working record and returns its kind.
ACAD_Entity_Type read_entity(GroupReader& in, WorkingRecords& records, Within within);

}  // namespace qv::detail
