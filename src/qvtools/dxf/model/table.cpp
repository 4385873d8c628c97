#include "qvtools/dxf/model/table.h"

#include "qvtools/dxf/io/internal/group_writer.h"
#include "qvtools/dxf/io/internal/record_reader.h"

using qv::detail::LineEnd;
using qv::detail::read_record;
using qv::detail::write_record;

int ACAD_TABLE::Read(std::FILE*) {
  return 1;
}
int ACAD_TABLE::Write(std::FILE*) {
  return 1;
}
int ACAD_LTYPE::Read(std::FILE* file) {
  return read_record(file, *this);
}
int ACAD_LTYPE::Write(std::FILE* file) {
  return write_record<LineEnd::Lf>(file, *this);
}
int ACAD_LAYER::Read(std::FILE* file) {
  return read_record(file, *this);
}
int ACAD_LAYER::Write(std::FILE* file) {
  return write_record<LineEnd::Lf>(file, *this);
}
int ACAD_STYLE::Read(std::FILE* file) {
  return read_record(file, *this);
}
int ACAD_STYLE::Write(std::FILE* file) {
  return write_record<LineEnd::Lf>(file, *this);
}
