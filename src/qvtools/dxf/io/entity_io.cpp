#include "qvtools/dxf/io/internal/group_writer.h"
#include "qvtools/dxf/io/internal/record_reader.h"

using namespace qv::detail;

// A record reads and writes itself by its description. It writes to a stream of its caller's, which gives the lines the
// ends that it has been opened for.

#define QV_RECORD(Class)                           \
  int Class::Read(std::FILE* file) {               \
    return read_record(file, *this);               \
  }                                                \
  int Class::Write(std::FILE* file) {              \
    return write_record<LineEnd::Lf>(file, *this); \
  }
#define QV_KIND(KEYWORD, member) QV_RECORD(ACAD_##KEYWORD)
QV_FOR_EACH_ENTITY_KIND(QV_KIND)
QV_RECORD(ACAD_LTYPE)
QV_RECORD(ACAD_LAYER)
QV_RECORD(ACAD_STYLE)
#undef QV_KIND
#undef QV_RECORD

int ACAD_BLOCK::Read(std::FILE* file) {
  return read_record(file, *this);
}

ACAD_Entity_Type ACAD_BLOCK::Read_One_Entity(std::FILE* file) {
  GroupReader in(file, GroupReader::Stream::Host);
  const ACAD_Entity_Type type = read_entity(in, Records(), Within::Block);
  return in.failed() ? ACAD_TYPE_NONE : type;
}

int ACAD_BLOCK::Write(std::FILE* file) {
  constexpr LineEnd kAsTheStream = LineEnd::Lf;
  char buffer[4 * GroupWriter<kAsTheStream>::kRecordRoom];
  GroupWriter<kAsTheStream> writer(buffer, sizeof buffer, to_stream(file));
  write_block(writer, *this);
  return writer.flush() ? 1 : 0;
}
